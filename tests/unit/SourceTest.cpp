#include "core/sources/Source.h"

#include "support/FakeInputSources.h"
#include "support/ParamName.h"

#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <QUrl>

#include <gtest/gtest.h>

namespace {

struct LanguageCase
{
    const char *name;
    QVariant languages;
    bool cjkv;
};

class SourceLanguageTest : public testing::TestWithParam<LanguageCase>
{
};

TEST_P(SourceLanguageTest, ClassifiesByTheFirstLanguage)
{
    SourceProperties properties = FakeInputSources::keyboard(QStringLiteral("id"), QStringLiteral("name"));
    properties.languages = GetParam().languages;
    EXPECT_EQ(Source(properties).isCJKV(), GetParam().cjkv);
}

QVariant list(std::initializer_list<const char *> codes)
{
    QStringList result;
    for (const char *code : codes)
        result << QString::fromLatin1(code);
    return result;
}

INSTANTIATE_TEST_SUITE_P(
    Source, SourceLanguageTest,
    testing::Values(
        // As IBus reports its engines.
        LanguageCase{"IBusKorean", list({"ko"}), true}, LanguageCase{"IBusJapanese", list({"ja"}), true},
        LanguageCase{"IBusVietnamese", list({"vi"}), true},
        LanguageCase{"IBusSimplifiedChinese", list({"zh_CN"}), true},
        LanguageCase{"IBusChineseWithoutRegion", list({"zh"}), true}, LanguageCase{"IBusEnglish", list({"en"}), false},
        // Regions and scripts after the language.
        LanguageCase{"VietnameseWithRegionAndCodeset", list({"vi_VN.UTF-8"}), true},
        LanguageCase{"KoreanAsLanguageTag", list({"ko-KR"}), true},
        LanguageCase{"ChineseWithScript", list({"zh-Hant"}), true},
        // Languages whose codes merely begin like a CJKV one.
        LanguageCase{"KonkaniIsNotKorean", list({"kok"}), false},
        LanguageCase{"JavaneseIsNotJapanese", list({"jv"}), false},
        // Only the first entry counts.
        LanguageCase{"EnglishThenJapanese", list({"en", "ja"}), false},
        LanguageCase{"JapaneseThenEnglish", list({"ja", "en"}), true},
        LanguageCase{"EmptyFirstThenKorean", list({"", "ko"}), false},
        // Absent or unusable languages.
        LanguageCase{"NoLanguages", QVariant(), false}, LanguageCase{"EmptyList", QStringList(), false},
        LanguageCase{"CaseMatters", list({"JA"}), false},
        LanguageCase{"TextInsteadOfList", QStringLiteral("ja"), false},
        LanguageCase{"ListOfTextValues", QVariantList{QStringLiteral("ko")}, true},
        LanguageCase{"ListWithANonText", QVariantList{QStringLiteral("ko"), 1}, false}),
    ParamName());

enum class URL { None, File, Remote, PathAsText };

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
        write("icon.svg", "<svg xmlns='http://www.w3.org/2000/svg' width='20' height='10'>"
                          "<rect width='20' height='10' fill='black'/></svg>");
        write("garbage.png", "not an image");
    }

    QVariant iconURL() const
    {
        switch (GetParam().url) {
        case URL::None: return {};
        case URL::File: return QUrl::fromLocalFile(path(GetParam().file));
        case URL::Remote: return QUrl(QStringLiteral("https://example.org/icon.png"));
        case URL::PathAsText: return path(GetParam().file);
        }
        return {};
    }

private:
    QString path(const char *name) const { return m_directory.filePath(QString::fromLatin1(name)); }

    void write(const char *name, const QByteArray &bytes) const
    {
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }

    QTemporaryDir m_directory;
};

TEST_P(SourceIconTest, TakesTheFileThenTheReference)
{
    SourceProperties properties = FakeInputSources::keyboard(QStringLiteral("id"), QStringLiteral("name"));
    properties.iconURL = iconURL();
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

INSTANTIATE_TEST_SUITE_P(
    Source, SourceIconTest,
    testing::Values(
        IconCase{"PngFile", URL::File, "icon.png", redSquare(), std::pair{QSize(16, 12), QColor(Qt::blue)}},
        // A drawing is made large enough for a dense screen, keeping its proportions.
        IconCase{"SvgFile", URL::File, "icon.svg", {}, std::pair{QSize(64, 32), QColor(Qt::black)}},
        IconCase{"UnreadableFileFallsBackToReference", URL::File, "garbage.png", redSquare(), fromReference},
        IconCase{"MissingFileFallsBackToReference", URL::File, "missing.png", redSquare(), fromReference},
        IconCase{"RemoteURLIsNotLoaded", URL::Remote, nullptr, redSquare(), fromReference},
        IconCase{"PathAsTextIsNotAURL", URL::PathAsText, "icon.png", {}, std::nullopt},
        IconCase{"ReferenceOfAnotherType", URL::None, nullptr, 42, std::nullopt},
        // Themed icons need a GUI application, which these tests do not have.
        IconCase{"ThemeNameWithoutGuiApplication", URL::None, nullptr, QStringLiteral("ibus-keyboard"), std::nullopt},
        IconCase{"UnreadableFileAndNoReference", URL::File, "garbage.png", {}, std::nullopt}),
    ParamName());

} // namespace
