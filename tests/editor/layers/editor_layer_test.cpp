#include "editor/layers/editor_layer.h"

#include <gtest/gtest.h>

#include <numbers>

#include "editor/canvas/snapping.h"
#include "editor/canvas/zoom.h"
#include "editor/editor_scene.h"
#include "editor/layers/tweenery_style.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

// Two pictures side by side in a group, a third over the right one's right half, a locked one over
// all of them.
struct PressScene : EditorScene {
    PressScene() {
        magnify(2);
        const auto group = addGroup(canvas, u"G"_s,
                                    {.position = {100, 100}, .size = {200, 100}, .anchor = {0, 0}});
        addPicture(group, u"Left"_s, {.size = {100, 100}, .anchor = {0, 0}});
        addPicture(group, u"Right"_s, {.position = {100, 0}, .size = {100, 100}, .anchor = {0, 0}});
        addPicture(canvas, u"Front"_s,
                   {.position = {250, 100}, .size = {100, 100}, .anchor = {0, 0}});
        addPicture(canvas, u"Locked"_s,
                   {.position = {100, 100}, .size = {300, 100}, .anchor = {0, 0}})
            ->setLocked(true);
    }
};

TEST(EditorLayer, AFlatSelectedElementTakesPressesOnItsHandlesAlone) {
    PressScene scene;
    scene.addPicture(scene.canvas, u"Flat"_s,
                     {.position = {500, 300}, .scale = {0, 1}, .size = {50, 80}});
    scene.select({u"Flat"_s});
    for (const bool isDirect : {false, true}) {
        EXPECT_EQ(scene.pressed({275, 170}, isDirect), u"Front"_s);
        EXPECT_EQ(scene.pressed({700, 700}, isDirect), u"-"_s);
        EXPECT_EQ(scene.pressed({500, 260}, isDirect), u"Flat"_s) << "its upper handles";
    }
}

TEST(EditorLayer, FindsTheElementThatAPressMeans) {
    const QPointF onLeft(130, 150);
    const QPointF onFront(275, 170);  // over Right
    const QPointF outside(500, 500);
    struct Case {
        QStringList selected;
        QPointF point;
        const char* withSelectTool;
        const char* withDirectTool;
    };
    for (const Case& c : {Case{{}, onLeft, "G", "Left"},
                          {{}, onFront, "Front", "Front"},
                          {{}, outside, "-", "-"},
                          {{u"G"_s}, onLeft, "G", "Left"},
                          {{u"G"_s}, onFront, "G", "Front"},
                          {{u"Right"_s}, onFront, "Right", "Front"},
                          {{u"Right"_s}, onLeft, "G", "Left"},
                          // Right's left handle lies over Left, its rotation band too.
                          {{u"Right"_s}, {199, 150}, "Right", "Right"},
                          {{u"Right"_s}, {195, 130}, "Right", "Right"}}) {
        PressScene scene;
        scene.select(c.selected);
        SCOPED_TRACE(testing::Message() << c.selected.join(u',').toStdString() << " at "
                                        << c.point.x() << ", " << c.point.y());
        EXPECT_EQ(scene.pressed(c.point, false).toStdString(), c.withSelectTool);
        EXPECT_EQ(scene.pressed(c.point, true).toStdString(), c.withDirectTool);
    }
}

TEST(EditorLayer, TellsWhatAPressWouldDo) {
    EditorScene scene({400, 300});
    scene.addPicture(scene.canvas, u"A"_s, {.position = {200, 150}, .size = {200, 100}});
    const auto at = [&](QPointF point) {
        const auto selected = scene.selection.selectedElements();
        const PCLayer* layer =
            scene.editor.layerAtLocationInEditor(scene.onEditor(point), selected, false);
        return scene.editor.locationAtPosition(point, layer, selected.size());
    };
    struct Case {
        QPointF point;
        PCEditorLocation unselected;
        PCEditorLocation selected;
    };
    for (const Case& c : {Case{{-4, -4}, PCEditorLocationCanvasTopLeft, PCEditorLocationNone},
                          {{404, 4}, PCEditorLocationCanvasTopRight, PCEditorLocationNone},
                          {{0, 304}, PCEditorLocationCanvasBottomLeft, PCEditorLocationNone},
                          {{399, 299}, PCEditorLocationCanvasBottomRight, PCEditorLocationNone},
                          {{-1, 150}, PCEditorLocationCanvasLeft, PCEditorLocationNone},
                          {{401, 150}, PCEditorLocationCanvasRight, PCEditorLocationNone},
                          {{200, 297}, PCEditorLocationCanvasTop, PCEditorLocationNone},
                          {{200, 301}, PCEditorLocationNone, PCEditorLocationNone},
                          {{200, -1}, PCEditorLocationCanvasBottom, PCEditorLocationNone},
                          {{20, 20}, PCEditorLocationNone, PCEditorLocationNone},
                          {{130, 150}, PCEditorLocationDrag, PCEditorLocationDrag},
                          {{100, 100}, PCEditorLocationDrag, PCEditorLocationHandleTopLeft},
                          {{302, 202}, PCEditorLocationNone, PCEditorLocationHandleBottomRight},
                          {{150, 90}, PCEditorLocationNone, PCEditorLocationRotate},
                          {{200, 150}, PCEditorLocationDrag, PCEditorLocationAnchorPoint}}) {
        SCOPED_TRACE(testing::Message() << c.point.x() << ", " << c.point.y());
        scene.editor.anchorPointLayer().setPosition({200, 150});
        scene.select({});
        scene.editor.setShowsAnchorPoint(false);
        EXPECT_EQ(at(c.point), c.unselected);
        scene.select({u"A"_s});
        scene.editor.setShowsAnchorPoint(true);
        EXPECT_EQ(at(c.point), c.selected);
    }
    // The mark counts only while it is seen.
    scene.editor.setShowsAnchorPoint(false);
    EXPECT_EQ(at({200, 150}), PCEditorLocationDrag);
}

