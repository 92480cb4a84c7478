#include "platform/linux/fcitx5/Fcitx5InputSources.h"

#include "platform/linux/dbus/DBusBuses.h"
#include "platform/linux/dbus/KnownSources.h"
#include "platform/linux/dbus/SelectStatus.h"
#include "platform/linux/dbus/SignalReceiver.h"
#include "platform/linux/fcitx5/Fcitx5Addon.h"
#include "platform/linux/fcitx5/Fcitx5Controller.h"
#include "platform/linux/fcitx5/Fcitx5SelectionPoll.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QHash>
#include <QPointer>
#include <QSettings>
#include <QStandardPaths>

#include <memory>

namespace {

using namespace std::chrono_literals;

// Without Tolvar's addon Fcitx5 announces no switch to outside programs.
// Looking four times a second undoes an outside switch within a blink (engine
// bench: median 160 ms, p95 200 ms); each look costs about 0.25 ms of CPU,
// some 60 ms a minute while a source is kept, and nothing while none is
// (bench/run-engine --backend fcitx5).
constexpr auto pollInterval = 250ms;

struct Entry
{
    QString name;
    QString icon;
    QString language;
};

QDBusArgument argumentOf(const QDBusMessage &reply, qsizetype index, const char *signature)
{
    if (reply.type() != QDBusMessage::ReplyMessage)
        return {};
    const QVariant value = reply.arguments().value(index);
    if (value.metaType() != QMetaType::fromType<QDBusArgument>())
        return {};
    QDBusArgument argument = value.value<QDBusArgument>();
    return argument.currentSignature() == QLatin1String(signature) ? argument : QDBusArgument();
}

// Every input method Fcitx5 has loaded, by unique name.
QHash<QString, Entry> available()
{
    QHash<QString, Entry> entries;
    const QDBusArgument argument =
        argumentOf(Fcitx5Controller::call(QStringLiteral("AvailableInputMethods")), 0, "a(ssssssb)");
    if (argument.currentSignature().isEmpty())
        return entries;
    argument.beginArray();
    while (!argument.atEnd()) {
        QString uniqueName, nativeName, label;
        Entry entry;
        bool configurable = false;
        argument.beginStructure();
        argument >> uniqueName >> entry.name >> nativeName >> entry.icon >> label >> entry.language >> configurable;
        argument.endStructure();
        entries.insert(uniqueName, entry);
    }
    argument.endArray();
    return entries;
}

// The unique names of the current group's items, in the group's order.
QStringList groupItems()
{
    const QString group = Fcitx5Controller::text(Fcitx5Controller::call(QStringLiteral("CurrentInputMethodGroup")));
    if (group.isEmpty())
        return {};
    const QDBusArgument argument =
        argumentOf(Fcitx5Controller::call(QStringLiteral("InputMethodGroupInfo"), {group}), 1, "a(ss)");
    if (argument.currentSignature().isEmpty())
        return {};
    QStringList names;
    argument.beginArray();
    while (!argument.atEnd()) {
        QString name, layout;
        argument.beginStructure();
        argument >> name >> layout;
        argument.endStructure();
        names << name;
    }
    argument.endArray();
    return names;
}

// An item whose method Fcitx5 has not loaded cannot be selected; it keeps its
// name as its only property.
SourceProperties describe(const QString &name, const QHash<QString, Entry> &entries)
{
    SourceProperties source;
    source.id = name;
    source.enabled = true;
    source.category = SourceProperties::keyboardCategory;
    const auto entry = entries.constFind(name);
    source.selectCapable = entry != entries.constEnd();
    if (entry == entries.constEnd())
        return source;
    source.localizedName = entry->name;
    source.languages = entry->language.isEmpty() ? QStringList() : QStringList{entry->language};
    if (!entry->icon.isEmpty())
        source.iconReference = entry->icon;
    return source;
}

QList<SourceProperties> describe(const QStringList &names)
{
    if (names.isEmpty())
        return {};
    const QHash<QString, Entry> entries = available();
    QList<SourceProperties> sources;
    for (const QString &name : names)
        sources << describe(name, entries);
    return sources;
}

QString currentID()
{
    return Fcitx5Controller::text(Fcitx5Controller::call(QStringLiteral("CurrentInputMethod")));
}

qint32 statusOf(const QDBusMessage &reply)
{
    return reply.type() == QDBusMessage::ReplyMessage ? 0 : SelectStatus::ofError(reply);
}

// How every observer learns of a switch: from Tolvar's addon while Fcitx5 has
// it loaded, else by polls, started and stopped together. The addon comes and
// goes with Fcitx5, which may start again with or without it.
class Watches : public std::enable_shared_from_this<Watches>
{
public:
    bool add(QObject *context, std::function<void()> callback)
    {
        const std::optional<QDBusConnection> session = DBusBuses::session();
        if (!context || !session)
            return false;
        QDBusConnection bus = *session;
        auto *receiver = new SignalReceiver(callback, context);
        bus.connect(Fcitx5Addon::service, Fcitx5Addon::path, Fcitx5Addon::interface, QStringLiteral("CurrentChanged"),
                    receiver, SLOT(deliver()));
        auto *watcher = new QDBusServiceWatcher(
            Fcitx5Addon::service, bus,
            QDBusServiceWatcher::WatchForRegistration | QDBusServiceWatcher::WatchForUnregistration, receiver);
        // Whatever happened while nobody was told is caught up at each change of hands.
        const auto handOver = [self = shared_from_this(), receiver](bool present) {
            self->setAddon(present);
            receiver->deliver();
        };
        QObject::connect(watcher, &QDBusServiceWatcher::serviceRegistered, receiver, [handOver] { handOver(true); });
        QObject::connect(watcher, &QDBusServiceWatcher::serviceUnregistered, receiver, [handOver] { handOver(false); });
        auto *poll = new Fcitx5SelectionPoll(std::move(callback), pollInterval, context);
        m_polls.removeIf([](const QPointer<Fcitx5SelectionPoll> &p) { return p.isNull(); });
        m_polls << poll;
        setAddon(Fcitx5Addon::present());
        return true;
    }

