// The timeline in a whole window, from the event to the painted pane, beside one that is made of
// Qt's own items.

#include <QAbstractEventDispatcher>
#include <QTest>
#include <QWheelEvent>
#include <chrono>

#include "bench/peers/timeline_peer.h"
#include "bench/window/frame_times.h"
#include "bench/window/open_window.h"
#include "ui/canvas/canvas_view.h"
#include "ui/timeline/timeline_pane.h"
#include "ui/timeline/tracks_view.h"
#include "ui/widgets/appearance.h"
#include "ui/window/split_view.h"

namespace tweenery::bench {
namespace {

constexpr int kElementsWithRows = 500;
constexpr int kElementsScrubbed = 200;
constexpr int kKeyframesOfRow = 40;
constexpr int kDistanceInMS = 250;
constexpr int kPaneHeight = 400;
constexpr int kZoomStop = 7;  // 0.2 points a millisecond
constexpr int kReturn = 20;   // frames until what goes forth goes back
constexpr int kTimes = 9;
constexpr int kWheelStep = 120;

int direction(int number) {
    return number % (2 * kReturn) < kReturn ? 1 : -1;
}

void addKeyframes(PCElement& element) {
    for (int i = 0; i < kKeyframesOfRow; ++i) {
        const int32_t time = (i + 1) * kDistanceInMS;
        const auto value = static_cast<float>(i % 7 + 1);
        element.setTranslation({value * 10, value * 5}, time);
        element.setScale({1 + value / 10, 1 + value / 20}, time);
        element.setZRotation(value / 5, time);
        element.setOpacity(1 - value / 10, time);
    }
}

class TimelineBench {
 public:
    explicit TimelineBench(int elements = kElementsWithRows)
        : m_open([this, elements](PCProject& project) { fill(project, elements); }) {
        Appearance::current().setReducesMotion(true);
        m_open.window().splitView().setBottomPaneHeight(kPaneHeight);
        m_open.controller().selectAnimation(m_animation);
        m_open.settle();
        m_open.controller().timelineViewport().setZoomIndex(kZoomStop);
        m_open.controller().timelineViewport().scrollTo({});
        m_open.settle();
        m_frames = std::make_unique<FrameTimes>(tracks());
    }

    OpenWindow& open() { return m_open; }
    FrameTimes& frames() { return *m_frames; }
    TracksView& tracks() { return m_open.window().timeline().tracks(); }
    PCDocumentWindowController& controller() { return m_open.controller(); }
    const PCAnimation::Ptr& animation() { return m_animation; }

