#include "app/ui/controls/HoverButton.h"

HoverButton::HoverButton(QWidget *parent)
    : QAbstractButton(parent)
{
    setAttribute(Qt::WA_Hover);
    setCursor(Qt::ArrowCursor);
    setFocusPolicy(Qt::TabFocus);
}

qreal HoverButton::fillOpacity(qreal pressed, qreal hovered) const
{
    if (!isEnabled())
        return 0;
    if (isDown())
        return pressed;
    return m_hovered ? hovered : 0;
}

void HoverButton::enterEvent(QEnterEvent *event)
{
    m_hovered = true;
    update();
    QAbstractButton::enterEvent(event);
}

void HoverButton::leaveEvent(QEvent *event)
{
    m_hovered = false;
    update();
    QAbstractButton::leaveEvent(event);
}
