#include "app/tray/DropDownPlacement.h"

#include <algorithm>

namespace DropDownPlacement {

namespace {

// The start of a span of `length` near `wanted`, inside [low, high]; the low
// end wins when the span does not fit at all.
int clamped(int wanted, int length, int low, int high)
{
    return std::max(low, std::min(wanted, high - length + 1));
}

} // namespace

QPoint topLeft(const QRect &icon, const QSize &panel, const QRect &available)
{
    const bool below = icon.center().y() < available.center().y();
    const int y = below ? icon.bottom() + 1 + gap : icon.top() - gap - panel.height();
    const int x = icon.center().x() - panel.width() / 2;
    return {clamped(x, panel.width(), available.left(), available.right()),
            clamped(y, panel.height(), available.top(), available.bottom())};
}

} // namespace DropDownPlacement
