#pragma once

#include "base/Expected.h"

#include <QByteArray>
#include <QString>

#include <optional>

// The whole persisted state: one small record in config.json.
struct Config
{
    std::optional<QString> sourceID = {};
    bool enabled = false;
    std::optional<QString> language = {};
    bool onboardingCompleted = false;

    bool operator==(const Config &) const = default;

    // Pretty-printed, keys sorted, absent optionals left out, "/" written as "\/".
    QByteArray encoded() const;
    // Both booleans are required; a key of the wrong type spoils the whole file.
    static Expected<Config> decode(const QByteArray &bytes, const QString &path = {});
};
