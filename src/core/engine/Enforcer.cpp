#include "core/engine/Enforcer.h"

#include "core/engine/FocusExitStatus.h"

#include <QCoreApplication>
#include <QPointer>

namespace {

using namespace std::chrono_literals;

constexpr auto activationQuietPeriod = 1s;
constexpr auto focusRunSpacing = 3s;

SwitchOutcome outcomeOfHelper(const FocusProcessResult &result, bool current, const QString &target)
{
    switch (result.kind) {
    case FocusProcessResult::Kind::TimedOut: return SwitchOutcome::failed(LocalizedText("enf.timeout"));
    case FocusProcessResult::Kind::Cancelled: return SwitchOutcome::busy();
    case FocusProcessResult::Kind::Exited: break;
    }
    switch (static_cast<FocusExitStatus>(result.status)) {
    case FocusExitStatus::Switched:
        return current ? SwitchOutcome::success() : SwitchOutcome::failed(LocalizedText("enf.unconfirmed", {target}));
    case FocusExitStatus::SecureInput: return SwitchOutcome::secureInput();
    case FocusExitStatus::NotWanted: return SwitchOutcome::busy();
    case FocusExitStatus::Missing: return SwitchOutcome::missingSource();
    case FocusExitStatus::Failed: break;
    }
    return SwitchOutcome::failed(LocalizedText("enf.helper-exit", {QString::number(result.status)}));
}

} // namespace

Enforcer::Enforcer(EnforcementDependencies dependencies, EnforcementTriggers triggers, QObject *parent)
    : QObject(parent)
    , m_dependencies(std::move(dependencies))
    , m_triggers(std::move(triggers))
{
    m_focusRetry.setSingleShot(true);
    connect(&m_focusRetry, &QTimer::timeout, this, &Enforcer::trigger);
}

void Enforcer::start()
{
    if (m_started)
        return;
    m_started = true;

    // Notifications may be delivered mid-way through other work: look again
    // from the event loop, not from inside the sender.
    const auto later = [this] { QMetaObject::invokeMethod(this, &Enforcer::trigger, Qt::QueuedConnection); };
    if (m_triggers.selectionChanged)
        m_triggers.selectionChanged(this, later);
    m_listAnnounced = m_triggers.listChanged && m_triggers.listChanged(this, later);
    if (m_triggers.configChanged)
        m_triggers.configChanged(this, later);
    if (m_triggers.wake)
        m_triggers.wake(this, [this] { trigger(); });
    if (m_triggers.activation)
        m_triggers.activation(this, [this](qint64 pid) { activated(pid); });
    if (m_triggers.tick > 0ms) {
        connect(&m_timer, &QTimer::timeout, this, &Enforcer::tick);
        m_timer.start(m_triggers.tick);
    }
}

void Enforcer::trigger()
{
    notifyUpdate();
    enforce(SwitchOrigin::Automatic);
}

// The net under missed signals. Where every change is announced, a tick that
// finds the world as the last look left it wakes nothing else.
void Enforcer::tick()
{
    m_tickLook = m_listAnnounced && (!m_triggers.announced || m_triggers.announced());
    if (!m_tickLook)
        notifyUpdate();
    enforce(SwitchOrigin::Automatic);
    m_tickLook = false;
}

bool Enforcer::seen()
{
    const bool quiet = m_tickLook && m_sight == m_lastSight;
    m_lastSight = m_sight;
    return !quiet;
}

void Enforcer::activated(qint64 pid)
{
    // Our own focus helper's window, or anything within a second of a switch, is no reason to look.
    if (pid == QCoreApplication::applicationPid() || m_dependencies.now() < m_ignoreActivationUntil)
        return;
    trigger();
}

void Enforcer::enforce(SwitchOrigin origin, Finish finish)
{
    const bool force = origin == SwitchOrigin::Manual;
    const Config config = m_dependencies.config();
    m_sight = {config};
    if (m_triggers.keeping)
        m_triggers.keeping(config.enabled && config.sourceID && !config.sourceID->isEmpty());
    if (!force && !config.enabled) {
        if (m_active && !m_active->force && m_cancelActive)
            m_cancelActive();
        if (m_tickLook) {
            // Paused, the window still shows what is current and whether it can be read.
            m_sight.unreachable = m_dependencies.unreachable();
            m_sight.currentID = m_dependencies.currentID();
            if (seen())
                notifyUpdate();
        }
        call(finish, SwitchOutcome::success());
        return;
    }
    if (!config.sourceID || config.sourceID->isEmpty()) {
        call(finish, SwitchOutcome::missingSource());
        return;
    }

    Request request{m_nextToken++, *config.sourceID, force, std::move(finish)};
    if (!m_active && m_completionDepth < 1) {
        execute(std::move(request));
        return;
    }
    if (!force) {
        if ((m_active && m_active->target == request.target) || (m_pending && m_pending->force)) {
            call(request.finish, SwitchOutcome::busy());
            return;
        }
    }

    const quint64 token = request.token;
    const QString target = request.target;
    std::optional<Request> displaced = std::exchange(m_pending, std::move(request));
    if (displaced)
        call(displaced->finish, SwitchOutcome::busy());
    // A newer target should not wait for the helper of an older one.
    if (m_pending && m_pending->token == token && m_active && m_active->target != target && m_cancelActive)
        m_cancelActive();
}

