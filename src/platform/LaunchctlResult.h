#pragma once

#include <QString>

// One finished run of the service manager's command-line tool.
struct LaunchctlResult
{
    int status = 1;
    // Everything it wrote to its standard output.
    QString output;

    bool operator==(const LaunchctlResult &) const = default;
};
