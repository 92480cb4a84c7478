#include "core/instance/InstanceLock.h"

#include "platform/files/FileOperations.h"

#include <QDir>
#include <QFileInfo>

#include <cerrno>

QString InstanceLock::fileIn(const QString &directory)
{
    return QDir(directory).filePath(QStringLiteral("gui.lock"));
}

Expected<bool> InstanceLock::acquire(const QString &path, const InstanceOwner &owner)
{
    if (m_lock)
        return true;
    const QString directory = QFileInfo(path).absolutePath();
    if (const Expected<void> created = FileOperations::live().makeDirectories(directory); !created)
        return created.error();

    Expected<LockFile> file = LockFile::open(path, LockFile::Access::ReadWriteCreate);
    if (!file)
        return file.error();
    const Expected<LockFile::Attempt> attempt = file.value().tryLock(LockFile::Mode::Exclusive);
    if (!attempt)
        return attempt.error();
    if (attempt.value() == LockFile::Attempt::Busy)
        return false;
    m_lock = std::move(file).value();
    // Only a check of the machine reads it: the lock holds without it.
    (void)m_lock->replaceContents(owner.encoded());
    return true;
}

Expected<bool> InstanceLock::isHeld(const QString &path)
{
    const Expected<std::optional<QByteArray>> text = holder(path);
    if (!text)
        return text.error();
    return text.value().has_value();
}

Expected<std::optional<QByteArray>> InstanceLock::holder(const QString &path)
{
    Expected<LockFile> file = LockFile::open(path, LockFile::Access::ReadOnly);
    if (!file) {
        // No instance has ever run here.
        if (file.error().code() == ENOENT)
            return std::optional<QByteArray>();
        return file.error();
    }
    const Expected<bool> regular = file.value().isRegularFile();
    if (!regular)
        return regular.error();
    if (!regular.value())
        return Error::posix(EINVAL, path);

    // A shared lock only succeeds while nobody holds the exclusive one.
    const Expected<LockFile::Attempt> attempt = file.value().tryLock(LockFile::Mode::Shared);
    if (!attempt)
        return attempt.error();
    if (attempt.value() == LockFile::Attempt::Busy) {
        const Expected<QByteArray> text = file.value().contents();
        return std::optional(text ? text.value() : QByteArray());
    }
    file.value().unlock();
    return std::optional<QByteArray>();
}
