// The panel and the setup flow on a scripted world, found by their identifiers.
#include "app/panel/Panel.h"
#include "app/AppModel.h"
#include "app/panel/PanelScreenHeight.h"
#include "app/panel/SourceFilter.h"
#include "app/panel/StatusLine.h"
#include "app/ui/Banner.h"
#include "app/ui/Identifiers.h"
#include "app/ui/SourceEmptyState.h"
#include "app/ui/SourceRow.h"
#include "app/ui/Theme.h"
#include "core/config/L10n.h"
#include "core/engine/Enforcer.h"

#include "support/FakeAppWorld.h"

#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QScrollArea>
#include <QTest>
#include <QThreadPool>
#include <QToolButton>

#include <memory>

namespace {

QList<InputChoice> sources(int count)
{
    QList<InputChoice> list;
    for (int i = 0; i < count; ++i)
        list.append({QStringLiteral("s%1").arg(i), QStringLiteral("Source %1").arg(i)});
    return list;
}

// A world, its model and a shown panel over them. The model is a preview
// unless `live`, when it does its login work in the background as the running
// application does (its engine is never started).
struct Rig
{
    FakeAppWorld world;
    Enforcer engine{EnforcementDependencies{}};
    std::unique_ptr<AppModel> model;
    std::unique_ptr<Panel> panel;
    int keyboardOpened = 0;

    void open(bool inWindow = false, bool live = false, int maximumHeight = 900)
    {
        model = std::make_unique<AppModel>(world.services(), live ? &engine : nullptr);
        model->refresh();
        if (model->needsOnboarding())
            model->beginSetup();
        panel = std::make_unique<Panel>(*model, inWindow, maximumHeight);
        panel->setKeyboardSettings({[this] {
            ++keyboardOpened;
            return true;
        }});
        panel->show();
        settle();
    }
    static void settle()
    {
        for (int turn = 0; turn < 3; ++turn)
            QCoreApplication::processEvents();
    }
    template <typename T = QWidget> T *find(const QString &identifier) const
    {
        return panel->findChild<T *>(identifier);
    }
    template <typename T = QWidget> T *find(const char *identifier) const { return find<T>(QLatin1String(identifier)); }
    void click(const char *identifier) const
    {
        QAbstractButton *button = find<QAbstractButton>(identifier);
        QVERIFY2(button && button->isVisible(), identifier);
        QTest::mouseClick(button, Qt::LeftButton);
        settle();
    }
    bool shown(const char *identifier) const
    {
        const QWidget *widget = find(identifier);
        return widget && widget->isVisible();
    }
    ~Rig()
    {
        if (world.loginGate)
            world.loginGate->release(8);
        QThreadPool::globalInstance()->waitForDone();
    }
};

} // namespace

class PanelTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { L10n::setLanguageCode(QStringLiteral("en")); }

    void searchFieldShowsForLongListsOrAPendingQuery_data()
    {
        QTest::addColumn<bool>("setup");
        QTest::addColumn<int>("count");
        QTest::addColumn<bool>("shown");
        for (const bool setup : {false, true}) {
            const char *where = setup ? "setup: " : "panel: ";
            QTest::addRow("%ssix sources", where) << setup << 6 << false;
            QTest::addRow("%sseven sources", where) << setup << 7 << true;
        }
    }
    void searchFieldShowsForLongListsOrAPendingQuery()
    {
        QFETCH(bool, setup);
        QFETCH(int, count);
        QFETCH(bool, shown);
        Rig rig;
        rig.world.sources = sources(count);
        if (setup)
            rig.world.config.reset();
        rig.open();
        const char *search = setup ? Identifier::setupSearch : Identifier::sourceSearch;
        QCOMPARE(rig.shown(search), shown);
        if (!shown)
            return;
        // Typed before a source went away: the field stays until the query is cleared.
        QTest::keyClicks(rig.find<QLineEdit>(search), QStringLiteral("Source"));
        rig.world.sources.removeLast();
        rig.model->refresh();
        rig.settle();
        QVERIFY(rig.shown(search));
        rig.find<QLineEdit>(search)->clear();
        rig.settle();
        QVERIFY(!rig.shown(search));
    }

    void filterMatchesNamesUnderTheLocale_data()
    {
        QTest::addColumn<QString>("query");
        QTest::addColumn<QString>("locale");
        QTest::addColumn<QStringList>("matches");
        QTest::newRow("empty query keeps all, in order") << ""
                                                         << "en" << QStringList{"Türkçe Q", "KIRIK", "Pinyin"};
        QTest::newRow("case-insensitive") << "pINy"
                                          << "en" << QStringList{"Pinyin"};
        QTest::newRow("identifiers are not searched") << "xkb"
                                                      << "en" << QStringList{};
        QTest::newRow("a space only matches a space") << " "
                                                      << "en" << QStringList{"Türkçe Q"};
        QTest::newRow("English folds I to i") << "kir"
                                              << "en" << QStringList{"KIRIK"};
        QTest::newRow("Turkish folds I to dotless ı") << "kır"
                                                      << "tr" << QStringList{"KIRIK"};
        QTest::newRow("so Turkish i does not match I") << "kir"
                                                       << "tr" << QStringList{};
    }
    void filterMatchesNamesUnderTheLocale()
    {
        QFETCH(QString, query);
        QFETCH(QString, locale);
        QFETCH(QStringList, matches);
        const QList<InputChoice> all{{"xkb:tr:f:tur", "Türkçe Q"}, {"xkb:kr::kor", "KIRIK"}, {"pinyin", "Pinyin"}};
        QStringList names;
        for (const InputChoice &choice : SourceFilter::filtered(all, query, QLocale(locale)))
            names << choice.name;
        QCOMPARE(names, matches);
    }

    void aQueryWithoutMatchesShowsTheEmptyState()
    {
        Rig rig;
        rig.world.sources = sources(30);
        rig.open();
        QTest::keyClicks(rig.find<QLineEdit>(Identifier::sourceSearch), QStringLiteral("zz"));
        rig.settle();
        const auto *empty = rig.find<SourceEmptyState>(Identifier::sourceEmpty);
        QVERIFY(empty && empty->isVisible());
        QVERIFY(!empty->isCatalogEmpty());
    }

    void statusLineOnlyForPassingStates_data()
    {
        QTest::addColumn<QString>("situation");
        QTest::addColumn<bool>("reduceMotion");
        QTest::addColumn<QString>("symbol"); // empty: no line
        QTest::addColumn<bool>("pulsing");
        QTest::newRow("keeping") << "keeping" << false << "" << false;
        QTest::newRow("paused") << "paused" << false << "" << false;
        QTest::newRow("waiting") << "waiting" << false << "clock" << true;
        QTest::newRow("waiting, reduce motion") << "waiting" << true << "clock" << false;
        QTest::newRow("switching") << "switching" << false << "arrow.triangle.2.circlepath" << true;
    }
    void statusLineOnlyForPassingStates()
    {
        QFETCH(QString, situation);
        QFETCH(bool, reduceMotion);
        QFETCH(QString, symbol);
        QFETCH(bool, pulsing);
        Rig rig;
        Theme::setApplicationPreferences({false, false, reduceMotion});
        if (situation == QLatin1String("paused"))
            rig.world.config->enabled = false;
        if (situation == QLatin1String("waiting"))
            rig.world.current = rig.world.sources.at(1);
        rig.open();
        if (situation == QLatin1String("switching"))
            rig.model->apply();
        rig.settle();
        const auto *line = rig.find<StatusLine>(Identifier::pinStatus);
        QCOMPARE(line->isVisible(), !symbol.isEmpty());
        if (!symbol.isEmpty())
            QCOMPARE(StatusLine::symbol(line->state()), symbol);
        QCOMPARE(line->isPulsing(), pulsing);
        Theme::setApplicationPreferences({});
    }

    void bannerFollowsTheWarning_data()
    {
        QTest::addColumn<QString>("situation");
        QTest::addColumn<QString>("symbol");
        QTest::addColumn<bool>("secureTint");
        QTest::addColumn<bool>("retry");
        QTest::newRow("failed switch") << "failed"
                                       << "exclamationmark.triangle.fill" << false << true;
        QTest::newRow("secure input") << "secure"
                                      << "lock.shield.fill" << true << false;
        QTest::newRow("missing source") << "missing"
                                        << "exclamationmark.triangle.fill" << false << false;
    }
    void bannerFollowsTheWarning()
    {
        QFETCH(QString, situation);
        QFETCH(QString, symbol);
        QFETCH(bool, secureTint);
        QFETCH(bool, retry);
        Rig rig;
        if (situation == QLatin1String("missing"))
            rig.world.config->sourceID = QStringLiteral("gone");
        rig.open();
        QCOMPARE(rig.shown(Identifier::warning), situation == QLatin1String("missing"));
        if (situation == QLatin1String("failed")) {
            rig.model->apply();
            rig.world.applies.back()(SwitchOutcome::failed(QStringLiteral("no answer")));
        } else if (situation == QLatin1String("secure")) {
            rig.world.secure = true;
            rig.model->receiveAutomaticOutcome(SwitchOutcome::secureInput());
        }
        rig.settle();
        const auto *banner = rig.find<Banner>(Identifier::warning);
        QVERIFY(banner && banner->isVisible());
        QCOMPARE(banner->symbol(), symbol);
        const Theme theme = Theme::of(rig.panel.get());
        QCOMPARE(banner->tint(), secureTint ? theme.indigo : theme.orange);
        QCOMPARE(banner->actionButton() != nullptr, retry);
        if (retry) {
            QTest::mouseClick(banner->actionButton(), Qt::LeftButton);
            QCOMPARE(rig.world.calls.count(QStringLiteral("apply")), 2);
        }
    }

    void longPagesScrollWithinTheScreen_data()
    {
        QTest::addColumn<bool>("inWindow");
        QTest::addColumn<int>("screen");
        QTest::addColumn<int>("height");
        QTest::newRow("drop-down on a 700-point screen") << false << 700 << 612;
        QTest::newRow("window on a 700-point screen") << true << 700 << 620;
        QTest::newRow("drop-down on a tiny screen") << false << 100 << 72;
    }
    void longPagesScrollWithinTheScreen()
    {
        QFETCH(bool, inWindow);
        QFETCH(int, screen);
        QFETCH(int, height);
        Rig rig;
        rig.world.sources = sources(30);
        rig.world.writeError = QStringLiteral("the disk is full. ").repeated(40);
        rig.open(inWindow);
        QVERIFY(!rig.find(Identifier::panelOverflow));
        rig.model->choose(QStringLiteral("s3")); // fails to save: a long warning
        rig.panel->setScreenHeight(PanelScreenHeight::usableHeight(screen));
        rig.settle();
        const auto *overflow = rig.find<QScrollArea>(Identifier::panelOverflow);
        QVERIFY(overflow);
        QCOMPARE(overflow->height(), height);
    }

    void languageMenuShowsTheStoredLanguage_data()
    {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("checked");
        QTest::newRow("none") << ""
                              << "System"
                              << "System language";
        QTest::newRow("unsupported fr") << "fr"
                                        << "System"
                                        << "System language";
        QTest::newRow("ko") << "ko"
                            << "한국어"
                            << "한국어";
    }
    void languageMenuShowsTheStoredLanguage()
    {
        QFETCH(QString, stored);
        QFETCH(QString, title);
        QFETCH(QString, checked);
        Rig rig;
        if (!stored.isEmpty())
            rig.world.config->language = stored;
        rig.open();
        rig.click(Identifier::settings);
        const auto *menu = rig.find<QToolButton>(Identifier::language);
        // The title is in the language in force, which the stored one may have changed.
        L10n::setLanguageCode(QStringLiteral("en"));
        QCOMPARE(menu->text(), title == QLatin1String("System") ? L10n::text("lang.system.short") : title);
        QStringList checkedTexts;
        for (const QAction *action : menu->menu()->actions())
            if (action->isChecked())
                checkedTexts << action->text();
        QCOMPARE(checkedTexts.size(), 1);
        if (stored != QLatin1String("ko"))
            QCOMPARE(menu->menu()->actions().first()->isChecked(), true);
        else
            QCOMPARE(checkedTexts.first(), checked);
    }

    void choosingALanguageRetranslatesThePanel()
    {
        Rig rig;
        rig.open();
        QTest::keyClicks(rig.find<QLineEdit>(Identifier::sourceSearch), QStringLiteral("Ger"));
        rig.click(Identifier::settings);
        rig.find<QToolButton>(Identifier::language)->menu()->actions().last()->trigger(); // 한국어
        rig.settle();
        QCOMPARE(rig.find<QAbstractButton>(Identifier::about)->text(), L10n::text("about.title"));
        QCOMPARE(L10n::activeLanguage(), QStringLiteral("ko"));
        rig.click(Identifier::back);
        QCOMPARE(rig.find<QLineEdit>(Identifier::sourceSearch)->text(), QStringLiteral("Ger"));
    }

    void loginSwitchWaitsForTheChange()
    {
        Rig rig;
        QSemaphore gate;
        rig.world.loginGate = &gate;
        rig.open(false, true);
        rig.click(Identifier::settings);
        rig.click(Identifier::loginEnabled);
        QVERIFY(rig.model->loginBusy());
        QVERIFY(!rig.find(Identifier::loginEnabled)->isEnabled());
        QVERIFY(!rig.shown(Identifier::loginEnabled));
        QVERIFY(rig.shown(Identifier::loginProgress));
        gate.release();
        QTRY_VERIFY(!rig.model->loginBusy());
        rig.settle();
        QVERIFY(rig.shown(Identifier::loginEnabled));
        QVERIFY(rig.find<QAbstractButton>(Identifier::loginEnabled)->isChecked());
    }

    void controlCommaOpensSettingsOutsideSetup_data()
    {
        QTest::addColumn<bool>("inSetup");
        QTest::newRow("main page") << false;
        QTest::newRow("setup flow") << true;
    }
    void controlCommaOpensSettingsOutsideSetup()
    {
        QFETCH(bool, inSetup);
        Rig rig;
        if (inSetup)
            rig.world.config.reset();
        rig.open();
        rig.panel->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(rig.panel.get()));
        QTest::keyClick(rig.panel.get(), Qt::Key_Comma, Qt::ControlModifier);
        rig.settle();
        QCOMPARE(rig.panel->page(), inSetup ? PanelPage::main : PanelPage::settings);
        QCOMPARE(rig.shown(Identifier::loginEnabled), !inSetup);
    }

    void setupNeedsAChoiceAndBackKeepsIt()
    {
        Rig rig;
        rig.world.config.reset();
        rig.open();
        QVERIFY(!rig.find(Identifier::setupNext)->isEnabled());
        rig.click("source-hangul");
        rig.click(Identifier::setupNext);
        QCOMPARE(rig.find<QLabel>(Identifier::setupTarget)->text(), QStringLiteral("Hangul"));
        rig.click(Identifier::setupBack);
        QVERIFY(rig.find<SourceRow>("source-hangul")->isSelected());
        // Return is the default action.
        QTest::keyClick(rig.panel.get(), Qt::Key_Return);
        rig.settle();
        QCOMPARE(rig.model->setupStep(), 1);
        // The chosen source disappears: its name gives way, and Finish waits.
        rig.world.sources.removeLast();
        rig.model->refresh();
        rig.settle();
        QCOMPARE(rig.find<QLabel>(Identifier::setupTarget)->text(), L10n::text("setup.source-gone"));
        QVERIFY(!rig.find(Identifier::setupNext)->isEnabled());
    }

    void reopenedSetupCancelsAndStartsFromTheCurrentState_data()
    {
        QTest::addColumn<bool>("enabled");
        QTest::newRow("keeping") << true;
        QTest::newRow("paused") << false;
    }
    void reopenedSetupCancelsAndStartsFromTheCurrentState()
    {
        QFETCH(bool, enabled);
        Rig rig;
        rig.world.config->enabled = enabled;
        rig.open();
        rig.click(Identifier::settings);
        rig.click(Identifier::setupReopen);
        QCOMPARE(rig.find<QAbstractButton>(Identifier::setupSkip)->text(), L10n::text("setup.cancel"));
        rig.click(Identifier::setupNext);
        QCOMPARE(rig.find<QAbstractButton>(Identifier::setupKeep)->isChecked(), enabled);
        rig.click(Identifier::setupSkip);
        QVERIFY(!rig.model->showsOnboarding());
    }

    void finishChangesTheLoginItemOnlyWhenAsked_data()
    {
        QTest::addColumn<bool>("toggle");
        QTest::newRow("switched off and on again") << true;
        QTest::newRow("left alone") << false;
    }
    void finishChangesTheLoginItemOnlyWhenAsked()
    {
        QFETCH(bool, toggle);
        Rig rig;
        rig.world.config.reset();
        rig.world.login = true;
        rig.world.loginError = QStringLiteral("refused"); // any change shows
        rig.open();
        rig.click("source-hangul");
        rig.click(Identifier::setupNext);
        if (toggle) {
            rig.click(Identifier::setupLogin);
            rig.click(Identifier::setupLogin);
        }
        QCOMPARE(rig.model->setupLoginRequested(), toggle ? std::optional<bool>(true) : std::nullopt);
        rig.click(Identifier::setupNext);
        QVERIFY(!rig.model->showsOnboarding());
        QCOMPARE(rig.model->warning().value_or(QString()).contains(QStringLiteral("refused")), toggle);
    }

    void keyboardSettingsOpenOnlyOutsideAPreview_data()
    {
        QTest::addColumn<bool>("live");
        QTest::newRow("preview") << false;
        QTest::newRow("live") << true;
    }
    void keyboardSettingsOpenOnlyOutsideAPreview()
    {
        QFETCH(bool, live);
        Rig rig;
        rig.world.config.reset();
        rig.open(false, live);
        rig.click(Identifier::setupKeyboardSettings);
        rig.click(Identifier::setupSkip);
        rig.click(Identifier::keyboardSettings);
        rig.click(Identifier::settings);
        rig.click(Identifier::settingsKeyboard);
        QCOMPARE(rig.keyboardOpened, live ? 3 : 0);
    }
};

QObject *makePanelTest()
{
    return new PanelTest;
}

#include "PanelTest.moc"