TEST(EditorLayer, TheMarqueeTouchesOutlinesNotBoxes) {
    EditorScene scene;
    // A square of 100 on its corner around (200, 200): its box reaches 70.7 points out.
    const auto square =
        addElement(scene.canvas, u"A"_s,
                   {.position = {200, 200}, .rotation = std::numbers::pi / 4, .size = {100, 100}});
    const auto group = addGroup(scene.canvas, u"G"_s, {.position = {600, 200}, .size = {50, 50}});
    addElement(group, u"B"_s, {.position = {100, 100}, .size = {50, 50}});
    struct Case {
        QRectF marquee;
        const char* hit;
    };
    for (const Case& c : {Case{{120, 120, 30, 30}, ""},  // within the box, beside the outline
                          {{120, 190, 10, 20}, "A"},     // the left corner
                          {{130, 210, -10, -20}, "A"},   // the same, dragged up and to the left
                          {{120, 190, 9, 20}, ""},
                          {{625, 225, 10, 10}, "G"},  // touches the group's corner
                          {{670, 270, 20, 20}, ""},   // only a group's child
                          {{0, 0, 1000, 800}, "A G"}}) {
        scene.editor.updateSelectionRect(c.marquee);
        EXPECT_EQ(scene.editor.selectionLayer().frame(), c.marquee.normalized());
        std::string hit;
        for (const auto& element : scene.editor.elementsHitInSelectionRect(c.marquee)) {
            hit += (hit.empty() ? "" : " ") + element->name().toStdString();
        }
        EXPECT_EQ(hit, c.hit) << c.marquee.x() << ", " << c.marquee.y();
    }
}

TEST(EditorLayer, ShowsAGuideWhereABoxStandsAligned) {
    EditorScene scene({1000, 600});
    struct Case {
        QRectF box;
        double x;  // below 0: no guide
        double y;
    };
    for (const Case& c : {Case{{0.9, 10, 100, 20}, 0, -1},
                          {{450, 10, 100, 20}, 500, -1},
                          {{-100, 0, 100, 20}, 0, 0},
                          {{900, 580, 100, 20}, 1000, 600},
                          {{500, 300, 7, 7}, 500, 300},
                          {{3, 4, 5, 6}, -1, -1}}) {
        SCOPED_TRACE(testing::Message() << c.box.x() << ", " << c.box.y());
        scene.editor.layoutGuidesForBoundingBox(c.box);
        const PCGuideLayer& vertical = scene.editor.verticalSnapGuideline();
        const PCGuideLayer& horizontal = scene.editor.horizontalSnapGuideline();
        EXPECT_EQ(vertical.isShown() ? vertical.xPosition() : -1, c.x);
        EXPECT_EQ(horizontal.isShown() ? horizontal.yPosition() : -1, c.y);
    }
    scene.editor.hideGuides();
    EXPECT_FALSE(scene.editor.verticalSnapGuideline().isShown());
}

