#include "platform/linux/ibus/IBusInputSources.h"

#include "platform/linux/dbus/SelectStatus.h"
#include "platform/linux/ibus/IBusAddress.h"
#include "platform/linux/ibus/IBusBus.h"
#include "platform/linux/ibus/IBusEngineDesc.h"
#include "platform/linux/ibus/IBusNames.h"

#include <QDBusArgument>
#include <QDBusVariant>

#include <QCoreApplication>
#include <QHash>
#include <QMutex>
#include <QPointer>
#include <QSet>
#include <QThread>

#include <memory>
#include <optional>

namespace {

const QString propertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");

QVariant firstArgument(const QDBusMessage &reply)
{
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
        return {};
    return reply.arguments().constFirst();
}

bool isSetting(const QString &name, const char *underscored)
{
    // IBus's GSettings keys use dashes, its own configuration service underscores.
    return name == QLatin1String(underscored)
           || QString(name).replace(QLatin1Char('-'), QLatin1Char('_')) == QLatin1String(underscored);
}

// What is known of IBus between its change signals. Kept only for the thread
// that hears those signals, while its event loop turns, and what they said is
// taken in before every read; elsewhere nothing would tell in time that an
// answer went stale, and every call asks IBus.
struct Known
{
    quint64 generation = 0; // of the connection it was read on
    std::optional<QStringList> preload;
    QHash<QString, IBusEngineDesc::Engine> engines;
    QSet<QString> unknownEngines;
    std::optional<QString> current;
    std::optional<bool> keepSystemLayout;
};

Known nothingKnown(quint64 generation)
{
    Known known;
    known.generation = generation;
    return known;
}

class Backend
{
public:
    Backend(std::function<QString()> address, std::function<void()> sent)
        : m_bus(std::move(address), std::move(sent))
    {}

    IBusBus &bus() { return m_bus; }

    // Whether what is known may be used now; starts listening on first use.
    bool trusted()
    {
        // Without an event loop turning, a program may well have learnt of a
        // change some other way before IBus's signal reached this process.
        QThread *listener = m_listener.thread();
        if (QThread::currentThread() != listener || listener->loopLevel() == 0)
            return false;
        if (!m_listening) {
            m_listening = true;
            m_receiver = m_bus.observe(&m_listener, [this](const QDBusMessage &message) { heard(message); });
        }
        if (!m_receiver)
            return false;
        // What IBus said so far, taken in before anything is read.
        QCoreApplication::sendPostedEvents(m_receiver, QEvent::MetaCall);
        // The listener is attached to every new connection before anything is read on it.
        const QMutexLocker locker(&m_mutex);
        if (m_known.generation != m_bus.generation())
            m_known = nothingKnown(m_bus.generation());
        return true;
    }

    // Updates what is known from one of IBus's signals, on the listener's thread.
    void heard(const QDBusMessage &message)
    {
        if (QThread::currentThread() != m_listener.thread())
            return;
        const QMutexLocker locker(&m_mutex);
        const QString member = message.member();
        const QVariantList arguments = message.arguments();
        if (message.type() != QDBusMessage::SignalMessage || m_known.generation != m_bus.generation()) {
            m_known = nothingKnown(m_bus.generation());
        } else if (member == QLatin1String("GlobalEngineChanged")) {
            m_known.current = arguments.value(0).toString();
        } else if (member == QLatin1String("RegistryChanged")) {
            m_known.preload.reset();
            m_known.engines.clear();
            m_known.unknownEngines.clear();
        } else if (member == QLatin1String("ValueChanged")
                   && arguments.value(0).toString() == QLatin1String("general")) {
            if (isSetting(arguments.value(1).toString(), "preload_engines"))
                m_known.preload.reset();
            if (isSetting(arguments.value(1).toString(), "use_system_keyboard_layout"))
                m_known.keepSystemLayout.reset();
        }
    }

    template <typename Field, typename Read> auto cached(Field Known::*field, Read read)
    {
        const bool trust = trusted();
        if (trust) {
            const QMutexLocker locker(&m_mutex);
            if (m_known.*field)
                return *(m_known.*field);
        }
        const quint64 generation = m_bus.generation();
        const std::optional value = read();
        if (trust && value) {
            const QMutexLocker locker(&m_mutex);
            if (m_known.generation == generation)
                m_known.*field = value;
        }
        return value.value_or(typename Field::value_type());
    }

    // After IBus accepted `id`. Its signal for the switch usually came before
    // its answer; signals after the answer may have come too, and tell what
    // happened since. Without either, the next read asks.
    void selected(const QString &id)
    {
        if (!trusted())
            return;
        const QMutexLocker locker(&m_mutex);
        if (m_known.current != id)
            m_known.current.reset();
    }

