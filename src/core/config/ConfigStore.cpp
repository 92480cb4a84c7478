#include "core/config/ConfigStore.h"

#include "platform/AppPlaces.h"
#include "platform/files/FileBytes.h"
#include "platform/files/FileOperations.h"
#include "platform/files/LockFile.h"

#include <QDir>

#include <cerrno>
#include <optional>

namespace ConfigStore {
namespace {

// The file's bytes; none when nothing is there. A link to nothing is refused
// rather than read as a missing file, which the next write would create at the
// link's destination.
Expected<std::optional<QByteArray>> readExisting(const QString &path)
{
    const Expected<QByteArray> bytes = FileBytes::read(path);
    if (bytes)
        return std::optional(bytes.value());
    if (bytes.error().code() != ENOENT)
        return bytes.error();
    if (const std::optional<QString> destination = FileOperations::live().readLink(path))
        return Error::posix(ENOENT, path,
                            QStringLiteral("is a symbolic link to %1, which does not exist").arg(*destination))
            .withWords("err.dangling-link", {path, *destination});
    return std::optional<QByteArray>();
}

// The file's bytes, if any, and the configuration they hold.
struct Stored
{
    std::optional<QByteArray> bytes;
    Config config;
};

Expected<Stored> readStored(const QString &path)
{
    const Expected<std::optional<QByteArray>> bytes = readExisting(path);
    if (!bytes)
        return bytes.error();
    if (!bytes.value())
        return Stored{};
    const Expected<Config> config = Config::decode(*bytes.value(), path);
    if (!config)
        return config.error();
    return Stored{bytes.value(), config.value()};
}

// For a path already read under the lock.
Expected<void> replaceUnlocked(const Config &config, const QString &path)
{
    const FileOperations files = FileOperations::live();
    // Under the lock no other write is under way: any temporary file is a killed writer's.
    files.removeLeftovers(path);
    // Written beside the target and renamed into place, so readers never see half a file.
    return files.writeAtomically(path, config.encoded());
}

Expected<void> writeUnlocked(const Config &config, const QString &directory)
{
    const QString path = fileIn(directory);
    if (const auto existing = readExisting(path); !existing)
        return existing.error();
    return replaceUnlocked(config, path);
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
    const Expected<Stored> stored = readStored(fileIn(directory));
    if (!stored)
        return stored.error();
    return stored->config;
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
    bool unchanged = false;
    Expected<Config> result = withExclusiveLock(directory, [&]() -> Expected<Config> {
        const QString path = fileIn(directory);
        const Expected<Stored> stored = readStored(path);
        if (!stored)
            return stored.error();
        Config config = stored->config;
        if (const Expected<void> edited = edit(config); !edited)
            return edited.error();
        // A file that would come out byte for byte the same is left alone, and
        // nobody is told: a repeated set or resume costs no write.
        unchanged = stored->bytes && config.encoded() == *stored->bytes;
        if (unchanged)
            return config;
        if (const Expected<void> written = replaceUnlocked(config, path); !written)
            return written.error();
        return config;
    });
    if (result && !unchanged)
        notifications.post(changed);
    return result;
}

Expected<void> write(const Config &config, const QString &directory)
{
    return withExclusiveLock(directory, [&] { return writeUnlocked(config, directory); });
}

} // namespace ConfigStore
