// The application model on a scripted world: what it refuses, what a failure
// leaves, and which late answers it ignores. What the panel drives is tested
// through the panel.
#include "app/AppModel.h"
#include "core/config/L10n.h"
#include "core/engine/Enforcer.h"

#include "support/FakeAppWorld.h"
#include "support/FakeEnforcementWorld.h"
#include "support/ParamName.h"

#include <QCoreApplication>
#include <QThreadPool>

#include <gtest/gtest.h>

#include <memory>

namespace {

const QString german = QStringLiteral("xkb:de::deu");

class AppModelTest : public testing::Test
{
protected:
    void TearDown() override
    {
        QThreadPool::globalInstance()->waitForDone(); // login work still running holds the world
        L10n::setLanguageCode(std::nullopt);
    }
    AppModel &model()
    {
        if (!m_model)
            m_model = std::make_unique<AppModel>(world.services(), &m_enforcer);
        return *m_model;
    }
    // Lets login work finish and its results arrive.
    static void settle()
    {
        QThreadPool::globalInstance()->waitForDone();
        QCoreApplication::processEvents();
    }
    void finishApply(size_t index, const QString &failure) { world.applies.at(index)(SwitchOutcome::failed(failure)); }
    QString warning(const char *key, const QString &detail) const { return L10n::text(key).arg(detail); }

