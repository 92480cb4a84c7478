#pragma once

#include "platform/input/StackSetting.h"

#include <QList>
#include <QString>

// What an input stack tells of itself when the machine is checked.
struct StackReport
{
    // Whether the stack answered the report's first question: a name held on
    // the bus does not mean that its owner still answers. Nothing more is
    // asked of a stack that did not.
    enum class Reach { answered, absent, silent };
    Reach reach = Reach::answered;
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
