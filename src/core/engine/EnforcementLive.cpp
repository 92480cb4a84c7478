// The engine wired to this machine: the catalog, the configuration file, the
// input-source service, the desktop's events and a real focus helper process.
#include "core/config/ConfigStore.h"
#include "core/engine/EnforcementDependencies.h"
#include "core/engine/EnforcementTriggers.h"
#include "core/engine/Enforcer.h"
#include "core/engine/FocusProcessJob.h"
#include "core/sources/Catalog.h"
#include "core/sources/SourcesAvailability.h"
#include "platform/InputSources.h"
#include "platform/Notifications.h"
#include "platform/WorkspaceEvents.h"

#include <QPointer>
#include <QThread>

namespace {

using namespace std::chrono_literals;

// Like the platform's own "parameter error" for a source it cannot find.
constexpr qint32 sourceNotFound = -50;
constexpr auto focusTimeLimit = 3s;
constexpr int refusedRetries = 3;
constexpr unsigned long refusedPauseMs = 40;

} // namespace

EnforcementDependencies EnforcementDependencies::live()
{
    return over(InputSources::live());
}

EnforcementDependencies EnforcementDependencies::over(const InputSources &system)
{
    EnforcementDependencies d;
    d.config = [] { return ConfigStore::loadOrDefault(); };
    d.secureInput = system.secureInput;
    d.unreachable = [system] {
        return SourcesAvailability::warning(system.availability(), SourcesAvailability::frameworkName(system.backend));
    };
    d.currentID = system.currentID;
    d.find = [system](const QString &id) -> std::optional<EnforcementTarget> {
        const std::optional<Source> source = Catalog::find(id, system);
        if (!source)
            return std::nullopt;
        // Only where a CJKV source waits for a focus change is the helper worth its delay.
        return EnforcementTarget{source->id(), source->isCJKV() && system.cjkvNeedsFocus};
    };
    d.select = [system](const QString &id) {
        const std::optional<Source> source = Catalog::find(id, system);
        if (!source)
            return sourceNotFound;
        qint32 status = system.select(source->id());
        // IBus turns a switch down while another one is under way; a moment later it takes it.
        for (int retry = 0; status == InputSources::refused && retry < refusedRetries; ++retry) {
            QThread::msleep(refusedPauseMs << retry);
            status = system.select(source->id());
        }
        return status;
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
