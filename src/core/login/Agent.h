#pragma once

#include "core/login/AgentController.h"

// The login item as the rest of the program sees it.
namespace Agent {

// Made on first use, for the current user's home folder.
const AgentController &controller();
// Whether the agent is installed and not marked disabled; asks the service manager each time.
bool isLoginEnabled();

} // namespace Agent
