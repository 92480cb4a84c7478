#pragma once

#include <fcitx-utils/dbus/objectvtable.h>
#include <fcitx/addonfactory.h>
#include <fcitx/addoninstance.h>
#include <fcitx/addonmanager.h>
#include <fcitx/instance.h>

#include <memory>
#include <string>
#include <vector>

// What Tolvar asks of Fcitx5 on the session bus, under a name of its own so
// that Tolvar sees the addon come and go: the current input method's unique
// name, and a signal whenever it or the groups change. Fcitx5's controller
// announces neither. Nothing here changes an input method or sees a key.
class TolvarWatchObject : public fcitx::dbus::ObjectVTable<TolvarWatchObject>
{
public:
    std::string current() { return m_last; }
    // Sends CurrentChanged when `name` differs from what was last sent.
    void update(const std::string &name);

private:
    std::string m_last;

    FCITX_OBJECT_VTABLE_METHOD(current, "Current", "", "s");
    FCITX_OBJECT_VTABLE_SIGNAL(currentChanged, "CurrentChanged", "s")

public:
    FCITX_OBJECT_VTABLE_SIGNAL(groupsChanged, "GroupsChanged", "")
};

class TolvarWatch : public fcitx::AddonInstance
{
public:
    explicit TolvarWatch(fcitx::Instance *instance);

private:
    void watch(fcitx::EventType type);

    fcitx::Instance *m_instance;
    TolvarWatchObject m_object;
    std::vector<std::unique_ptr<fcitx::HandlerTableEntry<fcitx::EventHandler>>> m_watchers;

    FCITX_ADDON_DEPENDENCY_LOADER(dbus, m_instance->addonManager())
};

class TolvarWatchFactory : public fcitx::AddonFactory
{
public:
    fcitx::AddonInstance *create(fcitx::AddonManager *manager) override { return new TolvarWatch(manager->instance()); }
};
