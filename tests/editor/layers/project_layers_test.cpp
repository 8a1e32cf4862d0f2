#include "editor/layers/project_layers.h"

#include <gtest/gtest.h>

#include <QPainter>

#include "editor/edit_walk.h"
#include "scene/layer_renderer.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

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

TEST(ProjectLayers, TellEverythingThatHasToBePaintedAgain) {
    constexpr uint32_t kSeed = 2;
    EditorScene scene({200, 150});
    EditWalk walk(scene, kSeed);
    Screen screen(scene);
    scene.layers->flush();
    QImage shown = screen.paint();
    for (int turn = 0; turn < 800 && !HasFailure(); ++turn) {
        for (int step = 0; step <= turn % 4; ++step) {
            walk.step();
        }
        walk.endTurn();
        const auto areas = scene.layers->flush();
        const QImage now = screen.paint();
        EXPECT_TRUE(screen.areSameOutside(areas, shown, now)) << walk.lastSteps();
        shown = now;
    }
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
