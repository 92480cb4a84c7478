#pragma once

#include <QWidget>

// The "current" badge beside the active source: a quiet capsule. Hidden from
// accessibility, since the row's value says it.
class CurrentTag : public QWidget
{
public:
    explicit CurrentTag(QWidget *parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

    static constexpr qreal fontPoints = 10;
    static constexpr qreal horizontalPadding = 6;
    static constexpr qreal verticalPadding = 2.5;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_text;
};
