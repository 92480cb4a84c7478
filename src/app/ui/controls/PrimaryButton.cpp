#include "app/ui/controls/PrimaryButton.h"

#include "app/ui/look/Theme.h"

#include <QPainter>
#include <QPainterPath>

PrimaryButton::PrimaryButton(const QString &text, QWidget *parent)
    : HoverButton(parent)
{
    setText(text);
    setFont(Theme::font(fontPoints, QFont::DemiBold));
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setFocusPolicy(Qt::StrongFocus);
}

QSize PrimaryButton::sizeHint() const
{
    return {qMax(2 * padding + fontMetrics().horizontalAdvance(text()), 72),
            qMax(buttonHeight, fontMetrics().height() + 8)};
}

void PrimaryButton::paintEvent(QPaintEvent *)
{
    const Theme theme = Theme::of(this);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (!isEnabled())
        painter.setOpacity(disabledOpacity);
    QColor fill = theme.accent;
    if (isDown())
        fill = fill.darker(118);
    else if (isHovered() && isEnabled())
        fill = fill.lighter(108);
    QPainterPath path;
    path.addRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    painter.fillPath(path, fill);
    if (hasFocus()) {
        painter.setPen(QPen(Theme::withOpacity(theme.accent, 0.45), 2));
        painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), radius, radius);
    }
    painter.setPen(Qt::white);
    painter.setFont(font());
    painter.drawText(rect(), Qt::AlignCenter, text());
}
