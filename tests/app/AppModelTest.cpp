// The application model on a scripted world: what it shows, what it writes,
// and which late answers it ignores.
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

const QString us = QStringLiteral("xkb:us::eng");
const QString german = QStringLiteral("xkb:de::deu");
const QString hangul = QStringLiteral("hangul");

class AppModelTest : public testing::Test
{
protected:
    void TearDown() override
    {
        // Login work still running holds the world.
        QThreadPool::globalInstance()->waitForDone();
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

    void finishApply(size_t index, const SwitchOutcome &outcome) { world.applies.at(index)(outcome); }
    int count(const QString &call) const { return int(world.calls.count(call)); }

    FakeAppWorld world;
    FakeEnforcementWorld m_engineWorld;
    Enforcer m_enforcer{m_engineWorld.dependencies()};
    std::unique_ptr<AppModel> m_model;
};

TEST_F(AppModelTest, FirstLaunchWithoutAFileOpensSetup)
{
    world.config.reset();
    model().start();
    EXPECT_FALSE(model().enabled());
    EXPECT_FALSE(model().pinnedID());
    EXPECT_EQ(model().runtimeState(), RuntimeState::Paused);
    EXPECT_TRUE(model().showsOnboarding());
    EXPECT_TRUE(model().setupKeepEnabled());
    EXPECT_EQ(model().setupStep(), 0);
}

TEST_F(AppModelTest, SetupStartsFromThePinnedSource)
{
    world.config = Config{german, false, std::nullopt, true};
    model().setSetupStep(2);
    model().setSetupLoginRequested(true);
    model().beginSetup();
    EXPECT_EQ(model().setupSourceID(), german);
    EXPECT_FALSE(model().setupKeepEnabled());
    EXPECT_EQ(model().setupStep(), 0);
    EXPECT_FALSE(model().setupLoginRequested());
}

TEST_F(AppModelTest, RefreshReadsInOrderAndOrphansASwitchWhenThePinChanges)
{
    model().choose(german);
    ASSERT_TRUE(model().switching());
    world.calls.clear();
    world.config->enabled = false;
    model().refresh();
    EXPECT_EQ(world.calls, (QStringList{"load", "cancelSwitch", "choices", "current", "secureInput", "isSwitching"}));
    EXPECT_FALSE(model().switching());
    finishApply(0, SwitchOutcome::failed(QStringLiteral("late")));
    EXPECT_FALSE(model().warning()) << "a completion of an orphaned request is ignored";
    EXPECT_EQ(model().runtimeState(), RuntimeState::Paused);
}

TEST_F(AppModelTest, OnlyTheLastOfTwoChoicesReports)
{
    model().choose(german);
    model().choose(hangul);
    finishApply(0, SwitchOutcome::failed(QStringLiteral("first")));
    EXPECT_TRUE(model().switching());
    EXPECT_FALSE(model().warning());
    finishApply(1, SwitchOutcome::failed(QStringLiteral("second")));
    EXPECT_FALSE(model().switching());
    EXPECT_EQ(model().warning(), L10n::text("warn.switch").arg(QStringLiteral("second")));
}

// Operations that must leave the configuration and the engine alone.
struct RefusalCase
{
    std::string name;
    std::function<void(FakeAppWorld &)> arrange;
    std::function<void(AppModel &)> act;
};

class AppModelRefusalTest : public AppModelTest, public testing::WithParamInterface<RefusalCase>
{
};

TEST_P(AppModelRefusalTest, WritesAndSwitchesNothing)
{
    if (GetParam().arrange)
        GetParam().arrange(world);
    model().refresh();
    GetParam().act(model());
    EXPECT_EQ(count("update") + count("save"), 0);
    EXPECT_EQ(count("apply"), 0);
}

INSTANTIATE_TEST_SUITE_P(
    Operations, AppModelRefusalTest,
    testing::Values(
        RefusalCase{"ChooseAnUnlistedSource", {}, [](AppModel &m) { m.choose(QStringLiteral("xkb:fr::fra")); }},
        RefusalCase{"ChooseWhileUnreadable", [](FakeAppWorld &w) { w.unreadable = true; },
                    [](AppModel &m) { m.choose(german); }},
        RefusalCase{"TurnOnWithTheSourceGone", [](FakeAppWorld &w) { w.config->sourceID = QStringLiteral("gone"); },
                    [](AppModel &m) { m.setEnabled(true); }},
        RefusalCase{"ApplyWithNothingPinned", [](FakeAppWorld &w) { w.config->sourceID.reset(); },
                    [](AppModel &m) { m.apply(); }},
        RefusalCase{"SkipSetupAlreadyCompleted",
                    {},
                    [](AppModel &m) {
                        m.beginSetup();
                        m.skipSetup();
                        EXPECT_FALSE(m.showsOnboarding());
                    }},
        RefusalCase{"FinishWithoutASource",
                    {},
                    [](AppModel &m) {
                        m.beginSetup();
                        m.setSetupSourceID(std::nullopt);
                        m.finishSetup();
                        EXPECT_TRUE(m.showsOnboarding());
                    }},
        RefusalCase{"BeginSetupWhileUnreadable", [](FakeAppWorld &w) { w.unreadable = true; },
                    [](AppModel &m) {
                        m.beginSetup();
                        EXPECT_FALSE(m.showsOnboarding());
                    }}),
    ParamName());

// A write that fails leaves the detail under the warning and stops the operation there.
struct WriteFailureCase
{
    std::string name;
    bool lockedUpdates;
    std::function<void(AppModel &)> act;
};

class AppModelWriteFailureTest : public AppModelTest, public testing::WithParamInterface<WriteFailureCase>
{
};

TEST_P(AppModelWriteFailureTest, ShowsTheDetailAndGoesNoFurther)
{
    world.config->onboardingCompleted = false;
    world.lockedUpdates = GetParam().lockedUpdates;
    model().beginSetup();
    world.writeError = QStringLiteral("disk full");
    GetParam().act(model());
    EXPECT_EQ(model().saveErrorDetail(), QStringLiteral("disk full"));
    EXPECT_EQ(model().warning(), L10n::text("warn.save").arg(QStringLiteral("disk full")));
    EXPECT_TRUE(model().showsOnboarding());
    EXPECT_EQ(count("apply"), 0);
    world.writeError.reset();
    model().setLanguage(QStringLiteral("ja"));
    EXPECT_FALSE(model().saveErrorDetail()) << "the next write that works clears it";
    EXPECT_EQ(model().language(), QStringLiteral("ja"));
}

INSTANTIATE_TEST_SUITE_P(Operations, AppModelWriteFailureTest,
                         testing::Values(WriteFailureCase{"Choose", true, [](AppModel &m) { m.choose(german); }},
                                         WriteFailureCase{"ChooseByLoadAndSave", false,
                                                          [](AppModel &m) { m.choose(german); }},
                                         WriteFailureCase{"TurnOff", true, [](AppModel &m) { m.setEnabled(false); }},
                                         WriteFailureCase{"SkipSetup", true, [](AppModel &m) { m.skipSetup(); }},
                                         WriteFailureCase{"FinishSetup", false, [](AppModel &m) { m.finishSetup(); }}),
                         ParamName());

// One outcome of a switch, made manually and by the engine on its own.
struct OutcomeCase
{
    std::string name;
    SwitchOutcome outcome;
    const char *warningKey; // none: no warning
    bool secure = false;
};

class AppModelOutcomeTest : public AppModelTest, public testing::WithParamInterface<OutcomeCase>
{
protected:
    std::optional<QString> expectedWarning() const
    {
        if (!GetParam().warningKey)
            return std::nullopt;
        return L10n::text(GetParam().warningKey).arg(GetParam().outcome.message());
    }
};

TEST_P(AppModelOutcomeTest, ManualOutcomeBecomesTheWarning)
{
    world.secure = GetParam().secure;
    model().choose(german);
    finishApply(0, GetParam().outcome);
    EXPECT_FALSE(model().switching());
    EXPECT_EQ(model().warning(), expectedWarning());
    EXPECT_EQ(model().canRetrySwitch(), expectedWarning() && !GetParam().secure);
    const bool failed = expectedWarning().has_value();
    EXPECT_EQ(model().runtimeState(),
              failed ? (GetParam().secure ? RuntimeState::SecureInput : RuntimeState::Error) : RuntimeState::Waiting);
}

TEST_P(AppModelOutcomeTest, AutomaticOutcomeBecomesTheWarningButBusyIsIgnored)
{
    world.secure = GetParam().secure;
    model().refresh();
    model().receiveAutomaticOutcome(GetParam().outcome);
    EXPECT_EQ(model().warning(), GetParam().outcome.isBusy() ? std::nullopt : expectedWarning());
}

INSTANTIATE_TEST_SUITE_P(Outcomes, AppModelOutcomeTest,
                         testing::Values(OutcomeCase{"Success", SwitchOutcome::success(), nullptr},
                                         OutcomeCase{"SecureInput", SwitchOutcome::secureInput(), "enf.secure", true},
                                         OutcomeCase{"MissingSource", SwitchOutcome::missingSource(), "warn.missing"},
                                         OutcomeCase{"Busy", SwitchOutcome::busy(), "warn.busy"},
                                         OutcomeCase{"Failed", SwitchOutcome::failed(QStringLiteral("no reply")),
                                                     "warn.switch"}),
                         ParamName());

TEST_F(AppModelTest, AutomaticSuccessClearsOnlyWhenThePinnedSourceIsCurrent)
{
    model().receiveAutomaticOutcome(SwitchOutcome::failed(QStringLiteral("x")));
    model().receiveAutomaticOutcome(SwitchOutcome::success());
    EXPECT_FALSE(model().warning());
    world.current = world.sources.at(1);
    model().receiveAutomaticOutcome(SwitchOutcome::failed(QStringLiteral("x")));
    model().receiveAutomaticOutcome(SwitchOutcome::success());
    EXPECT_TRUE(model().warning());
}

TEST_F(AppModelTest, SecureInputWarningGoesWhenSecureInputEnds)
{
    world.secure = true;
    model().refresh();
    model().receiveAutomaticOutcome(SwitchOutcome::secureInput());
    EXPECT_EQ(model().warning(), L10n::text("enf.secure"));
    world.secure = false;
    model().refresh();
    EXPECT_FALSE(model().warning());
}

TEST_F(AppModelTest, SwitchAndSaveFailuresMakeTwoLines)
{
    model().choose(german);
    finishApply(0, SwitchOutcome::failed(QStringLiteral("x")));
    world.writeError = QStringLiteral("disk full");
    model().setLanguage(QStringLiteral("ko"));
    EXPECT_EQ(model().warning(), L10n::text("warn.switch").arg(QStringLiteral("x")) + QLatin1Char('\n')
                                     + L10n::text("warn.save").arg(QStringLiteral("disk full")));
}

TEST_F(AppModelTest, UnreadableWhileKeepingCancelsAndShowsOnlyThat)
{
    model().choose(german);
    finishApply(0, SwitchOutcome::failed(QStringLiteral("x")));
    world.unreadable = true;
    model().refresh();
    EXPECT_FALSE(model().enabled());
    EXPECT_EQ(count("cancelSwitch"), 1);
    EXPECT_EQ(model().warning(), L10n::text("warn.config"));
    EXPECT_EQ(model().runtimeState(), RuntimeState::Error);
}

TEST_F(AppModelTest, FinishSetupWritesTheChoiceSwitchesAndChangesTheLoginItem)
{
    world.config = Config{};
    model().start();
    settle();
    model().setSetupSourceID(hangul);
    model().setSetupLoginRequested(true);
    model().finishSetup();
    EXPECT_EQ(world.config, (Config{hangul, true, std::nullopt, true}));
    EXPECT_EQ(count("apply"), 1);
    EXPECT_TRUE(model().loginBusy());
    settle();
    EXPECT_TRUE(model().loginEnabled());
    EXPECT_FALSE(model().loginBusy());

    // Again with keeping off and no login choice: no switch, the login item left alone.
    model().beginSetup();
    model().setSetupKeepEnabled(false);
    model().finishSetup();
    EXPECT_FALSE(world.config->enabled);
    EXPECT_EQ(count("apply"), 1);
    EXPECT_FALSE(model().loginBusy());
}

TEST_F(AppModelTest, LoginQueriesFromAnOlderGenerationAreIgnored)
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
    EXPECT_EQ(model().warning(), L10n::text("warn.login").arg(QStringLiteral("denied")));
}

