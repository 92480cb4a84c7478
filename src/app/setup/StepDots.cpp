#include "app/setup/StepDots.h"

#include "app/ui/look/AccessibleComponent.h"
#include "app/ui/look/Identifiers.h"
#include "app/ui/look/Theme.h"
#include "core/l10n/L10n.h"

#include <QLocale>
#include <QPainter>
#include <QVariantAnimation>

StepDots::StepDots(int step, int count, QWidget *parent)
    : QWidget(parent)
    , m_step(step)
    , m_count(count)
    , m_position(step)
    , m_move(new QVariantAnimation(this))
{
    setObjectName(QLatin1String(Identifier::setupProgress));
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    AccessibleComponent::combine(this);
    m_move->setDuration(animationMilliseconds);
    m_move->setEasingCurve(QEasingCurve::OutCubic);
    connect(m_move, &QVariantAnimation::valueChanged, this, [this](const QVariant &value) {
        m_position = value.toReal();
        update();
    });
    setStep(step);
}

void StepDots::setStep(int step)
{
    setAccessibleName(L10n::text("setup.progress").arg(QLocale().toString(step + 1)));
    if (step == m_step && qFuzzyCompare(m_position + 1, qreal(step) + 1))
        return;
    m_step = step;
    m_move->stop();
    if (Theme::of(this).preferences.reduceMotion || !isVisible()) {
        m_position = step;
        update();
        return;
    }
    m_move->setStartValue(m_position);
    m_move->setEndValue(qreal(step));
    m_move->start();
}

QSize StepDots::sizeHint() const
{
    return {currentWidth + (m_count - 1) * (otherWidth + spacing), dotHeight};
}

void StepDots::paintEvent(QPaintEvent *)
{
    const Theme theme = Theme::of(this);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    qreal x = 0;
    const qreal y = (height() - dotHeight) / 2.0;
    for (int index = 0; index < m_count; ++index) {
        // Each capsule grows as the current place comes near it.
        const qreal nearness = qMax<qreal>(0, 1 - qAbs(m_position - index));
        const qreal width = otherWidth + (currentWidth - otherWidth) * nearness;
        QColor ink = theme.primaryAt(otherOpacity);
        const QColor accent = theme.accent;
        ink.setRgbF(ink.redF() + (accent.redF() - ink.redF()) * nearness,
                    ink.greenF() + (accent.greenF() - ink.greenF()) * nearness,
                    ink.blueF() + (accent.blueF() - ink.blueF()) * nearness,
                    ink.alphaF() + (accent.alphaF() - ink.alphaF()) * nearness);
        painter.setBrush(ink);
        painter.drawRoundedRect(QRectF(x, y, width, dotHeight), dotHeight / 2.0, dotHeight / 2.0);
        x += width + spacing;
    }
}
