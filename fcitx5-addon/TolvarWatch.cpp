#include "TolvarWatch.h"

#include <dbus_public.h>
#include <fcitx/event.h>
#include <fcitx/inputcontext.h>

namespace {

// Tolvar's own namespace on the bus, as its GNOME Shell extension uses it.
const char *const busName = "app.tolvar.Fcitx5";
const char *const objectPath = "/app/tolvar/Fcitx5";
const char *const interfaceName = "app.tolvar.Fcitx5Watch1";

} // namespace

void TolvarWatchObject::update(const std::string &name)
{
    if (name == m_last)
        return;
    m_last = name;
    if (isRegistered())
        currentChanged(m_last);
}

TolvarWatch::TolvarWatch(fcitx::Instance *instance)
    : m_instance(instance)
{
    fcitx::dbus::Bus *bus = dbus()->call<fcitx::IDBusModule::bus>();
    bus->addObjectVTable(objectPath, interfaceName, m_object);
    // Taken last, so that whoever sees the name finds the object answering.
    bus->requestName(busName, fcitx::Flags<fcitx::dbus::RequestNameFlag>());
    m_object.update(m_instance->currentInputMethod());
    watch(fcitx::EventType::InputContextSwitchInputMethod);
    watch(fcitx::EventType::InputContextFocusIn);
    watch(fcitx::EventType::InputMethodGroupChanged);
}

void TolvarWatch::watch(fcitx::EventType type)
{
    m_watchers.push_back(
        m_instance->watchEvent(type, fcitx::EventWatcherPhase::PostInputMethod, [this, type](fcitx::Event &event) {
            if (type == fcitx::EventType::InputMethodGroupChanged) {
                m_object.groupsChanged();
                m_object.update(m_instance->currentInputMethod());
                return;
            }
            auto *context = static_cast<fcitx::InputContextEvent &>(event).inputContext();
            // A context in the background switching is not what the user types with.
            if (context->hasFocus() || context == m_instance->mostRecentInputContext())
                m_object.update(m_instance->inputMethod(context));
        }));
}

FCITX_ADDON_FACTORY(TolvarWatchFactory);
