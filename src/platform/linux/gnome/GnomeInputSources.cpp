#include "platform/linux/gnome/GnomeInputSources.h"

#include "platform/input/GnomeShellExtension.h"
#include "platform/linux/dbus/DBusBuses.h"
#include "platform/linux/dbus/KnownSources.h"
#include "platform/linux/dbus/SelectStatus.h"
#include "platform/linux/dbus/SignalReceiver.h"
#include "platform/login/ProgramRunner.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QDeadlineTimer>
#include <QFileInfo>
#include <QStandardPaths>
#include <QStringList>
#include <QThread>

#include <algorithm>

namespace {

const QString service = QStringLiteral("app.tolvar.InputSources");
const QString path = QStringLiteral("/app/tolvar/InputSources");
const QString interface = QStringLiteral("app.tolvar.InputSources1");
// The shell answers from memory, but while it starts up (at login, when the
// background instance starts too) it can be busy for over a second.
constexpr int callTimeoutMs = 2500;
// A check of the machine asks a shell that is up and running.
constexpr int reportTimeoutMs = 1000;

QDBusMessage call(const QString &destination, const QString &objectPath, const QString &iface, const QString &method,
                  const QVariantList &arguments = {}, int timeoutMs = callTimeoutMs)
{
    QDBusMessage message = QDBusMessage::createMethodCall(destination, objectPath, iface, method);
    message.setArguments(arguments);
    message.setAutoStartService(false);
    return DBusBuses::callSession(message, timeoutMs);
}

QDBusMessage callExtension(const QString &method, const QVariantList &arguments = {})
{
    return call(service, path, interface, method, arguments);
}

QVariant firstArgument(const QDBusMessage &reply)
{
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
        return {};
    return reply.arguments().constFirst();
}

bool extensionRunning()
{
    return DBusBuses::sessionHas(service, callTimeoutMs);
}

// The extension's metadata where the shell looks for it; empty when it is not installed.
QString installedAt()
{
    return QStandardPaths::locate(
        QStandardPaths::GenericDataLocation,
        QStringLiteral("gnome-shell/extensions/%1/metadata.json").arg(GnomeShellExtension::uuid));
}

bool installed()
{
    return !installedAt().isEmpty();
}

QDBusMessage extensionInfo(int timeoutMs = callTimeoutMs)
{
    return call(QStringLiteral("org.gnome.Shell"), QStringLiteral("/org/gnome/Shell"),
                QStringLiteral("org.gnome.Shell.Extensions"), QStringLiteral("GetExtensionInfo"),
                {GnomeShellExtension::uuid}, timeoutMs);
}

// A GSettings value in GVariant text, as the shell's own tool prints it; empty when unreadable.
QString setting(const QString &schema, const QString &key)
{
    const ServiceToolResult read =
        ProgramRunner::run(QStringLiteral("gsettings"), {QStringLiteral("get"), schema, key});
    return read.status == 0 ? read.output.trimmed() : QString();
}

StackReport report()
{
    StackReport report;
    const QDBusMessage version =
        call(QStringLiteral("org.gnome.Shell"), QStringLiteral("/org/gnome/Shell"),
             QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"),
             {QStringLiteral("org.gnome.Shell"), QStringLiteral("ShellVersion")}, reportTimeoutMs);
    report.reach = DBusBuses::reachOf(version);
    if (report.reach != StackReport::Reach::answered)
        return report;
    report.version = qvariant_cast<QDBusVariant>(firstArgument(version)).variant().toString();
    // With per-window sources the shell gives each window back the source it had last.
    const QString perWindow = setting(QStringLiteral("org.gnome.desktop.input-sources"), QStringLiteral("per-window"));
    if (!perWindow.isEmpty())
        report.settings << StackSetting{QStringLiteral("org.gnome.desktop.input-sources per-window"), perWindow,
                                        perWindow == QLatin1String("true") ? StackSetting::Effect::switchesPerWindow
                                                                           : StackSetting::Effect::none};
    const QString metadata = installedAt();
    report.companionPath = metadata.isEmpty() ? QString() : QFileInfo(metadata).absolutePath();
    report.companionEnabled = setting(QStringLiteral("org.gnome.shell"), QStringLiteral("enabled-extensions"))
                                  .contains(QLatin1Char('\'') + GnomeShellExtension::uuid + QLatin1Char('\''));
    const QVariantMap info = qdbus_cast<QVariantMap>(firstArgument(extensionInfo(reportTimeoutMs)));
    report.companionError = info.value(QStringLiteral("error")).toString();
    return report;
}

InputSources::Availability availability()
{
    if (extensionRunning())
        return InputSources::Availability::available;
    const QDBusMessage reply = extensionInfo();
    if (reply.type() == QDBusMessage::ErrorMessage) {
        const QString error = reply.errorName();
        if (error == QLatin1String("org.freedesktop.DBus.Error.ServiceUnknown"))
            return InputSources::Availability::notRunning;
        if (error == QLatin1String("org.freedesktop.DBus.Error.NoReply"))
            return InputSources::Availability::notAnswering;
    }
    const QVariant info = firstArgument(reply);
    return GnomeInputSources::whyNotRunning(qdbus_cast<QVariantMap>(info), installed());
}

QList<SourceProperties> enabled()
{
    return GnomeInputSources::describe(firstArgument(callExtension(QStringLiteral("GetSources"))));
}

QString currentID()
{
    const QVariant id = firstArgument(callExtension(QStringLiteral("GetCurrent")));
    return id.metaType() == QMetaType::fromType<QString>() ? id.toString() : QString();
}

// An extension older than this answers with an error: it cannot tell, and
// then the keymap is the shell's own as far as anyone knows.
bool keymapHeld()
{
    const QDBusMessage reply = callExtension(QStringLiteral("GetKeymap"));
    const QVariantList flags = reply.arguments();
    if (reply.type() != QDBusMessage::ReplyMessage || flags.size() != 2)
        return false;
    // External, or locked.
    return std::any_of(flags.cbegin(), flags.cend(), [](const QVariant &flag) {
        return flag.metaType() == QMetaType::fromType<bool>() && flag.toBool();
    });
}

// An extension older than this has no section to show.
bool inKeyboardMenu()
{
    const QVariant shown =
        firstArgument(call(service, path, interface, QStringLiteral("GetMenuShown"), {}, reportTimeoutMs));
    return shown.metaType() == QMetaType::fromType<bool>() && shown.toBool();
}

qint32 activate(const QString &id)
{
    const QDBusMessage reply = callExtension(QStringLiteral("Activate"), {id});
    if (reply.type() == QDBusMessage::ReplyMessage) {
        const QVariant activated = firstArgument(reply);
        return activated.metaType() == QMetaType::fromType<bool>() && activated.toBool() ? 0 : InputSources::refused;
    }
    return SelectStatus::ofError(reply);
}

InputSources::Observe observe(const QStringList &members)
{
    return [members](QObject *context, std::function<void()> callback) {
        const std::optional<QDBusConnection> session = DBusBuses::session();
        if (!session)
            return false;
        QDBusConnection bus = *session;
        auto *receiver = new SignalReceiver(std::move(callback), context);
        // The extension comes to a running session only when the shell starts
        // again; then everything may have changed.
        auto *watcher = new QDBusServiceWatcher(service, bus, QDBusServiceWatcher::WatchForRegistration, receiver);
        QObject::connect(watcher, &QDBusServiceWatcher::serviceRegistered, receiver, &SignalReceiver::deliver);
        bool connected = true;
        for (const QString &member : members)
            connected = bus.connect(service, path, interface, member, receiver, SLOT(deliver())) && connected;
        return connected;
    };
}

} // namespace

