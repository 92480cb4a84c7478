#pragma once

#include "core/sources/RuntimeState.h"

#include <QWidget>

class QVariantAnimation;
class SymbolView;
class ThemedLabel;
struct Theme;

// One line that names the engine's state with its symbol, in the state's
// colour. While switching or waiting the symbol pulses, unless motion is reduced.
class StatusLine : public QWidget
{
public:
    explicit StatusLine(QWidget *parent = nullptr);

    void setState(RuntimeState state);
    RuntimeState state() const { return m_state; }
    bool isPulsing() const;

    // Whether the main page shows a line for this state at all.
    static bool shows(RuntimeState state);
    static QString symbol(RuntimeState state);
    static QColor color(RuntimeState state, const Theme &theme);

    static constexpr qreal symbolPoints = 10;
    static constexpr qreal textPoints = 11.5;
    static constexpr int spacing = 5;
    static constexpr int pulseMilliseconds = 1100;

protected:
    void changeEvent(QEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void updatePulse();

    RuntimeState m_state = RuntimeState::Keeping;
    SymbolView *m_symbol;
    ThemedLabel *m_text;
    QVariantAnimation *m_pulse;
};
