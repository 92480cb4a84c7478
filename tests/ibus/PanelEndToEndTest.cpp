// The setup flow driven by pointer on the live model, against the private
// session's ibus-daemon and a real configuration file.
#include "app/AppModel.h"
#include "app/panel/Panel.h"
#include "app/ui/Identifiers.h"
#include "core/config/ConfigStore.h"
#include "platform/InputSources.h"
#include "platform/linux/IBusAddress.h"

#include "support/Spin.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QThreadPool>

#include <gtest/gtest.h>

namespace {

TEST(PanelEndToEndTest, SetupPinsTheChosenEngine)
{
    if (IBusAddress::published().isEmpty())
        GTEST_SKIP() << "needs the private IBus of scripts/private-session --ibus";
    const InputSources ibus = InputSources::live();
    ASSERT_NE(ibus.currentID(), QStringLiteral("xkb:de::deu"));
    AppModel &model = AppModel::shared();
    model.start();
    ASSERT_TRUE(model.showsOnboarding());
    Panel panel(model, false, 900);
    panel.show();
    const auto click = [&panel](const QString &identifier) {
        auto *button = panel.findChild<QAbstractButton *>(identifier);
        ASSERT_TRUE(button) << qPrintable(identifier);
        button->click();
        QCoreApplication::processEvents();
    };
    click(QStringLiteral("source-xkb:de::deu"));
    click(QLatin1String(Identifier::setupNext));
    click(QLatin1String(Identifier::setupNext));

    EXPECT_FALSE(model.showsOnboarding());
    const Config stored = ConfigStore::loadOrDefault();
    EXPECT_EQ(stored.sourceID, QStringLiteral("xkb:de::deu"));
    EXPECT_TRUE(stored.enabled);
    EXPECT_TRUE(stored.onboardingCompleted);
    EXPECT_TRUE(spinUntil([&] { return ibus.currentID() == QLatin1String("xkb:de::deu"); }, 10000))
        << qPrintable(ibus.currentID());
    QThreadPool::globalInstance()->waitForDone();
}

} // namespace
