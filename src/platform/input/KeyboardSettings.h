#pragma once

#include <functional>

// The system's own keyboard settings, where input sources are added and removed.
struct KeyboardSettings
{
    // Shows them; false when the system could not.
    std::function<bool()> open;

    static KeyboardSettings live();
};
