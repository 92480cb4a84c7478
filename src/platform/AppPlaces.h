#pragma once

#include <QString>

#include <optional>

// Where this program keeps its files, by this platform's conventions. HOME and
// the XDG variables decide it, read at each call.
namespace AppPlaces {

// config.json and config.lock.
QString configDirectory();
// gui.lock: the lock lives as long as the login session, like the instance it guards.
QString sessionLockDirectory();
// Where earlier versions kept config.json, when that differs from configDirectory().
std::optional<QString> earlierConfigDirectory();

} // namespace AppPlaces
