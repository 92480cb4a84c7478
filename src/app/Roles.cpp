#include "Roles.h"

#include "FocusHelper.h"
#include "GraphicalInstance.h"
#include "core/cli/CLI.h"
#include "core/config/L10n.h"
#include "platform/ApplicationRole.h"
#include "platform/StandardStreams.h"

#include <QApplication>

#include <cstdio>

int runGraphicalInstance(int &argc, char **argv, bool openWindowOnLaunch)
{
    ApplicationRole::useOffscreenWithoutDisplay();
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    GraphicalInstance instance(openWindowOnLaunch);
    switch (instance.launch()) {
    case GraphicalInstance::Launch::Running: return QApplication::exec();
    // A second launch has asked the first to show itself. Started by hand, it
    // says so; a launcher shows nothing anyway.
    case GraphicalInstance::Launch::HandedOver:
        if (StandardStreams::outputIsTerminal())
            std::puts(qPrintable(L10n::text("cli.msg.handed-over")));
        return 0;
    case GraphicalInstance::Launch::LockFailed: return 1;
    }
    return 1;
}

int runFocusHelper(int &argc, char **argv, const QString &identifier)
{
    FocusHelper::run(argc, argv, identifier);
}

int runCommandLine(int &argc, char **argv, const QStringList &arguments)
{
    // The session bus and a one-shot switch need an application object; only
    // set and apply run its event loop.
    const QCoreApplication application(argc, argv);
    return CLI::main(arguments);
}
