#include "platform/linux/plasma/PlasmaInputSources.h"

#include "platform/linux/dbus/DBusBuses.h"
#include "platform/linux/dbus/KnownSources.h"
#include "platform/linux/dbus/SignalReceiver.h"
#include "platform/linux/plasma/KxkbrcSettings.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QSettings>

namespace {

const QString service = QStringLiteral("org.kde.keyboard");
const QString path = QStringLiteral("/Layouts");
const QString interface = QStringLiteral("org.kde.KeyboardLayouts");
constexpr int callTimeoutMs = 1000;

QDBusMessage call(const QString &method, const QVariantList &arguments = {})
{
    QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, method);
    message.setArguments(arguments);
    // Nothing is to start because Tolvar asked.
    message.setAutoStartService(false);
    return DBusBuses::callSession(message, callTimeoutMs);
}

struct Layout
{
    QString id;
    QString name;
};

// Plasma's layouts; none when it offers no service.
std::optional<QList<Layout>> running(const KxkbrcSettings &settings)
{
    const QDBusMessage reply = call(QStringLiteral("getLayoutsList"));
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
        return std::nullopt;
    const QVariant value = reply.arguments().constFirst();
    if (value.metaType() != QMetaType::fromType<QDBusArgument>())
        return QList<Layout>();
    const QDBusArgument argument = value.value<QDBusArgument>();
    if (argument.currentSignature() != QLatin1String("a(sss)"))
        return QList<Layout>();
    QList<Layout> layouts;
    argument.beginArray();
    while (!argument.atEnd()) {
        QString shortName, displayName, longName;
        argument.beginStructure();
        argument >> shortName >> displayName >> longName;
        argument.endStructure();
        layouts << Layout{settings.id(layouts.size(), shortName), longName};
    }
    argument.endArray();
    return layouts;
}

// Plasma offers no service, as with a single layout.
bool unserved(const QDBusMessage &reply)
{
    return reply.type() == QDBusMessage::ErrorMessage && QDBusError(reply).type() == QDBusError::ServiceUnknown;
}

// The single layout of the settings, when Plasma has no service because of it.
QList<Layout> alone(const KxkbrcSettings &settings)
{
    if (settings.layouts.size() != 1 || settings.layouts.constFirst().isEmpty())
        return {};
    return {Layout{settings.id(0, settings.layouts.constFirst()), QString()}};
}

class Layouts
{
public:
    explicit Layouts(QString kxkbrc)
        : m_kxkbrc(std::move(kxkbrc))
    {}

    QList<SourceProperties> enabled(const QString &only = {}) const
    {
        const KxkbrcSettings settings = KxkbrcSettings::read(m_kxkbrc);
        QList<SourceProperties> sources;
        for (const Layout &layout : running(settings).value_or(alone(settings))) {
            if (only.isEmpty() || layout.id == only)
                sources << describe(layout);
        }
        return sources;
    }

    // `enabled`: the layouts as known, in Plasma's order, which its indices follow.
    static QString currentID(const QList<SourceProperties> &enabled)
    {
        const QDBusMessage reply = call(QStringLiteral("getLayout"));
        if (reply.type() == QDBusMessage::ReplyMessage && !reply.arguments().isEmpty())
            return enabled.value(reply.arguments().constFirst().toUInt()).id.toString();
        // Without Plasma's service, its one layout is the current one.
        return unserved(reply) && enabled.size() == 1 ? enabled.constFirst().id.toString() : QString();
    }

    // KWin keeps serving /Layouts with one layout or none; none is KWin
    // without a keyboard, where there is nothing to read or switch.
    InputSources::Availability availability() const
    {
        const std::optional<QList<Layout>> layouts = running(KxkbrcSettings::read(m_kxkbrc));
        return layouts && layouts->isEmpty() ? InputSources::Availability::noKeyboard
                                             : InputSources::Availability::available;
    }

