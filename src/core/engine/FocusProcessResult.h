#pragma once

// How one focus helper run ended, as its parent saw it.
struct FocusProcessResult
{
    enum class Kind { Exited, TimedOut, Cancelled };

    Kind kind = Kind::Exited;
    // Meaningful for Exited only.
    int status = 0;

    static FocusProcessResult exited(int status) { return {Kind::Exited, status}; }
    static FocusProcessResult timedOut() { return {Kind::TimedOut, 0}; }
    static FocusProcessResult cancelled() { return {Kind::Cancelled, 0}; }

    bool operator==(const FocusProcessResult &) const = default;
};
