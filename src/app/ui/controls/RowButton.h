#pragma once

#include "app/ui/controls/HoverButton.h"

#include <QColor>

class QGraphicsOpacityEffect;

// A full-width button whose content is the row laid out inside it; pressed and
// hovered rows get a rounded fill of the style's radius.
class RowButton : public HoverButton
{
public:
    explicit RowButton(qreal radius, QWidget *parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    static constexpr qreal disabledOpacity = 0.45;

protected:
    // The fill under the hover feedback, such as a selection; none by default.
    virtual QColor restingFill() const { return Qt::transparent; }

    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    qreal m_radius;
    QGraphicsOpacityEffect *m_dimming = nullptr;
};

// A navigation row of the settings: a title and a trailing accessory symbol.
class NavigationRow : public RowButton
{
public:
    NavigationRow(const QString &title, const QString &accessory, QWidget *parent = nullptr);
};
