#include "app/ui/AccessibleComponent.h"
#include "app/ui/Banner.h"
#include "app/ui/HiddenShortcut.h"
#include "app/ui/IconButton.h"
#include "app/ui/Identifiers.h"
#include "app/ui/QuietButton.h"
#include "app/ui/RowButton.h"
#include "app/ui/SearchField.h"
#include "app/ui/SettingRow.h"
#include "app/ui/SourceEmptyState.h"
#include "app/ui/SourceList.h"
#include "app/ui/SourceRow.h"
#include "app/ui/Theme.h"
#include "core/config/L10n.h"

#include <QAccessible>
#include <QLineEdit>
#include <QScrollArea>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

#include <memory>

namespace {

QList<InputChoice> choices(int count)
{
    QList<InputChoice> list;
    for (int i = 0; i < count; ++i)
        list.append({QStringLiteral("s%1").arg(i), QStringLiteral("Source %1").arg(i)});
    return list;
}

SourceListContent content(int shown, int total)
{
    SourceListContent content;
    content.sources = choices(shown);
    content.totalCount = total;
    return content;
}

std::unique_ptr<SourceList> shownList(SourceListContent content)
{
    auto list = std::make_unique<SourceList>();
    list->setFixedWidth(292);
    list->setContent(std::move(content));
    list->show();
    QCoreApplication::processEvents();
    return list;
}

} // namespace

class ComponentsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { L10n::setLanguageCode(QStringLiteral("en")); }

    void bannerHasAButtonOnlyWithTitleAndAction_data()
    {
        QTest::addColumn<bool>("hasTitle");
        QTest::addColumn<bool>("hasAction");
        QTest::newRow("title and action") << true << true;
        QTest::newRow("action without title") << false << true;
        QTest::newRow("title without action") << true << false;
    }
    void bannerHasAButtonOnlyWithTitleAndAction()
    {
        QFETCH(bool, hasTitle);
        QFETCH(bool, hasAction);
        int runs = 0;
        Banner::Action action{hasTitle ? std::optional<QString>(QStringLiteral("Retry")) : std::nullopt,
                              hasAction ? std::function<void()>([&runs] { ++runs; }) : nullptr};
        Banner banner(QStringLiteral("Warning"), QStringLiteral("exclamationmark.triangle.fill"), Qt::red, action);
        QCOMPARE(banner.actionButton() != nullptr, hasTitle && hasAction);
        QCOMPARE(banner.findChildren<QAbstractButton *>().size(), hasTitle && hasAction ? 1 : 0);
        if (banner.actionButton()) {
            banner.actionButton()->click();
            QCOMPARE(runs, 1);
        }
    }

    void sourceListScrollsFromSevenSources_data()
    {
        QTest::addColumn<int>("shown");
        QTest::addColumn<int>("total");
        QTest::addColumn<bool>("scrolls");
        QTest::newRow("six of thirty") << 6 << 30 << true;
        QTest::newRow("six of six") << 6 << 6 << false;
        QTest::newRow("seven of seven") << 7 << 7 << true;
    }
    void sourceListScrollsFromSevenSources()
    {
        QFETCH(int, shown);
        QFETCH(int, total);
        QFETCH(bool, scrolls);
        const auto list = shownList(content(shown, total));
        auto *scroll = list->findChild<QScrollArea *>(QLatin1String(Identifier::sourceListScroll));
        QCOMPARE(scroll != nullptr, scrolls);
        if (scroll) {
            QCOMPARE(scroll->height(), SourceList::scrollHeight);
            return;
        }
        // Natural height: every row shows in full, one under the other.
        const auto *last = list->findChild<SourceRow *>(QStringLiteral("source-s%1").arg(shown - 1));
        QVERIFY(last);
        QVERIFY(last->mapTo(list.get(), QPoint(0, last->height())).y() <= list->height());
        QVERIFY(last->height() >= SourceRow::minimumHeight);
    }

    void emptyListTellsWhy_data()
    {
        QTest::addColumn<int>("total");
        QTest::addColumn<bool>("catalogEmpty");
        QTest::addColumn<int>("height"); // 0: natural
        QTest::newRow("empty catalog") << 0 << true << 0;
        QTest::newRow("no match in a short catalog") << 3 << false << 0;
        QTest::newRow("no match in a long catalog keeps the height") << 30 << false << SourceList::scrollHeight;
    }
    void emptyListTellsWhy()
    {
        QFETCH(int, total);
        QFETCH(bool, catalogEmpty);
        QFETCH(int, height);
        const auto list = shownList(content(0, total));
        auto *empty = list->findChild<SourceEmptyState *>(QLatin1String(Identifier::sourceEmpty));
        QVERIFY(empty);
        QCOMPARE(empty->isCatalogEmpty(), catalogEmpty);
        QCOMPARE(empty->accessibleName(), L10n::text(catalogEmpty ? "panel.empty" : "ui.no-results"));
        if (height)
            QCOMPARE(empty->height(), height);
    }

    void rowsShowSelectionAndCurrent_data()
    {
        QTest::addColumn<QString>("id");
        QTest::addColumn<bool>("selected");
        QTest::addColumn<QString>("value");
        QTest::newRow("pinned and current") << "s1" << true << "Pinned source, Current";
        QTest::newRow("current only") << "s2" << false << "Current";
        QTest::newRow("neither") << "s0" << false << "";
    }
    void rowsShowSelectionAndCurrent()
    {
        QFETCH(QString, id);
        QFETCH(bool, selected);
        QFETCH(QString, value);
        QString chosen;
        const bool bothOnOne = id == QLatin1String("s1");
        SourceListContent three = content(3, 3);
        three.selectedID = QStringLiteral("s1");
        three.currentID = bothOnOne ? QStringLiteral("s1") : QStringLiteral("s2");
        three.onSelect = [&chosen](const QString &picked) { chosen = picked; };
        const auto list = shownList(three);
        auto *row = list->findChild<SourceRow *>(QStringLiteral("source-") + id);
        QVERIFY(row);
        QCOMPARE(row->isSelected(), selected);
        QCOMPARE(row->findChild<QWidget *>(QStringLiteral("selection-mark")) != nullptr, selected);
        QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(row);
        QCOMPARE(accessible->text(QAccessible::Value), value);
        QCOMPARE(accessible->state().selected, selected);
        // A row reads as one element: its icon, tag and checkmark are not listed.
        QCOMPARE(accessible->childCount(), 0);
        QTest::mouseClick(row, Qt::LeftButton);
        QCOMPARE(chosen, id);
    }

    void followSystemRowRunsItsAction()
    {
        int runs = 0;
        SourceListContent two = content(2, 2);
        two.followSystem = FollowSystemChoice{true, [&runs] { ++runs; }};
        const auto list = shownList(two);
        auto *row = list->findChild<RowButton *>(QLatin1String(Identifier::followSystem));
        QVERIFY(row);
        QCOMPARE(QAccessible::queryAccessibleInterface(row)->text(QAccessible::Name), L10n::text("ui.follow-system"));
        QTest::mouseClick(row, Qt::LeftButton);
        QCOMPARE(runs, 1);
    }

    void searchFieldClearsItsText()
    {
        SearchField field(QStringLiteral("source-search"));
        QStringList seen;
        field.onTextChanged([&seen](const QString &text) { seen << text; });
        field.show();
        auto *edit = field.findChild<QLineEdit *>(QStringLiteral("source-search"));
        auto *clear = field.findChild<QAbstractButton *>(QStringLiteral("source-search-clear"));
        QVERIFY(edit && clear);
        QVERIFY(!clear->isVisible());
        QTest::keyClicks(edit, QStringLiteral("de"));
        QVERIFY(clear->isVisible());
        QCOMPARE(clear->accessibleName(), L10n::text("ui.clear"));
        QTest::mouseClick(clear, Qt::LeftButton);
        QCOMPARE(field.text(), QString());
        QVERIFY(!clear->isVisible());
        QCOMPARE(seen, QStringList({QStringLiteral("d"), QStringLiteral("de"), QString()}));
    }

    void disabledButtonsDoNotFire_data()
    {
        QTest::addColumn<QString>("style");
        QTest::newRow("icon") << "icon";
        QTest::newRow("quiet") << "quiet";
        QTest::newRow("row") << "row";
    }
    void disabledButtonsDoNotFire()
    {
        QFETCH(QString, style);
        std::unique_ptr<QAbstractButton> button;
        if (style == QLatin1String("icon"))
            button = std::make_unique<IconButton>(QStringLiteral("gearshape"));
        else if (style == QLatin1String("quiet"))
            button = std::make_unique<QuietButton>(QStringLiteral("Quit"), QStringLiteral("power"));
        else
            button = std::make_unique<NavigationRow>(QStringLiteral("About"), QStringLiteral("chevron.right"));
        button->resize(button->sizeHint().expandedTo(QSize(40, 24)));
        button->show();
        QSignalSpy clicks(button.get(), &QAbstractButton::clicked);
        QTest::mouseClick(button.get(), Qt::LeftButton);
        QCOMPARE(clicks.size(), 1);
        button->setEnabled(false);
        QTest::mouseClick(button.get(), Qt::LeftButton);
        QCOMPARE(clicks.size(), 1);
    }

    void hiddenShortcutFires()
    {
        QWidget window;
        int runs = 0;
        new HiddenShortcut(QKeySequence(Qt::CTRL | Qt::Key_Comma), &window, [&runs] { ++runs; });
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        QTest::keyClick(&window, Qt::Key_Comma, Qt::ControlModifier);
        QCOMPARE(runs, 1);
    }

    void decorationStaysOutOfTheAccessibleTree()
    {
        SettingRow row(QStringLiteral("pin.fill"), Qt::blue, QStringLiteral("Keep"), QStringLiteral("Caption"),
                       nullptr);
        QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(&row);
        QCOMPARE(accessible->childCount(), 2); // title and caption, not the icon
        for (int i = 0; i < accessible->childCount(); ++i)
            QCOMPARE(accessible->child(i)->role(), QAccessible::StaticText);
    }
};

QObject *makeComponentsTest()
{
    return new ComponentsTest;
}

#include "ComponentsTest.moc"
