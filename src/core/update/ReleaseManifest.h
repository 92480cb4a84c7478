#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

// A published release as the update server describes it.
struct ReleaseManifest
{
    QString bundleIdentifier;
    QString version;
    qint64 build = 0;
    QString minimumSystemVersion;
    QString releaseURL;
    std::optional<QString> notes;

    static constexpr qsizetype maximumNotesLength = 8192;

    // One JSON object; absent when a required key is missing or null, or any
    // known key holds the wrong JSON type. Unknown keys are ignored; values are
    // not judged here.
    static std::optional<ReleaseManifest> decode(const QByteArray &json);

    // Notes are measured in user-perceived characters, as people count them.
    static qsizetype characterCount(const QString &text);

    bool operator==(const ReleaseManifest &) const = default;
};
