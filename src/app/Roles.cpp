#include "Roles.h"

#include "FocusHelper.h"
#include "core/CLI.h"

#include <QCoreApplication>
#include <QtGlobal>

int runGraphicalInstance(int &argc, char **argv, bool openWindowOnLaunch)
{
    Q_UNUSED(argc);
    Q_UNUSED(argv);
    Q_UNUSED(openWindowOnLaunch);
    qWarning("tolvar: the graphical instance is not part of this build yet");
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
