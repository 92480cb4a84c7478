#include "app/ui/rows/SourceListSurface.h"

#include "app/ui/look/Theme.h"

#include <QPainter>
#include <QPainterPath>

SourceListSurface::SourceListSurface(bool usesGlass, QWidget *parent)
    : QWidget(parent)
    , m_usesGlass(usesGlass)
{}

void SourceListSurface::setUsesGlass(bool usesGlass)
{
    m_usesGlass = usesGlass;
    update();
}

void SourceListSurface::paintEvent(QPaintEvent *)
{
    const Theme theme = Theme::of(this);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath path;
    path.addRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    QColor fill = theme.surfaceFill();
    // Glass is a touch brighter than a plain surface, where transparency is allowed.
    if (m_usesGlass && !theme.preferences.reduceTransparency)
        fill = theme.primaryAt(theme.dark ? 0.075 : 0.05);
    painter.fillPath(path, fill);
    painter.setPen(QPen(theme.surfaceBorder(), 1));
    painter.drawPath(path);
}
