#include "core/config/Config.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>

namespace {

QByteArray quoted(const QString &text)
{
    QByteArray out = "\"";
    for (const char c : text.toUtf8()) {
        switch (c) {
        case '"': out += "\\\""; break;
        case '\\': out += "\\\\"; break;
        case '/': out += "\\/"; break;
        case '\b': out += "\\b"; break;
        case '\f': out += "\\f"; break;
        case '\n': out += "\\n"; break;
        case '\r': out += "\\r"; break;
        case '\t': out += "\\t"; break;
        default:
            if (static_cast<unsigned char>(c) < 0x20)
                out += QStringLiteral("\\u%1").arg(int(c), 4, 16, QLatin1Char('0')).toLatin1();
            else
                out += c;
        }
    }
    return out + '"';
}

QByteArray boolean(bool value)
{
    return value ? "true" : "false";
}

// Optional strings accept absence and null; anything else but a string spoils the file.
bool readOptional(const QJsonObject &object, QLatin1StringView key, std::optional<QString> &out)
{
    const QJsonValue value = object.value(key);
    if (value.isUndefined() || value.isNull())
        return true;
    if (!value.isString())
        return false;
    out = value.toString();
    return true;
}

bool readRequired(const QJsonObject &object, QLatin1StringView key, bool &out)
{
    const QJsonValue value = object.value(key);
    if (!value.isBool())
        return false;
    out = value.toBool();
    return true;
}

} // namespace

QByteArray Config::encoded() const
{
    // Keys in byte order: enabled, language, onboardingCompleted, sourceID.
    QByteArrayList members;
    members << "  \"enabled\" : " + boolean(enabled);
    if (language)
        members << "  \"language\" : " + quoted(*language);
    members << "  \"onboardingCompleted\" : " + boolean(onboardingCompleted);
    if (sourceID)
        members << "  \"sourceID\" : " + quoted(*sourceID);
    return "{\n" + members.join(",\n") + "\n}";
}

Expected<Config> Config::decode(const QByteArray &bytes, const QString &path)
{
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &parseError);
    if (parseError.error != QJsonParseError::NoError)
        return Error::decode(parseError.errorString(), path)
            .withWords("err.not-json", {path, parseError.errorString()});
    if (!document.isObject())
        return Error::decode(QStringLiteral("not a JSON object"), path).withWords("err.not-object", {path});

    const QJsonObject object = document.object();
    Config config;
    if (!readOptional(object, QLatin1StringView("sourceID"), config.sourceID)
        || !readRequired(object, QLatin1StringView("enabled"), config.enabled)
        || !readOptional(object, QLatin1StringView("language"), config.language)
        || !readRequired(object, QLatin1StringView("onboardingCompleted"), config.onboardingCompleted))
        return Error::decode(QStringLiteral("missing or mistyped key"), path).withWords("err.mistyped", {path});
    return config;
}
