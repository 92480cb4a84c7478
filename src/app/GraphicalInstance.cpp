#include "GraphicalInstance.h"

#include "core/config/ConfigStore.h"
#include "core/engine/Enforcer.h"
#include "platform/AppPlaces.h"
#include "platform/ApplicationRole.h"
#include "platform/Notifications.h"

#include <cstdio>

GraphicalInstance::GraphicalInstance(bool openWindowOnLaunch)
    : m_openWindowOnLaunch(openWindowOnLaunch)
{}

GraphicalInstance::Launch GraphicalInstance::launch()
{
    ApplicationRole::becomeAccessory();
    if (const Launch adopted = adoptExistingInstance(); adopted != Launch::Running)
        return adopted;

    Enforcer &enforcer = Enforcer::shared();
    enforcer.start();
    if (ConfigStore::loadOrDefault().enabled)
        enforcer.enforce(true, false);

    Notifications::live().observe(ConfigStore::openWindow, this, [this] { showWindow(); });
    if (m_openWindowOnLaunch)
        showWindow();
    return Launch::Running;
}

GraphicalInstance::Launch GraphicalInstance::adoptExistingInstance()
{
    const Expected<bool> acquired = m_instanceLock.acquire(InstanceLock::fileIn(AppPlaces::sessionLockDirectory()));
    if (!acquired) {
        std::fprintf(stderr, "tolvar: %s\n", qPrintable(acquired.error().description()));
        return Launch::LockFailed;
    }
    if (!acquired.value()) {
        Notifications::live().post(ConfigStore::openWindow);
        return Launch::HandedOver;
    }
    return Launch::Running;
}

void GraphicalInstance::showWindow()
{
    // The panel and its window come with the tray interface; until then the
    // instance keeps the pinned source without one.
}
