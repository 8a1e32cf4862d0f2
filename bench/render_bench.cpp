// Frames of many image layers, whole, in part and into files, and hits among moved layers, against
// QPainter, QGraphicsScene and bare arithmetic. The machine may be busy: compare the least of
// several runs.

#include <benchmark/benchmark.h>

#include <QGraphicsPixmapItem>
#include <QGraphicsScene>
#include <QPainter>
#include <QRegion>
#include <algorithm>
#include <chrono>
#include <numbers>
#include <random>
#include <sstream>

#include "bench/big_project.h"
#include "cli/tweenc.h"
#include "scene/layer_renderer.h"
#include "storage/package_store.h"

namespace tweenery::bench {
namespace {

using namespace Qt::StringLiterals;

constexpr int kLayers = 200;
constexpr int kHitLayers = 2000;
constexpr QSizeF kCanvas(1136, 768);

double least(const std::vector<double>& runs) {
    return *std::min_element(runs.begin(), runs.end());
}

QImage artwork(int number) {
    QImage image(160, 120, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    QLinearGradient gradient(0, 0, 160, 120);
    gradient.setColorAt(0, QColor::fromHsv(number * 36, 200, 255));
    gradient.setColorAt(1, QColor::fromHsv(number * 36 + 30, 255, 120));
    painter.setBrush(gradient);
    painter.drawRoundedRect(QRectF(2, 2, 156, 116), 20, 20);
    return image;
}

/// A canvas of turned, scaled, half-transparent image layers that share ten images.
class ImageScene {
 public:
    explicit ImageScene(int count) : m_layers(static_cast<size_t>(count)) {
        m_root.setBounds({QPointF(), kCanvas});
        std::vector<QImage> images;
        for (int i = 0; i < 10; ++i) {
            images.push_back(artwork(i));
        }
        for (size_t i = 0; i < m_layers.size(); ++i) {
            Layer& layer = m_layers[i];
            layer.setContents(images[i % images.size()]);
            layer.setBounds({0, 0, 160, 120});
            layer.setTransform({.scale = {uniform(0.5, 1.5), uniform(0.5, 1.5)},
                                .rotation = uniform(0, 2 * std::numbers::pi),
                                .translation = {}});
            layer.setOpacity(0.5);
            m_root.addSublayer(layer);
        }
        moveFirst(m_layers.size());
    }

    void moveFirst(size_t count) {
        for (size_t i = 0; i < count; ++i) {
            m_layers[i].setPosition({uniform(0, kCanvas.width()), uniform(0, kCanvas.height())});
        }
    }
    /// By up to two points, as layers do from one frame to the next.
    void nudgeFirst(size_t count) {
        for (size_t i = 0; i < count; ++i) {
            const QPointF place = m_layers[i].position();
            m_layers[i].setPosition(place + QPointF(uniform(-2, 2), uniform(-2, 2)));
        }
    }

    Layer& root() { return m_root; }
    std::vector<Layer>& layers() { return m_layers; }

 private:
    double uniform(double least, double most) {
        return std::uniform_real_distribution<double>(least, most)(m_random);
    }

    std::mt19937 m_random{20260102};
    Layer m_root;
    std::vector<Layer> m_layers;
};

QSize pictureSize(double scale) {
    return (kCanvas * scale).toSize();
}

double scaleOf(const benchmark::State& state) {
    return static_cast<double>(state.range(0)) / 100;
}

void frameOfLayers(benchmark::State& state) {
    const double scale = scaleOf(state);
    ImageScene scene(kLayers);
    LayerRenderer renderer(static_cast<int>(state.range(1)));
    for (auto _ : state) {
        scene.nudgeFirst(kLayers);
        benchmark::DoNotOptimize(
            renderer.frame(scene.root(), Affine::scaling(scale, scale), pictureSize(scale)));
    }
}

void paintImages(const QRect& area, double scale, std::vector<Layer>& layers, QImage& pixels) {
    pixels.fill(Qt::transparent);
    QPainter painter(&pixels);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    for (const Layer& layer : layers) {
        Affine toDevice = layer.toSuperlayer().then(Affine::scaling(scale, scale));
        if (!toDevice.mapRect(layer.bounds()).intersects(area)) { continue; }
        toDevice.offset -= area.topLeft();
        painter.setTransform(toDevice.toQTransform());
        painter.setOpacity(layer.opacity());
        painter.drawImage(layer.bounds(), layer.contents());
    }
}

void painterInStrips(benchmark::State& state) {
    const double scale = scaleOf(state);
    const QSize size = pictureSize(scale);
    ImageScene scene(kLayers);
    QImage picture(size, QImage::Format_ARGB32_Premultiplied);
    for (auto _ : state) {
        scene.nudgeFirst(kLayers);
        for (int y = 0; y < size.height(); y += 64) {
            const QRect area(0, y, size.width(), std::min(64, size.height() - y));
            QImage strip(picture.scanLine(y), area.width(), area.height(), picture.bytesPerLine(),
                         picture.format());
            paintImages(area, scale, scene.layers(), strip);
        }
    }
}

void painterOnWhole(benchmark::State& state) {
    const double scale = scaleOf(state);
    ImageScene scene(kLayers);
    QImage picture(pictureSize(scale), QImage::Format_ARGB32_Premultiplied);
    for (auto _ : state) {
        scene.nudgeFirst(kLayers);
        paintImages(picture.rect(), scale, scene.layers(), picture);
    }
}

// k of the layers move. `dirty` is the share of the picture that their old and new places take,
// `painted` what has been painted.
void frameInPart(benchmark::State& state) {
    const auto moving = static_cast<size_t>(state.range(0));
    ImageScene scene(kLayers);
    LayerRenderer renderer;
    const QSize size = pictureSize(1);
    const auto area = [](const auto& rects) {
        double sum = 0;
        for (const QRect& rect : rects) {
            sum += double(rect.width()) * rect.height();
        }
        return sum;
    };
    const auto addFrames = [&](QRegion& region) {
        for (size_t i = 0; i < moving; ++i) {
            region += scene.layers()[i].frame().toAlignedRect() & QRect(QPoint(), size);
        }
    };
    double dirty = 0;
    double painted = 0;
    renderer.frame(scene.root(), Affine(), size);
    for (auto _ : state) {
        state.PauseTiming();
        QRegion region;
        addFrames(region);
        scene.nudgeFirst(moving);
        addFrames(region);
        dirty += area(region);
        state.ResumeTiming();
        benchmark::DoNotOptimize(renderer.frame(scene.root(), Affine(), size));
        state.PauseTiming();
        painted += area(renderer.repainted());
        state.ResumeTiming();
    }
    const double frames = double(state.iterations()) * size.width() * size.height();
    state.counters["dirty"] = dirty / frames;
    state.counters["painted"] = painted / frames;
}

std::vector<QPointF> hitPoints() {
    std::mt19937 random(7);
    std::vector<QPointF> points;
    for (int i = 0; i < 64; ++i) {
        points.emplace_back(random() % 1136, random() % 768);
    }
    return points;
}

// Everything moves, then one point is asked for, as under a cursor while a scene plays. Points are
// off the canvas half of the time, so that all layers have to be looked at.
QPointF pointOf(int64_t iteration) {
    static const std::vector<QPointF> points = hitPoints();
    const QPointF outside = iteration % 2 == 0 ? QPointF() : QPointF(5000, 0);
    return points[static_cast<size_t>(iteration) % points.size()] + outside;
}

void hitTestAllMoved(benchmark::State& state) {
    ImageScene scene(kHitLayers);
    int64_t iteration = 0;
    for (auto _ : state) {
        state.PauseTiming();
        scene.nudgeFirst(kHitLayers);
        state.ResumeTiming();
        benchmark::DoNotOptimize(scene.root().hitTest(pointOf(iteration++)));
    }
}

// The same scan over nothing but matrices and sizes.
void hitTestBareScan(benchmark::State& state) {
    ImageScene scene(kHitLayers);
    struct Row {
        QTransform toScene;
        QSizeF size;
    };
    std::vector<Row> rows(kHitLayers);
    int64_t iteration = 0;
    for (auto _ : state) {
        state.PauseTiming();
        scene.nudgeFirst(kHitLayers);
        for (size_t i = 0; i < rows.size(); ++i) {
            const Layer& layer = scene.layers()[i];
            rows[i] = {layer.toSuperlayer().toQTransform(), layer.bounds().size()};
        }
        state.ResumeTiming();
        const QPointF point = pointOf(iteration++);
        const Row* hit = nullptr;
        for (auto row = rows.rbegin(); row != rows.rend() && !hit; ++row) {
            const QPointF own = row->toScene.inverted().map(point);
            if (own.x() >= 0 && own.y() >= 0 && own.x() < row->size.width() &&
                own.y() < row->size.height()) {
                hit = &*row;
            }
        }
        benchmark::DoNotOptimize(hit);
    }
}

void hitTestGraphicsScene(benchmark::State& state) {
    ImageScene layers(kHitLayers);
    QGraphicsScene scene;
    std::vector<QGraphicsRectItem*> items;
    for (Layer& layer : layers.layers()) {
        QGraphicsRectItem* item = scene.addRect(layer.bounds());
        item->setTransform(QTransform(layer.toSuperlayer().linear.a, layer.toSuperlayer().linear.b,
                                      layer.toSuperlayer().linear.c, layer.toSuperlayer().linear.d,
                                      0, 0));
        items.push_back(item);
    }
    int64_t iteration = 0;
    for (auto _ : state) {
        state.PauseTiming();
        layers.nudgeFirst(kHitLayers);
        for (size_t i = 0; i < items.size(); ++i) {
            items[i]->setPos(layers.layers()[i].toSuperlayer().offset);
        }
        state.ResumeTiming();
        benchmark::DoNotOptimize(scene.itemAt(pointOf(iteration++), QTransform()));
    }
}

// A project of the same scene: its elements wander for five seconds.
PCProject::Ptr wanderingProject() {
    ImageScene scene(kLayers);
    PCProject::Ptr project = PCProject::init();
    const UndoRegistrationPause pause(project->undoManager());
    project->canvas()->setSize(kCanvas);
    for (int i = 0; i < 10; ++i) {
        project->imageSetManager().addImageSetWithPCImage(
            std::make_shared<PCImage>(artwork(i), u"image%1.png"_s.arg(i)));
    }
    PCElement::Elements elements;
    for (const Layer& layer : scene.layers()) {
        const PCElement::Ptr element = PCElement::init();
        element->setProject(project);
        element->setImageName(u"image%1.png"_s.arg(elements.size() % 10));
        element->setPosition(layer.position());
        element->setScale(layer.transform().scale);
        element->setZRotation(layer.transform().rotation);
        element->setOpacity(layer.opacity());
        project->canvas()->insertSubelement(element, static_cast<uint32_t>(elements.size()));
        elements.push_back(element);
    }
    PCAnimationsManager& manager = project->animationsManager();
    const PCAnimation::Ptr animation = manager.addNewEmptyAnimation();
    manager.renameAnimation(animation, u"wander"_s);
    manager.setSelectedAnimation(animation);
    for (const PCElement::Ptr& element : elements) {
        const auto timeline = element->timeline(PCPropertyTypeTranslationX);
        timeline->setFloatPropertyValue(0, 0);
        timeline->setFloatPropertyValue(200, 5000);
    }
    manager.setSelectedAnimation(nullptr);
    return project;
}

constexpr int kFrames = 300;

// The time of one of kFrames frames, which all cores draw into files.
void tweencRender(benchmark::State& state) {
    const ScratchDirectory scratch;
    const QString package = scratch.path(u"Wander.tweenery"_s);
    savePackage(*wanderingProject()->fileWrapper(), package);
    const QStringList arguments = {u"render"_s,  package,    u"--animation"_s,
                                   u"wander"_s,  u"--to"_s,  u"4990"_s,
                                   u"--fps"_s,   u"60"_s,    u"--clip"_s,
                                   u"--force"_s, u"--out"_s, scratch.path(u"%03d.png"_s)};
    for (auto _ : state) {
        std::ostringstream out;
        std::ostringstream err;
        std::istringstream in;
        const auto begin = std::chrono::steady_clock::now();
        const int code = runTweenc(arguments, {.out = out, .err = err, .in = in});
        const std::chrono::duration<double> time = std::chrono::steady_clock::now() - begin;
        const std::string paths = out.str();
        const auto count = std::count(paths.begin(), paths.end(), '\n');
        if (code != 0 || count != kFrames) {
            state.SkipWithError(("wrote " + std::to_string(count) + " files " + err.str()).c_str());
            return;
        }
        state.SetIterationTime(time.count() / kFrames);
    }
}

// One frame of it painted and saved by one thread, as a program without more in it would.
void paintAndSave(benchmark::State& state) {
    const ScratchDirectory scratch;
    ImageScene scene(kLayers);
    const QSize size = pictureSize(1);
    LayerRenderer renderer(1);
    DisplayList list;
    QImage picture;
    int frame = 0;
    for (auto _ : state) {
        scene.nudgeFirst(kLayers);
        list.build(scene.root(), Affine(), size);
        renderer.paint(list, picture);
        picture.save(scratch.path(u"%1.png"_s.arg(++frame % kFrames)), "png", 80);
    }
}

void repeated(benchmark::internal::Benchmark* run) {
    run->Unit(benchmark::kMicrosecond)->UseRealTime()->MinTime(0.1)->Repetitions(5);
    run->ReportAggregatesOnly()->ComputeStatistics("min", least);
}

BENCHMARK(frameOfLayers)
    ->ArgNames({"percent", "threads"})
    ->ArgsProduct({{28, 100, 200}, {0, 1}})
    ->Apply(repeated);
BENCHMARK(painterInStrips)->ArgName("percent")->Arg(28)->Arg(100)->Arg(200)->Apply(repeated);
BENCHMARK(painterOnWhole)->ArgName("percent")->Arg(28)->Arg(100)->Arg(200)->Apply(repeated);
BENCHMARK(frameInPart)->ArgName("moving")->Arg(1)->Arg(10)->Arg(50)->Arg(200)->Apply(repeated);
BENCHMARK(hitTestAllMoved)->Apply(repeated);
BENCHMARK(hitTestBareScan)->Apply(repeated);
BENCHMARK(hitTestGraphicsScene)->Apply(repeated);

BENCHMARK(tweencRender)
    ->Unit(benchmark::kMicrosecond)
    ->UseManualTime()
    ->Iterations(1)
    ->Repetitions(3)
    ->ReportAggregatesOnly()
    ->ComputeStatistics("min", least);
BENCHMARK(paintAndSave)->Apply(repeated);

}  // namespace
}  // namespace tweenery::bench
