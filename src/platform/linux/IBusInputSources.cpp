#include "platform/linux/IBusInputSources.h"

#include "platform/linux/IBusAddress.h"
#include "platform/linux/IBusBus.h"
#include "platform/linux/IBusEngineDesc.h"
#include "platform/linux/IBusNames.h"

#include <QDBusArgument>
#include <QDBusError>
#include <QDBusVariant>

#include <memory>

namespace {

const QString propertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");

QVariant firstArgument(const QDBusMessage &reply)
{
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
        return {};
    return reply.arguments().constFirst();
}

// One of IBus's "general" settings, as its configuration service keeps them.
QVariant generalSetting(IBusBus &bus, const QString &name)
{
    return IBusEngineDesc::unwrap(
        firstArgument(bus.call(IBusNames::configService, IBusNames::configPath, IBusNames::configInterface,
                               QStringLiteral("GetValue"), {QStringLiteral("general"), name})));
}

// The daemon only accepts the preload list; what the user chose is kept by
// IBus's configuration service, the same setting the IBus panel preloads from.
QStringList preloadEngines(IBusBus &bus)
{
    const QVariant value = generalSetting(bus, QStringLiteral("preload_engines"));
    if (value.metaType() == QMetaType::fromType<QStringList>())
        return value.toStringList();
    if (value.metaType() == QMetaType::fromType<QDBusArgument>()) {
        const QDBusArgument argument = value.value<QDBusArgument>();
        if (argument.currentSignature() == QLatin1String("as"))
            return qdbus_cast<QStringList>(argument);
    }
    return {};
}

// IBus answers in the order asked and leaves out names it does not know.
QVariantList engineDescs(IBusBus &bus, const QStringList &names)
{
    if (names.isEmpty())
        return {};
    const QVariant value = firstArgument(bus.call(IBusNames::service, IBusNames::path, IBusNames::interface,
                                                  QStringLiteral("GetEnginesByNames"), {names}));
    if (value.metaType() != QMetaType::fromType<QDBusArgument>())
        return {};
    const QDBusArgument argument = value.value<QDBusArgument>();
    if (argument.currentSignature() != QLatin1String("av"))
        return {};
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

QList<SourceProperties> describe(const QVariantList &descs, const QStringList &enabledNames)
{
    QList<SourceProperties> sources;
    for (const QVariant &desc : descs) {
        std::optional<SourceProperties> source = IBusEngineDesc::properties(desc);
        if (!source)
            continue;
        const bool named = source->id.metaType() == QMetaType::fromType<QString>();
        source->enabled = named && enabledNames.contains(source->id.toString());
        sources << *source;
    }
    return sources;
}

QList<SourceProperties> enabled(IBusBus &bus)
{
    const QStringList names = preloadEngines(bus);
    return describe(engineDescs(bus, names), names);
}

QList<SourceProperties> matching(IBusBus &bus, const QString &id)
{
    const QVariantList descs = engineDescs(bus, {id});
    return descs.isEmpty() ? QList<SourceProperties>() : describe(descs, preloadEngines(bus));
}

QVariant globalEngine(IBusBus &bus)
{
    return firstArgument(bus.call(IBusNames::service, IBusNames::path, propertiesInterface, QStringLiteral("Get"),
                                  {IBusNames::interface, QStringLiteral("GlobalEngine")}));
}

QString currentID(IBusBus &bus)
{
    return IBusEngineDesc::name(globalEngine(bus));
}

// What IBus's own tools do after SetGlobalEngine on X11: set the X layout to
// the engine's, unless the user told IBus to keep the system's layout. Under
// Wayland the compositor owns the keymap and IBus leaves it alone too.
bool applyLayout(IBusBus &bus)
{
    if (!X11Layout::isX11Session())
        return true;
    const QVariant keepSystemLayout = generalSetting(bus, QStringLiteral("use_system_keyboard_layout"));
    if (keepSystemLayout.metaType() == QMetaType::fromType<bool>() && keepSystemLayout.toBool())
        return true;
    const std::optional<X11Layout::Names> names = IBusEngineDesc::layout(globalEngine(bus));
    return names && X11Layout::apply(*names);
}

qint32 select(IBusBus &bus, const QString &id)
{
    const QDBusMessage reply = bus.call(IBusNames::service, IBusNames::path, IBusNames::interface,
                                        QStringLiteral("SetGlobalEngine"), {id}, IBusBus::selectTimeoutMs);
    if (reply.type() == QDBusMessage::ReplyMessage)
        return applyLayout(bus) ? 0 : InputSources::layoutNotApplied;
    switch (QDBusError(reply).type()) {
    case QDBusError::Disconnected:
    case QDBusError::ServiceUnknown: return InputSources::unavailable;
    case QDBusError::NoReply:
    case QDBusError::Timeout:
    case QDBusError::TimedOut: return InputSources::noReply;
    default: return InputSources::refused;
    }
}

} // namespace

namespace IBusInputSources {

InputSources at(std::function<QString()> address)
{
    const auto bus = std::make_shared<IBusBus>(std::move(address));
    InputSources sources{[bus] { return enabled(*bus); }, [bus](const QString &id) { return matching(*bus, id); },
                         [bus] { return currentID(*bus); }, [bus](const QString &id) { return select(*bus, id); },
                         // IBus has no system-wide secure entry; password fields are the applications' business.
                         [] { return false; },
                         [bus](QObject *context, std::function<void()> callback) {
                             return bus->observe(IBusBus::Change::Selected, context, std::move(callback));
                         },
                         [bus](QObject *context, std::function<void()> callback) {
                             return bus->observe(IBusBus::Change::Enabled, context, std::move(callback));
                         },
                         QStringLiteral("ibus"),
                         // IBus applies every engine at SetGlobalEngine.
                         false};
    sources.availability = [bus] { return bus->availability(); };
    return sources;
}

} // namespace IBusInputSources