TEST_F(AppModelTest, LoginWorkOutlivingTheModelIsDropped)
{
    model().refreshLogin();
    model().setLogin(true);
    m_model.reset();
    settle();
    EXPECT_TRUE(world.login);
}

TEST_F(AppModelTest, StartHooksTheEngineToTheModel)
{
    model().start();
    world.calls.clear();
    m_engineWorld.current = QStringLiteral("xkb:de::ger");
    m_enforcer.enforce(true, false);
    EXPECT_GE(count("load"), 1) << "the engine's updates refresh the model";
}

TEST_F(AppModelTest, ArtworkIsCachedUntilInvalidated)
{
    world.icons.insert(us, QImage(16, 16, QImage::Format_ARGB32));
    model().refresh();
    const qint64 first = model().currentSourceIcon().cacheKey();
    model().refresh();
    EXPECT_EQ(model().currentSourceIcon().cacheKey(), first);
    EXPECT_EQ(count("sourceIcon " + us), 1);
    model().invalidateArtwork();
    EXPECT_EQ(count("sourceIcon " + us), 2);
    EXPECT_NE(model().currentSourceIcon().cacheKey(), first);
}

TEST(AppModelPreviewTest, ShowsAKoreanSourceKeptAndFollowsChoices)
{
    AppModel model(AppServices::preview(), nullptr);
    model.start();
    EXPECT_EQ(model.pinnedID(), hangul);
    EXPECT_EQ(model.runtimeState(), RuntimeState::Keeping);
    EXPECT_TRUE(model.loginEnabled());
    model.choose(german);
    EXPECT_EQ(model.currentID(), german);
    EXPECT_EQ(model.runtimeState(), RuntimeState::Keeping);
}

} // namespace
