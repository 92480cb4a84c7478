#include "platform/linux/ibus/IBusInputSources.h"

#include "platform/linux/dbus/SelectStatus.h"
#include "platform/linux/ibus/IBusBackend.h"
#include "platform/linux/ibus/IBusNames.h"

#include <memory>
#include <optional>

namespace {

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

QList<SourceProperties> enabled(IBusBackend &backend)
{
    const QStringList names = backend.preload();
    return names.isEmpty() ? QList<SourceProperties>() : describe(backend.engines(names), names);
}

QList<SourceProperties> matching(IBusBackend &backend, const QString &id)
{
    const QList<IBusEngineDesc::Engine> engines = backend.engines({id});
    return engines.isEmpty() ? QList<SourceProperties>() : describe(engines, backend.preload());
}

// The X layout IBus's tools set after switching on X11, unless the user told
// IBus to keep the system's layout. Under Wayland the compositor owns the
// keymap and IBus leaves it alone too.
std::optional<X11Layout::Names> engineLayout(IBusBackend &backend, const QString &id,
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
QString currentID(IBusBackend &backend)
{
    std::optional<IBusEngineDesc::Engine> described;
    const QString id = backend.globalEngine(&described);
    const std::optional<X11Layout::Names> layout = engineLayout(backend, id, described);
    return layout && X11Layout::differs(*layout) ? QString() : id;
}

qint32 select(IBusBackend &backend, const QString &id)
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

StackReport report(IBusBackend &backend)
{
    using Effect = StackSetting::Effect;
    StackReport report;
    const auto read = [&](const char *underscored, const char *dashed, Effect whenOn, Effect whenOff,
                          StackSetting::Concern concern) {
        if (const std::optional<bool> on = backend.generalFlag(QLatin1String(underscored)))
            report.settings << StackSetting{QStringLiteral("org.freedesktop.ibus.general ") + QLatin1String(dashed),
                                            *on ? QStringLiteral("true") : QStringLiteral("false"),
                                            *on ? whenOn : whenOff, concern};
    };
    // Off, IBus's panel gives each window back the engine it had last.
    read("use_global_engine", "use-global-engine", Effect::none, Effect::switchesPerWindow,
         StackSetting::Concern::switching);
    read("use_system_keyboard_layout", "use-system-keyboard-layout", Effect::keepsSystemLayout, Effect::none,
         StackSetting::Concern::layout);
    return report;
}

bool isSelection(const QDBusMessage &message)
{
    return message.type() != QDBusMessage::SignalMessage || message.member() == QLatin1String("GlobalEngineChanged");
}

// Installed or removed engines change which enabled names IBus can describe.
bool isEnabledSet(const QDBusMessage &message)
{
    return message.type() != QDBusMessage::SignalMessage || message.member() == QLatin1String("RegistryChanged")
           || IBusBackend::changes(message, "preload_engines");
}

} // namespace

namespace IBusInputSources {

InputSources at(std::function<QString()> address, std::function<void()> sent)
{
    const auto backend = std::make_shared<IBusBackend>(std::move(address), std::move(sent));
    const auto observe = [backend](bool (*relevant)(const QDBusMessage &)) {
        return [backend, relevant](QObject *context, std::function<void()> callback) {
            return backend->bus().observe(context, [relevant, callback](const QDBusMessage &message) {
                if (relevant(message))
                    callback();
            }) != nullptr;
        };
    };
    InputSources sources{.enabled = [backend] { return enabled(*backend); },
                         .matching = [backend](const QString &id) { return matching(*backend, id); },
                         .currentID = [backend] { return currentID(*backend); },
                         .select = [backend](const QString &id) { return select(*backend, id); },
                         // IBus has no system-wide secure entry; password fields are the applications' business.
                         .secureInput = [] { return false; },
                         .observeSelected = observe(isSelection),
                         .observeEnabled = observe(isEnabledSet),
                         .backend = QStringLiteral("ibus"),
                         // IBus applies every engine at SetGlobalEngine.
                         .cjkvNeedsFocus = false};
    // A setxkbmap that replaced the engine's layout changes what currentID reads, with no word from IBus.
    sources.observeSelected = [observeEngine = sources.observeSelected](QObject *context,
                                                                        std::function<void()> callback) {
        if (X11Layout::isX11Session())
            X11Layout::observe(context, callback);
        return observeEngine(context, std::move(callback));
    };
    sources.availability = [backend] { return backend->bus().availability(); };
    sources.report = [backend] { return report(*backend); };
    return sources;
}

} // namespace IBusInputSources
