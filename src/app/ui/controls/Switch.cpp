#include "app/ui/controls/Switch.h"

#include "app/ui/look/Theme.h"

#include <QPainter>

Switch::Switch(const QString &accessibleName, QWidget *parent)
    : QAbstractButton(parent)
{
    setCheckable(true);
    setAccessibleName(accessibleName);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::StrongFocus);
}

QSize Switch::sizeHint() const
{
    return {trackWidth, trackHeight};
}

void Switch::paintEvent(QPaintEvent *)
{
    const Theme theme = Theme::of(this);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (!isEnabled())
        painter.setOpacity(disabledOpacity);
    const QRectF track =
        QRectF(0, (height() - trackHeight) / 2.0, trackWidth, trackHeight).adjusted(0.5, 0.5, -0.5, -0.5);
    const qreal round = track.height() / 2;
    QColor fill = isChecked() ? theme.accent : theme.primaryAt(theme.dark ? 0.22 : 0.16);
    if (isDown())
        fill = fill.darker(115);
    painter.setPen(theme.preferences.increasedContrast ? QPen(theme.primaryAt(0.5), 1) : Qt::NoPen);
    painter.setBrush(fill);
    painter.drawRoundedRect(track, round, round);

    const qreal knob = track.height() - 2 * knobInset;
    const qreal x = isChecked() ? track.right() - knobInset - knob : track.left() + knobInset;
    painter.setPen(QPen(QColor(0, 0, 0, 40), 0.5));
    painter.setBrush(Qt::white);
    painter.drawEllipse(QRectF(x, track.top() + knobInset, knob, knob));

    if (hasFocus()) {
        painter.setPen(QPen(Theme::withOpacity(theme.accent, 0.5), 2));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(track.adjusted(-1.5, -1.5, 1.5, 1.5), round + 1.5, round + 1.5);
    }
}
