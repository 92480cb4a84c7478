#pragma once

#include "platform/input/SourceProperties.h"

#include <QDBusMessage>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>

#include <functional>
#include <optional>

// What Tolvar's addon has said of Fcitx5, kept between its signals: the
// current method, which its signal carries, and the enabled sources, until it
// says the groups changed. Kept only while the addon is on the bus and an event
// loop turns; otherwise every read asks Fcitx5. Made and used on one thread.
class Fcitx5Known
{
public:
    QString current(const std::function<QString()> &read);
    QList<SourceProperties> enabled(const std::function<QList<SourceProperties>()> &read);
    // After a switch of our own: the next read asks, unless the addon told of it first.
    void selected(const QString &id);
    // Whether the addon is on the bus, as its name's owner last changed.
    bool addonPresent();

private:
    bool trusted();
    void listen();
    void heard(const QDBusMessage &signal);

    QObject m_listener;
    QPointer<QObject> m_receiver;
    QPointer<QObject> m_watcher;
    bool m_listening = false;
    bool m_addon = false;
    std::optional<QString> m_current;
    std::optional<QList<SourceProperties>> m_enabled;
};
