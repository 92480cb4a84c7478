#include "app/panel/PanelScreenHeight.h"

#include <QEvent>
#include <QScreen>
#include <QWidget>
#include <QWindow>

PanelScreenHeight::PanelScreenHeight(QWidget *view, std::function<void(int)> publish)
    : QObject(view)
    , m_view(view)
    , m_publish(std::move(publish))
{
    view->installEventFilter(this);
}

int PanelScreenHeight::usableHeight(int availableHeight)
{
    return qMax(availableHeight - screenMargin, smallestHeight);
}

bool PanelScreenHeight::eventFilter(QObject *watched, QEvent *event)
{
    // The window may be new each time the panel is shown (a drop-down), or the
    // panel may have moved into another one.
    if (watched == m_view && event->type() == QEvent::Show)
        attach();
    return QObject::eventFilter(watched, event);
}

void PanelScreenHeight::attach()
{
    QWindow *window = m_view->window()->windowHandle();
    if (window != m_window) {
        disconnect(m_screenChanged);
        m_window = window;
        if (window)
            m_screenChanged = connect(window, &QWindow::screenChanged, this, [this](QScreen *screen) {
                watchScreen(screen);
                publishLater();
            });
    }
    watchScreen(window ? window->screen() : nullptr);
    publishLater();
}

void PanelScreenHeight::watchScreen(QScreen *screen)
{
    disconnect(m_geometryChanged);
    if (screen)
        m_geometryChanged = connect(screen, &QScreen::availableGeometryChanged, this, [this] { publishLater(); });
}

void PanelScreenHeight::publishLater()
{
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (m_window && m_window->screen())
                m_publish(usableHeight(m_window->screen()->availableGeometry().height()));
        },
        Qt::QueuedConnection);
}
