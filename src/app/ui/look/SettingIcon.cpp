#include "app/ui/look/SettingIcon.h"

#include "app/ui/look/AccessibleComponent.h"
#include "app/ui/look/Symbols.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

SettingIcon::SettingIcon(const QString &symbol, const QColor &color, QWidget *parent)
    : QWidget(parent)
    , m_symbol(symbol)
    , m_color(color)
{
    setFixedSize(side, side);
    AccessibleComponent::hide(this);
}

void SettingIcon::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath path;
    path.addRoundedRect(QRectF(rect()), radius, radius);
    // Lit from above: the colour mixed with 15 % white at the top.
    const QColor top = QColor::fromRgbF(m_color.redF() * 0.85f + 0.15f, m_color.greenF() * 0.85f + 0.15f,
                                        m_color.blueF() * 0.85f + 0.15f);
    QLinearGradient gradient(0, 0, 0, side);
    gradient.setColorAt(0, top);
    gradient.setColorAt(1, m_color);
    painter.fillPath(path, gradient);
    const qreal box = Symbols::boxFor(symbolPoints);
    painter.drawPixmap(QPointF((side - box) / 2, (side - box) / 2),
                       Symbols::pixmap(m_symbol, box, Qt::white, devicePixelRatioF(), Symbols::Weight::semibold));
}
