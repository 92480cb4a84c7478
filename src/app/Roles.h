#pragma once

#include <QString>
#include <QStringList>

// One function per role of the executable; each creates its own application object.
int runGraphicalInstance(int &argc, char **argv, bool openWindowOnLaunch);
int runFocusHelper(int &argc, char **argv, const QString &identifier);
int runCommandLine(int &argc, char **argv, const QStringList &arguments);
