#include "core/engine/Enforcer.h"
#include "core/engine/FocusExitStatus.h"
#include "core/engine/SwitchRetry.h"
#include "core/l10n/L10n.h"
#include "support/FakeEnforcementWorld.h"
#include "support/FakeInputSources.h"
#include "support/ParamName.h"
#include "support/Spin.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

namespace {

int exitStatus(const QString &name)
{
    using enum FocusExitStatus;
    const FocusExitStatus statuses[] = {Switched, SecureInput, NotWanted, Missing, Failed};
    const qsizetype i = QStringList{"switched", "secure-input", "not-wanted", "missing", "failed"}.indexOf(name);
    return i < 0 ? -1 : static_cast<int>(statuses[i]);
}

using namespace std::chrono_literals;

const QString us = "xkb:us::eng";
const QString de = "xkb:de::ger";
const QString hangul = "hangul";

// Runs the engine on a fake world and writes down every callback in order.
class EnforcerTest : public testing::Test
{
protected:
    void SetUp() override
    {
        m_enforcer = std::make_unique<Enforcer>(m_world.dependencies());
        m_enforcer->setOnUpdate([this] { m_log << QStringLiteral("update"); });
        m_enforcer->setOnAutomaticOutcome(
            [this](const SwitchOutcome &outcome) { m_log << QStringLiteral("automatic:") + describe(outcome); });
    }

    static QString describe(const SwitchOutcome &outcome)
    {
        using O = SwitchOutcome;
        const std::pair<O, const char *> names[] = {{O::success(), "success"},
                                                    {O::secureInput(), "secureInput"},
                                                    {O::keymapHeld(), "keymapHeld"},
                                                    {O::missingSource(), "missingSource"},
                                                    {O::busy(), "busy"}};
        for (const auto &[known, name] : names) {
            if (outcome == known)
                return name;
        }
        return "failed(" + (QStringList{outcome.reason().key()} + outcome.reason().arguments()).join(' ') + ")";
    }

    // A request whose outcome lands in the log under `name`.
    void request(const QString &name, SwitchOrigin origin)
    {
        m_enforcer->enforce(origin, [this, name](const SwitchOutcome &outcome) {
            m_log << name + QLatin1Char(':') + describe(outcome);
        });
    }

    void pin(const QString &id) { m_world.config.sourceID = id; }

