#include "core/config/L10n.h"

#include "support/ParamName.h"

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

struct MatchCase
{
    const char *name;
    QStringList preferences;
    const char *expected;
};

using L10nMatchTest = testing::TestWithParam<MatchCase>;

TEST_P(L10nMatchTest, PicksTheFirstPreferenceWeShip)
{
    EXPECT_EQ(L10n::match(GetParam().preferences), QLatin1String(GetParam().expected));
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(L10n, L10nMatchTest, testing::Values(
    MatchCase{"FrenchThenJapanese", {"fr-FR", "ja-JP"}, "ja"}, MatchCase{"FrenchAlone", {"fr-FR"}, "en"},
    MatchCase{"Nothing", {}, "en"}, MatchCase{"BritishEnglish", {"en-GB", "ko"}, "en"},
    MatchCase{"PosixLocaleName", {"ja_JP.UTF-8"}, "ja"}, MatchCase{"ChinaIsSimplified", {"zh-CN"}, "zh-Hans"},
    MatchCase{"BareChineseIsSimplified", {"zh"}, "zh-Hans"}, MatchCase{"TaiwanIsTraditional", {"zh_TW"}, "zh-Hant"},
    MatchCase{"HongKongIsTraditional", {"zh-HK"}, "zh-Hant"}, MatchCase{"ExplicitScriptWins", {"zh-Hant-CN"}, "zh-Hant"},
    MatchCase{"SimplifiedScriptInSingapore", {"zh-Hans-SG"}, "zh-Hans"},
    MatchCase{"SkipsGarbage", {"??", "", "C", "ko"}, "ko"}),
    ParamName());
// clang-format on

} // namespace
