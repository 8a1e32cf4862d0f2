// From the start of the program to its first painted window, against a bare main window; what an
// open window holds in memory, and what it costs while nothing happens.

#include <benchmark/benchmark.h>

#include <QThread>
#include <algorithm>
#include <vector>

#include "bench/window/started_program.h"

namespace tweenery::bench {
namespace {

using namespace Qt::StringLiterals;

constexpr int kStarts = 20;
constexpr int kSecondsIdle = 10;
constexpr int kSecondsToSettle = 3;

double median(std::vector<double> times) {
    const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
    std::nth_element(times.begin(), middle, times.end());
    return *middle;
}

void startToFirstPaint(benchmark::State& state) {
    const QString big = bigPackage();
    const QStringList programs[] = {StartedProgram::bareWindow(), StartedProgram::tweenery(),
                                    StartedProgram::tweenery(big)};
    for (auto _ : state) {
        std::vector<double> times[3];
        for (int round = 0; round < kStarts; ++round) {
            for (size_t i = 0; i < 3; ++i) {
                times[i].push_back(StartedProgram(programs[i]).millisecondsToFirstPaint());
            }
        }
        const double bare = median(times[0]);
        state.counters["bare_ms"] = bare;
        state.counters["no_project_ms"] = median(times[1]);
        state.counters["no_project_ratio"] = median(times[1]) / bare;
        state.counters["big_ms"] = median(times[2]);
        state.counters["big_ratio"] = median(times[2]) / bare;
    }
}

void memoryAndIdleTime(benchmark::State& state) {
    const QString bounce = QStringLiteral(TWEENERY_SOURCE_DIR "/samples/Bounce.tweenery");
    for (auto _ : state) {
        const StartedProgram bare(StartedProgram::bareWindow());
        const StartedProgram open(StartedProgram::tweenery(bounce));
        QThread::sleep(kSecondsToSettle);
        state.counters["bare_MiB"] = bare.anonymousKibibytes() / 1024.0;
        state.counters["beyond_bare_MiB"] =
            (open.anonymousKibibytes() - bare.anonymousKibibytes()) / 1024.0;
        const long ticks = open.ticks();
        QThread::sleep(kSecondsIdle);
        state.counters["ticks_in_10_s"] = static_cast<double>(open.ticks() - ticks);
    }
}

BENCHMARK(startToFirstPaint)->Iterations(1)->Unit(benchmark::kSecond)->UseRealTime();
BENCHMARK(memoryAndIdleTime)->Iterations(1)->Unit(benchmark::kSecond)->UseRealTime();

}  // namespace
}  // namespace tweenery::bench
