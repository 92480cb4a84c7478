#pragma once

#include "app/ui/controls/HoverButton.h"

// A square button showing one symbol: the gear, back.
class IconButton : public HoverButton
{
public:
    explicit IconButton(const QString &symbol, QWidget *parent = nullptr);

    QSize sizeHint() const override;

    static constexpr int side = 26;
    static constexpr qreal symbolPoints = 13;
    static constexpr qreal disabledOpacity = 0.4;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_symbol;
};
