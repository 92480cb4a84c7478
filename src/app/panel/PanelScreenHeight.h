#pragma once

#include <QMetaObject>
#include <QObject>
#include <QPointer>

#include <functional>

class QScreen;
class QWidget;
class QWindow;

// Watches how much of its screen a widget's window may use, so that a long
// panel scrolls instead of running off the screen. Reports the usable height
// whenever the window is shown, moves to another screen or the screen's
// available area changes; reports arrive later on the main thread, never
// inside a layout pass.
class PanelScreenHeight : public QObject
{
public:
    PanelScreenHeight(QWidget *view, std::function<void(int)> publish);

    // The height a panel may take on a screen whose available area is this high.
    static int usableHeight(int availableHeight);

    static constexpr int screenMargin = 40;
    static constexpr int smallestHeight = 120;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void attach();
    void watchScreen(QScreen *screen);
    void publishLater();

    QWidget *m_view;
    std::function<void(int)> m_publish;
    QPointer<QWindow> m_window;
    QMetaObject::Connection m_screenChanged;
    QMetaObject::Connection m_geometryChanged;
};
