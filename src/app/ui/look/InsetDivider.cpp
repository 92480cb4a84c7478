#include "app/ui/look/InsetDivider.h"

#include "app/ui/look/AccessibleComponent.h"
#include "app/ui/look/Theme.h"

#include <QPainter>
#include <QStyle>

InsetDivider::InsetDivider(int leading, QWidget *parent)
    : QWidget(parent)
    , m_leading(leading)
{
    setFixedHeight(1);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    AccessibleComponent::hide(this);
}

void InsetDivider::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const QRect line =
        QStyle::visualRect(layoutDirection(), rect(), QRect(m_leading, 0, width() - m_leading - trailing, 1));
    painter.fillRect(line, Theme::of(this).primaryAt(Opacity::divider));
}
