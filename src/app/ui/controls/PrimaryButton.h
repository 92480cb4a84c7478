#pragma once

#include "app/ui/controls/HoverButton.h"

// The one prominent button of a view: its text in white on the accent colour.
class PrimaryButton : public HoverButton
{
public:
    explicit PrimaryButton(const QString &text, QWidget *parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

    static constexpr int buttonHeight = 30;
    static constexpr int padding = 16;
    static constexpr qreal radius = 8;
    static constexpr qreal fontPoints = 13;
    static constexpr qreal disabledOpacity = 0.4;

protected:
    void paintEvent(QPaintEvent *event) override;
};
