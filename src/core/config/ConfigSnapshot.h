#pragma once

#include "base/Expected.h"
#include "core/config/Config.h"

#include "platform/files/FileBytes.h"

#include <QString>

#include <chrono>
#include <optional>

// config.json as last read, read again only when its time or size moved: a
// look at a file nobody touched costs one stat. File times move in steps of a
// few milliseconds, so a file changed within the last second is read again
// until it is older.
class ConfigSnapshot
{
public:
    explicit ConfigSnapshot(QString directory);

    // Looks at the file: one stat, and a read only if it may have changed.
    Expected<Config> read();
    // What a look within the last half second saw, or a new look: the engine
    // looks at each of its turns, and the model that follows it need not.
    Expected<Config> recent();
    // After a write of our own, whose time may not have moved.
    void forget();

    // The one reader of the running program, on the main thread, shared by
    // the engine and the model so that a change is read once. Its folder is
    // fixed at the first call: a running program keeps its environment.
    static ConfigSnapshot &shared();

private:
    QString m_directory;
    QString m_file;
    std::optional<FileBytes::Stamp> m_stamp;
    std::optional<Expected<Config>> m_last;
    bool m_settled = false;
    std::chrono::steady_clock::time_point m_lookedAt;
};
