#pragma once

#include "base/Expected.h"
#include "core/cli/AutomationFailure.h"

#include <QString>
#include <QStringList>

#include <optional>

// One parsed command line: tolvar [command] [source-id] [--json].
struct CLIRequest
{
    enum class Command { Status, List, Set, Apply, Open, Install, Uninstall, Pause, Resume, Toggle, Help };

    Command command = Command::Status;
    std::optional<QString> sourceID;
    bool json = false;

    bool operator==(const CLIRequest &) const = default;

    // `arguments` excludes the program path. Every refusal is invalid_arguments.
    static Expected<CLIRequest, AutomationFailure> parse(const QStringList &arguments);

    // The command word, also the "command" member of JSON responses.
    static QString word(Command command);
    static std::optional<Command> commandNamed(const QString &word);
    static bool takesSourceID(Command command);
};