namespace GnomeInputSources {

QList<SourceProperties> describe(const QVariant &reply)
{
    if (reply.metaType() != QMetaType::fromType<QDBusArgument>())
        return {};
    const QDBusArgument argument = reply.value<QDBusArgument>();
    if (argument.currentSignature() != QLatin1String("a(ssss)"))
        return {};
    QList<SourceProperties> sources;
    argument.beginArray();
    while (!argument.atEnd()) {
        QString id;
        QString name;
        QString label;
        QString type;
        argument.beginStructure();
        argument >> id >> name >> label >> type;
        argument.endStructure();
        sources << SourceProperties::keyboard(id, name);
    }
    argument.endArray();
    return sources;
}

InputSources onSessionBus()
{
    InputSources sources{.enabled = enabled,
                         // From the enabled sources, as known.
                         .matching = {},
                         .currentID = currentID,
                         .select = activate,
                         // No system-wide secure entry: in password fields the shell
                         // itself sets IBus sources aside for the time.
                         .secureInput = [] { return false; },
                         // Also when a remote client lets go of the keymap, so that keeping resumes.
                         .observeSelected =
                             observe({QStringLiteral("CurrentChanged"), QStringLiteral("KeymapChanged")}),
                         .observeEnabled = observe({QStringLiteral("SourcesChanged")}),
                         .backend = QStringLiteral("gnome"),
                         // The shell applies every source at once.
                         .cjkvNeedsFocus = false};
    sources.keymapHeld = keymapHeld;
    sources.availability = availability;
    sources.report = report;
    sources.inKeyboardMenu = inKeyboardMenu;
    // The extension's signal carries the new source, and another tells of a changed list.
    const auto known = std::make_shared<KnownSources>(KnownSources::Signals{
        .service = service,
        .path = path,
        .interface = interface,
        .currentChanged = QStringLiteral("CurrentChanged"),
        .currentOf = [](const QDBusMessage &signal,
                        const QList<SourceProperties> *) { return signal.arguments().value(0).toString(); },
        .listChanged = {QStringLiteral("SourcesChanged")},
        .keymapChanged = QStringLiteral("KeymapChanged")});
    sources.enableCompanion = [] {
        const bool wasOff = availability() == InputSources::Availability::extensionOff;
        // Through the shell's own tool, which also works while the shell does not run.
        if (ProgramRunner::run(QStringLiteral("gnome-extensions"),
                               {QStringLiteral("enable"), GnomeShellExtension::uuid})
                .status
            != 0)
            return false;
        // A shell that knows the extension starts it at once, but takes its bus name a moment
        // later, longer on a busy machine; the caller then finds it running.
        const QDeadlineTimer deadline(3000);
        while (wasOff && !extensionRunning() && !deadline.hasExpired())
            QThread::msleep(50);
        return true;
    };
    return KnownSources::remember(sources, known);
}

InputSources::Availability whyNotRunning(const QVariantMap &info, bool installed)
{
    using Availability = InputSources::Availability;
    // The shell's ExtensionState numbers, the same from 43 to 51.
    enum State { Active = 1, Inactive = 2, Error = 3, OutOfDate = 4, Initialized = 6, Enabling = 8 };
    const QVariant state = info.value(QStringLiteral("state"));
    if (!state.isValid())
        return installed ? Availability::extensionPending : Availability::extensionMissing;
    switch (state.toInt()) {
    case Inactive:
    case Initialized: return Availability::extensionOff;
    case OutOfDate: return Availability::extensionOutdated;
    // Started, yet not on the bus: its own start failed.
    case Active:
    case Error: return Availability::extensionFailed;
    case Enabling: return Availability::extensionPending;
    default: return installed ? Availability::extensionPending : Availability::extensionMissing;
    }
}

} // namespace GnomeInputSources
