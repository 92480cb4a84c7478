#include "core/config/ConfigSnapshot.h"

#include "core/config/ConfigStore.h"

#include <QFileInfo>
#include <QTimeZone>

#include <utility>

namespace {

// In UTC where Qt can say so directly: local time looks at the system's zone
// file again at each call.
QDateTime modified(const QFileInfo &file)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 6, 0)
    return file.lastModified(QTimeZone::UTC);
#else
    return file.lastModified();
#endif
}

} // namespace

ConfigSnapshot::ConfigSnapshot(QString directory)
    : m_directory(std::move(directory))
{}

Expected<Config> ConfigSnapshot::read()
{
    const QString directory = m_directory.isEmpty() ? ConfigStore::directory() : m_directory;
    const QFileInfo file(ConfigStore::fileIn(directory));
    // One stat answers all three.
    const bool exists = file.exists();
    const Stamp stamp{file.filePath(), exists ? modified(file) : QDateTime(), exists ? file.size() : -1};
    m_lookedAt = std::chrono::steady_clock::now();
    if (m_last && m_settled && stamp == m_stamp)
        return *m_last;
    m_stamp = stamp;
    m_settled = !exists || stamp.time.msecsTo(QDateTime::currentDateTimeUtc()) > 1000;
    m_last = ConfigStore::loadFrom(directory);
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
    static ConfigSnapshot *snapshot = new ConfigSnapshot;
    return *snapshot;
}