    // The engines named, in that order, leaving out those IBus does not know.
    QList<IBusEngineDesc::Engine> engines(const QStringList &names)
    {
        const bool trust = trusted();
        QStringList missing = names;
        QHash<QString, IBusEngineDesc::Engine> found;
        if (trust) {
            const QMutexLocker locker(&m_mutex);
            missing.removeIf([&](const QString &name) {
                if (const auto engine = m_known.engines.constFind(name); engine != m_known.engines.cend()) {
                    found.insert(name, *engine);
                    return true;
                }
                return m_known.unknownEngines.contains(name);
            });
        }
        if (!missing.isEmpty()) {
            const quint64 generation = m_bus.generation();
            const std::optional<QVariantList> descs = engineDescs(missing);
            QHash<QString, IBusEngineDesc::Engine> fetched;
            for (const QVariant &desc : descs.value_or(QVariantList())) {
                if (std::optional<IBusEngineDesc::Engine> engine = IBusEngineDesc::engine(desc))
                    fetched.insert(engine->properties.id.toString(), *engine);
            }
            found.insert(fetched);
            if (trust && descs) {
                const QMutexLocker locker(&m_mutex);
                if (m_known.generation == generation) {
                    m_known.engines.insert(fetched);
                    for (const QString &name : std::as_const(missing))
                        if (!fetched.contains(name))
                            m_known.unknownEngines.insert(name);
                }
            }
        }
        QList<IBusEngineDesc::Engine> result;
        for (const QString &name : names)
            if (const auto engine = found.constFind(name); engine != found.cend())
                result << *engine;
        return result;
    }

    QStringList preload()
    {
        return cached(&Known::preload, [this] { return preloadEngines(); });
    }

    // Whether the user told IBus to keep the system's layout.
    bool keepSystemLayout()
    {
        return cached(&Known::keepSystemLayout, [this]() -> std::optional<bool> {
            const std::optional<QVariant> value = generalSetting(QStringLiteral("use_system_keyboard_layout"));
            if (!value)
                return std::nullopt;
            return value->metaType() == QMetaType::fromType<bool>() && value->toBool();
        });
    }

    // The global engine's name; `described` gets its description when IBus was asked for it.
    QString globalEngine(std::optional<IBusEngineDesc::Engine> *described)
    {
        return cached(&Known::current, [this, described]() -> std::optional<QString> {
            const QDBusMessage reply =
                m_bus.call(IBusNames::service, IBusNames::path, propertiesInterface, QStringLiteral("Get"),
                           {IBusNames::interface, QStringLiteral("GlobalEngine")});
            if (reply.type() != QDBusMessage::ReplyMessage)
                return std::nullopt;
            *described = IBusEngineDesc::engine(firstArgument(reply));
            return *described ? described->value().properties.id.toString() : QString();
        });
    }

private:
    // One of IBus's "general" settings, as its configuration service keeps them.
    std::optional<QVariant> generalSetting(const QString &name)
    {
        const QDBusMessage reply =
            m_bus.call(IBusNames::configService, IBusNames::configPath, IBusNames::configInterface,
                       QStringLiteral("GetValue"), {QStringLiteral("general"), name});
        if (reply.type() != QDBusMessage::ReplyMessage)
            return std::nullopt;
        return IBusEngineDesc::unwrap(firstArgument(reply));
    }

    // The daemon only accepts the preload list; what the user chose is kept by
    // IBus's configuration service, the same setting the IBus panel preloads from.
    std::optional<QStringList> preloadEngines()
    {
        const std::optional<QVariant> value = generalSetting(QStringLiteral("preload_engines"));
        if (!value)
            return std::nullopt;
        if (value->metaType() == QMetaType::fromType<QStringList>())
            return value->toStringList();
        if (value->metaType() == QMetaType::fromType<QDBusArgument>()) {
            const QDBusArgument argument = value->value<QDBusArgument>();
            if (argument.currentSignature() == QLatin1String("as"))
                return qdbus_cast<QStringList>(argument);
        }
        return QStringList();
    }

    // IBus answers in the order asked and leaves out names it does not know.
    std::optional<QVariantList> engineDescs(const QStringList &names)
    {
        const QDBusMessage reply = m_bus.call(IBusNames::service, IBusNames::path, IBusNames::interface,
                                              QStringLiteral("GetEnginesByNames"), {names});
        if (reply.type() != QDBusMessage::ReplyMessage)
            return std::nullopt;
        const QVariant value = firstArgument(reply);
        if (value.metaType() != QMetaType::fromType<QDBusArgument>())
            return QVariantList();
        const QDBusArgument argument = value.value<QDBusArgument>();
        if (argument.currentSignature() != QLatin1String("av"))
            return QVariantList();
        QVariantList descs;
        argument.beginArray();
        while (!argument.atEnd()) {
            QDBusVariant element;
            argument >> element;
            descs << element.variant();
        }
        argument.endArray();
        return descs;
    }

