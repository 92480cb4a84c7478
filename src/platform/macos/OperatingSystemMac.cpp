#include "platform/OperatingSystem.h"

#include <QOperatingSystemVersion>

namespace OperatingSystem {

QString version()
{
    const QOperatingSystemVersion running = QOperatingSystemVersion::current();
    return QStringLiteral("%1.%2.%3")
        .arg(running.majorVersion())
        .arg(std::max(running.minorVersion(), 0))
        .arg(std::max(running.microVersion(), 0));
}

QString name()
{
    return QStringLiteral("macOS");
}

QString hardware()
{
    return QStringLiteral("Apple silicon");
}

QString textVariant()
{
    return QStringLiteral("macos");
}

} // namespace OperatingSystem
