// The live application model against the private session's ibus-daemon
// (engines xkb:us::eng, xkb:de::deu and hangul) and a real configuration file.
#include "app/AppModel.h"
#include "app/MenuBarIcon.h"
#include "core/config/ConfigStore.h"
#include "platform/linux/IBusAddress.h"

#include "support/Spin.h"

#include <QThreadPool>

#include <gtest/gtest.h>

namespace {

TEST(AppModelEndToEndTest, PinsAnEngineAndKeepsIt)
{
    if (IBusAddress::published().isEmpty())
        GTEST_SKIP() << "needs the private IBus of scripts/private-session --ibus";
    const Config stored{QStringLiteral("xkb:us::eng"), true, std::nullopt, true};
    ASSERT_TRUE(ConfigStore::write(stored, ConfigStore::directory()).ok());

    AppModel &model = AppModel::shared();
    model.start();
    QStringList ids;
    for (const InputChoice &choice : model.sources())
        ids << choice.id;
    EXPECT_EQ(ids, (QStringList{"xkb:us::eng", "xkb:de::deu", "hangul"}));
    EXPECT_FALSE(model.showsOnboarding());

    model.choose(QStringLiteral("xkb:de::deu"));
    EXPECT_TRUE(spinUntil([&] { return model.runtimeState() == RuntimeState::Keeping; }, 10000))
        << qPrintable(model.runtimeState().raw());
    EXPECT_EQ(model.currentID(), QStringLiteral("xkb:de::deu"));
    EXPECT_EQ(ConfigStore::loadOrDefault().sourceID, QStringLiteral("xkb:de::deu"));
    EXPECT_FALSE(model.warning()) << qPrintable(model.warning().value_or(QString()));
    // A layout shows its label, one flat ink that takes the panel's colour.
    EXPECT_TRUE(MenuBarIcon::isTemplate(model.currentSourceIcon()));
    QThreadPool::globalInstance()->waitForDone();
}

} // namespace