    void setNeeded(bool needed)
    {
        m_needed = needed;
        apply();
    }

    // Our own switch is no change to report, and a look that missed it would
    // take the next outside switch back to the same method for no change.
    void selected(const QString &current)
    {
        for (const QPointer<Fcitx5SelectionPoll> &poll : std::as_const(m_polls))
            if (poll)
                poll->setLast(current);
    }

private:
    void setAddon(bool present)
    {
        m_addon = present;
        apply();
    }

    void apply()
    {
        for (const QPointer<Fcitx5SelectionPoll> &poll : std::as_const(m_polls))
            if (poll)
                poll->setRunning(m_needed && !m_addon);
    }

    bool m_needed = true;
    bool m_addon = false;
    QList<QPointer<Fcitx5SelectionPoll>> m_polls;
};

// Fcitx5 accepts any name without a word: only reading back tells.
qint32 selectIM(const QString &id, Watches &watches)
{
    if (const qint32 status = statusOf(Fcitx5Controller::call(QStringLiteral("SetCurrentIM"), {id})); status != 0)
        return status;
    const QString current = currentID();
    watches.selected(current);
    return current == id ? 0 : InputSources::refused;
}

// A changed group, and Fcitx5 starting again, can change the list. Only the
// addon tells of a changed group: the controller declares its signal but never
// sends it.
bool observeEnabled(QObject *context, std::function<void()> callback)
{
    const std::optional<QDBusConnection> session = DBusBuses::session();
    if (!context || !session)
        return false;
    auto *receiver = new SignalReceiver(std::move(callback), context);
    QDBusConnection bus = *session;
    auto *watcher =
        new QDBusServiceWatcher(Fcitx5Controller::service, bus, QDBusServiceWatcher::WatchForRegistration, receiver);
    QObject::connect(watcher, &QDBusServiceWatcher::serviceRegistered, receiver, &SignalReceiver::deliver);
    bus.connect(Fcitx5Controller::service, Fcitx5Controller::path, Fcitx5Controller::interface,
                QStringLiteral("InputMethodGroupsChanged"), receiver, SLOT(deliver()));
    return bus.connect(Fcitx5Addon::service, Fcitx5Addon::path, Fcitx5Addon::interface, QStringLiteral("GroupsChanged"),
                       receiver, SLOT(deliver()));
}

// Without a shared input state every input context keeps a method of its own,
// and Fcitx5 gives it back whenever that context gets the focus.
StackReport report()
{
    const QString config =
        QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + QStringLiteral("/fcitx5/config");
    const QString shared = QSettings(config, QSettings::IniFormat)
                               .value(QStringLiteral("Behavior/ShareInputState"), QStringLiteral("No"))
                               .toString();
    const QDBusMessage version = Fcitx5Controller::call(QStringLiteral("Version"));
    if (DBusBuses::reachOf(version) != StackReport::Reach::answered)
        return {.reach = DBusBuses::reachOf(version)};
    return {.version = Fcitx5Controller::text(version),
            .settings = {StackSetting{config + QStringLiteral(" [Behavior] ShareInputState"), shared,
                                      shared == QLatin1String("All") ? StackSetting::Effect::none
                                                                     : StackSetting::Effect::switchesPerWindow}}};
}

} // namespace

namespace Fcitx5InputSources {

InputSources live()
{
    const auto watches = std::make_shared<Watches>();
    // The addon's signals carry the new method, and tell of changed groups.
    const auto known = std::make_shared<KnownSources>(KnownSources::Signals{
        .service = Fcitx5Addon::service,
        .path = Fcitx5Addon::path,
        .interface = Fcitx5Addon::interface,
        .currentChanged = QStringLiteral("CurrentChanged"),
        .currentOf = [](const QDBusMessage &signal,
                        const QList<SourceProperties> *) { return signal.arguments().value(0).toString(); },
        .listChanged = {QStringLiteral("GroupsChanged")}});
    InputSources sources{.enabled = [] { return describe(groupItems()); },
                         // From the enabled sources, as known.
                         .matching = {},
                         .currentID = currentID,
                         .select = [watches](const QString &id) { return selectIM(id, *watches); },
                         // No system-wide secure entry: password fields are the applications' business.
                         .secureInput = [] { return false; },
                         .observeSelected =
                             [watches](QObject *context, std::function<void()> callback) {
                                 return watches->add(context, std::move(callback));
                             },
                         .observeEnabled = observeEnabled,
                         .backend = QStringLiteral("fcitx5"),
                         // SetCurrentIM takes effect at once, whatever the method.
                         .cjkvNeedsFocus = false,
                         .needSelected = [watches](bool needed) { watches->setNeeded(needed); }};
    sources.report = report;
    sources.following = [known] {
        return known->present() ? InputSources::Following::announced : InputSources::Following::polled;
    };
    return KnownSources::remember(sources, known);
}

} // namespace Fcitx5InputSources
