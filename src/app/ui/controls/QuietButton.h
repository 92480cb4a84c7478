#pragma once

#include "app/ui/controls/HoverButton.h"

// A small text button for footers, with an optional symbol before the text.
class QuietButton : public HoverButton
{
public:
    explicit QuietButton(const QString &text, const QString &symbol = {}, QWidget *parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

    static constexpr int buttonHeight = 24;
    static constexpr int padding = 8;
    static constexpr int symbolSpacing = 5;
    static constexpr qreal fontPoints = 11.5;
    static constexpr qreal disabledOpacity = 0.4;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_symbol;
};
