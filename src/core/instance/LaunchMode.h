#pragma once

#include <QString>
#include <QStringList>

#include <optional>

// The role a process takes, decided from its arguments and who started it.
enum class LaunchMode { Window, Background, FocusHelper, CommandLine };

struct Launch
{
    LaunchMode mode = LaunchMode::CommandLine;
    // For the focus helper: the identifier given after "focus", if any.
    std::optional<QString> focusIdentifier;

    bool operator==(const Launch &) const = default;
};

// `arguments` excludes the program path. Words compare exactly and case-sensitively.
Launch decideLaunch(const QStringList &arguments, bool launchedFromDesktop);

// Whether the parent's executable, by its file name, is one of `launchers`.
bool isDesktopLauncher(const QString &parentExecutablePath, const QStringList &launchers);
