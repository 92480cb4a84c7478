// The panel, the setup flow and the tray item on a scripted world, found by their identifiers.
#include "app/panel/Panel.h"
#include "app/model/AppModel.h"
#include "app/panel/StatusLine.h"
#include "app/tray/TrayIcon.h"
#include "app/ui/controls/Banner.h"
#include "app/ui/look/Identifiers.h"
#include "app/ui/rows/SourceEmptyState.h"
#include "app/ui/rows/SourceList.h"
#include "app/ui/rows/SourceRow.h"
#include "core/config/ConfigStore.h"
#include "core/l10n/L10n.h"
#include "core/sources/SourcesAvailability.h"

#include "support/FakeAppWorld.h"
#include "support/FakeInputSources.h"
#include "support/FakeNotifications.h"
#include "support/OpenPanel.h"
#include "support/ParamName.h"

#include <QAccessible>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QSystemTrayIcon>
#include <QTemporaryDir>
#include <QTest>
#include <QThreadPool>
#include <QToolButton>

#include <gtest/gtest.h>

namespace {

// A world, a started model and a shown panel over them.
class PanelTest : public testing::Test
{
protected:
    void SetUp() override { L10n::setLanguageCode(QStringLiteral("en")); }
    void TearDown() override { QThreadPool::globalInstance()->waitForDone(); }

    void open()
    {
        openPanel(world.services(), model, panel);
        settle();
    }
    static void settle()
    {
        QThreadPool::globalInstance()->waitForDone();
        for (int turn = 0; turn < 3; ++turn)
            QCoreApplication::processEvents();
    }
    // Rows and banners have no Q_OBJECT of their own, which Qt 6.8's findChild<T *> insists on.
    template <typename T = QWidget> T *find(const QString &identifier) const
    {
        return dynamic_cast<T *>(panel->findChild<QWidget *>(identifier));
    }
    void click(const QString &identifier) const
    {
        auto *button = find<QAbstractButton>(identifier);
        ASSERT_TRUE(button && button->isVisible()) << qPrintable(identifier);
        QTest::mouseClick(button, Qt::LeftButton);
        settle();
    }
    bool shown(const QString &identifier) const
    {
        const QWidget *widget = find(identifier);
        return widget && widget->isVisible();
    }

