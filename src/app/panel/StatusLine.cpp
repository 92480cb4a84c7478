#include "app/panel/StatusLine.h"

#include "app/ui/look/AccessibleComponent.h"
#include "app/ui/look/Identifiers.h"
#include "app/ui/look/SymbolView.h"
#include "app/ui/look/Theme.h"
#include "app/ui/look/ThemedLabel.h"
#include "core/l10n/L10n.h"

#include <QEvent>
#include <QGraphicsOpacityEffect>
#include <QHBoxLayout>
#include <QVariantAnimation>

StatusLine::StatusLine(QWidget *parent)
    : QWidget(parent)
{
    setObjectName(QLatin1String(Identifier::pinStatus));
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(spacing);
    const auto ink = [this](const Theme &theme) { return color(m_state, theme); };
    m_symbol = new SymbolView(symbol(m_state), Symbols::boxFor(symbolPoints), ink, Symbols::Weight::bold, this);
    row->addWidget(m_symbol, 0, Qt::AlignVCenter);
    m_text = new ThemedLabel(QString(), textPoints, QFont::Medium, ink, this);
    row->addWidget(m_text, 1);
    AccessibleComponent::combine(this);

    auto *fade = new QGraphicsOpacityEffect(m_symbol);
    fade->setOpacity(1);
    m_symbol->setGraphicsEffect(fade);
    m_pulse = new QVariantAnimation(this);
    m_pulse->setDuration(pulseMilliseconds);
    m_pulse->setStartValue(1.0);
    m_pulse->setKeyValueAt(0.5, 0.3);
    m_pulse->setEndValue(1.0);
    m_pulse->setEasingCurve(QEasingCurve::InOutSine);
    m_pulse->setLoopCount(-1);
    connect(m_pulse, &QVariantAnimation::valueChanged, fade,
            [fade](const QVariant &value) { fade->setOpacity(value.toReal()); });
    setState(m_state);
}

void StatusLine::setState(RuntimeState state)
{
    m_state = state;
    m_symbol->setSymbol(symbol(state));
    m_text->setText(L10n::text(state.textKey()));
    m_text->setInk([state](const Theme &theme) { return color(state, theme); });
    setAccessibleName(m_text->text());
    m_symbol->update();
    updatePulse();
}

bool StatusLine::isPulsing() const
{
    return m_pulse->state() == QAbstractAnimation::Running;
}

bool StatusLine::shows(RuntimeState state)
{
    return state == RuntimeState::Switching || state == RuntimeState::Waiting || state == RuntimeState::SecureInput
           || state == RuntimeState::KeymapHeld;
}

QString StatusLine::symbol(RuntimeState state)
{
    switch (state) {
    case RuntimeState::Setup:
    case RuntimeState::MissingSource: return QStringLiteral("keyboard.badge.ellipsis");
    case RuntimeState::Paused: return QStringLiteral("pause.circle");
    case RuntimeState::Keeping: return QStringLiteral("pin.fill");
    case RuntimeState::Switching: return QStringLiteral("arrow.triangle.2.circlepath");
    case RuntimeState::Waiting: return QStringLiteral("clock");
    case RuntimeState::SecureInput:
    case RuntimeState::KeymapHeld: return QStringLiteral("lock.shield");
    case RuntimeState::Error: return QStringLiteral("exclamationmark.triangle");
    case RuntimeState::Stopped: return QStringLiteral("stop.circle");
    }
    return {};
}

QColor StatusLine::color(RuntimeState state, const Theme &theme)
{
    switch (state) {
    case RuntimeState::Setup: return theme.accent;
    case RuntimeState::Keeping: return theme.green;
    case RuntimeState::Switching:
    case RuntimeState::Waiting: return theme.blue;
    case RuntimeState::SecureInput:
    case RuntimeState::KeymapHeld: return theme.indigo;
    case RuntimeState::MissingSource:
    case RuntimeState::Error: return theme.orange;
    case RuntimeState::Paused:
    case RuntimeState::Stopped: return theme.secondary;
    }
    return theme.secondary;
}

void StatusLine::changeEvent(QEvent *event)
{
    // Reduce motion travels with the palette's surroundings.
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::ParentChange)
        updatePulse();
    QWidget::changeEvent(event);
}

void StatusLine::showEvent(QShowEvent *event)
{
    updatePulse();
    QWidget::showEvent(event);
}

void StatusLine::hideEvent(QHideEvent *event)
{
    updatePulse();
    QWidget::hideEvent(event);
}

void StatusLine::updatePulse()
{
    // A closed panel does not keep the processor awake.
    const bool pulses = m_state.isTransient() && !Theme::of(this).preferences.reduceMotion && isVisible();
    if (pulses && !isPulsing()) {
        m_pulse->start();
    } else if (!pulses) {
        m_pulse->stop();
        m_pulse->setCurrentTime(0);
        static_cast<QGraphicsOpacityEffect *>(m_symbol->graphicsEffect())->setOpacity(1);
    }
}
