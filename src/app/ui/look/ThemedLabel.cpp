#include "app/ui/look/ThemedLabel.h"

#include "app/ui/look/Theme.h"

#include <QEvent>
#include <QPainter>

ThemedLabel::ThemedLabel(const QString &text, qreal points, QFont::Weight weight, Ink ink, QWidget *parent)
    : QLabel(text, parent)
    , m_ink(std::move(ink))
{
    setFont(Theme::font(points, weight));
    setWordWrap(true);
    setTextFormat(Qt::PlainText);
    applyInk();
}

QColor ThemedLabel::primary(const Theme &theme)
{
    return theme.primary;
}

QColor ThemedLabel::secondary(const Theme &theme)
{
    return theme.secondary;
}

QColor ThemedLabel::tertiary(const Theme &theme)
{
    return theme.tertiary;
}

void ThemedLabel::setInk(Ink ink)
{
    m_ink = std::move(ink);
    applyInk();
}

void ThemedLabel::setElided(bool elided)
{
    m_elided = elided;
    setWordWrap(!elided);
    updateGeometry();
}

QSize ThemedLabel::minimumSizeHint() const
{
    if (!m_elided)
        return QLabel::minimumSizeHint();
    return {fontMetrics().horizontalAdvance(QStringLiteral("…")) * 3, QLabel::minimumSizeHint().height()};
}

void ThemedLabel::paintEvent(QPaintEvent *event)
{
    if (!m_elided) {
        QLabel::paintEvent(event);
        return;
    }
    QPainter painter(this);
    painter.setPen(palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::WindowText));
    const QRect box = contentsRect();
    painter.drawText(box, static_cast<int>(alignment()) | Qt::TextSingleLine,
                     fontMetrics().elidedText(text(), Qt::ElideRight, box.width()));
}

void ThemedLabel::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::ParentChange)
        applyInk();
    QLabel::changeEvent(event);
}

void ThemedLabel::applyInk()
{
    if (m_applying)
        return;
    m_applying = true;
    // The theme comes from the surroundings, not from the colour set here.
    QPalette palette = parentWidget() ? parentWidget()->palette() : QPalette();
    QPalette own = this->palette();
    const Theme theme = Theme::fromPalette(palette, Theme::of(this).preferences);
    own.setColor(QPalette::WindowText, m_ink(theme));
    own.setColor(QPalette::Text, m_ink(theme));
    setPalette(own);
    m_applying = false;
}
