#include "core/engine/SwitchRetry.h"

namespace SwitchRetry {

std::optional<SwitchOutcome> run(const World &world, int rounds)
{
    std::optional<SwitchOutcome> outcome;
    for (int round = 0; round < rounds; ++round) {
        outcome = world.attempt();
        const std::optional<QString> pinned = world.pinned();
        if (!pinned || !outcome)
            break;
        if (world.current() == *pinned) {
            if (outcome->isBusy() || outcome->kind() == SwitchOutcome::Kind::Failed)
                outcome = SwitchOutcome::success();
            break;
        }
    }
    return outcome;
}

} // namespace SwitchRetry
