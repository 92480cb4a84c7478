#include "core/cli/CLI.h"

#include "core/cli/Automation.h"
#include "core/cli/AutomationResponse.h"
#include "core/doctor/Doctor.h"
#include "core/l10n/L10n.h"
#include "core/sources/SourcesAvailability.h"

#include <QIODevice>

namespace {

using Command = CLIRequest::Command;

QString stateText(RuntimeState state)
{
    return L10n::text(state.textKey());
}

QString onOff(bool value)
{
    return L10n::text(value ? "cli.on" : "cli.off");
}

// The configuration-write mapping shared with the keeping commands.
AutomationFailure writeFailure(const Error &error)
{
    return (error.domain() == Error::Domain::Decode ? AutomationFailure::invalidConfig()
                                                    : AutomationFailure::configWriteFailed())
        .withDetail(error);
}

} // namespace

CLI::CLI(CLIServices services, QIODevice &out, QIODevice &err)
    : m_services(std::move(services))
    , m_out(out)
    , m_err(err)
{}

QString CLI::usage()
{
    static const char *const keys[] = {
        "cli.usage.header",    "cli.usage.status",  "cli.usage.list",   "cli.usage.pause", "cli.usage.resume",
        "cli.usage.toggle",    "cli.usage.set",     "cli.usage.apply",  "cli.usage.open",  "cli.usage.install",
        "cli.usage.uninstall", "cli.usage.version", "cli.usage.doctor",
    };
    QStringList lines;
    for (const char *key : keys)
        lines << L10n::text(key);
    return lines.join(QLatin1Char('\n'));
}

int CLI::run(const QStringList &arguments)
{
    const int status = parseAndExecute(arguments);
    // As coreutils do: output that did not reach its reader is a failure, said on
    // standard error when that still works.
    if (m_writeFailed) {
        m_writeFailed = false;
        line(m_err, L10n::text("cli.err.output").arg(m_out.errorString()));
        return 1;
    }
    return status;
}

int CLI::parseAndExecute(const QStringList &arguments)
{
    const auto request = CLIRequest::parse(arguments);
    if (request)
        return execute(request.value());
    if (request.error().json) {
        printDocument(
            AutomationResponse::failure(request.error().command, AutomationFailure::invalidArguments()).encoded());
        return 1;
    }
    line(m_err, usage());
    return 1;
}

int CLI::execute(const CLIRequest &request)
{
    switch (request.command) {
    case Command::Status: return reportStatus(request);
    case Command::Pause:
    case Command::Resume:
    case Command::Toggle: {
        const auto status = Automation(m_services.automation).setKeeping(request.command);
        if (!status)
            return fail(status.error(), request);
        return reportStatus(request, status.value());
    }
    case Command::List: return list(request);
    case Command::Set:
        if (const auto pinned = writePin(request); !pinned)
            return fail(pinned.error(), request);
        return runOnce(request);
    case Command::Apply: return apply(request);
    case Command::Open: {
        if (const auto opened = m_services.openApp(); !opened)
            return fail(opened.error(), request);
        return request.json ? reportStatus(request) : 0;
    }
    case Command::Install: {
        // First, so that a user without the desktop's companion gets it and learns what is left to do.
        const bool companionOn = m_services.enableCompanion();
        if (const auto pinned = writePin(request); !pinned) {
            // Turning on helps an extension that was off or new; one that is outdated or failed says why itself.
            const AutomationFailure::Kind why = pinned.error().kind;
            const bool justEnabled = companionOn
                                     && (why == AutomationFailure::Kind::GnomeExtensionOff
                                         || why == AutomationFailure::Kind::GnomeExtensionPending);
            return fail(pinned.error(), request,
                        justEnabled ? std::optional(L10n::text("cli.err.gnome-extension-enabled")) : std::nullopt);
        }
        return install(request);
    }
    case Command::Uninstall: return uninstall(request);
    case Command::Help: line(m_out, usage()); return 0;
    case Command::Version: return version(request);
    case Command::Doctor: return doctor(request);
    }
    return fail(AutomationFailure::operationFailed(), request);
}

