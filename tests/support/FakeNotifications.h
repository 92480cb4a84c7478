#pragma once

#include "platform/Notifications.h"

#include <QStringList>

#include <memory>

// Records every post; observing is never available.
struct FakeNotifications
{
    std::shared_ptr<QStringList> posted = std::make_shared<QStringList>();

    Notifications record() const
    {
        return {[posted = posted](const QString &name) { posted->append(name); },
                [](const QString &, QObject *, std::function<void()>) { return false; }};
    }
};
