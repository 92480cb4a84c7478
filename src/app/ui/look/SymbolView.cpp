#include "app/ui/look/SymbolView.h"

#include "app/ui/look/AccessibleComponent.h"
#include "app/ui/look/Theme.h"

#include <QPainter>

SymbolView::SymbolView(const QString &symbol, qreal points, Tint tint, Symbols::Weight weight, QWidget *parent)
    : QWidget(parent)
    , m_symbol(symbol)
    , m_points(points)
    , m_tint(std::move(tint))
    , m_weight(weight)
{
    const int side = qCeil(points);
    setFixedSize(side, side);
    AccessibleComponent::hide(this);
}

void SymbolView::setSymbol(const QString &symbol)
{
    m_symbol = symbol;
    update();
}

void SymbolView::setTint(Tint tint)
{
    m_tint = std::move(tint);
    update();
}

void SymbolView::setBox(QSize box)
{
    setFixedSize(box);
}

void SymbolView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const Theme theme = Theme::of(this);
    const QPixmap glyph = Symbols::pixmap(m_symbol, m_points, m_tint(theme), devicePixelRatioF(), m_weight);
    const QSizeF size = glyph.deviceIndependentSize();
    painter.drawPixmap(QPointF((width() - size.width()) / 2, (height() - size.height()) / 2), glyph);
}
