#include "core/doctor/DoctorCheck.h"

#include "core/l10n/L10n.h"

QString DoctorCheck::verdictName(Verdict verdict)
{
    switch (verdict) {
    case Verdict::ok: return QStringLiteral("ok");
    case Verdict::info: return QStringLiteral("info");
    case Verdict::warn: return QStringLiteral("warn");
    case Verdict::fail: return QStringLiteral("fail");
    }
    return QStringLiteral("fail");
}

QString DoctorCheck::heading() const
{
    return L10n::text("cli.line")
        .arg(L10n::text(QStringLiteral("doctor.%1").arg(verdictName(verdict))),
             L10n::text(QStringLiteral("doctor.title.%1").arg(id)));
}

QJsonObject DoctorCheck::toJson() const
{
    return {
        {QStringLiteral("id"), id},
        {QStringLiteral("verdict"), verdictName(verdict)},
        {QStringLiteral("evidence"), evidence},
        {QStringLiteral("advice"), advice.key().isEmpty() ? QString() : advice.text()},
    };
}
