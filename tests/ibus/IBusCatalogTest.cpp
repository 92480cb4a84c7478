// The catalog and the input-source port against the private session's own
// ibus-daemon, which scripts/private-session --ibus starts with the engines
// xkb:us::eng (selected), xkb:de::deu and hangul.
#include "core/config/ConfigStore.h"
#include "core/engine/Enforcer.h"
#include "core/sources/Catalog.h"
#include "platform/linux/ibus/IBusAddress.h"
#include "platform/linux/ibus/IBusInputSources.h"

#include "support/Process.h"
#include "support/Spin.h"

#include <QCoreApplication>
#include <QTemporaryDir>
#include <QThread>
#include <QTimer>

#include <gtest/gtest.h>

namespace {

const QString us = QStringLiteral("xkb:us::eng");
const QString german = QStringLiteral("xkb:de::deu");
const QString hangul = QStringLiteral("hangul");

class IBusCatalogTest : public testing::Test
{
protected:
    void SetUp() override
    {
        if (IBusAddress::published().isEmpty())
            GTEST_SKIP() << "needs the private IBus of scripts/private-session --ibus";
    }
};

TEST_F(IBusCatalogTest, ChoicesAreThePreloadedEnginesInOrderAndNoOtherIsSelected)
{
    EXPECT_EQ(Catalog::choices(), (QList<InputChoice>{{us, QStringLiteral("English (US)")},
                                                      {german, QStringLiteral("German")},
                                                      {hangul, QStringLiteral("Hangul")}}));
    const InputSources system = InputSources::live();
    EXPECT_EQ(system.select(QStringLiteral("no-such-engine")), InputSources::refused);
    EXPECT_EQ(system.currentID(), us);
}

// Only observers whose context is alive hear of it, on the main thread.
TEST_F(IBusCatalogTest, SelectionMadeElsewhereIsAnnouncedOnTheMainThread)
{
    int announced = 0, late = 0;
    bool mainThread = false;
    {
        QObject gone;
        ASSERT_TRUE(InputSources::live().observeSelected(&gone, [&] { ++late; }));
    }
    QObject context;
    ASSERT_TRUE(InputSources::live().observeSelected(&context, [&] {
        ++announced;
        mainThread = QThread::currentThread() == QCoreApplication::instance()->thread();
    }));
    // The ibus tool selects the engine, then fails to apply its layout with
    // setxkbmap for want of a display; only the selection matters here.
    ASSERT_TRUE(runProcess(QStringLiteral("ibus"), {QStringLiteral("engine"), hangul}).finished);
    EXPECT_TRUE(spinUntil([&] { return announced > 0; }, 10000));
    EXPECT_TRUE(mainThread);
    EXPECT_EQ(late, 0);
    EXPECT_EQ(InputSources::live().currentID(), hangul);
}

TEST_F(IBusCatalogTest, ChangedEngineListIsAnnouncedAndSeen)
{
    QObject context;
    int announced = 0;
    ASSERT_TRUE(InputSources::live().observeEnabled(&context, [&] { ++announced; }));
    const ProcessResult result = runProcess(
        QStringLiteral("gsettings"), {QStringLiteral("set"), QStringLiteral("org.freedesktop.ibus.general"),
                                      QStringLiteral("preload-engines"), QStringLiteral("['hangul', 'xkb:us::eng']")});
    ASSERT_EQ(result.exitCode, 0) << result.err.constData();
    EXPECT_TRUE(spinUntil([&] { return announced > 0; }, 10000));
    EXPECT_EQ(Catalog::choices(),
              (QList<InputChoice>{{hangul, QStringLiteral("Hangul")}, {us, QStringLiteral("English (US)")}}));
    EXPECT_FALSE(Catalog::find(german)) << "no longer enabled";
}

// The engine learns the selection from IBus's signal, selects what it found
// without looking again, and reads its own switch back without asking.
TEST_F(IBusCatalogTest, AReactionSendsOneSwitchAndAtMostOneRead)
{
    int sent = 0;
    const InputSources system = IBusInputSources::at(IBusAddress::published, [&] { ++sent; });
    ASSERT_TRUE(ConfigStore::write(Config{.sourceID = german, .enabled = true, .onboardingCompleted = true},
                                   ConfigStore::directory())
                    .ok());
    EnforcementTriggers triggers = EnforcementTriggers::none();
    triggers.selectionChanged = system.observeSelected;
    Enforcer enforcer(EnforcementDependencies::over(system), triggers);
    enforcer.start();
    // Back, and its own change's signal heard too.
    const auto back = [] {
        return spinUntil([] { return InputSources::live().currentID() == german; }, 5000)
               && !spinUntil([] { return false; }, 300);
    };
    QTimer::singleShot(0, &enforcer, [&] { enforcer.enforce(SwitchOrigin::Automatic); });
    ASSERT_TRUE(back());
    const int before = sent;
    ASSERT_EQ(InputSources::live().select(us), 0);
    ASSERT_TRUE(back());
    // The switch, and one read when IBus's signal for it comes after its answer.
    EXPECT_GE(sent - before, 1);
    EXPECT_LE(sent - before, 2);
}

TEST_F(IBusCatalogTest, FollowsARestartedDaemon)
{
    const QString before = IBusAddress::published();
    ASSERT_EQ(Catalog::choices().size(), 3);
    QObject context;
    int announced = 0;
    ASSERT_TRUE(InputSources::live().observeSelected(&context, [&] { ++announced; }));

    const ProcessResult restart =
        runProcess(QStringLiteral("ibus"), {QStringLiteral("restart"), QStringLiteral("--type=direct")});
    ASSERT_EQ(restart.exitCode, 0) << restart.err.constData();
    ASSERT_TRUE(spinUntil(
        [&] {
            const QString now = IBusAddress::published();
            return !now.isEmpty() && now != before && Catalog::choices().size() == 3;
        },
        10000));
    EXPECT_EQ(InputSources::live().select(german), 0);
    EXPECT_EQ(InputSources::live().currentID(), german);
    EXPECT_TRUE(spinUntil([&] { return announced > 0; }, 10000)) << "the new daemon's selection went unnoticed";
}

TEST_F(IBusCatalogTest, DaemonStartedLaterIsFoundAtTheNextCall)
{
    // The daemon leaves its address file behind, pointing nowhere.
    ASSERT_TRUE(runProcess(QStringLiteral("ibus"), {QStringLiteral("exit")}).finished);
    ASSERT_TRUE(spinUntil([] { return Catalog::choices().isEmpty(); }, 10000));
    EXPECT_EQ(InputSources::live().currentID(), QString());
    EXPECT_EQ(InputSources::live().select(german), InputSources::unavailable);

    QProcess daemon;
    daemon.start(QStringLiteral("ibus-daemon"),
                 {QStringLiteral("--panel=disable"), QStringLiteral("--emoji-extension=disable")});
    ASSERT_TRUE(daemon.waitForStarted());
    EXPECT_TRUE(spinUntil([] { return Catalog::choices().size() == 3; }, 10000));
    EXPECT_EQ(InputSources::live().select(german), 0);
    EXPECT_EQ(InputSources::live().currentID(), german);

    // Its own way out, so that the engines it started leave with it.
    runProcess(QStringLiteral("ibus"), {QStringLiteral("exit")});
    if (!daemon.waitForFinished(10000))
        daemon.kill();
}

// Whether an identifier leads to a selectable source, and how it is switched: an
// engine installed but not enabled, or named in another case, is not found.
TEST_F(IBusCatalogTest, FindsEnabledEnginesOnly)
{
    using Row = std::tuple<QString, bool, bool>; // id; then found?, CJKV?
    for (const auto &[id, found, cjkv] : {Row{hangul, true, true}, Row{us, true, false},
                                          Row{"xkb:fr::fra", false, false}, Row{"Hangul", false, false}}) {
        const std::optional<Source> source = Catalog::find(id);
        ASSERT_EQ(source.has_value(), found) << qPrintable(id);
        EXPECT_EQ(source ? source->id() : id, id);
        EXPECT_EQ(source && source->isCJKV(), cjkv) << qPrintable(id);
    }
}

// IBus gone (no address, no socket, no sense): every answer is empty, selecting
// fails, and nothing waits for long.
TEST(IBusAbsentTest, NoSourcesAndSelectFails)
{
    const QTemporaryDir directory;
    for (const QString &address :
         {QString(), "unix:path=" + directory.filePath("no-ibus"), QString("not an address")}) {
        SCOPED_TRACE(address.toStdString());
        const InputSources system = IBusInputSources::at([address] { return address; });
        EXPECT_TRUE(Catalog::choices(system).isEmpty());
        EXPECT_FALSE(Catalog::find(us, system));
        EXPECT_EQ(system.currentID(), QString());
        EXPECT_EQ(system.select(us), InputSources::unavailable);
        EXPECT_FALSE(system.secureInput());
    }
}

} // namespace
