#include "platform/ParentProcess.h"

#include <libproc.h>
#include <unistd.h>

namespace ParentProcess {

QString executablePath()
{
    char buffer[1024] = {};
    if (proc_pidpath(getppid(), buffer, sizeof buffer) < 1)
        return {};
    return QString::fromUtf8(buffer);
}

// The parent stops a helper after its time limit; a parent that dies first
// leaves it to end by its own confirmation timer.
void endWithParent() {}

QStringList desktopLaunchers()
{
    return {QStringLiteral("launchd"), QStringLiteral("open"), QStringLiteral("Finder"), QStringLiteral("Dock")};
}

} // namespace ParentProcess
