#pragma once

#include "base/Expected.h"
#include "core/config/Config.h"
#include "core/instance/AppBuildInfo.h"
#include "core/sources/InputChoice.h"
#include "platform/SessionFacts.h"
#include "platform/input/InputSources.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

// What `tolvar doctor` reads of the machine. Nothing here changes anything.
struct DoctorServices
{
    // The login item's file as read: where it is, whether it is there and
    // marked off, the program it starts, and the leftovers of earlier
    // versions that are there.
    struct LoginEntry
    {
        QString path;
        bool exists = false;
        bool hidden = false;
        QString program = {};
        QStringList leftovers = {};
    };

    std::function<SessionFacts::Stack()> stack;
    std::function<QString()> sessionType;
    std::function<std::optional<QString>()> trayHost;
    // Whether the desktop's keyboard menu shows Tolvar instead.
    std::function<bool()> inKeyboardMenu = [] { return false; };
    // The stack in use, by its framework's name ("IBus"), and what it says.
    QString framework;
    std::function<InputSources::Availability()> availability;
    std::function<StackReport()> report;
    std::function<InputSources::Following()> following = [] { return InputSources::Following::announced; };
    // Another party, such as a remote desktop client, holds the keyboard layout.
    std::function<bool()> keymapHeld = [] { return false; };
    std::function<QList<InputChoice>()> choices;
    std::function<QString()> configFile;
    std::function<bool()> configExists;
    // config.json without the lock: defaults when missing.
    std::function<Expected<Config>()> config;
    std::function<LoginEntry()> loginEntry;
    // Whether `program` names a file that can be run.
    std::function<bool(const QString &program)> runnable;
    // The instance lock file's text while an instance holds it.
    std::function<Expected<std::optional<QByteArray>>()> instance;
    std::function<AppBuildInfo()> build;

    static DoctorServices live();
};