void Enforcer::execute(Request request)
{
    const quint64 token = request.token;
    m_active = std::move(request);
    const Request &active = *m_active;

    const Config config = m_dependencies.config();
    m_sight = {config};
    if (!config.sourceID || *config.sourceID != active.target)
        return complete(token, SwitchOutcome::busy());
    if (!active.force && !config.enabled)
        return complete(token, SwitchOutcome::busy());
    if ((m_sight.unreachable = m_dependencies.unreachable()))
        return complete(token, SwitchOutcome::failed(*m_sight.unreachable));
    if ((m_sight.secureInput = m_dependencies.secureInput()))
        return complete(token, SwitchOutcome::secureInput());
    // Not even a manual switch: it would take the layout from whoever holds it.
    if ((m_sight.keymapHeld = m_dependencies.keymapHeld()))
        return complete(token, SwitchOutcome::keymapHeld());
    const QString current = m_sight.currentID = m_dependencies.currentID();
    if (current == active.target)
        return complete(token, SwitchOutcome::success());
    // Nothing has focus for the framework to name (Fcitx5 then reports no method):
    // nothing moved away, and a switch could not be confirmed. The next change says more.
    if (current.isEmpty() && !active.force)
        return complete(token, SwitchOutcome::busy());
    const std::optional<EnforcementTarget> target = m_dependencies.find(active.target);
    if (!target)
        return complete(token, SwitchOutcome::missingSource());

    m_ignoreActivationUntil = m_dependencies.now() + activationQuietPeriod;
    if (target->requiresFocus)
        return startFocus(*target);

    if (const qint32 status = m_dependencies.select(target->id); status != 0)
        return complete(token,
                        SwitchOutcome::failed(LocalizedText("enf.switch", {target->id, QString::number(status)})));
    if (m_dependencies.currentID() != target->id)
        return complete(token, SwitchOutcome::failed(LocalizedText("enf.unconfirmed", {target->id})));
    complete(token, SwitchOutcome::success());
}

void Enforcer::startFocus(const EnforcementTarget &target)
{
    const quint64 token = m_active->token;
    const Clock::time_point now = m_dependencies.now();
    if (!m_active->force && now < m_nextFocusAt) {
        m_focusRetry.start(std::chrono::ceil<std::chrono::milliseconds>(m_nextFocusAt - now));
        return complete(token, SwitchOutcome::busy());
    }
    m_nextFocusAt = now + focusRunSpacing;

    QPointer<Enforcer> self(this);
    auto launched = m_dependencies.launchFocus(target.id, !m_active->force, [self, token](FocusProcessResult result) {
        if (self)
            self->helperFinished(token, result);
    });
    if (!launched)
        return complete(token, SwitchOutcome::failed(LocalizedText("enf.focus", {launched.error().description()})));
    if (isActive(token))
        m_cancelActive = std::move(launched).value();
    notifyUpdate();
}

void Enforcer::helperFinished(quint64 token, const FocusProcessResult &result)
{
    if (!isActive(token))
        return;
    if (m_cancelledManualToken == token)
        return complete(token, SwitchOutcome::busy());
    const Config config = m_dependencies.config();
    if (!config.sourceID || *config.sourceID != m_active->target || (!m_active->force && !config.enabled))
        return complete(token, SwitchOutcome::busy());
    const bool current = m_dependencies.currentID() == m_active->target;
    complete(token, outcomeOfHelper(result, current, m_active->target));
}

void Enforcer::complete(quint64 token, const SwitchOutcome &outcome)
{
    if (!isActive(token))
        return;
    ++m_completionDepth;
    const Request request = std::move(*m_active);
    m_active.reset();
    m_cancelActive = nullptr;
    m_cancelledManualToken.reset();

    m_sight.outcome = outcome;
    const bool news = seen() || request.force;
    if (news)
        notifyUpdate();
    if (news && !request.force && !outcome.isBusy() && m_onAutomaticOutcome)
        m_onAutomaticOutcome(outcome);
    call(request.finish, outcome);

    --m_completionDepth;
    if (m_completionDepth == 0 && !m_active && m_pending) {
        Request next = std::move(*m_pending);
        m_pending.reset();
        execute(std::move(next));
    }
}

void Enforcer::cancelManualRequests()
{
    std::optional<Request> dropped;
    if (m_pending && m_pending->force) {
        dropped = std::move(m_pending);
        m_pending.reset();
    }
    if (m_active && m_active->force && m_cancelledManualToken != m_active->token) {
        m_cancelledManualToken = m_active->token;
        if (m_cancelActive)
            m_cancelActive();
    }
    if (dropped)
        call(dropped->finish, SwitchOutcome::busy());
}

void Enforcer::notifyUpdate() const
{
    if (m_onUpdate)
        m_onUpdate();
}

void Enforcer::call(const Finish &finish, const SwitchOutcome &outcome)
{
    if (finish)
        finish(outcome);
}
