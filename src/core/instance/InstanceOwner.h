#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

// The running instance as it describes itself in the instance lock's file,
// so that a command can tell an instance left over from another version.
struct InstanceOwner
{
    std::optional<QString> version = {};
    std::optional<qint64> build = {};
    qint64 pid = 0;

    // "version=…", "build=…" and "pid=…" lines, the unknown left out.
    QByteArray encoded() const;
    // Unknown lines are skipped; none for text without a process id, as
    // versions that did not describe themselves leave the file empty.
    static std::optional<InstanceOwner> parse(const QByteArray &text);
    // This process.
    static InstanceOwner current();

    bool operator==(const InstanceOwner &) const = default;
};
