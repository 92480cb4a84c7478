#include "core/update/ReleaseManifest.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTextBoundaryFinder>

#include <cmath>

namespace {

std::optional<QString> stringAt(const QJsonObject &object, QLatin1StringView key)
{
    const QJsonValue value = object.value(key);
    if (!value.isString())
        return std::nullopt;
    return value.toString();
}

std::optional<qint64> integerAt(const QJsonObject &object, QLatin1StringView key)
{
    const QJsonValue value = object.value(key);
    if (!value.isDouble())
        return std::nullopt;
    // A JSON integer: 1.5 or 1e300 is not one.
    const double number = value.toDouble();
    if (number != std::trunc(number) || std::abs(number) >= 9.2e18)
        return std::nullopt;
    return value.toInteger();
}

} // namespace

std::optional<ReleaseManifest> ReleaseManifest::decode(const QByteArray &json)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError || !document.isObject())
        return std::nullopt;
    const QJsonObject object = document.object();

    const auto bundleIdentifier = stringAt(object, QLatin1StringView("bundleIdentifier"));
    const auto version = stringAt(object, QLatin1StringView("version"));
    const auto build = integerAt(object, QLatin1StringView("build"));
    const auto minimum = stringAt(object, QLatin1StringView("minimumSystemVersion"));
    const auto releaseURL = stringAt(object, QLatin1StringView("releaseURL"));
    if (!bundleIdentifier || !version || !build || !minimum || !releaseURL)
        return std::nullopt;

    std::optional<QString> notes;
    const QJsonValue notesValue = object.value(QLatin1StringView("notes"));
    if (notesValue.isString())
        notes = notesValue.toString();
    else if (!notesValue.isUndefined() && !notesValue.isNull())
        return std::nullopt;

    return ReleaseManifest{*bundleIdentifier, *version, *build, *minimum, *releaseURL, notes};
}

qsizetype ReleaseManifest::characterCount(const QString &text)
{
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    qsizetype count = 0;
    while (finder.toNextBoundary() != -1)
        ++count;
    return count;
}
