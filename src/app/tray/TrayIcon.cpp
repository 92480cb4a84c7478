#include "app/tray/TrayIcon.h"

#include "app/model/AppModel.h"
#include "app/tray/TrayImage.h"
#include "core/l10n/L10n.h"

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QPalette>
#include <QSystemTrayIcon>

TrayIcon::TrayIcon(AppModel &model, Actions actions, QObject *parent)
    : QObject(parent)
    , m_model(model)
    , m_actions(std::move(actions))
    // Parentless: the tray host or the platform shows it, never a window of ours.
    , m_menu(std::make_unique<QMenu>())
    , m_icon(new QSystemTrayIcon(this))
{
    m_open = m_menu->addAction(QString(), this, [this] { m_actions.open(); });
    m_keep = m_menu->addAction(QString(), this, [this] { m_model.setEnabled(!m_model.enabled()); });
    m_menu->addSeparator();
    m_quit = m_menu->addAction(QString(), qApp, &QCoreApplication::quit, Qt::QueuedConnection);
    m_icon->setContextMenu(m_menu.get());
    connect(m_icon, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
        // A double click also arrives as a click first; a middle click is not "open".
        if (reason == QSystemTrayIcon::Trigger)
            m_actions.toggle(m_icon->geometry());
    });
    refresh();
    m_icon->show();
}

TrayIcon::~TrayIcon() = default;

void TrayIcon::refresh()
{
    const QImage current = m_model.currentSourceIcon();
    const QIcon image = TrayImage::icon(current.isNull() ? TrayImage::image() : current,
                                        QApplication::palette().color(QPalette::WindowText));
    if (m_model.runtimeState() == RuntimeState::Paused) {
        const QSize size = image.availableSizes().value(0);
        m_icon->setIcon(QIcon(image.pixmap(size, QIcon::Disabled)));
    } else {
        m_icon->setIcon(image);
    }
    m_icon->setToolTip(toolTip(m_model));

    m_open->setText(L10n::text("menu.open"));
    m_keep->setText(L10n::text(m_model.enabled() ? "menu.pause" : "menu.resume"));
    // Keeping means nothing until a source is pinned.
    m_keep->setEnabled(m_model.pinnedID().has_value());
    m_quit->setText(L10n::text("menu.quit"));
}

QString TrayIcon::toolTip(const AppModel &model)
{
    return L10n::text("app.tooltip").arg(L10n::text(model.runtimeState().textKey()), model.menuSourceName());
}
