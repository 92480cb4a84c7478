#include "gnome/GnomeShell.h"

#include "platform/GnomeShellExtension.h"
#include "platform/linux/GnomeInputSources.h"
#include "platform/linux/IBusAddress.h"
#include "platform/linux/IBusInputSources.h"
#include "support/Spin.h"

#include <QDBusConnection>
#include <QDir>
#include <QFile>

#include <csignal>

namespace {

constexpr int startTimeoutMs = 30000;

bool run(const QString &program, const QStringList &arguments, QByteArray *out = nullptr)
{
    QProcess process;
    process.start(program, arguments);
    const bool ok =
        process.waitForFinished(10000) && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    if (out)
        *out = process.readAllStandardOutput().trimmed();
    return ok;
}

// Every process below `root`, children before their own children.
QList<qint64> descendants(qint64 root)
{
    QList<qint64> found{root};
    for (qsizetype i = 0; i < found.size(); ++i) {
        for (const QString &entry : QDir("/proc").entryList(QDir::Dirs)) {
            QFile stat(QString("/proc/%1/stat").arg(entry));
            if (!stat.open(QIODevice::ReadOnly))
                continue;
            // "pid (name) state ppid ...": the name may hold spaces, so read after its ")".
            const QByteArray line = stat.readAll();
            const QList<QByteArray> fields = line.mid(line.lastIndexOf(')') + 2).split(' ');
            if (fields.size() > 1 && fields[1].toLongLong() == found[i])
                found << entry.toLongLong();
        }
    }
    return found.mid(1);
}

} // namespace

const QStringList GnomeShell::sources = {"xkb:us", "xkb:de", "ibus:hangul"};

GnomeShell::~GnomeShell()
{
    if (m_shell.state() != QProcess::NotRunning) {
        const QList<qint64> started = descendants(m_shell.processId());
        m_shell.kill();
        m_shell.waitForFinished();
        for (const qint64 pid : started)
            ::kill(static_cast<pid_t>(pid), SIGKILL);
    }
    m_systemBus.kill();
    m_systemBus.waitForFinished();
}

QString GnomeShell::start(bool extensionEnabled)
{
    // The shell aborts without a system bus; a second private bus stands in for it.
    const QString systemBus = QString("unix:path=%1/system-bus").arg(qEnvironmentVariable("XDG_RUNTIME_DIR"));
    m_systemBus.start("dbus-daemon", {"--session", "--nofork", "--address=" + systemBus});
    const QString extensions = QDir::homePath() + "/.local";
    if (!run(TOLVAR_CMAKE, {"--install", TOLVAR_BUILD_DIR, "--prefix", extensions, "--component", "gnome_extension"}))
        return "cmake --install of the extension failed";
    if (!configure({"('xkb','us')", "('xkb','de')", "('ibus','hangul')"})
        || !run("gsettings", {"set", "org.gnome.shell", "enabled-extensions",
                              extensionEnabled ? "['" + GnomeShellExtension::uuid + "']" : "[]"}))
        return "gsettings failed";

    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("DBUS_SYSTEM_BUS_ADDRESS", systemBus);
    environment.insert("XDG_SESSION_TYPE", "wayland");
    m_shell.setProcessEnvironment(environment);
    m_shell.setStandardOutputFile(QDir::homePath() + "/gnome-shell.log");
    m_shell.setProcessChannelMode(QProcess::MergedChannels);
    m_shell.start("gnome-shell", {"--headless", "--wayland", "--no-x11", "--wayland-display=tolvar-test",
                                  "--virtual-monitor", "1024x768"});
    if (!m_shell.waitForStarted())
        return "gnome-shell did not start";

    // The shell logs this once its start-up work is done; before that it can
    // leave calls unanswered for seconds on a busy machine.
    const auto started = [] {
        QFile log(QDir::homePath() + "/gnome-shell.log");
        return log.open(QIODevice::ReadOnly) && log.readAll().contains("GNOME Shell started at");
    };
    const auto ready = [&] {
        if (extensionEnabled)
            return sourceIDs() == sources;
        return !IBusInputSources::at(IBusAddress::published).currentID().isEmpty();
    };
    if (!spinUntil([&] { return started() && ready(); }, startTimeoutMs))
        return "gnome-shell did not come up; see " + QDir::homePath() + "/gnome-shell.log";
    return {};
}

QDBusMessage GnomeShell::callExtension(const QString &method, const QVariantList &arguments) const
{
    QDBusMessage message = QDBusMessage::createMethodCall("app.tolvar.InputSources", "/app/tolvar/InputSources",
                                                          "app.tolvar.InputSources1", method);
    message.setArguments(arguments);
    return QDBusConnection::sessionBus().call(message, QDBus::Block, 5000);
}

QString GnomeShell::current() const
{
    return callExtension("GetCurrent").arguments().value(0).toString();
}

QStringList GnomeShell::sourceIDs() const
{
    QStringList ids;
    for (const SourceProperties &source : GnomeInputSources::describe(callExtension("GetSources").arguments().value(0)))
        ids << source.id.toString();
    return ids;
}

bool GnomeShell::configure(const QStringList &pairs)
{
    return run("gsettings",
               {"set", "org.gnome.desktop.input-sources", "sources", QString('[') + pairs.join(',') + ']'});
}

QString GnomeShell::setting(const QString &schema, const QString &key)
{
    QByteArray value;
    run("gsettings", {"get", schema, key}, &value);
    return QString::fromUtf8(value);
}
