#pragma once

#include <QList>
#include <QObject>

#include <memory>

class QAction;
class QMenu;
class QMenuBar;

// The application's main menu on macOS: one Edit menu whose commands act on the
// focused text field, so that the standard editing shortcuts work in the panel
// of an accessory application, which has no menu of its own.
class EditMenu : public QObject
{
    Q_OBJECT

public:
    explicit EditMenu(QObject *parent = nullptr);
    ~EditMenu() override;

    // Parentless, so that macOS takes it as the application's menu bar.
    QMenuBar *menuBar() const { return m_menuBar.get(); }
    // The command whose title comes from `key` ("menu.copy", ...), or null.
    QAction *command(const char *key) const;
    // Takes every title from the active language; call when the language changes.
    void retitle();

private:
    struct Command
    {
        QAction *action;
        const char *key;
    };

    std::unique_ptr<QMenuBar> m_menuBar;
    QMenu *m_menu = nullptr;
    QList<Command> m_commands;
};
