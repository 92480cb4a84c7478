#pragma once

#include <QImage>
#include <QVariant>

#include <optional>

// Turns the icon properties of an input source into an image.
namespace SourceIcon {

// The image in a local file (PNG, SVG or any format Qt reads); none when the
// value is not a file URL or the file gives no image.
std::optional<QImage> fromFile(const QVariant &url);

// An image the system drew, or the themed icon of that name. Themed icons need
// a QGuiApplication; without one there is none.
std::optional<QImage> fromReference(const QVariant &reference);

// The label drawn as one flat ink on transparency, as desktops show sources
// that have no picture of their own. Needs a QGuiApplication for its fonts.
std::optional<QImage> fromSymbol(const QVariant &symbol);

} // namespace SourceIcon
