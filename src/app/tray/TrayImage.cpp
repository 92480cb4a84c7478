#include "app/tray/TrayImage.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <QtMath>

#include <algorithm>
#include <cmath>

namespace TrayImage {
namespace {

const QString templateKey = QStringLiteral("tolvar-template");

// The analysis looks at a fixed small bitmap, whatever the icon's size.
constexpr int analysisWidth = 44;
constexpr int analysisHeight = 36;
constexpr qreal transparentBelow = 0.05;
constexpr qreal inkAbove = 0.1;
constexpr qreal greyTolerance = 0.04;
constexpr qreal toneTolerance = 0.12;

qreal screenPixelRatio()
{
    return qGuiApp ? qGuiApp->devicePixelRatio() : 1.0;
}

// Rectangles given with the origin at the bottom left, as the drawing was designed.
QRectF fromBottom(qreal x, qreal y, qreal width, qreal height)
{
    return {x, boxHeight - y - height, width, height};
}

QImage drawDefault(qreal ratio)
{
    QImage canvas(QSize(qCeil(boxWidth * ratio), qCeil(boxHeight * ratio)), QImage::Format_ARGB32_Premultiplied);
    canvas.setDevicePixelRatio(ratio);
    canvas.fill(Qt::transparent);
    QPainter painter(&canvas);
    painter.setRenderHint(QPainter::Antialiasing);
    // Drawn in white; a template's own colour never shows.
    painter.setPen(QPen(Qt::white, 1.3));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(fromBottom(1, 4, 20, 10), 2, 2);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::white);
    painter.drawRoundedRect(fromBottom(3, 6.4, 4.2, 4.8), 0.9, 0.9);
    painter.drawRoundedRect(fromBottom(8.9, 6.7, 4.2, 5.1), 0.9, 0.9);
    painter.drawRoundedRect(fromBottom(14.8, 6.4, 4.2, 4.8), 0.9, 0.9);
    painter.end();
    return markedAsTemplate(canvas);
}

// One grey tone on a transparent background, which may safely be recoloured.
bool hasSingleInkOnTransparency(const QImage &image)
{
    QImage bitmap(analysisWidth, analysisHeight, QImage::Format_RGBA8888);
    if (bitmap.isNull())
        return false;
    bitmap.fill(Qt::transparent);
    QPainter painter(&bitmap);
    if (!painter.isActive())
        return false;
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(QRectF(0, 0, analysisWidth, analysisHeight), image);
    painter.end();

    bool sawTransparent = false;
    bool sawInk = false;
    qreal darkest = 1;
    qreal brightest = 0;
    for (int y = 0; y < analysisHeight; ++y) {
        for (int x = 0; x < analysisWidth; ++x) {
            const QColor pixel = bitmap.pixelColor(x, y);
            const qreal alpha = pixel.alphaF();
            if (alpha < transparentBelow)
                sawTransparent = true;
            if (alpha <= inkAbove)
                continue;
            const qreal lo = std::min({pixel.redF(), pixel.greenF(), pixel.blueF()});
            const qreal hi = std::max({pixel.redF(), pixel.greenF(), pixel.blueF()});
            if (hi - lo >= greyTolerance)
                return false;
            darkest = std::min(darkest, lo);
            brightest = std::max(brightest, hi);
            if (brightest - darkest > toneTolerance)
                return false;
            sawInk = true;
        }
    }
    return sawInk && sawTransparent;
}

} // namespace

QImage image()
{
    // Made once, and again only when the screens' pixel ratio changes.
    static QImage shared;
    const qreal ratio = screenPixelRatio();
    if (shared.isNull() || !qFuzzyCompare(shared.devicePixelRatio(), ratio))
        shared = drawDefault(ratio);
    return shared;
}

QImage inputSourceImage(const std::optional<QImage> &icon)
{
    if (!icon || icon->isNull())
        return image();
    const QSizeF size = icon->deviceIndependentSize();
    if (!std::isfinite(size.width()) || !std::isfinite(size.height()) || size.width() <= 0 || size.height() <= 0)
        return image();

    // Small icons grow to fill the box as large ones shrink into it.
    const qreal scale = std::min(boxWidth / size.width(), boxHeight / size.height());
    const qreal ratio = screenPixelRatio();
    const QSize pixels(qMax(1, qRound(size.width() * scale * ratio)), qMax(1, qRound(size.height() * scale * ratio)));
    QImage copy = icon->scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    if (copy.isNull())
        return image();
    copy.setDevicePixelRatio(ratio);
    copy.setText(templateKey, QString());
    if (isTemplate(*icon) || hasSingleInkOnTransparency(*icon))
        return markedAsTemplate(copy);
    return copy;
}

bool isTemplate(const QImage &image)
{
    return !image.text(templateKey).isEmpty();
}

QImage markedAsTemplate(QImage image)
{
    image.setText(templateKey, QStringLiteral("1"));
    return image;
}

QImage drawn(const QImage &image, const QColor &foreground)
{
    if (!isTemplate(image))
        return image;
    QImage ink = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&ink);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(QRectF(QPointF(0, 0), ink.deviceIndependentSize()), foreground);
    painter.end();
    return ink;
}

QIcon icon(const QImage &image, const QColor &foreground)
{
    QIcon result(QPixmap::fromImage(drawn(image, foreground)));
    result.setIsMask(isTemplate(image));
    return result;
}

} // namespace TrayImage
