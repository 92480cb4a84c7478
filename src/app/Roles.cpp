#include "Roles.h"

#include "FocusHelper.h"
#include "GraphicalInstance.h"
#include "core/cli/CLI.h"
#include "platform/ApplicationRole.h"

#include <QApplication>

int runGraphicalInstance(int &argc, char **argv, bool openWindowOnLaunch)
{
    ApplicationRole::useOffscreenWithoutDisplay();
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    GraphicalInstance instance(openWindowOnLaunch);
    switch (instance.launch()) {
    case GraphicalInstance::Launch::Running: return QApplication::exec();
    // A second launch has asked the first to show itself and ends quietly.
    case GraphicalInstance::Launch::HandedOver: return 0;
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
