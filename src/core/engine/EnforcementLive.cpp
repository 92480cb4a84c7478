// The engine wired to this machine: the catalog, the configuration file, the
// input-source service, the desktop's events and a real focus helper process.
//
// The engine, its focus jobs and every service wired here live on the main
// thread and are called only from its event loop; none of them locks. The one
// piece of work the application sends to Qt's pool is the login item's check
// and change (AppModelActions), so that the disk never holds up the panel; it
// touches none of these, only the login files and the string tables.
#include "core/config/ConfigSnapshot.h"
#include "core/config/ConfigStore.h"
#include "core/engine/EnforcementDependencies.h"
#include "core/engine/EnforcementTriggers.h"
#include "core/engine/Enforcer.h"
#include "core/engine/FocusProcessJob.h"
#include "core/sources/Catalog.h"
#include "core/sources/SourcesAvailability.h"
#include "platform/Notifications.h"
#include "platform/WorkspaceEvents.h"
#include "platform/input/InputSources.h"

#include <QPointer>

#include <memory>

namespace {

using namespace std::chrono_literals;

constexpr auto focusTimeLimit = 3s;
constexpr unsigned long refusedPauseMs = 40;

} // namespace

EnforcementDependencies EnforcementDependencies::live()
{
    return over(InputSources::live());
}

EnforcementDependencies EnforcementDependencies::over(const InputSources &system)
{
    EnforcementDependencies d;
    d.config = [] {
        const Expected<Config> config = ConfigSnapshot::shared().read();
        return config ? config.value() : Config{};
    };
    d.secureInput = system.secureInput;
    d.keymapHeld = system.keymapHeld;
    d.unreachable = [system] {
        return SourcesAvailability::reason(system.availability(), SourcesAvailability::frameworkName(system.backend));
    };
    d.currentID = system.currentID;
    d.find = [system](const QString &id) -> std::optional<EnforcementTarget> {
        const std::optional<Source> source = Catalog::find(id, system);
        if (!source)
            return std::nullopt;
        // Only where a CJKV source waits for a focus change is the helper worth its delay.
        return EnforcementTarget{source->id(), source->isCJKV() && system.cjkvNeedsFocus};
    };
    // The engine selects only what `find` just found.
    d.select = [system](const QString &id) { return InputSources::selectPatiently(system, id, refusedPauseMs); };
    d.launchFocus = [](const QString &id, bool automatic, FocusCompletion completion) -> Expected<CancelFocus> {
        auto *job = new FocusProcessJob(focusTimeLimit, std::move(completion));
        if (const Expected<void> started = job->start(id, automatic); !started) {
            delete job;
            return started.error();
        }
        QPointer<FocusProcessJob> weak(job);
        return CancelFocus([weak] {
            if (weak)
                weak->stop(FocusProcessResult::cancelled());
        });
    };
    d.now = [] { return Clock::now(); };
    return d;
}

EnforcementTriggers EnforcementTriggers::live()
{
    const InputSources system = InputSources::live();
    const WorkspaceEvents workspace = WorkspaceEvents::live();
    EnforcementTriggers triggers;
    triggers.selectionChanged = [system](QObject *context, std::function<void()> callback) {
        system.observeSelected(context, std::move(callback));
    };
    triggers.listChanged = system.observeEnabled;
    triggers.announced = [system] { return system.following() == InputSources::Following::announced; };
    triggers.configChanged = [](QObject *context, std::function<void()> callback) {
        Notifications::live().observe(ConfigStore::changed, context, std::move(callback));
    };
    triggers.wake = [workspace](QObject *context, std::function<void()> callback) {
        workspace.observeWake(context, std::move(callback));
    };
    triggers.activation = [workspace](QObject *context, std::function<void(qint64)> callback) {
        workspace.observeActivation(context, std::move(callback));
    };
    triggers.keeping = system.needSelected;
    return triggers;
}

Enforcer &Enforcer::shared()
{
    // Lives as long as the process, like the event loop it serves.
    static Enforcer *instance = new Enforcer(EnforcementDependencies::live(), EnforcementTriggers::live());
    return *instance;
}
