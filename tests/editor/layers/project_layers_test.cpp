#include "editor/layers/project_layers.h"

#include <gtest/gtest.h>

#include <QPainter>

#include "editor/edit_walk.h"
#include "scene/layer_renderer.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

// What a layer should show, straight from the model, in words.
class ExpectedLayers {
 public:
    explicit ExpectedLayers(EditorScene& scene)
        : m_scene(scene),
          m_time(scene.project->isSetupMode() ? EditTime::setup() : scene.layers->shown()) {}

    /// Every layer of the project against its element. What differs is reported.
    void check() const { checkBelow(*m_scene.canvas); }

 private:
    EditorScene& m_scene;
    EditTime m_time;

    static void append(std::string& text, std::initializer_list<double> numbers) {
        for (const double number : numbers) {
            text += shortestText(number + 0.0) + ' ';  // no negative zero
        }
    }
    QString imageOf(const PCElement& element) const {
        return m_time.isSetup() ? element.imageName()
                                : element.imageContentsAtTimeInMS(m_time.timeInMS());
    }
    std::string stateOf(const PCElement& element) const {
        std::string text;
        const QPointF anchor = element.anchorPoint();
        const QSizeF size = element.size();
        append(text, {size.width(), size.height(), anchor.x(), anchor.y()});
        if (m_time.isSetup()) {
            append(text, {element.position().x(), element.position().y(), element.scale().x(),
                          element.scale().y(), element.zRotation(),
                          element.hidden() ? 0 : element.opacity()});
            append(text, {0});
        } else {
            const int32_t time = m_time.timeInMS();
            const QPointF position = element.positionAtTimeInMS(time);
            const QPointF scale = element.scaleAtTimeInMS(time);
            const auto opacity = static_cast<double>(element.opacityAtTimeInMS(time));
            append(text, {position.x(), position.y(), scale.x(), scale.y(),
                          static_cast<double>(element.zRotationAtTimeInMS(time)),
                          element.hidden() ? 0 : opacity});
            const auto place = element.parentElement()->childrenZPositionsAtTimeInMS(time).indexOf(
                element.identifier().toString());
            append(text, {static_cast<double>(place < 0 ? element.index() : place)});
        }
        return text;
    }
    static std::string stateOf(const PCLayer& layer) {
        std::string text;
        const LayerValues& values = layer.values();
        append(text, {values.bounds.width(), values.bounds.height(), values.anchorPoint.x(),
                      values.anchorPoint.y(), values.position.x(), values.position.y(),
                      values.transform.scale.x(), values.transform.scale.y(),
                      values.transform.rotation, values.opacity, values.zPosition});
        return text;
    }
    void checkBelow(const PCElement& parent) const {
        const PCLayer& above = *PCLayer::of(parent);
        auto place = above.sublayers().begin();
        for (const PCElement::Ptr& child : parent.children()) {
            PCLayer& layer = *PCLayer::of(*child);
            SCOPED_TRACE(child->name().toStdString());
            EXPECT_EQ(*place, &layer) << "the order of layers";
            ++place;
            EXPECT_EQ(stateOf(layer), stateOf(*child));
            EXPECT_FALSE(layer.isHidden());
            const QImage image = m_scene.project->imageSetManager().imageWithName(
                imageOf(*child), m_scene.project->backingScale());
            EXPECT_EQ(layer.contents().cacheKey(), image.cacheKey());
            EXPECT_EQ(layer.isSelected(), child->selected());
            checkBorder(layer);
            checkBelow(*child);
        }
    }
    static std::string partsOf(const PCBorderLayer& border) {
        std::string text;
        const auto add = [&](QPointF point) {
            const QPointF onCanvas = border.toSuperlayer().map(point);
            append(text, {onCanvas.x(), onCanvas.y()});
        };
        for (int64_t i = PCBorderLocationTopLeft; i <= PCBorderLocationBottomRight; ++i) {
            const Layer& handle = border.handle(static_cast<PCBorderLocation>(i));
            add(handle.position());
            append(text, {handle.transform().scale.x(), handle.contentsScale()});
        }
        add(border.anchorPointLayer().position());
        append(text, {border.outline().shape()->lineWidth});
        const QPainterPath& band = border.rotationBand().shape()->path;
        for (int i = 0; i < band.elementCount(); ++i) {
            add(band.elementAt(i));
        }
        return text;
    }
    void checkBorder(PCLayer& layer) const {
        ASSERT_EQ(layer.borderLayer() != nullptr, layer.isSelected());
        if (!layer.isSelected()) { return; }
        Layer& canvas = *PCLayer::of(*m_scene.canvas);
        EXPECT_EQ(layer.borderLayer()->superlayer(), &canvas);
        const auto fresh = PCBorderLayer::layerWithLayerToBorder(layer);
        canvas.addSublayer(*fresh);
        fresh->syncWithBorderedLayer();
        EXPECT_EQ(partsOf(*layer.borderLayer()), partsOf(*fresh));
    }
};

/// The middle of the editor as pixels.
class Screen {
 public:
    explicit Screen(EditorScene& scene) : m_scene(scene) {}

