// The real tolvar command and background instance against a headless GNOME Shell in the private session:
// sources xkb:us (current), xkb:de and ibus:hangul, and Tolvar's extension installed under the temporary HOME
// the way `cmake --install` puts it there.
#include "core/l10n/L10n.h"
#include "platform/input/GnomeShellExtension.h"
#include "platform/linux/gnome/GnomeInputSources.h"
#include "platform/linux/ibus/IBusAddress.h"
#include "platform/linux/ibus/IBusInputSources.h"

#include "support/DesktopSession.h"
#include "support/ParamName.h"
#include "support/StoppedStack.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDir>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStandardPaths>

#include <gtest/gtest.h>

#include <csignal>

namespace {

const QString us = "xkb:us";
const QString german = "xkb:de";
const QString hangul = "ibus:hangul";
const QString busName = "app.tolvar.InputSources";
const QString objectPath = "/app/tolvar/InputSources";
const QString interface = "app.tolvar.InputSources1";

bool run(const QString &program, const QStringList &arguments, QByteArray *out = nullptr)
{
    const ProcessResult result = runProcess(program, arguments, QProcessEnvironment::systemEnvironment(), 10000);
    if (out)
        *out = result.out.trimmed();
    return result.exitCode == 0;
}

// Sets the shell's sources by their GSettings pairs, such as "('xkb','us')".
bool configure(const QStringList &pairs)
{
    return run("gsettings", {"set", "org.gnome.desktop.input-sources", "sources", '[' + pairs.join(',') + ']'});
}

QString setting(const QString &schema, const QString &key)
{
    QByteArray value;
    run("gsettings", {"get", schema, key}, &value);
    return QString::fromUtf8(value);
}

QDBusMessage callExtension(const QString &method, const QVariantList &arguments = {})
{
    return DesktopSession::call(busName, objectPath, interface, method, arguments);
}

QString current()
{
    return callExtension("GetCurrent").arguments().value(0).toString();
}

QStringList sourceIDs()
{
    QStringList ids;
    for (const SourceProperties &source : GnomeInputSources::describe(callExtension("GetSources").arguments().value(0)))
        ids << source.id.toString();
    return ids;
}

// Runs `script` inside the shell, which allows that only in unsafe mode; its
// result, or why it failed.
std::pair<bool, QString> evaluate(const QString &script)
{
    const QVariantList reply =
        DesktopSession::call("org.gnome.Shell", "/org/gnome/Shell", "org.gnome.Shell", "Eval", {script}).arguments();
    return {reply.value(0).toBool(), reply.value(1).toString()};
}

// The keyboard menu's items as the shell holds them: each one's label, whether
// it is shown and a switch's state; a section as its items under its name.
QJsonArray keyboardMenu()
{
    const QString items = evaluate("const seen = i => i._getMenuItems ? {[i.actor.name]: i._getMenuItems().map(seen)}"
                                   " : [i.label?.text ?? '', i.visible, i.state ?? null];"
                                   "Main.panel.statusArea.keyboard.menu._getMenuItems().map(seen)")
                              .second;
    return QJsonDocument::fromJson(items.toUtf8()).array();
}

// Tolvar's section: its title, then the switch, the offer to pin and the way to the window.
enum Item { keepItem = 1, pinItem, openItem };
QJsonArray item(Item index)
{
    for (const QJsonValue entry : keyboardMenu())
        if (entry.toObject().contains("tolvar"))
            return entry["tolvar"][index].toArray();
    return {};
}

// Calls `call` on the section's item at `index`, as a click on it would.
bool use(Item index, const QString &call)
{
    const QString section = "Main.panel.statusArea.keyboard.menu._getMenuItems().find(i => i.actor.name === 'tolvar')";
    return evaluate(QString("%1._getMenuItems()[%2].%3; 0").arg(section).arg(index).arg(call)).first;
}

QString text(const QString &language, const char *key, const QString &name = {})
{
    return L10n::filled(StringTable::load(L10n::resourceDirectory(), language)->text(key).value_or(key), {name});
}

// Every process below `root`, children before their own children.
QList<qint64> descendants(qint64 root)
{
    QList<qint64> found{root};
    for (qsizetype i = 0; i < found.size(); ++i) {
        for (const QString &entry : QDir("/proc").entryList(QDir::Dirs)) {
            // "pid (name) state ppid ...": the name may hold spaces, so read after its ")".
            const QByteArray line = readFile(QString("/proc/%1/stat").arg(entry));
            const QList<QByteArray> fields = line.mid(line.lastIndexOf(')') + 2).split(' ');
            if (fields.size() > 1 && fields[1].toLongLong() == found[i])
                found << entry.toLongLong();
        }
    }
    return found.mid(1);
}

class GnomeEndToEndTest : public testing::Test, protected DesktopSession
{
protected:
    void SetUp() override
    {
        // Never the user's own shell settings.
        ASSERT_FALSE(qEnvironmentVariableIsEmpty("TOLVAR_PRIVATE_SESSION")) << "run through scripts/private-session";
        if (QStandardPaths::findExecutable("gnome-shell").isEmpty())
            GTEST_SKIP() << "gnome-shell is not installed (scripts/install-deps installs it)";
        qputenv("XDG_CURRENT_DESKTOP", "GNOME");
        qputenv("GSETTINGS_BACKEND", "dconf");
        qunsetenv("TOLVAR_INPUT_BACKEND");
        environment = QProcessEnvironment::systemEnvironment();
        // The shell aborts without a system bus; a second private bus stands in for it.
        const QString systemBus = "unix:path=" + qEnvironmentVariable("XDG_RUNTIME_DIR") + "/system-bus";
        m_systemBus.start("dbus-daemon", {"--session", "--nofork", "--address=" + systemBus});
        ASSERT_TRUE(run(TOLVAR_CMAKE, {"--install", TOLVAR_BUILD_DIR, "--prefix", QDir::homePath() + "/.local",
                                       "--component", "gnome_extension"}));
        // Where the extension looks for the command: in bin/ under its own prefix.
        ASSERT_TRUE(QDir::home().mkpath(".local/bin"));
        ASSERT_TRUE(QFile::link(TOLVAR_EXECUTABLE, QDir::homePath() + "/.local/bin/tolvar"));
        if (outdated()) {
            const QString metadata = QDir::homePath() + "/.local/share/gnome-shell/extensions/"
                                     + GnomeShellExtension::uuid + "/metadata.json";
            QJsonObject fields = QJsonDocument::fromJson(readFile(metadata)).object();
            fields["shell-version"] = QJsonArray{"40"};
            ASSERT_TRUE(writeFile(metadata, QJsonDocument(fields).toJson()));
        }
        ASSERT_TRUE(configure({"('xkb','us')", "('xkb','de')", "('ibus','hangul')"}));
        ASSERT_TRUE(run("gsettings", {"set", "org.gnome.shell", "enabled-extensions",
                                      extensionEnabled() ? "['" + GnomeShellExtension::uuid + "']" : "[]"}));

        if (nameTaken()) {
            ASSERT_TRUE(QDBusConnection::sessionBus().registerService(busName));
        }
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", systemBus.toUtf8());
        qputenv("XDG_SESSION_TYPE", "wayland");
        // The shell logs that it started once its start-up work is done; before
        // that it can leave calls unanswered for seconds on a busy machine.
        const QString log = QDir::homePath() + "/gnome-shell.log";
        // A loaded shell may still reload its sources, or its extensions, after
        // it first answers: what it says must hold for a while.
        QElapsedTimer steady;
        const auto ready = [&] {
            if (!readFile(log).contains("GNOME Shell started at"))
                return false;
            if (extensionEnabled() && !outdated() && !nameTaken()) {
                const bool settled = sourceIDs() == QStringList{us, german, hangul} && current() == us;
                if (!settled || !steady.isValid())
                    settled ? steady.start() : steady.invalidate();
                return settled && steady.elapsed() > 1500;
            }
            // The shell has judged its extensions once it can say what became of this one.
            const QDBusMessage info =
                DesktopSession::call("org.gnome.Shell", "/org/gnome/Shell", "org.gnome.Shell.Extensions",
                                     "GetExtensionInfo", {GnomeShellExtension::uuid});
            return qdbus_cast<QVariantMap>(info.arguments().value(0)).contains("state");
        };
        ASSERT_TRUE(start("gnome-shell",
                          {"--headless", "--unsafe-mode", "--wayland", "--no-x11", "--wayland-display=tolvar-test",
                           "--virtual-monitor", "1024x768"},
                          ready, 30000, log))
            << "gnome-shell did not come up; see " << qPrintable(log);
    }

