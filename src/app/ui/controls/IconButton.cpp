#include "app/ui/controls/IconButton.h"

#include "app/ui/look/Symbols.h"
#include "app/ui/look/Theme.h"

#include <QPainter>
#include <QPainterPath>

IconButton::IconButton(const QString &symbol, QWidget *parent)
    : HoverButton(parent)
    , m_symbol(symbol)
{
    setFixedSize(side, side);
}

QSize IconButton::sizeHint() const
{
    return {side, side};
}

void IconButton::paintEvent(QPaintEvent *)
{
    const Theme theme = Theme::of(this);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (!isEnabled())
        painter.setOpacity(disabledOpacity);
    const qreal fill = fillOpacity(0.14, 0.08);
    if (fill > 0) {
        QPainterPath path;
        path.addRoundedRect(QRectF(rect()), 7, 7);
        painter.fillPath(path, theme.primaryAt(fill));
    }
    const qreal box = Symbols::boxFor(symbolPoints);
    const QPixmap glyph = Symbols::pixmap(m_symbol, box, theme.secondary, devicePixelRatioF(), Symbols::Weight::medium);
    painter.drawPixmap(QPointF((width() - box) / 2, (height() - box) / 2), glyph);
}