    QImage paint() {
        DisplayList list;
        list.build(m_scene.editor, toPixels(), kSize);
        QImage picture;
        m_renderer.paint(list, picture);
        return picture;
    }
    /// Whether two pictures are the same but for areas of the canvas.
    bool areSameOutside(const std::vector<QRectF>& areas, QImage before, QImage after) const {
        const Affine canvasToPixels = PCLayer::of(*m_scene.canvas)->toSuperlayer().then(toPixels());
        for (QImage* picture : {&before, &after}) {
            QPainter painter(picture);
            for (const QRectF& area : areas) {
                const QRectF pixels = canvasToPixels.mapRect(area).adjusted(-2, -2, 2, 2);
                painter.fillRect(pixels & QRectF(picture->rect()), Qt::black);
            }
        }
        return before == after;
    }

 private:
    static constexpr QSize kSize{300, 250};
    EditorScene& m_scene;
    LayerRenderer m_renderer{1};

    Affine toPixels() const {
        const QPointF centre = m_scene.editor.bounds().center();
        return {{}, QPointF(kSize.width() / 2.0, kSize.height() / 2.0) - centre};
    }
};

// Steps to the end of a walk, in turns of one to four.
template <typename EndOfTurn>
void walkInTurns(EditWalk& walk, int steps, uint32_t seed, const EndOfTurn& endOfTurn) {
    std::mt19937 random(seed);
    while (steps > 0 && !testing::Test::HasFailure()) {
        for (auto inTurn = random() % 4 + 1; inTurn > 0; --inTurn) {
            walk.step();
            --steps;
        }
        walk.endTurn();
        endOfTurn();
    }
}

TEST(ProjectLayers, ShowTheModelAfterEveryTurn) {
    constexpr uint32_t kSeed = 1;
    EditorScene scene({200, 150});
    EditWalk walk(scene, kSeed);
    walkInTurns(walk, 20'000, kSeed, [&] {
        SCOPED_TRACE(walk.lastSteps());
        scene.layers->flush();
        ExpectedLayers(scene).check();
    });
}

TEST(ProjectLayers, TellEverythingThatHasToBePaintedAgain) {
    constexpr uint32_t kSeed = 2;
    EditorScene scene({200, 150});
    EditWalk walk(scene, kSeed);
    Screen screen(scene);
    scene.layers->flush();
    QImage shown = screen.paint();
    walkInTurns(walk, 2'000, kSeed, [&] {
        const auto areas = scene.layers->flush();
        const QImage now = screen.paint();
        EXPECT_TRUE(screen.areSameOutside(areas, shown, now)) << walk.lastSteps();
        shown = now;
    });
}

TEST(ProjectLayers, AskForOneFlushATurnAndTellOnlyWhatMoved) {
    EditorScene scene({200, 150});
    int asked = 0;
    scene.layers.reset();
    scene.layers = ProjectLayers::forProject(scene.project, [&asked] { ++asked; });
    scene.editor.setCanvasLayer(*PCLayer::of(*scene.canvas));
    scene.magnify(1);
    scene.addPicture(scene.canvas, u"A"_s, {.position = {10, 10}, .size = {10, 10}});
    const auto moved =
        scene.addPicture(scene.canvas, u"B"_s, {.position = {50, 50}, .size = {10, 10}});
    scene.layers->flush();
    asked = 0;
    EXPECT_TRUE(scene.layers->flush().empty());
    EXPECT_EQ(asked, 0);

    moved->setPosition({60, 50});
    moved->setPosition({70, 50});
    moved->setName(u"C"_s);
    EXPECT_EQ(asked, 1);
    EXPECT_EQ(scene.layer(moved).position(), QPointF(70, 50)) << "who asks does not wait";
    moved->setPosition({80, 50});
    EXPECT_EQ(asked, 1);
    const std::vector<QRectF> areas = scene.layers->flush();
    const std::vector<QRectF> expected = {
        {45, 45, 10, 10}, {65, 45, 10, 10}, {65, 45, 10, 10}, {75, 45, 10, 10}};
    EXPECT_EQ(areas, expected);
    moved->setPosition({80, 50});
    EXPECT_EQ(asked, 1) << "nothing has changed";
    moved->setPosition({81, 50});
    EXPECT_EQ(asked, 2);
}

TEST(ProjectLayers, MayGoBeforeWhatTheyShowed) {
    EditorScene scene;
    buildTree(*scene.project, "A G{B}");
    const auto removed = named(*scene.project, u"G"_s);
    removed->removeFromParentElement();
    scene.layers.reset();
    EXPECT_EQ(PCLayer::of(*scene.canvas), nullptr);
    removed->children()[0]->setPosition({5, 6});

    scene.layers = ProjectLayers::forProject(scene.project);
    scene.project->undoManager().undo();
    ASSERT_EQ(treeText(*scene.canvas), "A G{B}");
    removed->children()[0]->setPosition({7, 8});
    EXPECT_EQ(scene.layer(u"B"_s).position(), QPointF(7, 8))
        << "layers made by others are taken on";
}

}  // namespace
}  // namespace tweenery::test
