#pragma once

#include <QDBusMessage>
#include <QtGlobal>

// What a failed D-Bus call to select a source means for InputSources::select:
// the service is gone, it did not answer in time, or it declined.
namespace SelectStatus {

qint32 ofError(const QDBusMessage &reply);

} // namespace SelectStatus
