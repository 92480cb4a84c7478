#include "app/instance/AppController.h"

#include "app/instance/EditMenu.h"
#include "app/model/AppModel.h"
#include "app/panel/Panel.h"
#include "app/tray/DropDownPlacement.h"
#include "app/tray/TrayIcon.h"
#include "core/config/ConfigStore.h"
#include "core/instance/InstanceLock.h"
#include "core/l10n/L10n.h"
#include "platform/AppPlaces.h"
#include "platform/ApplicationRole.h"

#include <QApplication>
#include <QEvent>
#include <QMessageBox>
#include <QScreen>
#include <QTimer>
#include <QVBoxLayout>
#include <QWidget>

namespace {

const QString windowName = QStringLiteral("panel-window");
const QString dropDownName = QStringLiteral("panel-drop-down");

// Only macOS gives an application a menu bar of its own; elsewhere the
// panel's fields take the standard editing shortcuts by themselves.
bool hasApplicationMenu()
{
    return QGuiApplication::platformName() == QLatin1String("cocoa");
}

// Wayland lets no program place its own windows.
bool canPlaceWindows()
{
    return !QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
}

} // namespace

AppController::Dependencies AppController::Dependencies::live()
{
    auto lock = std::make_shared<InstanceLock>();
    return {
        [lock] { return lock->acquire(InstanceLock::fileIn(AppPlaces::sessionLockDirectory())); },
        Notifications::live(),
        [](const QString &message) { QMessageBox::critical(nullptr, L10n::text("app.name"), message); },
        TrayHost::live(),
    };
}

AppController::AppController(AppModel &model, Dependencies dependencies, QObject *parent)
    : QObject(parent)
    , m_model(model)
    , m_dependencies(std::move(dependencies))
{}

AppController::~AppController() = default;

AppController::Launch AppController::launch(bool openWindowOnLaunch)
{
    ApplicationRole::becomeAccessory();
    if (const Launch adopted = adoptExistingInstance(); adopted != Launch::Running)
        return adopted;

    m_model.start();
    if (hasApplicationMenu())
        m_editMenu = std::make_unique<EditMenu>();
    connect(&m_model, &AppModel::changed, this, &AppController::modelChanged);
    connect(&m_model, &AppModel::languageChanged, this, [this] {
        if (m_editMenu)
            m_editMenu->retitle();
    });

    // Queued: a request from outside may arrive in the middle of anything.
    m_dependencies.notifications.observe(ConfigStore::openWindow, this,
                                         [this] { QTimer::singleShot(0, this, &AppController::showWindow); });
    m_dependencies.trayHost.whenPresent(this, [this] { createTrayIcon(); });
    if (openWindowOnLaunch)
        showWindow();
    return Launch::Running;
}

AppController::Launch AppController::adoptExistingInstance()
{
    const Expected<bool> acquired = m_dependencies.acquireLock();
    if (!acquired) {
        m_dependencies.alert(L10n::text("app.lock-failed").arg(L10n::describe(acquired.error())));
        return Launch::LockFailed;
    }
    if (!acquired.value()) {
        m_dependencies.notifications.post(ConfigStore::openWindow);
        return Launch::HandedOver;
    }
    return Launch::Running;
}

void AppController::createTrayIcon()
{
    m_tray = std::make_unique<TrayIcon>(
        m_model, TrayIcon::Actions{[this](const QRect &geometry) { togglePanel(geometry); }, [this] { showWindow(); }});
}

void AppController::modelChanged()
{
    if (m_tray)
        m_tray->refresh();
    if (m_window)
        m_window->setWindowTitle(L10n::text("app.name"));
}

QWidget *AppController::host(bool inWindow)
{
    auto *frame = new QWidget(nullptr, inWindow ? Qt::Window : Qt::Popup | Qt::FramelessWindowHint);
    frame->setObjectName(inWindow ? windowName : dropDownName);
    frame->setWindowTitle(L10n::text("app.name"));
    auto *layout = new QVBoxLayout(frame);
    layout->setContentsMargins(0, 0, 0, 0);
    // The panel fixes its own size; the frame follows it and cannot be resized.
    layout->setSizeConstraint(QLayout::SetFixedSize);
    layout->addWidget(new Panel(m_model, inWindow, panelMaximumHeight, frame));
    return frame;
}

void AppController::showWindow()
{
    if (!m_window)
        m_window.reset(host(true));
    m_model.invalidateArtwork();
    m_model.refreshLogin();
    const bool first = !m_window->isVisible() && m_window->windowHandle() == nullptr;
    const bool shown = m_window->isVisible();
    m_window->setWindowState(m_window->windowState() & ~Qt::WindowMinimized);
    m_window->show();
    if (first && canPlaceWindows()) {
        if (const QScreen *screen = m_window->screen()) {
            QRect frame = m_window->frameGeometry();
            frame.moveCenter(screen->availableGeometry().center());
            m_window->move(frame.topLeft());
        }
    }
    m_window->raise();
    // Asks the window manager for the focus, with the activation token where the platform has one.
    m_window->activateWindow();
    // Qt stamps an X11 request with the last event it saw, and a request stamped
    // before another window took the focus is ignored.
    if (shown && QGuiApplication::platformName() == QLatin1String("xcb"))
        ApplicationRole::bringX11WindowForward(m_window->winId());
}

void AppController::togglePanel(const QRect &iconGeometry)
{
    if (m_dropDown && m_dropDown->isVisible()) {
        m_dropDown->hide();
        return;
    }
    if (m_dropDownClosed.isValid() && m_dropDownClosed.elapsed() < reopenGuardMs) {
        m_dropDownClosed.invalidate();
        return;
    }
    if (iconGeometry.isEmpty() || !canPlaceWindows()) {
        // No place to drop down from: the window stands in, and a click on the icon takes it away again.
        if (m_window && m_window->isVisible() && m_window->isActiveWindow())
            m_window->hide();
        else
            showWindow();
        return;
    }
    showDropDown(iconGeometry);
}

void AppController::showDropDown(const QRect &iconGeometry)
{
    if (!m_dropDown) {
        m_dropDown.reset(host(false));
        m_dropDown->installEventFilter(this);
    }
    m_model.invalidateArtwork();
    m_model.refreshLogin();
    m_dropDown->adjustSize();
    const QScreen *screen = QGuiApplication::screenAt(iconGeometry.center());
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    m_dropDown->move(DropDownPlacement::topLeft(iconGeometry, m_dropDown->size(), screen->availableGeometry()));
    m_dropDown->show();
    m_dropDown->activateWindow();
}

bool AppController::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_dropDown.get() && event->type() == QEvent::Hide)
        m_dropDownClosed.start();
    return QObject::eventFilter(watched, event);
}
