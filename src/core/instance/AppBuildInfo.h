#pragma once

#include <QString>
#include <QVariant>

#include <functional>
#include <optional>

// The running application's own version data, read once from its bundle's
// information keys. Immutable once read.
struct AppBuildInfo
{
    std::optional<QString> version = {};
    std::optional<qint64> build = {};
    QString minimumSystemVersion = {};
    std::optional<QString> updateURL = {};

    // One information key: an invalid QVariant when the key is missing.
    using Lookup = std::function<QVariant(const QString &key)>;

    // Never fails: a missing key, or one whose value is not text, falls back.
    static AppBuildInfo read(const Lookup &lookup);
    // From the application's own bundle (or, on Linux, its build record).
    static AppBuildInfo current();

    // The build number of a "CFBundleVersion" value: decimal with an optional
    // sign, within 64 bits; absent for anything else.
    static std::optional<qint64> parseBuild(const QVariant &stored);

    bool operator==(const AppBuildInfo &) const = default;
};
