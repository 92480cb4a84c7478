#include "platform/ExecutableLocation.h"

#include "platform/login/AppBundle.h"

#include <QDir>
#include <QFileInfo>

#include <mach-o/dyld.h>

#include <cstdint>
#include <vector>

namespace ExecutableLocation {

QString path()
{
    uint32_t size = 0;
    _NSGetExecutablePath(nullptr, &size);
    std::vector<char> buffer(size + 1, '\0');
    if (_NSGetExecutablePath(buffer.data(), &size) != 0)
        return {};
    return QFileInfo(QString::fromUtf8(buffer.data())).canonicalFilePath();
}

QString resourceDirectory(const QString &executablePath)
{
    // Tolvar.app/Contents/Resources for the bundle; the test programs beside it
    // in the build tree use share/tolvar as on Linux.
    return AppBundle::resourceDirectory(executablePath);
}

QString graphicalLibrary(const QString &executablePath)
{
    // Tolvar.app/Contents/MacOS/Tolvar and Tolvar.app/Contents/Frameworks.
    const QDir macOS = QFileInfo(executablePath).absoluteDir();
    return QDir::cleanPath(macOS.absoluteFilePath(QStringLiteral("../Frameworks/libtolvar_gui.so")));
}

} // namespace ExecutableLocation
