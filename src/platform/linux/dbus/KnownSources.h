#pragma once

#include "platform/input/InputSources.h"

#include <QDBusMessage>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>

// What a stack's own signals on the session bus keep known between them: the
// current source, which its change signal carries, the enabled sources until
// a signal says they changed, whether the stack is reachable, and whether
// someone else holds the keymap. Kept only
// while the service owns its name and an event loop turns, so that its signals
// are heard in time; otherwise every read asks. Made and used on one thread.
class KnownSources
{
public:
    struct Signals
    {
        QString service;
        QString path;
        QString interface;
        // Carries the new current source, as `currentOf` reads it.
        QString currentChanged;
        // The current source a change signal names, given the enabled sources
        // as known; none when it cannot be told without asking.
        std::function<std::optional<QString>(const QDBusMessage &signal, const QList<SourceProperties> *enabled)>
            currentOf;
        QStringList listChanged;
        // Carries whether someone else holds the keymap; empty where nobody can.
        QString keymapChanged = {};
    };

    explicit KnownSources(Signals watched);

    // `sources` with their reads kept between signals. Its `matching` becomes
    // the enabled sources of that identifier: these stacks offer nothing else.
    static InputSources remember(InputSources sources, const std::shared_ptr<KnownSources> &known);

    QString current(const std::function<QString()> &read);
    QList<SourceProperties> enabled(const std::function<QList<SourceProperties>()> &read);
    InputSources::Availability availability(const std::function<InputSources::Availability()> &read);
    bool keymapHeld(const std::function<bool()> &read);
    // After a switch of our own: the next read asks, unless a signal told of it first.
    void selected(const QString &id);
    // Whether the service is on the bus; asked afresh where nothing is heard.
    bool present();

private:
    bool trusted();
    template <typename T> T kept(std::optional<T> &known, const std::function<T()> &read);
    void listen();
    void heard(const QDBusMessage &signal);
    void forget();

    Signals m_signals;
    QObject m_listener;
    QPointer<QObject> m_receiver;
    QPointer<QObject> m_watcher;
    bool m_listening = false;
    bool m_present = false;
    std::optional<QString> m_current;
    std::optional<QList<SourceProperties>> m_enabled;
    std::optional<InputSources::Availability> m_availability;
    std::optional<bool> m_keymapHeld;
};