int CLI::reportStatus(const CLIRequest &request, const std::optional<AutomationStatus> &given)
{
    AutomationStatus status;
    if (given) {
        status = *given;
    } else {
        const auto computed = Automation(m_services.automation).status();
        if (!computed)
            return fail(computed.error(), request);
        status = computed.value();
    }
    if (request.json)
        printDocument(AutomationResponse::success(CLIRequest::word(request.command), status).encoded());
    else
        printStatus(status);
    return 0;
}

int CLI::version(const CLIRequest &request)
{
    const AppBuildInfo build = m_services.buildInfo();
    if (request.json) {
        printDocument(AutomationResponse::version(CLIRequest::word(request.command), build).encoded());
        return 0;
    }
    if (!build.version)
        line(m_out, L10n::text("cli.version.unknown"));
    else if (build.build)
        line(m_out, L10n::text("cli.version.build").arg(*build.version, QString::number(*build.build)));
    else
        line(m_out, L10n::text("cli.version").arg(*build.version));
    return 0;
}

int CLI::doctor(const CLIRequest &request)
{
    const QList<DoctorCheck> checks = m_services.doctor();
    const bool failed = Doctor::failed(checks);
    if (request.json) {
        printDocument(AutomationResponse::doctor(CLIRequest::word(request.command), checks, failed).encoded());
        return failed ? 1 : 0;
    }
    for (const DoctorCheck &check : checks) {
        line(m_out, check.heading() + QStringLiteral(" (") + check.id + QLatin1Char(')'));
        line(m_out, QStringLiteral("    ") + check.evidence);
        if (!check.advice.key().isEmpty())
            line(m_out, QStringLiteral("    ") + check.advice.text());
    }
    return failed ? 1 : 0;
}

int CLI::list(const CLIRequest &request)
{
    if (const auto blocked = Automation(m_services.automation).sourcesBlocked())
        return fail(*blocked, request);
    const QList<InputChoice> choices = m_services.automation.choices();
    if (request.json) {
        QList<AutomationSource> sources;
        for (const InputChoice &choice : choices)
            sources << AutomationSource{choice.id, choice.name};
        printDocument(AutomationResponse::listing(CLIRequest::word(request.command), sources).encoded());
        return 0;
    }
    const QString current = m_services.automation.current().id;
    for (const InputChoice &choice : choices) {
        const bool marked = !current.isEmpty() && choice.id == current;
        line(m_out,
             (marked ? QStringLiteral("* ") : QStringLiteral("  ")) + choice.id + QStringLiteral("  ") + choice.name);
    }
    return 0;
}

Expected<void, AutomationFailure> CLI::writePin(const CLIRequest &request)
{
    const QString id = request.sourceID.value_or(QString());
    if (id.isEmpty())
        return AutomationFailure::noTarget();
    if (const auto required = Automation(m_services.automation).requireTarget(id); !required)
        return required.error();
    const bool install = request.command == Command::Install;
    const Expected<Config> written = m_services.automation.update([&](Config &config) -> Expected<void> {
        config.sourceID = id;
        config.onboardingCompleted = true;
        if (install)
            config.enabled = true;
        return {};
    });
    if (!written)
        return writeFailure(written.error());
    return {};
}

int CLI::apply(const CLIRequest &request)
{
    // Read without the lock; a missing file pins nothing. Apply switches even
    // while keeping is off.
    const Expected<Config> config = m_services.automation.load();
    if (!config)
        return fail(AutomationFailure::invalidConfig().withDetail(config.error()), request);
    const std::optional<QString> &pinned = config->sourceID;
    if (!pinned || pinned->isEmpty())
        return fail(AutomationFailure::noTarget(), request);
    if (const auto required = Automation(m_services.automation).requireTarget(pinned); !required)
        return fail(required.error(), request);
    return runOnce(request);
}

