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
        {[](SourceProperties &s) { s.enabled = QStringLiteral("true"); }, std::nullopt},
        {[](SourceProperties &s) { s.selectCapable = false; }, std::nullopt},
        {[](SourceProperties &s) { s.selectCapable = QVariant(); }, std::nullopt},
        {[](SourceProperties &s) { s.category = QStringLiteral("palette"); }, std::nullopt},
        {[](SourceProperties &s) { s.category = QStringList{s.category.toString()}; }, std::nullopt},
        {[](SourceProperties &s) { s.languages = QVariant(); }, us},
        {[](SourceProperties &s) { s.localizedName = 7; }, InputChoice{us.id, QString()}},
        {[](SourceProperties &s) { s.id = QByteArray("xkb:us::eng"); }, InputChoice{QString(), us.name}},
    };
    for (size_t row = 0; row < std::size(rows); ++row) {
        const auto &[edit, choice] = rows[row];
        FakeInputSources system;
        SourceProperties source = FakeInputSources::keyboard(us.id, us.name, {"en"});
        edit(source);
        system.state->sources = {source};
        EXPECT_EQ(Catalog::choices(system.port()), choice ? QList{*choice} : QList<InputChoice>()) << "row " << row;
        EXPECT_EQ(Catalog::find(us.id, system.port()).has_value(), choice && !choice->id.isEmpty()) << "row " << row;
    }
}

// Each call asks the system again, keeps its order and duplicates, and finds only exact, selectable matches.
TEST(CatalogTest, ChoicesAndFindFollowTheSystem)
{
    FakeInputSources system;
    const auto source = [](const char *id, const char *name) { return FakeInputSources::keyboard(id, name); };
    SourceProperties ink = source("ink", "Ink");
    ink.category = QStringLiteral("ink");
    system.state->sources = {source("hangul", "Hangul"), ink, source("xkb:de::deu", "German"),
                             source("hangul", "Hangul")};
    EXPECT_EQ(Catalog::choices(system.port()),
              (QList<InputChoice>{{"hangul", "Hangul"}, {"xkb:de::deu", "German"}, {"hangul", "Hangul"}}));
    system.state->sources.clear();
    EXPECT_TRUE(Catalog::choices(system.port()).isEmpty());

    SourceProperties disabled = source("hangul", "Disabled");
    disabled.enabled = false;
    // A system that answers a query with more than it was asked for.
    InputSources asked = InputSources::none();
    asked.matching = [&](const QString &) {
        return QList<SourceProperties>{disabled, source("Hangul", "Other case"), source("hangul", "First"),
                                       source("hangul", "Second")};
    };
    const std::optional<Source> found = Catalog::find("hangul", asked);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->name(), "First");
    EXPECT_FALSE(Catalog::find("xkb:us::eng", asked));
}

} // namespace
