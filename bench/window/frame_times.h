#pragma once

#include <benchmark/benchmark.h>

#include <QEvent>
#include <QObject>
#include <functional>
#include <vector>

class QWidget;

namespace tweenery::bench {

/// Times of frames, from an event to what it changed on the screen. Reported is the median of five
/// rounds of what 95 of 100 frames do not exceed, after frames to warm up.
class FrameTimes : public QObject {
 public:
    /// Frames are painted by this widget; the viewport, if it scrolls.
    explicit FrameTimes(QWidget& painted);

    /// `act` sends the event of a frame that has a number.
    void measure(benchmark::State& state, const std::function<void(int number)>& act);
    /// Frames that the program draws by itself, as while it plays: the time in which it was busy
    /// for each.
    void measureBusy(benchmark::State& state);
    /// One thing that happens now and then: the median of several times, from `act` until the
    /// program has nothing left to do.
    static void measureOnce(benchmark::State& state, int times, const std::function<void()>& act);

 private:
    static constexpr int kWarming = 60;
    static constexpr int kFrames = 600;
    static constexpr int kRounds = 5;

    int m_paintings = 0;

    bool eventFilter(QObject* watched, QEvent* event) override;
    void report(benchmark::State& state, const std::function<double(int)>& frame);
};

}  // namespace tweenery::bench
