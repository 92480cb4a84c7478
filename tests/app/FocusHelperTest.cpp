// The focus helper's exit status and how far it got, on a world that can lose the pin midway.
#include "app/focus/FocusHelper.h"
#include "support/ParamName.h"

#include <QStringList>

#include <gtest/gtest.h>

namespace {

const QString hangul = "hangul";

struct HelperWorld
{
    Config config{hangul, true, std::nullopt, true};
    int goneAt = 0; // from this configuration read on there is none; 0: never
    bool secure = false;
    bool selectable = true;
    qint32 selectStatus = 0;
    bool selectWorks = true; // the selected source becomes current
    int reads = 0;
    QStringList steps;

    FocusHelperDependencies dependencies()
    {
        FocusHelperDependencies d;
        d.readConfig = [this] { return goneAt && ++reads >= goneAt ? std::nullopt : std::optional{config}; };
        d.secureInput = [this] { return secure; };
        d.isSelectable = [this](const QString &) { return selectable; };
        d.select = [this](const QString &) { return steps << "select", selectStatus; };
        d.currentID = [this] { return steps.contains("select") && selectWorks ? hangul : QString(); };
        d.becomeAccessory = [this] { steps << "accessory"; };
        d.mainScreenArea = [] { return std::optional(QRect(0, 0, 1440, 900)); };
        d.createWindow = [this](const QRect &) { steps << "window"; };
        d.activateWindow = [this] { steps << "activate"; };
        return d;
    }
};

struct HelperCase
{
    const char *name;
    std::function<void(HelperWorld &)> arrange;
    bool automatic;
    FocusExitStatus status; // the final exit status, after confirmation if it gets there
    QStringList steps;
};
using FocusHelperTest = testing::TestWithParam<HelperCase>;

TEST_P(FocusHelperTest, ExitsWithTheRightStatusAfterTheRightSteps)
{
    HelperWorld world;
    GetParam().arrange(world);
    const FocusHelperDependencies dependencies = world.dependencies();
    std::optional<FocusExitStatus> status = FocusHelper::prepare(hangul, GetParam().automatic, dependencies);
    if (!status)
        status = FocusHelper::confirm(hangul, GetParam().automatic, dependencies);
    EXPECT_EQ(*status, GetParam().status);
    EXPECT_EQ(world.steps, GetParam().steps);
}

const QStringList allSteps = {"accessory", "select", "window", "activate"};
const auto paused = [](HelperWorld &w) { w.config.enabled = false; };

// clang-format off
const HelperCase cases[] = {
    {"Switches", [](auto &) {}, true, FocusExitStatus::Switched, allSteps},
    {"NotCurrentAfterwards", [](auto &w) { w.selectWorks = false; }, false, FocusExitStatus::Failed, allSteps},
    {"NoConfiguration", [](auto &w) { w.goneAt = 1; }, false, FocusExitStatus::NotWanted, {}},
    {"AnotherSourcePinned", [](auto &w) { w.config.sourceID = "anthy"; }, false, FocusExitStatus::NotWanted, {}},
    {"AutomaticWhilePaused", paused, true, FocusExitStatus::NotWanted, {}},
    {"ManualWhilePaused", paused, false, FocusExitStatus::Switched, allSteps},
    {"SecureInput", [](auto &w) { w.secure = true; }, false, FocusExitStatus::SecureInput, {}},
    {"SourceRemoved", [](auto &w) { w.selectable = false; }, false, FocusExitStatus::Missing, {}},
    {"SelectionRefused", [](auto &w) { w.selectStatus = -50; }, false, FocusExitStatus::Failed, {"accessory", "select"}},
    {"UnpinnedBeforeActivating", [](auto &w) { w.goneAt = 3; }, false, FocusExitStatus::NotWanted,
     {"accessory", "select", "window"}},
    {"UnpinnedWhileConfirming", [](auto &w) { w.goneAt = 4; }, false, FocusExitStatus::NotWanted, allSteps},
};
// clang-format on
INSTANTIATE_TEST_SUITE_P(FocusHelper, FocusHelperTest, testing::ValuesIn(cases), ParamName());

} // namespace
