#pragma once

#include "base/Expected.h"
#include "core/config/Config.h"
#include "core/config/ConfigStore.h"
#include "core/doctor/DoctorCheck.h"
#include "core/sources/InputChoice.h"
#include "core/sources/SwitchOutcome.h"
#include "platform/Notifications.h"
#include "platform/input/InputSources.h"

#include <QImage>
#include <QList>
#include <QString>
#include <QUrl>

#include <functional>
#include <memory>
#include <optional>

class Enforcer;
struct PreviewWorld;

// Everything the application model asks of the world. The model has one way
// of working; what differs between this machine, the tests and the
// screenshots is only what stands behind these fields. All are called on the
// main thread but loginEnabled and setLogin, which the model hands to
// `background`.
struct AppServices
{
    using Completion = std::function<void(const SwitchOutcome &)>;

    // config.json without the lock; defaults when missing; read and decode errors passed on.
    std::function<Expected<Config>()> load;
    // Locked read-modify-write, announced to every process; answers the record written.
    std::function<Expected<Config>(const ConfigStore::Edit &edit)> updateConfig;

    std::function<QList<InputChoice>()> choices;
    // Both fields empty when the system tells none.
    std::function<InputChoice()> current;
    std::function<bool()> secureInput;
    // Someone else, such as a remote desktop client, holds the keyboard layout.
    std::function<bool()> keymapHeld = [] { return false; };
    std::function<std::optional<QImage>(const QString &id)> sourceIcon;
    // Whether the sources can be reached now, and the framework's name for saying why not.
    std::function<InputSources::Availability()> availability = [] { return InputSources::Availability::available; };
    QString framework = {};

    // The keeper. Started once, it calls `onUpdate` whenever what the model
    // shows may have changed and `onAutomaticOutcome` after each switch it
    // made by itself, and looks at the pinned source at once.
    std::function<void(std::function<void()> onUpdate, Completion onAutomaticOutcome)> startKeeper;
    // One manual switch to the pinned source; the completion comes on the main thread.
    std::function<void(Completion completion)> apply;
    std::function<bool()> isSwitching;
    std::function<void()> cancelSwitch;

    std::function<bool()> loginEnabled;
    std::function<Expected<void>(bool on)> setLogin;
    // Runs work that may take a while away from the window.
    std::function<void(std::function<void()> work)> background;

    // The system's keyboard settings; false when they could not be shown.
    std::function<bool()> openKeyboardSettings;
    std::function<void(const QUrl &address)> openAddress;
    // The checks `tolvar doctor` makes, for the same findings in the window.
    std::function<QList<DoctorCheck>()> checkComputer = [] { return QList<DoctorCheck>(); };

    // This machine, kept by `enforcer`.
    static AppServices live(Enforcer &enforcer);
    // The sources of `system` and config.json in `configDirectory`, whose
    // changes go out through `notifications`; the other fields are the caller's.
    static AppServices over(const InputSources &system, const QString &configDirectory,
                            const Notifications &notifications);
    // The keeper's fields, on `enforcer`.
    void keepWith(Enforcer &enforcer);
    // `world` in memory, for screenshots: a keeper that does nothing but end a
    // manual switch as the world says, the login item at once unless it takes a while.
    static AppServices preview(const std::shared_ptr<PreviewWorld> &world);
};
