#include "core/doctor/Doctor.h"

#include "core/doctor/SourceCounterpart.h"
#include "core/instance/InstanceOwner.h"
#include "core/l10n/L10n.h"
#include "core/sources/SourcesAvailability.h"
#include "platform/input/GnomeShellExtension.h"

#include <algorithm>

namespace {

using Verdict = DoctorCheck::Verdict;
using Availability = InputSources::Availability;
using Effect = StackSetting::Effect;

QString stateName(Availability availability)
{
    switch (availability) {
    case Availability::available: return QStringLiteral("answering");
    case Availability::notRunning: return QStringLiteral("not running");
    case Availability::notAnswering: return QStringLiteral("not answering");
    case Availability::extensionMissing: return QStringLiteral("extension not installed");
    case Availability::extensionOff: return QStringLiteral("extension turned off");
    case Availability::extensionOutdated: return QStringLiteral("extension out of date for this shell");
    case Availability::extensionFailed: return QStringLiteral("extension in error");
    case Availability::extensionPending: return QStringLiteral("extension enabled, not yet running");
    case Availability::sessionBusUnreachable: return QStringLiteral("session bus not answering");
    case Availability::noKeyboard: return QStringLiteral("answering, with no keyboard layout");
    }
    return {};
}

// Whether the stack itself answers, its companion aside.
bool reached(Availability availability)
{
    return availability != Availability::notRunning && availability != Availability::notAnswering
           && availability != Availability::sessionBusUnreachable;
}

QString described(const StackSetting &setting)
{
    return setting.name + QStringLiteral(" = ") + setting.value;
}

// What one run reads once and several checks share.
struct Seen
{
    SessionFacts::Stack stack;
    Availability availability;
    StackReport report;
    Expected<Config> config;
    InputSources::Following following = InputSources::Following::announced;
    bool keymapHeld = false;
};

DoctorCheck inputStack(const Seen &seen)
{
    const QStringList &running = seen.stack.running;
    DoctorCheck check{QStringLiteral("input-stack"), Verdict::ok,
                      QStringLiteral("in use: %1; running: %2; %3")
                          .arg(seen.stack.backend,
                               running.isEmpty() ? QStringLiteral("none") : running.join(QStringLiteral(", ")),
                               seen.stack.evidence.join(QStringLiteral("; ")))};
    // Applications type through one of them, and the other may switch on its own.
    if (running.contains(QLatin1String("ibus")) && running.contains(QLatin1String("fcitx5"))) {
        check.verdict = Verdict::warn;
        check.advice = LocalizedText("doctor.stack.both");
    }
    return check;
}

DoctorCheck framework(const Seen &seen, const QString &name)
{
    QString evidence = name + QStringLiteral(": ") + stateName(seen.availability);
    if (!seen.report.version.isEmpty())
        evidence += QStringLiteral("; version ") + seen.report.version;
    if (!reached(seen.availability) || seen.availability == Availability::noKeyboard)
        return {QStringLiteral("framework"), Verdict::fail, evidence,
                SourcesAvailability::reason(seen.availability, name).value_or(LocalizedText())};
    const bool polled = seen.following == InputSources::Following::polled;
    evidence += polled ? QStringLiteral("; switches polled") : QStringLiteral("; switches signalled");
    // Only Fcitx5 without Tolvar's addon is polled: it works, a switch is undone a little later.
    if (polled)
        return {QStringLiteral("framework"), Verdict::info, evidence, LocalizedText("doctor.fcitx5.polling")};
    return {QStringLiteral("framework"), Verdict::ok, evidence};
}

DoctorCheck gnomeExtension(const Seen &seen)
{
    const QString id = QStringLiteral("gnome-extension");
    if (seen.stack.backend != QLatin1String("gnome"))
        return {id, Verdict::info, QStringLiteral("not needed by %1").arg(seen.stack.backend)};
    if (!reached(seen.availability))
        return {id, Verdict::info, QStringLiteral("GNOME Shell not reached")};
    const StackReport &report = seen.report;
    QString evidence = QStringLiteral("%1: %2; %3 in org.gnome.shell enabled-extensions; %4")
                           .arg(GnomeShellExtension::uuid,
                                report.companionPath.isEmpty() ? QStringLiteral("not installed") : report.companionPath,
                                report.companionEnabled ? QStringLiteral("listed") : QStringLiteral("not listed"),
                                stateName(seen.availability));
    if (!report.companionError.isEmpty())
        evidence += QStringLiteral("; error: ") + report.companionError;
    if (seen.availability == Availability::available)
        return {id, Verdict::ok, evidence};
    // Enabled and waiting for the next login is on its way to working.
    const Verdict verdict = seen.availability == Availability::extensionPending ? Verdict::warn : Verdict::fail;
    return {id, verdict, evidence, SourcesAvailability::reason(seen.availability, {}).value_or(LocalizedText())};
}

DoctorCheck pinnedSource(const Seen &seen, const DoctorServices &services)
{
    const QString id = QStringLiteral("pinned-source");
    if (!seen.config)
        return {id, Verdict::info, QStringLiteral("the settings file cannot be read")};
    const QString pinned = seen.config->sourceID.value_or(QString());
    if (pinned.isEmpty())
        return {id, Verdict::info, QStringLiteral("nothing pinned"), LocalizedText("cli.err.no-pin")};
    if (seen.availability != Availability::available)
        return {id, Verdict::info, QStringLiteral("%1 pinned; sources cannot be read").arg(pinned)};
    QStringList ids;
    for (const InputChoice &choice : services.choices())
        ids << choice.id;
    const QString evidence =
        QStringLiteral("%1 pinned; %2 offers: %3").arg(pinned, seen.stack.backend, ids.join(QStringLiteral(", ")));
    if (ids.contains(pinned))
        return {id, Verdict::ok, evidence};
    if (const std::optional<QString> match = SourceCounterpart::among(pinned, ids))
        return {id, Verdict::fail, evidence,
                LocalizedText("doctor.pin.counterpart", {*match, QStringLiteral("tolvar set ") + *match})};
    return {id, Verdict::fail, evidence, LocalizedText("warn.missing")};
}

DoctorCheck desktopSwitching(const Seen &seen)
{
    const QString id = QStringLiteral("desktop-switching");
    if (!reached(seen.availability))
        return {id, Verdict::info, QStringLiteral("not read: the input stack does not answer")};
    QStringList read;
    std::optional<StackSetting> switching;
    for (const StackSetting &setting : seen.report.settings) {
        if (setting.concern != StackSetting::Concern::switching)
            continue;
        read << described(setting);
        if (setting.effect == Effect::switchesPerWindow && !switching)
            switching = setting;
    }
    if (read.isEmpty())
        return {id, Verdict::info, QStringLiteral("no such setting for %1").arg(seen.stack.backend)};
    if (!switching)
        return {id, Verdict::ok, read.join(QStringLiteral("; "))};
    return {id, Verdict::warn, read.join(QStringLiteral("; ")),
            LocalizedText("doctor.switching", {described(*switching)})};
}

DoctorCheck keyboardLayout(const Seen &seen, const QString &sessionType)
{
    const QString id = QStringLiteral("keyboard-layout");
    const QString session =
        QStringLiteral("session: ") + (sessionType.isEmpty() ? QStringLiteral("none") : sessionType);
    // Until it is let go, no switch changes the layout, and Tolvar waits.
    if (seen.keymapHeld)
        return {id, Verdict::warn, session + QStringLiteral("; the keymap is held from outside the desktop"),
                LocalizedText("enf.keymap-held")};
    if (seen.stack.backend != QLatin1String("ibus"))
        return {id, Verdict::ok,
                session + QStringLiteral("; %1 applies the layouts of its sources").arg(seen.stack.backend)};
    if (sessionType == QLatin1String("wayland"))
        return {id, Verdict::info, session, LocalizedText("doctor.layout.wayland")};
    if (sessionType != QLatin1String("x11"))
        return {id, Verdict::info, session};
    for (const StackSetting &setting : seen.report.settings) {
        if (setting.concern != StackSetting::Concern::layout)
            continue;
        if (setting.effect == Effect::keepsSystemLayout)
            return {id, Verdict::info, session + QStringLiteral("; ") + described(setting),
                    LocalizedText("doctor.layout.system")};
        return {id, Verdict::ok, session + QStringLiteral("; ") + described(setting)};
    }
    return {id, Verdict::info, session + QStringLiteral("; IBus's layout setting not read")};
}

DoctorCheck tray(const Seen &seen, const std::optional<QString> &host, const std::function<bool()> &inKeyboardMenu)
{
    if (host)
        return {QStringLiteral("tray"), Verdict::ok, *host};
    if (seen.availability == Availability::available && inKeyboardMenu())
        return {QStringLiteral("tray"), Verdict::ok,
                QStringLiteral("no tray; Tolvar's section in GNOME Shell's keyboard menu instead")};
    const bool gnome = seen.stack.backend == QLatin1String("gnome");
    return {QStringLiteral("tray"), Verdict::warn,
            QStringLiteral("no org.kde.StatusNotifierWatcher on the bus, no X11 tray"),
            LocalizedText(gnome ? "doctor.tray.gnome" : "doctor.tray.none")};
}

DoctorCheck loginItem(const DoctorServices &services)
{
    const QString id = QStringLiteral("login-item");
    const DoctorServices::LoginEntry entry = services.loginEntry();
    if (!entry.leftovers.isEmpty())
        return {id, Verdict::warn, entry.leftovers.join(QStringLiteral(", ")), LocalizedText("doctor.login.leftover")};
    if (!entry.exists)
        return {id, Verdict::info, entry.path + QStringLiteral(": none"), LocalizedText("doctor.login.none")};
    const QString evidence = entry.path + QStringLiteral(": starts ") + entry.program;
    if (entry.hidden)
        return {id, Verdict::warn, evidence + QStringLiteral(", hidden"), LocalizedText("doctor.login.hidden")};
    if (entry.program.isEmpty() || !services.runnable(entry.program))
        return {id, Verdict::fail, evidence + QStringLiteral(", not found"),
                LocalizedText("doctor.login.gone", {entry.program})};
    return {id, Verdict::ok, evidence};
}

DoctorCheck instance(const DoctorServices &services)
{
    const QString id = QStringLiteral("instance");
    const Expected<std::optional<QByteArray>> holder = services.instance();
    if (!holder)
        return {id, Verdict::warn, holder.error().description()};
    if (!holder.value())
        return {id, Verdict::info, QStringLiteral("not running"), LocalizedText("doctor.instance.none")};
    const std::optional<InstanceOwner> owner = InstanceOwner::parse(*holder.value());
    const AppBuildInfo build = services.build();
    const auto versionOf = [](const std::optional<QString> &version, const std::optional<qint64> &number) {
        return version.value_or(QStringLiteral("unknown"))
               + (number ? QStringLiteral(" (build %1)").arg(*number) : QString());
    };
    const QString mine = versionOf(build.version, build.build);
    if (owner && owner->version == build.version && owner->build == build.build)
        return {id, Verdict::ok, QStringLiteral("running: pid %1, version %2").arg(owner->pid).arg(mine)};
    const QString theirs = owner ? versionOf(owner->version, owner->build) : QStringLiteral("unknown");
    const QString pid = owner ? QString::number(owner->pid) : QStringLiteral("?");
    return {id, Verdict::warn, QStringLiteral("running: pid %1, version %2; this command: %3").arg(pid, theirs, mine),
            LocalizedText("doctor.instance.other", {theirs, pid})};
}

DoctorCheck configuration(const Seen &seen, const DoctorServices &services)
{
    const QString id = QStringLiteral("config");
    const QString file = services.configFile();
    if (!seen.config)
        return {id, Verdict::fail, seen.config.error().description(),
                LocalizedText("doctor.config.bad", {L10n::describe(seen.config.error())})};
    if (!services.configExists())
        return {id, Verdict::info, file + QStringLiteral(": none yet, defaults in use")};
    return {id, Verdict::ok, file};
}

} // namespace

namespace Doctor {

QList<DoctorCheck> run(const DoctorServices &services)
{
    Seen seen{services.stack(), services.availability(), {}, services.config()};
    if (reached(seen.availability)) {
        seen.report = services.report();
        seen.following = services.following();
        seen.keymapHeld = services.keymapHeld();
    }
    // A stack whose name is held on the bus may still not answer, or be gone since.
    if (seen.report.reach == StackReport::Reach::silent)
        seen.availability = Availability::notAnswering;
    if (seen.report.reach == StackReport::Reach::absent)
        seen.availability = Availability::notRunning;
    return {
        inputStack(seen),
        framework(seen, services.framework),
        gnomeExtension(seen),
        pinnedSource(seen, services),
        desktopSwitching(seen),
        keyboardLayout(seen, services.sessionType()),
        tray(seen, services.trayHost(), services.inKeyboardMenu),
        loginItem(services),
        instance(services),
        configuration(seen, services),
    };
}

bool failed(const QList<DoctorCheck> &checks)
{
    return std::any_of(checks.cbegin(), checks.cend(),
                       [](const DoctorCheck &check) { return check.verdict == Verdict::fail; });
}

} // namespace Doctor
