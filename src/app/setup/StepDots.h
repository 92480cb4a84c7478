#pragma once

#include <QWidget>

class QVariantAnimation;

// Where the setup flow is: one capsule per page, the current one long and in
// the accent colour. Read as one element, "Step 1 of 2".
class StepDots : public QWidget
{
public:
    StepDots(int step, int count, QWidget *parent = nullptr);

    void setStep(int step);
    int step() const { return m_step; }

    QSize sizeHint() const override;

    static constexpr int spacing = 5;
    static constexpr int currentWidth = 16;
    static constexpr int otherWidth = 6;
    static constexpr int dotHeight = 6;
    static constexpr qreal otherOpacity = 0.18;
    static constexpr int animationMilliseconds = 200;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    int m_step;
    int m_count;
    qreal m_position; // the long capsule's place, between pages while it moves
    QVariantAnimation *m_move;
};
