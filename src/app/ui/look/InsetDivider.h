#pragma once

#include <QWidget>

// A hairline indented from the leading edge, and by 10 points from the trailing one.
class InsetDivider : public QWidget
{
public:
    explicit InsetDivider(int leading, QWidget *parent = nullptr);

    static constexpr int trailing = 10;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    int m_leading;
};
