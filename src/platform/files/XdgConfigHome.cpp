#include "platform/files/XdgConfigHome.h"

#include <QDir>

namespace XdgConfigHome {

QString of(const QString &homeDirectory, const QString &xdgConfigHome)
{
    // A relative value is invalid and must be ignored.
    if (QDir::isAbsolutePath(xdgConfigHome))
        return QDir::cleanPath(xdgConfigHome);
    return QDir(homeDirectory).filePath(QStringLiteral(".config"));
}

} // namespace XdgConfigHome
