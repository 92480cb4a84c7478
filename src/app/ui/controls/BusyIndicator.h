#pragma once

#include <QWidget>

class QVariantAnimation;

// A small spinning arc that says work is under way; it stands still where
// motion is reduced, and only turns while it is shown.
class BusyIndicator : public QWidget
{
public:
    explicit BusyIndicator(const QString &accessibleName, QWidget *parent = nullptr);

    QSize sizeHint() const override { return {side, side}; }

    static constexpr int side = 16;
    static constexpr int turnMilliseconds = 900;

protected:
    void paintEvent(QPaintEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    QVariantAnimation *m_turn;
    qreal m_angle = 0;
};
