#pragma once

#include <QKeySequence>
#include <QShortcut>

#include <functional>

// A keyboard shortcut with nothing to see: it runs its action while its window
// is active, takes no space and is not in the accessible tree.
class HiddenShortcut : public QShortcut
{
public:
    HiddenShortcut(const QKeySequence &keys, QWidget *parent, std::function<void()> action);
};
