#pragma once

#include "core/cli/AutomationFailure.h"
#include "core/sources/RuntimeState.h"
#include "platform/input/InputSources.h"

#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <optional>

// One input source as scripts see it.
struct AutomationSource
{
    QString id;
    QString name;

    bool operator==(const AutomationSource &) const = default;
    QJsonObject toJson() const;
};

// The pinned source; `name` is absent when it is not among the selectable sources.
struct AutomationTarget
{
    QString id;
    std::optional<QString> name;
    bool available = false;

    bool operator==(const AutomationTarget &) const = default;
    QJsonObject toJson() const;
};

// The whole system as the command line reports it.
struct AutomationStatus
{
    bool enabled = false;
    bool running = false;
    RuntimeState state = RuntimeState::Stopped;
    AutomationSource current;
    std::optional<AutomationTarget> target;
    bool loginEnabled = false;
    bool onboardingCompleted = false;
    // The input-source backend by name, and what keeps it from the sources, if anything.
    QString backend = {};
    std::optional<AutomationFailure> backendError = {};
    // How the backend learns of a switch ("signals" or "polling"), while it can be reached.
    std::optional<InputSources::Following> following = {};
    // Where the session shows Tolvar ("tray", "keyboard_menu"); empty where nothing does.
    QStringList shownIn = {};

    bool operator==(const AutomationStatus &) const = default;
    QJsonObject toJson() const;
};

QJsonObject toJson(const AutomationFailure &failure);
