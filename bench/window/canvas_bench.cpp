// Frames of the canvas in a whole window, from the event to the painted window.

#include "bench/window/frame_times.h"
#include "bench/window/open_window.h"
#include "ui/canvas/canvas_view.h"

namespace tweenery::bench {
namespace {

constexpr int kElements = 1000;
constexpr int kTurn = 20;  // frames until what goes forth goes back
constexpr int kNotch = 120;

int forthOrBack(int number) {
    return number % (2 * kTurn) < kTurn ? 1 : -1;
}

/// The place of a pointer that goes to and fro.
QPoint swing(QPoint from, int number) {
    const int step = number % (2 * kTurn);
    const int distance = 4 + 3 * (step < kTurn ? step : 2 * kTurn - step);
    return from + QPoint(distance, distance / 2);
}

class CanvasBench {
 public:
    CanvasBench() : m_open([](PCProject& project) { addPictures(project, kElements); }) {}

    OpenWindow& open() { return m_open; }
    FrameTimes& frames() { return m_frames; }

    /// Drags the elements that lie lowest, and lets them go.
    void drag(benchmark::State& state, size_t count) {
        PCElement::Elements elements = m_open.project().canvas()->subelements();
        elements.resize(count);
        m_open.controller().selectionManager().selectElements(elements);
        m_open.settle();
        const PCElement::Ptr& element = elements.front();
        const QSizeF size = element->size();
        const QPoint middle =
            m_open.at(element->convertToCanvas({size.width() / 2, size.height() / 2}));
        m_open.press(middle);
        m_frames.measure(state, [&](int number) { m_open.move(swing(middle, number)); });
        if (!m_open.controller().interaction().isPressed()) {
            state.SkipWithError("nothing is dragged");
        }
        m_open.release(middle);
    }
    void play(size_t count) {
        PCProject& project = m_open.project();
        PCAnimationsManager& animations = project.animationsManager();
        animations.setSelectedAnimation(animations.addNewEmptyAnimation());
        PCElement::Elements elements = project.canvas()->subelements();
        elements.resize(count);
        for (const PCElement::Ptr& element : elements) {
            for (const int32_t time : {0, 1000, 2000}) {
                const float there = time == 1000 ? 60 : 0;
                element->setTranslation({there, there / 2}, time);
                element->setZRotation(there / 60, time);
                element->setOpacity(1 - there / 120, time);
            }
            for (const PCPropertyType type : elementTimelineTypes()) {
                element->timeline(type)->setRepeatBehavior(PCRepeatBehaviorForever);
            }
        }
        m_open.settle();
        m_open.controller().togglePlayPause();
    }

 private:
    OpenWindow m_open;
    FrameTimes m_frames{*m_open.window().canvas().viewport()};
};

void dragElements(benchmark::State& state) {
    CanvasBench().drag(state, static_cast<size_t>(state.range(0)));
}

void play50Of1000(benchmark::State& state) {
    CanvasBench bench;
    bench.play(50);
    bench.frames().measureBusy(state);
}

void zoomStep(benchmark::State& state) {
    CanvasBench bench;
    bench.frames().measure(state, [&](int number) {
        bench.open().wheel({0, kNotch * forthOrBack(number)}, Qt::ControlModifier);
    });
}

void scrollStep(benchmark::State& state) {
    CanvasBench bench;
    bench.frames().measure(state, [&](int number) {
        bench.open().wheel({0, -kNotch / 12 * forthOrBack(number)});
    });
}

void frames(benchmark::internal::Benchmark* benchmark) {
    benchmark->Iterations(1)->Unit(benchmark::kSecond)->UseRealTime();
}

BENCHMARK(dragElements)->ArgName("elements")->Arg(1)->Arg(200)->Apply(frames);
BENCHMARK(play50Of1000)->Apply(frames);
BENCHMARK(zoomStep)->Apply(frames);
BENCHMARK(scrollStep)->Apply(frames);

}  // namespace
}  // namespace tweenery::bench
