#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

// Where a drop-down panel goes next to its tray icon: below an icon in the
// upper half of the usable area (a top bar), above one in the lower half (a
// bottom panel), centred on the icon and kept inside the usable area.
namespace DropDownPlacement {

// Between the icon and the panel.
inline constexpr int gap = 4;

// The panel's top-left corner; `available` is the screen's usable area.
QPoint topLeft(const QRect &icon, const QSize &panel, const QRect &available);

} // namespace DropDownPlacement
