#include "core/sources/Source.h"

#include "support/FakeInputSources.h"
#include "support/Process.h"

#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <QUrl>

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

// The file first, then the reference; an icon is expected by its size and its top-left colour.
TEST(SourceTest, IconTakesTheFileThenTheReference)
{
    QTemporaryDir directory;
    const auto path = [&](const char *name) { return directory.filePath(name); };
    QImage png(16, 12, QImage::Format_ARGB32);
    png.fill(Qt::blue);
    ASSERT_TRUE(png.save(path("icon.png")));
    ASSERT_TRUE(writeFile(path("icon.svg"), "<svg xmlns='http://www.w3.org/2000/svg' width='20' height='10'>"
                                            "<rect width='20' height='10'/></svg>"));
    ASSERT_TRUE(writeFile(path("garbage.png"), "not an image"));
    QImage red(5, 5, QImage::Format_ARGB32);
    red.fill(Qt::red);
    const auto file = [&](const char *name) { return QVariant(QUrl::fromLocalFile(path(name))); };
    using Icon = std::optional<std::pair<QSize, QColor>>;
    const Icon fromReference = std::pair{QSize(5, 5), QColor(Qt::red)};
    // clang-format off
    const std::tuple<QVariant, QVariant, Icon> rows[] = {
        {file("icon.png"), red, std::pair{QSize(16, 12), QColor(Qt::blue)}},
        // A drawing is made large enough for a dense screen, keeping its proportions.
        {file("icon.svg"), {}, std::pair{QSize(64, 32), QColor(Qt::black)}},
        {file("garbage.png"), red, fromReference}, {file("missing.png"), red, fromReference},
        {QUrl("https://example.org/icon.png"), red, fromReference}, // never loaded
        {path("icon.png"), {}, std::nullopt},                        // a path is no address
        {file("garbage.png"), {}, std::nullopt}};
    // clang-format on
    for (size_t row = 0; row < std::size(rows); ++row) {
        const auto &[url, reference, expected] = rows[row];
        SourceProperties properties = FakeInputSources::keyboard("id", "name");
        properties.iconURL = url;
        properties.iconReference = reference;
        const std::optional<QImage> icon = Source(properties).icon();
        ASSERT_EQ(icon.has_value(), expected.has_value()) << "row " << row;
        if (icon) {
            EXPECT_EQ(icon->size(), expected->first) << "row " << row;
            EXPECT_EQ(icon->pixelColor(0, 0), expected->second) << "row " << row;
        }
    }
}

} // namespace
