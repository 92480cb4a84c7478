#include "core/sources/Catalog.h"
#include "core/sources/Source.h"

#include "support/FakeInputSources.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

// One source with an oddity in its properties: whether it is offered and found, and the choice it makes.
TEST(CatalogTest, OffersOnlyEnabledSelectableKeyboardSources)
{
    using Edit = std::function<void(SourceProperties &)>;
    const InputChoice us{"xkb:us::eng", "English (US)"};
    const std::tuple<Edit, std::optional<InputChoice>> rows[] = {
        {[](SourceProperties &) {}, us},
        {[](SourceProperties &s) { s.enabled = false; }, std::nullopt},
        {[](SourceProperties &s) { s.selectCapable = false; }, std::nullopt},
        {[](SourceProperties &s) { s.category = QStringLiteral("palette"); }, std::nullopt},
        {[](SourceProperties &s) { s.languages = QVariant(); }, us},
        {[](SourceProperties &s) { s.localizedName = 7; }, InputChoice{us.id, QString()}},
        {[](SourceProperties &s) { s.id = QByteArray("xkb:us::eng"); }, InputChoice{QString(), us.name}},
    };
    for (size_t row = 0; row < std::size(rows); ++row) {
        const auto &[edit, choice] = rows[row];
        FakeInputSources system;
        SourceProperties source = FakeInputSources::keyboard(us.id, us.name, {"en"});
        edit(source);
        system.sources = {source};
        EXPECT_EQ(Catalog::choices(system.port()), choice ? QList{*choice} : QList<InputChoice>()) << "row " << row;
        EXPECT_EQ(Catalog::find(us.id, system.port()).has_value(), choice && !choice->id.isEmpty()) << "row " << row;
    }
}

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
