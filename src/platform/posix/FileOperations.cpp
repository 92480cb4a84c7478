#include "platform/files/FileOperations.h"

#include "platform/files/FileBytes.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSaveFile>

#include <cerrno>
#include <filesystem>
#include <system_error>

namespace fs = std::filesystem;

namespace {

fs::path native(const QString &path)
{
    return fs::path(QFile::encodeName(path).toStdString());
}

QString fromNative(const fs::path &path)
{
    return QFile::decodeName(QByteArray::fromStdString(path.native()));
}

Expected<void> result(const std::error_code &code, const QString &path)
{
    if (code)
        return Error::posix(code.value(), path);
    return {};
}

// The operations on the real file system.
namespace disk {

QString resolve(const QString &path)
{
    std::error_code code;
    const fs::path absolute = fs::absolute(native(path), code);
    if (code)
        return QDir::cleanPath(path);
    const fs::path resolved = fs::weakly_canonical(absolute, code);
    return QDir::cleanPath(fromNative(code ? absolute : resolved));
}

bool isExecutableFile(const QString &path)
{
    const QFileInfo info(path);
    return info.isFile() && info.isExecutable();
}

bool exists(const QString &path)
{
    std::error_code code;
    return fs::exists(native(path), code);
}

Expected<bool> isDirectory(const QString &path)
{
    std::error_code code;
    const fs::file_status status = fs::status(native(path), code);
    if (code)
        return Error::posix(code.value(), path);
    return fs::is_directory(status);
}

std::optional<QString> readLink(const QString &path)
{
    std::error_code code;
    const fs::path destination = fs::read_symlink(native(path), code);
    if (code)
        return std::nullopt;
    return fromNative(destination);
}

Expected<void> makeDirectories(const QString &path)
{
    std::error_code code;
    fs::create_directories(native(path), code);
    return result(code, path);
}

Expected<void> writeAtomically(const QString &path, const QByteArray &bytes)
{
    QSaveFile file(path);
    errno = 0;
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
        return Error::posix(errno != 0 ? errno : EIO, path);
    return {};
}

// QSaveFile writes beside the final destination of a link, into "<name>.XXXXXX".
void removeLeftovers(const QString &path)
{
    QFileInfo target(path);
    for (int depth = 0; depth < 32 && target.isSymLink(); ++depth)
        target.setFile(target.symLinkTarget());
    const QRegularExpression temporary(QRegularExpression::anchoredPattern(QRegularExpression::escape(target.fileName())
                                                                           + QStringLiteral("\\.[A-Za-z0-9]{6}")));
    QDirIterator entries(target.absolutePath(), QDir::Files | QDir::Hidden | QDir::NoSymLinks);
    while (entries.hasNext()) {
        const QString entry = entries.next();
        if (temporary.match(entries.fileName()).hasMatch())
            QFile::remove(entry);
    }
}

std::optional<QDateTime> modified(const QString &path)
{
    const QFileInfo info(path);
    if (!info.exists())
        return std::nullopt;
    return info.lastModified().toUTC();
}

Expected<void> createLink(const QString &link, const QString &destination)
{
    std::error_code code;
    fs::create_symlink(native(destination), native(link), code);
    return result(code, link);
}

Expected<void> remove(const QString &path)
{
    std::error_code code;
    if (!fs::remove(native(path), code) && !code)
        return Error::posix(ENOENT, path);
    return result(code, path);
}

} // namespace disk
} // namespace

FileOperations FileOperations::live()
{
    return {
        .resolve = disk::resolve,
        .isExecutableFile = disk::isExecutableFile,
        .exists = disk::exists,
        .isDirectory = disk::isDirectory,
        .read = FileBytes::read,
        .readLink = disk::readLink,
        .makeDirectories = disk::makeDirectories,
        .writeAtomically = disk::writeAtomically,
        .removeLeftovers = disk::removeLeftovers,
        .modified = disk::modified,
        .createLink = disk::createLink,
        .remove = disk::remove,
    };
}
