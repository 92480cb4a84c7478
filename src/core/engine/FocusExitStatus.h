#pragma once

// How the focus helper's process ends: it exits with one of these, and the
// keeper that started it reads the status back.
enum class FocusExitStatus : int {
    Switched = 0,
    SecureInput = 75,
    NotWanted = 76,
    Missing = 77,
    Failed = 78,
};
