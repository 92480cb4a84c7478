#pragma once

#include "base/Expected.h"

#include <QByteArray>
#include <QString>

// An open descriptor on an advisory lock file. The lock dies with the
// descriptor, so a crashed holder never leaves a stale lock behind.
class LockFile
{
public:
    enum class Access { ReadWriteCreate, ReadOnly };
    enum class Mode { Exclusive, Shared };
    enum class Attempt { Locked, Busy };

    // Never follows a symbolic link at the last component and refuses anything
    // but a regular file; created files get 0600.
    static Expected<LockFile> open(const QString &path, Access access);

    LockFile(LockFile &&other) noexcept;
    LockFile &operator=(LockFile &&other) noexcept;
    LockFile(const LockFile &) = delete;
    LockFile &operator=(const LockFile &) = delete;
    ~LockFile();

    // Waits for the exclusive lock; interrupted waits are resumed.
    Expected<void> lockExclusive();
    Expected<Attempt> tryLock(Mode mode);
    Expected<bool> isRegularFile() const;
    // The file's whole text, and in its place, for a lock whose holder leaves word of itself.
    Expected<QByteArray> contents() const;
    Expected<void> replaceContents(const QByteArray &bytes);
    void unlock();

    const QString &path() const { return m_path; }

private:
    LockFile(int descriptor, QString path);
    void close();

    int m_descriptor = -1;
    QString m_path;
};
