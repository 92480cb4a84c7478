// The setup flow driven by pointer on the live model, then a choice made in
// the model, against the private session's ibus-daemon (engines xkb:us::eng,
// xkb:de::deu and hangul) and a real configuration file.
#include "app/model/AppModel.h"
#include "app/panel/Panel.h"
#include "app/tray/TrayImage.h"
#include "app/ui/look/Identifiers.h"
#include "core/config/ConfigStore.h"
#include "platform/input/InputSources.h"
#include "platform/linux/ibus/IBusAddress.h"

#include "support/Spin.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QThreadPool>

#include <gtest/gtest.h>

namespace {

TEST(PanelEndToEndTest, SetupPinsTheChosenEngineAndTheNextChoiceIsKept)
{
    if (IBusAddress::published().isEmpty())
        GTEST_SKIP() << "needs the private IBus of scripts/private-session --ibus";
    const InputSources ibus = InputSources::live();
    ASSERT_NE(ibus.currentID(), QStringLiteral("xkb:de::deu"));
    AppModel &model = AppModel::shared();
    model.start();
    ASSERT_TRUE(model.showsOnboarding());
    EXPECT_EQ(model.sources(),
              (QList<InputChoice>{{"xkb:us::eng", "English (US)"}, {"xkb:de::deu", "German"}, {"hangul", "Hangul"}}));

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
    EXPECT_EQ(ConfigStore::loadOrDefault(),
              (Config{.sourceID = "xkb:de::deu", .enabled = true, .onboardingCompleted = true}));
    EXPECT_TRUE(spinUntil([&] { return ibus.currentID() == QLatin1String("xkb:de::deu"); }, 10000))
        << qPrintable(ibus.currentID());

    model.choose(QStringLiteral("xkb:us::eng"));
    EXPECT_TRUE(spinUntil(
        [&] { return model.runtimeState() == RuntimeState::Keeping && model.currentID() == "xkb:us::eng"; }, 10000))
        << qPrintable(model.runtimeState().raw());
    EXPECT_EQ(ConfigStore::loadOrDefault().sourceID, QStringLiteral("xkb:us::eng"));
    EXPECT_FALSE(model.warning()) << qPrintable(model.warning().value_or(QString()));
    // A layout shows its label, one flat ink that takes the panel's colour.
    EXPECT_TRUE(TrayImage::isTemplate(model.currentSourceIcon()));
    QThreadPool::globalInstance()->waitForDone();
}

} // namespace
