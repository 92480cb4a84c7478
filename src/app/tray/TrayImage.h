#pragma once

#include <QColor>
#include <QIcon>
#include <QImage>

#include <optional>

// The status item's image: the current source's icon fitted to the menu bar,
// or a drawn keyboard when a source has none. Images are plain QImage values
// until a view draws them; whether one is a template (a single ink that may
// take the panel's foreground colour) travels with the image itself.
namespace TrayImage {

// The box every image is fitted into, in device-independent pixels.
inline constexpr qreal boxWidth = 22;
inline constexpr qreal boxHeight = 18;

// A keyboard frame with three keys, as a template, at the screens' pixel ratio.
QImage image();
// The icon scaled to fill the box, aspect kept; a template when it already
// was one or is one flat grey on transparency. Unusable input gives image().
QImage inputSourceImage(const std::optional<QImage> &icon);

bool isTemplate(const QImage &image);
QImage markedAsTemplate(QImage image);
// What to paint: a template in `foreground`, anything else in its own colours.
QImage drawn(const QImage &image, const QColor &foreground);
// For a tray: drawn() at the image's own pixel ratio, marked as a mask when it is a template.
QIcon icon(const QImage &image, const QColor &foreground);

} // namespace TrayImage
