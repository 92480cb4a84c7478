#include "core/login/Agent.h"

namespace Agent {

const AgentController &controller()
{
    static const AgentController shared = AgentController::live();
    return shared;
}

bool isLoginEnabled()
{
    return controller().isLoginEnabled();
}

} // namespace Agent
