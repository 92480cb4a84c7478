#include "app/ui/controls/QuietButton.h"

#include "app/ui/look/Symbols.h"
#include "app/ui/look/Theme.h"

#include <QPainter>
#include <QPainterPath>

QuietButton::QuietButton(const QString &text, const QString &symbol, QWidget *parent)
    : HoverButton(parent)
    , m_symbol(symbol)
{
    setText(text);
    setFont(Theme::font(fontPoints, QFont::Medium));
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize QuietButton::sizeHint() const
{
    int width = 2 * padding + fontMetrics().horizontalAdvance(text());
    if (!m_symbol.isEmpty())
        width += qRound(Symbols::boxFor(fontPoints)) + symbolSpacing;
    return {width, qMax(buttonHeight, fontMetrics().height() + 4)};
}

void QuietButton::paintEvent(QPaintEvent *)
{
    const Theme theme = Theme::of(this);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (!isEnabled())
        painter.setOpacity(disabledOpacity);
    const qreal fill = fillOpacity(0.12, 0.06);
    if (fill > 0) {
        QPainterPath path;
        path.addRoundedRect(QRectF(rect()), 6, 6);
        painter.fillPath(path, theme.primaryAt(fill));
    }
    const QColor ink = isHovered() && isEnabled() ? theme.primary : theme.secondary;
    int x = padding;
    if (!m_symbol.isEmpty()) {
        const qreal box = Symbols::boxFor(fontPoints);
        painter.drawPixmap(QPointF(x, (height() - box) / 2),
                           Symbols::pixmap(m_symbol, box, ink, devicePixelRatioF(), Symbols::Weight::medium));
        x += qRound(box) + symbolSpacing;
    }
    painter.setPen(ink);
    painter.drawText(QRect(x, 0, width() - x - padding, height()), Qt::AlignVCenter | Qt::AlignLeading, text());
}
