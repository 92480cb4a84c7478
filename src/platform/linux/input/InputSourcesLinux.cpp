#include "platform/input/InputSources.h"
#include "platform/linux/dbus/DBusBuses.h"
#include "platform/linux/fcitx5/Fcitx5InputSources.h"
#include "platform/linux/gnome/GnomeInputSources.h"
#include "platform/linux/ibus/IBusAddress.h"
#include "platform/linux/ibus/IBusInputSources.h"
#include "platform/linux/input/LinuxInputBackend.h"
#include "platform/linux/plasma/PlasmaInputSources.h"
#include "platform/linux/plasma/X11ServerInputSources.h"

namespace {

// Without the session bus these stacks cannot be asked anything, and what they
// would say of their own silence would name the wrong culprit.
InputSources throughSessionBus(InputSources sources)
{
    sources.availability = [own = std::move(sources.availability)] {
        return DBusBuses::session() ? own() : InputSources::Availability::sessionBusUnreachable;
    };
    return sources;
}

InputSources forBackend(LinuxInputBackend::Kind kind)
{
    switch (kind) {
    case LinuxInputBackend::Kind::gnome: return throughSessionBus(GnomeInputSources::onSessionBus());
    case LinuxInputBackend::Kind::fcitx5: return throughSessionBus(Fcitx5InputSources::live());
    case LinuxInputBackend::Kind::plasma: return throughSessionBus(PlasmaInputSources::live());
    case LinuxInputBackend::Kind::x11: return X11ServerInputSources::live();
    case LinuxInputBackend::Kind::ibus: break;
    }
    return IBusInputSources::at(IBusAddress::published);
}

} // namespace

// One thread: each service made here, and everything it makes for an observer
// (D-Bus receivers, Fcitx5's polls, the X layout's notifier), lives on the
// main thread, where it is first asked for, and is called only there; an
// observer's context lives there too, and the observer is made as its child.
// Nothing is moved between threads and nothing here locks. The one piece of
// work sent elsewhere is IBus's connection attempt, on a thread of its own so
// that a daemon that hangs holds up only that thread (IBusBus). QtDBus reads
// the buses on its own thread and posts each signal to its receiver's.
InputSources InputSources::live()
{
    // Probed once, and one connection per process kept to the end: closing it
    // while static objects are torn down would race QtDBus's own shutdown.
    static const InputSources *const shared =
        new InputSources(forBackend(LinuxInputBackend::choose(LinuxInputBackend::probe())));
    return *shared;
}