    void TearDown() override
    {
        if (program().state() != QProcess::NotRunning) {
            const QList<qint64> started = descendants(program().processId());
            stop();
            for (const qint64 pid : started)
                ::kill(static_cast<pid_t>(pid), SIGKILL);
        }
        m_systemBus.kill();
        m_systemBus.waitForFinished();
    }

    virtual bool extensionEnabled() const { return true; }
    // Installed as made for another shell, which the shell refuses to load.
    virtual bool outdated() const { return false; }
    // Another connection holds the extension's bus name when the shell starts.
    virtual bool nameTaken() const { return false; }

    static QString errorCode(const ProcessResult &result)
    {
        return json(result)["error"].toObject()["code"].toString();
    }

    QProcess m_systemBus;
};

TEST_F(GnomeEndToEndTest, ListsTheShellsSourcesAndMissesARemovedOne)
{
    const ProcessResult list = tolvar({"list", "--json"});
    ASSERT_EQ(list.exitCode, 0) << list.out.constData();
    QStringList ids;
    for (const QJsonValue source : json(list)["sources"].toArray()) {
        ids << source.toObject()["id"].toString();
        EXPECT_FALSE(source.toObject()["name"].toString().isEmpty()) << qPrintable(ids.last());
    }
    EXPECT_EQ(ids, (QStringList{us, german, hangul}));
    const QJsonObject now = status();
    EXPECT_EQ(now["backend"].toString(), "gnome");
    EXPECT_FALSE(now.contains("backendError"));
    EXPECT_EQ(now["current"].toObject()["id"].toString(), us);

    ASSERT_TRUE(ConfigStore::write(Config{.sourceID = german, .enabled = true, .onboardingCompleted = true},
                                   ConfigStore::directory())
                    .ok());
    ASSERT_TRUE(configure({"('xkb','us')", "('ibus','hangul')"}));
    ASSERT_TRUE(spinUntil([] { return sourceIDs() == QStringList{us, hangul}; }, 10000));
    EXPECT_EQ(errorCode(tolvar({"apply", "--json"})), "missing_source");
    EXPECT_FALSE(status()["target"].toObject()["available"].toBool(true));
    EXPECT_EQ(current(), us);
    EXPECT_EQ(GnomeInputSources::onSessionBus().select(german), InputSources::refused);
}

TEST_F(GnomeEndToEndTest, SetMakesTheShellSwitchAndTheInstanceSwitchesBack)
{
    for (const QString &id : {german, hangul}) {
        const ProcessResult result = tolvar({"set", id});
        EXPECT_EQ(result.exitCode, 0) << qPrintable(id) << result.err.constData();
        EXPECT_EQ(current(), id);
        // The shell's own record of the user's last choice, written by the shell alone, a moment later.
        const QStringList typeAndName = id.split(':');
        const QString first = QString("[('%1', '%2')").arg(typeAndName[0], typeAndName[1]);
        EXPECT_TRUE(spinUntil(
            [&] { return setting("org.gnome.desktop.input-sources", "mru-sources").startsWith(first); }, 5000))
            << qPrintable(setting("org.gnome.desktop.input-sources", "mru-sources"));
    }

    ASSERT_TRUE(keep(
        german, [&] { return status()["state"].toString() == "keeping"; }, 15000))
        << qPrintable(status()["state"].toString());
    ASSERT_EQ(current(), german);
    // At rest the shell is asked nothing, and after a switch its signal says all: stopped, it still answers.
    const InputSources backend = GnomeInputSources::onSessionBus();
    EXPECT_EQ(StoppedStack::look(backend, program().processId()).enabled, (QStringList{us, german, hangul}));
    // What the shell does when the user picks a source from its menu.
    ASSERT_EQ(callExtension("Activate", {us}).arguments().value(0).toBool(), true);
    EXPECT_TRUE(spinUntil([] { return current() == german; }, 5000)) << qPrintable(current());
    spinUntil([] { return false; }, 300);
    EXPECT_EQ(StoppedStack::look(backend, program().processId(), false).current, german);
}

// A keymap the shell did not choose: one set from outside, or one locked.
struct HeldCase
{
    const char *name;
    const char *hold;
    const char *release;
    QVariantList flags; // (external, locked) as the extension tells them
};

class GnomeKeymapTest : public GnomeEndToEndTest, public testing::WithParamInterface<HeldCase>
{
};

TEST_P(GnomeKeymapTest, LeavesAHeldKeymapAlone)
{
    const HeldCase &held = GetParam();
    const auto [set, error] = evaluate(held.hold);
    if (!set)
        GTEST_SKIP() << "this shell has no keymaps held from outside (GNOME 50 and later): " << qPrintable(error);
    ASSERT_TRUE(spinUntil([&] { return callExtension("GetKeymap").arguments() == held.flags; }, 5000));
    const ProcessResult switched = tolvar({"set", german, "--json"});
    EXPECT_EQ(switched.exitCode, 1);
    EXPECT_EQ(errorCode(switched), "keymap_held");
    ASSERT_TRUE(keep(
        german, [&] { return status()["state"].toString() == "keymap_held"; }, 15000));
    EXPECT_EQ(current(), us);
    for (const QJsonValue check : json(tolvar({"doctor", "--json"}))["checks"].toArray()) {
        if (check["id"] == "keyboard-layout") {
            EXPECT_EQ(check["verdict"], "warn") << "the doctor says who holds the layout";
        }
    }

    // The shell has its own keymap back, and the pin is kept again.
    ASSERT_TRUE(evaluate(QString("import('resource:///org/gnome/shell/misc/keyboardManager.js')"
                                 ".then(m => { const k = m.getKeyboardManager(); %1; }); 0")
                             .arg(held.release))
                    .first);
    EXPECT_TRUE(spinUntil([] { return current() == german; }, 10000)) << qPrintable(current());
}

// A remote desktop session sets the keymap through the same call as here; its own SetKeymap brings down a
// headless GNOME 51. Only mutter's C code locks a keymap, so the shell is told of a lock as mutter would tell it.
INSTANTIATE_TEST_SUITE_P(
    Gnome, GnomeKeymapTest,
    testing::Values(HeldCase{"SetFromOutside",
                             "global.backend.set_keymap_async(imports.gi.Meta.KeymapDescription"
                             ".new_from_rules('pc105', 'fr', '', '', ['French'], ['fr']), 0, null); 0",
                             "k.reapply()",
                             {true, false}},
                    HeldCase{
                        "Locked",
                        "imports.gi.Meta.KeymapDescription.prototype.is_locked;"
                        "import('resource:///org/gnome/shell/misc/keyboardManager.js').then(m => {"
                        " const k = m.getKeyboardManager(); k.isLocked = () => true; k.emit('keymap-changed'); }); 0",
                        "delete k.isLocked; k.emit('keymap-changed')",
                        {false, true}}),
    ParamName());

TEST_F(GnomeEndToEndTest, KeyboardMenuShowsKeepingAndChangesItThroughTolvar)
{
    // Nothing pinned: the section offers the current source.
    ASSERT_TRUE(spinUntil([] { return item(pinItem).at(1).toBool(); }, 5000));
    EXPECT_EQ(item(pinItem).at(0).toString(), text("en", "menu.pin-source", "English (US)"));
    EXPECT_FALSE(item(keepItem).at(1).toBool());
    ASSERT_TRUE(use(pinItem, "activate(null)"));
    // From the menu Tolvar starts, and keeps the pin.
    ASSERT_TRUE(use(openItem, "activate(null)"));
    ASSERT_TRUE(spinUntil([&] { return status()["state"] == "keeping"; }, 15000))
        << qPrintable(status()["state"].toString());
    EXPECT_EQ(status()["shownIn"].toArray(), QJsonArray{"keyboard_menu"});
    EXPECT_TRUE(tolvar({"doctor"}).out.contains("Tolvar's section in GNOME Shell's keyboard menu"));
    EXPECT_EQ(item(keepItem), (QJsonArray{text("en", "menu.keep-source", "English (US)"), true, true}));

    // Pictures of the open menu, light and dark, for whoever names a folder for them.
    const QString pictures = qEnvironmentVariable("TOLVAR_SCREENSHOTS", QDir::homePath());
    ASSERT_TRUE(evaluate("Main.overview.hide(); Main.messageTray.bannerBlocked = true;"
                         "Main.panel.statusArea.keyboard.menu.open(0); 0")
                    .first);
    for (const QString scheme : {"light", "dark"}) {
        ASSERT_TRUE(run("gsettings", {"set", "org.gnome.desktop.interface", "color-scheme", "prefer-" + scheme}));
        spinUntil([] { return false; }, 1000);
        // The top right of the screen: the end of the top bar and the menu below it.
        const QDBusMessage shot = DesktopSession::call(
            "org.gnome.Shell.Screenshot", "/org/gnome/Shell/Screenshot", "org.gnome.Shell.Screenshot", "ScreenshotArea",
            {664, 0, 360, 420, false, pictures + "/gnome-menu-" + scheme + ".png"});
        EXPECT_EQ(shot.arguments().value(0), QVariant(true)) << qPrintable(shot.errorMessage());
    }
    evaluate("Main.panel.statusArea.keyboard.menu.close(0)");

    // Turned off in the menu, keeping pauses through Tolvar; resumed elsewhere, the switch follows.
    ASSERT_TRUE(use(keepItem, "toggle()"));
    EXPECT_TRUE(spinUntil([] { return !ConfigStore::loadOrDefault().enabled; }, 2000));
    ASSERT_EQ(tolvar({"resume"}).exitCode, 0);
    EXPECT_TRUE(spinUntil([] { return item(keepItem).at(2).toBool(); }, 2000));
    // The language chosen in Tolvar's window.
    Config config = ConfigStore::loadOrDefault();
    config.language = "ja";
    ASSERT_TRUE(ConfigStore::write(config, ConfigStore::directory()).ok());
    EXPECT_TRUE(spinUntil([] { return item(keepItem).at(0) == text("ja", "menu.keep-source", "English (US)"); }, 2000));
}

class GnomeWithoutExtensionTest : public GnomeEndToEndTest
{
protected:
    bool extensionEnabled() const override { return false; }
};

TEST_F(GnomeWithoutExtensionTest, SaysHowToTurnItOnAndLeavesIBusAlone)
{
    const InputSources ibus = IBusInputSources::at(IBusAddress::published);
    const QString engine = ibus.currentID();
    const QJsonObject now = status();
    EXPECT_EQ(now["backend"].toString(), "gnome");
    EXPECT_EQ(now["backendError"].toObject()["code"].toString(), "gnome_extension_missing");
    EXPECT_EQ(now["shownIn"].toArray(), QJsonArray());
    const QByteArray said = tolvar({"status"}).out;
    EXPECT_TRUE(said.contains(("gnome-extensions enable " + GnomeShellExtension::uuid).toUtf8()));
    EXPECT_TRUE(said.contains(L10n::text("cli.msg.unseen").toUtf8())) << said.constData();
    const QJsonArray shellsOwn = keyboardMenu();
    for (const QStringList &command : {QStringList{"list"}, {"set", "hangul"}, {"set", hangul}}) {
        const ProcessResult result = tolvar(command + QStringList{"--json"});
        EXPECT_EQ(result.exitCode, 1) << qPrintable(command.join(' '));
        EXPECT_EQ(errorCode(result), "gnome_extension_missing") << qPrintable(command.join(' '));
    }
    EXPECT_EQ(ibus.currentID(), engine) << "no IBus switch behind the shell's back";

    const ProcessResult doctor = tolvar({"doctor", "--json"});
    EXPECT_EQ(doctor.exitCode, 1);
    for (const QJsonValue check : json(doctor)["checks"].toArray()) {
        if (check["id"] == "gnome-extension") {
            EXPECT_TRUE(check["evidence"].toString().contains("/.local/share/gnome-shell/extensions/"));
            EXPECT_TRUE(check["advice"].toString().contains("gnome-extensions enable"));
        }
        EXPECT_EQ(check["verdict"] == "fail", check["id"] == "gnome-extension") << doctor.out.constData();
    }

    // The shell knows the extension already, so turning it on is enough: no new login.
    const ProcessResult installed = tolvar({"install", german});
    EXPECT_EQ(installed.exitCode, 0) << installed.err.constData();
    EXPECT_TRUE(setting("org.gnome.shell", "enabled-extensions").contains(GnomeShellExtension::uuid));
    EXPECT_EQ(sourceIDs(), (QStringList{us, german, hangul}));

    // Tolvar's section comes after the shell's own items and goes with the extension, leaving them as they were.
    ASSERT_TRUE(spinUntil([&] { return keyboardMenu().size() == shellsOwn.size() + 1; }, 5000));
    QJsonArray withSection = keyboardMenu();
    EXPECT_TRUE(withSection.takeAt(shellsOwn.size()).toObject().contains("tolvar"));
    EXPECT_EQ(withSection, shellsOwn);
    ASSERT_TRUE(run("gnome-extensions", {"disable", GnomeShellExtension::uuid}));
    EXPECT_TRUE(spinUntil([&] { return keyboardMenu() == shellsOwn; }, 5000))
        << QJsonDocument(keyboardMenu()).toJson().constData();
}

class GnomeOutdatedExtensionTest : public GnomeEndToEndTest
{
protected:
    bool outdated() const override { return true; }
};

TEST_F(GnomeOutdatedExtensionTest, SaysToUpdateRatherThanToTurnItOn)
{
    const QJsonObject error = status()["backendError"].toObject();
    EXPECT_EQ(error["code"].toString(), "gnome_extension_missing");
    EXPECT_TRUE(error["message"].toString().contains("does not support this version"))
        << qPrintable(error["message"].toString());
    const ProcessResult installed = tolvar({"install", german});
    EXPECT_EQ(installed.exitCode, 1);
    EXPECT_TRUE(installed.err.contains("doesn’t support this version")) << installed.err.constData();
}

class GnomeNameTakenTest : public GnomeEndToEndTest
{
protected:
    bool nameTaken() const override { return true; }
};

TEST_F(GnomeNameTakenTest, AnswersOnceTheNameIsFreeAndNotBehindIt)
{
    const QString shell = QDBusConnection::sessionBus().interface()->serviceOwner("org.gnome.Shell");
    const auto answersAtShell = [&] {
        return DesktopSession::call(shell, objectPath, interface, "GetCurrent").type() == QDBusMessage::ReplyMessage;
    };
    EXPECT_TRUE(spinUntil([&] { return !answersAtShell(); }, 5000));
    ASSERT_TRUE(QDBusConnection::sessionBus().unregisterService(busName));
    EXPECT_TRUE(spinUntil([] { return current() == us; }, 5000));
    EXPECT_TRUE(answersAtShell());
    EXPECT_EQ(readFile(QDir::homePath() + "/gnome-shell.log").count("is taken elsewhere"), 1);
}

} // namespace
