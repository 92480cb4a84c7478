#pragma once

#include <QString>

#include <chrono>

// Knocks at a D-Bus address before QtDBus connects to it. QtDBus registers a
// new connection with an unbounded wait, on the thread every connection of the
// process shares, so a daemon that accepts but never answers would freeze all
// of D-Bus in the process. The knock is the start of the authentication
// handshake, which every bus answers at once.
namespace BusProbe {

enum class Result {
    Answered, // the bus took part in the handshake
    Absent,   // nothing listens there: the daemon is not running
    Silent,   // something accepted, or is stuck accepting, and said nothing in time
};

Result knock(const QString &address, std::chrono::milliseconds limit);

// The session bus's address as libdbus finds it; empty when there is none.
QString sessionAddress();

} // namespace BusProbe
