#pragma once

#include <QAbstractButton>

// An on/off switch: a track in the accent colour when on, a knob that sits at
// the end of its state. Its label is for assistive technology only.
class Switch : public QAbstractButton
{
public:
    explicit Switch(const QString &accessibleName, QWidget *parent = nullptr);

    QSize sizeHint() const override;

    static constexpr int trackWidth = 34;
    static constexpr int trackHeight = 20;
    static constexpr int knobInset = 2;
    static constexpr qreal disabledOpacity = 0.45;

protected:
    void paintEvent(QPaintEvent *event) override;
};
