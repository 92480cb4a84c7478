#include "core/Source.h"

#include "support/FakeInputSources.h"
#include "support/ParamName.h"

#include <QFile>
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
        LanguageCase{"IBusTraditionalChinese", list({"zh_TW"}), true},
        LanguageCase{"IBusChineseWithoutRegion", list({"zh"}), true}, LanguageCase{"IBusEnglish", list({"en"}), false},
        LanguageCase{"IBusGerman", list({"de"}), false},
        // Regions and scripts after the language.
        LanguageCase{"JapaneseWithRegion", list({"ja_JP"}), true},
        LanguageCase{"KoreanWithRegion", list({"ko_KR"}), true},
        LanguageCase{"VietnameseWithRegionAndCodeset", list({"vi_VN.UTF-8"}), true},
        LanguageCase{"KoreanAsLanguageTag", list({"ko-KR"}), true},
        LanguageCase{"ChineseWithScript", list({"zh-Hant"}), true},
        // Languages whose codes merely begin like a CJKV one.
        LanguageCase{"KonkaniIsNotKorean", list({"kok"}), false},
        LanguageCase{"JavaneseIsNotJapanese", list({"jv"}), false},
        LanguageCase{"JavaneseThreeLettersIsNotJapanese", list({"jav"}), false},
        LanguageCase{"VendaIsNotVietnamese", list({"ve"}), false},
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

enum class File { None, Png, Svg, Garbage, Missing, Remote, PathAsText };
enum class Reference { None, Image, ThemeName, NotAnImage };
enum class Expect { NoIcon, FromFile, FromReference };

struct IconCase
{
    const char *name;
    File file;
    Reference reference;
    Expect expected;
};

class SourceIconTest : public testing::TestWithParam<IconCase>
{
protected:
    QVariant iconURL(File file) const
    {
        switch (file) {
        case File::None: return {};
        case File::Png: {
            QImage image(16, 12, QImage::Format_ARGB32);
            image.fill(Qt::blue);
            image.save(path("icon.png"));
            return QUrl::fromLocalFile(path("icon.png"));
        }
        case File::Svg:
            write("icon.svg", "<svg xmlns='http://www.w3.org/2000/svg' width='20' height='10'>"
                              "<rect width='20' height='10' fill='black'/></svg>");
            return QUrl::fromLocalFile(path("icon.svg"));
        case File::Garbage: write("icon.png", "not an image"); return QUrl::fromLocalFile(path("icon.png"));
        case File::Missing: return QUrl::fromLocalFile(path("missing.png"));
        case File::Remote: return QUrl(QStringLiteral("https://example.org/icon.png"));
        case File::PathAsText: iconURL(File::Png); return path("icon.png");
        }
        return {};
    }

    static QVariant iconReference(Reference reference)
    {
        switch (reference) {
        case Reference::None: return {};
        case Reference::Image: return referenceImage();
        case Reference::ThemeName: return QStringLiteral("ibus-keyboard");
        case Reference::NotAnImage: return 42;
        }
        return {};
    }

    static QImage referenceImage()
    {
        QImage image(5, 5, QImage::Format_ARGB32);
        image.fill(Qt::red);
        return image;
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
    properties.iconURL = iconURL(GetParam().file);
    properties.iconReference = iconReference(GetParam().reference);
    const std::optional<QImage> icon = Source(properties).icon();

    switch (GetParam().expected) {
    case Expect::NoIcon: EXPECT_FALSE(icon.has_value()); break;
    case Expect::FromReference:
        ASSERT_TRUE(icon.has_value());
        EXPECT_EQ(*icon, referenceImage());
        break;
    case Expect::FromFile:
        ASSERT_TRUE(icon.has_value());
        // A drawing is made large enough for a dense screen, keeping its proportions.
        EXPECT_EQ(icon->size(), GetParam().file == File::Svg ? QSize(64, 32) : QSize(16, 12));
        EXPECT_EQ(icon->pixelColor(0, 0), GetParam().file == File::Svg ? QColor(Qt::black) : QColor(Qt::blue));
        break;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Source, SourceIconTest,
    testing::Values(IconCase{"PngFile", File::Png, Reference::Image, Expect::FromFile},
                    IconCase{"SvgFile", File::Svg, Reference::None, Expect::FromFile},
                    IconCase{"UnreadableFileFallsBackToReference", File::Garbage, Reference::Image,
                             Expect::FromReference},
                    IconCase{"MissingFileFallsBackToReference", File::Missing, Reference::Image, Expect::FromReference},
                    IconCase{"RemoteURLIsNotLoaded", File::Remote, Reference::Image, Expect::FromReference},
                    IconCase{"PathAsTextIsNotAURL", File::PathAsText, Reference::None, Expect::NoIcon},
                    IconCase{"ReferenceAlone", File::None, Reference::Image, Expect::FromReference},
                    IconCase{"ReferenceOfAnotherType", File::None, Reference::NotAnImage, Expect::NoIcon},
                    // Themed icons need a GUI application, which these tests do not have.
                    IconCase{"ThemeNameWithoutGuiApplication", File::None, Reference::ThemeName, Expect::NoIcon},
                    IconCase{"UnreadableFileAndNoReference", File::Garbage, Reference::None, Expect::NoIcon},
                    IconCase{"Nothing", File::None, Reference::None, Expect::NoIcon}),
    ParamName());

} // namespace