    QPoint inTracks(QPointF point) { return tracks().mapTo(&m_open.window(), point.toPoint()); }
    void wheel(QPoint angle, Qt::KeyboardModifiers modifiers = {}) {
        const QPoint at = inTracks({600, 200});
        QWheelEvent event(at, m_open.window().mapToGlobal(at), {}, angle, Qt::NoButton, modifiers,
                          Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(m_open.window().windowHandle(), &event);
    }
    /// A keyframe in sight.
    PCKeyedPropertyTimeline::KeyframePtr someKeyframe() {
        return controller()
            .timelineOutline()
            .row(kSomeRow)
            .timeline->existingKeyframeAtKeyframeIndex(4);
    }
    QPoint placeOf(const PCPropertyKeyframe& keyframe) {
        return inTracks(tracks().keyframeRect(kSomeRow, keyframe.timeInMS()).center());
    }
    void selectKeyframes(size_t count) {
        PCKeyframeManager::KeyframeSet selected{someKeyframe()};
        const TimelineOutline& outline = controller().timelineOutline();
        for (int row = 0; row < outline.rowCount() && selected.size() < count; ++row) {
            const auto timeline = outline.row(row).timeline;
            if (!timeline) { continue; }
            for (const auto& keyframe : timeline->keyframesSortedByTime()) {
                if (selected.size() < count) { selected.insert(keyframe); }
            }
        }
        controller().keyframeManager().selectKeyframes(selected);
        m_open.settle();
    }

 private:
    static constexpr int kSomeRow = 3;

    PCAnimation::Ptr m_animation;
    OpenWindow m_open;
    std::unique_ptr<FrameTimes> m_frames;

    void fill(PCProject& project, int elements) {
        addPictures(project, elements);
        PCAnimationsManager& animations = project.animationsManager();
        m_animation = animations.addNewEmptyAnimation();
        animations.setSelectedAnimation(m_animation);
        for (const PCElement::Ptr& element : project.canvas()->subelements()) {
            addKeyframes(*element);
        }
        animations.setSelectedAnimation(nullptr);
    }
};

using Clock = std::chrono::steady_clock;

double millisecondsSince(Clock::time_point begin) {
    return std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
}

// From the selection of the animation until its rows are painted and nothing is left to do.
void openTimeline(benchmark::State& state) {
    TimelineBench bench;
    std::vector<double> times;
    for (auto _ : state) {
        for (int i = 0; i < kTimes; ++i) {
            bench.controller().selectAnimation(nullptr);
            bench.open().settle();
            const auto begin = Clock::now();
            bench.controller().selectAnimation(bench.animation());
            bench.open().settle();
            times.push_back(millisecondsSince(begin));
        }
    }
    std::sort(times.begin(), times.end());
    state.counters["median_ms"] = times[times.size() / 2];
    state.counters["rows"] = bench.controller().timelineOutline().rowCount();
}

void scrollTimeline(benchmark::State& state) {
    TimelineBench bench;
    bench.frames().measure(state, [&](int number) {
        bench.wheel({0, -kWheelStep * direction(number)});
    });
}

void scrollTimelineAcross(benchmark::State& state) {
    TimelineBench bench;
    bench.frames().measure(state, [&](int number) {
        bench.wheel({-kWheelStep * direction(number), 0});
    });
}

void zoomTimeline(benchmark::State& state) {
    TimelineBench bench;
    bench.frames().measure(state, [&](int number) {
        bench.wheel({0, -kWheelStep * direction(number)}, Qt::ControlModifier);
    });
}

void drawMarquee(benchmark::State& state) {
    TimelineBench bench;
    const QPoint from = bench.inTracks({20, 60});
    bench.open().press(from);
    bench.frames().measure(state, [&](int number) {
        const int step = number % kReturn;
        bench.open().move(from + QPoint(100 + 40 * step, 50 + 10 * step));
    });
    if (bench.controller().keyframeManager().selectedKeyframes().empty()) {
        state.SkipWithError("nothing is selected");
    }
    bench.open().release(from);
}

void dragKeyframes(benchmark::State& state) {
    TimelineBench bench;
    bench.selectKeyframes(static_cast<size_t>(state.range(0)));
    const auto keyframe = bench.someKeyframe();
    const int32_t before = keyframe->timeInMS();
    const QPoint from = bench.placeOf(*keyframe);
    bench.open().press(from);
    bench.frames().measure(
        state, [&](int number) { bench.open().move(from + QPoint(5 + number % kReturn, 0)); });
    if (keyframe->timeInMS() == before) { state.SkipWithError("nothing is dragged"); }
    bench.open().release(from + QPoint(kReturn, 0));
    bench.open().settle();
    const auto begin = Clock::now();
    bench.controller().undo();
    bench.open().settle();
    state.counters["undo_ms"] = millisecondsSince(begin);
}

// The playhead is dragged over the ruler; canvas and inspector follow.
void scrubTimeline(benchmark::State& state) {
    TimelineBench bench(kElementsScrubbed);
    FrameTimes frames(*bench.open().window().canvas().viewport());
    const QPoint from = bench.inTracks({100, 20});
    bench.open().press(from);
    frames.measure(
        state, [&](int number) { bench.open().move(from + QPoint(10 + 7 * (number % 100), 0)); });
    bench.open().release(from);
}

void playTimeline(benchmark::State& state) {
    TimelineBench bench(kElementsScrubbed);
    bench.controller().togglePlayPause();
    bench.frames().measureBusy(state);
}

// The same of Qt's own parts.

TimelinePeer::Size peerSize() {
    constexpr int kRowsOfElement = 6;
    return {kElementsWithRows, kRowsOfElement, kKeyframesOfRow, kDistanceInMS};
}

// As OpenWindow::settle().
void settleEvents() {
    while (QAbstractEventDispatcher::instance()->processEvents(QEventLoop::AllEvents)) {}
}

void openPeer(benchmark::State& state) {
    std::vector<double> times;
    for (auto _ : state) {
        for (int i = 0; i < 3; ++i) {
            TimelinePeer peer;
            const auto begin = Clock::now();
            peer.load(peerSize());
            peer.show();
            settleEvents();
            times.push_back(millisecondsSince(begin));
        }
    }
    std::sort(times.begin(), times.end());
    state.counters["median_ms"] = times[times.size() / 2];
}

void scrollPeer(benchmark::State& state) {
    TimelinePeer peer;
    peer.load(peerSize());
    peer.show();
    settleEvents();
    FrameTimes frames(peer.painted());
    int y = 0;
    frames.measure(state, [&](int number) {
        constexpr int kStep = 60;
        y += kStep * direction(number);
        peer.scrollTo(0, y + kStep);
    });
}

void dragPeer(benchmark::State& state) {
    TimelinePeer peer;
    peer.load(peerSize());
    peer.show();
    settleEvents();
    peer.selectKeyframes(static_cast<int>(state.range(0)));
    settleEvents();
    FrameTimes frames(peer.painted());
    frames.measure(state, [&](int number) { peer.moveSelected(direction(number)); });
}

void once(benchmark::internal::Benchmark* benchmark) {
    benchmark->Iterations(1)->Unit(benchmark::kSecond)->UseRealTime();
}

BENCHMARK(openTimeline)->Apply(once);
BENCHMARK(openPeer)->Apply(once);
BENCHMARK(scrollTimeline)->Apply(once);
BENCHMARK(scrollTimelineAcross)->Apply(once);
BENCHMARK(scrollPeer)->Apply(once);
BENCHMARK(zoomTimeline)->Apply(once);
BENCHMARK(drawMarquee)->Apply(once);
BENCHMARK(dragKeyframes)->ArgName("keyframes")->Arg(1)->Arg(10'000)->Apply(once);
BENCHMARK(dragPeer)->ArgName("keyframes")->Arg(1)->Arg(10'000)->Apply(once);
BENCHMARK(scrubTimeline)->Apply(once);
BENCHMARK(playTimeline)->Apply(once);

}  // namespace
}  // namespace tweenery::bench
