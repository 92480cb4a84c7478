#include "platform/ServiceManager.h"
#include "platform/login/SystemdService.h"
#include "platform/login/XdgAutostart.h"

#include <QDir>

ServiceManager ServiceManager::live()
{
    return XdgAutostart::manager(SystemdService::configHome(QDir::homePath(), qEnvironmentVariable("XDG_CONFIG_HOME")));
}
