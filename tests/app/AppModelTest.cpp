// What the model refuses, what a failed write leaves, and which late answers it ignores.
#include "app/model/AppModel.h"
#include "core/l10n/L10n.h"

#include "support/FakeAppWorld.h"
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
        if (!m_model) {
            m_model = std::make_unique<AppModel>(world.services());
            m_model->start();
        }
        return *m_model;
    }
    // Lets login work finish and its results arrive.
    static void settle()
    {
        QThreadPool::globalInstance()->waitForDone();
        QCoreApplication::processEvents();
    }
    void finishApply(size_t i, const QString &why) { world.applies.at(i)(SwitchOutcome::failed(LocalizedText(why))); }
    QString warning(const char *key, const QString &detail) const { return L10n::text(key).arg(detail); }

    FakeAppWorld world;
    std::unique_ptr<AppModel> m_model;
};

// Only the latest request reports: not one orphaned by a pause, nor one a newer choice replaced.
TEST_F(AppModelTest, StaleCompletionsAreIgnored)
{
    model().choose(german);
    world.config->enabled = false;
    model().refreshNow();
    EXPECT_EQ(world.calls.count("cancelSwitch"), 1);
    finishApply(0, QStringLiteral("orphaned"));
    EXPECT_FALSE(model().warning());
    EXPECT_EQ(model().runtimeState(), RuntimeState::Paused);

    model().choose(german);
    model().choose(QStringLiteral("hangul"));
    finishApply(1, QStringLiteral("replaced"));
    EXPECT_TRUE(model().switching());
    EXPECT_FALSE(model().warning());
    finishApply(2, QStringLiteral("latest"));
    EXPECT_FALSE(model().switching());
    EXPECT_EQ(model().warning(), warning("warn.switch", QStringLiteral("latest")));
}

// Operations refused: no write, no switch.
struct StopCase
{
    std::string name;
    std::function<void(FakeAppWorld &)> arrange;
    std::function<void(AppModel &)> act;
    bool inSetup = false;    // begun before acting
    bool onboarding = false; // shown afterwards
};

class AppModelStopTest : public AppModelTest, public testing::WithParamInterface<StopCase>
{
};

TEST_P(AppModelStopTest, SwitchesAndWritesNothing)
{
    GetParam().arrange(world);
    if (GetParam().inSetup)
        model().beginSetup();
    GetParam().act(model());
    EXPECT_FALSE(world.calls.contains("update"));
    EXPECT_EQ(world.calls.count("apply"), 0);
    EXPECT_EQ(model().showsOnboarding(), GetParam().onboarding);
}

const auto asIs = [](FakeAppWorld &) {};
const auto unreadable = [](FakeAppWorld &w) { w.unreadable = true; };
const auto gone = [](FakeAppWorld &w) { w.config->sourceID = "gone"; };
const auto unpinned = [](FakeAppWorld &w) { w.config->sourceID.reset(); };
const StopCase stops[] = {
    {"ChooseAnUnlistedSource", asIs, [](AppModel &m) { m.choose(QStringLiteral("xkb:fr::fra")); }},
    {"ChooseWhileUnreadable", unreadable, [](AppModel &m) { m.choose(german); }},
    {"TurnOnWithTheSourceGone", gone, [](AppModel &m) { m.setEnabled(true); }},
    {"ApplyWithNothingPinned", unpinned, [](AppModel &m) { m.apply(); }},
    {"FinishWithoutASource", unpinned, [](AppModel &m) { m.finishSetup(); }, true, true},
    {"FinishWithTheSourceGone", gone, [](AppModel &m) { m.finishSetup(); }, true, true},
    {"BeginSetupWhileUnreadable", unreadable, [](AppModel &m) { m.beginSetup(); }},
};
INSTANTIATE_TEST_SUITE_P(Operations, AppModelStopTest, testing::ValuesIn(stops), ParamName());

// A failed switch's warning goes once the pinned source is current, and only then.
TEST_F(AppModelTest, SwitchWarningsLastUntilThePinnedSourceIsCurrent)
{
    model().receiveAutomaticOutcome(SwitchOutcome::failed(LocalizedText("enf.timeout")));
    model().receiveAutomaticOutcome(SwitchOutcome::success());
    EXPECT_FALSE(model().warning()) << "the pinned source is current";
    world.current = world.sources.at(1);
    model().refresh(); // as the engine does before it reports
    model().receiveAutomaticOutcome(SwitchOutcome::failed(LocalizedText("enf.timeout")));
    model().receiveAutomaticOutcome(SwitchOutcome::success());
    EXPECT_TRUE(model().warning()) << "another source is current";
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
