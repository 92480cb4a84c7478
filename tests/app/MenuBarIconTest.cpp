// Menu-bar images from generated icons: sizes, and which may take the panel's colour.
#include "app/MenuBarIcon.h"

#include "support/ParamName.h"

#include <QPainter>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

QImage filled(QSize size, const QColor &background, const std::function<void(QPainter &)> &draw = {})
{
    QImage image(size, QImage::Format_ARGB32);
    image.fill(background);
    if (draw) {
        QPainter painter(&image);
        draw(painter);
    }
    return image;
}

QImage withRatio(QImage image, qreal ratio)
{
    image.setDevicePixelRatio(ratio);
    return image;
}

struct UnusableCase
{
    std::string name;
    std::optional<QImage> icon;
};

class MenuBarIconUnusableTest : public testing::TestWithParam<UnusableCase>
{};

TEST_P(MenuBarIconUnusableTest, GivesTheDefaultImage)
{
    EXPECT_EQ(MenuBarIcon::inputSourceImage(GetParam().icon).cacheKey(), MenuBarIcon::image().cacheKey());
}

const QImage square = filled({16, 16}, Qt::black);

INSTANTIATE_TEST_SUITE_P(
    Icons, MenuBarIconUnusableTest,
    testing::Values(UnusableCase{"Absent", std::nullopt}, UnusableCase{"Null", QImage()},
                    UnusableCase{"ZeroByZero", QImage(0, 0, QImage::Format_ARGB32)},
                    UnusableCase{"InfiniteSize", withRatio(square, 0)},
                    UnusableCase{"NotANumberSize", withRatio(square, std::numeric_limits<qreal>::quiet_NaN())}),
    ParamName());

struct ScaleCase
{
    std::string name;
    QSize size;
    QSizeF expected;
};

class MenuBarIconScaleTest : public testing::TestWithParam<ScaleCase>
{};

TEST_P(MenuBarIconScaleTest, FillsTheBoxKeepingTheAspect)
{
    const QImage icon = filled(GetParam().size, Qt::red);
    EXPECT_EQ(MenuBarIcon::inputSourceImage(icon).deviceIndependentSize(), GetParam().expected);
    EXPECT_EQ(icon.size(), GetParam().size) << "the given image stays as it was";
}

INSTANTIATE_TEST_SUITE_P(Icons, MenuBarIconScaleTest,
                         testing::Values(ScaleCase{"SmallSquareGrows", {16, 16}, {18, 18}},
                                         ScaleCase{"WideShrinks", {44, 22}, {22, 11}},
                                         ScaleCase{"TallFitsTheHeight", {10, 20}, {9, 18}}),
                         ParamName());

struct TemplateCase
{
    std::string name;
    QImage icon;
    bool isTemplate;
};

class MenuBarIconTemplateTest : public testing::TestWithParam<TemplateCase>
{};

TEST_P(MenuBarIconTemplateTest, OnlyOneFlatGreyOnTransparencyIsATemplate)
{
    EXPECT_EQ(MenuBarIcon::isTemplate(MenuBarIcon::inputSourceImage(GetParam().icon)), GetParam().isTemplate);
}

QImage glyph(const QColor &ink)
{
    return filled({44, 36}, Qt::transparent, [&](QPainter &p) {
        p.setRenderHint(QPainter::Antialiasing);
        p.setBrush(ink);
        p.setPen(Qt::NoPen);
        p.drawEllipse(QRectF(8, 6, 28, 24));
    });
}

// Two greys side by side, `apart` steps of 1/255 from each other.
QImage twoGreys(int apart)
{
    return filled({44, 36}, Qt::transparent, [&](QPainter &p) {
        p.fillRect(4, 4, 16, 28, QColor(64, 64, 64));
        p.fillRect(24, 4, 16, 28, QColor(64 + apart, 64 + apart, 64 + apart));
    });
}

INSTANTIATE_TEST_SUITE_P(
    Icons, MenuBarIconTemplateTest,
    testing::Values(
        TemplateCase{"BlackGlyphOnTransparency", glyph(Qt::black), true},
        TemplateCase{"ColouredFlag", filled({44, 36}, Qt::transparent,
                                            [](QPainter &p) {
                                                p.fillRect(0, 6, 44, 12, QColor(0, 56, 168));
                                                p.fillRect(0, 18, 44, 12, QColor(255, 215, 0));
                                            }),
                     false},
        TemplateCase{"GreysWithinTolerance", twoGreys(30), true},
        TemplateCase{"GreysFurtherApart", twoGreys(32), false},
        TemplateCase{"OpaqueGreySquare", filled({44, 36}, Qt::gray), false},
        TemplateCase{"FullyTransparent", filled({44, 36}, Qt::transparent), false},
        TemplateCase{"AlreadyMarked", MenuBarIcon::markedAsTemplate(filled({44, 36}, Qt::red)), true}),
    ParamName());

TEST(MenuBarIconTest, DefaultIsATemplateOfTheBoxAtTheScreensRatio)
{
    const QImage image = MenuBarIcon::image();
    EXPECT_TRUE(MenuBarIcon::isTemplate(image));
    EXPECT_EQ(image.deviceIndependentSize(), QSizeF(22, 18));
}

TEST(MenuBarIconTest, TemplatesAreDrawnInTheForegroundAndOthersKeepTheirColours)
{
    const QImage mark = MenuBarIcon::inputSourceImage(glyph(Qt::black));
    EXPECT_EQ(MenuBarIcon::drawn(mark, Qt::white).pixelColor(11, 9), QColor(Qt::white));
    const QImage flag = MenuBarIcon::inputSourceImage(filled({44, 36}, Qt::red));
    EXPECT_EQ(MenuBarIcon::drawn(flag, Qt::white).pixelColor(11, 9), QColor(Qt::red));
}

} // namespace
