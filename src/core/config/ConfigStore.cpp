#include "core/config/ConfigStore.h"

#include "platform/AppPlaces.h"
#include "platform/FileBytes.h"
#include "platform/FileOperations.h"
#include "platform/LockFile.h"

#include <QDir>

#include <cerrno>

namespace ConfigStore {
namespace {

Expected<void> writeUnlocked(const Config &config, const QString &directory)
{
    // Written beside the target and renamed into place, so readers never see half a file.
    return FileOperations::live().writeAtomically(fileIn(directory), config.encoded());
}

template <typename Body> auto withExclusiveLock(const QString &directory, Body body) -> decltype(body())
{
    if (const Expected<void> created = FileOperations::live().makeDirectories(directory); !created)
        return created.error();
    Expected<LockFile> lock = LockFile::open(lockFileIn(directory), LockFile::Access::ReadWriteCreate);
    if (!lock)
        return lock.error();
    if (const Expected<void> locked = lock.value().lockExclusive(); !locked)
        return locked.error();
    // The lock is released when `lock` goes out of scope, after the body.
    return body();
}

} // namespace

QString directory()
{
    return AppPlaces::configDirectory();
}

QString file()
{
    return fileIn(directory());
}

QString fileIn(const QString &directory)
{
    return QDir(directory).filePath(QStringLiteral("config.json"));
}

QString lockFileIn(const QString &directory)
{
    return QDir(directory).filePath(QStringLiteral("config.lock"));
}

Expected<Config> load()
{
    return loadFrom(directory());
}

Expected<Config> loadFrom(const QString &directory)
{
    const QString path = fileIn(directory);
    const Expected<QByteArray> bytes = FileBytes::read(path);
    if (!bytes)
        return bytes.error().code() == ENOENT ? Expected<Config>(Config{}) : bytes.error();
    return Config::decode(bytes.value(), path);
}

Config loadOrDefault(const QString &configDirectory)
{
    const Expected<Config> config = loadFrom(configDirectory);
    return config ? config.value() : Config{};
}

Expected<void> save(const Config &config, const Notifications &notifications)
{
    Expected<void> written = write(config, directory());
    if (written)
        notifications.post(changed);
    return written;
}

Expected<Config> mutate(const QString &directory, const Edit &edit, const Notifications &notifications)
{
    Expected<Config> result = withExclusiveLock(directory, [&]() -> Expected<Config> {
        Expected<Config> current = loadFrom(directory);
        if (!current)
            return current;
        Config config = current.value();
        if (const Expected<void> edited = edit(config); !edited)
            return edited.error();
        if (const Expected<void> written = writeUnlocked(config, directory); !written)
            return written.error();
        return config;
    });
    if (result)
        notifications.post(changed);
    return result;
}

Expected<void> write(const Config &config, const QString &directory)
{
    return withExclusiveLock(directory, [&] { return writeUnlocked(config, directory); });
}

} // namespace ConfigStore
