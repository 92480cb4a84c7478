// How long one call of the catalog takes against the session's input-source
// system (IBus on Linux): every call is timed on its own, and each benchmark
// reports the median and the 95th percentile in microseconds.
#include "core/sources/Catalog.h"

#include <QCoreApplication>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

namespace {

double percentile(const std::vector<double> &sorted, double fraction)
{
    if (sorted.empty())
        return 0;
    const auto index = static_cast<std::size_t>(fraction * static_cast<double>(sorted.size() - 1) + 0.5);
    return sorted[index];
}

template <typename Call> void timeEachCall(benchmark::State &state, Call call)
{
    std::vector<double> micros;
    for (auto _ : state) {
        const auto start = std::chrono::steady_clock::now();
        benchmark::DoNotOptimize(call());
        micros.push_back(std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start).count());
    }
    std::sort(micros.begin(), micros.end());
    state.counters["median_us"] = percentile(micros, 0.50);
    state.counters["p95_us"] = percentile(micros, 0.95);
}

void choices(benchmark::State &state)
{
    timeEachCall(state, [] { return Catalog::choices(); });
}

void findEnabled(benchmark::State &state)
{
    timeEachCall(state, [] { return Catalog::find(QStringLiteral("hangul")); });
}

void findUnknown(benchmark::State &state)
{
    timeEachCall(state, [] { return Catalog::find(QStringLiteral("no-such-engine")); });
}

void currentID(benchmark::State &state)
{
    timeEachCall(state, [] { return InputSources::live().currentID(); });
}

// A direct switch as the engine makes it: select, then read the current source back.
void selectAndConfirm(benchmark::State &state)
{
    const QString sources[] = {QStringLiteral("xkb:de::deu"), QStringLiteral("xkb:us::eng")};
    std::size_t next = 0;
    timeEachCall(state, [&] {
        const QString &id = sources[next++ % 2];
        return InputSources::live().select(id) == 0 && InputSources::live().currentID() == id;
    });
}

} // namespace

BENCHMARK(choices)->Unit(benchmark::kMicrosecond);
BENCHMARK(findEnabled)->Unit(benchmark::kMicrosecond);
BENCHMARK(findUnknown)->Unit(benchmark::kMicrosecond);
BENCHMARK(currentID)->Unit(benchmark::kMicrosecond);
BENCHMARK(selectAndConfirm)->Unit(benchmark::kMicrosecond);

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    if (Catalog::choices().isEmpty()) {
        std::fprintf(stderr, "No input sources: run this through bench/run-catalog.\n");
        return 1;
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
