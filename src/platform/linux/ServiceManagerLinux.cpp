#include "platform/ServiceManager.h"
#include "platform/SystemdService.h"

#include <QDir>

ServiceManager ServiceManager::live()
{
    return SystemdService::manager(
        SystemdService::configHome(QDir::homePath(), qEnvironmentVariable("XDG_CONFIG_HOME")));
}