    FakeEnforcementWorld m_world;
    std::unique_ptr<Enforcer> m_enforcer;
    QStringList m_log;
};

// Requests as a script of steps. The world: "pin [id]", "unpin", "pause", "secure", "held", "current <id>",
// "unreachable <why>", "select <status>", "unconfirmed", "launch-error <why>". The user's requests: "auto <name>",
// "manual <name>", "cancel". The helpers: "exit <helper> <status>" (switched, secure-input, not-wanted, missing,
// failed), "exit-unswitched <helper> <status>", "timeout <helper>", "cancelled <helper>".
struct ScriptCase
{
    const char *name;
    QStringList steps;
    QStringList log;
    QStringList selected;
    // Each helper started: "<id> auto|manual <times cancelled>".
    QStringList helpers;
};

struct EnforcerScriptTest : EnforcerTest, testing::WithParamInterface<ScriptCase>
{
};

TEST_P(EnforcerScriptTest, AnswersEveryRequestOnce)
{
    for (const QString &step : GetParam().steps) {
        const QStringList word = step.split(QLatin1Char(' '));
        const QString what = word[0], arg = word.value(1);
        if (what == "pin")
            pin(arg);
        else if (what == "unpin")
            m_world.config.sourceID.reset();
        else if (what == "pause")
            m_world.config.enabled = false;
        else if (what == "secure")
            m_world.secure = true;
        else if (what == "held")
            m_world.keymapHeld = true;
        else if (what == "current")
            m_world.current = arg;
        else if (what == "unreachable")
            m_world.unreachable = LocalizedText(arg, word.mid(2));
        else if (what == "select")
            m_world.selectStatus = arg.toInt();
        else if (what == "unconfirmed")
            m_world.selectTakesEffect = false;
        else if (what == "launch-error")
            m_world.launchError = word.mid(1).join(' ');
        else if (what == "auto" || what == "manual")
            request(arg, what == "auto" ? SwitchOrigin::Automatic : SwitchOrigin::Manual);
        else if (what == "cancel")
            m_enforcer->cancelManualRequests();
        else if (what == "exit" || what == "exit-unswitched")
            m_world.finishHelper(arg.toUInt(), FocusProcessResult::exited(exitStatus(word[2])), what == "exit");
        else if (what == "timeout")
            m_world.finishHelper(arg.toUInt(), FocusProcessResult::timedOut());
        else if (what == "cancelled")
            m_world.finishHelper(arg.toUInt(), FocusProcessResult::cancelled());
        else
            FAIL() << "unknown step " << qPrintable(step);
    }
    EXPECT_EQ(m_log, GetParam().log);
    EXPECT_EQ(m_world.selected, GetParam().selected);
    QStringList helpers;
    bool running = false;
    for (const auto &helper : m_world.helpers) {
        helpers << QStringLiteral("%1 %2 %3").arg(helper.id, helper.automatic ? "auto" : "manual").arg(helper.cancels);
        running = running || helper.completion;
    }
    EXPECT_EQ(helpers, GetParam().helpers);
    EXPECT_EQ(m_enforcer->isSwitching(), running) << "only a running helper keeps a request active";
}

// clang-format off
const ScriptCase scriptCases[] = {
    {"DirectSwitch", {"auto r"}, {"update", "automatic:success", "r:success"}, {us}, {}},
    {"ManualSwitch", {"manual r"}, {"update", "r:success"}, {us}, {}},
    {"KeepingOffAutomaticDoesNothing", {"pause", "auto r"}, {"r:success"}, {}, {}},
    {"KeepingOffManualStillSwitches", {"pause", "manual r"}, {"update", "r:success"}, {us}, {}},
    {"NothingPinned", {"unpin", "manual r"}, {"r:missingSource"}, {}, {}},
    {"NothingCurrentIsWaitedOut", {"current", "auto r"}, {"update", "r:busy"}, {}, {}},
    {"NothingCurrentManualStillSwitches", {"current", "manual r"}, {"update", "r:success"}, {us}, {}},
    {"PinnedSourceGone", {"pin gone", "auto r"}, {"update", "automatic:missingSource", "r:missingSource"}, {}, {}},
    {"SecureInputWinsOverAlreadyCurrent", {"secure", "current xkb:us::eng", "auto r"},
     {"update", "automatic:secureInput", "r:secureInput"}, {}, {}},
    // A remote client's keymap is not fought, not even by hand, nor through the helper.
    {"HeldKeymapIsNeverSwitched", {"held", "auto a", "manual m", "pin hangul", "manual h"},
     {"update", "automatic:keymapHeld", "a:keymapHeld", "update", "m:keymapHeld", "update", "h:keymapHeld"}, {}, {}},
    {"UnreachableSourcesAreNeitherReadNorSwitched", {"unreachable cli.err.im-absent IBus", "current xkb:us::eng", "manual r"},
     {"update", "r:failed(cli.err.im-absent IBus)"}, {}, {}},
    {"SelectFails", {"select -50", "manual r"}, {"update", "r:failed(enf.switch xkb:us::eng -50)"}, {us}, {}},
    {"SelectNotConfirmed", {"unconfirmed", "auto r"},
     {"update", "automatic:failed(enf.unconfirmed xkb:us::eng)", "r:failed(enf.unconfirmed xkb:us::eng)"}, {us}, {}},
    {"CJKVStartsTheHelper", {"pin hangul", "auto r"}, {"update"}, {}, {"hangul auto 0"}},
    {"HelperCannotLaunch", {"pin hangul", "launch-error denied", "manual r"},
     {"update", "r:failed(enf.focus denied)"}, {}, {}},
    // What the helper's end means for a manual request.
    {"HelperSwitched", {"pin hangul", "manual r", "exit 0 switched"},
     {"update", "update", "r:success"}, {}, {"hangul manual 0"}},
    {"HelperExitedZeroButNotCurrent", {"pin hangul", "manual r", "exit-unswitched 0 switched"},
     {"update", "update", "r:failed(enf.unconfirmed hangul)"}, {}, {"hangul manual 0"}},
    {"HelperSawSecureInput", {"pin hangul", "manual r", "exit-unswitched 0 secure-input"},
     {"update", "update", "r:secureInput"}, {}, {"hangul manual 0"}},
    {"HelperNotWanted", {"pin hangul", "manual r", "exit-unswitched 0 not-wanted"},
     {"update", "update", "r:busy"}, {}, {"hangul manual 0"}},
    {"HelperFoundNoSource", {"pin hangul", "manual r", "exit-unswitched 0 missing"},
     {"update", "update", "r:missingSource"}, {}, {"hangul manual 0"}},
    {"HelperFailed", {"pin hangul", "manual r", "exit-unswitched 0 failed"},
     {"update", "update", "r:failed(enf.helper-exit 78)"}, {}, {"hangul manual 0"}},
    {"HelperTimedOut", {"pin hangul", "manual r", "timeout 0"},
     {"update", "update", "r:failed(enf.timeout)"}, {}, {"hangul manual 0"}},
    {"HelperCancelled", {"pin hangul", "manual r", "cancelled 0"},
     {"update", "update", "r:busy"}, {}, {"hangul manual 0"}},
    // Requests racing a running helper.
    {"KeepingOffCancelsARunningAutomaticHelper", {"pin hangul", "auto auto", "pause", "auto again", "cancelled 0"},
     {"update", "again:success", "update", "auto:busy"}, {}, {"hangul auto 1"}},
    {"SecondAutomaticTriggerForTheSameTargetIsBusyAtOnce", {"pin hangul", "auto first", "auto second"},
     {"update", "second:busy"}, {}, {"hangul auto 0"}},
    // The user pins another source while an automatic helper runs, then asks for it.
    {"ManualRequestForANewTargetCancelsTheAutomaticHelper",
     {"pin hangul", "auto auto", "pin anthy", "manual manual", "cancelled 0", "exit 1 switched"},
     {"update", "update", "auto:busy", "update", "update", "manual:success"}, {}, {"hangul auto 1", "anthy manual 0"}},
    {"ManualRequestForTheSameTargetWaitsForTheHelper", {"pin hangul", "auto auto", "manual manual", "exit 0 switched"},
     {"update", "update", "automatic:success", "auto:success", "update", "manual:success"}, {}, {"hangul auto 0"}},
    {"NewerManualRequestDisplacesAWaitingOne", {"pin hangul", "manual running", "manual older", "manual newer"},
     {"update", "older:busy"}, {}, {"hangul manual 0"}},
    {"AutomaticRequestWhileAManualOneWaitsIsBusy",
     {"pin hangul", "auto running", "pin anthy", "manual manual", "auto auto"},
     {"update", "auto:busy"}, {}, {"hangul auto 1"}},
    // Cancelling twice stops the helper once; even a helper that got through then reports busy.
    {"CancellingARunningManualRequestStopsItsHelper", {"pin hangul", "manual manual", "cancel", "cancel", "exit 0 switched"},
     {"update", "update", "manual:busy"}, {}, {"hangul manual 1"}},
    // The automatic helper is not the user's to cancel.
    {"CancellingDropsAWaitingManualRequest", {"pin hangul", "auto auto", "manual manual", "cancel"},
     {"update", "manual:busy"}, {}, {"hangul auto 0"}},
    {"TargetChangedWhileTheHelperRunsIsBusy", {"pin hangul", "manual manual", "pin xkb:us::eng", "exit 0 switched"},
     {"update", "update", "manual:busy"}, {}, {"hangul manual 0"}}};
// clang-format on
INSTANTIATE_TEST_SUITE_P(Enforcer, EnforcerScriptTest, testing::ValuesIn(scriptCases), ParamName());

const auto exited = FocusProcessResult::exited;
constexpr int failed = static_cast<int>(FocusExitStatus::Failed);

TEST_F(EnforcerTest, AutomaticHelperRunsAreSpacedThreeSecondsApart)
{
    pin(hangul);
    request("first", SwitchOrigin::Automatic);
    m_world.finishHelper(0, exited(failed));
    m_world.clock += 2900ms;
    request("tooSoon", SwitchOrigin::Automatic);
    EXPECT_EQ(m_world.helpers.size(), 1u);
    EXPECT_TRUE(m_log.contains("tooSoon:busy"));
    m_world.clock += 100ms;
    EXPECT_TRUE(spinUntil([&] { return m_world.helpers.size() == 2; }, 1000)) << "no retry when the spacing ended";
    EXPECT_TRUE(m_world.helpers[1].automatic);
    m_world.finishHelper(1, exited(failed));
    request("manual", SwitchOrigin::Manual);
    EXPECT_EQ(m_world.helpers.size(), 3u) << "manual requests are not rate-limited";
}

TEST_F(EnforcerTest, RequestsFromInsideCallbacksDoNotNest)
{
    m_enforcer->enforce(SwitchOrigin::Manual, [this](const SwitchOutcome &) {
        m_log << "first:begin";
        request("second", SwitchOrigin::Manual);
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

    // Activations within a second of a switch, and our own, are ignored.
    m_world.current = de;
    m_world.clock += 900ms;
    activation(4242);
    activation(QCoreApplication::applicationPid());
    m_world.clock += 100ms;
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
    EXPECT_FALSE(look(QString(), true)) << "nothing pinned";
}

// Where the system announces every change, a tick that finds what the last
// look found tells no one; anything it finds changed, it tells.
TEST(EnforcerTickTest, TellsOnlyWhatChanged)
{
    using W = FakeEnforcementWorld;
    struct Row
    {
        const char *name;
        bool enabled;
        std::function<void(W &)> change;
        bool told, listAnnounced = true, announced = true;
    };
    const auto unreachable = [](W &w) { w.unreachable = LocalizedText("x"); };
    const auto away = [](W &w) { w.current = de; };
    for (const Row &row :
         {Row{"nothing", true, {}, false}, Row{"current", true, away, true},
          Row{"language", true, [](W &w) { w.config.language = "fr"; }, true},
          Row{"unreachable", true, unreachable, true}, Row{"paused, nothing", false, {}, false},
          Row{"paused, current", false, away, true}, Row{"paused, unreachable", false, unreachable, true},
          Row{"list unannounced", true, {}, true, false}, Row{"polled", true, {}, true, true, false}}) {
        SCOPED_TRACE(row.name);
        W world;
        world.current = us;
        world.config.enabled = row.enabled;
        int looks = 0;
        EnforcementDependencies dependencies = world.dependencies();
        dependencies.config = [&looks, read = dependencies.config] { return ++looks, read(); };
        EnforcementTriggers triggers = EnforcementTriggers::none();
        triggers.listChanged = [&row](QObject *, const std::function<void()> &) { return row.listAnnounced; };
        triggers.announced = [&row] { return row.announced; };
        triggers.tick = 5ms;
        Enforcer enforcer(dependencies, triggers);
        int told = 0;
        enforcer.setOnUpdate([&] { ++told; });
        enforcer.setOnAutomaticOutcome([&](const SwitchOutcome &) { ++told; });
        enforcer.start();
        const auto ticks = [&](int count) {
            return spinUntil([&, until = looks + count] { return looks >= until; }, 2000);
        };
        ASSERT_TRUE(ticks(2)) << "the first look has nothing to compare with";
        told = 0;
        if (row.change)
            row.change(world);
        ASSERT_TRUE(ticks(4));
        EXPECT_EQ(told > 0, row.told) << told;
    }
}

// The platform decides whether a CJKV target goes through the focus helper.
TEST(EnforcementTargetTest, NeedsTheHelperOnlyWhereThePlatformSays)
{
    using Row = std::tuple<bool, const char *, bool>;
    for (const auto &[platformNeedsFocus, language, expected] :
         {Row{true, "ko", true}, Row{false, "ko", false}, Row{true, "de", false}, Row{false, "de", false}}) {
        FakeInputSources system;
        system.sources = {FakeInputSources::keyboard("src", "Source", {language})};
        InputSources port = system.port();
        port.cjkvNeedsFocus = platformNeedsFocus;
        const std::optional<EnforcementTarget> target = EnforcementDependencies::over(port).find("src");
        ASSERT_TRUE(target);
        EXPECT_EQ(target->requiresFocus, expected) << language << platformNeedsFocus;
    }
}

} // namespace

// A command's switch against other commands' pins: it follows the pin until its
// source is current, at most four times, and counts an overtaken switch as done.
TEST(SwitchRetryTest, FollowsThePinUntilItIsCurrent)
{
    using K = SwitchOutcome::Kind;
    struct Row
    {
        const char *name;
        QList<std::optional<SwitchOutcome>> outcomes; // one per attempt; the last repeats
        QList<QString> pins;                          // as read after each attempt; the last repeats
        QList<QString> currents;                      // likewise
        std::optional<K> expected;
        int attempts;
    };
    const SwitchOutcome ok = SwitchOutcome::success(), busy = SwitchOutcome::busy();
    const SwitchOutcome failed = SwitchOutcome::failed(LocalizedText("enf.timeout"));
    // clang-format off
    const Row rows[] = {
        {"Done", {ok}, {"a"}, {"a"}, K::Success, 1},
        {"OvertakenBusy", {busy}, {"a"}, {"a"}, K::Success, 1},
        {"OvertakenFailure", {failed}, {"a"}, {"a"}, K::Success, 1},
        {"SecureStays", {SwitchOutcome::secureInput()}, {"a"}, {"a"}, K::SecureInput, 1},
        {"FollowsANewPin", {ok}, {"b", "b"}, {"a", "b"}, K::Success, 2},
        {"GivesUpAfterFour", {busy}, {"b"}, {"a"}, K::Busy, 4},
        {"FailureNotCurrent", {failed, ok}, {"a"}, {"b", "a"}, K::Success, 2},
        {"NothingPinned", {failed}, {""}, {"a"}, K::Failed, 1},
        {"NeverReported", {std::nullopt}, {"a"}, {"a"}, std::nullopt, 1},
    };
    // clang-format on
    for (const Row &row : rows) {
        int attempt = 0;
        const auto at = [&](const auto &list) { return list.value(attempt - 1, list.last()); };
        const SwitchRetry::World world{[&] { return ++attempt, at(row.outcomes); },
                                       [&]() -> std::optional<QString> {
                                           const QString pin = at(row.pins);
                                           return pin.isEmpty() ? std::nullopt : std::optional(pin);
                                       },
                                       [&] { return at(row.currents); }};
        const std::optional<SwitchOutcome> outcome = SwitchRetry::run(world);
        EXPECT_EQ(outcome ? std::optional(outcome->kind()) : std::nullopt, row.expected) << row.name;
        EXPECT_EQ(attempt, row.attempts) << row.name;
    }
}
