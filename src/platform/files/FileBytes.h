#pragma once

#include "base/Expected.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace FileBytes {

// The whole file, or the POSIX error (ENOENT when it does not exist). Anything
// but a regular file is refused at once.
Expected<QByteArray> read(const QString &path);

// When the file was last written and how long it is, from one stat.
struct Stamp
{
    // Nanoseconds since the epoch, in UTC: no time zone to look up.
    qint64 modified = 0;
    qint64 size = 0;
    bool operator==(const Stamp &) const = default;
};

// None when nothing is there, or it cannot be looked at.
std::optional<Stamp> stamp(const QString &path);

} // namespace FileBytes
