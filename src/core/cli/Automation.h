#pragma once

#include "core/cli/AutomationFailure.h"
#include "core/cli/AutomationServices.h"
#include "core/cli/AutomationStatus.h"
#include "core/cli/CLIRequest.h"

#include <optional>

// What the command line reports and changes without touching a running
// instance directly: it reads and writes the configuration, whose change
// notice the instance follows, and probes the instance lock.
class Automation
{
public:
    using Edit = std::function<Expected<void, AutomationFailure>(Config &)>;

    explicit Automation(AutomationServices services);

    // With no configuration given, one is loaded.
    Expected<AutomationStatus, AutomationFailure> status(const std::optional<Config> &given = std::nullopt) const;
    // For pause, resume and toggle only.
    Expected<AutomationStatus, AutomationFailure> setKeeping(CLIRequest::Command command) const;
    // Fails unless the identifier names a selectable source.
    Expected<void, AutomationFailure> requireTarget(const std::optional<QString> &sourceID) const;
    Expected<Config, AutomationFailure> editConfig(const Edit &edit) const;
    // Why no source can be read or switched now, naming the framework, if that is so.
    std::optional<AutomationFailure> sourcesBlocked() const;

private:
    AutomationServices m_services;
};
