#pragma once

#include <QString>

// One source the user may pin, as lists and menus show it.
struct InputChoice
{
    QString id;   // empty when the system gives none
    QString name; // the system's localised name; empty when it gives none

    bool operator==(const InputChoice &) const = default;
};
