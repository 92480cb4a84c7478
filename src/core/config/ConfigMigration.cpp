#include "core/config/ConfigMigration.h"

#include "core/config/ConfigStore.h"
#include "platform/AppPlaces.h"
#include "platform/files/LockFile.h"

#include <QDir>

namespace ConfigMigration {
namespace {

// Lock files hold nothing; the folder goes once it is empty. Whatever stays is harmless.
void tidy(const QString &from, const FileOperations &files)
{
    static_cast<void>(files.remove(ConfigStore::lockFileIn(from)));
    static_cast<void>(files.remove(QDir(from).filePath(QStringLiteral("gui.lock"))));
    QDir().rmdir(from);
}

Expected<Outcome> moveLocked(const QString &from, const QString &to, const FileOperations &files)
{
    const QString oldFile = ConfigStore::fileIn(from);
    const QString newFile = ConfigStore::fileIn(to);
    if (!files.exists(oldFile))
        return Outcome::NothingToMove;
    const Expected<QByteArray> bytes = files.read(oldFile);
    if (!bytes)
        return bytes.error();

    // A tie goes to the file in today's place: it is what a cut-short move left.
    const std::optional<QDateTime> oldTime = files.modified(oldFile);
    const std::optional<QDateTime> newTime = files.modified(newFile);
    const bool keepNew = newTime && (!oldTime || *newTime >= *oldTime);
    if (!keepNew) {
        if (const Expected<void> written = files.writeAtomically(newFile, bytes.value()); !written)
            return written.error();
    }
    if (const Expected<void> removed = files.remove(oldFile); !removed)
        return removed.error();
    tidy(from, files);
    return keepNew ? Outcome::KeptNewer : Outcome::Moved;
}

} // namespace

Expected<Outcome> run(const QString &from, const QString &to, const FileOperations &files)
{
    if (!files.exists(ConfigStore::fileIn(from)))
        return Outcome::NothingToMove;
    if (const Expected<void> made = files.makeDirectories(to); !made)
        return made.error();
    Expected<LockFile> lock = LockFile::open(ConfigStore::lockFileIn(to), LockFile::Access::ReadWriteCreate);
    if (!lock)
        return lock.error();
    if (const Expected<void> locked = lock.value().lockExclusive(); !locked)
        return locked.error();
    return moveLocked(from, to, files);
}

Expected<Outcome> runLive()
{
    const std::optional<QString> from = AppPlaces::earlierConfigDirectory();
    if (!from || QDir::cleanPath(*from) == QDir::cleanPath(ConfigStore::directory()))
        return Outcome::NothingToMove;
    return run(*from, ConfigStore::directory());
}

} // namespace ConfigMigration
