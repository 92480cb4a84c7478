#pragma once

#include "base/Expected.h"

#include <QString>
#include <QStringList>

#include <optional>

// One parsed command line: tolvar [command] [source-id] [--json].
struct CLIRequest
{
    enum class Command {
        Status,
        List,
        Set,
        Apply,
        Open,
        Install,
        Uninstall,
        Pause,
        Resume,
        Toggle,
        Help,
        Version,
        Doctor
    };

    Command command = Command::Status;
    std::optional<QString> sourceID;
    bool json = false;

    bool operator==(const CLIRequest &) const = default;

    // A command line that makes no request: what its answer names, and how it answers.
    struct Refusal
    {
        QString command; // the first word that is not --json, or "status"
        bool json = false;

        bool operator==(const Refusal &) const = default;
    };

    // `arguments` excludes the program path.
    static Expected<CLIRequest, Refusal> parse(const QStringList &arguments);

    // The command word, also the "command" member of JSON responses.
    static QString word(Command command);
    static std::optional<Command> commandNamed(const QString &word);
    static bool takesSourceID(Command command);
};
