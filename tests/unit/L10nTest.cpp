#include "core/config/L10n.h"

#include "support/ParamName.h"

#include <gtest/gtest.h>

#include <thread>

namespace {

TEST(L10nNormalizeTest, KeepsOnlyTheFiveCodesExactly)
{
    for (const auto &language : L10n::supported())
        EXPECT_EQ(L10n::normalized(QString(language.code)), QString(language.code));
    for (const std::optional<QString> &other :
         {std::optional<QString>(QStringLiteral("fr")), std::optional(QString()),
          std::optional<QString>(QStringLiteral("EN")), std::optional<QString>(QStringLiteral("zh-hans")),
          std::optional<QString>(QStringLiteral("zh-CN")), std::optional<QString>()})
        EXPECT_EQ(L10n::normalized(other), std::nullopt) << qPrintable(other.value_or("(absent)"));
}

struct MatchCase
{
    const char *name;
    QStringList preferences;
    const char *expected;
};

class L10nMatchTest : public testing::TestWithParam<MatchCase>
{
};

TEST_P(L10nMatchTest, PicksTheFirstPreferenceWeShip)
{
    EXPECT_EQ(L10n::match(GetParam().preferences), QLatin1String(GetParam().expected));
}

INSTANTIATE_TEST_SUITE_P(
    L10n, L10nMatchTest,
    testing::Values(
        MatchCase{"FrenchThenJapanese", {QStringLiteral("fr-FR"), QStringLiteral("ja-JP")}, "ja"},
        MatchCase{"FrenchAlone", {QStringLiteral("fr-FR")}, "en"}, MatchCase{"Nothing", {}, "en"},
        MatchCase{"BritishEnglish", {QStringLiteral("en-GB"), QStringLiteral("ko")}, "en"},
        MatchCase{"KoreanRegion", {QStringLiteral("ko-KR")}, "ko"},
        MatchCase{"PosixLocaleName", {QStringLiteral("ja_JP.UTF-8")}, "ja"},
        MatchCase{"ChinaIsSimplified", {QStringLiteral("zh-CN")}, "zh-Hans"},
        MatchCase{"BareChineseIsSimplified", {QStringLiteral("zh")}, "zh-Hans"},
        MatchCase{"TaiwanIsTraditional", {QStringLiteral("zh_TW")}, "zh-Hant"},
        MatchCase{"HongKongIsTraditional", {QStringLiteral("zh-HK")}, "zh-Hant"},
        MatchCase{"ExplicitScriptWins", {QStringLiteral("zh-Hant-CN")}, "zh-Hant"},
        MatchCase{"SimplifiedScriptInSingapore", {QStringLiteral("zh-Hans-SG")}, "zh-Hans"},
        MatchCase{"SkipsGarbage", {QStringLiteral("??"), QString(), QStringLiteral("C"), QStringLiteral("ko")}, "ko"},
        MatchCase{"GermanThenTraditional",
                  {QStringLiteral("de-DE"), QStringLiteral("zh-Hant-TW"), QStringLiteral("en")},
                  "zh-Hant"}),
    ParamName());

class L10nOverrideTest : public testing::Test
{
protected:
    void TearDown() override { L10n::setLanguageCode(std::nullopt); }
};

TEST_F(L10nOverrideTest, OverrideAppliesToTheNextLookup)
{
    L10n::setLanguageCode(QStringLiteral("en"));
    const QString english = L10n::text("cli.usage.header");
    L10n::setLanguageCode(QStringLiteral("ja"));
    EXPECT_EQ(L10n::activeLanguage(), QStringLiteral("ja"));
    const QString japanese = L10n::text("cli.usage.header");
    EXPECT_NE(english, japanese);
    L10n::setLanguageCode(std::nullopt);
    EXPECT_EQ(L10n::languageCode(), std::nullopt);
}

TEST_F(L10nOverrideTest, MissingKeyShowsTheKey)
{
    for (const auto &language : L10n::supported()) {
        L10n::setLanguageCode(language.code);
        EXPECT_EQ(L10n::text("no.such.key"), QStringLiteral("no.such.key"));
    }
}

// Background work reads texts while the main thread switches languages.
TEST_F(L10nOverrideTest, ReadsAndWritesFromSeveralThreads)
{
    std::atomic<bool> stop = false;
    std::thread reader([&] {
        while (!stop)
            EXPECT_FALSE(L10n::text("app.name").isEmpty());
    });
    for (int i = 0; i < 2000; ++i)
        L10n::setLanguageCode(L10n::supported().at(i % 5).code);
    stop = true;
    reader.join();
}

} // namespace
