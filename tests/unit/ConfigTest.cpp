#include "core/config/Config.h"

#include "support/ParamName.h"

#include <gtest/gtest.h>

namespace {

struct EncodeCase
{
    const char *name;
    Config config;
    const char *bytes;
};

using ConfigEncodeTest = testing::TestWithParam<EncodeCase>;

TEST_P(ConfigEncodeTest, WritesSortedPrettyJson)
{
    EXPECT_EQ(GetParam().config.encoded(), QByteArray(GetParam().bytes));
}

TEST_P(ConfigEncodeTest, ReadsBackWhatItWrote)
{
    const Expected<Config> decoded = Config::decode(GetParam().config.encoded());
    ASSERT_TRUE(decoded.ok()) << qPrintable(decoded.error().description());
    EXPECT_EQ(decoded.value(), GetParam().config);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Config, ConfigEncodeTest, testing::Values(
    EncodeCase{"Defaults", Config{}, "{\n  \"enabled\" : false,\n  \"onboardingCompleted\" : false\n}"},
    EncodeCase{"Full", Config{"xkb:us::eng", true, "ja", true}, "{\n  \"enabled\" : true,\n  \"language\" : \"ja\",\n"
               "  \"onboardingCompleted\" : true,\n  \"sourceID\" : \"xkb:us::eng\"\n}"},
    EncodeCase{"SlashesEscaped", Config{"com.apple.keylayout/ABC", false, std::nullopt, false},
               "{\n  \"enabled\" : false,\n  \"onboardingCompleted\" : false,\n  \"sourceID\" : \"com.apple.keylayout\\/ABC\"\n}"},
    EncodeCase{"QuotesControlAndUnicode", Config{"a\"b\\c\nd\x01\u00e9\u6f22", true, std::nullopt, false},
               "{\n  \"enabled\" : true,\n  \"onboardingCompleted\" : false,\n"
               "  \"sourceID\" : \"a\\\"b\\\\c\\nd\\u0001\xc3\xa9\xe6\xbc\xa2\"\n}"},
    EncodeCase{"EmptyStringsKept", Config{QString(), false, QString(), false},
               "{\n  \"enabled\" : false,\n  \"language\" : \"\",\n  \"onboardingCompleted\" : false,\n  \"sourceID\" : \"\"\n}"}),
    ParamName());
// clang-format on

struct DecodeCase
{
    const char *name;
    const char *json;
    std::optional<Config> expected;
};

using ConfigDecodeTest = testing::TestWithParam<DecodeCase>;

TEST_P(ConfigDecodeTest, DecodesOrRefuses)
{
    const Expected<Config> decoded = Config::decode(QByteArray(GetParam().json));
    if (GetParam().expected) {
        ASSERT_TRUE(decoded.ok()) << qPrintable(decoded.error().description());
        EXPECT_EQ(decoded.value(), *GetParam().expected);
    } else {
        ASSERT_FALSE(decoded.ok());
        EXPECT_EQ(decoded.error().domain(), Error::Domain::Decode);
    }
}

const std::nullopt_t refused = std::nullopt;

// clang-format off
INSTANTIATE_TEST_SUITE_P(Config, ConfigDecodeTest, testing::Values(
    DecodeCase{"RequiredOnly", R"({"enabled":true,"onboardingCompleted":false})", Config{std::nullopt, true, std::nullopt, false}},
    DecodeCase{"NullOptionalsAreAbsent", R"({"enabled":false,"onboardingCompleted":true,"sourceID":null,"language":null})",
               Config{std::nullopt, false, std::nullopt, true}},
    DecodeCase{"UnknownKeysIgnored", R"({"enabled":true,"onboardingCompleted":true,"sourceID":"x","theme":3})",
               Config{"x", true, std::nullopt, true}},
    DecodeCase{"EscapedSlashRead", R"({"enabled":true,"onboardingCompleted":true,"sourceID":"a\/b"})", Config{"a/b", true, std::nullopt, true}},
    DecodeCase{"OnlySourceID", R"({"sourceID":"xkb:us::eng"})", refused},
    DecodeCase{"MissingOnboarding", R"({"enabled":true})", refused},
    DecodeCase{"NumberForBoolean", R"({"enabled":1,"onboardingCompleted":false})", refused},
    DecodeCase{"StringForBoolean", R"({"enabled":"true","onboardingCompleted":false})", refused},
    DecodeCase{"NullForBoolean", R"({"enabled":null,"onboardingCompleted":false})", refused},
    DecodeCase{"NumberForSourceID", R"({"enabled":true,"onboardingCompleted":false,"sourceID":7})", refused},
    DecodeCase{"ArrayForLanguage", R"({"enabled":true,"onboardingCompleted":false,"language":["en"]})", refused},
    DecodeCase{"TopLevelArray", R"([{"enabled":true,"onboardingCompleted":false}])", refused},
    DecodeCase{"Truncated", R"({"enabled":true,"onboardingComp)", refused}),
    ParamName());
// clang-format on

} // namespace