    FakeAppWorld world;
    FakeEnforcementWorld m_engineWorld;
    Enforcer m_enforcer{m_engineWorld.dependencies()};
    std::unique_ptr<AppModel> m_model;
};

template <typename Row> class AppModelTable : public AppModelTest, public testing::WithParamInterface<Row>
{
};

TEST_F(AppModelTest, RefreshReadsInOrderAndOrphansASwitchWhenThePinChanges)
{
    model().choose(german);
    ASSERT_TRUE(model().switching());
    world.calls.clear();
    world.config->enabled = false;
    model().refresh();
    EXPECT_EQ(world.calls, (QStringList{"load", "cancelSwitch", "choices", "current", "secureInput", "isSwitching"}));
    EXPECT_FALSE(model().switching());
    finishApply(0, QStringLiteral("late"));
    EXPECT_FALSE(model().warning()) << "a completion of an orphaned request is ignored";
    EXPECT_EQ(model().runtimeState(), RuntimeState::Paused);
}

TEST_F(AppModelTest, OnlyTheLastOfTwoChoicesReports)
{
    model().choose(german);
    model().choose(QStringLiteral("hangul"));
    finishApply(0, QStringLiteral("first"));
    EXPECT_TRUE(model().switching());
    EXPECT_FALSE(model().warning());
    finishApply(1, QStringLiteral("second"));
    EXPECT_FALSE(model().switching());
    EXPECT_EQ(model().warning(), warning("warn.switch", QStringLiteral("second")));
}

// Operations that must leave the configuration and the engine alone.
struct RefusalCase
{
    std::string name;
    std::function<void(FakeAppWorld &)> arrange;
    std::function<void(AppModel &)> act;
    bool inSetup = false;    // begun before acting
    bool onboarding = false; // shown afterwards
};

using AppModelRefusalTest = AppModelTable<RefusalCase>;

TEST_P(AppModelRefusalTest, WritesAndSwitchesNothing)
{
    GetParam().arrange(world);
    model().refresh();
    if (GetParam().inSetup)
        model().beginSetup();
    GetParam().act(model());
    EXPECT_EQ(world.calls.count("update") + world.calls.count("save") + world.calls.count("apply"), 0);
    EXPECT_EQ(model().showsOnboarding(), GetParam().onboarding);
}

const auto unreadable = [](FakeAppWorld &w) { w.unreadable = true; };
const auto asIs = [](FakeAppWorld &) {};
const auto unpinned = [](FakeAppWorld &w) { w.config->sourceID.reset(); };

const RefusalCase refusals[] = {
    {"ChooseAnUnlistedSource", asIs, [](AppModel &m) { m.choose(QStringLiteral("xkb:fr::fra")); }},
    {"ChooseWhileUnreadable", unreadable, [](AppModel &m) { m.choose(german); }},
    {"TurnOnWithTheSourceGone", [](FakeAppWorld &w) { w.config->sourceID = "gone"; },
     [](AppModel &m) { m.setEnabled(true); }},
    {"ApplyWithNothingPinned", unpinned, [](AppModel &m) { m.apply(); }},
    {"SkipSetupAlreadyCompleted", asIs, [](AppModel &m) { m.skipSetup(); }, true},
    {"FinishWithoutASource", unpinned, [](AppModel &m) { m.finishSetup(); }, true, true},
    {"BeginSetupWhileUnreadable", unreadable, [](AppModel &m) { m.beginSetup(); }},
};
INSTANTIATE_TEST_SUITE_P(Operations, AppModelRefusalTest, testing::ValuesIn(refusals), ParamName());

// A write that fails leaves the detail under the warning and stops the operation there.
struct WriteFailureCase
{
    std::string name;
    bool lockedUpdates;
    std::function<void(AppModel &)> act;
};

using AppModelWriteFailureTest = AppModelTable<WriteFailureCase>;

TEST_P(AppModelWriteFailureTest, ShowsTheDetailAndGoesNoFurther)
{
    world.config->onboardingCompleted = false;
    world.lockedUpdates = GetParam().lockedUpdates;
    model().beginSetup();
    world.writeError = QStringLiteral("disk full");
    GetParam().act(model());
    EXPECT_EQ(model().saveErrorDetail(), QStringLiteral("disk full"));
    EXPECT_EQ(model().warning(), warning("warn.save", QStringLiteral("disk full")));
    EXPECT_TRUE(model().showsOnboarding());
    EXPECT_EQ(world.calls.count("apply"), 0);
    world.writeError.reset();
    model().setLanguage(QStringLiteral("ja"));
    EXPECT_FALSE(model().saveErrorDetail()) << "the next write that works clears it";
    EXPECT_EQ(model().language(), QStringLiteral("ja"));
}

const WriteFailureCase writeFailures[] = {
    {"Choose", true, [](AppModel &m) { m.choose(german); }},
    {"ChooseByLoadAndSave", false, [](AppModel &m) { m.choose(german); }},
    {"TurnOff", true, [](AppModel &m) { m.setEnabled(false); }},
    {"SkipSetup", true, [](AppModel &m) { m.skipSetup(); }},
    {"FinishSetup", false, [](AppModel &m) { m.finishSetup(); }},
};
INSTANTIATE_TEST_SUITE_P(Operations, AppModelWriteFailureTest, testing::ValuesIn(writeFailures), ParamName());

// One outcome of a switch the engine made on its own.
struct OutcomeCase
{
    std::string name;
    SwitchOutcome outcome;
    const char *warningKey; // none: no warning
    bool secure = false;
};

using AppModelOutcomeTest = AppModelTable<OutcomeCase>;

TEST_P(AppModelOutcomeTest, AutomaticOutcomeBecomesTheWarning)
{
    world.secure = GetParam().secure;
    model().refresh();
    model().receiveAutomaticOutcome(GetParam().outcome);
    const char *key = GetParam().warningKey;
    EXPECT_EQ(model().warning(), key ? std::optional(warning(key, GetParam().outcome.message())) : std::nullopt);
}

// A busy engine is no news.
const OutcomeCase outcomes[] = {
    {"Success", SwitchOutcome::success(), nullptr},
    {"SecureInput", SwitchOutcome::secureInput(), "enf.secure", true},
    {"MissingSource", SwitchOutcome::missingSource(), "warn.missing"},
    {"Busy", SwitchOutcome::busy(), nullptr},
    {"Failed", SwitchOutcome::failed(QStringLiteral("no reply")), "warn.switch"},
};
INSTANTIATE_TEST_SUITE_P(Outcomes, AppModelOutcomeTest, testing::ValuesIn(outcomes), ParamName());

// Warnings go when their cause does, and only then.
TEST_F(AppModelTest, WarningsLastAsLongAsTheirCause)
{
    model().receiveAutomaticOutcome(SwitchOutcome::failed(QStringLiteral("x")));
    model().receiveAutomaticOutcome(SwitchOutcome::success());
    EXPECT_FALSE(model().warning()) << "the pinned source is current";
    world.current = world.sources.at(1);
    model().receiveAutomaticOutcome(SwitchOutcome::failed(QStringLiteral("x")));
    model().receiveAutomaticOutcome(SwitchOutcome::success());
    EXPECT_TRUE(model().warning()) << "another source is current";

    world.current = world.sources.first();
    world.secure = true;
    model().receiveAutomaticOutcome(SwitchOutcome::secureInput());
    world.secure = false;
    model().refresh();
    EXPECT_FALSE(model().warning()) << "secure input ended";
}

TEST_F(AppModelTest, UnreadableWhileKeepingCancelsAndShowsOnlyThat)
{
    model().choose(german);
    finishApply(0, QStringLiteral("x"));
    world.unreadable = true;
    model().refresh();
    EXPECT_FALSE(model().enabled());
    EXPECT_EQ(world.calls.count("cancelSwitch"), 1);
    EXPECT_EQ(model().warning(), L10n::text("warn.config"));
    EXPECT_EQ(model().runtimeState(), RuntimeState::Error);
}

TEST_F(AppModelTest, LoginAnswersFromAnOlderQueryAreIgnored)
{
    int changes = 0;
    QObject::connect(&model(), &AppModel::loginEnabledChanged, &model(), [&] { ++changes; });
    world.login = true;
    model().refreshLogin();
    QThreadPool::globalInstance()->waitForDone();
    world.login = false;
    model().refreshLogin();
    settle();
    EXPECT_FALSE(model().loginEnabled());
    EXPECT_EQ(changes, 0) << "the first answer arrived after the second query began";

    world.login = true;
    model().refreshLogin();
    QThreadPool::globalInstance()->waitForDone();
    world.loginError = QStringLiteral("denied");
    model().setLogin(false);
    settle();
    EXPECT_TRUE(model().loginEnabled()) << "the answer asked after the failed change";
    EXPECT_EQ(model().warning(), warning("warn.login", QStringLiteral("denied")));
}

TEST_F(AppModelTest, LoginWorkOutlivingTheModelIsDropped)
{
    model().refreshLogin();
    model().setLogin(true);
    m_model.reset();
    settle();
    EXPECT_TRUE(world.login);
}

} // namespace
