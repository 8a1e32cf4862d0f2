// A drag of 200 selected elements among 1,000 on a canvas of 1136 by 768 points: the edit, the
// layers, the borders and what is painted again, together and each by itself.

#include <benchmark/benchmark.h>

#include <QPainter>
#include <memory>
#include <numbers>
#include <random>

#include "editor/canvas/element_selection_manager.h"
#include "editor/canvas/position_calculator.h"
#include "editor/layers/editor_layer.h"
#include "editor/layers/project_layers.h"
#include "model/project.h"
#include "scene/layer_renderer.h"

namespace tweenery::bench {
namespace {

using namespace Qt::StringLiterals;

constexpr int kElements = 1000;
constexpr int kSelected = 200;
constexpr QSize kView(1136, 768);

QImage artwork(int number) {
    QImage image(48, 36, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(QColor::fromHsv(number * 36, 200, 220));
    painter.drawRoundedRect(QRectF(1, 1, 46, 34), 8, 8);
    return image;
}

/// A window's part of a canvas with small images, every third of them turned.
class DraggedScene {
 public:
    explicit DraggedScene(double scale) : m_scale(scale) {
        m_project->setBackingScale(scale);
        addElements();
        m_layers = ProjectLayers::forProject(m_project);
        m_editor.setCanvasLayer(*PCLayer::of(*m_project->canvas()));
        m_editor.refreshBounds(
            PCEditorLayer::boundsSizedForCanvasSize(m_project->canvas()->size(), 1, kView), 1);
        PCElement::Elements selected = m_project->canvas()->subelements();
        selected.erase(selected.begin() + kSelected, selected.end());
        m_selection.selectElements(selected);
        paint();
    }
    ~DraggedScene() { m_selection.deselectAllElements(); }

    /// The pointer moves on, back and forth.
    void drag() {
        m_step = (m_step + 1) % 40;
        const double distance = m_step < 20 ? 1.5 : -1.5;
        PCPositionCalculator::updateElements(m_selection.selectedElements(), false,
                                             {distance, distance / 2}, EditTime::setup());
    }
    void flush() { benchmark::DoNotOptimize(m_layers->flush()); }
    void paint() {
        const QPointF corner = m_editor.convertPointFromCanvasToEditor(QPointF()) * -m_scale;
        m_renderer.frame(m_editor, {{m_scale, 0, 0, m_scale}, corner}, kView * m_scale);
    }

 private:
    double m_scale;
    int m_step = 0;
    PCProject::Ptr m_project = PCProject::init();
    ProjectLayers::Ptr m_layers;
    PCEditorLayer m_editor;
    PCElementSelectionManager m_selection{m_project};
    LayerRenderer m_renderer;
    UndoRegistrationPause m_pause{m_project->undoManager()};

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

void dragSelected(benchmark::State& state) {
    DraggedScene scene(scaleOf(state));
    for (auto _ : state) {
        scene.drag();
        scene.flush();
        scene.paint();
    }
}

void dragSelectedWithoutPaint(benchmark::State& state) {
    DraggedScene scene(scaleOf(state));
    for (auto _ : state) {
        scene.drag();
        scene.flush();
    }
}

BENCHMARK(dragSelected)->ArgName("scale")->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);
BENCHMARK(dragSelectedWithoutPaint)->ArgName("scale")->Arg(1)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tweenery::bench
