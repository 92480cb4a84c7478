#include "platform/ExecutableLocation.h"

#include "BuildRecord.h"

#include <QDir>
#include <QFileInfo>

namespace ExecutableLocation {

QString path()
{
    // The kernel's own record, already free of the symbolic links the program
    // may have been started through.
    return QFileInfo(QStringLiteral("/proc/self/exe")).canonicalFilePath();
}

QString resourceDirectory(const QString &executablePath)
{
    // <prefix>/bin/tolvar and <prefix>/share/tolvar, installed or in the build tree.
    const QDir bin = QFileInfo(executablePath).absoluteDir();
    return QDir::cleanPath(bin.absoluteFilePath(QStringLiteral("../share/tolvar")));
}

QString graphicalLibrary(const QString &executablePath)
{
    // <prefix>/lib/tolvar (or where the build put it), installed or in the build tree.
    const QDir bin = QFileInfo(executablePath).absoluteDir();
    return QDir::cleanPath(bin.absoluteFilePath(QStringLiteral("../" TOLVAR_PRIVATE_LIBDIR "/libtolvar_gui.so")));
}

} // namespace ExecutableLocation
