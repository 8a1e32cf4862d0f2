// A drag of 200 elements over 500 events, in setup and in an animation, and its undo: as one group,
// which keeps an inverse of each setter called, and as a gesture, which keeps one for each element.

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <vector>

#include "model/project.h"

namespace tweenery::bench {
namespace {

using namespace Qt::StringLiterals;

constexpr int kElements = 200;
constexpr int kEvents = 500;

struct Scene {
    PCProject::Ptr project = PCProject::init();
    PCElement::Elements elements;

    explicit Scene(bool isAnimated) {
        const UndoRegistrationPause pause(project->undoManager());
        for (int i = 0; i < kElements; ++i) {
            const PCElement::Ptr element = PCElement::init();
            element->setName(QString::number(i));
            project->canvas()->insertSubelement(element, static_cast<size_t>(i));
            elements.push_back(element);
        }
        if (!isAnimated) { return; }
        PCAnimationsManager& animations = project->animationsManager();
        animations.setSelectedAnimation(animations.addNewEmptyAnimation());
        for (const PCElement::Ptr& element : elements) {
            for (int32_t time = 0; time < 1000; time += 100) {
                element->setTranslation({1.0 + time, 2.0 + time}, time);
            }
        }
    }

    template <typename Group>
    void drag() {
        const Group group(project->undoManager());
        const bool isSetup = project->isSetupMode();
        for (int event = 0; event < kEvents; ++event) {
            const QPointF place(event + 0.5, event + 0.25);
            for (const PCElement::Ptr& element : elements) {
                isSetup ? element->setPosition(place) : element->setTranslation(place, 450);
            }
            project->undoManager().endEvent();
        }
    }
};

size_t heapInUse() {
    return mallinfo2().uordblks;
}

// `measuresUndo`: only the undo's time counts, else only that of the drag.
template <typename Group>
void measure(benchmark::State& state, bool isAnimated, bool measuresUndo) {
    Scene scene(isAnimated);
    size_t bytes = 0;
    const auto outside = [&](bool isOutside, const auto& work) {
        if (isOutside) { state.PauseTiming(); }
        work();
        if (isOutside) { state.ResumeTiming(); }
    };
    for (auto _ : state) {
        outside(measuresUndo, [&] {
            const size_t before = heapInUse();
            scene.drag<Group>();
            bytes = heapInUse() - before;
        });
        outside(!measuresUndo, [&] { scene.project->undoManager().undo(); });
        outside(true, [&] { scene.project->undoManager().removeAllActions(); });
    }
    state.counters["step_kB"] = static_cast<double>(bytes) / 1000;
}

const bool isRegistered = [] {
    for (const bool isAnimated : {false, true}) {
        for (const bool measuresUndo : {false, true}) {
            const std::string name = std::string(measuresUndo ? "undo/" : "edit/") +
                                     "drag200x500/" + (isAnimated ? "animation/" : "setup/");
            benchmark::RegisterBenchmark((name + "group").c_str(), measure<UndoGroup>, isAnimated,
                                         measuresUndo)
                ->Unit(benchmark::kMillisecond);
            benchmark::RegisterBenchmark((name + "gesture").c_str(), measure<UndoGesture>,
                                         isAnimated, measuresUndo)
                ->Unit(benchmark::kMillisecond);
        }
    }
    return true;
}();

}  // namespace
}  // namespace tweenery::bench
