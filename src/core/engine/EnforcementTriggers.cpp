#include "core/engine/EnforcementTriggers.h"

using namespace std::chrono_literals;

EnforcementTriggers EnforcementTriggers::none()
{
    return {.tick = 0ms};
}