int CLI::runOnce(const CLIRequest &request)
{
    const std::optional<SwitchOutcome> outcome = m_services.switchOnce();
    if (!outcome)
        return fail(AutomationFailure::switchEndedWithoutResult(), request);
    switch (outcome->kind()) {
    case SwitchOutcome::Kind::Success: return request.json ? reportStatus(request) : 0;
    case SwitchOutcome::Kind::SecureInput: return fail(AutomationFailure::secureInput(), request, outcome->warning());
    case SwitchOutcome::Kind::KeymapHeld: return fail(AutomationFailure::keymapHeld(), request, outcome->warning());
    case SwitchOutcome::Kind::MissingSource:
        return fail(AutomationFailure::missingSourceAfterSwitch(), request, outcome->warning());
    case SwitchOutcome::Kind::Busy: return fail(AutomationFailure::busy(), request, outcome->warning());
    case SwitchOutcome::Kind::Failed: return fail(AutomationFailure::switchFailed(), request, outcome->warning());
    }
    return fail(AutomationFailure::switchFailed(), request);
}

int CLI::install(const CLIRequest &request)
{
    // The pin written before stays, whatever happens to the login item.
    if (const auto installed = m_services.installLogin(m_services.executablePath()); !installed)
        return fail(AutomationFailure::installFailed(), request, installed.error());
    if (request.json)
        return reportStatus(request);
    line(m_out, L10n::text("cli.msg.pinned").arg(*request.sourceID));
    line(m_out, L10n::text("cli.msg.login").arg(L10n::text("app.name")));
    return 0;
}

int CLI::uninstall(const CLIRequest &request)
{
    if (const auto removed = m_services.uninstallLogin(); !removed)
        return fail(AutomationFailure::uninstallFailed(), request, removed.error());
    if (request.json)
        return reportStatus(request);
    line(m_out, L10n::text("cli.msg.uninstalled").arg(m_services.configFile()));
    return 0;
}

int CLI::fail(const AutomationFailure &failure, const CLIRequest &request, const std::optional<QString> &human)
{
    return fail(failure, CLIRequest::word(request.command), request.json, human);
}

int CLI::fail(const AutomationFailure &failure, const QString &command, bool json, const std::optional<QString> &human)
{
    if (json)
        printDocument(AutomationResponse::failure(command, failure).encoded());
    else
        line(m_err, human.value_or(failure.humanText(m_services.automation.framework)));
    return 1;
}

void CLI::printDocument(const QByteArray &document)
{
    write(m_out, (document.isEmpty() ? AutomationResponse::fallback() : document) + '\n');
}

void CLI::printStatus(const AutomationStatus &status)
{
    const QString format = L10n::text("cli.line");
    const auto print = [&](const char *label, const QString &value) {
        line(m_out, format.arg(L10n::text(label), value));
    };

    print("cli.label.state", stateText(status.state));
    print("cli.label.running", onOff(status.running));
    print("cli.label.current", status.current.id.isEmpty()
                                   ? L10n::text("cli.none")
                                   : status.current.name + QStringLiteral("  ") + status.current.id);
    QString pinned = L10n::text("cli.unset");
    if (status.target)
        pinned =
            status.target->name ? *status.target->name + QStringLiteral("  ") + status.target->id : status.target->id;
    print("cli.label.pinned", pinned);
    print("cli.label.keep", onOff(status.enabled));
    print("cli.label.login", onOff(status.loginEnabled));
    print("cli.label.backend", status.backend);
    if (status.following)
        print("cli.label.following",
              L10n::text(*status.following == InputSources::Following::polled ? "cli.following.polled"
                                                                              : "cli.following.announced"));
    if (const std::optional<QString> note = SourcesAvailability::backendNote(status.backend))
        line(m_out, *note);
    if (status.backendError)
        line(m_out, status.backendError->humanText(m_services.automation.framework));
    if (status.shownIn.isEmpty())
        line(m_out, L10n::text("cli.msg.unseen"));
    if (!status.running)
        line(m_out, L10n::text("cli.msg.stopped"));
}

void CLI::line(QIODevice &device, const QString &text)
{
    write(device, (text + QLatin1Char('\n')).toUtf8());
}

void CLI::write(QIODevice &device, const QByteArray &bytes)
{
    if (device.write(bytes) != bytes.size())
        m_writeFailed = true;
}
