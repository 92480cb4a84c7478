#pragma once

#include "base/Expected.h"
#include "platform/files/FileOperations.h"

#include <QString>

// Moves config.json from the folder earlier versions used into today's, once.
// The bytes move unchanged, a newer file already in place is never
// overwritten, and a move cut short is finished at the next start: the copy is
// made before the original is removed.
namespace ConfigMigration {

enum class Outcome { NothingToMove, Moved, KeptNewer };

// Holds today's configuration lock meanwhile. An old file that cannot be read
// is left where it is, and its error returned.
Expected<Outcome> run(const QString &from, const QString &to, const FileOperations &files = FileOperations::live());

// From AppPlaces::earlierConfigDirectory() into ConfigStore::directory(), if any.
Expected<Outcome> runLive();

} // namespace ConfigMigration
