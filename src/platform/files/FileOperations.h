#pragma once

#include "base/Expected.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>

#include <functional>
#include <optional>

// The file operations the login agent performs, replaceable one by one so
// that a test can make any step fail. Errors are POSIX errors with the path.
struct FileOperations
{
    // Standardised, with every symbolic link resolved as far as the path exists.
    std::function<QString(const QString &path)> resolve;
    // A regular file (after following links) that we may execute.
    std::function<bool(const QString &path)> isExecutableFile;
    // Something is there, following a final link.
    std::function<bool(const QString &path)> exists;
    std::function<Expected<bool>(const QString &path)> isDirectory;
    std::function<Expected<QByteArray>(const QString &path)> read;
    // The destination of the symbolic link at the path, as written; none when
    // the path is not a link.
    std::function<std::optional<QString>(const QString &path)> readLink;
    // The folder and every missing parent.
    std::function<Expected<void>(const QString &path)> makeDirectories;
    // Through a temporary file and a rename, so the file is never seen half written.
    // A symbolic link at the path is written through: its destination is replaced.
    std::function<Expected<void>(const QString &path, const QByteArray &bytes)> writeAtomically;
    // The temporary files that interrupted writeAtomically calls on the path left
    // behind; only while no other writer of the path can be at work.
    std::function<void(const QString &path)> removeLeftovers;
    // When the file was last written; none when nothing is there.
    std::function<std::optional<QDateTime>(const QString &path)> modified;
    std::function<Expected<void>(const QString &link, const QString &destination)> createLink;
    // A file or a link (never what it points to); ENOENT when nothing is there.
    std::function<Expected<void>(const QString &path)> remove;

    static FileOperations live();
};
