#include "core/doctor/DoctorCheck.h"

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

QJsonObject DoctorCheck::toJson() const
{
    return {
        {QStringLiteral("id"), id},
        {QStringLiteral("verdict"), verdictName(verdict)},
        {QStringLiteral("evidence"), evidence},
        {QStringLiteral("advice"), advice.key().isEmpty() ? QString() : advice.text()},
    };
}
