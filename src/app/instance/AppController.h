#pragma once

#include "base/Expected.h"
#include "platform/Notifications.h"
#include "platform/TrayHost.h"

#include <QElapsedTimer>
#include <QObject>
#include <QRect>

#include <functional>
#include <memory>

class AppModel;
class EditMenu;
class QWidget;
class TrayIcon;

// The graphical instance: the only one per user, it keeps the model running,
// shows the tray icon once the desktop has a tray, and hosts the panel in a
// drop-down under the icon or in a window of its own.
class AppController : public QObject
{
public:
    struct Dependencies
    {
        // Takes the instance lock for the whole process: false when another instance holds it.
        std::function<Expected<bool>()> acquireLock;
        Notifications notifications;
        // Shows a failure the person must see before the instance ends.
        std::function<void(const QString &message)> alert;
        TrayHost trayHost;

        static Dependencies live();
    };

    enum class Launch { Running, HandedOver, LockFailed };

    AppController(AppModel &model, Dependencies dependencies, QObject *parent = nullptr);
    ~AppController() override;

    // Anything but Running means this process ends now.
    Launch launch(bool openWindowOnLaunch);

    // Opens the panel's window, created on first use and kept, and brings it forward.
    void showWindow();
    // The icon was clicked: the drop-down under a known icon position, else the window.
    void togglePanel(const QRect &iconGeometry);

    QWidget *window() const { return m_window.get(); }
    QWidget *dropDown() const { return m_dropDown.get(); }
    TrayIcon *trayIcon() const { return m_tray.get(); }

    static constexpr int panelMaximumHeight = 580;
    // How long after the drop-down closed a click on the icon still counts as the one that closed it.
    static constexpr int reopenGuardMs = 300;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    Launch adoptExistingInstance();
    void createTrayIcon();
    void showDropDown(const QRect &iconGeometry);
    void modelChanged();
    // The panel in a window of its own, or framed as a drop-down.
    QWidget *host(bool inWindow);

    AppModel &m_model;
    Dependencies m_dependencies;
    std::unique_ptr<TrayIcon> m_tray;
    std::unique_ptr<EditMenu> m_editMenu;
    std::unique_ptr<QWidget> m_window;
    std::unique_ptr<QWidget> m_dropDown;
    // A click on the icon first closes an open drop-down as a click outside it;
    // the click itself must then not open it again.
    QElapsedTimer m_dropDownClosed;
};
