#include "platform/login/AppBundle.h"

#include <QDir>
#include <QFileInfo>

namespace AppBundle {

std::optional<QString> containing(const QString &executable)
{
    QStringList components = QDir::cleanPath(executable).split(QLatin1Char('/'));
    // The bundle, Contents, MacOS and the executable, below at least the root.
    if (components.size() < 5)
        return std::nullopt;
    components.resize(components.size() - 3);
    const QString &name = components.constLast();
    if (!name.endsWith(QLatin1String(".app")) || name.size() <= 4)
        return std::nullopt;
    return components.join(QLatin1Char('/'));
}

QString resourceDirectory(const QString &executable)
{
    if (const std::optional<QString> bundle = containing(executable))
        return *bundle + QStringLiteral("/Contents/Resources");
    const QDir bin = QFileInfo(executable).absoluteDir();
    return QDir::cleanPath(bin.absoluteFilePath(QStringLiteral("../share/tolvar")));
}

std::optional<QStringList> openArguments(const QString &executable)
{
    const std::optional<QString> bundle = containing(executable);
    if (!bundle)
        return std::nullopt;
    return QStringList{QStringLiteral("-a"), *bundle, QStringLiteral("--args"), QStringLiteral("gui")};
}

} // namespace AppBundle
