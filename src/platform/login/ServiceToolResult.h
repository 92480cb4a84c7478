#pragma once

#include <QString>

// One finished run of the service manager's command-line tool.
struct ServiceToolResult
{
    int status = 1;
    // Everything it wrote to its standard output.
    QString output;

    bool operator==(const ServiceToolResult &) const = default;
};
