#pragma once

#include "core/update/UpdateChecker.h"

#include <QObject>
#include <QPointer>

#include <optional>

// The About page's update check: at most one at a time, started only by the
// user, and abandoned when the page goes away. Lives on the main thread.
class UpdateViewModel : public QObject
{
    Q_OBJECT

public:
    struct State
    {
        enum class Kind { Idle, Checking, Result };
        Kind kind = Kind::Idle;
        // For Result only.
        std::optional<UpdateCheckResult> result;

        static State idle() { return {}; }
        static State checking() { return {Kind::Checking, std::nullopt}; }
        static State of(UpdateCheckResult result) { return {Kind::Result, std::move(result)}; }
        bool operator==(const State &) const = default;
    };

    // Without a state: "unconfigured" when the build names no update address,
    // otherwise idle (an empty address finds out at the first check).
    explicit UpdateViewModel(UpdateChecker checker, std::optional<State> initial = std::nullopt,
                             QObject *parent = nullptr);

    const AppBuildInfo &info() const { return m_info; }
    const State &state() const { return m_state; }
    bool canCheck() const;

    // Starts a check unless one is running.
    void check();
    // Drops a running check, whose answer then never shows; a shown result stays.
    void cancel();

signals:
    void stateChanged();

private:
    void setState(State state);

    AppBuildInfo m_info;
    State m_state;
    UpdateChecker m_checker;
    // The running check's context: deleting it abandons the check.
    QPointer<QObject> m_task;
};
