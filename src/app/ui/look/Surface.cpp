#include "app/ui/look/Surface.h"

#include "app/ui/look/Theme.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

Surface::Surface(qreal radius, std::optional<QColor> tint, QWidget *parent)
    : QWidget(parent)
    , m_radius(radius)
    , m_tint(tint)
{}

void Surface::setTint(std::optional<QColor> tint)
{
    m_tint = tint;
    update();
}

void Surface::paintEvent(QPaintEvent *)
{
    const Theme theme = Theme::of(this);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    // The border is stroked inside the edge: half a pixel in.
    const QRectF box = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    QPainterPath path;
    path.addRoundedRect(box, m_radius, m_radius);
    painter.fillPath(path, theme.surfaceFill());
    if (m_tint) {
        QLinearGradient wash(box.topLeft(), box.bottomRight());
        const qreal start =
            theme.preferences.reduceTransparency ? Opacity::surfaceTintStartSolid : Opacity::surfaceTintStart;
        wash.setColorAt(0, Theme::withOpacity(*m_tint, start));
        wash.setColorAt(1, Theme::withOpacity(*m_tint, Opacity::surfaceTintEnd));
        painter.fillPath(path, wash);
    }
    painter.setPen(QPen(theme.surfaceBorder(), 1));
    painter.drawPath(path);
}
