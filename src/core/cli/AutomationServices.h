#pragma once

#include "base/Expected.h"
#include "core/config/Config.h"
#include "core/config/ConfigStore.h"
#include "core/sources/InputChoice.h"
#include "platform/input/InputSources.h"

#include <QList>

#include <functional>
#include <optional>

// The command line's contacts with the world, so its logic can run on fakes.
struct AutomationServices
{
    // config.json without the lock; defaults when missing; read and decode errors passed on.
    std::function<Expected<Config>()> load;
    // Locked read-modify-write, announced to every process.
    std::function<Expected<Config>(const ConfigStore::Edit &edit)> update;
    std::function<QList<InputChoice>()> choices;
    std::function<InputChoice()> current;
    // Whether a windowed instance holds the instance lock.
    std::function<Expected<bool>()> running;
    std::function<bool()> secureInput;
    std::function<bool()> keymapHeld = [] { return false; };
    std::function<bool()> loginEnabled;
    // The input-source backend in use, by name ("ibus", "gnome"...).
    QString backend = {};
    // The framework's name in messages, such as "IBus".
    QString framework = {};
    // Whether that backend can reach the sources now.
    std::function<InputSources::Availability()> availability = [] { return InputSources::Availability::available; };
    std::function<InputSources::Following()> following = [] { return InputSources::Following::announced; };
    // Where the session can show Tolvar: a tray, the desktop's keyboard menu.
    std::function<bool()> trayHost = [] { return true; };
    std::function<bool()> inKeyboardMenu = [] { return false; };

    // One command's contacts: it sees one list of sources and one availability.
    // `started` is config.json as the process read it on starting; the first
    // load takes it rather than reading the file again.
    static AutomationServices live(std::optional<Expected<Config>> started = std::nullopt);
};
