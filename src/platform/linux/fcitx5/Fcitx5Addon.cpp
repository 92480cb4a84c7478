#include "platform/linux/fcitx5/Fcitx5Addon.h"

#include "platform/linux/dbus/DBusBuses.h"

namespace Fcitx5Addon {

bool present()
{
    return DBusBuses::sessionHas(service);
}

} // namespace Fcitx5Addon
