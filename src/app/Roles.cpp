#include "Roles.h"

#include "FocusHelper.h"
#include "core/CLI.h"

#include <QCoreApplication>
#include <QFile>
#include <QtGlobal>

#include <cstdio>

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
    // An application object without an event loop: enough for the session bus.
    const QCoreApplication application(argc, argv);
    QFile out;
    QFile err;
    out.open(stdout, QIODevice::WriteOnly);
    err.open(stderr, QIODevice::WriteOnly);
    return CLI::main(arguments, out, err);
}
