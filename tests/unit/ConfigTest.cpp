#include "core/config/Config.h"

#include <gtest/gtest.h>

namespace {

TEST(ConfigTest, WritesSortedPrettyJsonAndReadsItBack)
{
    // clang-format off
    const std::pair<Config, const char *> rows[] = {
        {Config{}, "{\n  \"enabled\" : false,\n  \"onboardingCompleted\" : false\n}"},
        {Config{"xkb:us::eng", true, "ja", true},
         "{\n  \"enabled\" : true,\n  \"language\" : \"ja\",\n  \"onboardingCompleted\" : true,\n"
         "  \"sourceID\" : \"xkb:us::eng\"\n}"},
        {Config{"a/b\"c\\d\ne\x01\u00e9\u6f22", true, std::nullopt, false},
         "{\n  \"enabled\" : true,\n  \"onboardingCompleted\" : false,\n"
         "  \"sourceID\" : \"a\\/b\\\"c\\\\d\\ne\\u0001\xc3\xa9\xe6\xbc\xa2\"\n}"},
        {Config{QString(), false, QString(), false},
         "{\n  \"enabled\" : false,\n  \"language\" : \"\",\n  \"onboardingCompleted\" : false,\n"
         "  \"sourceID\" : \"\"\n}"}};
    // clang-format on
    for (const auto &[config, bytes] : rows) {
        EXPECT_EQ(config.encoded(), QByteArray(bytes));
        const Expected<Config> decoded = Config::decode(config.encoded());
        ASSERT_TRUE(decoded.ok()) << qPrintable(decoded.error().description());
        EXPECT_EQ(decoded.value(), config);
    }
}

TEST(ConfigTest, DecodesOnlyCompleteWellTypedRecords)
{
    // clang-format off
    const std::pair<const char *, Config> accepted[] = {
        {R"({"enabled":true,"onboardingCompleted":false})", {{}, true, {}, false}},
        {R"({"enabled":false,"onboardingCompleted":true,"sourceID":null,"language":null})", {{}, false, {}, true}},
        {R"({"enabled":true,"onboardingCompleted":true,"sourceID":"x","theme":3})", {"x", true, {}, true}},
        {R"({"enabled":true,"onboardingCompleted":true,"sourceID":"a\/b"})", {"a/b", true, {}, true}}};
    // clang-format on
    for (const auto &[json, expected] : accepted) {
        const Expected<Config> decoded = Config::decode(json);
        ASSERT_TRUE(decoded.ok()) << json << qPrintable(decoded.error().description());
        EXPECT_EQ(decoded.value(), expected) << json;
    }
    for (const char *json :
         {R"({"sourceID":"xkb:us::eng"})", R"({"enabled":true})", R"({"enabled":1,"onboardingCompleted":false})",
          R"({"enabled":"true","onboardingCompleted":false})", R"({"enabled":null,"onboardingCompleted":false})",
          R"({"enabled":true,"onboardingCompleted":false,"sourceID":7})",
          R"({"enabled":true,"onboardingCompleted":false,"language":["en"]})",
          R"([{"enabled":true,"onboardingCompleted":false}])", R"({"enabled":true,"onboardingComp)"}) {
        const Expected<Config> decoded = Config::decode(json);
        ASSERT_FALSE(decoded.ok()) << json;
        EXPECT_EQ(decoded.error().domain(), Error::Domain::Decode) << json;
    }
}

} // namespace
