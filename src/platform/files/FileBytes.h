#pragma once

#include "base/Expected.h"

#include <QByteArray>
#include <QString>

namespace FileBytes {

// The whole file, or the POSIX error (ENOENT when it does not exist). Anything
// but a regular file is refused at once.
Expected<QByteArray> read(const QString &path);

} // namespace FileBytes