    FakeAppWorld world;
    std::unique_ptr<AppModel> model;
    std::unique_ptr<Panel> panel;
};

template <typename Row> class PanelTable : public PanelTest, public testing::WithParamInterface<Row>
{
};

const char *const german = "source-xkb:de::deu";
const char *const hangul = "source-hangul";
const Config hangulKept{QStringLiteral("hangul"), true, std::nullopt, true};

// Paused, the tray icon is dimmed; with nothing pinned, there is nothing to pause or resume.
TEST_F(PanelTest, TrayItemFollowsTheModel)
{
    open();
    TrayIcon tray(*model, {});
    const QImage keeping = tray.icon()->icon().pixmap(22).toImage();
    EXPECT_TRUE(tray.menu()->actions().at(1)->isEnabled());
    world.config = Config{};
    model->refreshNow();
    tray.refresh();
    EXPECT_NE(tray.icon()->icon().pixmap(22).toImage(), keeping);
    EXPECT_FALSE(tray.menu()->actions().at(1)->isEnabled());
}

// The settings page shows what `tolvar doctor` finds, asking afresh at each opening.
TEST_F(PanelTest, CheckingTheComputerShowsEachFindingAndWhatToDo)
{
    const DoctorCheck tray{"tray", DoctorCheck::Verdict::warn, "none", LocalizedText("doctor.tray.none")};
    world.checks = {tray, {"config", DoctorCheck::Verdict::ok, "config.json"}};
    open();
    click(Identifier::settings);
    for (int opening = 1; opening <= 2; ++opening) {
        click(Identifier::checkComputer);
        const QString expected = tray.heading() + '\n' + tray.advice.text() + "\n\n" + world.checks[1].heading();
        const QList<QLabel *> labels = panel->findChildren<QLabel *>();
        EXPECT_TRUE(std::any_of(labels.cbegin(), labels.cend(),
                                [&](QLabel *label) { return label->isVisible() && label->text() == expected; }));
        EXPECT_EQ(world.calls.count("checks"), opening);
        click(Identifier::checkComputer);
    }
}

// From the seventh source on, the list scrolls and a search field shows; a
// query typed before a source went away keeps the field until it is cleared.
using PanelSearchTest = PanelTable<std::tuple<bool, int>>;

TEST_P(PanelSearchTest, ComesWithLongLists)
{
    const auto [setup, count] = GetParam();
    const bool longList = count >= SourceList::scrollFrom;
    world.sources.clear();
    for (int i = 0; i < count; ++i)
        world.sources.append({QStringLiteral("s%1").arg(i), QStringLiteral("Source %1").arg(i)});
    if (setup)
        world.config.reset();
    open();
    const QString search = QLatin1String(setup ? Identifier::setupSearch : Identifier::sourceSearch);
    EXPECT_EQ(shown(search), longList);
    EXPECT_EQ(shown(Identifier::sourceListScroll), longList);
    if (!longList)
        return;
    QTest::keyClicks(find<QLineEdit>(search), QStringLiteral("sOURCE 3"));
    EXPECT_TRUE(shown("source-s3") && !shown("source-s2")) << "names match whatever their case";
    QTest::keyClicks(find<QLineEdit>(search), QStringLiteral("zz"));
    const auto *empty = find<SourceEmptyState>(Identifier::sourceEmpty);
    ASSERT_TRUE(empty && empty->isVisible());
    EXPECT_EQ(empty->accessibleName(), L10n::text("ui.no-results"));
    EXPECT_EQ(empty->height(), SourceList::scrollHeight) << "the list keeps its height";
    world.sources.removeLast();
    model->refresh();
    settle();
    EXPECT_TRUE(shown(search));
    click(search + QLatin1String(Identifier::clearSuffix));
    EXPECT_FALSE(shown(search));
}

INSTANTIATE_TEST_SUITE_P(Panel, PanelSearchTest, testing::Combine(testing::Bool(), testing::Values(6, 7)));

// What the main page says of the engine: a passing state on the status line,
// a problem in the banner.
struct SituationRow
{
    std::string name;
    std::function<void(FakeAppWorld &, AppModel &)> act;
    const char *line; // its symbol; none: no line
    bool pulsing;
    const char *banner = nullptr; // its symbol; none: no banner
    bool retry = false;
};
using PanelSituationTest = PanelTable<SituationRow>;

TEST_P(PanelSituationTest, ShowsTheStateAndTheWarning)
{
    const SituationRow &row = GetParam();
    open();
    row.act(world, *model);
    settle();
    const auto *line = find<StatusLine>(Identifier::pinStatus);
    EXPECT_EQ(line->isVisible() ? StatusLine::symbol(line->state()) : QString(), QLatin1String(row.line));
    EXPECT_EQ(line->isPulsing(), row.pulsing);
    const auto *banner = find<Banner>(Identifier::warning);
    ASSERT_EQ(banner && banner->isVisible(), row.banner != nullptr);
    if (!row.banner)
        return;
    EXPECT_EQ(banner->symbol(), QLatin1String(row.banner));
    ASSERT_EQ(banner->actionButton() != nullptr, row.retry);
    if (row.retry) {
        QTest::mouseClick(banner->actionButton(), Qt::LeftButton);
        EXPECT_EQ(world.calls.count(QStringLiteral("apply")), 2);
    }
}

const auto waiting = [](FakeAppWorld &w, AppModel &m) {
    w.current = w.sources.at(1);
    m.refresh();
};
const auto failed = [](FakeAppWorld &w, AppModel &m) {
    m.apply();
    w.applies.back()(SwitchOutcome::failed(LocalizedText("enf.timeout")));
};
const auto secure = [](FakeAppWorld &w, AppModel &m) {
    w.secure = true;
    m.refresh(); // as the engine does before it reports
    m.receiveAutomaticOutcome(SwitchOutcome::secureInput());
};
const auto missing = [](FakeAppWorld &w, AppModel &m) {
    w.config->sourceID = QStringLiteral("gone");
    m.refresh();
};
const auto pausedMissing = [](FakeAppWorld &w, AppModel &m) {
    w.config->enabled = false;
    missing(w, m);
};
const char *const triangle = "exclamationmark.triangle.fill";
const SituationRow situations[] = {
    {"Keeping", [](FakeAppWorld &, AppModel &) {}, nullptr, false},
    {"Waiting", waiting, "clock", true},
    {"Switching", [](FakeAppWorld &, AppModel &m) { m.apply(); }, "arrow.triangle.2.circlepath", true},
    {"FailedSwitch", failed, nullptr, false, triangle, true},
    {"SecureInput", secure, "lock.shield", false, "lock.shield.fill"},
    {"MissingSource", missing, nullptr, false, triangle},
    {"MissingWhilePaused", pausedMissing, nullptr, false},
};
INSTANTIATE_TEST_SUITE_P(Panel, PanelSituationTest, testing::ValuesIn(situations), ParamName());

// A framework that is down says so, in the state and the banner alike, and
// blames no source; once it is back the pin is kept again.
using PanelFrameworkDownTest = PanelTable<InputSources::Availability>;

TEST_P(PanelFrameworkDownTest, SaysWhyAndBlamesNoSource)
{
    const QList<InputChoice> sources = world.sources;
    world.availability = GetParam();
    world.sources.clear();
    world.current = {};
    open();
    EXPECT_EQ(model->runtimeState(), RuntimeState::Error);
    const auto *banner = find<Banner>(Identifier::warning);
    ASSERT_TRUE(banner && banner->isVisible());
    EXPECT_EQ(model->warning(), SourcesAvailability::warning(GetParam(), QStringLiteral("IBus")));
    const auto *empty = find<SourceEmptyState>(Identifier::sourceEmpty);
    ASSERT_TRUE(empty);
    EXPECT_EQ(empty->accessibleName(), L10n::text("panel.unreachable"));

    world.availability = InputSources::Availability::available;
    world.sources = sources;
    world.current = sources.first();
    model->refresh();
    settle();
    EXPECT_EQ(model->runtimeState(), RuntimeState::Keeping);
    EXPECT_FALSE(shown(Identifier::warning));
}

INSTANTIATE_TEST_SUITE_P(Panel, PanelFrameworkDownTest,
                         testing::Values(InputSources::Availability::notRunning,
                                         InputSources::Availability::notAnswering,
                                         InputSources::Availability::extensionMissing));

// A language chosen in the settings is kept and retranslates the panel at once.
TEST_F(PanelTest, ChoosingALanguageKeepsItAndRetranslates)
{
    open();
    click(Identifier::settings);
    find<QToolButton>(Identifier::language)->menu()->actions().last()->trigger(); // 한국어
    settle();
    EXPECT_EQ(world.config->language, QStringLiteral("ko"));
    EXPECT_EQ(find<QAbstractButton>(Identifier::about)->text(), L10n::text("about.title"));
}

// What the panel and setup write, on the live wiring: sources from a fake port, config.json in a temporary
// folder, and the world's login item and keeper, which ends a switch at once as the engine does for a layout.
// Setup starts from what is kept now and changes the login item only when asked; a failed save changes nothing
// and leaves setup open; no click reads the file twice.
struct WriteRow
{
    std::string name;
    std::optional<bool> keeping; // none: no file, the first run
    QList<const char *> clicks;
    std::optional<Config> written; // none: as before
    int applies = 0;
    bool loginChanged = false;
    bool saveFails = false;
};
using PanelWriteTest = PanelTable<WriteRow>;

TEST_P(PanelWriteTest, WritesWhatWasChosenAndTellsTheKeeper)
{
    const WriteRow &row = GetParam();
    const QTemporaryDir home;
    const QString directory = home.filePath(QStringLiteral("tolvar")), lock = ConfigStore::lockFileIn(directory);
    world.config->enabled = row.keeping.value_or(true);
    ASSERT_TRUE(!row.keeping || ConfigStore::write(*world.config, directory).ok());
    // Where the lock goes, a folder: the file can be read but not changed.
    QFile::remove(lock);
    ASSERT_TRUE(!row.saveFails || QDir().mkpath(lock));
    const Config before = ConfigStore::loadFrom(directory).value();
    FakeInputSources desktop;
    for (const InputChoice &source : world.sources)
        desktop.sources << FakeInputSources::keyboard(source.id, source.name);
    FakeNotifications notifications;
    AppServices services = AppServices::over(desktop.port(), directory, notifications.record());
    int reads = 0;
    services.load = [load = services.load, &reads] {
        ++reads;
        return load();
    };
    world.keeperAndLogin(services);
    world.appliesAtOnce = SwitchOutcome::success();
    world.login = true;
    world.loginError = QStringLiteral("refused"); // any change shows
    openPanel(services, model, panel);
    for (const char *identifier : row.clicks) {
        settle();
        reads = 0;
        click(identifier);
        EXPECT_LE(reads, 1) << identifier;
    }

    EXPECT_EQ(model->showsOnboarding(), row.saveFails && !row.keeping) << "a first run that could not save";
    const Config kept = row.written.value_or(before);
    EXPECT_EQ(ConfigStore::loadFrom(directory).value(), kept);
    EXPECT_EQ(world.calls.count(QStringLiteral("apply")), row.applies);
    const QString warning = model->warning().value_or(QString());
    EXPECT_EQ(warning.contains(QStringLiteral("refused")), row.loginChanged);
    EXPECT_EQ(warning.contains(QStringLiteral("config.lock")), row.saveFails);
    if (kept.sourceID) {
        const auto *pinned = QAccessible::queryAccessibleInterface(find(QStringLiteral("source-") + *kept.sourceID));
        EXPECT_EQ(pinned->text(QAccessible::Value).startsWith(QStringLiteral("Pinned")), kept.enabled);
        EXPECT_EQ(pinned->childCount(), 0) << "a row reads as one element";
    }
}

const char *const next = Identifier::setupNext;
const QList<const char *> reopen = {Identifier::settings, Identifier::setupReopen};
// clang-format off
const WriteRow writes[] = {
    {"FollowingTheSystemPauses", true, {german, Identifier::followSystem},
     Config{.sourceID = "xkb:de::deu", .enabled = false, .onboardingCompleted = true}, 1},
    {"ChoosingAgainResumes", true, {german, Identifier::followSystem, hangul}, hangulKept, 2},
    {"FailedSaveLosesNothing", true, {german}, {}, 0, false, true},
    {"SetupLoginOffAndOnAgain", {}, {hangul, next, Identifier::setupLogin, Identifier::setupLogin, next}, hangulKept,
     1, true},
    {"SetupFailedSave", {}, {hangul, next, next}, {}, 0, false, true},
    {"SetupNotKeptNow", {}, {hangul, next, Identifier::setupKeep, next},
     Config{.sourceID = "hangul", .enabled = false, .onboardingCompleted = true}},
    {"SetupReopened", true, reopen + QList{next, next},
     Config{.sourceID = "xkb:us::eng", .enabled = true, .onboardingCompleted = true}, 1},
    {"SetupReopenedWhilePaused", false, reopen + QList{next, next}, {}},
    {"SetupReopenedAndCancelled", true, reopen + QList{Identifier::setupSkip}, {}},
};
// clang-format on
INSTANTIATE_TEST_SUITE_P(Panel, PanelWriteTest, testing::ValuesIn(writes), ParamName());

} // namespace
