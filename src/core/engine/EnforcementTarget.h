#pragma once

#include <QString>

// The pinned source as the engine needs it: its identifier and whether it
// must be selected through the focus helper.
struct EnforcementTarget
{
    QString id;
    bool requiresFocus = false;

    bool operator==(const EnforcementTarget &) const = default;
};
