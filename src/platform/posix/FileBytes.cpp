#include "platform/files/FileBytes.h"

#include "platform/posix/RegularFile.h"

#include <cerrno>
#include <fcntl.h>
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

} // namespace FileBytes
