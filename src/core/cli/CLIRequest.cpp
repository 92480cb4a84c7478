#include "core/cli/CLIRequest.h"

#include <array>
#include <utility>

namespace {

using Command = CLIRequest::Command;

constexpr std::array<std::pair<Command, const char *>, 13> words = {{
    {Command::Status, "status"},
    {Command::List, "list"},
    {Command::Set, "set"},
    {Command::Apply, "apply"},
    {Command::Open, "open"},
    {Command::Install, "install"},
    {Command::Uninstall, "uninstall"},
    {Command::Pause, "pause"},
    {Command::Resume, "resume"},
    {Command::Toggle, "toggle"},
    {Command::Help, "help"},
    {Command::Version, "version"},
    {Command::Doctor, "doctor"},
}};

const QString jsonFlag = QStringLiteral("--json");

} // namespace

QString CLIRequest::word(Command command)
{
    for (const auto &[candidate, text] : words) {
        if (candidate == command)
            return QLatin1String(text);
    }
    return {};
}

std::optional<CLIRequest::Command> CLIRequest::commandNamed(const QString &word)
{
    for (const auto &[candidate, text] : words) {
        if (word == QLatin1String(text))
            return candidate;
    }
    return std::nullopt;
}

bool CLIRequest::takesSourceID(Command command)
{
    return command == Command::Set || command == Command::Install;
}

Expected<CLIRequest, CLIRequest::Refusal> CLIRequest::parse(const QStringList &arguments)
{
    const qsizetype jsonCount = arguments.count(jsonFlag);
    QStringList remaining = arguments;
    remaining.removeAll(jsonFlag);
    const QString first = remaining.value(0, QStringLiteral("status"));
    const Refusal refused{first, jsonCount > 0};
    if (jsonCount > 1)
        return refused;

    std::optional<Command> parsed;
    if (first == QLatin1String("--help") || first == QLatin1String("-h"))
        parsed = Command::Help;
    else if (first == QLatin1String("--version"))
        parsed = Command::Version;
    else
        parsed = commandNamed(first);
    if (!parsed)
        return refused;

    const bool takesID = takesSourceID(*parsed);
    const qsizetype expected = (remaining.isEmpty() ? 0 : 1) + (takesID ? 1 : 0);
    if (remaining.size() != expected)
        return refused;
    if (*parsed == Command::Help && jsonCount == 1)
        return refused;
    for (qsizetype i = 1; i < remaining.size(); ++i) {
        if (remaining.at(i).isEmpty() || remaining.at(i).startsWith(QLatin1Char('-')))
            return refused;
    }

    CLIRequest request;
    request.command = *parsed;
    if (takesID)
        request.sourceID = remaining.at(1);
    request.json = jsonCount == 1;
    return request;
}