    IBusBus m_bus;
    QMutex m_mutex;
    Known m_known;
    // Hears IBus's signals for what is known, on the thread that made the backend.
    QObject m_listener;
    QPointer<QObject> m_receiver;
    bool m_listening = false;
};

QList<SourceProperties> describe(const QList<IBusEngineDesc::Engine> &engines, const QStringList &enabledNames)
{
    QList<SourceProperties> sources;
    for (const IBusEngineDesc::Engine &engine : engines) {
        SourceProperties source = engine.properties;
        const bool named = source.id.metaType() == QMetaType::fromType<QString>();
        source.enabled = named && enabledNames.contains(source.id.toString());
        sources << source;
    }
    return sources;
}

QList<SourceProperties> enabled(Backend &backend)
{
    const QStringList names = backend.preload();
    return names.isEmpty() ? QList<SourceProperties>() : describe(backend.engines(names), names);
}

QList<SourceProperties> matching(Backend &backend, const QString &id)
{
    const QList<IBusEngineDesc::Engine> engines = backend.engines({id});
    return engines.isEmpty() ? QList<SourceProperties>() : describe(engines, backend.preload());
}

// The X layout IBus's tools set after switching on X11, unless the user told
// IBus to keep the system's layout. Under Wayland the compositor owns the
// keymap and IBus leaves it alone too.
std::optional<X11Layout::Names> engineLayout(Backend &backend, const QString &id,
                                             const std::optional<IBusEngineDesc::Engine> &described = {})
{
    if (id.isEmpty() || !X11Layout::isX11Session() || backend.keepSystemLayout())
        return std::nullopt;
    if (described)
        return described->layout;
    const QList<IBusEngineDesc::Engine> engines = backend.engines({id});
    if (engines.isEmpty())
        return std::nullopt;
    return engines.constFirst().layout;
}

// An engine whose layout a later setxkbmap replaced is not really in effect:
// reading it as none makes the keeper select it, and its layout, again.
QString currentID(Backend &backend)
{
    std::optional<IBusEngineDesc::Engine> described;
    const QString id = backend.globalEngine(&described);
    const std::optional<X11Layout::Names> layout = engineLayout(backend, id, described);
    return layout && X11Layout::differs(*layout) ? QString() : id;
}

qint32 select(Backend &backend, const QString &id)
{
    const QDBusMessage reply = backend.bus().call(IBusNames::service, IBusNames::path, IBusNames::interface,
                                                  QStringLiteral("SetGlobalEngine"), {id}, IBusBus::selectTimeoutMs);
    if (reply.type() == QDBusMessage::ReplyMessage) {
        backend.selected(id);
        const std::optional<X11Layout::Names> layout = engineLayout(backend, id);
        return !layout || X11Layout::apply(*layout) ? 0 : InputSources::layoutNotApplied;
    }
    return SelectStatus::ofError(reply);
}

bool isSelection(const QDBusMessage &message)
{
    return message.type() != QDBusMessage::SignalMessage || message.member() == QLatin1String("GlobalEngineChanged");
}

// Installed or removed engines change which enabled names IBus can describe.
bool isEnabledSet(const QDBusMessage &message)
{
    if (message.type() != QDBusMessage::SignalMessage || message.member() == QLatin1String("RegistryChanged"))
        return true;
    const QVariantList arguments = message.arguments();
    return message.member() == QLatin1String("ValueChanged")
           && arguments.value(0).toString() == QLatin1String("general")
           && isSetting(arguments.value(1).toString(), "preload_engines");
}

} // namespace

namespace IBusInputSources {

InputSources at(std::function<QString()> address, std::function<void()> sent)
{
    const auto backend = std::make_shared<Backend>(std::move(address), std::move(sent));
    const auto observe = [backend](bool (*relevant)(const QDBusMessage &)) {
        return [backend, relevant](QObject *context, std::function<void()> callback) {
            return backend->bus().observe(context, [relevant, callback](const QDBusMessage &message) {
                if (relevant(message))
                    callback();
            }) != nullptr;
        };
    };
    InputSources sources{
        [backend] { return enabled(*backend); }, [backend](const QString &id) { return matching(*backend, id); },
        [backend] { return currentID(*backend); }, [backend](const QString &id) { return select(*backend, id); },
        // IBus has no system-wide secure entry; password fields are the applications' business.
        [] { return false; }, observe(isSelection), observe(isEnabledSet), QStringLiteral("ibus"),
        // IBus applies every engine at SetGlobalEngine.
        false};
    // A setxkbmap that replaced the engine's layout changes what currentID reads, with no word from IBus.
    sources.observeSelected = [observeEngine = sources.observeSelected](QObject *context,
                                                                        std::function<void()> callback) {
        if (X11Layout::isX11Session())
            X11Layout::observe(context, callback);
        return observeEngine(context, std::move(callback));
    };
    sources.availability = [backend] { return backend->bus().availability(); };
    return sources;
}

} // namespace IBusInputSources
