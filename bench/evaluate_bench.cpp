// Evaluating eight properties of a thousand elements with 25 keyframes each.

#include <benchmark/benchmark.h>

#include <QEasingCurve>
#include <QVariantAnimation>
#include <random>

#include "bench/big_project.h"
#include "model/properties/easing.h"

namespace tweenery::bench {
namespace {

constexpr int kElements = 1000;
constexpr int kKeyframes = 25;
constexpr int kDurationInMS = 10000;
constexpr int kFrameInMS = 16;

const PCElement::Elements& animatedElements() {
    static const PCProject::Ptr project = makeAnimatedElements(kElements, kKeyframes);
    static const PCElement::Elements elements = [] {
        PCElement::Elements leaves;
        for (const PCElement::Ptr& element : project->canvas()->elementAndAllDescendants()) {
            if (!element->isGroup()) { leaves.push_back(element); }
        }
        return leaves;
    }();
    return elements;
}

// The time of each step: the same for every element, as a frame asks for it, or another for each.
class Times {
 public:
    explicit Times(bool isRandom) : m_isRandom(isRandom) {}
    int32_t next() {
        if (m_isRandom) { return static_cast<int32_t>(m_random() % kDurationInMS); }
        return m_frame;
    }
    void endFrame() { m_frame = (m_frame + kFrameInMS) % kDurationInMS; }

 private:
    bool m_isRandom;
    int32_t m_frame = 0;
    std::minstd_rand m_random{7};
};

void evaluateTimelines(benchmark::State& state) {
    const PCElement::Elements& elements = animatedElements();
    Times times(state.range(0) != 0);
    for (auto _ : state) {
        for (const PCElement::Ptr& element : elements) {
            benchmark::DoNotOptimize(element->scaleAtTimeInMS(times.next()));
            benchmark::DoNotOptimize(element->translationAtTimeInMS(times.next()));
            benchmark::DoNotOptimize(element->zRotationAtTimeInMS(times.next()));
            benchmark::DoNotOptimize(element->opacityAtTimeInMS(times.next()));
            benchmark::DoNotOptimize(element->imageContentsAtTimeInMS(times.next()));
            benchmark::DoNotOptimize(element->childrenZPositionsAtTimeInMS(times.next()));
        }
        times.endFrame();
    }
    state.SetItemsProcessed(state.iterations() * kElements * 8);
}

QEasingCurve curve(size_t mode) {
    const EasingMode& row = easingModes()[mode % easingModes().size()];
    QEasingCurve easing(QEasingCurve::BezierSpline);
    easing.addCubicBezierSegment({row.x1, row.y1}, {row.x2, row.y2}, {1, 1});
    return easing;
}

void easingCurveAlone(benchmark::State& state) {
    const bool isSpline = state.range(0) != 0;
    std::vector<QEasingCurve> curves;
    for (size_t i = 0; i < 8; ++i) {
        curves.push_back(isSpline ? curve(i) : QEasingCurve(QEasingCurve::InOutCubic));
    }
    Times times(true);
    for (auto _ : state) {
        for (int i = 0; i < kElements; ++i) {
            for (const QEasingCurve& easing : curves) {
                benchmark::DoNotOptimize(
                    easing.valueForProgress(times.next() / double{kDurationInMS}));
            }
        }
    }
    state.SetItemsProcessed(state.iterations() * kElements * 8);
}

std::vector<std::unique_ptr<QVariantAnimation>> variantAnimations() {
    std::vector<std::unique_ptr<QVariantAnimation>> animations;
    std::minstd_rand random{9};
    for (int i = 0; i < kElements * 8; ++i) {
        auto animation = std::make_unique<QVariantAnimation>();
        animation->setDuration(kDurationInMS);
        animation->setEasingCurve(curve(static_cast<size_t>(i)));
        for (int key = 0; key < kKeyframes; ++key) {
            animation->setKeyValueAt(key / double{kKeyframes - 1},
                                     static_cast<double>(random() % 100));
        }
        animations.push_back(std::move(animation));
    }
    return animations;
}

void variantAnimation(benchmark::State& state) {
    const auto animations = variantAnimations();
    Times times(state.range(0) != 0);
    for (auto _ : state) {
        for (const auto& animation : animations) {
            animation->setCurrentTime(times.next());
            benchmark::DoNotOptimize(animation->currentValue());
        }
        times.endFrame();
    }
    state.SetItemsProcessed(state.iterations() * kElements * 8);
}

// All properties of an element at once, as a frame asks for them; each element at a time of its own
// when times are random.
void evaluateElements(benchmark::State& state) {
    const PCElement::Elements& elements = animatedElements();
    Times times(state.range(0) != 0);
    for (auto _ : state) {
        for (const PCElement::Ptr& element : elements) {
            benchmark::DoNotOptimize(element->valuesAtTimeInMS(times.next()));
        }
        times.endFrame();
    }
    state.SetItemsProcessed(state.iterations() * kElements * 8);
}

BENCHMARK(evaluateElements)->ArgName("random")->Arg(1)->Arg(0)->Unit(benchmark::kMicrosecond);
BENCHMARK(evaluateTimelines)->ArgName("random")->Arg(1)->Arg(0)->Unit(benchmark::kMicrosecond);
BENCHMARK(easingCurveAlone)->ArgName("spline")->Arg(1)->Arg(0)->Unit(benchmark::kMicrosecond);
BENCHMARK(variantAnimation)->ArgName("random")->Arg(1)->Arg(0)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace tweenery::bench
