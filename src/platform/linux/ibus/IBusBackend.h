#pragma once

#include "platform/linux/ibus/IBusBus.h"
#include "platform/linux/ibus/IBusEngineDesc.h"

#include <QDBusMessage>
#include <QHash>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

// The IBus daemon as the input sources read it: its connection, and what is
// known of it between its change signals. What is known is kept only while an
// event loop turns, and what the signals said is taken in before every read;
// without one nothing would tell in time that an answer went stale, and every
// call asks IBus. Made and used on one thread, like its bus.
class IBusBackend
{
public:
    IBusBackend(std::function<QString()> address, std::function<void()> sent);
    IBusBackend(const IBusBackend &) = delete;
    IBusBackend &operator=(const IBusBackend &) = delete;

    IBusBus &bus() { return m_bus; }

    // Whether `signal` is a change of IBus's "general" setting `underscored`.
    static bool changes(const QDBusMessage &signal, const char *underscored);

    // After IBus accepted `id`. Its signal for the switch usually came before
    // its answer; signals after the answer may have come too, and tell what
    // happened since. Without either, the next read asks.
    void selected(const QString &id);

    // The engines named, in that order, leaving out those IBus does not know.
    QList<IBusEngineDesc::Engine> engines(const QStringList &names);
    QStringList preload();
    // Whether the user told IBus to keep the system's layout.
    bool keepSystemLayout();
    // One of IBus's boolean "general" settings, by its underscored name, asked
    // afresh; none when IBus did not answer with a flag.
    std::optional<bool> generalFlag(const QString &name);
    // The global engine's name; `described` gets its description when IBus was asked for it.
    QString globalEngine(std::optional<IBusEngineDesc::Engine> *described);

private:
    struct Known
    {
        quint64 generation = 0; // of the connection it was read on
        std::optional<QStringList> preload;
        QHash<QString, IBusEngineDesc::Engine> engines;
        QSet<QString> unknownEngines;
        std::optional<QString> current;
        std::optional<bool> keepSystemLayout;
    };

    bool trusted();
    void heard(const QDBusMessage &message);
    void forgetAll();
    template <typename Field, typename Read> auto cached(Field Known::*field, Read read);
    std::optional<QVariant> generalSetting(const QString &name);
    std::optional<QStringList> preloadEngines();
    std::optional<QVariantList> engineDescs(const QStringList &names);

    IBusBus m_bus;
    Known m_known;
    // Hears IBus's signals for what is known.
    QObject m_listener;
    QPointer<QObject> m_receiver;
    bool m_listening = false;
};
