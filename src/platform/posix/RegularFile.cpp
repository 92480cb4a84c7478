#include "platform/posix/RegularFile.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace RegularFile {
namespace {

QString kind(mode_t mode)
{
    if (S_ISFIFO(mode))
        return QStringLiteral("a FIFO");
    if (S_ISSOCK(mode))
        return QStringLiteral("a socket");
    if (S_ISCHR(mode) || S_ISBLK(mode))
        return QStringLiteral("a device");
    return QStringLiteral("not a file");
}

Error refusal(int code, const QString &path)
{
    // O_NOFOLLOW reports a link as a loop of links; say what it is.
    if (code == ELOOP)
        return Error::posix(code, path, QStringLiteral("is a symbolic link, which is not followed here"))
            .withWords("err.symlink", {path});
    return Error::posix(code, path);
}

} // namespace

Expected<int> open(const QString &path, int flags)
{
    const int descriptor = ::open(path.toLocal8Bit().constData(), flags | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, 0600);
    if (descriptor < 0)
        return refusal(errno, path);
    struct stat info
    {
    };
    if (::fstat(descriptor, &info) != 0) {
        const int code = errno;
        ::close(descriptor);
        return Error::posix(code, path);
    }
    if (!S_ISREG(info.st_mode)) {
        ::close(descriptor);
        if (S_ISDIR(info.st_mode))
            return Error::posix(EISDIR, path);
        return Error::posix(EINVAL, path, QStringLiteral("is %1, not a regular file").arg(kind(info.st_mode)))
            .withWords("err.not-regular", {path});
    }
    // Reads from a regular file never wait; clearing the flag keeps it that way for what follows.
    ::fcntl(descriptor, F_SETFL, ::fcntl(descriptor, F_GETFL) & ~O_NONBLOCK);
    return descriptor;
}

} // namespace RegularFile
