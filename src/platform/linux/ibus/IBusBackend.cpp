#include "platform/linux/ibus/IBusBackend.h"

#include "platform/linux/ibus/IBusNames.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusVariant>
#include <QThread>

namespace {

const QString propertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");

QVariant firstArgument(const QDBusMessage &reply)
{
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
        return {};
    return reply.arguments().constFirst();
}

} // namespace

IBusBackend::IBusBackend(std::function<QString()> address, std::function<void()> sent)
    : m_bus(std::move(address), std::move(sent))
{}

bool IBusBackend::changes(const QDBusMessage &signal, const char *underscored)
{
    const QVariantList arguments = signal.arguments();
    if (signal.type() != QDBusMessage::SignalMessage || signal.member() != QLatin1String("ValueChanged")
        || arguments.value(0).toString() != QLatin1String("general"))
        return false;
    // IBus's GSettings keys use dashes, its own configuration service underscores.
    const QString name = arguments.value(1).toString();
    return name == QLatin1String(underscored)
           || QString(name).replace(QLatin1Char('-'), QLatin1Char('_')) == QLatin1String(underscored);
}

// Whether what is known may be used now; starts listening on first use.
bool IBusBackend::trusted()
{
    // Without an event loop turning, a program may well have learnt of a
    // change some other way before IBus's signal reached this process.
    if (QThread::currentThread()->loopLevel() == 0)
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
    if (m_known.generation != m_bus.generation())
        forgetAll();
    return true;
}

void IBusBackend::heard(const QDBusMessage &message)
{
    const QString member = message.member();
    if (message.type() != QDBusMessage::SignalMessage || m_known.generation != m_bus.generation()) {
        forgetAll();
    } else if (member == QLatin1String("GlobalEngineChanged")) {
        m_known.current = message.arguments().value(0).toString();
    } else if (member == QLatin1String("RegistryChanged")) {
        m_known.preload.reset();
        m_known.engines.clear();
        m_known.unknownEngines.clear();
    } else {
        if (changes(message, "preload_engines"))
            m_known.preload.reset();
        if (changes(message, "use_system_keyboard_layout"))
            m_known.keepSystemLayout.reset();
    }
}

// Nothing is known yet of the current connection.
void IBusBackend::forgetAll()
{
    m_known = Known();
    m_known.generation = m_bus.generation();
}

template <typename Field, typename Read> auto IBusBackend::cached(Field Known::*field, Read read)
{
    const bool trust = trusted();
    if (trust && m_known.*field)
        return *(m_known.*field);
    const quint64 generation = m_bus.generation();
    const std::optional value = read();
    if (trust && value && m_known.generation == generation)
        m_known.*field = value;
    return value.value_or(typename Field::value_type());
}

void IBusBackend::selected(const QString &id)
{
    if (trusted() && m_known.current != id)
        m_known.current.reset();
}

QList<IBusEngineDesc::Engine> IBusBackend::engines(const QStringList &names)
{
    const bool trust = trusted();
    QStringList missing = names;
    QHash<QString, IBusEngineDesc::Engine> found;
    if (trust) {
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
        if (trust && descs && m_known.generation == generation) {
            m_known.engines.insert(fetched);
            for (const QString &name : std::as_const(missing))
                if (!fetched.contains(name))
                    m_known.unknownEngines.insert(name);
        }
    }
    QList<IBusEngineDesc::Engine> result;
    for (const QString &name : names)
        if (const auto engine = found.constFind(name); engine != found.cend())
            result << *engine;
    return result;
}

QStringList IBusBackend::preload()
{
    return cached(&Known::preload, [this] { return preloadEngines(); });
}

bool IBusBackend::keepSystemLayout()
{
    return cached(&Known::keepSystemLayout, [this]() -> std::optional<bool> {
        const std::optional<QVariant> value = generalSetting(QStringLiteral("use_system_keyboard_layout"));
        if (!value)
            return std::nullopt;
        return value->metaType() == QMetaType::fromType<bool>() && value->toBool();
    });
}

std::optional<bool> IBusBackend::generalFlag(const QString &name)
{
    const std::optional<QVariant> value = generalSetting(name);
    if (!value || value->metaType() != QMetaType::fromType<bool>())
        return std::nullopt;
    return value->toBool();
}

QString IBusBackend::globalEngine(std::optional<IBusEngineDesc::Engine> *described)
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

// One of IBus's "general" settings, as its configuration service keeps them.
std::optional<QVariant> IBusBackend::generalSetting(const QString &name)
{
    const QDBusMessage reply = m_bus.call(IBusNames::configService, IBusNames::configPath, IBusNames::configInterface,
                                          QStringLiteral("GetValue"), {QStringLiteral("general"), name});
    if (reply.type() != QDBusMessage::ReplyMessage)
        return std::nullopt;
    return IBusEngineDesc::unwrap(firstArgument(reply));
}

// The daemon only accepts the preload list; what the user chose is kept by
// IBus's configuration service, the same setting the IBus panel preloads from.
std::optional<QStringList> IBusBackend::preloadEngines()
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
std::optional<QVariantList> IBusBackend::engineDescs(const QStringList &names)
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
