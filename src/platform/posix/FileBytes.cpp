#include "platform/FileBytes.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace FileBytes {

Expected<QByteArray> read(const QString &path)
{
    const int descriptor = ::open(path.toLocal8Bit().constData(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
        return Error::posix(errno, path);
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

} // namespace FileBytes
