#include "platform/InputSources.h"
#include "platform/linux/Fcitx5InputSources.h"
#include "platform/linux/GnomeInputSources.h"
#include "platform/linux/IBusAddress.h"
#include "platform/linux/IBusInputSources.h"
#include "platform/linux/LinuxInputBackend.h"
#include "platform/linux/PlasmaInputSources.h"

namespace {

InputSources forBackend(LinuxInputBackend::Kind kind)
{
    switch (kind) {
    case LinuxInputBackend::Kind::gnome: return GnomeInputSources::onSessionBus();
    case LinuxInputBackend::Kind::fcitx5: return Fcitx5InputSources::live();
    case LinuxInputBackend::Kind::plasma: return PlasmaInputSources::live();
    case LinuxInputBackend::Kind::ibus: break;
    }
    return IBusInputSources::at(IBusAddress::published);
}

} // namespace

InputSources InputSources::live()
{
    // Probed once, and one connection per process kept to the end: closing it
    // while static objects are torn down would race QtDBus's own shutdown.
    static const InputSources *const shared =
        new InputSources(forBackend(LinuxInputBackend::choose(LinuxInputBackend::probe())));
    return *shared;
}
