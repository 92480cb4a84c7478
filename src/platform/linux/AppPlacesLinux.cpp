#include "platform/AppPlaces.h"
#include "platform/files/XdgConfigHome.h"

#include <QDir>

namespace AppPlaces {

QString configDirectory()
{
    return QDir(XdgConfigHome::of(QDir::homePath(), qEnvironmentVariable("XDG_CONFIG_HOME")))
        .filePath(QStringLiteral("tolvar"));
}

QString sessionLockDirectory()
{
    // Per-session locks belong in the user's runtime folder. Without one (a
    // login without a session manager) the lock stays beside the configuration.
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (!QDir::isAbsolutePath(runtime))
        return configDirectory();
    return QDir(runtime).filePath(QStringLiteral("tolvar"));
}

std::optional<QString> earlierConfigDirectory()
{
    // Earlier Linux builds used the macOS folder.
    return QDir::home().filePath(QStringLiteral("Library/Application Support/Tolvar"));
}

} // namespace AppPlaces
