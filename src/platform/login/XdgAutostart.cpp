#include "platform/login/XdgAutostart.h"

#include <QDir>

namespace XdgAutostart {
namespace {

// Exec's quoting: inside double quotes, backslash-escape the four characters
// desktop entries reserve there; then the value itself escapes backslashes,
// and "%" is doubled so that it is no field code.
QString quotedProgram(const QString &path)
{
    QString quoted(QLatin1Char('"'));
    for (const QChar c : path) {
        if (c == QLatin1Char('"') || c == QLatin1Char('`') || c == QLatin1Char('$') || c == QLatin1Char('\\'))
            quoted += QLatin1Char('\\');
        quoted += c;
    }
    quoted += QLatin1Char('"');
    return quoted.replace(QLatin1Char('\\'), QLatin1String("\\\\")).replace(QLatin1Char('%'), QLatin1String("%%"));
}

} // namespace

ServiceManager manager(const QString &configHome)
{
    // A unit from the systemd user service earlier versions installed, and its
    // link in graphical-session.target.wants, would start a second copy.
    const QString unit = QDir(configHome).filePath(QStringLiteral("systemd/user/app.tolvar.service"));
    const QString wants =
        QDir(configHome).filePath(QStringLiteral("systemd/user/graphical-session.target.wants/app.tolvar.service"));
    return {
        .program = {},
        .agentFile = QDir(configHome).filePath(QStringLiteral("autostart/app.tolvar.desktop")),
        .agentContent = entry,
        .loadedQuery = {},
        .disabledQuery = {},
        .readMark = readMark,
        .enable = {},
        .load = {},
        .disable = {},
        .unload = {},
        .leftovers = {unit, wants},
        .programOf = program,
    };
}

QByteArray entry(const QString &executable)
{
    return QStringLiteral("[Desktop Entry]\n"
                          "Type=Application\n"
                          "Name=Tolvar\n"
                          "Exec=%1 background\n"
                          "Terminal=false\n"
                          "NoDisplay=true\n")
        .arg(quotedProgram(executable))
        .toUtf8();
}

QString program(const QString &entryText)
{
    for (const QString &line : entryText.split(QLatin1Char('\n'))) {
        if (!line.startsWith(QLatin1String("Exec=")))
            continue;
        // Undone in the reverse order of quotedProgram: field codes, the value's escapes, the quotes.
        const QString value = line.mid(5).trimmed().replace(QLatin1String("%%"), QLatin1String("%"));
        QString unescaped;
        for (qsizetype i = 0; i < value.size(); ++i)
            unescaped += value[i] == QLatin1Char('\\') && i + 1 < value.size() ? value[++i] : value[i];
        QString found;
        bool quoted = false;
        for (qsizetype i = 0; i < unescaped.size(); ++i) {
            const QChar c = unescaped[i];
            if (quoted && c == QLatin1Char('\\') && i + 1 < unescaped.size())
                found += unescaped[++i];
            else if (c == QLatin1Char('"'))
                quoted = !quoted;
            else if (!quoted && c == QLatin1Char(' '))
                break;
            else
                found += c;
        }
        return found;
    }
    return {};
}

ServiceManager::Mark readMark(const ServiceToolResult &entryText)
{
    using Mark = ServiceManager::Mark;
    if (entryText.status != 0)
        return Mark::Disabled;
    for (const QString &line : entryText.output.split(QLatin1Char('\n'))) {
        const QString trimmed = line.trimmed();
        if (trimmed == QLatin1String("Hidden=true") || trimmed == QLatin1String("X-GNOME-Autostart-enabled=false"))
            return Mark::Disabled;
    }
    return Mark::NotDisabled;
}

} // namespace XdgAutostart
