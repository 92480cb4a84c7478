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

INSTANTIATE_TEST_SUITE_P(
    Catalog, CatalogFilterTest,
    testing::Values(
        FilterCase{"EnabledKeyboardSource", [](SourceProperties &) {}, true},
        FilterCase{"Disabled", [](SourceProperties &s) { s.enabled = false; }, false},
        FilterCase{"EnabledMissing", [](SourceProperties &s) { s.enabled = QVariant(); }, false},
        FilterCase{"EnabledAsText", [](SourceProperties &s) { s.enabled = QStringLiteral("true"); }, false},
        FilterCase{"EnabledAsNumber", [](SourceProperties &s) { s.enabled = 1; }, false},
        FilterCase{"NotSelectCapable", [](SourceProperties &s) { s.selectCapable = false; }, false},
        FilterCase{"SelectCapableMissing", [](SourceProperties &s) { s.selectCapable = QVariant(); }, false},
        FilterCase{"PaletteCategory", [](SourceProperties &s) { s.category = QStringLiteral("palette"); }, false},
        FilterCase{"CategoryMissing", [](SourceProperties &s) { s.category = QVariant(); }, false},
        FilterCase{"CategoryNotText", [](SourceProperties &s) { s.category = QStringList{s.category.toString()}; },
                   false},
        FilterCase{"NameMissingStillOffered", [](SourceProperties &s) { s.localizedName = QVariant(); }, true},
        FilterCase{"NoLanguagesStillOffered", [](SourceProperties &s) { s.languages = QVariant(); }, true}),
    ParamName());

// What one offered source looks like as a choice.
struct ChoiceCase
{
    const char *name;
    Edit edit;
    InputChoice expected;
};

class CatalogChoiceTest : public testing::TestWithParam<ChoiceCase>
{
};

TEST_P(CatalogChoiceTest, ReadsIdentifierAndName)
{
    FakeInputSources system;
    system.state->sources = {edited(GetParam().edit)};
    EXPECT_EQ(Catalog::choices(system.port()), QList<InputChoice>{GetParam().expected});
}

INSTANTIATE_TEST_SUITE_P(Catalog, CatalogChoiceTest,
                         testing::Values(ChoiceCase{"Complete",
                                                    [](SourceProperties &) {},
                                                    {QStringLiteral("xkb:us::eng"), QStringLiteral("English (US)")}},
                                         ChoiceCase{"NameMissing",
                                                    [](SourceProperties &s) { s.localizedName = QVariant(); },
                                                    {QStringLiteral("xkb:us::eng"), QString()}},
                                         ChoiceCase{"NameNotText",
                                                    [](SourceProperties &s) { s.localizedName = 7; },
                                                    {QStringLiteral("xkb:us::eng"), QString()}},
                                         ChoiceCase{"IdentifierMissing",
                                                    [](SourceProperties &s) { s.id = QVariant(); },
                                                    {QString(), QStringLiteral("English (US)")}},
                                         ChoiceCase{"IdentifierNotText",
                                                    [](SourceProperties &s) { s.id = QByteArray("xkb:us::eng"); },
                                                    {QString(), QStringLiteral("English (US)")}}),
                         ParamName());

TEST(CatalogTest, ChoicesKeepTheSystemsOrderAndDuplicates)
{
    FakeInputSources system;
    const SourceProperties hangul = FakeInputSources::keyboard(QStringLiteral("hangul"), QStringLiteral("Hangul"));
    const SourceProperties german = FakeInputSources::keyboard(QStringLiteral("xkb:de::deu"), QStringLiteral("German"));
    SourceProperties ink = FakeInputSources::keyboard(QStringLiteral("ink"), QStringLiteral("Ink"));
    ink.category = QStringLiteral("ink");
    system.state->sources = {hangul, ink, german, hangul};
    EXPECT_EQ(Catalog::choices(system.port()),
              (QList<InputChoice>{{QStringLiteral("hangul"), QStringLiteral("Hangul")},
                                  {QStringLiteral("xkb:de::deu"), QStringLiteral("German")},
                                  {QStringLiteral("hangul"), QStringLiteral("Hangul")}}));
}

TEST(CatalogTest, EveryCallAsksTheSystemAgain)
{
    FakeInputSources system;
    system.state->sources = {us()};
    ASSERT_TRUE(Catalog::find(QStringLiteral("xkb:us::eng"), system.port()));
    system.state->sources.clear();
    EXPECT_FALSE(Catalog::find(QStringLiteral("xkb:us::eng"), system.port()));
    EXPECT_TRUE(Catalog::choices(system.port()).isEmpty());
}

TEST(CatalogTest, FindTakesTheFirstSelectableSourceWithExactlyThatIdentifier)
{
    SourceProperties disabled = FakeInputSources::keyboard(QStringLiteral("hangul"), QStringLiteral("Disabled"));
    disabled.enabled = false;
    const SourceProperties other = FakeInputSources::keyboard(QStringLiteral("Hangul"), QStringLiteral("Other case"));
    const SourceProperties first = FakeInputSources::keyboard(QStringLiteral("hangul"), QStringLiteral("First"));
    const SourceProperties second = FakeInputSources::keyboard(QStringLiteral("hangul"), QStringLiteral("Second"));
    // A system that answers a query with more than it was asked for.
    InputSources system = InputSources::none();
    system.matching = [&](const QString &) { return QList<SourceProperties>{disabled, other, first, second}; };

    const std::optional<Source> found = Catalog::find(QStringLiteral("hangul"), system);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->name(), QStringLiteral("First"));
    EXPECT_FALSE(Catalog::find(QStringLiteral("xkb:us::eng"), system));
}

} // namespace
