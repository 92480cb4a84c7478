#pragma once

#include "base/Expected.h"

#include <QString>

// Tolvar's own files are plain files. Anything else in their place (a FIFO, a
// socket, a device, a folder) is refused with an error that says what is there,
// before anything could wait on it.
namespace RegularFile {

// Opens without waiting for a FIFO's other end and without a controlling
// terminal; `flags` are open(2)'s. The descriptor, or the error with the path.
Expected<int> open(const QString &path, int flags);

} // namespace RegularFile
