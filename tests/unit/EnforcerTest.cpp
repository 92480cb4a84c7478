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

using Log = QStringList;

// Each row: arrange, manual?, holding focus?; then the log, the sources selected and the helpers started.
// clang-format off
INSTANTIATE_TEST_SUITE_P(Enforcer, EnforcerSingleRequestTest, testing::Values(
    SingleCase{"DirectSwitch", nothing, false, true, [] { return Log{"update", "automatic:success", "r:success"}; }, {us}, 0},
    SingleCase{"AlreadyCurrent", [](auto &w) { w.current = us; }, false, true,
               [] { return Log{"update", "automatic:success", "r:success"}; }, {}, 0},
    SingleCase{"ManualSwitch", nothing, true, true, [] { return Log{"update", "r:success"}; }, {us}, 0},
    SingleCase{"KeepingOffAutomaticDoesNothing", [](auto &w) { w.config.enabled = false; }, false, true,
               [] { return Log{"r:success"}; }, {}, 0},
    SingleCase{"KeepingOffManualStillSwitches", [](auto &w) { w.config.enabled = false; }, true, true,
               [] { return Log{"update", "r:success"}; }, {us}, 0},
    SingleCase{"NothingPinned", [](auto &w) { w.config.sourceID.reset(); }, true, true, [] { return Log{"r:missingSource"}; }, {}, 0},
    SingleCase{"EmptyPin", [](auto &w) { w.config.sourceID = QString(); }, false, true, [] { return Log{"r:missingSource"}; }, {}, 0},
    SingleCase{"PinnedSourceGone", [](auto &w) { w.config.sourceID = "gone"; }, false, true,
               [] { return Log{"update", "automatic:missingSource", "r:missingSource"}; }, {}, 0},
    SingleCase{"SecureInputWinsOverAlreadyCurrent", [](auto &w) { w.secure = true; w.current = us; }, false, true,
               [] { return Log{"update", "automatic:secureInput", "r:secureInput"}; }, {}, 0},
    SingleCase{"UnreachableSourcesAreNeitherReadNorSwitched", [](auto &w) { w.unreachable = "no extension"; w.current = us; },
               true, true, [] { return Log{"update", "r:failed(no extension)"}; }, {}, 0},
    SingleCase{"SelectFails", [](auto &w) { w.selectStatus = -50; }, true, true,
               [] { return Log{"update", "r:" + failed("enf.switch", {us, "-50"})}; }, {us}, 0},
    SingleCase{"SelectNotConfirmed", [](auto &w) { w.selectTakesEffect = false; }, false, true,
               [] { return Log{"update", "automatic:" + failed("enf.unconfirmed", {us}), "r:" + failed("enf.unconfirmed", {us})}; }, {us}, 0},
    SingleCase{"CJKVStartsTheHelper", pinHangul, false, true, [] { return Log{"update"}; }, {}, 1},
    SingleCase{"CJKVWithoutHoldingFocusIsBusy", pinHangul, true, false, [] { return Log{"update", "r:busy"}; }, {}, 0},
    SingleCase{"HelperCannotLaunch", [](auto &w) { w.config.sourceID = hangul; w.launchError = "no exec"; }, true, true,
               [] { return Log{"update", "r:" + failed("enf.focus", {"no exec"})}; }, {}, 0}),
    ParamName());
// clang-format on

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

const auto exited = FocusProcessResult::exited;

// clang-format off
INSTANTIATE_TEST_SUITE_P(Enforcer, EnforcerHelperResultTest, testing::Values(
    HelperCase{"Switched", exited(0), true, [] { return QString("success"); }},
    HelperCase{"ExitedZeroButNotCurrent", exited(0), false, [] { return failed("enf.unconfirmed", {hangul}); }},
    HelperCase{"SecureInput", exited(75), false, [] { return QString("secureInput"); }},
    HelperCase{"NotWanted", exited(76), false, [] { return QString("busy"); }},
    HelperCase{"Missing", exited(77), false, [] { return QString("missingSource"); }},
    HelperCase{"Failed", exited(78), false, [] { return failed("enf.helper-exit", {"78"}); }},
    HelperCase{"Crashed", exited(-1), false, [] { return failed("enf.helper-exit", {"-1"}); }},
    HelperCase{"TimedOut", FocusProcessResult::timedOut(), false, [] { return failed("enf.timeout"); }},
    HelperCase{"Cancelled", FocusProcessResult::cancelled(), false, [] { return QString("busy"); }}),
    ParamName());
