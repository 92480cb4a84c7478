#pragma once

#include <QString>

// The windowed roles of the executable, in the graphical library; each creates
// its own application object.
int runGraphicalInstance(int &argc, char **argv, bool openWindowOnLaunch);
int runFocusHelper(int &argc, char **argv, const QString &identifier);
