#pragma once

#include "core/config/Config.h"

#include <QRect>
#include <QString>

#include <functional>
#include <optional>

// What the focus helper process asks of the world.
struct FocusHelperDependencies
{
    // config.json read without the lock; defaults when missing, absent when unreadable or undecodable.
    std::function<std::optional<Config>()> readConfig;
    std::function<bool()> secureInput;
    std::function<bool(const QString &id)> isSelectable;
    std::function<qint32(const QString &id)> select;
    std::function<QString()> currentID;
    // No taskbar entry, no menu: a faceless helper.
    std::function<void()> becomeAccessory;
    // The usable area of the main screen, absent without a screen.
    std::function<std::optional<QRect>()> mainScreenArea;
    std::function<void(const QRect &geometry)> createWindow;
    // Front, key, and the application active over all others.
    std::function<void()> activateWindow;

    static FocusHelperDependencies live();
};
