#pragma once

#include "base/Expected.h"
#include "core/config/Config.h"

#include <QString>
#include <QStringList>

// One function per role of the executable; each creates its own application object.
int runGraphicalInstance(int &argc, char **argv, bool openWindowOnLaunch);
int runFocusHelper(int &argc, char **argv, const QString &identifier);
// `started`: config.json as the process read it on starting.
int runCommandLine(int &argc, char **argv, const QStringList &arguments, const Expected<Config> &started);
