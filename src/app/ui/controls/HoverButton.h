#pragma once

#include <QAbstractButton>

// The body the three button styles share: a button that knows whether the
// pointer is over it, and the fill its style gives to pressed and hovered.
class HoverButton : public QAbstractButton
{
public:
    explicit HoverButton(QWidget *parent = nullptr);

    bool isHovered() const { return m_hovered; }

protected:
    // The primary colour's opacity behind the button now; none when disabled.
    qreal fillOpacity(qreal pressed, qreal hovered) const;

    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;

private:
    bool m_hovered = false;
};
