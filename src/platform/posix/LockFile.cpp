#include "platform/files/LockFile.h"

#include "platform/posix/RegularFile.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <utility>

Expected<LockFile> LockFile::open(const QString &path, Access access)
{
    const int flags = access == Access::ReadWriteCreate ? O_RDWR | O_CREAT | O_NOFOLLOW : O_RDONLY | O_NOFOLLOW;
    const Expected<int> descriptor = RegularFile::open(path, flags);
    if (!descriptor)
        return descriptor.error();
    return LockFile(descriptor.value(), path);
}

LockFile::LockFile(int descriptor, QString path)
    : m_descriptor(descriptor)
    , m_path(std::move(path))
{}

LockFile::LockFile(LockFile &&other) noexcept
    : m_descriptor(std::exchange(other.m_descriptor, -1))
    , m_path(std::move(other.m_path))
{}

LockFile &LockFile::operator=(LockFile &&other) noexcept
{
    if (this != &other) {
        close();
        m_descriptor = std::exchange(other.m_descriptor, -1);
        m_path = std::move(other.m_path);
    }
    return *this;
}

LockFile::~LockFile()
{
    close();
}

Expected<void> LockFile::lockExclusive()
{
    while (::flock(m_descriptor, LOCK_EX) != 0) {
        if (errno != EINTR)
            return Error::posix(errno, m_path);
    }
    return {};
}

Expected<LockFile::Attempt> LockFile::tryLock(Mode mode)
{
    const int operation = (mode == Mode::Exclusive ? LOCK_EX : LOCK_SH) | LOCK_NB;
    if (::flock(m_descriptor, operation) == 0)
        return Attempt::Locked;
    if (errno == EWOULDBLOCK)
        return Attempt::Busy;
    return Error::posix(errno, m_path);
}

Expected<bool> LockFile::isRegularFile() const
{
    struct stat info
    {
    };
    if (::fstat(m_descriptor, &info) != 0)
        return Error::posix(errno, m_path);
    return S_ISREG(info.st_mode);
}

Expected<QByteArray> LockFile::contents() const
{
    QByteArray bytes;
    char chunk[512];
    for (off_t at = 0;;) {
        const ssize_t read = ::pread(m_descriptor, chunk, sizeof chunk, at);
        if (read < 0 && errno == EINTR)
            continue;
        if (read < 0)
            return Error::posix(errno, m_path);
        if (read == 0)
            return bytes;
        bytes.append(chunk, read);
        at += read;
    }
}

Expected<void> LockFile::replaceContents(const QByteArray &bytes)
{
    if (::ftruncate(m_descriptor, 0) != 0)
        return Error::posix(errno, m_path);
    for (qsizetype written = 0; written < bytes.size();) {
        const ssize_t wrote = ::pwrite(m_descriptor, bytes.constData() + written, bytes.size() - written, written);
        if (wrote < 0 && errno == EINTR)
            continue;
        if (wrote < 0)
            return Error::posix(errno, m_path);
        written += wrote;
    }
    return {};
}

void LockFile::unlock()
{
    if (m_descriptor >= 0)
        ::flock(m_descriptor, LOCK_UN);
}

void LockFile::close()
{
    if (m_descriptor >= 0) {
        ::flock(m_descriptor, LOCK_UN);
        ::close(m_descriptor);
        m_descriptor = -1;
    }
}
