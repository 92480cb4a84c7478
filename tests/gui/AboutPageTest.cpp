#include "app/about/AboutPage.h"
#include "app/about/UpdateViewModel.h"
#include "app/ui/Identifiers.h"
#include "core/config/L10n.h"

#include <QAbstractButton>
#include <QLabel>
#include <QTest>

#include <memory>

namespace {

const QString address = QStringLiteral("https://tolvar.app/update.json");
const AppBuildInfo released{QStringLiteral("1.2"), 7, QStringLiteral("6.1"), address};

// Remembers every request and answers only when the test says so.
struct HeldLoader
{
    int loads = 0;
    std::function<void(const LoadOutcome &)> answer;

    UpdateLoader loader()
    {
        return [this](const QNetworkRequest &, QObject *, std::function<void(const LoadOutcome &)> done) {
            ++loads;
            answer = std::move(done);
        };
    }
};

std::unique_ptr<AboutPage> shownPage(const AppBuildInfo &info, const UpdateLoader &loader,
                                     std::optional<UpdateViewModel::State> state = std::nullopt)
{
    auto page = std::make_unique<AboutPage>(
        new UpdateViewModel(UpdateChecker::make(info, QStringLiteral("6.1.0"), loader), state), true);
    page->setFixedWidth(320);
    page->show();
    QCoreApplication::processEvents();
    return page;
}

QAbstractButton *checkButton(const AboutPage &page)
{
    return page.findChild<QAbstractButton *>(QLatin1String(Identifier::checkUpdates));
}

// The texts the result line shows now.
QStringList resultTexts(const AboutPage &page)
{
    QStringList texts;
    const auto *result = page.findChild<QWidget *>(QLatin1String(Identifier::updateResult));
    for (const QLabel *label : result->findChildren<QLabel *>())
        if (label->isVisibleTo(result))
            texts << label->text();
    return texts;
}

bool showsText(const AboutPage &page, const QString &text)
{
    for (const QLabel *label : page.findChildren<QLabel *>())
        if (label->text() == text && label->isVisibleTo(&page))
            return true;
    return false;
}

const LoadOutcome upToDate = LoadedResponse{R"({"bundleIdentifier":"app.tolvar","version":"1.2","build":7,
    "minimumSystemVersion":"6.1","releaseURL":"https://tolvar.app/r"})",
                                            QUrl(address), 200};

} // namespace

class AboutPageTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { L10n::setLanguageCode(QStringLiteral("en")); }

    void unconfiguredBuildCannotCheck()
    {
        HeldLoader held;
        const auto page = shownPage({QStringLiteral("1.2"), 7, QStringLiteral("6.1"), std::nullopt}, held.loader());
        QVERIFY(!checkButton(*page)->isEnabled());
        QCOMPARE(resultTexts(*page), QStringList{L10n::text("about.update.unconfigured")});
        QVERIFY(!showsText(*page, L10n::text("about.manual-check")));
    }

    void twoQuickPressesStartOneCheck()
    {
        HeldLoader held;
        const auto page = shownPage(released, held.loader());
        QVERIFY(showsText(*page, L10n::text("about.manual-check")));
        checkButton(*page)->click();
        checkButton(*page)->click();
        page->model()->check();
        QCOMPARE(held.loads, 1);
        QVERIFY(!checkButton(*page)->isEnabled());
        QCOMPARE(resultTexts(*page), QStringList{L10n::text("about.update.checking")});

        held.answer(upToDate);
        QCOMPARE(resultTexts(*page), QStringList{L10n::text("about.update.current")});
        QVERIFY(checkButton(*page)->isEnabled());
    }

    void leavingThePageAbandonsTheCheck()
    {
        HeldLoader held;
        const auto page = shownPage(released, held.loader());
        checkButton(*page)->click();
        page->hide();
        QCOMPARE(page->model()->state(), UpdateViewModel::State::idle());
        held.answer(upToDate); // the late answer
        QCoreApplication::processEvents();
        page->show();
        QCOMPARE(resultTexts(*page), QStringList{L10n::text("about.update.idle")});

        checkButton(*page)->click();
        QCOMPARE(held.loads, 2);
    }

    void versionLabel_data()
    {
        QTest::addColumn<std::optional<QString>>("version");
        QTest::addColumn<std::optional<qint64>>("build");
        QTest::addColumn<QString>("shown");
        QTest::newRow("released") << std::optional<QString>("1.2") << std::optional<qint64>(7)
                                  << L10n::text("about.version").arg(QStringLiteral("1.2"), QStringLiteral("7"));
        QTest::newRow("no version") << std::optional<QString>() << std::optional<qint64>(7)
                                    << L10n::text("about.local-build");
        QTest::newRow("no build") << std::optional<QString>("1.2") << std::optional<qint64>()
                                  << L10n::text("about.local-build");
    }

    void versionLabel()
    {
        QFETCH(std::optional<QString>, version);
        QFETCH(std::optional<qint64>, build);
        QFETCH(QString, shown);
        const auto page = shownPage({version, build, QStringLiteral("6.1"), address}, HeldLoader().loader());
        QCOMPARE(page->findChild<QLabel *>(QLatin1String(Identifier::aboutVersion))->text(), shown);
    }

    void releaseNotes_data()
    {
        QTest::addColumn<std::optional<QString>>("notes");
        QTest::addColumn<QStringList>("shown");
        const QString available = L10n::text("about.update.available").arg(QStringLiteral("1.3"), QStringLiteral("9"));
        QTest::newRow("none") << std::optional<QString>() << QStringList{available};
        QTest::newRow("white space only") << std::optional<QString>(" \n\t \n") << QStringList{available};
        QTest::newRow("trimmed") << std::optional<QString>("\n Faster.  \n") << QStringList{available, "Faster."};
    }

    void releaseNotes()
    {
        QFETCH(std::optional<QString>, notes);
        QFETCH(QStringList, shown);
        const ReleaseManifest manifest{"app.tolvar", "1.3", 9, "6.1", "https://tolvar.app/r", notes};
        const auto page = shownPage(released, HeldLoader().loader(),
                                    UpdateViewModel::State::of(UpdateCheckResult::available(manifest, false)));
        QCOMPARE(resultTexts(*page), shown);
        QVERIFY(page->findChild<QAbstractButton *>(QLatin1String(Identifier::releasePage))->isVisible());
    }
};

QObject *makeAboutPageTest()
{
    return new AboutPageTest;
}

#include "AboutPageTest.moc"
