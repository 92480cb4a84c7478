#include "core/engine/Enforcer.h"
#include "core/config/L10n.h"
#include "support/FakeEnforcementWorld.h"
#include "support/FakeInputSources.h"
#include "support/ParamName.h"
#include "support/Spin.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

namespace {

using namespace std::chrono_literals;

const QString us = "xkb:us::eng";
const QString de = "xkb:de::ger";
const QString hangul = "hangul";
const QString anthy = "anthy";

// Runs the engine on a fake world and writes down every callback in order.
class EnforcerTest : public testing::Test
{
protected:
    void SetUp() override
    {
        L10n::setLanguageCode(QStringLiteral("en"));
        m_enforcer = std::make_unique<Enforcer>(m_world.dependencies());
        m_enforcer->setOnUpdate([this] { m_log << QStringLiteral("update"); });
        m_enforcer->setOnAutomaticOutcome(
            [this](const SwitchOutcome &outcome) { m_log << QStringLiteral("automatic:") + describe(outcome); });
    }

    void TearDown() override { L10n::setLanguageCode(std::nullopt); }

    static QString describe(const SwitchOutcome &outcome)
    {
        if (outcome == SwitchOutcome::success())
            return QStringLiteral("success");
        if (outcome == SwitchOutcome::secureInput())
            return QStringLiteral("secureInput");
        if (outcome == SwitchOutcome::missingSource())
            return QStringLiteral("missingSource");
        if (outcome == SwitchOutcome::busy())
            return QStringLiteral("busy");
        return QStringLiteral("failed(") + outcome.message() + QLatin1Char(')');
    }

    // A request whose outcome lands in the log under `name`.
    void request(const QString &name, bool force, bool holdFocus = true)
    {
        m_enforcer->enforce(holdFocus, force, [this, name](const SwitchOutcome &outcome) {
            m_log << name + QLatin1Char(':') + describe(outcome);
        });
    }

    void pin(const QString &id) { m_world.config.sourceID = id; }

