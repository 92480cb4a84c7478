#include "platform/linux/ibus/IBusAddress.h"

#include "platform/files/FileBytes.h"

#include <QDir>

namespace IBusAddress {
namespace {

QString environment(const char *name)
{
    return qEnvironmentVariable(name);
}

QString readMachineId()
{
    for (const QString &path : {QStringLiteral("/etc/machine-id"), QStringLiteral("/var/lib/dbus/machine-id")}) {
        const Expected<QByteArray> bytes = FileBytes::read(path);
        if (bytes && !bytes->trimmed().isEmpty())
            return QString::fromLatin1(bytes->trimmed());
    }
    return {};
}

// "host:N.S" names display N of host; a local display has no host, and IBus
// calls it "unix".
QString displayPart(const QString &display)
{
    const qsizetype colon = display.lastIndexOf(QLatin1Char(':'));
    if (colon < 0)
        return {};
    QString host = display.left(colon);
    if (host.isEmpty())
        host = QStringLiteral("unix");
    const QString number = display.mid(colon + 1).section(QLatin1Char('.'), 0, 0);
    return number.isEmpty() ? QString() : host + QLatin1Char('-') + number;
}

// The machine's identity does not change while a program runs.
const QString &machineId()
{
    static const QString id = readMachineId();
    return id;
}

} // namespace

QStringList files(const Session &session)
{
    if (!session.addressFile.isEmpty())
        return {session.addressFile};
    if (session.configHome.isEmpty() || session.machineId.isEmpty())
        return {};

    QStringList parts;
    if (!session.waylandDisplay.isEmpty() && !session.waylandDisplay.contains(QLatin1Char('/')))
        parts << QStringLiteral("unix-") + session.waylandDisplay;
    if (const QString x = displayPart(session.display); !x.isEmpty())
        parts << x;
    if (session.display.isEmpty() && session.waylandDisplay.isEmpty())
        parts << QStringLiteral("unix-0");

    const QDir directory(session.configHome + QStringLiteral("/ibus/bus"));
    QStringList result;
    for (const QString &part : parts)
        result << directory.filePath(session.machineId + QLatin1Char('-') + part);
    return result;
}

QString parse(const QByteArray &contents)
{
    static const QByteArray key = QByteArrayLiteral("IBUS_ADDRESS=");
    for (const QByteArray &line : contents.split('\n')) {
        const QByteArray trimmed = line.trimmed();
        if (trimmed.startsWith(key))
            return QString::fromUtf8(trimmed.mid(key.size()));
    }
    return {};
}

Session currentSession()
{
    QString configHome = environment("XDG_CONFIG_HOME");
    if (configHome.isEmpty() && !environment("HOME").isEmpty())
        configHome = environment("HOME") + QStringLiteral("/.config");
    return {environment("IBUS_ADDRESS_FILE"), configHome, machineId(), environment("DISPLAY"),
            environment("WAYLAND_DISPLAY")};
}

QString published()
{
    if (QString address = environment("IBUS_ADDRESS"); !address.isEmpty())
        return address;
    for (const QString &file : files(currentSession())) {
        const Expected<QByteArray> contents = FileBytes::read(file);
        if (!contents)
            continue;
        if (QString address = parse(*contents); !address.isEmpty())
            return address;
    }
    return {};
}

} // namespace IBusAddress
