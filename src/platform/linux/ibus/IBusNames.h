#pragma once

#include <QString>

// Where IBus's objects live on its bus.
namespace IBusNames {

inline const QString service = QStringLiteral("org.freedesktop.IBus");
inline const QString path = QStringLiteral("/org/freedesktop/IBus");
inline const QString interface = QStringLiteral("org.freedesktop.IBus");

// The configuration service keeps the user's IBus settings.
inline const QString configService = QStringLiteral("org.freedesktop.IBus.Config");
inline const QString configPath = QStringLiteral("/org/freedesktop/IBus/Config");
inline const QString configInterface = QStringLiteral("org.freedesktop.IBus.Config");

} // namespace IBusNames
