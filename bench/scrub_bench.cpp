// Scrubbing: eight properties of a thousand elements at a new time, pushed into what draws them,
// without a paint. Against QVariantAnimations that set the items of a QGraphicsScene.

#include <benchmark/benchmark.h>

#include <QEasingCurve>
#include <QGraphicsPixmapItem>
#include <QGraphicsScene>
#include <QVariantAnimation>
#include <random>

#include "bench/big_project.h"
#include "editor/layers/project_layers.h"
#include "model/properties/easing.h"

namespace tweenery::bench {
namespace {

constexpr int kElements = 1000;
constexpr int kKeyframes = 25;
constexpr int kDurationInMS = 10000;

QImage artwork(int number) {
    QImage image(16, 16, QImage::Format_ARGB32_Premultiplied);
    image.fill(QColor::fromHsv(number * 10, 200, 200));
    return image;
}

// Every group keys the order of its children, so that each element has all eight properties.
PCProject::Ptr makeScene() {
    const PCProject::Ptr project = makeAnimatedElements(kElements, kKeyframes);
    const UndoRegistrationPause pause(project->undoManager());
    project->setBackingScale(1);
    for (int i = 0; i < kKeyframes; ++i) {
        const QString name = QStringLiteral("image %1.png").arg(i);
        project->imageSetManager().addOrReplaceImageSetWithPCImage(
            std::make_shared<PCImage>(artwork(i), name));
    }
    std::minstd_rand random(3);
    for (const PCElement::Ptr& element : project->canvas()->elementAndAllDescendants()) {
        if (!element->isGroup() || element->isCanvas()) { continue; }
        QStringList order = PCProject::sortedSubelementIdentifiers(*element);
        for (int key = 0; key < kKeyframes; ++key) {
            std::shuffle(order.begin(), order.end(), random);
            element->childrenZPositionsTimeline()->setArrayPropertyValue(order, key * 400);
        }
    }
    return project;
}

// A time far from the last one, or the next frame's.
int32_t nextTime(int32_t time, bool jumps) {
    return (time + (jumps ? 3719 : 16)) % kDurationInMS;
}

void scrubLayers(benchmark::State& state) {
    static const PCProject::Ptr project = makeScene();
    static const auto layers = ProjectLayers::forProject(project);
    int32_t time = 0;
    for (auto _ : state) {
        layers->show(EditTime::at(time));
        benchmark::DoNotOptimize(layers->flush());
        time = nextTime(time, state.range(0) != 0);
    }
    state.SetItemsProcessed(state.iterations() * kElements * 8);
}

/// An item with an animation for each of its eight properties.
class AnimatedItem {
 public:
    AnimatedItem(QGraphicsScene& scene, std::minstd_rand& random) {
        scene.addItem(&m_item);
        for (size_t i = 0; i < m_animations.size(); ++i) {
            QVariantAnimation& animation = m_animations[i];
            const EasingMode& row = easingModes()[i % easingModes().size()];
            QEasingCurve easing(QEasingCurve::BezierSpline);
            easing.addCubicBezierSegment({row.x1, row.y1}, {row.x2, row.y2}, {1, 1});
            animation.setDuration(kDurationInMS);
            animation.setEasingCurve(easing);
            for (int key = 0; key < kKeyframes; ++key) {
                const bool isImage = i == 7;
                const double value = isImage ? key : static_cast<double>(random() % 100) / 10;
                animation.setKeyValueAt(key / double{kKeyframes - 1}, value);
            }
        }
    }
    void setTime(int time, const std::vector<QPixmap>& pixmaps) {
        std::array<double, 8> values{};
        for (size_t i = 0; i < values.size(); ++i) {
            m_animations[i].setCurrentTime(time);
            values[i] = m_animations[i].currentValue().toDouble();
        }
        m_item.setPos(values[0], values[1]);
        m_item.setRotation(values[2]);
        m_item.setTransform(QTransform::fromScale(values[3], values[4]));
        m_item.setOpacity(values[5]);
        m_item.setZValue(values[6]);
        const auto image = static_cast<size_t>(std::clamp(values[7], 0.0, kKeyframes - 1.0));
        m_item.setPixmap(pixmaps[image]);
    }

 private:
    QGraphicsPixmapItem m_item;
    std::array<QVariantAnimation, 8> m_animations;
};

void scrubGraphicsItems(benchmark::State& state) {
    QGraphicsScene scene;
    scene.setItemIndexMethod(QGraphicsScene::NoIndex);
    std::vector<QPixmap> pixmaps;
    for (int i = 0; i < kKeyframes; ++i) {
        pixmaps.push_back(QPixmap::fromImage(artwork(i)));
    }
    std::minstd_rand random(5);
    std::vector<std::unique_ptr<AnimatedItem>> items;
    for (int i = 0; i < kElements; ++i) {
        items.push_back(std::make_unique<AnimatedItem>(scene, random));
    }
    int32_t time = 0;
    for (auto _ : state) {
        for (const auto& item : items) {
            item->setTime(time, pixmaps);
        }
        time = nextTime(time, state.range(0) != 0);
    }
    state.SetItemsProcessed(state.iterations() * kElements * 8);
}

BENCHMARK(scrubLayers)->ArgName("jumps")->Arg(1)->Arg(0)->Unit(benchmark::kMicrosecond);
BENCHMARK(scrubGraphicsItems)->ArgName("jumps")->Arg(1)->Arg(0)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace tweenery::bench
