#pragma once

#include "base/Expected.h"
#include "core/config/Config.h"
#include "core/engine/EnforcementTarget.h"
#include "core/engine/FocusProcessResult.h"
#include "core/l10n/LocalizedText.h"
#include "platform/input/InputSources.h"

#include <QString>

#include <chrono>
#include <functional>
#include <optional>

// Everything the engine asks of the world, so tests can stand in for it.
struct EnforcementDependencies
{
    using Clock = std::chrono::steady_clock;
    using FocusCompletion = std::function<void(FocusProcessResult)>;
    using CancelFocus = std::function<void()>;

    // Never fails: an unreadable file reads as the default record.
    std::function<Config()> config;
    std::function<bool()> secureInput;
    // Someone else holds the keyboard layout, such as a remote desktop client.
    std::function<bool()> keymapHeld = [] { return false; };
    // Why no source can be read or switched now; none when they can.
    std::function<std::optional<LocalizedText>()> unreachable = [] { return std::optional<LocalizedText>(); };
    // Empty when there is no current source.
    std::function<QString()> currentID;
    std::function<std::optional<EnforcementTarget>(const QString &id)> find;
    // The platform's status; 0 is success.
    std::function<qint32(const QString &id)> select;
    // Starts a helper run; the returned operation stops it as cancelled.
    std::function<Expected<CancelFocus>(const QString &id, bool automatic, FocusCompletion completion)> launchFocus;
    // Monotonic, so clock changes cannot hold back or hurry the rate limits.
    std::function<Clock::time_point()> now;

    static EnforcementDependencies live();
    // Live, on the given input sources: a target needs the focus helper only
    // when it is CJKV and the platform applies such sources on a focus change.
    static EnforcementDependencies over(const InputSources &system);
};
