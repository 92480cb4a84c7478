#include "app/ui/controls/HiddenShortcut.h"

#include <QWidget>

HiddenShortcut::HiddenShortcut(const QKeySequence &keys, QWidget *parent, std::function<void()> action)
    : QShortcut(keys, parent)
{
    setContext(Qt::WindowShortcut);
    setAutoRepeat(false);
    connect(this, &QShortcut::activated, this, [action = std::move(action)] { action(); });
}
