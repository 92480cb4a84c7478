#include "platform/LaunchdService.h"
#include "platform/ServiceManager.h"

#include <QDir>

#include <unistd.h>

ServiceManager ServiceManager::live()
{
    // The login-session domain is named after the real user id.
    return LaunchdService::manager(QDir::homePath(), getuid());
}
