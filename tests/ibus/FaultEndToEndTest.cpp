// The real tolvar command in hostile surroundings, inside the private session (engines xkb:us::eng,
// xkb:de::deu, hangul): whatever stands at its files and whatever its daemons do, it returns within a few
// seconds, reports once, and leaves the files as they were.
#include "core/config/ConfigStore.h"
#include "core/instance/InstanceLock.h"
#include "platform/AppPlaces.h"
#include "platform/linux/ibus/IBusAddress.h"

#include "support/DesktopSession.h"
#include "support/ParamName.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <csignal>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

const QString executable = TOLVAR_EXECUTABLE;
const QString german = "xkb:de::deu";
// Generous for a loaded machine; a hang never gets there.
constexpr int boundMs = 10000;

const auto directory = ConfigStore::directory;

// Name, kind and content of everything in the configuration folder.
QStringList snapshot()
{
    QStringList entries;
    QDirIterator it(directory(), QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    while (it.hasNext()) {
        const QFileInfo info(it.next());
        QString what = info.isSymLink() ? "link " + info.symLinkTarget() : info.isDir() ? "folder" : "other";
        if (!info.isSymLink() && info.isFile()) {
            QFile file(info.filePath());
            what = file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : "unreadable";
        }
        entries << info.fileName() + ": " + what;
    }
    entries.sort();
    return entries;
}

enum class Standing { Fifo, Folder, DanglingLink };

void place(Standing what, const QString &path)
{
    QFile::remove(path);
    switch (what) {
    case Standing::Fifo: ASSERT_EQ(::mkfifo(QFile::encodeName(path).constData(), 0600), 0); break;
    case Standing::Folder: ASSERT_TRUE(QDir().mkpath(path)); break;
    case Standing::DanglingLink: ASSERT_TRUE(QFile::link(directory() + "/nowhere", path)); break;
    }
}

// The processes that hold `path` open.
QList<int> holders(const QString &path)
{
    QList<int> pids;
    for (const QString &pid : QDir("/proc").entryList({"[0-9]*"}, QDir::Dirs)) {
        const QDir descriptors("/proc/" + pid + "/fd");
        for (const QFileInfo &fd : descriptors.entryInfoList(QDir::System | QDir::Files))
            if (fd.symLinkTarget() == path && !pids.contains(pid.toInt()))
                pids << pid.toInt();
    }
    return pids;
}

void signalDaemon(int signal)
{
    ::kill(qEnvironmentVariableIntValue("TOLVAR_IBUS_DAEMON"), signal);
}

// A bus that listens and never accepts: the kernel completes connections
// that nobody ever reads or answers.
class SilentBus
{
public:
    ~SilentBus()
    {
        if (m_socket >= 0)
            ::close(m_socket);
    }
    QString listen(const QString &name)
    {
        const QByteArray path = QFile::encodeName(QDir::temp().filePath(name));
        ::unlink(path.constData());
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        qstrncpy(address.sun_path, path.constData(), sizeof address.sun_path);
        m_socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
        EXPECT_EQ(::bind(m_socket, reinterpret_cast<const sockaddr *>(&address), sizeof address), 0);
        EXPECT_EQ(::listen(m_socket, 16), 0);
        return "unix:path=" + QFile::decodeName(path);
    }

private:
    int m_socket = -1;
};

struct Fault
{
    const char *name;
    QStringList arguments;
    // Sets the scene: files, daemons, the environment. Returns what the report must name.
    std::function<QString(QProcessEnvironment &, SilentBus &)> arrange;
};

Fault atFile(const char *name, Standing what, QString (*path)())
{
    return {name, {"pause"}, [what, path](QProcessEnvironment &, SilentBus &) {
                place(what, path());
                return path();
            }};
}

QString instanceLock()
{
    QDir().mkpath(AppPlaces::sessionLockDirectory());
    return InstanceLock::fileIn(AppPlaces::sessionLockDirectory());
}

class FaultEndToEndTest : public testing::Test, protected DesktopSession
{
protected:
    void SetUp() override
    {
        if (IBusAddress::published().isEmpty())
            GTEST_SKIP() << "needs the private IBus of scripts/private-session --ibus";
        environment.insert("LANG", "C.UTF-8");
        QDir(directory()).removeRecursively();
        ASSERT_TRUE(
            ConfigStore::write(Config{.sourceID = german, .enabled = true, .onboardingCompleted = true}, directory())
                .ok());
    }
    void TearDown() override { signalDaemon(SIGCONT); }
};

class FaultTableTest : public FaultEndToEndTest, public testing::WithParamInterface<Fault>
{
};

TEST_P(FaultTableTest, ReturnsSoonReportsOnceNamesTheCauseAndChangesNothing)
{
    SilentBus silent;
    const QString cause = GetParam().arrange(environment, silent);
    const QStringList before = snapshot();

    const ProcessResult text = tolvar(GetParam().arguments, boundMs);
    ASSERT_TRUE(text.finished);
    EXPECT_EQ(text.exitCode, 1);
    EXPECT_TRUE(text.out.isEmpty()) << text.out.constData();
    EXPECT_EQ(text.err.count('\n'), 1) << text.err.constData();
    EXPECT_TRUE(QString::fromUtf8(text.err).contains(cause)) << text.err.constData();

    const ProcessResult machine = tolvar(GetParam().arguments + QStringList{"--json"}, boundMs);
    ASSERT_TRUE(machine.finished);
    EXPECT_EQ(machine.exitCode, 1);
    EXPECT_TRUE(machine.err.isEmpty()) << machine.err.constData();
    EXPECT_EQ(machine.out.count('\n'), 1);
    EXPECT_TRUE(json(machine)["error"].toObject()["detail"].toString().contains(cause)) << machine.out.constData();

    EXPECT_EQ(snapshot(), before);
}

INSTANTIATE_TEST_SUITE_P(Faults, FaultTableTest,
                         testing::Values(atFile("FifoAtConfig", Standing::Fifo, ConfigStore::file),
                                         atFile("FolderAtConfig", Standing::Folder, ConfigStore::file),
                                         atFile("LinkToNothingAtConfig", Standing::DanglingLink, ConfigStore::file),
                                         atFile("LinkToNothingAtConfigLock", Standing::DanglingLink,
                                                [] { return ConfigStore::lockFileIn(directory()); }),
                                         atFile("FifoAtInstanceLock", Standing::Fifo, instanceLock),
                                         Fault{"FrozenIBus",
                                               {"set", german},
                                               [](QProcessEnvironment &, SilentBus &) {
                                                   signalDaemon(SIGSTOP);
                                                   return QStringLiteral("IBus");
                                               }},
                                         Fault{"IBusThatAcceptsAndNeverAnswers",
                                               {"list"},
                                               [](QProcessEnvironment &environment, SilentBus &silent) {
                                                   environment.insert(
                                                       "IBUS_ADDRESS",
                                                       silent.listen(QStringLiteral("tolvar-ibus-%1")
                                                                         .arg(QCoreApplication::applicationPid())));
                                                   return QStringLiteral("IBus");
                                               }},
                                         Fault{"NoIBus",
                                               {"apply"},
                                               [](QProcessEnvironment &environment, SilentBus &) {
                                                   environment.insert("IBUS_ADDRESS", "unix:path=/nonexistent/ibus");
                                                   return QStringLiteral("IBus");
                                               }}),
                         ParamName());

// The environment that picks a stack; whether that stack is reached over the session bus.
struct Stack
{
    const char *name;
    QStringList environment;
    bool overTheBus;
};

class SilentSessionBusTest : public FaultEndToEndTest, public testing::WithParamInterface<Stack>
{
};

TEST_P(SilentSessionBusTest, HoldsUpNothingAndNamesTheBus)
{
    SilentBus silent;
    for (const char *name : {"XDG_CURRENT_DESKTOP", "GTK_IM_MODULE", "QT_IM_MODULE", "XMODIFIERS"})
        environment.remove(name);
    for (const QString &variable : GetParam().environment)
        environment.insert(variable.section('=', 0, 0), variable.section('=', 1));
    environment.insert("DBUS_SESSION_BUS_ADDRESS",
                       silent.listen(QStringLiteral("tolvar-bus-%1").arg(QCoreApplication::applicationPid())));
    const bool blocked = GetParam().overTheBus;
    // Only the configuration's own commands, and status, succeed without the sources.
    const std::pair<QStringList, int> commands[] = {
        {{"status"}, 0}, {{"list"}, blocked}, {{"set", german}, blocked}, {{"pause"}, 0}, {{"resume"}, blocked}};
    for (const auto &[arguments, exitCode] : commands) {
        const ProcessResult result = tolvar(arguments, boundMs);
        ASSERT_TRUE(result.finished) << qPrintable(arguments.join(' '));
        EXPECT_EQ(result.exitCode, exitCode) << qPrintable(arguments.join(' '));
        const QString said = QString::fromUtf8(result.out + result.err);
        EXPECT_EQ(said.contains("session bus"), blocked) << qPrintable(said);
        EXPECT_FALSE(said.contains(QRegularExpression("IBus|Fcitx|GNOME Shell|KDE Plasma"))) << qPrintable(said);
    }
    const QJsonObject error = json(tolvar({"list", "--json"}, boundMs))["error"].toObject();
    EXPECT_EQ(error["code"].toString(), blocked ? "input_method_unavailable" : "");
    EXPECT_EQ(error["detail"].toString().contains("session bus"), blocked);
}

INSTANTIATE_TEST_SUITE_P(Stacks, SilentSessionBusTest,
                         testing::Values(Stack{"IBus", {}, false}, Stack{"Gnome", {"XDG_CURRENT_DESKTOP=GNOME"}, true},
                                         Stack{"Plasma", {"XDG_CURRENT_DESKTOP=KDE"}, true},
                                         Stack{"Fcitx5", {"GTK_IM_MODULE=fcitx"}, true}),
                         ParamName());

TEST_F(FaultEndToEndTest, OutputThatCannotBeWrittenFails)
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.setStandardOutputFile("/dev/full");
    process.start(executable, {"status"});
    ASSERT_TRUE(process.waitForFinished(boundMs));
    EXPECT_EQ(process.exitCode(), 1);
    EXPECT_EQ(process.readAllStandardError().count('\n'), 1);
}

