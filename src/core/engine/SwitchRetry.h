#pragma once

#include "core/sources/SwitchOutcome.h"

#include <QString>

#include <functional>
#include <optional>

// A command's own switch to the pin. Other commands may pin and switch at the
// same moment, and a switch that lands late undoes theirs: each command looks
// at the pin once its switch is done and follows it, so the last one to finish
// leaves the pinned source selected. A switch overtaken that way, busy or
// failed, did its job once the pin is current.
namespace SwitchRetry {

struct World
{
    // One switch to the pin as it stands; none when it never reported.
    std::function<std::optional<SwitchOutcome>()> attempt;
    // The pin as the file says now.
    std::function<std::optional<QString>()> pinned;
    std::function<QString()> current;
};

constexpr int defaultRounds = 4;

std::optional<SwitchOutcome> run(const World &world, int rounds = defaultRounds);

} // namespace SwitchRetry
