// The application model wired to this machine.
#include "app/model/AppServices.h"
#include "core/engine/Enforcer.h"
#include "core/l10n/L10n.h"
#include "core/login/Agent.h"
#include "core/sources/Catalog.h"
#include "core/sources/SourcesAvailability.h"
#include "platform/ExecutableLocation.h"
#include "platform/input/InputSources.h"

AppServices AppServices::live(Enforcer &enforcer)
{
    const InputSources system = InputSources::live();
    AppServices s;
    s.load = [] { return ConfigStore::load(); };
    s.save = [](const Config &config) { return ConfigStore::save(config); };
    s.choices = [system] { return Catalog::choices(system); };
    s.current = [system] { return Catalog::current(system); };
    s.loginEnabled = [] { return Agent::isLoginEnabled(); };
    s.setLogin = [](bool on) -> Expected<void> {
        if (!on)
            // The caller may be the agent itself: it keeps running.
            return Agent::controller().uninstall(false);
        const QString executable = ExecutableLocation::path();
        if (executable.isEmpty())
            return Error::other(L10n::text("warn.no-executable"));
        return Agent::controller().install(executable, false);
    };
    s.apply = [&enforcer](Completion completion) { enforcer.enforce(SwitchOrigin::Manual, std::move(completion)); };
    s.updateConfig = [](const ConfigStore::Edit &edit) { return ConfigStore::mutate(ConfigStore::directory(), edit); };
    s.secureInput = system.secureInput;
    s.isSwitching = [&enforcer] { return enforcer.isSwitching(); };
    s.cancelSwitch = [&enforcer] { enforcer.cancelManualRequests(); };
    s.sourceIcon = [system](const QString &id) -> std::optional<QImage> {
        const std::optional<Source> source = Catalog::find(id, system);
        return source ? source->icon() : std::nullopt;
    };
    s.availability = system.availability;
    s.framework = SourcesAvailability::frameworkName(system.backend);
    return s;
}
