#pragma once

#include <QObject>
#include <QRect>
#include <QString>

#include <functional>
#include <memory>

class AppModel;
class QAction;
class QMenu;
class QSystemTrayIcon;

// The tray icon of the running instance: the current source's image, greyed
// while paused, a tooltip naming the state and the source, and a context menu
// with what some tray hosts offer instead of a click.
class TrayIcon : public QObject
{
public:
    struct Actions
    {
        // A click on the icon; the geometry is empty where the host keeps it to itself.
        std::function<void(const QRect &iconGeometry)> toggle;
        std::function<void()> open;
    };

    TrayIcon(AppModel &model, Actions actions, QObject *parent = nullptr);
    ~TrayIcon() override;

    QSystemTrayIcon *icon() const { return m_icon; }
    QMenu *menu() const { return m_menu.get(); }
    // Image, tooltip and menu texts from the model as it is now.
    void refresh();
    // "Keeping — German", in the language in force.
    static QString toolTip(const AppModel &model);

private:
    AppModel &m_model;
    Actions m_actions;
    std::unique_ptr<QMenu> m_menu;
    QSystemTrayIcon *m_icon;
    QAction *m_open;
    QAction *m_keep;
    QAction *m_quit;
};