TEST(EditorLayer, FitsTheCanvasIntoTheDocument) {
    struct Case {
        QSizeF canvas;
        float magnification;
        QSizeF container;
        QSizeF document;
        bool isFramed;
        bool hasAxes;
    };
    for (const Case& c : {Case{{1136, 768}, 1, {800, 600}, {2336, 1968}, true, false},
                          {{1136, 768}, 1, {4000, 600}, {4000, 1968}, true, false},
                          {{100, 100}, 0.5F, {10, 10}, {650, 650}, true, false},
                          {{0, 300}, 2, {800, 600}, {10000, 10000}, false, true},
                          {{4, 300}, 1, {10, 10}, {1204, 1500}, false, false}}) {
        SCOPED_TRACE(testing::Message() << c.canvas.width() << " x " << c.canvas.height());
        const QRectF bounds =
            PCEditorLayer::boundsSizedForCanvasSize(c.canvas, c.magnification, c.container);
        EXPECT_EQ(bounds, QRectF(QPointF(), c.document));
        EditorScene scene(c.canvas);
        scene.editor.refreshBounds(bounds, c.magnification);
        EXPECT_EQ(scene.onEditor({c.canvas.width() / 2, c.canvas.height() / 2}), bounds.center());
        EXPECT_EQ(scene.editor.innerBorder().isHidden(), !c.isFramed);
        EXPECT_EQ(scene.layer(scene.canvas).style().cornerRadius, c.isFramed ? 5 : 0);
        EXPECT_EQ(scene.editor.xAxis().isHidden(), !c.hasAxes);
        EXPECT_EQ(scene.editor.yAxis().xPosition(), bounds.width() / 2);
        // A guide keeps its width on the screen.
        const PCGuideLayer& guide = scene.editor.verticalSnapGuideline();
        EXPECT_NEAR(guide.convertRectTo(guide.bounds(), &scene.editor).width(), 1, 1e-9);
    }
}

TEST(EditorLayer, DrawsItsParts) {
    EditorScene scene({100, 80});
    scene.addPicture(scene.canvas, u"A"_s, {.position = {70, 40}, .size = {20, 20}});
    const QRectF bounds(0, 0, 301, 281);  // the canvas lies at (100.5, 100.5)
    scene.editor.refreshBounds(bounds, 1);
    scene.editor.layoutGuidesForBoundingBox({50, -7, 3, 3});
    const QImage picture = scene.editor.imageRepresentation();
    EXPECT_EQ(picture.size(), QSize(301, 281));
    EXPECT_EQ(picture.pixelColor(5, 5), QColor(77, 77, 77)) << "the surround";
    EXPECT_EQ(picture.pixelColor(170, 140), QColor(Qt::darkCyan)) << "the element";
    const QColor pattern = picture.pixelColor(120, 120);
    EXPECT_TRUE(pattern == QColor(Qt::white) || pattern == QColor(219, 219, 219));
    EXPECT_EQ(picture.pixel(150, 40), TweeneryStyle::guideColor().rgb()) << "the guide";

    EditorScene unbounded(QSizeF(0, 0));
    const QImage empty = unbounded.editor.imageRepresentation();
    EXPECT_EQ(empty.size(), QSize(5000, 5000));
    int axes = 0;
    for (int x = 0; x < 5000; ++x) {
        axes += empty.pixelColor(x, 100).blueF() - empty.pixelColor(x, 100).redF() > 0.3F ? 1 : 0;
    }
    EXPECT_GE(axes, 1) << "an axis";
    EXPECT_LE(axes, 2);
}

TEST(Snapping, CatchesOnTheCanvasWithinTenPointsOfTheScreen) {
    struct Case {
        const char* what;
        double wanted;  // the box's left
        double width;
        double magnification;
        double snapped;
    };
    for (const Case& c :
         {Case{"inside the tolerance", 9.9, 100, 1, 0},
          {"the tolerance itself", 10, 100, 1, 10},
          {"half the tolerance at twice the size", 5, 100, 2, 5},
          {"just inside that", 4.9, 100, 2, 0},
          {"centre to centre", 445, 100, 1, 450},
          {"right edge to right edge", 893, 100, 1, 900},
          {"left edge beside the canvas", 1003, 100, 1, 1000},
          {"the left before the centre, the centre before the right", 495, 1000, 1, 500},
          {"all of a small box: its left", -3, 4, 1, 0},
          {"nothing near", 300, 100, 1, 300}}) {
        const QRectF box(200, 333, c.width, 20);
        const QPointF delta =
            deltaSnappedToGuides({200 - c.wanted, 1}, box, {1000, 800}, c.magnification);
        EXPECT_DOUBLE_EQ(200 - delta.x(), c.snapped) << c.what;
        EXPECT_EQ(delta.y(), 1) << "each axis for itself";
    }
}

TEST(Zoom, GoesInSteps) {
    struct Case {
        float factor;
        double in;
        double out;
    };
    for (const Case& c : {Case{1, 1.25, 0.75},
                          {10, 10, 9},
                          {0.05F, 0.1, 0.05},
                          {0.37F, 0.5, 0.2},
                          {0.375F, 0.5, 0.2},  // half way: the lower step is the closest
                          {100, 10, 9}}) {
        EXPECT_EQ(zoomStepAfter(c.factor), static_cast<float>(c.in)) << c.factor;
        EXPECT_EQ(zoomStepBefore(c.factor), static_cast<float>(c.out)) << c.factor;
    }
    EXPECT_DOUBLE_EQ(zoomToFill({1000, 500}, {500, 500}), 0.475);
    EXPECT_DOUBLE_EQ(zoomToFill({1000, 0.9}, {500, 500}), 1);
}

}  // namespace
}  // namespace tweenery::test
