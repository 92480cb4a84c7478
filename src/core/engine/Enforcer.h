#pragma once

#include "core/engine/EnforcementDependencies.h"
#include "core/engine/EnforcementTriggers.h"
#include "core/engine/SwitchOrigin.h"
#include "core/sources/SwitchOutcome.h"

#include <QObject>
#include <QTimer>

#include <functional>
#include <optional>

// Keeps the pinned source current. Automatic requests come from the triggers;
// manual ones (apply, the command line) run even while keeping is off and take
// precedence. Every request ends in exactly one SwitchOutcome, and callbacks
// never nest: requests made from inside them wait until they return.
class Enforcer : public QObject
{
public:
    using Finish = std::function<void(const SwitchOutcome &)>;

    explicit Enforcer(EnforcementDependencies dependencies, EnforcementTriggers triggers = EnforcementTriggers::none(),
                      QObject *parent = nullptr);

    // The process's engine, on live dependencies and triggers.
    static Enforcer &shared();

    // Subscribes to the triggers; once.
    void start();
    void enforce(SwitchOrigin origin, Finish finish = {});
    void cancelManualRequests();
    bool isSwitching() const { return m_active.has_value(); }

    // Whenever the visible state may have changed.
    void setOnUpdate(std::function<void()> onUpdate) { m_onUpdate = std::move(onUpdate); }
    // Every automatic outcome but busy.
    void setOnAutomaticOutcome(Finish onAutomaticOutcome) { m_onAutomaticOutcome = std::move(onAutomaticOutcome); }

private:
    using Clock = EnforcementDependencies::Clock;

    struct Request
    {
        quint64 token = 0;
        QString target;
        bool force = false;
        Finish finish;
    };

    // What one look read of the world, and how it ended.
    struct Sight
    {
        Config config = {};
        std::optional<LocalizedText> unreachable = {};
        bool secureInput = false;
        bool keymapHeld = false;
        QString currentID = {};
        std::optional<SwitchOutcome> outcome = {};
        bool operator==(const Sight &) const = default;
    };

    void trigger();
    void tick();
    // Ends a look; says whether anyone needs to hear of it.
    bool seen();
    void activated(qint64 pid);
    void execute(Request request);
    void startFocus(const EnforcementTarget &target);
    void helperFinished(quint64 token, const FocusProcessResult &result);
    void complete(quint64 token, const SwitchOutcome &outcome);
    bool isActive(quint64 token) const { return m_active && m_active->token == token; }
    void notifyUpdate() const;
    static void call(const Finish &finish, const SwitchOutcome &outcome);

    EnforcementDependencies m_dependencies;
    EnforcementTriggers m_triggers;
    std::function<void()> m_onUpdate;
    Finish m_onAutomaticOutcome;
    std::optional<Request> m_active;
    std::optional<Request> m_pending;
    EnforcementDependencies::CancelFocus m_cancelActive;
    std::optional<quint64> m_cancelledManualToken;
    int m_completionDepth = 0;
    Clock::time_point m_ignoreActivationUntil;
    Clock::time_point m_nextFocusAt;
    quint64 m_nextToken = 1;
    bool m_started = false;
    bool m_listAnnounced = false;
    bool m_tickLook = false;
    Sight m_sight;
    Sight m_lastSight;
    QTimer m_timer;
    // Looks again as soon as a refused helper run would be allowed, rather than
    // at the tick after that.
    QTimer m_focusRetry;
};
