#include "app/instance/EditMenu.h"

#include "core/l10n/L10n.h"

#include <QAction>
#include <QApplication>
#include <QKeySequence>
#include <QMenu>
#include <QMenuBar>

#include <cstring>

namespace {

struct EditCommand
{
    const char *key;
    const char *slot; // of QLineEdit, QTextEdit and QPlainTextEdit alike
    QKeySequence::StandardKey shortcut;
    bool separatorBefore;
};

constexpr EditCommand commands[] = {
    {"menu.undo", "undo", QKeySequence::Undo, false},
    {"menu.redo", "redo", QKeySequence::Redo, false},
    {"menu.cut", "cut", QKeySequence::Cut, true},
    {"menu.copy", "copy", QKeySequence::Copy, false},
    {"menu.paste", "paste", QKeySequence::Paste, false},
    {"menu.select-all", "selectAll", QKeySequence::SelectAll, true},
};

} // namespace

EditMenu::EditMenu(QObject *parent)
    : QObject(parent)
    , m_menuBar(std::make_unique<QMenuBar>())
{
    m_menu = m_menuBar->addMenu(QString());
    for (const EditCommand &command : commands) {
        if (command.separatorBefore)
            m_menu->addSeparator();
        QAction *action = m_menu->addAction(QString());
        action->setShortcut(command.shortcut);
        // Kept in the Edit menu whatever its translated title resembles.
        action->setMenuRole(QAction::NoRole);
        // The key goes to whichever field has the focus when the command runs.
        const char *slot = command.slot;
        connect(action, &QAction::triggered, this, [slot] {
            QWidget *focused = QApplication::focusWidget();
            if (focused && focused->metaObject()->indexOfSlot(QByteArray(slot).append("()").constData()) >= 0)
                QMetaObject::invokeMethod(focused, slot);
        });
        m_commands.append({action, command.key});
    }
    retitle();
}

EditMenu::~EditMenu() = default;

QAction *EditMenu::command(const char *key) const
{
    for (const Command &command : m_commands) {
        if (std::strcmp(command.key, key) == 0)
            return command.action;
    }
    return nullptr;
}

void EditMenu::retitle()
{
    m_menu->setTitle(L10n::text("menu.edit"));
    for (const Command &command : m_commands)
        command.action->setText(L10n::text(command.key));
}
