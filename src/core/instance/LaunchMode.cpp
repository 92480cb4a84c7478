#include "core/instance/LaunchMode.h"

Launch decideLaunch(const QStringList &arguments, bool launchedFromDesktop)
{
    if (arguments.isEmpty())
        return {launchedFromDesktop ? LaunchMode::Window : LaunchMode::CommandLine, std::nullopt};

    const QString &first = arguments.first();
    if (first == QLatin1String("focus")) {
        if (arguments.size() > 1)
            return {LaunchMode::FocusHelper, arguments.at(1)};
        return {LaunchMode::FocusHelper, std::nullopt};
    }
    if (first == QLatin1String("gui"))
        return {LaunchMode::Window, std::nullopt};
    if (first == QLatin1String("background"))
        return {LaunchMode::Background, std::nullopt};
    return {LaunchMode::CommandLine, std::nullopt};
}

bool isDesktopLauncher(const QString &parentExecutablePath, const QStringList &launchers)
{
    if (parentExecutablePath.isEmpty())
        return false;
    const QString name = parentExecutablePath.section(QLatin1Char('/'), -1);
    return launchers.contains(name);
}
