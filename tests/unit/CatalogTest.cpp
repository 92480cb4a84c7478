#include "core/sources/Catalog.h"

#include "support/FakeInputSources.h"
#include "support/ParamName.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

using Edit = std::function<void(SourceProperties &)>;

SourceProperties us()
{
    return FakeInputSources::keyboard(QStringLiteral("xkb:us::eng"), QStringLiteral("English (US)"),
                                      {QStringLiteral("en")});
}

SourceProperties edited(const Edit &edit)
{
    SourceProperties source = us();
    edit(source);
    return source;
}

// Whether one source with a given oddity is offered, and can be found.
struct FilterCase
{
    const char *name;
    Edit edit;
    bool selectable;
};

class CatalogFilterTest : public testing::TestWithParam<FilterCase>
{
protected:
    FakeInputSources m_system;
};

TEST_P(CatalogFilterTest, DecidesWhetherTheSourceIsOffered)
{
    m_system.state->sources = {edited(GetParam().edit)};
    EXPECT_EQ(Catalog::selectable(m_system.port()).size(), GetParam().selectable ? 1 : 0);
    EXPECT_EQ(Catalog::find(QStringLiteral("xkb:us::eng"), m_system.port()).has_value(), GetParam().selectable);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Catalog, CatalogFilterTest, testing::Values(
    FilterCase{"EnabledKeyboardSource", [](SourceProperties &) {}, true},
    FilterCase{"Disabled", [](SourceProperties &s) { s.enabled = false; }, false},
    FilterCase{"EnabledMissing", [](SourceProperties &s) { s.enabled = QVariant(); }, false},
    FilterCase{"EnabledAsText", [](SourceProperties &s) { s.enabled = QStringLiteral("true"); }, false},
    FilterCase{"NotSelectCapable", [](SourceProperties &s) { s.selectCapable = false; }, false},
    FilterCase{"SelectCapableMissing", [](SourceProperties &s) { s.selectCapable = QVariant(); }, false},
    FilterCase{"PaletteCategory", [](SourceProperties &s) { s.category = QStringLiteral("palette"); }, false},
    FilterCase{"CategoryNotText", [](SourceProperties &s) { s.category = QStringList{s.category.toString()}; }, false},
    FilterCase{"NameMissingStillOffered", [](SourceProperties &s) { s.localizedName = QVariant(); }, true},
    FilterCase{"NoLanguagesStillOffered", [](SourceProperties &s) { s.languages = QVariant(); }, true}),
    ParamName());
// clang-format on

// What one offered source looks like as a choice.
struct ChoiceCase
{
    const char *name;
    Edit edit;
    InputChoice expected;
};

using CatalogChoiceTest = testing::TestWithParam<ChoiceCase>;

TEST_P(CatalogChoiceTest, ReadsIdentifierAndName)
{
    FakeInputSources system;
    system.state->sources = {edited(GetParam().edit)};
    EXPECT_EQ(Catalog::choices(system.port()), QList<InputChoice>{GetParam().expected});
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Catalog, CatalogChoiceTest, testing::Values(
    ChoiceCase{"Complete", [](SourceProperties &) {}, {"xkb:us::eng", "English (US)"}},
    ChoiceCase{"NameNotText", [](SourceProperties &s) { s.localizedName = 7; }, {"xkb:us::eng", QString()}},
    ChoiceCase{"IdentifierNotText", [](SourceProperties &s) { s.id = QByteArray("xkb:us::eng"); }, {QString(), "English (US)"}}),
    ParamName());
// clang-format on

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
