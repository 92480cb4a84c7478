#pragma once

#include "platform/input/StackSetting.h"

#include <QList>
#include <QString>

// What an input stack tells of itself when the machine is checked.
struct StackReport
{
    // Empty when the stack does not tell.
    QString version = {};
    QList<StackSetting> settings = {};
    // The desktop's companion (GNOME: Tolvar's shell extension): where its
    // files are, whether the desktop is told to run it, and the error the
    // desktop gave it. Empty where the stack needs none.
    QString companionPath = {};
    bool companionEnabled = false;
    QString companionError = {};
};
