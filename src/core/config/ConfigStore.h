#pragma once

#include "base/Expected.h"
#include "core/config/Config.h"
#include "platform/Notifications.h"

#include <QString>

#include <functional>

// Owns config.json: where it lives, its format, and the one way to change it.
// Writers in every process are serialised by an exclusive lock on a sidecar
// file; readers take no lock and always see a whole file.
namespace ConfigStore {

inline const QString changed = QStringLiteral("app.tolvar.configChanged");
inline const QString openWindow = QStringLiteral("app.tolvar.openWindow");

// $XDG_CONFIG_HOME/tolvar on Linux, HOME + "Library/Application Support/Tolvar" on macOS.
QString directory();
QString file();
QString fileIn(const QString &directory);
QString lockFileIn(const QString &directory);

// The default record when no file exists; read and decode errors are returned.
Expected<Config> load();
Expected<Config> loadFrom(const QString &directory);
// Any failure reads as the default record, for callers that must keep going.
Config loadOrDefault(const QString &configDirectory = directory());

using Edit = std::function<Expected<void>(Config &)>;

Expected<void> save(const Config &config, const Notifications &notifications = Notifications::live());
// Locked read-modify-write. A failed read, decode or edit writes nothing.
Expected<Config> mutate(const QString &directory, const Edit &edit,
                        const Notifications &notifications = Notifications::live());
// Locked write without announcing it.
Expected<void> write(const Config &config, const QString &directory);

} // namespace ConfigStore
