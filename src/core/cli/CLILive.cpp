// The command line wired to this machine.
#include "core/cli/CLIServices.h"
#include "core/config/ConfigStore.h"
#include "core/doctor/Doctor.h"
#include "core/engine/Enforcer.h"
#include "core/engine/SwitchRetry.h"
#include "core/instance/InstanceLock.h"
#include "core/l10n/L10n.h"
#include "core/login/Agent.h"
#include "core/sources/Catalog.h"
#include "core/sources/SourcesAvailability.h"
#include "platform/AppLauncher.h"
#include "platform/AppPlaces.h"
#include "platform/ApplicationRole.h"
#include "platform/ExecutableLocation.h"
#include "platform/SessionFacts.h"
#include "platform/input/InputSources.h"

#include <QEventLoop>
#include <QHash>

#include <memory>
#include <utility>

namespace {

// One manual switch on this process's engine, waited for in an event loop.
std::optional<SwitchOutcome> enforceOnce()
{
    std::optional<SwitchOutcome> outcome;
    QEventLoop loop;
    QMetaObject::invokeMethod(
        &loop,
        [&] {
            Enforcer::shared().enforce(SwitchOrigin::Manual, [&](const SwitchOutcome &result) {
                outcome = result;
                loop.quit();
            });
        },
        Qt::QueuedConnection);
    loop.exec();
    return outcome;
}

std::optional<SwitchOutcome> switchWithTheEngine(const InputSources &system)
{
    ApplicationRole::becomeAccessory();
    return SwitchRetry::run({enforceOnce, [] { return ConfigStore::loadOrDefault().sourceID; }, system.currentID});
}

// The first call's answer, kept for the later ones.
template <typename T> std::function<T()> once(std::function<T()> ask)
{
    auto kept = std::make_shared<std::optional<T>>();
    return [ask = std::move(ask), kept] {
        if (!*kept)
            *kept = ask();
        return **kept;
    };
}

} // namespace

AutomationServices AutomationServices::live(std::optional<Expected<Config>> started)
{
    const InputSources system = InputSources::live();
    AutomationServices s;
    auto first = std::make_shared<std::optional<Expected<Config>>>(std::move(started));
    s.load = [first]() -> Expected<Config> {
        if (std::optional<Expected<Config>> config = std::exchange(*first, std::nullopt))
            return *std::move(config);
        return ConfigStore::load();
    };
    // After an edit the file read at the start is out of date: a report reads it afresh.
    s.update = [first](const ConfigStore::Edit &edit) {
        first->reset();
        return ConfigStore::mutate(ConfigStore::directory(), edit);
    };
    s.choices = once<QList<InputChoice>>([system] { return Catalog::choices(system); });
    // The current source is usually among the enabled ones, whose names are known already.
    s.current = [system, choices = s.choices]() -> InputChoice {
        const QString id = system.currentID();
        if (id.isEmpty())
            return {};
        for (const InputChoice &choice : choices()) {
            if (choice.id == id)
                return choice;
        }
        return Catalog::current(system);
    };
    s.running = [] { return InstanceLock::isHeld(InstanceLock::fileIn(AppPlaces::sessionLockDirectory())); };
    s.secureInput = system.secureInput;
    s.keymapHeld = system.keymapHeld;
    s.loginEnabled = [] { return Agent::isLoginEnabled(); };
    s.backend = system.backend;
    s.framework = SourcesAvailability::frameworkName(system.backend);
    s.availability = once<InputSources::Availability>(system.availability);
    s.following = system.following;
    s.trayHost = [] { return SessionFacts::live().trayHost().has_value(); };
    s.inKeyboardMenu = system.inKeyboardMenu;
    return s;
}

CLIServices CLIServices::live(std::optional<Expected<Config>> started)
{
    CLIServices s;
    s.automation = AutomationServices::live(std::move(started));
    s.switchOnce = [] { return switchWithTheEngine(InputSources::live()); };
    s.installLogin = [](const QString &executable) -> Expected<void, QString> {
        if (const auto installed = Agent::controller().install(executable, true); !installed)
            return L10n::describe(installed.error());
        return {};
    };
    s.uninstallLogin = []() -> Expected<void, QString> {
        if (const auto removed = Agent::controller().uninstall(true); !removed)
            return L10n::describe(removed.error());
        return {};
    };
    s.openApp = []() -> Expected<void, AutomationFailure> {
        switch (AppLauncher::openWindowedInstance(ExecutableLocation::path())) {
        case AppLauncher::Result::Opened: return {};
        case AppLauncher::Result::NotAppBundle: return AutomationFailure::notAppBundle();
        case AppLauncher::Result::Failed: return AutomationFailure::openFailed();
        }
        return AutomationFailure::openFailed();
    };
    s.executablePath = [] { return ExecutableLocation::path(); };
    s.configFile = [] { return ConfigStore::file(); };
    s.enableCompanion = InputSources::live().enableCompanion;
    s.buildInfo = AppBuildInfo::current;
    s.doctor = [] { return Doctor::run(DoctorServices::live()); };
    return s;
}
