#include "core/sources/Source.h"

#include "support/FakeInputSources.h"
#include "support/ParamName.h"
#include "support/Process.h"

#include <QFile>
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

enum class URL { File, Remote, PathAsText };

struct IconCase
{
    const char *name;
    URL url;
    const char *file;
    QVariant reference;
    // The image expected by its size and its top-left colour; none for no icon.
    std::optional<std::pair<QSize, QColor>> expected;
};

class SourceIconTest : public testing::TestWithParam<IconCase>
{
protected:
    void SetUp() override
    {
        QImage png(16, 12, QImage::Format_ARGB32);
        png.fill(Qt::blue);
        ASSERT_TRUE(png.save(path("icon.png")));
        ASSERT_TRUE(writeFile(path("icon.svg"), "<svg xmlns='http://www.w3.org/2000/svg' width='20' height='10'>"
                                                "<rect width='20' height='10'/></svg>"));
        ASSERT_TRUE(writeFile(path("garbage.png"), "not an image"));
    }

    QString path(const char *name) const { return m_directory.filePath(QString::fromLatin1(name)); }

    QTemporaryDir m_directory;
};

TEST_P(SourceIconTest, TakesTheFileThenTheReference)
{
    SourceProperties properties = FakeInputSources::keyboard(QStringLiteral("id"), QStringLiteral("name"));
    const IconCase &row = GetParam();
    properties.iconURL = row.url == URL::File     ? QVariant(QUrl::fromLocalFile(path(row.file)))
                         : row.url == URL::Remote ? QVariant(QUrl("https://example.org/icon.png"))
                                                  : QVariant(path(row.file));
    properties.iconReference = GetParam().reference;
    const std::optional<QImage> icon = Source(properties).icon();
    ASSERT_EQ(icon.has_value(), GetParam().expected.has_value());
    if (icon) {
        EXPECT_EQ(icon->size(), GetParam().expected->first);
        EXPECT_EQ(icon->pixelColor(0, 0), GetParam().expected->second);
    }
}

QImage redSquare()
{
    QImage image(5, 5, QImage::Format_ARGB32);
    image.fill(Qt::red);
    return image;
}

const std::pair<QSize, QColor> fromReference{QSize(5, 5), Qt::red};

// clang-format off
INSTANTIATE_TEST_SUITE_P(Source, SourceIconTest, testing::Values(
    IconCase{"PngFile", URL::File, "icon.png", redSquare(), std::pair{QSize(16, 12), QColor(Qt::blue)}},
    // A drawing is made large enough for a dense screen, keeping its proportions.
    IconCase{"SvgFile", URL::File, "icon.svg", {}, std::pair{QSize(64, 32), QColor(Qt::black)}},
    IconCase{"UnreadableFileFallsBackToReference", URL::File, "garbage.png", redSquare(), fromReference},
    IconCase{"MissingFileFallsBackToReference", URL::File, "missing.png", redSquare(), fromReference},
    IconCase{"RemoteURLIsNotLoaded", URL::Remote, nullptr, redSquare(), fromReference},
    IconCase{"PathAsTextIsNotAURL", URL::PathAsText, "icon.png", {}, std::nullopt},
    IconCase{"UnreadableFileAndNoReference", URL::File, "garbage.png", {}, std::nullopt}),
    ParamName());
// clang-format on

} // namespace
