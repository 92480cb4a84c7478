// The About page's version and update check, on a loader that answers when told.
#include "app/about/AboutPage.h"
#include "app/about/UpdateViewModel.h"
#include "app/ui/look/Identifiers.h"
#include "core/l10n/L10n.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QLabel>

#include <gtest/gtest.h>

#include <memory>

namespace {

const QString address = QStringLiteral("https://tolvar.app/update.json");
const AppBuildInfo released{QStringLiteral("1.2"), 7, QStringLiteral("6.1"), address};
const LoadOutcome upToDate = LoadedResponse{R"({"bundleIdentifier":"app.tolvar","version":"1.2","build":7,
    "minimumSystemVersion":"6.1","releaseURL":"https://tolvar.app/r"})",
                                            QUrl(address), 200};

class AboutPageTest : public testing::Test
{
protected:
    void SetUp() override { L10n::setLanguageCode(QStringLiteral("en")); }

    void open(const AppBuildInfo &info, std::optional<UpdateViewModel::State> state = std::nullopt)
    {
        const UpdateLoader loader = [this](const QNetworkRequest &, QObject *, auto done) {
            ++loads;
            answer = std::move(done);
        };
        page = std::make_unique<AboutPage>(
            new UpdateViewModel(UpdateChecker::make(info, QStringLiteral("6.1.0"), loader), state),
            [](const QUrl &) {});
        page->setFixedWidth(320);
        page->show();
        QCoreApplication::processEvents();
    }
    QAbstractButton *checkButton() const { return page->findChild<QAbstractButton *>(Identifier::checkUpdates); }
    // The texts the result line shows now.
    QStringList result() const
    {
        QStringList texts;
        const auto *line = page->findChild<QWidget *>(Identifier::updateResult);
        for (const QLabel *label : line->findChildren<QLabel *>())
            if (label->isVisibleTo(line))
                texts << label->text();
        return texts;
    }

    std::unique_ptr<AboutPage> page;
    int loads = 0;
    std::function<void(const LoadOutcome &)> answer;
};

TEST_F(AboutPageTest, TwoQuickPressesStartOneCheck)
{
    open(released);
    checkButton()->click();
    checkButton()->click();
    page->model()->check();
    EXPECT_EQ(loads, 1);
    EXPECT_FALSE(checkButton()->isEnabled());
    EXPECT_EQ(result(), QStringList{L10n::text("about.update.checking")});
    answer(upToDate);
    EXPECT_EQ(result(), QStringList{L10n::text("about.update.current")});
    EXPECT_TRUE(checkButton()->isEnabled());
}

TEST_F(AboutPageTest, AvailableUpdateShowsItsNotesAndTheReleasePage)
{
    const ReleaseManifest manifest{"app.tolvar", "1.3", 9, "6.1", "https://tolvar.app/r", "\n Faster.  \n"};
    open(released, UpdateViewModel::State::of(UpdateCheckResult::available(manifest, false)));
    const QString available = L10n::text("about.update.available").arg(QStringLiteral("1.3"), QStringLiteral("9"));
    EXPECT_EQ(result(), (QStringList{available, "Faster."}));
    EXPECT_TRUE(page->findChild<QAbstractButton *>(Identifier::releasePage)->isVisible());
}

} // namespace
