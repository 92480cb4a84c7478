#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

// Where a Linux desktop adds input sources: its own keyboard settings, or
// IBus's preferences where the desktop has none.
namespace LinuxKeyboardSettings {

struct Command
{
    QString program;
    QStringList arguments;

    bool operator==(const Command &) const = default;
};

// The command for a session of `desktops` ($XDG_CURRENT_DESKTOP, split at ':'),
// given which programs are installed; none when nothing fits.
std::optional<Command> choose(const QStringList &desktops, const std::function<bool(const QString &)> &installed);

} // namespace LinuxKeyboardSettings
