#include "core/sources/Source.h"

#include "support/FakeInputSources.h"

#include <gtest/gtest.h>

namespace {

TEST(SourceTest, ClassifiesByTheFirstLanguage)
{
    const auto list = [](std::initializer_list<const char *> codes) {
        QStringList result;
        for (const char *code : codes)
            result << code;
        return QVariant(result);
    };
    // As IBus reports its engines, with regions and scripts; codes that merely begin like a CJKV one; odd values.
    const std::pair<QVariant, bool> rows[] = {
        {list({"ko"}), true},          {list({"ja"}), true},          {list({"zh"}), true},
        {list({"en"}), false},         {list({"vi_VN.UTF-8"}), true}, {list({"ko-KR"}), true},
        {list({"zh-Hant"}), true},     {list({"kok"}), false},        {list({"jv"}), false},
        {list({"en", "ja"}), false},   {list({"", "ko"}), false},     {QVariant(), false},
        {list({"JA"}), false},         {QVariant("ja"), false},       {QVariantList{"ko"}, true},
        {QVariantList{"ko", 1}, false}};
    for (const auto &[languages, cjkv] : rows) {
        SourceProperties properties = FakeInputSources::keyboard("id", "name");
        properties.languages = languages;
        EXPECT_EQ(Source(properties).isCJKV(), cjkv) << languages.toStringList().join(',').toStdString();
    }
}

} // namespace
