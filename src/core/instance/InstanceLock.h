#pragma once

#include "base/Expected.h"
#include "core/instance/InstanceOwner.h"
#include "platform/files/LockFile.h"

#include <QString>

#include <optional>

// Only one graphical instance runs per user: it holds an exclusive lock on
// "gui.lock" for as long as it lives. The kernel drops the lock when the
// process ends, however it ends, so a crash never leaves a stale lock.
class InstanceLock
{
public:
    // directory + "gui.lock".
    static QString fileIn(const QString &directory);

    // True when this object now holds the lock, false when another process does.
    // Creates the file and its folder when missing, and once held writes
    // `owner` into it: the one thing the file holds.
    Expected<bool> acquire(const QString &path, const InstanceOwner &owner = InstanceOwner::current());
    // Whether some process holds the lock, testing it for an instant only.
    // Never creates anything.
    static Expected<bool> isHeld(const QString &path);
    // The file's text while some process holds the lock; none while nobody does.
    static Expected<std::optional<QByteArray>> holder(const QString &path);

    bool holds() const { return m_lock.has_value(); }

private:
    // Released with this object.
    std::optional<LockFile> m_lock;
};
