#include "platform/ServiceManager.h"
#include "platform/SystemdService.h"
#include "platform/XdgAutostart.h"

#include <QDir>

ServiceManager ServiceManager::live()
{
    return XdgAutostart::manager(SystemdService::configHome(QDir::homePath(), qEnvironmentVariable("XDG_CONFIG_HOME")));
}
