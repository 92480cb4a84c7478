// The application model wired to this machine.
#include "app/model/AppServices.h"
#include "core/config/ConfigSnapshot.h"
#include "core/doctor/Doctor.h"
#include "core/engine/Enforcer.h"
#include "core/l10n/L10n.h"
#include "core/login/Agent.h"
#include "core/sources/Catalog.h"
#include "core/sources/SourcesAvailability.h"
#include "platform/ExecutableLocation.h"
#include "platform/input/KeyboardSettings.h"

#include <QDesktopServices>
#include <QThreadPool>

AppServices AppServices::live(Enforcer &enforcer)
{
    AppServices s = over(InputSources::live(), ConfigStore::directory(), Notifications::live());
    s.load = [] { return ConfigSnapshot::shared().recent(); };
    s.updateConfig = [update = s.updateConfig](const ConfigStore::Edit &edit) {
        const Expected<Config> written = update(edit);
        ConfigSnapshot::shared().forget();
        return written;
    };
    s.keepWith(enforcer);
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
    s.background = [](std::function<void()> work) { QThreadPool::globalInstance()->start(std::move(work)); };
    s.openKeyboardSettings = KeyboardSettings::live().open;
    s.openAddress = [](const QUrl &address) { QDesktopServices::openUrl(address); };
    s.checkComputer = [] { return Doctor::run(DoctorServices::live()); };
    return s;
}

AppServices AppServices::over(const InputSources &system, const QString &configDirectory,
                              const Notifications &notifications)
{
    AppServices s;
    s.load = [configDirectory] { return ConfigStore::loadFrom(configDirectory); };
    s.updateConfig = [configDirectory, notifications](const ConfigStore::Edit &edit) {
        return ConfigStore::mutate(configDirectory, edit, notifications);
    };
    s.choices = [system] { return Catalog::choices(system); };
    s.current = [system] { return Catalog::current(system); };
    s.secureInput = system.secureInput;
    s.keymapHeld = system.keymapHeld;
    s.sourceIcon = [system](const QString &id) -> std::optional<QImage> {
        const std::optional<Source> source = Catalog::find(id, system);
        return source ? source->icon() : std::nullopt;
    };
    s.availability = system.availability;
    s.framework = SourcesAvailability::frameworkName(system.backend);
    return s;
}

void AppServices::keepWith(Enforcer &enforcer)
{
    startKeeper = [&enforcer](std::function<void()> onUpdate, Completion onAutomaticOutcome) {
        enforcer.setOnUpdate(std::move(onUpdate));
        enforcer.setOnAutomaticOutcome(std::move(onAutomaticOutcome));
        enforcer.start();
        enforcer.enforce(SwitchOrigin::Automatic);
    };
    apply = [&enforcer](Completion completion) { enforcer.enforce(SwitchOrigin::Manual, std::move(completion)); };
    isSwitching = [&enforcer] { return enforcer.isSwitching(); };
    cancelSwitch = [&enforcer] { enforcer.cancelManualRequests(); };
}
