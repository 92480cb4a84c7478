#include "app/ui/controls/BusyIndicator.h"

#include "app/ui/look/Theme.h"

#include <QPainter>
#include <QVariantAnimation>

BusyIndicator::BusyIndicator(const QString &accessibleName, QWidget *parent)
    : QWidget(parent)
    , m_turn(new QVariantAnimation(this))
{
    setAccessibleName(accessibleName);
    setFixedSize(side, side);
    m_turn->setStartValue(0.0);
    m_turn->setEndValue(360.0);
    m_turn->setDuration(turnMilliseconds);
    m_turn->setLoopCount(-1);
    connect(m_turn, &QVariantAnimation::valueChanged, this, [this](const QVariant &angle) {
        m_angle = angle.toReal();
        update();
    });
}

void BusyIndicator::paintEvent(QPaintEvent *)
{
    const Theme theme = Theme::of(this);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const qreal pen = 2;
    const QRectF ring = QRectF(rect()).adjusted(pen, pen, -pen, -pen);
    painter.setPen(QPen(theme.primaryAt(0.12), pen));
    painter.drawEllipse(ring);
    painter.setPen(QPen(theme.secondary, pen, Qt::SolidLine, Qt::RoundCap));
    // Qt counts sixteenths of a degree, anticlockwise.
    painter.drawArc(ring, qRound(-m_angle * 16) + 90 * 16, 100 * 16);
}

void BusyIndicator::showEvent(QShowEvent *event)
{
    if (!Theme::of(this).preferences.reduceMotion)
        m_turn->start();
    QWidget::showEvent(event);
}

void BusyIndicator::hideEvent(QHideEvent *event)
{
    m_turn->stop();
    QWidget::hideEvent(event);
}
