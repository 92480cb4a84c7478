// Menu-bar images from generated icons: their size, and which may take the panel's colour.
#include "app/tray/TrayImage.h"

#include "support/ParamName.h"

#include <QPainter>

#include <gtest/gtest.h>

namespace {

// An icon of `size` on `background`, with `fills` painted as rectangles of their colours.
QImage icon(QSize size, const QColor &background, const QList<std::pair<QRect, QColor>> &fills = {})
{
    QImage image(size, QImage::Format_ARGB32);
    image.fill(background);
    QPainter painter(&image);
    for (const auto &[rect, colour] : fills)
        painter.fillRect(rect, colour);
    painter.end();
    return image;
}

struct IconCase
{
    std::string name;
    std::optional<QImage> icon;
    QSizeF size; // empty: the default image
    bool isTemplate = false;
};

using TrayImageTest = testing::TestWithParam<IconCase>;

TEST_P(TrayImageTest, FitsTheBoxAndTemplatesOnlyOneFlatGreyOnTransparency)
{
    const QImage result = TrayImage::inputSourceImage(GetParam().icon);
    if (GetParam().size.isEmpty()) {
        EXPECT_EQ(result.cacheKey(), TrayImage::image().cacheKey());
        return;
    }
    EXPECT_EQ(result.deviceIndependentSize(), GetParam().size);
    EXPECT_EQ(TrayImage::isTemplate(result), GetParam().isTemplate);
}

const QSize box(44, 36);
const QSizeF fitted(22, 18);
const QRect left(4, 4, 16, 28);
const QRect right(24, 4, 16, 28);

INSTANTIATE_TEST_SUITE_P(
    Icons, TrayImageTest,
    testing::ValuesIn(std::vector<IconCase>{
        {"Absent", std::nullopt, {}},
        {"WideShrinks", icon({44, 22}, Qt::red), {22, 11}},
        {"BlackGlyphOnTransparency", icon(box, Qt::transparent, {{left, Qt::black}}), fitted, true},
        {"ColouredFlag", icon(box, Qt::transparent, {{left, QColor(0, 56, 168)}, {right, QColor(255, 215, 0)}}),
         fitted},
        {"GreysWithinTolerance", icon(box, Qt::transparent, {{left, QColor(64, 64, 64)}, {right, QColor(94, 94, 94)}}),
         fitted, true},
        {"OpaqueGreySquare", icon(box, Qt::gray), fitted},
    }),
    ParamName());

TEST(MenuBarIconDrawingTest, DefaultIsATemplateAndTemplatesTakeTheForeground)
{
    EXPECT_TRUE(TrayImage::isTemplate(TrayImage::image()));
    const QImage mark = TrayImage::inputSourceImage(icon(box, Qt::transparent, {{left, Qt::black}}));
    EXPECT_EQ(TrayImage::drawn(mark, Qt::white).pixelColor(5, 9), QColor(Qt::white));
    const QImage flag = TrayImage::inputSourceImage(icon(box, Qt::red));
    EXPECT_EQ(TrayImage::drawn(flag, Qt::white).pixelColor(5, 9), QColor(Qt::red));
}

} // namespace
