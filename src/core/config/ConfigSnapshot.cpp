#include "core/config/ConfigSnapshot.h"

#include "core/config/ConfigStore.h"

#include <QDateTime>

#include <utility>

ConfigSnapshot::ConfigSnapshot(QString directory)
    : m_directory(std::move(directory))
    , m_file(ConfigStore::fileIn(m_directory))
{}

Expected<Config> ConfigSnapshot::read()
{
    const std::optional<FileBytes::Stamp> stamp = FileBytes::stamp(m_file);
    m_lookedAt = std::chrono::steady_clock::now();
    if (m_last && m_settled && stamp == m_stamp)
        return *m_last;
    m_stamp = stamp;
    m_settled = !stamp || QDateTime::currentMSecsSinceEpoch() - stamp->modified / 1'000'000 > 1000;
    m_last = ConfigStore::loadFrom(m_directory);
    return *m_last;
}

Expected<Config> ConfigSnapshot::recent()
{
    using namespace std::chrono_literals;
    if (m_last && std::chrono::steady_clock::now() - m_lookedAt < 500ms)
        return *m_last;
    return read();
}

void ConfigSnapshot::forget()
{
    m_last.reset();
}

ConfigSnapshot &ConfigSnapshot::shared()
{
    // Lives as long as the process, like the engine and the model that share it.
    static ConfigSnapshot *snapshot = new ConfigSnapshot(ConfigStore::directory());
    return *snapshot;
}
