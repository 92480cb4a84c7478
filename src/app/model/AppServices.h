#pragma once

#include "base/Expected.h"
#include "core/config/Config.h"
#include "core/config/ConfigStore.h"
#include "core/sources/InputChoice.h"
#include "core/sources/SwitchOutcome.h"
#include "platform/input/InputSources.h"

#include <QImage>
#include <QList>
#include <QString>

#include <functional>
#include <optional>

class Enforcer;

// Everything the application model asks of the world, so that tests and
// screenshots can run it on stand-ins. All run on the main thread except
// loginEnabled and setLogin, which the model runs on a worker thread.
struct AppServices
{
    using Completion = std::function<void(const SwitchOutcome &)>;

    // config.json without the lock; defaults when missing; read and decode errors passed on.
    std::function<Expected<Config>()> load;
    std::function<Expected<void>(const Config &config)> save;
    std::function<QList<InputChoice>()> choices;
    // Both fields empty when the system tells none.
    std::function<InputChoice()> current;
    std::function<bool()> loginEnabled;
    std::function<Expected<void>(bool on)> setLogin;
    // One manual switch to the pinned source; the completion comes on the main thread.
    std::function<void(Completion completion)> apply;
    // Locked read-modify-write, announced to every process; may be left empty,
    // and the model then loads, edits and saves.
    std::function<Expected<Config>(const ConfigStore::Edit &edit)> updateConfig;
    std::function<bool()> secureInput;
    std::function<bool()> isSwitching;
    std::function<void()> cancelSwitch;
    std::function<std::optional<QImage>(const QString &id)> sourceIcon;
    // Whether the sources can be reached now, and the framework's name for saying why not.
    std::function<InputSources::Availability()> availability = [] { return InputSources::Availability::available; };
    QString framework = {};

    // This machine, switching through `enforcer`.
    static AppServices live(Enforcer &enforcer);
    // A believable world held in memory, for screenshots: several sources,
    // a Korean one pinned and kept. Touches nothing outside the process.
    static AppServices preview();
};
