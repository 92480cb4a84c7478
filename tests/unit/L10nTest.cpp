#include "core/config/L10n.h"

#include <gtest/gtest.h>

namespace {

TEST(L10nTest, KeepsOnlyTheFiveCodesExactly)
{
    for (const auto &language : L10n::supported())
        EXPECT_EQ(L10n::normalized(QString(language.code)), QString(language.code));
    for (const char *other : {"fr", "", "EN", "zh-hans", "zh-CN"})
        EXPECT_EQ(L10n::normalized(QString(other)), std::nullopt) << other;
    EXPECT_EQ(L10n::normalized(std::nullopt), std::nullopt);
}

TEST(L10nTest, OverrideAppliesToTheNextLookupAndMissingKeysShowThemselves)
{
    L10n::setLanguageCode(QStringLiteral("en"));
    const QString english = L10n::text("cli.usage.header");
    L10n::setLanguageCode(QStringLiteral("ja"));
    EXPECT_NE(L10n::text("cli.usage.header"), english);
    EXPECT_EQ(L10n::text("no.such.key"), QStringLiteral("no.such.key"));
    L10n::setLanguageCode(std::nullopt);
    EXPECT_EQ(L10n::languageCode(), std::nullopt);
}

TEST(L10nTest, PicksTheFirstPreferenceWeShip)
{
    using Row = std::pair<QStringList, const char *>;
    for (const auto &[preferences, expected] :
         {Row{{"fr-FR", "ja-JP"}, "ja"}, Row{{"fr-FR"}, "en"}, Row{{}, "en"}, Row{{"en-GB", "ko"}, "en"},
          Row{{"ja_JP.UTF-8"}, "ja"}, Row{{"zh-CN"}, "zh-Hans"}, Row{{"zh"}, "zh-Hans"}, Row{{"zh_TW"}, "zh-Hant"},
          Row{{"zh-HK"}, "zh-Hant"}, Row{{"zh-Hant-CN"}, "zh-Hant"}, Row{{"zh-Hans-SG"}, "zh-Hans"},
          Row{{"??", "", "C", "ko"}, "ko"}})
        EXPECT_EQ(L10n::match(preferences), QLatin1String(expected)) << qPrintable(preferences.join(' '));
}

} // namespace
