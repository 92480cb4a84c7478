#include "core/cli/AutomationResponse.h"

#include <QJsonArray>
#include <QJsonDocument>

AutomationResponse AutomationResponse::success(const QString &command, const AutomationStatus &status)
{
    return {true, command, status, std::nullopt, std::nullopt};
}

AutomationResponse AutomationResponse::listing(const QString &command, const QList<AutomationSource> &sources)
{
    return {true, command, std::nullopt, sources, std::nullopt};
}

AutomationResponse AutomationResponse::version(const QString &command, const AppBuildInfo &build)
{
    return {true, command, std::nullopt, std::nullopt, std::nullopt, build};
}

AutomationResponse AutomationResponse::failure(const QString &command, const AutomationFailure &error)
{
    return {false, command, std::nullopt, std::nullopt, error};
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
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

QByteArray AutomationResponse::fallback()
{
    return QByteArrayLiteral(R"({"schemaVersion":1,"ok":false,"command":"unknown","error":)"
                             R"({"code":"encoding_failed","message":"Unable to encode the response."}})");
}
