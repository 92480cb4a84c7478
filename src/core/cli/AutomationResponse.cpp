#include "core/cli/AutomationResponse.h"

#include <QJsonArray>
#include <QJsonDocument>

AutomationResponse AutomationResponse::success(const QString &command, const AutomationStatus &status)
{
    return {.ok = true, .command = command, .status = status};
}

AutomationResponse AutomationResponse::listing(const QString &command, const QList<AutomationSource> &sources)
{
    return {.ok = true, .command = command, .sources = sources};
}

AutomationResponse AutomationResponse::version(const QString &command, const AppBuildInfo &build)
{
    return {.ok = true, .command = command, .build = build};
}

AutomationResponse AutomationResponse::doctor(const QString &command, const QList<DoctorCheck> &checks, bool failed)
{
    AutomationResponse response{.ok = !failed, .command = command, .checks = checks};
    if (failed)
        response.error = AutomationFailure::of(AutomationFailure::Kind::ChecksFailed);
    return response;
}

AutomationResponse AutomationResponse::failure(const QString &command, const AutomationFailure &error)
{
    return {.ok = false, .command = command, .error = error};
}

QByteArray AutomationResponse::encoded() const
{
    // QJsonObject keeps its keys sorted, and Qt's writer leaves "/" alone and
    // writes UTF-8, which is the document's whole format.
    QJsonObject object{
        {QStringLiteral("schemaVersion"), 1},
        {QStringLiteral("ok"), ok},
        {QStringLiteral("command"), command},
    };
    if (status)
        object.insert(QStringLiteral("status"), status->toJson());
    if (sources) {
        QJsonArray list;
        for (const AutomationSource &source : *sources)
            list.append(source.toJson());
        object.insert(QStringLiteral("sources"), list);
    }
    if (error)
        object.insert(QStringLiteral("error"), toJson(*error));
    if (build && build->version)
        object.insert(QStringLiteral("version"), *build->version);
    if (build && build->build)
        object.insert(QStringLiteral("build"), *build->build);
    if (checks) {
        QJsonArray list;
        for (const DoctorCheck &check : *checks)
            list.append(check.toJson());
        object.insert(QStringLiteral("checks"), list);
    }
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

QByteArray AutomationResponse::fallback()
{
    return QByteArrayLiteral(R"({"schemaVersion":1,"ok":false,"command":"unknown","error":)"
                             R"({"code":"encoding_failed","message":"Unable to encode the response."}})");
}
