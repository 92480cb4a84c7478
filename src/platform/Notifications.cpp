#include "platform/Notifications.h"

Notifications Notifications::none()
{
    return {[](const QString &) {}, [](const QString &, QObject *, std::function<void()>) { return false; }};
}
