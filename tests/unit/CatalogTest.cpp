#include "core/sources/Catalog.h"

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

} // namespace
