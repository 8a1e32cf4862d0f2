#include "editor/canvas/canvas_viewport.h"

#include <gtest/gtest.h>

#include "editor/canvas/interaction_scene.h"

namespace tweenery::test {
namespace {

// A view of 800 by 600 on a canvas of 1136 by 768.
struct ViewportScene : InteractionScene {
    ViewportScene() : InteractionScene({1136, 768}) {}
    QPointF inTheMiddle() const { return viewport.canvasPoint({400, 300}); }
};

void expectNear(QPointF actual, QPointF expected, double room) {
    EXPECT_NEAR(actual.x(), expected.x(), room);
    EXPECT_NEAR(actual.y(), expected.y(), room);
}

TEST(CanvasViewport, HasADocumentAroundTheCanvasAndScrollsWithinIt) {
    ViewportScene scene;
    CanvasViewport& viewport = scene.viewport;
    EXPECT_EQ(viewport.documentSize(), QSizeF(2336, 1968));
    EXPECT_EQ(viewport.scrollOrigin(), QPointF(768, 684));
    EXPECT_EQ(scene.inTheMiddle(), QPointF(568, 384));
    EXPECT_EQ(viewport.canvasPoint({0, 0}), QPointF(168, 84));
    EXPECT_EQ(viewport.viewPoint({168, 84}), QPointF());

    int changes = 0;
    viewport.setChangeHandler([&changes] { ++changes; });
    viewport.scrollBy({-1000, 50});
    EXPECT_EQ(viewport.scrollOrigin(), QPointF(0, 734));
    EXPECT_EQ(scene.project->preferences().canvasScrollOffset(), QPointF(0, 734));
    viewport.scrollTo({9999, 9999});
    EXPECT_EQ(viewport.scrollOrigin(), QPointF(1536, 1368));
    EXPECT_EQ(changes, 2);

    viewport.setContainerSize({3000, 600});
    EXPECT_EQ(viewport.documentSize(), QSizeF(3000, 1968));
    EXPECT_EQ(viewport.scrollOrigin(), QPointF(0, 1368));
    EXPECT_EQ(viewport.viewPoint({0, 0}).x(), 932);  // in the middle of the view
    EXPECT_EQ(changes, 3);
}

TEST(CanvasViewport, FollowsTheSizeOfTheCanvas) {
    ViewportScene scene;
    scene.canvas->setSize({136, 0});
    EXPECT_EQ(scene.viewport.documentSize(), QSizeF(5000, 5000));
    scene.project->undoManager().undo();
    EXPECT_EQ(scene.viewport.documentSize(), QSizeF(2336, 1968));
    const auto picture = addElement(scene.canvas, QStringLiteral("a"));
    int changes = 0;
    scene.viewport.setChangeHandler([&changes] { ++changes; });
    picture->setSize({7, 7});
    EXPECT_EQ(changes, 0);
}

TEST(CanvasViewport, ZoomsInStepsAboutTheMiddle) {
    ViewportScene scene;
    CanvasViewport& viewport = scene.viewport;
    struct Case {
        double before;
        void (CanvasViewport::*zoom)();
        double after;
    };
    for (const Case& c :
         {Case{1, &CanvasViewport::zoomIn, 1.25}, Case{10, &CanvasViewport::zoomIn, 10},
          Case{0.05, &CanvasViewport::zoomOut, 0.05}, Case{0.37, &CanvasViewport::zoomIn, 0.5},
          Case{3, &CanvasViewport::zoomOut, 2.5},
          Case{3.3, &CanvasViewport::zoomToActualSize, 1}}) {
        viewport.setMagnificationFactor(c.before);
        viewport.scrollToCenter();
        viewport.scrollBy({-40, 30});
        const QPointF middle = scene.inTheMiddle();
        (viewport.*c.zoom)();
        EXPECT_FLOAT_EQ(static_cast<float>(viewport.magnificationFactor()),
                        static_cast<float>(c.after))
            << c.before;
        EXPECT_EQ(scene.project->preferences().canvasZoomLevel(), static_cast<float>(c.after));
        // A document that is no larger than the view cannot be scrolled.
        if (c.after > 0.4) { expectNear(scene.inTheMiddle(), middle, 1 / c.after); }
    }
}

TEST(CanvasViewport, FillsTheViewWithTheCanvasOrABox) {
    ViewportScene scene;
    CanvasViewport& viewport = scene.viewport;
    viewport.zoomCanvasToFill();
    EXPECT_DOUBLE_EQ(viewport.magnificationFactor(), 800.0 / 1136 * 0.95);
    expectNear(scene.inTheMiddle(), {568, 384}, 1);
    viewport.zoomToBox({100, 200, 190, 50});
    EXPECT_DOUBLE_EQ(viewport.magnificationFactor(), 4);
    expectNear(scene.inTheMiddle(), {195, 225}, 0.5);
    viewport.zoomToBox({300, 40, 0, 0});
    EXPECT_DOUBLE_EQ(viewport.magnificationFactor(), 4);
    expectNear(scene.inTheMiddle(), {300, 40}, 0.5);
    viewport.zoomToBox({0, 0, 1, 0});
    EXPECT_DOUBLE_EQ(viewport.magnificationFactor(), 10);
}

TEST(CanvasViewport, ZoomsAboutThePointerAndBack) {
    ViewportScene scene;
    CanvasViewport& viewport = scene.viewport;
    const QPointF pointer(650, 80);
    const QPointF origin = viewport.scrollOrigin();
    const QPointF under = viewport.canvasPoint(pointer);
    for (int i = 0; i < 40; ++i) {
        viewport.zoomAbout(pointer, 1.03);
        expectNear(viewport.canvasPoint(pointer), under, 1);
    }
    EXPECT_GT(viewport.magnificationFactor(), 3);
    for (int i = 0; i < 40; ++i) {
        viewport.zoomAbout(pointer, 1 / 1.03);
    }
    expectNear(viewport.scrollOrigin(), origin, 1e-6);
    viewport.zoomAbout(pointer, 1000);
    EXPECT_EQ(viewport.magnificationFactor(), 10);
    viewport.zoomAbout(pointer, 1e-9);
    EXPECT_EQ(viewport.magnificationFactor(), 0.05);
    // What was larger than any step does not jump to one.
    viewport.setMagnificationFactor(0.01);
    viewport.zoomAbout(pointer, 0.5);
    EXPECT_EQ(viewport.magnificationFactor(), 0.01);
}

TEST(CanvasViewport, OpensAsStored) {
    ViewportScene scene;
    const double filling = 800.0 / 1136 * 0.95;
    for (const auto& [stored, shown] : {std::pair{1.0F, filling}, {2.5F, 2.5}, {0.0F, filling}}) {
        scene.project->preferences().setCanvasZoomLevel(stored);
        scene.viewport.scrollTo({});
        scene.viewport.showAsStored();
        EXPECT_DOUBLE_EQ(scene.viewport.magnificationFactor(), shown) << stored;
        expectNear(scene.inTheMiddle(), {568, 384}, 1);
    }
}

// So that artwork at 100 % is copied and not smoothed.
TEST(CanvasViewport, PutsTheCanvasOnWholePixels) {
    for (const double scale : {1.0, 1.25, 1.5, 2.0}) {
        ViewportScene scene;
        scene.project->setBackingScale(scale);
        for (const QSizeF container : {QSizeF(801, 603), QSizeF(3001, 2999)}) {
            scene.viewport.setContainerSize(container);
            for (const QPointF way : {QPointF(0.3, 0.4), QPointF(-7.7, 100.26)}) {
                scene.viewport.scrollBy(way);
                const QPointF corner = scene.viewport.viewPoint({0, 0}) * scale;
                EXPECT_NEAR(corner.x(), std::round(corner.x()), 1e-9) << scale;
                EXPECT_NEAR(corner.y(), std::round(corner.y()), 1e-9) << scale;
            }
        }
    }
}

}  // namespace
}  // namespace tweenery::test
