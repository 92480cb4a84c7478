// How soon the engine brings the pinned source back after another program
// switches away from it, for a plain layout and for hangul (a CJKV source: the
// focus helper's path where the platform needs a focus change, on IBus a
// direct select like any other), and what the
// engine costs while nothing happens. The engine runs alone in a process of its
// own; this program plays the other program. On IBus each phase runs twice:
// against the engine and against a minimal keeper (this program again, started
// with --keeper: one asynchronous SetGlobalEngine per foreign GlobalEngineChanged),
// the yardstick for the engine's figures; a Fcitx5 run measures that keeper on
// IBus first, Fcitx5 having none. Idle, the engine alone and the product
// itself (`tolvar background`) are each measured. Run it through bench/run-engine,
// which gives it a private IBus; with --backend fcitx5 it starts the session's
// own fcitx5 and holds its focused input context.
#include "ProcessStats.h"
#include "core/config/ConfigStore.h"
#include "platform/input/InputSources.h"
#include "platform/linux/ibus/IBusAddress.h"
#include "platform/linux/ibus/IBusNames.h"

#include "desktops/Fcitx5Session.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QEventLoop>
#include <QFileInfo>
#include <QProcess>
#include <QRandomGenerator>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <functional>
#include <optional>
#include <vector>

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

// The identifiers of a plain layout, another one and a Korean method.
struct Names
{
    QString us;
    QString german;
    QString hangul;
};

const Names ibusNames{QStringLiteral("xkb:us::eng"), QStringLiteral("xkb:de::deu"), QStringLiteral("hangul")};
const Names fcitx5Names{QStringLiteral("keyboard-us"), QStringLiteral("keyboard-de"), QStringLiteral("hangul")};

struct Options
{
    bool fcitx5 = false;
    // Fcitx5 loads Tolvar's addon from the build tree, where it was built.
    bool fcitx5Addon = true;
    // Only the minimal keeper on IBus, for a Fcitx5 run's yardstick.
    bool keeperOnly = false;
    int directRounds = 200;
    int focusRounds = 200;
    int idleSeconds = 60;
    // Reactions in a row, as fast as they come, for the engine's memory.
    int memoryRounds = 0;
    // Each phase stops starting rounds after this long, whatever the count.
    std::chrono::seconds directBudget = 60s;
    std::chrono::seconds focusBudget = 690s;
    Clock::duration roundLimit = 5s;
    // Where hangul goes through the focus helper, automatic runs are at least
    // 3 s apart: rest this long after each
    // round, and less only to see what the spacing does.
    Clock::duration focusRest = 3200ms;
};

double ms(Clock::duration duration)
{
    return std::chrono::duration<double, std::milli>(duration).count();
}

int timerMs(Clock::duration duration)
{
    return static_cast<int>(std::max<Clock::rep>(0, std::chrono::ceil<std::chrono::milliseconds>(duration).count()));
}

