#include "platform/login/SystemdService.h"

#include <QDir>

namespace SystemdService {
namespace {

const QString service = QStringLiteral("app.tolvar.service");

QStringList command(const char *verb)
{
    return {QStringLiteral("--user"), QLatin1String(verb), service};
}

// ExecStart's quoting for the program's name: C escapes inside double
// quotes, and "%" doubled so that it is not read as a specifier (variables are
// not expanded in the name). systemd refuses names holding quotes, backslashes
// or control characters; escaping them keeps the file well formed, and
// starting the unit then fails.
QString quotedProgram(const QString &path)
{
    QString out(QLatin1Char('"'));
    for (const QChar c : path) {
        switch (c.unicode()) {
        case '\\': out += QLatin1String("\\\\"); break;
        case '"': out += QLatin1String("\\\""); break;
        case '%': out += QLatin1String("%%"); break;
        default:
            if (c.unicode() < 0x20 || c.unicode() == 0x7f)
                out += QStringLiteral("\\x%1").arg(static_cast<int>(c.unicode()), 2, 16, QLatin1Char('0'));
            else
                out += c;
        }
    }
    return out + QLatin1Char('"');
}

} // namespace

QString configHome(const QString &homeDirectory, const QString &xdgConfigHome)
{
    // A relative value is invalid and must be ignored.
    if (QDir::isAbsolutePath(xdgConfigHome))
        return QDir::cleanPath(xdgConfigHome);
    return QDir(homeDirectory).filePath(QStringLiteral(".config"));
}

// launchd's steps in systemd's terms:
//   print           -> is-active   loaded means running
//   print-disabled  -> is-enabled  a unit nobody enabled is disabled
//   enable          -> enable      also reloads the manager, so it sees the file just written
//   bootstrap       -> start
//   disable         -> disable     also reloads; works when the file is already gone
//   bootout         -> stop
ServiceManager manager(const QString &configHome)
{
    return {
        .program = QStringLiteral("systemctl"),
        .agentFile = QDir(configHome).filePath(QStringLiteral("systemd/user/") + service),
        .agentContent = unit,
        .loadedQuery = command("is-active"),
        .disabledQuery = command("is-enabled"),
        .readMark = readMark,
        .enable = command("enable"),
        .load = command("start"),
        .disable = command("disable"),
        .unload = command("stop"),
    };
}

QByteArray unit(const QString &executable)
{
    // graphical-session.target is active exactly while a desktop session runs,
    // after the session has handed its display to the user's manager:
    // WantedBy starts the instance with it, After= waits for the display, and
    // PartOf= stops the instance when the user logs out. Type=exec makes
    // `start` fail when the program cannot be executed; Restart=on-failure
    // starts it again only after a failure.
    const QString text = QStringLiteral("[Unit]\n"
                                        "Description=Tolvar\n"
                                        "PartOf=graphical-session.target\n"
                                        "After=graphical-session.target\n"
                                        "\n"
                                        "[Service]\n"
                                        "Type=exec\n"
                                        "ExecStart=%1 background\n"
                                        "Restart=on-failure\n"
                                        "\n"
                                        "[Install]\n"
                                        "WantedBy=graphical-session.target\n")
                             .arg(quotedProgram(executable));
    return text.toUtf8();
}

ServiceManager::Mark readMark(const ServiceToolResult &answer)
{
    using Mark = ServiceManager::Mark;
    const QString state = answer.output.section(QLatin1Char('\n'), 0, 0).trimmed();
    if (state == QLatin1String("enabled"))
        return Mark::NotDisabled;
    if (state == QLatin1String("disabled") || state == QLatin1String("not-found") || state == QLatin1String("masked")
        || state == QLatin1String("masked-runtime"))
        return Mark::Disabled;
    // Older versions report a unit without a file on standard error only.
    if (state.isEmpty() && answer.status != 0)
        return Mark::Disabled;
    return Mark::Unreadable;
}

} // namespace SystemdService