    static qint32 select(const QString &id, const QList<SourceProperties> &enabled)
    {
        const auto found = std::find_if(enabled.cbegin(), enabled.cend(),
                                        [&](const SourceProperties &layout) { return layout.id == id; });
        if (found == enabled.cend())
            return InputSources::refused;
        const QDBusMessage reply =
            call(QStringLiteral("setLayout"), {static_cast<uint>(std::distance(enabled.cbegin(), found))});
        if (unserved(reply))
            return enabled.size() == 1 ? 0 : InputSources::unavailable;
        if (reply.type() != QDBusMessage::ReplyMessage)
            return QDBusError(reply).type() == QDBusError::NoReply ? InputSources::noReply : InputSources::unavailable;
        // False: Plasma no longer has that index.
        return reply.arguments().value(0).toBool() ? 0 : InputSources::refused;
    }

private:
    static SourceProperties describe(const Layout &layout)
    {
        return SourceProperties::keyboard(layout.id, layout.name.isEmpty() ? layout.id : layout.name);
    }

    QString m_kxkbrc;
};

// `signal` from Plasma, and also Plasma offering or dropping its service, as
// it does when the number of layouts crosses one.
bool observe(const QString &signal, bool serviceToo, QObject *context, std::function<void()> callback)
{
    const std::optional<QDBusConnection> session = DBusBuses::session();
    if (!context || !session)
        return false;
    auto *receiver = new SignalReceiver(std::move(callback), context);
    QDBusConnection bus = *session;
    if (serviceToo) {
        auto *watcher = new QDBusServiceWatcher(service, bus, QDBusServiceWatcher::WatchForOwnerChange, receiver);
        QObject::connect(watcher, &QDBusServiceWatcher::serviceOwnerChanged, receiver, &SignalReceiver::deliver);
    }
    return bus.connect(service, path, interface, signal, receiver, SLOT(deliver()));
}

// Plasma's switching policy: with any other than Global, KWin gives each
// window, application or desktop back the layout it had last.
StackReport report(const QString &kxkbrc)
{
    if (const StackReport::Reach reach = DBusBuses::reachOf(call(QStringLiteral("getLayout")));
        reach != StackReport::Reach::answered)
        return {.reach = reach};
    const QString mode = QSettings(kxkbrc, QSettings::IniFormat)
                             .value(QStringLiteral("Layout/SwitchMode"), QStringLiteral("Global"))
                             .toString();
    return {.settings = {StackSetting{kxkbrc + QStringLiteral(" [Layout] SwitchMode"), mode,
                                      mode == QLatin1String("Global") ? StackSetting::Effect::none
                                                                      : StackSetting::Effect::switchesPerWindow}}};
}

} // namespace

namespace PlasmaInputSources {

InputSources at(const QString &kxkbrc)
{
    const auto layouts = std::make_shared<Layouts>(kxkbrc);
    // layoutChanged carries an index into the list, which layoutListChanged says has changed.
    const auto known = std::make_shared<KnownSources>(KnownSources::Signals{
        .service = service,
        .path = path,
        .interface = interface,
        .currentChanged = QStringLiteral("layoutChanged"),
        .currentOf = [](const QDBusMessage &signal, const QList<SourceProperties> *enabled) -> std::optional<QString> {
            const qsizetype index = signal.arguments().value(0).toUInt();
            if (!enabled || index >= enabled->size())
                return std::nullopt;
            return enabled->at(index).id.toString();
        },
        .listChanged = {QStringLiteral("layoutListChanged")}});
    const auto enabled = [layouts, known] { return known->enabled([layouts] { return layouts->enabled(); }); };
    InputSources sources{[layouts] { return layouts->enabled(); },
                         // From the enabled sources, as known.
                         {},
                         [enabled] { return Layouts::currentID(enabled()); },
                         [enabled](const QString &id) { return Layouts::select(id, enabled()); },
                         [] { return false; },
                         [](QObject *context, std::function<void()> callback) {
                             return observe(QStringLiteral("layoutChanged"), true, context, std::move(callback));
                         },
                         [](QObject *context, std::function<void()> callback) {
                             return observe(QStringLiteral("layoutListChanged"), true, context, std::move(callback));
                         },
                         QStringLiteral("plasma"),
                         false};
    sources.availability = [layouts] { return layouts->availability(); };
    sources.report = [kxkbrc] { return report(kxkbrc); };
    return KnownSources::remember(sources, known);
}

InputSources live()
{
    return at(KxkbrcSettings::path());
}

} // namespace PlasmaInputSources
