#include "platform/linux/fcitx5/Fcitx5InputSources.h"

#include "platform/linux/dbus/DBusBuses.h"
#include "platform/linux/dbus/KnownSources.h"
#include "platform/linux/dbus/SelectStatus.h"
#include "platform/linux/dbus/SignalReceiver.h"
#include "platform/linux/fcitx5/Fcitx5Addon.h"
#include "platform/linux/fcitx5/Fcitx5Controller.h"
#include "platform/linux/fcitx5/Fcitx5Poll.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QHash>
#include <QPointer>
#include <QSettings>
#include <QStandardPaths>

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

namespace {

using namespace std::chrono_literals;

// Without Tolvar's addon Fcitx5 announces no switch to outside programs.
// Looking four times a second undoes an outside switch within a blink (median
// 160 ms, p95 200 ms: bench/run-engine --backend fcitx5 --no-addon). Each look
// is a wake-up and a call while a source is kept; while none is, nothing looks.
constexpr auto selectionInterval = 250ms;
// Nor a changed group: the controller declares a signal for it but never sends
// it. A group is edited seldom, and its look costs two calls.
constexpr auto groupInterval = 2s;

struct Entry
{
    QString name;
    QString icon;
    QString language;
};

// Every input method Fcitx5 has loaded, by unique name.
QHash<QString, Entry> available()
{
    QHash<QString, Entry> entries;
    const QDBusArgument argument =
        Fcitx5Controller::argument(Fcitx5Controller::call(QStringLiteral("AvailableInputMethods")), 0, "a(ssssssb)");
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
    return Fcitx5Controller::groupItems(Fcitx5Controller::call(QStringLiteral("InputMethodGroupInfo"), {group}));
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

bool lookAtCurrent(QObject *context, std::function<void(std::optional<QString>)> seen)
{
    return Fcitx5Controller::callLater(QStringLiteral("CurrentInputMethod"), {}, context,
                                       [seen](const QDBusMessage &reply) { seen(Fcitx5Controller::text(reply)); });
}

// The current group's name and items as one text, which a switch to another
// group and an edit of this one both change.
bool lookAtGroup(QObject *context, std::function<void(std::optional<QString>)> seen)
{
    return Fcitx5Controller::callLater(
        QStringLiteral("CurrentInputMethodGroup"), {}, context, [context, seen](const QDBusMessage &reply) {
            const QString group = Fcitx5Controller::text(reply);
            if (group.isEmpty()) {
                seen(group);
                return;
            }
            const auto items = [group, seen](const QDBusMessage &info) {
                seen((QStringList{group} + Fcitx5Controller::groupItems(info)).join(u'\n'));
            };
            if (!Fcitx5Controller::callLater(QStringLiteral("InputMethodGroupInfo"), {group}, context, items))
                seen(std::nullopt);
        });
}

// How every observer learns of a switch or a changed group: from Tolvar's
// addon while Fcitx5 has it loaded, else by polls, started and stopped
// together. The addon comes and goes with Fcitx5, which may start again with
// or without it.
class Watches : public std::enable_shared_from_this<Watches>
{
public:
    bool addSelected(QObject *context, std::function<void()> callback)
    {
        return add(context, std::move(callback), QStringLiteral("CurrentChanged"), lookAtCurrent, selectionInterval,
                   m_selection);
    }

    // `callback` forgets the kept list itself (observeEnabled).
    bool addGroups(QObject *context, std::function<void()> callback)
    {
        return add(context, std::move(callback), QStringLiteral("GroupsChanged"), lookAtGroup, groupInterval, m_groups);
    }

    // Without the addon the group's look is the list's only signal: while one
    // runs and knows the group, the list read once is kept until it tells.
    QList<SourceProperties> enabled(const std::function<QList<SourceProperties>()> &read)
    {
        const bool watched = std::any_of(m_groups.cbegin(), m_groups.cend(),
                                         [](const QPointer<Fcitx5Poll> &poll) { return poll && poll->knows(); });
        if (!watched)
            return read();
        if (!m_enabled)
            m_enabled = read();
        return *m_enabled;
    }

    // A changed group, or Fcitx5 started again, perhaps with other methods.
    void forget() { m_enabled.reset(); }

    // Told at every look of the engine's; only a change starts or stops anything.
    void setNeeded(bool needed)
    {
        if (std::exchange(m_needed, needed) != needed)
            apply();
    }

    // Our own switch is no change to report, and a look that missed it would
    // take the next outside switch back to the same method for no change.
    void selected(const QString &current)
    {
        for (const QPointer<Fcitx5Poll> &poll : std::as_const(m_selection))
            if (poll)
                poll->setLast(current);
    }

private:
    using Polls = QList<QPointer<Fcitx5Poll>>;

    bool add(QObject *context, std::function<void()> callback, const QString &signal, const Fcitx5Poll::Look &look,
             std::chrono::milliseconds interval, Polls &polls)
    {
        const std::optional<QDBusConnection> session = DBusBuses::session();
        if (!context || !session)
            return false;
        QDBusConnection bus = *session;
        auto *receiver = new SignalReceiver(callback, context);
        if (!bus.connect(Fcitx5Addon::service, Fcitx5Addon::path, Fcitx5Addon::interface, signal, receiver,
                         SLOT(deliver()))) {
            delete receiver;
            return false;
        }
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
        polls.removeIf([](const QPointer<Fcitx5Poll> &poll) { return poll.isNull(); });
        polls << new Fcitx5Poll(look, std::move(callback), interval, receiver);
        setAddon(Fcitx5Addon::present());
        return true;
    }

    void setAddon(bool present)
    {
        m_addon = present;
        apply();
    }

    void apply()
    {
        forget();
        for (const Polls *polls : {&m_selection, &m_groups})
            for (const QPointer<Fcitx5Poll> &poll : *polls)
                if (poll)
                    poll->setRunning(m_needed && !m_addon);
    }

    bool m_needed = true;
    bool m_addon = false;
    Polls m_selection;
    Polls m_groups;
    std::optional<QList<SourceProperties>> m_enabled;
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

// A changed group, and Fcitx5 starting again, can change the list.
bool observeEnabled(QObject *context, std::function<void()> callback, const std::shared_ptr<Watches> &watches)
{
    const std::optional<QDBusConnection> session = DBusBuses::session();
    if (!context || !session)
        return false;
    // Whoever tells of a change, the list kept so far is read again.
    const std::function<void()> changed = [weak = std::weak_ptr<Watches>(watches), callback] {
        if (const auto known = weak.lock())
            known->forget();
        callback();
    };
    auto *receiver = new SignalReceiver(changed, context);
    QDBusConnection bus = *session;
    auto *watcher =
        new QDBusServiceWatcher(Fcitx5Controller::service, bus, QDBusServiceWatcher::WatchForRegistration, receiver);
    QObject::connect(watcher, &QDBusServiceWatcher::serviceRegistered, receiver, &SignalReceiver::deliver);
    // Should a later Fcitx5 send the signal it declares.
    bus.connect(Fcitx5Controller::service, Fcitx5Controller::path, Fcitx5Controller::interface,
                QStringLiteral("InputMethodGroupsChanged"), receiver, SLOT(deliver()));
    return watches->addGroups(context, changed);
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
    InputSources sources{.enabled = [watches] { return watches->enabled([] { return describe(groupItems()); }); },
                         // From the enabled sources, as known.
                         .matching = {},
                         .currentID = currentID,
                         .select = [watches](const QString &id) { return selectIM(id, *watches); },
                         // No system-wide secure entry: password fields are the applications' business.
                         .secureInput = [] { return false; },
                         .observeSelected =
                             [watches](QObject *context, std::function<void()> callback) {
                                 return watches->addSelected(context, std::move(callback));
                             },
                         .observeEnabled =
                             [watches](QObject *context, std::function<void()> callback) {
                                 return observeEnabled(context, std::move(callback), watches);
                             },
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