TEST_F(FaultEndToEndTest, OpenReturnsAtOnceInsideCommandSubstitution)
{
    const ProcessResult opened =
        runProcess("sh", {"-c", "x=$(\"$0\" open); echo \"[$x]\"", executable}, environment, boundMs);
    ASSERT_TRUE(opened.finished);
    EXPECT_EQ(opened.out, "[]\n");
    // The instance it started takes the lock; end it, found by that lock's holder.
    ASSERT_TRUE(spinUntil(
        [] {
            const Expected<bool> held = InstanceLock::isHeld(instanceLock());
            return held && held.value();
        },
        boundMs));
    for (const int pid : holders(instanceLock()))
        ::kill(pid, SIGTERM);
}

TEST_F(FaultEndToEndTest, BackgroundInstanceOutlivesAFrozenDaemon)
{
    ASSERT_TRUE(keep(
        german, [&] { return status(boundMs)["state"] == "keeping"; }, boundMs));
    signalDaemon(SIGSTOP);
    const QJsonObject frozen = status(boundMs);
    EXPECT_TRUE(frozen["running"].toBool());
    EXPECT_EQ(frozen["state"], "error");
    signalDaemon(SIGCONT);
    EXPECT_TRUE(spinUntil([&] { return status(boundMs)["state"] == "keeping"; }, boundMs));
}

} // namespace
