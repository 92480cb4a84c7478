#include "platform/ServiceManager.h"
#include "platform/files/XdgConfigHome.h"
#include "platform/login/XdgAutostart.h"

#include <QDir>

ServiceManager ServiceManager::live()
{
    return XdgAutostart::manager(XdgConfigHome::of(QDir::homePath(), qEnvironmentVariable("XDG_CONFIG_HOME")));
}
