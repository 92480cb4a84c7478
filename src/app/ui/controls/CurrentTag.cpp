#include "app/ui/controls/CurrentTag.h"

#include "app/ui/look/AccessibleComponent.h"
#include "app/ui/look/Theme.h"
#include "core/l10n/L10n.h"

#include <QPainter>
#include <QPainterPath>

CurrentTag::CurrentTag(QWidget *parent)
    : QWidget(parent)
    , m_text(L10n::text("ui.current-badge"))
{
    setFont(Theme::font(fontPoints, QFont::Medium));
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    AccessibleComponent::hide(this);
}

QSize CurrentTag::sizeHint() const
{
    const QFontMetricsF metrics(font());
    return {qCeil(metrics.horizontalAdvance(m_text) + 2 * horizontalPadding),
            qCeil(metrics.height() + 2 * verticalPadding)};
}

void CurrentTag::paintEvent(QPaintEvent *)
{
    const Theme theme = Theme::of(this);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const qreal radius = height() / 2.0;
    QPainterPath capsule;
    capsule.addRoundedRect(QRectF(rect()), radius, radius);
    painter.fillPath(capsule, theme.primaryAt(Opacity::quietFill));
    painter.setPen(theme.secondary);
    painter.drawText(rect(), Qt::AlignCenter, m_text);
}
