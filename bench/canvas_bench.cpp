// What a frame of the canvas costs: 1,000 elements in a view of 1200 by 800 points, from the event
// to the painted picture, at 1 and 2 pixels a point. Where threads paint, the time is that of the
// wall; the processor time of all threads stands beside it.

#include <benchmark/benchmark.h>

#include <QPainter>
#include <memory>
#include <numbers>
#include <optional>
#include <random>

#include "bench/rounds.h"
#include "editor/canvas/element_selection_manager.h"
#include "editor/canvas/position_calculator.h"
#include "editor/canvas/zoom.h"
#include "editor/layers/editor_layer.h"
#include "editor/layers/project_layers.h"
#include "editor/timeline/playback.h"
#include "editor/timeline/project_time_manager.h"
#include "model/project.h"
#include "scene/layer_renderer.h"

namespace tweenery::bench {
namespace {

using namespace Qt::StringLiterals;

constexpr int kElements = 1000;
constexpr QSize kView(1200, 800);

QImage artwork(int number) {
    QImage image(48, 36, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(QColor::fromHsv(number * 36, 200, 220));
    painter.drawRoundedRect(QRectF(1, 1, 46, 34), 8, 8);
    return image;
}

class FrameClock : public MediaClock {
 public:
    double now() const override { return m_seconds; }
    void advance() { m_seconds += 1.0 / 60; }

 private:
    double m_seconds = 0;
};

/// A window's part of a canvas with small images, every third of them turned.
class CanvasScene {
 public:
    explicit CanvasScene(double scale) : m_scale(scale) {
        m_project->setBackingScale(scale);
        addElements();
        m_layers = ProjectLayers::forProject(m_project);
        PCLayer& canvas = *PCLayer::of(*m_project->canvas());
        m_editor.setCanvasLayer(canvas);
        m_timeManager.prepareToAnimateLayer(canvas);
        setZoom(1);
        paint();
    }
    ~CanvasScene() { m_selection.deselectAllElements(); }

    void selectElements(size_t count) { m_selection.selectElements(firstElements(count)); }
    /// The pointer moves on, back and forth.
    void drag() {
        const double distance = nextStep() < 20 ? 1.5 : -1.5;
        PCPositionCalculator::updateElements(m_selection.selectedElements(), false,
                                             {distance, distance / 2}, EditTime::setup());
    }
    /// The next step of the zoom commands, up to twice the size and back.
    void zoom() { setZoom(m_zoom < 2 ? zoomStepAfter(m_zoom) : zoomStepBefore(1)); }
    /// A notch of the wheel, back and forth.
    void scroll() { m_scrolled += nextStep() < 20 ? QPoint(0, 10) : QPoint(0, -10); }
    /// Plays an animation that moves, turns and fades so many elements.
    void play(size_t count) {
        PCAnimationsManager& animations = m_project->animationsManager();
        animations.setSelectedAnimation(animations.addNewEmptyAnimation());
        for (const PCElement::Ptr& element : firstElements(count)) {
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
        m_playback.emplace(m_project, m_timeManager, m_selection, m_layers);
        m_playback->togglePlayPause();
    }
    void playOn() {
        m_clock.advance();
        m_timeManager.displaylinkAdapter()->tick();
    }
    void flush() { benchmark::DoNotOptimize(m_layers->flush()); }
    void paint() {
        const QPointF corner =
            (m_editor.convertPointFromCanvasToEditor(QPointF()) + m_scrolled) * -m_scale;
        m_renderer.frame(m_editor, {{m_scale, 0, 0, m_scale}, corner}, kView * m_scale);
    }

 private:
    double m_scale;
    float m_zoom = 1;
    QPoint m_scrolled;
    int m_step = 0;
    FrameClock m_clock;
    StandardErrorLog m_log;
    PCProject::Ptr m_project = PCProject::init();
    ProjectLayers::Ptr m_layers;
    PCEditorLayer m_editor;
    PCElementSelectionManager m_selection{m_project};
    PCProjectTimeManager m_timeManager{m_clock, m_log};
    std::optional<Playback> m_playback;
    LayerRenderer m_renderer;
    UndoRegistrationPause m_pause{m_project->undoManager()};

    int nextStep() { return m_step = (m_step + 1) % 40; }
    void setZoom(float zoom) {
        m_zoom = zoom;
        m_project->preferences().setCanvasZoomLevel(zoom);
        m_editor.refreshBounds(
            PCEditorLayer::boundsSizedForCanvasSize(m_project->canvas()->size(), zoom, kView),
            zoom);
    }
    PCElement::Elements firstElements(size_t count) const {
        PCElement::Elements elements = m_project->canvas()->subelements();
        elements.resize(count);
        return elements;
    }
    void addElements() {
        std::minstd_rand random(11);
        const auto uniform = [&random](double end) {
            return std::uniform_real_distribution(0.0, end)(random);
        };
        for (int i = 0; i < 10; ++i) {
            m_project->imageSetManager().addOrReplaceImageSetWithPCImage(
                std::make_shared<PCImage>(artwork(i), u"image %1.png"_s.arg(i)));
        }
        const PCElement::Ptr& canvas = m_project->canvas();
        for (int i = 0; i < kElements; ++i) {
            const PCElement::Ptr element = PCElement::init();
            element->setName(u"element %1"_s.arg(i));
            canvas->insertSubelement(element, canvas->children().size());
            element->setImageName(u"image %1.png"_s.arg(i % 10));
            element->setPosition({uniform(kView.width()), uniform(kView.height())});
            if (i % 3 == 0) { element->setZRotation(uniform(2 * std::numbers::pi)); }
        }
    }
};

double scaleOf(const benchmark::State& state) {
    return static_cast<double>(state.range(0));
}

template <typename Act>
void runFrames(benchmark::State& state, CanvasScene& scene, const Act& act) {
    Rounds frames;
    for (auto _ : state) {
        frames.measure(state, [&] {
            act(scene);
            scene.flush();
            scene.paint();
        });
    }
    frames.report(state);
}

void dragSelected(benchmark::State& state) {
    CanvasScene scene(scaleOf(state));
    scene.selectElements(200);
    runFrames(state, scene, [](CanvasScene& it) { it.drag(); });
}

void dragSelectedWithoutPaint(benchmark::State& state) {
    CanvasScene scene(scaleOf(state));
    scene.selectElements(200);
    for (auto _ : state) {
        scene.drag();
        scene.flush();
    }
}

void playFrame(benchmark::State& state) {
    CanvasScene scene(scaleOf(state));
    scene.play(50);
    runFrames(state, scene, [](CanvasScene& it) { it.playOn(); });
}

void zoomStep(benchmark::State& state) {
    CanvasScene scene(scaleOf(state));
    runFrames(state, scene, [](CanvasScene& it) { it.zoom(); });
}

void scrollStep(benchmark::State& state) {
    CanvasScene scene(scaleOf(state));
    runFrames(state, scene, [](CanvasScene& it) { it.scroll(); });
}

void scales(benchmark::internal::Benchmark* benchmark) {
    benchmark->ArgName("scale")->Arg(1)->Arg(2)->MeasureProcessCPUTime()->UseRealTime()->Unit(
        benchmark::kMillisecond);
}

BENCHMARK(dragSelected)->Apply(scales);
BENCHMARK(dragSelectedWithoutPaint)->ArgName("scale")->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(playFrame)->Apply(scales);
BENCHMARK(zoomStep)->Apply(scales);
BENCHMARK(scrollStep)->Apply(scales);

}  // namespace
}  // namespace tweenery::bench
