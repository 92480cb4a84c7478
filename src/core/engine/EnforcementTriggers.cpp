#include "core/engine/EnforcementTriggers.h"

using namespace std::chrono_literals;

EnforcementTriggers EnforcementTriggers::none()
{
    return {{}, {}, {}, {}, 0ms, {}};
}
