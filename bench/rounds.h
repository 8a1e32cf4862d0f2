#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <ctime>
#include <vector>

namespace tweenery::bench {

/// The times of a benchmark's rounds one by one. Other work of the machine only adds, so the least
/// says most; the one that 95 of 100 do not exceed says what a user meets.
class Rounds {
 public:
    /// The state's time of this iteration is that of `work`, if it takes it by hand.
    template <typename Work>
    void measure(benchmark::State& state, const Work& work) {
        const double processorTime = secondsOfThread();
        const auto begin = std::chrono::steady_clock::now();
        work();
        const std::chrono::duration<double> time = std::chrono::steady_clock::now() - begin;
        m_processorTimes.push_back(secondsOfThread() - processorTime);
        m_times.push_back(time.count());
        state.SetIterationTime(time.count());
    }
    /// In milliseconds: of the wall's clock, and of the calling thread's processor time.
    void report(benchmark::State& state) {
        std::sort(m_times.begin(), m_times.end());
        state.counters["least_ms"] = m_times.front() * 1000;
        state.counters["p95_ms"] = m_times[m_times.size() * 95 / 100] * 1000;
        state.counters["least_cpu_ms"] =
            *std::min_element(m_processorTimes.begin(), m_processorTimes.end()) * 1000;
    }

 private:
    std::vector<double> m_times;
    std::vector<double> m_processorTimes;

    static double secondsOfThread() {
        timespec time;
        ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
    }
};

}  // namespace tweenery::bench