// clang-format on

// Requests racing a running helper, as a script of steps: "pin <id>", "pause", "auto <name>",
// "manual <name>", "cancel" (the user's requests), "exit <helper> <status>", "cancelled <helper>".
struct RaceCase
{
    const char *name;
    QStringList steps;
    QStringList log;
    // Each helper started: "<id> auto|manual <times cancelled>".
    QStringList helpers;
};

class EnforcerRaceTest : public EnforcerTest, public testing::WithParamInterface<RaceCase>
{
};

TEST_P(EnforcerRaceTest, AnswersEveryRequestOnce)
{
    for (const QString &step : GetParam().steps) {
        const QStringList word = step.split(QLatin1Char(' '));
        if (word[0] == "pin")
            pin(word[1]);
        else if (word[0] == "pause")
            m_world.config.enabled = false;
        else if (word[0] == "auto" || word[0] == "manual")
            request(word[1], word[0] == "manual");
        else if (word[0] == "cancel")
            m_enforcer->cancelManualRequests();
        else if (word[0] == "exit")
            m_world.finishHelper(word[1].toUInt(), FocusProcessResult::exited(word[2].toInt()));
        else if (word[0] == "cancelled")
            m_world.finishHelper(word[1].toUInt(), FocusProcessResult::cancelled());
        else
            FAIL() << "unknown step " << qPrintable(step);
    }
    EXPECT_EQ(m_log, GetParam().log);
    QStringList helpers;
    for (const auto &helper : m_world.helpers)
        helpers << QStringLiteral("%1 %2 %3").arg(helper.id, helper.automatic ? "auto" : "manual").arg(helper.cancels);
    EXPECT_EQ(helpers, GetParam().helpers);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Enforcer, EnforcerRaceTest, testing::Values(
    RaceCase{"KeepingOffCancelsARunningAutomaticHelper", {"pin hangul", "auto auto", "pause", "auto again", "cancelled 0"},
             {"update", "again:success", "update", "auto:busy"}, {"hangul auto 1"}},
    RaceCase{"SecondAutomaticTriggerForTheSameTargetIsBusyAtOnce", {"pin hangul", "auto first", "auto second"},
             {"update", "second:busy"}, {"hangul auto 0"}},
    // The user pins another source while an automatic helper runs, then asks for it.
    RaceCase{"ManualRequestForANewTargetCancelsTheAutomaticHelper",
             {"pin hangul", "auto auto", "pin anthy", "manual manual", "cancelled 0", "exit 1 0"},
             {"update", "update", "auto:busy", "update", "update", "manual:success"}, {"hangul auto 1", "anthy manual 0"}},
    RaceCase{"ManualRequestForTheSameTargetWaitsForTheHelper", {"pin hangul", "auto auto", "manual manual", "exit 0 0"},
             {"update", "update", "automatic:success", "auto:success", "update", "manual:success"}, {"hangul auto 0"}},
    RaceCase{"NewerManualRequestDisplacesAWaitingOne", {"pin hangul", "manual running", "manual older", "manual newer"},
             {"update", "older:busy"}, {"hangul manual 0"}},
    RaceCase{"AutomaticRequestWhileAManualOneWaitsIsBusy",
             {"pin hangul", "auto running", "pin anthy", "manual manual", "auto auto"}, {"update", "auto:busy"}, {"hangul auto 1"}},
    // Cancelling twice stops the helper once; even a helper that got through then reports busy.
    RaceCase{"CancellingARunningManualRequestStopsItsHelper", {"pin hangul", "manual manual", "cancel", "cancel", "exit 0 0"},
             {"update", "update", "manual:busy"}, {"hangul manual 1"}},
    // The automatic helper is not the user's to cancel.
    RaceCase{"CancellingDropsAWaitingManualRequest", {"pin hangul", "auto auto", "manual manual", "cancel"},
             {"update", "manual:busy"}, {"hangul auto 0"}},
    RaceCase{"TargetChangedWhileTheHelperRunsIsBusy", {"pin hangul", "manual manual", "pin xkb:us::eng", "exit 0 0"},
             {"update", "update", "manual:busy"}, {"hangul manual 0"}}),
    ParamName());
