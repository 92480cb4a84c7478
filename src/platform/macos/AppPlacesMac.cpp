#include "platform/AppPlaces.h"

#include <QDir>

namespace AppPlaces {

QString configDirectory()
{
    return QDir::home().filePath(QStringLiteral("Library/Application Support/Tolvar"));
}

QString sessionLockDirectory()
{
    return configDirectory();
}

std::optional<QString> earlierConfigDirectory()
{
    return std::nullopt;
}

} // namespace AppPlaces
