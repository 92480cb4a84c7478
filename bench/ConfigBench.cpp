// Throughput of the configuration store: lock-free loads, locked mutations on
// their own, and mutations from several processes contending for the lock.
#include "core/config/ConfigStore.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <memory>
#include <vector>

namespace {

ConfigStore::Edit toggle()
{
    return [](Config &config) -> Expected<void> {
        config.enabled = !config.enabled;
        config.sourceID = QStringLiteral("xkb:us::eng");
        return {};
    };
}

void loadConfig(benchmark::State &state)
{
    QTemporaryDir home;
    ConfigStore::mutate(home.path(), toggle(), Notifications::none());
    for (auto _ : state)
        benchmark::DoNotOptimize(ConfigStore::loadFrom(home.path()));
}
BENCHMARK(loadConfig);

void mutateConfig(benchmark::State &state)
{
    QTemporaryDir home;
    for (auto _ : state)
        benchmark::DoNotOptimize(ConfigStore::mutate(home.path(), toggle(), Notifications::none()));
}
BENCHMARK(mutateConfig);

// Mutations announced on the session bus, as every real writer does.
void mutateConfigAnnounced(benchmark::State &state)
{
    if (qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS")) {
        state.SkipWithError("no session bus");
        return;
    }
    QTemporaryDir home;
    const Notifications live = Notifications::live();
    for (auto _ : state)
        benchmark::DoNotOptimize(ConfigStore::mutate(home.path(), toggle(), live));
}
BENCHMARK(mutateConfigAnnounced);

int mutateMany(const QString &directory, int count)
{
    for (int i = 0; i < count; ++i) {
        if (!ConfigStore::mutate(directory, toggle(), Notifications::none()))
            return 1;
    }
    return 0;
}

// N copies of this program mutate the same file at once; prints the total rate.
int contend(int processes, int count)
{
    QTemporaryDir home;
    QElapsedTimer timer;
    timer.start();
    std::vector<std::unique_ptr<QProcess>> children;
    for (int i = 0; i < processes; ++i) {
        children.push_back(std::make_unique<QProcess>());
        children.back()->start(QCoreApplication::applicationFilePath(),
                               {QStringLiteral("--mutate"), home.path(), QString::number(count)});
    }
    int failures = 0;
    for (auto &child : children) {
        child->waitForFinished(-1);
        failures += child->exitCode() != 0;
    }
    const double seconds = double(timer.nsecsElapsed()) / 1e9;
    std::printf("contended mutate: %d processes x %d edits in %.3f s = %.0f edits/s (%d failed processes)\n", processes,
                count, seconds, processes * count / seconds, failures);
    return failures == 0 ? 0 : 1;
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList args = QCoreApplication::arguments();
    if (args.size() == 4 && args[1] == QLatin1String("--mutate"))
        return mutateMany(args[2], args[3].toInt());
    if (args.size() == 4 && args[1] == QLatin1String("--contend"))
        return contend(args[2].toInt(), args[3].toInt());

    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
