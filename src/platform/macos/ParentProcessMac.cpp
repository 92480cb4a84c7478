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

QStringList desktopLaunchers()
{
    return {QStringLiteral("launchd"), QStringLiteral("open"), QStringLiteral("Finder"), QStringLiteral("Dock")};
}

} // namespace ParentProcess