    FakeEnforcementWorld m_world;
    std::unique_ptr<Enforcer> m_enforcer;
    QStringList m_log;
};

QString failed(const char *key, const QStringList &args = {})
{
    QString text = L10n::text(key);
    for (const QString &arg : args)
        text = text.arg(arg);
    return "failed(" + text + ")";
}

struct SingleCase
{
    const char *name;
    std::function<void(FakeEnforcementWorld &)> arrange;
    bool force;
    bool holdFocus;
    std::function<QStringList()> log;
    QStringList selected;
    size_t helpers;
};

class EnforcerSingleRequestTest : public EnforcerTest, public testing::WithParamInterface<SingleCase>
{
};

TEST_P(EnforcerSingleRequestTest, EndsAsExpected)
{
    GetParam().arrange(m_world);
    request("r", GetParam().force, GetParam().holdFocus);
    const QStringList log = GetParam().log();
    EXPECT_EQ(m_log, log);
    EXPECT_EQ(m_world.selected, GetParam().selected);
    EXPECT_EQ(m_world.helpers.size(), GetParam().helpers);
    EXPECT_EQ(m_enforcer->isSwitching(), GetParam().helpers > 0) << "only a running helper keeps a request active";
}

const auto nothing = [](FakeEnforcementWorld &) {};
const auto pinHangul = [](FakeEnforcementWorld &w) { w.config.sourceID = hangul; };

INSTANTIATE_TEST_SUITE_P(
    Enforcer, EnforcerSingleRequestTest,
    testing::Values(SingleCase{"DirectSwitch",
                               nothing,
                               false,
                               true,
                               [] {
                                   return QStringList{"update", "automatic:success", "r:success"};
                               },
                               {us},
                               0},
                    SingleCase{"AlreadyCurrent",
                               [](auto &w) { w.current = us; },
                               false,
                               true,
                               [] {
                                   return QStringList{"update", "automatic:success", "r:success"};
                               },
                               {},
                               0},
                    SingleCase{"ManualSwitch",
                               nothing,
                               true,
                               true,
                               [] {
                                   return QStringList{"update", "r:success"};
                               },
                               {us},
                               0},
                    SingleCase{"KeepingOffAutomaticDoesNothing",
                               [](auto &w) { w.config.enabled = false; },
                               false,
                               true,
                               [] { return QStringList{"r:success"}; },
                               {},
                               0},
                    SingleCase{"KeepingOffManualStillSwitches",
                               [](auto &w) { w.config.enabled = false; },
                               true,
                               true,
                               [] {
                                   return QStringList{"update", "r:success"};
                               },
                               {us},
                               0},
                    SingleCase{"NothingPinned",
                               [](auto &w) { w.config.sourceID.reset(); },
                               true,
                               true,
                               [] { return QStringList{"r:missingSource"}; },
                               {},
                               0},
                    SingleCase{"EmptyPin",
                               [](auto &w) { w.config.sourceID = QString(); },
                               false,
                               true,
                               [] { return QStringList{"r:missingSource"}; },
                               {},
                               0},
                    SingleCase{"PinnedSourceGone",
                               [](auto &w) { w.config.sourceID = "gone"; },
                               false,
                               true,
                               [] {
                                   return QStringList{"update", "automatic:missingSource", "r:missingSource"};
                               },
                               {},
                               0},
                    SingleCase{"SecureInputWinsOverAlreadyCurrent",
                               [](auto &w) {
                                   w.secure = true;
                                   w.current = us;
                               },
                               false,
                               true,
                               [] {
                                   return QStringList{"update", "automatic:secureInput", "r:secureInput"};
                               },
                               {},
                               0},
                    SingleCase{"UnreachableSourcesAreNeitherReadNorSwitched",
                               [](auto &w) {
                                   w.unreachable = "no extension";
                                   w.current = us;
                               },
                               true,
                               true,
                               [] {
                                   return QStringList{"update", "r:failed(no extension)"};
                               },
                               {},
                               0},
                    SingleCase{"SelectFails",
                               [](auto &w) { w.selectStatus = -50; },
                               true,
                               true,
                               [] {
                                   return QStringList{"update", "r:" + failed("enf.switch", {us, "-50"})};
                               },
                               {us},
                               0},
                    SingleCase{"SelectNotConfirmed",
                               [](auto &w) { w.selectTakesEffect = false; },
                               false,
                               true,
                               [] {
                                   return QStringList{"update", "automatic:" + failed("enf.unconfirmed", {us}),
                                                      "r:" + failed("enf.unconfirmed", {us})};
                               },
                               {us},
                               0},
                    SingleCase{
                        "CJKVStartsTheHelper", pinHangul, false, true, [] { return QStringList{"update"}; }, {}, 1},
                    SingleCase{"CJKVWithoutHoldingFocusIsBusy",
                               pinHangul,
                               true,
                               false,
                               [] {
                                   return QStringList{"update", "r:busy"};
                               },
                               {},
                               0},
                    SingleCase{"HelperCannotLaunch",
                               [](auto &w) {
                                   w.config.sourceID = hangul;
                                   w.launchError = "no exec";
                               },
                               true,
                               true,
                               [] {
                                   return QStringList{"update", "r:" + failed("enf.focus", {"no exec"})};
                               },
                               {},
                               0}),
    ParamName());

struct HelperCase
{
    const char *name;
    FocusProcessResult result;
    bool switched;
    std::function<QString()> outcome;
};

class EnforcerHelperResultTest : public EnforcerTest, public testing::WithParamInterface<HelperCase>
{
};

TEST_P(EnforcerHelperResultTest, MapsTheHelpersResult)
{
    pin(hangul);
    request("r", true);
    ASSERT_EQ(m_world.helpers.size(), 1u);
    EXPECT_FALSE(m_world.helpers[0].automatic);
    m_world.finishHelper(0, GetParam().result, GetParam().switched);
    EXPECT_EQ(m_log, (QStringList{"update", "update", "r:" + GetParam().outcome()}));
    EXPECT_FALSE(m_enforcer->isSwitching());
}

INSTANTIATE_TEST_SUITE_P(
    Enforcer, EnforcerHelperResultTest,
    testing::Values(
        HelperCase{"Switched", FocusProcessResult::exited(0), true, [] { return QString("success"); }},
        HelperCase{"ExitedZeroButNotCurrent", FocusProcessResult::exited(0), false,
                   [] { return failed("enf.unconfirmed", {hangul}); }},
        HelperCase{"SecureInput", FocusProcessResult::exited(75), false, [] { return QString("secureInput"); }},
        HelperCase{"NotWanted", FocusProcessResult::exited(76), false, [] { return QString("busy"); }},
        HelperCase{"Missing", FocusProcessResult::exited(77), false, [] { return QString("missingSource"); }},
        HelperCase{"Failed", FocusProcessResult::exited(78), false, [] { return failed("enf.helper-exit", {"78"}); }},
        HelperCase{"Crashed", FocusProcessResult::exited(-1), false, [] { return failed("enf.helper-exit", {"-1"}); }},
        HelperCase{"TimedOut", FocusProcessResult::timedOut(), false, [] { return failed("enf.timeout"); }},
        HelperCase{"Cancelled", FocusProcessResult::cancelled(), false, [] { return QString("busy"); }}),
    ParamName());

TEST_F(EnforcerTest, KeepingOffCancelsARunningAutomaticHelper)
{
    pin(hangul);
    request("auto", false);
    m_world.config.enabled = false;
    request("again", false);
    EXPECT_EQ(m_world.helpers[0].cancels, 1);
    m_world.finishHelper(0, FocusProcessResult::cancelled());
    EXPECT_EQ(m_log, (QStringList{"update", "again:success", "update", "auto:busy"}));
}

TEST_F(EnforcerTest, SecondAutomaticTriggerForTheSameTargetIsBusyAtOnce)
{
    pin(hangul);
    request("first", false);
    request("second", false);
    EXPECT_EQ(m_world.helpers.size(), 1u);
    EXPECT_EQ(m_world.helpers[0].cancels, 0);
    EXPECT_EQ(m_log, (QStringList{"update", "second:busy"}));
}

// The user pins another source while an automatic helper runs, then asks for it.
TEST_F(EnforcerTest, ManualRequestForANewTargetCancelsTheAutomaticHelper)
{
    pin(hangul);
    request("auto", false);
    pin(anthy);
    request("manual", true);
    EXPECT_EQ(m_world.helpers[0].cancels, 1);
    m_world.finishHelper(0, FocusProcessResult::cancelled());
    ASSERT_EQ(m_world.helpers.size(), 2u);
    EXPECT_EQ(m_world.helpers[1].id, anthy);
    EXPECT_FALSE(m_world.helpers[1].automatic);
    m_world.finishHelper(1, FocusProcessResult::exited(0));
    EXPECT_EQ(m_log, (QStringList{"update", "update", "auto:busy", "update", "update", "manual:success"}));
}

TEST_F(EnforcerTest, ManualRequestForTheSameTargetWaitsForTheHelper)
{
    pin(hangul);
    request("auto", false);
    request("manual", true);
    EXPECT_EQ(m_world.helpers[0].cancels, 0);
    m_world.finishHelper(0, FocusProcessResult::exited(0));
    EXPECT_EQ(m_world.helpers.size(), 1u) << "already current: no second helper";
    EXPECT_EQ(m_log,
              (QStringList{"update", "update", "automatic:success", "auto:success", "update", "manual:success"}));
}

TEST_F(EnforcerTest, NewerManualRequestDisplacesAWaitingOne)
{
    pin(hangul);
    request("running", true);
    request("older", true);
    request("newer", true);
    EXPECT_EQ(m_log, (QStringList{"update", "older:busy"}));
}

TEST_F(EnforcerTest, AutomaticRequestWhileAManualOneWaitsIsBusy)
{
    pin(hangul);
    request("running", false);
    pin(anthy);
    request("manual", true);
    request("auto", false);
    EXPECT_EQ(m_log, (QStringList{"update", "auto:busy"}));
}

TEST_F(EnforcerTest, CancellingARunningManualRequestStopsItsHelper)
{
    pin(hangul);
    request("manual", true);
    m_enforcer->cancelManualRequests();
    m_enforcer->cancelManualRequests();
    EXPECT_EQ(m_world.helpers[0].cancels, 1);
    // Even a helper that got through reports busy once cancelled.
    m_world.finishHelper(0, FocusProcessResult::exited(0));
    EXPECT_EQ(m_log, (QStringList{"update", "update", "manual:busy"}));
}

TEST_F(EnforcerTest, CancellingDropsAWaitingManualRequest)
{
    pin(hangul);
    request("auto", false);
    request("manual", true);
    m_enforcer->cancelManualRequests();
    EXPECT_EQ(m_world.helpers[0].cancels, 0) << "the automatic helper is not the user's to cancel";
    EXPECT_EQ(m_log, (QStringList{"update", "manual:busy"}));
}

TEST_F(EnforcerTest, TargetChangedWhileTheHelperRunsIsBusy)
{
    pin(hangul);
    request("manual", true);
    pin(us);
    m_world.finishHelper(0, FocusProcessResult::exited(0));
    EXPECT_EQ(m_log, (QStringList{"update", "update", "manual:busy"}));
}

TEST_F(EnforcerTest, AutomaticHelperRunsAreSpacedThreeSecondsApart)
{
    pin(hangul);
    request("first", false);
    m_world.finishHelper(0, FocusProcessResult::exited(78));
    m_world.clock += 2900ms;
    request("tooSoon", false);
    EXPECT_EQ(m_world.helpers.size(), 1u);
    request("manual", true);
    EXPECT_EQ(m_world.helpers.size(), 2u) << "manual requests are not rate-limited";
    m_world.finishHelper(1, FocusProcessResult::exited(78));
    m_world.clock += 3s;
    request("later", false);
    EXPECT_EQ(m_world.helpers.size(), 3u);
    EXPECT_TRUE(m_log.contains("tooSoon:busy"));
}

TEST_F(EnforcerTest, RefusedHelperRunIsRetriedWhenItIsAllowed)
{
    pin(hangul);
    request("first", false);
    m_world.finishHelper(0, FocusProcessResult::exited(78));
    m_world.clock += 2950ms;
    request("tooSoon", false);
    ASSERT_EQ(m_world.helpers.size(), 1u);
    m_world.clock += 50ms;
    EXPECT_TRUE(spinUntil([&] { return m_world.helpers.size() == 2; }, 1000)) << "no retry when the spacing ended";
    EXPECT_TRUE(m_world.helpers[1].automatic);
}

TEST_F(EnforcerTest, RequestsFromInsideCallbacksDoNotNest)
{
    m_enforcer->enforce(true, true, [this](const SwitchOutcome &) {
        m_log << "first:begin";
        request("second", true);
        m_log << "first:end";
    });
    EXPECT_EQ(m_log, (QStringList{"update", "first:begin", "first:end", "update", "second:success"}));
}

// Triggers, with hand-operated subscriptions.
class EnforcerTriggerTest : public EnforcerTest
{
protected:
    void SetUp() override
    {
        EnforcerTest::SetUp();
        EnforcementTriggers triggers = EnforcementTriggers::none();
        triggers.selectionChanged = [this](QObject *, std::function<void()> callback) {
            m_selection = std::move(callback);
        };
        triggers.activation = [this](QObject *, std::function<void(qint64)> callback) {
            m_activation = std::move(callback);
        };
        triggers.wake = [this](QObject *, std::function<void()> callback) { m_wake = std::move(callback); };
        triggers.keeping = [this](bool keeping) { m_keeping << keeping; };
        m_enforcer = std::make_unique<Enforcer>(m_world.dependencies(), triggers);
        m_enforcer->setOnUpdate([this] { m_log << "update"; });
        m_enforcer->start();
        m_enforcer->start();
    }

