#include "platform/TrayHost.h"

TrayHost TrayHost::none()
{
    return {[](QObject *, std::function<void()>) {}};
}
