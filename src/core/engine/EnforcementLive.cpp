// The engine wired to this machine: the catalog, the configuration file, the
// input-source service, the desktop's events and a real focus helper process.
#include "core/config/ConfigStore.h"
#include "core/engine/EnforcementDependencies.h"
#include "core/engine/EnforcementTriggers.h"
#include "core/engine/Enforcer.h"
#include "core/engine/FocusProcessJob.h"
#include "core/sources/Catalog.h"
#include "platform/InputSources.h"
#include "platform/Notifications.h"
#include "platform/WorkspaceEvents.h"

#include <QPointer>

namespace {

using namespace std::chrono_literals;

// Like the platform's own "parameter error" for a source it cannot find.
constexpr qint32 sourceNotFound = -50;
constexpr auto focusTimeLimit = 3s;

} // namespace

EnforcementDependencies EnforcementDependencies::live()
{
    const InputSources system = InputSources::live();
    EnforcementDependencies d;
    d.config = [] { return ConfigStore::loadOrDefault(); };
    d.secureInput = system.secureInput;
    d.currentID = system.currentID;
    d.find = [system](const QString &id) -> std::optional<EnforcementTarget> {
        const std::optional<Source> source = Catalog::find(id, system);
        if (!source)
            return std::nullopt;
        return EnforcementTarget{source->id(), source->isCJKV()};
    };
    d.select = [system](const QString &id) {
        const std::optional<Source> source = Catalog::find(id, system);
        return source ? system.select(source->id()) : sourceNotFound;
    };
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
