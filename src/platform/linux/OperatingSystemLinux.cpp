#include "platform/OperatingSystem.h"

#include <QRegularExpression>
#include <QSysInfo>

namespace OperatingSystem {

QString version()
{
    // "6.1.0-18-amd64" -> 6.1.0; the patch number is always written.
    static const QRegularExpression numbers(QStringLiteral("^(\\d+)(?:\\.(\\d+))?(?:\\.(\\d+))?"));
    const QRegularExpressionMatch match = numbers.match(QSysInfo::kernelVersion());
    if (!match.hasMatch())
        return QStringLiteral("0.0.0");
    QStringList parts;
    for (int i = 1; i <= 3; ++i)
        parts << QString::number(match.capturedView(i).toLongLong());
    return parts.join(u'.');
}

QString name()
{
    return QStringLiteral("Linux");
}

QString hardware()
{
    return QSysInfo::buildCpuArchitecture();
}

QString textVariant()
{
    return QStringLiteral("linux");
}

} // namespace OperatingSystem
