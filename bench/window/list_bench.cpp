// The list of 5,000 elements, and how long a click takes until all panes are painted.

#include <QLineEdit>

#include "bench/window/frame_times.h"
#include "bench/window/open_window.h"
#include "ui/canvas/canvas_view.h"
#include "ui/navigators/elements_view.h"

namespace tweenery::bench {
namespace {

constexpr int kElements = 5000;
constexpr int kElementsOnCanvas = 1000;
constexpr int kTimes = 21;

void openListOf5000(benchmark::State& state) {
    OpenWindow open([](PCProject& project) { addPictures(project, kElements); });
    FrameTimes::measureOnce(state, kTimes, [&] {
        // Made anew with all its rows, as when a project opens.
        ElementsView list(open.controller());
        list.resize(300, 800);
        list.show();
        open.settle();
    });
}

void selectAllOf5000(benchmark::State& state) {
    OpenWindow open([](PCProject& project) { addPictures(project, kElements); });
    FrameTimes::measureOnce(state, kTimes, [&, isSelected = false]() mutable {
        isSelected = !isSelected;
        open.key(Qt::Key_A, isSelected ? Qt::KeyboardModifiers(Qt::ControlModifier)
                                       : Qt::ControlModifier | Qt::ShiftModifier);
    });
}

void reorderOneOf5000(benchmark::State& state) {
    OpenWindow open([](PCProject& project) { addPictures(project, kElements); });
    open.controller().selectionManager().selectElements(
        {open.project().canvas()->children()[kElements / 2]});
    open.settle();
    FrameTimes::measureOnce(state, kTimes, [&, isFront = false]() mutable {
        isFront = !isFront;
        open.key(isFront ? Qt::Key_BracketRight : Qt::Key_BracketLeft,
                 Qt::ControlModifier | Qt::ShiftModifier);
    });
}

void renameOneOf5000(benchmark::State& state) {
    OpenWindow open([](PCProject& project) { addPictures(project, kElements); });
    const PCElement::Ptr element = open.project().canvas()->children()[kElements / 2];
    open.controller().selectionManager().selectElements({element});
    open.settle();
    FrameTimes::measureOnce(state, kTimes, [&] {
        open.key(Qt::Key_F2);
        for (const Qt::Key letter : {Qt::Key_A, Qt::Key_B, Qt::Key_Return}) {
            open.key(letter);
        }
    });
    if (!element->name().startsWith(QStringLiteral("ab"))) {
        state.SkipWithError("nothing was renamed");
    }
}

void clickToAllPanes(benchmark::State& state) {
    OpenWindow open([](PCProject& project) { addPictures(project, kElementsOnCanvas); });
    const auto& children = open.project().canvas()->children();
    std::vector<QPoint> places;
    for (size_t i = 0; i < 2; ++i) {
        const QSizeF size = children[kElementsOnCanvas - 1 - i]->size();
        places.push_back(open.at(children[kElementsOnCanvas - 1 - i]->convertToCanvas(
            {size.width() / 2, size.height() / 2})));
    }
    FrameTimes::measureOnce(state, kTimes, [&, number = size_t(0)]() mutable {
        const QPoint place = places[++number % 2];
        open.press(place);
        open.release(place);
    });
}

void once(benchmark::internal::Benchmark* benchmark) {
    benchmark->Iterations(1)->Unit(benchmark::kSecond)->UseRealTime();
}

BENCHMARK(openListOf5000)->Apply(once);
BENCHMARK(selectAllOf5000)->Apply(once);
BENCHMARK(reorderOneOf5000)->Apply(once);
BENCHMARK(renameOneOf5000)->Apply(once);
BENCHMARK(clickToAllPanes)->Apply(once);

}  // namespace
}  // namespace tweenery::bench
