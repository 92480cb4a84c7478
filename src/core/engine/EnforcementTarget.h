#pragma once

#include <QString>

// The pinned source as the engine needs it: its identifier and whether it
// must be selected through the focus helper (a CJKV source on a platform that
// applies those only when focus moves).
struct EnforcementTarget
{
    QString id;
    bool requiresFocus = false;

    bool operator==(const EnforcementTarget &) const = default;
};
