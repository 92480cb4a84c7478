#include "app/launch/Entry.h"

#include "app/launch/GuiLibrary.h"
#include "core/cli/CLI.h"
#include "core/config/ConfigMigration.h"
#include "core/config/ConfigStore.h"
#include "core/instance/LaunchMode.h"
#include "core/l10n/L10n.h"
#include "platform/ParentProcess.h"
#include "platform/files/StandardStreams.h"

#include <QCoreApplication>

#include <cstdio>

namespace Entry {
namespace {

int runCommandLine(int &argc, char **argv, const QStringList &arguments, const Expected<Config> &started)
{
    // The session bus and a one-shot switch need an application object; only
    // set and apply run its event loop.
    const QCoreApplication application(argc, argv);
    return CLI::main(arguments, started);
}

} // namespace

Dependencies Dependencies::live()
{
    return {
        ParentProcess::executablePath,
        ParentProcess::desktopLaunchers,
        [] { return ConfigStore::load(); },
        []() -> Expected<void> {
            const Expected<ConfigMigration::Outcome> moved = ConfigMigration::runLive();
            if (!moved)
                return moved.error();
            return {};
        },
    };
}

int main(int argc, char **argv, const Dependencies &dependencies)
{
    StandardStreams::guard();
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);

    const Expected<void> moved = dependencies.moveEarlierConfig();
    // Read once: the command line takes it over as its first read.
    const Expected<Config> started = dependencies.readConfig();
    const Config config = started ? started.value() : Config{};
    L10n::setLanguageCode(L10n::normalized(config.language));
    if (!moved) {
        const QString warning = L10n::text("app.config-not-moved").arg(L10n::describe(moved.error()));
        std::fprintf(stderr, "%s\n", warning.toLocal8Bit().constData());
    }

    // The parent is only asked when the arguments leave the role open.
    const bool fromDesktop =
        arguments.isEmpty() && isDesktopLauncher(dependencies.parentExecutablePath(), dependencies.desktopLaunchers());
    const Launch launch = decideLaunch(arguments, fromDesktop);

    switch (launch.mode) {
    case LaunchMode::Window: return GuiLibrary::run(GuiLibrary::Role::Window, argc, argv);
    case LaunchMode::Background: return GuiLibrary::run(GuiLibrary::Role::Background, argc, argv);
    case LaunchMode::FocusHelper: {
        // Without an explicit identifier the helper targets the pinned source.
        QString identifier = launch.focusIdentifier.value_or(QString());
        if (!launch.focusIdentifier)
            identifier = config.sourceID.value_or(QString());
        return GuiLibrary::run(GuiLibrary::Role::FocusHelper, argc, argv, identifier);
    }
    case LaunchMode::CommandLine: return runCommandLine(argc, argv, arguments, started);
    }
    return 1;
}

} // namespace Entry
