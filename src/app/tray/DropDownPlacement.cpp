#include "app/tray/DropDownPlacement.h"

#include <algorithm>

namespace DropDownPlacement {

namespace {

// The start of a span of `length` near `wanted`, inside [low, end); the low
// end wins when the span does not fit at all.
int clamped(int wanted, int length, int low, int end)
{
    return std::max(low, std::min(wanted, end - length));
}

} // namespace

QPoint topLeft(const QRect &icon, const QSize &panel, const QRect &available)
{
    const bool below = 2 * icon.y() + icon.height() < 2 * available.y() + available.height();
    const int y = below ? icon.y() + icon.height() + gap : icon.y() - gap - panel.height();
    const int x = icon.x() + (icon.width() - panel.width()) / 2;
    return {clamped(x, panel.width(), available.x(), available.x() + available.width()),
            clamped(y, panel.height(), available.y(), available.y() + available.height())};
}

} // namespace DropDownPlacement