    std::function<void()> m_selection;
    std::function<void()> m_wake;
    std::function<void(qint64)> m_activation;
    QList<bool> m_keeping;
};

// Polling backends look only while this says a source is pinned and kept.
TEST_F(EnforcerTriggerTest, TellsWhetherItKeepsAtEachLook)
{
    const auto look = [this](std::optional<QString> pinned, bool enabled) {
        m_world.config.sourceID = std::move(pinned);
        m_world.config.enabled = enabled;
        m_wake();
        return m_keeping.takeLast();
    };
    EXPECT_TRUE(look(us, true));
    EXPECT_FALSE(look(us, false)) << "paused";
    EXPECT_FALSE(look(std::nullopt, true)) << "nothing pinned";
    EXPECT_FALSE(look(QString(), true)) << "nothing pinned";
}

TEST_F(EnforcerTriggerTest, SelectionChangeSwitchesBackFromTheEventLoop)
{
    m_selection();
    EXPECT_TRUE(m_world.selected.isEmpty()) << "handled later, not inside the sender";
    QCoreApplication::processEvents();
    EXPECT_EQ(m_world.selected, QStringList{us});
}

TEST_F(EnforcerTriggerTest, WakeSwitchesBackAtOnce)
{
    m_wake();
    EXPECT_EQ(m_world.selected, QStringList{us});
}

TEST_F(EnforcerTriggerTest, ActivationsRightAfterASwitchAndOurOwnAreIgnored)
{
    m_wake();
    m_world.current = de;
    m_world.clock += 900ms;
    m_activation(4242);
    m_activation(QCoreApplication::applicationPid());
    EXPECT_EQ(m_world.selected.size(), 1);
    m_world.clock += 200ms;
    m_activation(QCoreApplication::applicationPid());
    EXPECT_EQ(m_world.selected.size(), 1);
    m_activation(4242);
    EXPECT_EQ(m_world.selected.size(), 2);
}

// The platform decides whether a CJKV target goes through the focus helper.
class EnforcementTargetTest : public testing::TestWithParam<std::tuple<bool, const char *, bool>>
{
};

TEST_P(EnforcementTargetTest, NeedsTheHelperOnlyWhereThePlatformSays)
{
    const auto [platformNeedsFocus, language, expected] = GetParam();
    FakeInputSources system;
    system.state->sources = {FakeInputSources::keyboard("src", "Source", {language})};
    InputSources port = system.port();
    port.cjkvNeedsFocus = platformNeedsFocus;
    const std::optional<EnforcementTarget> target = EnforcementDependencies::over(port).find("src");
    ASSERT_TRUE(target);
    EXPECT_EQ(target->requiresFocus, expected);
}

INSTANTIATE_TEST_SUITE_P(Enforcer, EnforcementTargetTest,
                         testing::Values(std::tuple{true, "ko", true}, std::tuple{false, "ko", false},
                                         std::tuple{true, "de", false}, std::tuple{false, "de", false}));

} // namespace
