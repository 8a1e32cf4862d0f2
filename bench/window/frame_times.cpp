#include "bench/window/frame_times.h"

#include <QAbstractEventDispatcher>
#include <QWidget>
#include <algorithm>
#include <chrono>
#include <stdexcept>

namespace tweenery::bench {
namespace {

constexpr double kPatience = 10'000;  // ms

using Clock = std::chrono::steady_clock;

double millisecondsSince(Clock::time_point begin) {
    return std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
}

/// False when there was nothing to do.
bool runEvents() {
    return QAbstractEventDispatcher::instance()->processEvents(QEventLoop::AllEvents);
}

double sorted(std::vector<double> times, double part) {
    std::sort(times.begin(), times.end());
    return times[static_cast<size_t>(static_cast<double>(times.size()) * part)];
}

}  // namespace

FrameTimes::FrameTimes(QWidget& painted) {
    painted.installEventFilter(this);
}

bool FrameTimes::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Paint) { ++m_paintings; }
    return QObject::eventFilter(watched, event);
}

void FrameTimes::report(benchmark::State& state, const std::function<double(int)>& frame) {
    for (auto _ : state) {
        int number = 0;
        while (number < kWarming) {
            frame(number++);
        }
        std::vector<double> rounds;
        std::vector<double> medians;
        for (int round = 0; round < kRounds; ++round) {
            std::vector<double> times;
            while (times.size() < kFrames) {
                times.push_back(frame(number++));
            }
            rounds.push_back(sorted(times, 0.95));
            medians.push_back(sorted(times, 0.5));
        }
        state.counters["p95_ms"] = sorted(rounds, 0.5);
        state.counters["median_ms"] = sorted(medians, 0.5);
        state.counters["least_p95_ms"] = sorted(rounds, 0);
    }
}

void FrameTimes::measure(benchmark::State& state, const std::function<void(int)>& act) {
    report(state, [this, &act](int number) {
        const int before = m_paintings;
        const auto begin = Clock::now();
        act(number);
        while (m_paintings == before) {
            runEvents();
            if (millisecondsSince(begin) > kPatience) {
                throw std::runtime_error("an event changed nothing on the screen");
            }
        }
        const double time = millisecondsSince(begin);
        while (runEvents()) {  // what is done after the frame does not count to the next one
        }
        return time;
    });
}

void FrameTimes::measureBusy(benchmark::State& state) {
    report(state, [this](int) {
        const int before = m_paintings;
        double busy = 0;
        while (m_paintings == before) {
            const auto begin = Clock::now();
            if (runEvents()) { busy += millisecondsSince(begin); }
        }
        return busy;
    });
}

void FrameTimes::measureOnce(benchmark::State& state, int times, const std::function<void()>& act) {
    std::vector<double> all;
    for (auto _ : state) {
        for (int i = 0; i < times; ++i) {
            const auto begin = Clock::now();
            act();
            while (runEvents()) {}
            all.push_back(millisecondsSince(begin));
        }
    }
    state.counters["median_ms"] = sorted(all, 0.5);
    state.counters["longest_ms"] = sorted(all, 0.999);
}

}  // namespace tweenery::bench
