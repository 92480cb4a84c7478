#include "app/FocusHelper.h"
#include "support/ParamName.h"

#include <QStringList>

#include <gtest/gtest.h>

namespace {

const QString hangul = "hangul";

// A world that can change its mind at a given configuration read or secure-input query.
struct HelperWorld
{
    Config config{hangul, true, std::nullopt, true};
    std::optional<Config> laterConfig; // what every read from `changesAtRead` on returns
    int changesAtRead = 0;
    bool secure = false;
    int secureFromQuery = 0; // 0: never
    bool selectable = true;
    qint32 selectStatus = 0;
    bool selectWorks = true;
    QString current = "xkb:us::eng";
    int reads = 0;
    int secureQueries = 0;
    QStringList steps;

    FocusHelperDependencies dependencies()
    {
        FocusHelperDependencies d;
        d.readConfig = [this] { return changesAtRead && ++reads >= changesAtRead ? laterConfig : config; };
        d.secureInput = [this] { return secure || (secureFromQuery && ++secureQueries >= secureFromQuery); };
        d.isSelectable = [this](const QString &) { return selectable; };
        d.select = [this](const QString &id) {
            steps << "select";
            if (selectStatus == 0 && selectWorks)
                current = id;
            return selectStatus;
        };
        d.currentID = [this] { return current; };
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
    int status; // the final exit status, after confirmation if it gets there
    QStringList steps;
};

class FocusHelperTest : public testing::TestWithParam<HelperCase>
{
};

TEST_P(FocusHelperTest, ExitsWithTheRightStatusAfterTheRightSteps)
{
    HelperWorld world;
    GetParam().arrange(world);
    const FocusHelperDependencies dependencies = world.dependencies();
    std::optional<int> status = FocusHelper::prepare(hangul, GetParam().automatic, dependencies);
    if (!status)
        status = FocusHelper::confirm(hangul, GetParam().automatic, dependencies);
    EXPECT_EQ(*status, GetParam().status);
    EXPECT_EQ(world.steps, GetParam().steps);
}

const QStringList allSteps = {"accessory", "select", "window", "activate"};
const auto unpinnedAt = [](int read) {
    return [read](HelperWorld &w) {
        w.changesAtRead = read;
        w.laterConfig = Config{"xkb:us::eng", true, std::nullopt, true};
    };
};
const auto secureFrom = [](int query) { return [query](HelperWorld &w) { w.secureFromQuery = query; }; };
const auto paused = [](HelperWorld &w) { w.config.enabled = false; };

const HelperCase cases[] = {
    {"Switches", [](auto &) {}, true, 0, allSteps},
    {"NotCurrentAfterwards", [](auto &w) { w.selectWorks = false; }, false, 78, allSteps},
    {"NoConfiguration", [](auto &w) { w.changesAtRead = 1; }, false, 76, {}},
    {"AnotherSourcePinned", [](auto &w) { w.config.sourceID = "anthy"; }, false, 76, {}},
    {"AutomaticWhilePaused", paused, true, 76, {}},
    {"ManualWhilePaused", paused, false, 0, allSteps},
    {"SecureInputAtStart", [](auto &w) { w.secure = true; }, false, 75, {}},
    {"SourceRemoved", [](auto &w) { w.selectable = false; }, false, 77, {}},
    {"UnpinnedBeforeSelecting", unpinnedAt(2), false, 76, {"accessory"}},
    {"SecureInputBeforeSelecting", secureFrom(2), false, 75, {"accessory"}},
    {"SelectionRefused", [](auto &w) { w.selectStatus = -50; }, false, 78, {"accessory", "select"}},
    {"SecureInputBeforeActivating", secureFrom(3), false, 75, {"accessory", "select", "window"}},
    {"UnpinnedBeforeActivating", unpinnedAt(3), false, 76, {"accessory", "select", "window"}},
    {"UnpinnedWhileConfirming", unpinnedAt(4), false, 76, allSteps},
};
INSTANTIATE_TEST_SUITE_P(FocusHelper, FocusHelperTest, testing::ValuesIn(cases), ParamName());

} // namespace