// Runs the event loop meanwhile, so that signals do not pile up.
void pause(Clock::duration duration)
{
    QEventLoop loop;
    QTimer::singleShot(timerMs(duration), Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

// The selected source as IBus announces it: woken by GlobalEngineChanged, it
// reads the source afresh. Fcitx5 announces nothing: there it looks every
// couple of milliseconds itself, so that its own looks hardly add to the figures.
class SelectionWatch
{
public:
    bool start()
    {
        if (m_system.backend == QLatin1String("fcitx5"))
            return m_polls = true;
        return m_system.observeSelected(&m_context, [this] {
            m_changed = true;
            ++m_signals;
            if (m_waiting)
                m_waiting->quit();
        });
    }

    struct Seen
    {
        Clock::time_point at;
        int looks = 0; // 1: it was current at the first look
    };

    // When `id` was first seen current, looking at once and then after each
    // change signal; nothing if the deadline came first.
    std::optional<Seen> waitFor(const QString &id, Clock::time_point deadline)
    {
        for (int looks = 1;; ++looks) {
            m_changed = false;
            if (m_system.currentID() == id)
                return Seen{Clock::now(), looks};
            const Clock::duration left = deadline - Clock::now();
            if (left <= 0s)
                return std::nullopt;
            if (m_polls) {
                pause(2ms);
                continue;
            }
            QEventLoop loop;
            m_waiting = &loop;
            QTimer::singleShot(timerMs(left), Qt::PreciseTimer, &loop, &QEventLoop::quit);
            loop.exec();
            m_waiting = nullptr;
            if (!m_changed)
                return std::nullopt;
        }
    }

    qint32 select(const QString &id) const { return m_system.select(id); }
    QString current() const { return m_system.currentID(); }
    int signalsSeen() const { return m_signals; }

private:
    InputSources m_system = InputSources::live();
    QObject m_context;
    QEventLoop *m_waiting = nullptr;
    bool m_polls = false;
    bool m_changed = false;
    int m_signals = 0;
};

// The engine alone, on live wiring, in its own process; the minimal keeper
// pinned to `keeperPin`; or the product itself, `tolvar background`, with its
// model and its tray. Killed with this object.
class EngineHost
{
public:
    enum class Kind { Engine, Keeper, Product };

    explicit EngineHost(Kind kind = Kind::Engine, QString keeperPin = {})
        : m_kind(kind)
        , m_keeperPin(std::move(keeperPin))
    {}

    ~EngineHost()
    {
        if (m_process.state() != QProcess::NotRunning) {
            m_process.kill();
            m_process.waitForFinished();
        }
    }

    bool start()
    {
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        switch (m_kind) {
        case Kind::Engine: m_process.start(QStringLiteral(TOLVAR_ENGINE_HOST), QStringList()); break;
        case Kind::Keeper:
            m_process.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--keeper"), m_keeperPin});
            break;
        case Kind::Product:
            // It says nothing when ready: the caller waits for the pinned source instead.
            m_process.start(QStringLiteral(TOLVAR_EXECUTABLE), {QStringLiteral("background")});
            return m_process.waitForStarted(10000);
        }
        return m_process.waitForReadyRead(10000) && m_process.readLine().trimmed() == "ready";
    }

    qint64 pid() const { return m_process.processId(); }

private:
    Kind m_kind;
    QString m_keeperPin;
    QProcess m_process;
};

// The least a keeper can do on IBus: on each GlobalEngineChanged naming another
// engine, one SetGlobalEngine back, not waiting for its answer.
class MinimalKeeper : public QObject
{
    Q_OBJECT
public:
    MinimalKeeper(QDBusConnection bus, QString pinned)
        : m_bus(std::move(bus))
        , m_pinned(std::move(pinned))
    {}

    bool start()
    {
        return m_bus.connect(QString(), IBusNames::path, IBusNames::interface, QStringLiteral("GlobalEngineChanged"),
                             this, SLOT(changed(QString)));
    }

public slots:
    void changed(const QString &engine)
    {
        if (engine == m_pinned)
            return;
        QDBusMessage message = QDBusMessage::createMethodCall(IBusNames::service, IBusNames::path, IBusNames::interface,
                                                              QStringLiteral("SetGlobalEngine"));
        message.setArguments({m_pinned});
        m_bus.asyncCall(message);
    }

private:
    QDBusConnection m_bus;
    QString m_pinned;
};

int runKeeper(const QString &pinned)
{
    const QDBusConnection bus =
        QDBusConnection::connectToBus(IBusAddress::published(), QStringLiteral("tolvar-bench-keeper"));
    MinimalKeeper keeper(bus, pinned);
    if (!bus.isConnected() || !keeper.start())
        return 1;
    keeper.changed(QString());
    std::puts("ready");
    std::fflush(stdout);
    return QCoreApplication::exec();
}

// An empty `id` pins nothing, for phases without the engine.
bool pin(const QString &id)
{
    return ConfigStore::write(Config{.sourceID = id.isEmpty() ? std::optional<QString>() : std::optional(id),
                                     .enabled = !id.isEmpty(),
                                     .onboardingCompleted = true},
                              ConfigStore::directory())
        .ok();
}

// The sample nearest to the fraction's rank.
double percentile(const std::vector<double> &sorted, double fraction)
{
    if (sorted.empty())
        return 0;
    const auto index = static_cast<std::size_t>(std::lround(fraction * static_cast<double>(sorted.size() - 1)));
    return sorted[index];
}

struct PhaseResult
{
    QString name;
    std::vector<double> latencyMs; // one per round that came back in time
    std::vector<double> selectMs;  // the outside SetGlobalEngine call alone
    int timedOut = 0;
    int missedSignals = 0; // back by the deadline, yet no signal said so
    int backAtFirstLook = 0;
    bool completed = false;
};

void printSlowest(const PhaseResult &result, const std::vector<std::pair<double, int>> &byRound)
{
    std::vector<std::pair<double, int>> slowest = byRound;
    std::sort(slowest.begin(), slowest.end(), std::greater<>());
    slowest.resize(std::min<std::size_t>(slowest.size(), 5));
    std::printf("  slowest rounds of %s:", qPrintable(result.name));
    for (const auto &[latency, round] : slowest)
        std::printf(" #%d %.1f ms;", round, latency);
    std::printf("\n");
}

void printHost(qint64 pid, const ProcessStats::Cpu &before, int rounds)
{
    const std::optional<ProcessStats::Cpu> after = ProcessStats::cpu(pid);
    const std::optional<ProcessStats::Memory> memory = ProcessStats::memory(pid);
    if (!after || !memory)
        return;
    const double children = after->childrenMs - before.childrenMs;
    std::printf("  engine host during the rounds: CPU %.0f ms of its own, %.0f ms of its finished children "
                "(%.1f ms a round)\n  engine host after the rounds: VmRSS %lld KiB, VmHWM %lld KiB\n",
                after->ownMs - before.ownMs, children, rounds > 0 ? children / rounds : 0.0, memory->residentKiB,
                memory->peakKiB);
}

// Switches away from `pinned` to `away` from outside, again and again, and
// times how long until `pinned` is current again.
PhaseResult measureReaction(SelectionWatch &watch, const QString &pinned, const QString &away, int rounds,
                            std::chrono::seconds budget, const Options &options,
                            const std::function<Clock::duration()> &rest, bool keeper = false)
{
    PhaseResult result;
    result.name = keeper ? QStringLiteral("keeper ") + pinned : pinned;
    std::printf("\n== %s%s pinned, outside switch to %s: %d rounds, budget %lld s (load %s) ==\n",
                keeper ? "minimal keeper, " : "", qPrintable(pinned), qPrintable(away), rounds,
                static_cast<long long>(budget.count()), ProcessStats::loadAverage().constData());
    if (!pin(keeper ? QString() : pinned)) {
        std::printf("  could not write the configuration\n");
        return result;
    }
    EngineHost host(keeper ? EngineHost::Kind::Keeper : EngineHost::Kind::Engine, pinned);
    if (!host.start()) {
        std::printf("  the engine host did not start\n");
        return result;
    }
    if (!watch.waitFor(pinned, Clock::now() + 10s)) {
        std::printf("  %s never became current after the engine started (current: %s)\n", qPrintable(pinned),
                    qPrintable(watch.current()));
        return result;
    }
    const ProcessStats::Cpu before = ProcessStats::cpu(host.pid()).value_or(ProcessStats::Cpu());

    std::vector<std::pair<double, int>> byRound;
    const Clock::time_point phaseStart = Clock::now();
    int round = 0;
    for (; round < rounds && Clock::now() - phaseStart < budget; ++round) {
        pause(rest());
        const Clock::time_point start = Clock::now();
        const qint32 status = watch.select(away);
        result.selectMs.push_back(ms(Clock::now() - start));
        if (status != 0) {
            std::printf("  round %d: the outside switch failed with status %d\n", round, status);
            continue;
        }
        if (const std::optional<SelectionWatch::Seen> back = watch.waitFor(pinned, start + options.roundLimit)) {
            if (back->looks == 1)
                ++result.backAtFirstLook;
            result.latencyMs.push_back(ms(back->at - start));
            byRound.emplace_back(result.latencyMs.back(), round);
            continue;
        }
        ++result.timedOut;
        const QString current = watch.current();
        if (current == pinned)
            ++result.missedSignals;
        std::printf("  round %d: not back within %.0f ms (current: %s)\n", round, ms(options.roundLimit),
                    qPrintable(current));
        const std::optional<SelectionWatch::Seen> late = watch.waitFor(pinned, Clock::now() + 15s);
        if (!late) {
            std::printf("  still not back 15 s later: stopping this phase\n");
            break;
        }
        std::printf("  round %d: back %.0f ms after the switch\n", round, ms(late->at - start));
    }
    result.completed = round == rounds;
    std::printf("  ran %d of %d rounds in %.0f s%s\n", round, rounds, ms(Clock::now() - phaseStart) / 1000,
                result.completed ? "" : " (stopped by the budget or a failure)");
    printSlowest(result, byRound);
    printHost(host.pid(), before, round);
    return result;
}

// The engine's memory across many reactions in a row: each round switches away
// and waits until the pinned source is back.
bool measureMemory(SelectionWatch &watch, const QString &pinned, const QString &away, int rounds,
                   const Options &options)
{
    std::printf("\n== memory: %s pinned, %d reactions in a row (load %s) ==\n", qPrintable(pinned), rounds,
                ProcessStats::loadAverage().constData());
    if (!pin(pinned))
        return false;
    EngineHost host;
    if (!host.start() || !watch.waitFor(pinned, Clock::now() + 10s))
        return false;
    pause(1s);
    const std::optional<ProcessStats::Memory> before = ProcessStats::memory(host.pid());
    int back = 0;
    const Clock::time_point start = Clock::now();
    for (int round = 0; round < rounds; ++round) {
        if (watch.select(away) != 0 || !watch.waitFor(pinned, Clock::now() + options.roundLimit)) {
            std::printf("  reaction %d did not come back: stopping\n", round);
            break;
        }
        ++back;
    }
    const double seconds = ms(Clock::now() - start) / 1000;
    pause(1s);
    const std::optional<ProcessStats::Memory> after = ProcessStats::memory(host.pid());
    if (!before || !after)
        return false;
    std::printf("  %d of %d reactions back in time, %.0f s\n", back, rounds, seconds);
    std::printf("  %-38s %10lld KiB -> %lld KiB\n", "VmRSS before -> after", before->residentKiB, after->residentKiB);
    std::printf("  %-38s %10lld KiB -> %lld KiB\n", "VmHWM before -> after", before->peakKiB, after->peakKiB);
    return back == rounds;
}

bool measureIdle(SelectionWatch &watch, const QString &german, int seconds, EngineHost::Kind kind)
{
    std::printf("\n== idle, %s: %s pinned and current, nothing happening, %d s (load %s) ==\n",
                kind == EngineHost::Kind::Product ? "tolvar background" : "the engine alone", qPrintable(german),
                seconds, ProcessStats::loadAverage().constData());
    if (!pin(german))
        return false;
    EngineHost host(kind);
    if (!host.start() || !watch.waitFor(german, Clock::now() + 10s)) {
        std::printf("  the engine did not start or did not select %s\n", qPrintable(german));
        return false;
    }
    // Past start-up, and past a few ticks of the engine's timer.
    pause(5s);
    const std::optional<ProcessStats::Cpu> before = ProcessStats::cpu(host.pid());
    const std::optional<ProcessStats::Memory> memoryBefore = ProcessStats::memory(host.pid());
    const int signalsBefore = watch.signalsSeen();
    const Clock::time_point start = Clock::now();
    pause(std::chrono::seconds(seconds));
    const double minutes = ms(Clock::now() - start) / 60000;
    const std::optional<ProcessStats::Cpu> after = ProcessStats::cpu(host.pid());
    const std::optional<ProcessStats::Memory> memoryAfter = ProcessStats::memory(host.pid());
    if (!before || !after || !memoryBefore || !memoryAfter) {
        std::printf("  could not read /proc for the engine host\n");
        return false;
    }
    std::printf("  %-38s %10.1f ms/min   (utime+stime, tick %.0f ms)\n", "CPU time",
                (after->ownMs - before->ownMs) / minutes, ProcessStats::tickMs());
    std::printf("  %-38s %10.2f ms/min   (schedstat, live threads)\n", "CPU time",
                (after->scheduledMs - before->scheduledMs) / minutes);
    std::printf("  %-38s %10lld KiB -> %lld KiB\n", "VmRSS at start -> end", memoryBefore->residentKiB,
                memoryAfter->residentKiB);
    std::printf("  %-38s %10lld KiB\n", "VmHWM (peak resident)", memoryAfter->peakKiB);
    std::printf("  %-38s %10d\n", "selection changes seen meanwhile", watch.signalsSeen() - signalsBefore);
    std::printf("  %-38s %10s\n", "current source at the end", qPrintable(watch.current()));
    return true;
}

void printTable(const std::vector<PhaseResult> &results)
{
    std::printf("\n%-14s %7s %9s %8s %8s %8s %8s %8s %9s\n", "pinned", "rounds", "timed out", "min ms", "median", "p95",
                "max", "mean", "select ms");
    for (PhaseResult result : results) {
        std::sort(result.latencyMs.begin(), result.latencyMs.end());
        std::sort(result.selectMs.begin(), result.selectMs.end());
        double sum = 0;
        for (const double latency : result.latencyMs)
            sum += latency;
        const double count = static_cast<double>(std::max<std::size_t>(result.latencyMs.size(), 1));
        std::printf("%-14s %7zu %9d %8.1f %8.1f %8.1f %8.1f %8.1f %9.2f\n", qPrintable(result.name),
                    result.latencyMs.size() + static_cast<std::size_t>(result.timedOut), result.timedOut,
                    result.latencyMs.empty() ? 0 : result.latencyMs.front(), percentile(result.latencyMs, 0.5),
                    percentile(result.latencyMs, 0.95), result.latencyMs.empty() ? 0 : result.latencyMs.back(),
                    sum / count, percentile(result.selectMs, 0.5));
        if (result.missedSignals > 0)
            std::printf("%-14s %d rounds were back by the deadline without a change signal\n", "",
                        result.missedSignals);
        std::printf("%-14s back already when first looked after the switch: %d rounds\n", "", result.backAtFirstLook);
    }
}

// The engine's median and p95 against the minimal keeper's, from the same run.
void printRatios(const std::vector<PhaseResult> &results)
{
    const auto sorted = [](std::vector<double> values) {
        std::sort(values.begin(), values.end());
        return values;
    };
    for (const PhaseResult &keeper : results) {
        if (!keeper.name.startsWith(QLatin1String("keeper ")))
            continue;
        for (const PhaseResult &engine : results) {
            if (QStringLiteral("keeper ") + engine.name != keeper.name)
                continue;
            const std::vector<double> e = sorted(engine.latencyMs);
            const std::vector<double> k = sorted(keeper.latencyMs);
            const auto ratio = [](double a, double b) { return b > 0 ? a / b : 0.0; };
            std::printf("%-14s engine/keeper: p50 %.1f/%.1f ms = %.2fx, p95 %.1f/%.1f ms = %.2fx\n",
                        qPrintable(engine.name), percentile(e, 0.5), percentile(k, 0.5),
                        ratio(percentile(e, 0.5), percentile(k, 0.5)), percentile(e, 0.95), percentile(k, 0.95),
                        ratio(percentile(e, 0.95), percentile(k, 0.95)));
        }
    }
}

// Zero: not measured.
struct Yardstick
{
    double p50 = 0;
    double p95 = 0;
};

// Fcitx5 has no keeper of its own to measure against: the minimal keeper on
// IBus, in the same session just before Fcitx5 starts, is the yardstick.
Yardstick measureIBusKeeper(const Options &options)
{
    QProcess child;
    child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    child.start(QCoreApplication::applicationFilePath(),
                {QStringLiteral("--keeper-only"), QStringLiteral("--direct-rounds"),
                 QString::number(options.directRounds), QStringLiteral("--direct-budget"),
                 QString::number(options.directBudget.count()), QStringLiteral("--idle-seconds"), QStringLiteral("0")});
    child.waitForFinished(static_cast<int>(options.directBudget.count() + 60) * 1000);
    Yardstick yardstick;
    for (const QByteArray &line : child.readAllStandardOutput().split('\n')) {
        if (line.startsWith("yardstick ")) {
            const QList<QByteArray> figures = line.split(' ');
            yardstick = Yardstick{figures.value(1).toDouble(), figures.value(2).toDouble()};
        } else if (!line.isEmpty()) {
            std::printf("  ibus | %s\n", line.constData());
        }
    }
    return yardstick;
}

std::optional<Options> parse(const QStringList &arguments)
{
    Options options;
    for (qsizetype i = 1; i < arguments.size(); i += 2) {
        if (arguments[i] == QLatin1String("--backend")) {
            const QString backend = arguments.value(i + 1);
            if (backend != QLatin1String("ibus") && backend != QLatin1String("fcitx5"))
                return std::nullopt;
            options.fcitx5 = backend == QLatin1String("fcitx5");
            continue;
        }
        if (arguments[i] == QLatin1String("--no-addon") || arguments[i] == QLatin1String("--keeper-only")) {
            (arguments[i] == QLatin1String("--no-addon") ? options.fcitx5Addon : options.keeperOnly) =
                arguments[i] == QLatin1String("--keeper-only");
            --i;
            continue;
        }
        // A lighter run for a shared machine: enough rounds for a median and a p95.
        if (arguments[i] == QLatin1String("--quick")) {
            options.directRounds = 60;
            options.focusRounds = 20;
            options.idleSeconds = 30;
            --i;
            continue;
        }
        bool ok = false;
        const int value = arguments.value(i + 1).toInt(&ok);
        if (!ok || value < 0)
            return std::nullopt;
        const QString &name = arguments[i];
        if (name == QLatin1String("--direct-rounds"))
            options.directRounds = value;
        else if (name == QLatin1String("--focus-rounds"))
            options.focusRounds = value;
        else if (name == QLatin1String("--idle-seconds"))
            options.idleSeconds = value;
        else if (name == QLatin1String("--memory-rounds"))
            options.memoryRounds = value;
        else if (name == QLatin1String("--direct-budget"))
            options.directBudget = std::chrono::seconds(value);
        else if (name == QLatin1String("--focus-budget"))
            options.focusBudget = std::chrono::seconds(value);
        else if (name == QLatin1String("--focus-rest-ms"))
            options.focusRest = std::chrono::milliseconds(value);
        else
            return std::nullopt;
    }
    return options;
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    if (argc == 3 && std::strcmp(argv[1], "--keeper") == 0)
        return runKeeper(QString::fromUtf8(argv[2]));
    // Each phase's lines as they come, also into a file.
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    const std::optional<Options> options = parse(QCoreApplication::arguments());
    if (!options) {
        std::fprintf(stderr,
                     "usage: %s [--backend ibus|fcitx5] [--no-addon] [--keeper-only] [--quick] [--direct-rounds N] "
                     "[--focus-rounds N] "
                     "[--idle-seconds N] [--memory-rounds N] [--direct-budget S] [--focus-budget S] "
                     "[--focus-rest-ms MS]\n",
                     argv[0]);
        return 2;
    }
    const Yardstick ibusKeeper =
        options->fcitx5 && options->directRounds > 0 ? measureIBusKeeper(*options) : Yardstick();
    // As a Fcitx5 user's session says it, so that this process and the engine choose Fcitx5.
    if (options->fcitx5)
        qputenv("XMODIFIERS", "@im=fcitx");
    // Started before anything asks which backend the session has.
    Fcitx5Session fcitx5;
    const QByteArray addonBuild = TOLVAR_BUILD_DIR;
    const bool addon =
        options->fcitx5Addon && QFileInfo::exists(QString::fromUtf8(addonBuild + "/lib/fcitx5/libtolvar.so"));
    if (options->fcitx5
        && !fcitx5.start({fcitx5Names.us, fcitx5Names.german, fcitx5Names.hangul}, addon ? addonBuild : QByteArray())) {
        std::fprintf(stderr, "fcitx5 did not start: is it installed?\n");
        return 1;
    }
    if (options->fcitx5)
        std::printf("fcitx5 %s Tolvar's addon\n", addon ? "with" : "without");
    const Names &names = options->fcitx5 ? fcitx5Names : ibusNames;
    const QString &us = names.us;
    const QString &german = names.german;
    const QString &hangul = names.hangul;
    SelectionWatch watch;
    if ((!options->fcitx5 && IBusAddress::published().isEmpty()) || !watch.start() || watch.current().isEmpty()) {
        std::fprintf(stderr, "Nothing to watch: run this through bench/run-engine.\n");
        return 1;
    }
    std::printf("Backend %s. Latency: from just before the outside switch until this process, woken by the\n"
                "change signal (IBus) or looking every 2 ms (Fcitx5), reads the pinned source back.\n"
                "Wait per round: %.0f ms.\n",
                options->fcitx5 ? "fcitx5" : "ibus", ms(options->roundLimit));

    std::vector<PhaseResult> results;
    bool failed = false;
    if (options->directRounds > 0) {
        // Rest a little between rounds, at random, so that rounds do not fall into step with the engine's timer.
        const auto rest = [] {
            return Clock::duration(50ms + std::chrono::milliseconds(QRandomGenerator::global()->bounded(100)));
        };
        if (options->keeperOnly) {
            const PhaseResult keeper =
                measureReaction(watch, german, us, options->directRounds, options->directBudget, *options, rest, true);
            std::vector<double> sorted = keeper.latencyMs;
            std::sort(sorted.begin(), sorted.end());
            std::printf("yardstick %.3f %.3f\n", percentile(sorted, 0.5), percentile(sorted, 0.95));
            return sorted.empty() ? 1 : 0;
        }
        for (const bool keeper : {false, true}) {
            if (keeper && options->fcitx5)
                continue;
            results.push_back(measureReaction(watch, german, us, options->directRounds, options->directBudget, *options,
                                              rest, keeper));
            failed = failed || results.back().latencyMs.empty();
        }
        // Hangul goes directly on IBus too; through the focus helper elsewhere, with its own phase below.
        if (!options->fcitx5) {
            for (const bool keeper : {false, true}) {
                results.push_back(measureReaction(watch, hangul, german, options->directRounds, options->directBudget,
                                                  *options, rest, keeper));
                failed = failed || results.back().latencyMs.empty();
            }
        }
    }
    if (options->focusRounds > 0 && options->fcitx5) {
        results.push_back(measureReaction(watch, hangul, german, options->focusRounds, options->focusBudget, *options,
                                          [&] { return options->focusRest; }));
        failed = failed || results.back().latencyMs.empty();
    }
    if (options->memoryRounds > 0)
        failed = !measureMemory(watch, german, us, options->memoryRounds, *options) || failed;
    if (options->idleSeconds > 0) {
        for (const EngineHost::Kind kind : {EngineHost::Kind::Engine, EngineHost::Kind::Product})
            failed = !measureIdle(watch, german, options->idleSeconds, kind) || failed;
    }
    if (!results.empty()) {
        printTable(results);
        printRatios(results);
    }
    if (ibusKeeper.p50 > 0 && !results.empty() && !results.front().latencyMs.empty()) {
        std::vector<double> engine = results.front().latencyMs;
        std::sort(engine.begin(), engine.end());
        std::printf("%-14s fcitx5 engine / IBus keeper: p50 %.1f/%.1f ms = %.2fx, p95 %.1f/%.1f ms = %.2fx\n",
                    qPrintable(results.front().name), percentile(engine, 0.5), ibusKeeper.p50,
                    percentile(engine, 0.5) / ibusKeeper.p50, percentile(engine, 0.95), ibusKeeper.p95,
                    percentile(engine, 0.95) / ibusKeeper.p95);
    }
    return failed ? 1 : 0;
}

#include "EngineLatencyBench.moc"
