#include "platform/input/KeyboardSettings.h"
#include "platform/linux/input/LinuxKeyboardSettings.h"

#include <QProcess>
#include <QStandardPaths>

namespace LinuxKeyboardSettings {

std::optional<Command> choose(const QStringList &desktops, const std::function<bool(const QString &)> &installed)
{
    const auto on = [&desktops](const char *desktop) {
        return desktops.contains(QLatin1String(desktop), Qt::CaseInsensitive);
    };
    QList<Command> candidates;
    if (on("GNOME"))
        candidates << Command{QStringLiteral("gnome-control-center"), {QStringLiteral("keyboard")}};
    if (on("KDE"))
        candidates << Command{QStringLiteral("systemsettings"), {QStringLiteral("kcm_keyboard")}};
    candidates << Command{QStringLiteral("ibus-setup"), {}};
    for (const Command &candidate : std::as_const(candidates)) {
        if (installed(candidate.program))
            return candidate;
    }
    return std::nullopt;
}

} // namespace LinuxKeyboardSettings

KeyboardSettings KeyboardSettings::live()
{
    return {[] {
        const auto command = LinuxKeyboardSettings::choose(
            qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(QLatin1Char(':'), Qt::SkipEmptyParts),
            [](const QString &program) { return !QStandardPaths::findExecutable(program).isEmpty(); });
        // Started apart from Tolvar, so that quitting Tolvar leaves the settings open.
        return command && QProcess::startDetached(command->program, command->arguments);
    }};
}
