#include "platform/files/FileBytes.h"

#include "platform/posix/RegularFile.h"

#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace FileBytes {

Expected<QByteArray> read(const QString &path)
{
    const Expected<int> opened = RegularFile::open(path, O_RDONLY);
    if (!opened)
        return opened.error();
    const int descriptor = opened.value();
    QByteArray bytes;
    char buffer[16384];
    for (;;) {
        const ssize_t count = ::read(descriptor, buffer, sizeof buffer);
        if (count == 0)
            break;
        if (count < 0) {
            if (errno == EINTR)
                continue;
            const int code = errno;
            ::close(descriptor);
            return Error::posix(code, path);
        }
        bytes.append(buffer, count);
    }
    ::close(descriptor);
    return bytes;
}

std::optional<Stamp> stamp(const QString &path)
{
    struct stat status = {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0)
        return std::nullopt;
#ifdef __APPLE__
    const timespec &modified = status.st_mtimespec;
#else
    const timespec &modified = status.st_mtim;
#endif
    return Stamp{qint64(modified.tv_sec) * 1'000'000'000 + modified.tv_nsec, qint64(status.st_size)};
}

} // namespace FileBytes
