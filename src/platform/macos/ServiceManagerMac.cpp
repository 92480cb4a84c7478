#include "platform/ServiceManager.h"
#include "platform/login/LaunchdService.h"

#include <QDir>

#include <unistd.h>

ServiceManager ServiceManager::live()
{
    // The login-session domain is named after the real user id.
    return LaunchdService::manager(QDir::homePath(), getuid());
}
