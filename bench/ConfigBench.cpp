// Throughput of the configuration store: lock-free loads, locked mutations on
// their own, and mutations from several processes contending for the lock,
// made directly or as the command line's pause and resume make them.
#include "core/cli/CLI.h"
#include "core/config/ConfigStore.h"

#include <QBuffer>
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

// Alternately pause and resume through the live command line. With a mark,
// each command is followed by a locked append of the mark to the language, so
// that an edit written from a stale read would show as a missing mark.
int editMany(int count, const QString &mark)
{
    QBuffer out;
    QBuffer err;
    out.open(QIODevice::WriteOnly);
    err.open(QIODevice::WriteOnly);
    for (int i = 0; i < count; ++i) {
        const QString command = i % 2 ? QStringLiteral("resume") : QStringLiteral("pause");
        if (CLI(CLIServices::live(), out, err).run({command}) != 0) {
            std::fprintf(stderr, "%s\n", err.data().constData());
            return 1;
        }
        out.seek(0);
        const auto append = [&](Config &config) -> Expected<void> {
            config.language = config.language.value_or(QString()) + mark;
            return {};
        };
        if (!mark.isEmpty() && !ConfigStore::mutate(ConfigStore::directory(), append, Notifications::none()))
            return 1;
    }
    return 0;
}

// N copies of this program run `count` commands each on the live configuration
// (a pin the session's IBus offers): once timed, once with marks to count.
int contendCommands(int processes, int count)
{
    const auto pin = [](Config &config) -> Expected<void> {
        config = Config{.sourceID = QStringLiteral("xkb:us::eng"), .enabled = false, .onboardingCompleted = true};
        return {};
    };
    if (!ConfigStore::mutate(ConfigStore::directory(), pin, Notifications::none()))
        return 1;
    const auto runAll = [&](bool marked) {
        std::vector<std::unique_ptr<QProcess>> children;
        for (int i = 0; i < processes; ++i) {
            children.push_back(std::make_unique<QProcess>());
            children.back()->setProcessChannelMode(QProcess::ForwardedErrorChannel);
            const QString mark = marked ? QString(QLatin1Char(char('a' + i))) : QString();
            children.back()->start(QCoreApplication::applicationFilePath(),
                                   {QStringLiteral("--edit"), QString::number(count), mark});
        }
        int failures = 0;
        for (auto &child : children) {
            child->waitForFinished(-1);
            failures += child->exitCode() != 0;
        }
        return failures;
    };
    QElapsedTimer timer;
    timer.start();
    const int failures = runAll(false);
    const double seconds = double(timer.nsecsElapsed()) / 1e9;
    const int markedFailures = runAll(true);
    const QString marks = ConfigStore::load()->language.value_or(QString());
    int lost = 0;
    for (int i = 0; i < processes; ++i)
        lost += count - int(marks.count(QLatin1Char(char('a' + i))));
    std::printf("command-line pause/resume: %d processes x %d commands in %.3f s = %.0f commands/s "
                "(%d failed processes); lost updates: %d of %d\n",
                processes, count, seconds, processes * count / seconds, failures + markedFailures, lost,
                processes * count);
    return failures + markedFailures + lost == 0 ? 0 : 1;
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
    if (args.size() >= 3 && args[1] == QLatin1String("--edit"))
        return editMany(args[2].toInt(), args.value(3));
    if (args.size() == 4 && args[1] == QLatin1String("--contend-commands"))
        return contendCommands(args[2].toInt(), args[3].toInt());

    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
