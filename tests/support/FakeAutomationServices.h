#pragma once

#include "core/cli/AutomationServices.h"

#include <cerrno>

// Services over plain fields; `update` edits `stored` the way the store would.
struct FakeAutomationServices
{
    std::optional<Config> stored; // absent: no file
    std::optional<Error> loadError;
    std::optional<Error> writeError;
    QList<InputChoice> choices = {{QStringLiteral("xkb:us::eng"), QStringLiteral("English (US)")},
                                  {QStringLiteral("hangul"), QStringLiteral("Korean")}};
    InputChoice current{QStringLiteral("xkb:us::eng"), QStringLiteral("English (US)")};
    std::optional<bool> running = true; // absent: the lock probe fails
    bool secure = false;
    bool keymapHeld = false;
    bool login = false;
    InputSources::Availability availability = InputSources::Availability::available;
    int writes = 0;

    AutomationServices services()
    {
        AutomationServices s;
        s.load = [this]() -> Expected<Config> {
            if (loadError)
                return *loadError;
            return stored.value_or(Config{});
        };
        s.update = [this](const ConfigStore::Edit &edit) -> Expected<Config> {
            if (loadError)
                return *loadError;
            Config config = stored.value_or(Config{});
            if (const Expected<void> edited = edit(config); !edited)
                return edited.error();
            if (writeError)
                return *writeError;
            ++writes;
            stored = config;
            return config;
        };
        s.choices = [this] { return choices; };
        s.current = [this] { return current; };
        s.running = [this]() -> Expected<bool> {
            if (!running)
                return Error::posix(EIO, QStringLiteral("gui.lock"));
            return *running;
        };
        s.secureInput = [this] { return secure; };
        s.keymapHeld = [this] { return keymapHeld; };
        s.loginEnabled = [this] { return login; };
        s.availability = [this] { return availability; };
        s.framework = QStringLiteral("IBus");
        s.backend = QStringLiteral("gnome");
        return s;
    }
};