// clang-format on

TEST_F(EnforcerTest, AutomaticHelperRunsAreSpacedThreeSecondsApart)
{
    pin(hangul);
    request("first", false);
    m_world.finishHelper(0, exited(78));
    m_world.clock += 2900ms;
    request("tooSoon", false);
    EXPECT_EQ(m_world.helpers.size(), 1u);
    EXPECT_TRUE(m_log.contains("tooSoon:busy"));
    m_world.clock += 100ms;
    EXPECT_TRUE(spinUntil([&] { return m_world.helpers.size() == 2; }, 1000)) << "no retry when the spacing ended";
    EXPECT_TRUE(m_world.helpers[1].automatic);
    m_world.finishHelper(1, exited(78));
    request("manual", true);
    EXPECT_EQ(m_world.helpers.size(), 3u) << "manual requests are not rate-limited";
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
TEST_F(EnforcerTest, Triggers)
{
    std::function<void()> selection, wake;
    std::function<void(qint64)> activation;
    QList<bool> keeping;
    EnforcementTriggers triggers = EnforcementTriggers::none();
    triggers.selectionChanged = [&](QObject *, std::function<void()> callback) { selection = std::move(callback); };
    triggers.activation = [&](QObject *, std::function<void(qint64)> callback) { activation = std::move(callback); };
    triggers.wake = [&](QObject *, std::function<void()> callback) { wake = std::move(callback); };
    triggers.keeping = [&](bool keep) { keeping << keep; };
    m_enforcer = std::make_unique<Enforcer>(m_world.dependencies(), triggers);
    m_enforcer->start();
    m_enforcer->start();

    selection();
    EXPECT_TRUE(m_world.selected.isEmpty()) << "handled later, not inside the sender";
    QCoreApplication::processEvents();
    EXPECT_EQ(m_world.selected, QStringList{us});

    // Activations right after a switch, and our own, are ignored.
    m_world.current = de;
    m_world.clock += 900ms;
    activation(4242);
    activation(QCoreApplication::applicationPid());
    m_world.clock += 200ms;
    activation(QCoreApplication::applicationPid());
    EXPECT_EQ(m_world.selected.size(), 1);
    activation(4242);
    EXPECT_EQ(m_world.selected.size(), 2);

    m_world.current = de;
    wake();
    EXPECT_EQ(m_world.selected.size(), 3) << "a wake switches back at once";

    // Polling backends look only while this says a source is pinned and kept.
    const auto look = [&](std::optional<QString> pinned, bool enabled) {
        m_world.config.sourceID = std::move(pinned);
        m_world.config.enabled = enabled;
        wake();
        return keeping.takeLast();
    };
    EXPECT_TRUE(look(us, true));
    EXPECT_FALSE(look(us, false)) << "paused";
    EXPECT_FALSE(look(std::nullopt, true)) << "nothing pinned";
    EXPECT_FALSE(look(QString(), true)) << "nothing pinned";
}

// The platform decides whether a CJKV target goes through the focus helper.
TEST(EnforcementTargetTest, NeedsTheHelperOnlyWhereThePlatformSays)
{
    using Row = std::tuple<bool, const char *, bool>;
    for (const auto &[platformNeedsFocus, language, expected] :
         {Row{true, "ko", true}, Row{false, "ko", false}, Row{true, "de", false}, Row{false, "de", false}}) {
        FakeInputSources system;
        system.state->sources = {FakeInputSources::keyboard("src", "Source", {language})};
        InputSources port = system.port();
        port.cjkvNeedsFocus = platformNeedsFocus;
        const std::optional<EnforcementTarget> target = EnforcementDependencies::over(port).find("src");
        ASSERT_TRUE(target);
        EXPECT_EQ(target->requiresFocus, expected) << language << platformNeedsFocus;
    }
}

} // namespace
