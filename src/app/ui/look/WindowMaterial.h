#pragma once

#include <QWidget>

// The background of the stand-alone window: the window colour, slightly
// translucent where the platform composites windows and transparency is not
// reduced, solid otherwise and while the window is inactive.
class WindowMaterial : public QWidget
{
public:
    explicit WindowMaterial(QWidget *parent = nullptr);

    // Makes a top-level window able to show the material; call before it is shown.
    static void prepare(QWidget *window);
    // Whether windows can blend with what is behind them here.
    static bool platformComposites();

    bool isTranslucent() const;

    static constexpr qreal translucentOpacity = 0.9;

protected:
    void paintEvent(QPaintEvent *event) override;
    bool event(QEvent *event) override;
};
