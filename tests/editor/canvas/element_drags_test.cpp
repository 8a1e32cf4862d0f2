// What each drag of elements and of the canvas writes.

#include <gtest/gtest.h>

#include <numbers>

#include "editor/canvas/interaction_scene.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

constexpr double kDegree = std::numbers::pi / 180;

void expectPoint(QPointF actual, QPointF expected, const char* what = "") {
    EXPECT_NEAR(actual.x(), expected.x(), 1e-9) << what;
    EXPECT_NEAR(actual.y(), expected.y(), 1e-9) << what;
}

// "a" covers (30, 40) to (90, 80), "b" (130, 40) to (190, 80), on a canvas of 400 by 300.
struct DragScene : InteractionScene {
    PCElement::Ptr a = addPicture(canvas, u"a"_s, {.position = {60, 60}, .size = {60, 40}});
    PCElement::Ptr b = addPicture(canvas, u"b"_s, {.position = {160, 60}, .size = {60, 40}});

    DragScene() { forgetSteps(); }
    bool showsGuides() const {
        return editor.verticalSnapGuideline().isShown() ||
               editor.horizontalSnapGuideline().isShown();
    }
};

constexpr QPointF kOnA(40, 50);
constexpr QPointF kOnB(140, 50);

// Move.

TEST(MoveDrag, GoesExactlyWithThePointer) {
    for (const double magnification : {1.0, 2.0, 0.5}) {
        DragScene scene;
        scene.viewport.setMagnificationFactor(magnification);
        scene.choose("a,b");
        scene.dragThrough({{75, 63}, {77, 61}, {59, 70}, {85, 68}});
        EXPECT_EQ(scene.a->position(), QPointF(70, 65));
        EXPECT_EQ(scene.b->position(), QPointF(170, 65));
    }
}

TEST(MoveDrag, CatchesOnTheCanvasWithoutSticking) {
    struct Case {
        double magnification;
        QPointF wanted;  // top left corner of "a"
        QPointF got;
    };
    for (const Case& c : {Case{1, {9.5, 110}, {0, 110}}, Case{1, {10, 100}, {10, 100}},
                          Case{2, {4.5, 20}, {0, 20}}, Case{2, {5.5, 20}, {5.5, 20}},
                          Case{1, {165, 20}, {170, 20}}, Case{1, {348, 261}, {340, 260}}}) {
        DragScene scene;
        scene.viewport.setMagnificationFactor(c.magnification);
        const QPointF grabbed = kOnA - QPointF(30, 40);
        scene.dragThrough({kOnA, QPointF(0, 40) + grabbed, c.wanted + grabbed});
        expectPoint(scene.a->position(), c.got + QPointF(30, 20));
    }
}

TEST(MoveDrag, ShowsGuidesForASecond) {
    DragScene scene;
    scene.dragThrough({kOnA, {12, 50}});
    EXPECT_TRUE(scene.editor.verticalSnapGuideline().isShown());
    EXPECT_EQ(scene.editor.verticalSnapGuideline().xPosition(), 0);
    EXPECT_FALSE(scene.editor.horizontalSnapGuideline().isShown());
    // What was to hide them does not hide those of the next drag.
    scene.press({12, 50});
    scene.drag({10, 52});
    scene.letTimePass();
    EXPECT_TRUE(scene.showsGuides());
    scene.release();
    scene.letTimePass();
    EXPECT_FALSE(scene.showsGuides());

    // Nothing is left to move.
    scene.choose("a");
    scene.press({10, 50}, kShift);
    scene.drag({0, 0}, kShift);
    EXPECT_EQ(scene.selected(), "");
    EXPECT_FALSE(scene.showsGuides());
}

TEST(MoveDrag, ShiftKeepsToAnAxisDecidedAnew) {
    DragScene scene;
    scene.choose("a,b");
    const auto moved = [&] { return scene.a->position() - QPointF(60, 60); };
    scene.press(kOnA);
    scene.drag(kOnA + QPointF(30, 4));
    scene.drag(kOnA + QPointF(31, 50), kShift);
    EXPECT_EQ(moved(), QPointF(0, 54 - 4));
    scene.drag(kOnA + QPointF(33, 4));
    EXPECT_EQ(moved(), QPointF(2, 4));  // from where it is
    scene.interaction.modifiersChanged(kShift);
    EXPECT_EQ(moved(), QPointF(2, 0));
    scene.drag(kOnA + QPointF(35, 90), kShift);
    EXPECT_EQ(moved(), QPointF(4, 0));
    scene.release();
}

TEST(MoveDrag, WritesOnlyTheAxisThatMovedInAnAnimation) {
    DragScene scene;
    scene.animateAt(500);
    scene.a->setTranslation({10, 0}, 0);
    scene.a->setTranslation({30, 0}, 1000);
    scene.dragThrough({{60, 55}, {75, 55}, {85, 55}});
    EXPECT_EQ(keysText(*scene.a->translationXTimeline()), "0:10 500:45 1000:30");
    EXPECT_EQ(keysText(*scene.a->translationYTimeline()), "");
    EXPECT_EQ(scene.a->position(), QPointF(60, 60));
}

TEST(MoveDrag, OptionMovesCopies) {
    DragScene scene;
    scene.choose("a,b");
    scene.press(kOnA);
    scene.drag(kOnA + QPointF(10, 20));
    scene.interaction.modifiersChanged(kAlt);
    EXPECT_EQ(treeText(*scene.canvas), "a a_2 b b_2");
    EXPECT_EQ(scene.selected(), "a 2,b 2");
    scene.drag(kOnA + QPointF(15, 20), kAlt);
    EXPECT_EQ(scene.a->position(), QPointF(60, 60));
    EXPECT_EQ(named(*scene.project, u"b 2"_s)->position(), QPointF(175, 80));
    scene.drag(kOnA + QPointF(15, 30));
    EXPECT_EQ(treeText(*scene.canvas), "a b");
    EXPECT_EQ(scene.selected(), "a,b");
    EXPECT_EQ(scene.b->position(), QPointF(175, 90));
    scene.drag(kOnA + QPointF(50, 50), kAlt);
    scene.release();
    EXPECT_EQ(scene.b->position(), QPointF(160, 60));
    EXPECT_EQ(treeText(*scene.canvas), "a a_2 b b_2");
    EXPECT_EQ(scene.selected(), "a 2,b 2");
    scene.project->undoManager().undo();
    EXPECT_EQ(treeText(*scene.canvas), "a b");
}

TEST(MoveDrag, FollowsThePointerInATurnedGroup) {
    DragScene scene;
    const auto group = addGroup(
        scene.canvas, u"g"_s,
        {.position = {200, 200}, .scale = {2, 2}, .rotation = 90 * kDegree, .size = {0, 0}});
    const auto child = scene.addPicture(group, u"c"_s, {.position = {0, 0}, .size = {20, 20}});
    scene.dragThrough({{190, 190}, {230, 190}}, kControl);
    expectPoint(child->canvasPosition(), {240, 200});
}

// Scale.

struct ScaleCase {
    const char* what;
    QPointF handle;
    QPointF to;
    Qt::KeyboardModifiers modifiers;
    QPointF scale;
    QPointF position;
};

TEST(ScaleDrag, KeepsTheOppositePointOrTheAnchor) {
    for (const ScaleCase& c : {
             ScaleCase{"twice the size", {90, 80}, {150, 120}, kNone, {2, 2}, {90, 80}},
             ScaleCase{"about the anchor", {90, 80}, {150, 120}, kAlt, {2, 2}, {60, 60}},
             ScaleCase{"top left", {30, 40}, {0, 60}, kNone, {1.5, 0.5}, {45, 70}},
             ScaleCase{"bottom left", {30, 80}, {60, 100}, kNone, {0.5, 1.5}, {75, 70}},
             ScaleCase{"one axis", {90, 60}, {120, 300}, kNone, {1.5, 1}, {75, 60}},
             ScaleCase{"mirrored", {90, 60}, {0, 60}, kNone, {-0.5, 1}, {15, 60}},
             ScaleCase{"ratio by x", {90, 80}, {150, 100}, kShift, {2, 2}, {90, 80}},
             ScaleCase{"ratio, right", {90, 60}, {120, 60}, kShift, {1.5, 1.5}, {75, 60}},
             ScaleCase{"ratio by y", {60, 40}, {60, 20}, kShift, {1.5, 1.5}, {60, 50}},
         }) {
        DragScene scene;
        scene.choose("a");
        scene.press(c.handle);
        scene.drag({1, 2});
        scene.drag(c.to);
        scene.interaction.modifiersChanged(c.modifiers);
        scene.release();
        expectPoint(scene.a->scale(), c.scale, c.what);
        expectPoint(scene.a->position(), c.position, c.what);
        EXPECT_EQ(scene.a->anchorPoint(), QPointF(0.5, 0.5));

        // The same at a time.
        DragScene animated;
        animated.animateAt(500);
        animated.choose("a");
        animated.dragThrough({c.handle, c.to}, c.modifiers);
        expectPoint(animated.a->scaleAtTimeInMS(500), c.scale, c.what);
        expectPoint(animated.a->positionAtTimeInMS(500), c.position, c.what);
        expectPoint(animated.a->position(), {60, 60}, c.what);
    }
}

TEST(ScaleDrag, GoesAlongTheAxesOfATurnedElement) {
    DragScene scene;
    scene.a->setZRotation(90 * kDegree);
    scene.choose("a");
    scene.dragThrough({{60, 90}, {75, 120}});
    expectPoint(scene.a->scale(), {1.5, 1});
    expectPoint(scene.a->position(), {60, 75});
}

TEST(ScaleDrag, ScalesSeveralByTheSameDifference) {
    DragScene scene;
    scene.b->setScale({1, 2});
    scene.b->setScalesLocked(true);
    scene.choose("a,b");
    scene.dragThrough({{90, 80}, {120, 90}});
    expectPoint(scene.a->scale(), {1.5, 1.25});
    expectPoint(scene.b->scale(), {1.5, 3});
    EXPECT_EQ(scene.a->position(), QPointF(60, 60));
}

TEST(ScaleDrag, LeavesAnAxisWithoutSize) {
    for (const Qt::KeyboardModifiers modifiers : {kNone, kShift}) {
        DragScene scene;
        const auto upright =
            addElement(scene.canvas, u"upright"_s, {.position = {300, 100}, .size = {0, 80}});
        const auto flat =
            addElement(scene.canvas, u"flat"_s, {.position = {300, 200}, .size = {80, 0}});
        scene.choose("upright");
        scene.dragThrough({{300, 140}, {340, 180}}, modifiers);
        expectPoint(upright->scale(), {1, 1.5});
        expectPoint(upright->position(), {300, 120});
        scene.choose("flat");
        scene.dragThrough({{340, 200}, {380, 290}}, modifiers);
        expectPoint(flat->scale(), {1.5, 1});
        expectPoint(flat->position(), {320, 200});
    }
}

// Rotate.

QPointF aroundA(double degrees, double radius = 45) {
    return QPointF(60, 60) +
           radius * QPointF(std::cos(degrees * kDegree), std::sin(degrees * kDegree));
}

TEST(RotateDrag, AddsUpOverATurnInSmallSteps) {
    struct Case {
        double step;
        int steps;
        double start;
        double end;  // degrees
    };
    for (const Case& c : {Case{30, 14, 10, 70}, Case{-30, 14, 10, 310}, Case{-0.3, 20, 0, 354}}) {
        DragScene scene;
        scene.a->setZRotation(c.start * kDegree);
        scene.choose("b,a");
        scene.press(aroundA(180));
        for (int i = 1; i <= c.steps; ++i) {
            scene.drag(aroundA(180 + i * c.step, 45 + i));
        }
        scene.release();
        EXPECT_NEAR(scene.a->zRotation() / kDegree, c.end, 1e-6);
        EXPECT_EQ(scene.a->position(), QPointF(60, 60));
        EXPECT_EQ(scene.b->position(), QPointF(160, 60));
    }
}

TEST(RotateDrag, ShiftSnapsTheFirstToTheNearestMultiple) {
    struct Case {
        double first;
        double turn;
        double firstAfter;
    };
    for (const Case& c : {Case{0, 20, 15}, Case{10, 1, 15}, Case{10, 14, 30}, Case{52, -40, 15},
                          Case{44, 0.5, 45}}) {
        DragScene scene;
        scene.b->setZRotation(c.first * kDegree);
        scene.a->setZRotation(180 * kDegree);
        scene.choose("b,a");
        // Free at first: it counts from where the pointer has got to.
        scene.press(aroundA(180));
        scene.drag(aroundA(180 + c.turn / 2));
        scene.drag(aroundA(180 + c.turn), kShift);
        EXPECT_NEAR(scene.b->zRotation() / kDegree, c.firstAfter, 1e-9) << c.first;
        EXPECT_NEAR(scene.a->zRotation() / kDegree, 180 + c.firstAfter - c.first, 1e-9);
        scene.interaction.modifiersChanged({});
        EXPECT_NEAR(scene.b->zRotation() / kDegree, c.first + c.turn, 1e-9) << c.first;
        scene.release();
    }
}

TEST(RotateDrag, KeysNothingBeforeItTurns) {
    DragScene scene;
    scene.animateAt(500);
    scene.choose("a");
    scene.press(aroundA(180));
    scene.drag(aroundA(184), kShift);
    scene.release();
    EXPECT_FALSE(scene.project->undoManager().canUndo());
    scene.press(aroundA(180));
    scene.drag(aroundA(227), kShift);
    scene.release();
    EXPECT_NEAR(static_cast<double>(scene.a->zRotationAtTimeInMS(500)) / kDegree, 45, 1e-4);
}

// Anchor point.

TEST(AnchorPointDrag, MovesTheAnchorInSetupOnly) {
    DragScene scene;
    scene.a->setScale({2, 2});
    scene.choose("a");
    const QRectF frame = scene.a->frame();
    scene.dragThrough({{60, 60}, {0, 20}, {30, 40}});
    expectPoint(scene.a->anchorPoint(), {0.25, 0.25});
    expectPoint(scene.project->eventAnchorPoint(), {30, 40});
    EXPECT_EQ(scene.a->frame(), frame);
    // Option takes it to the pointer at once, outside of the element too.
    scene.press({300, 220}, kAlt);
    scene.drag({0, 0}, kAlt);
    scene.release();
    expectPoint(scene.a->anchorPoint(), {2.5, 2.5});
    EXPECT_EQ(scene.a->frame(), frame);
    EXPECT_EQ(scene.selected(), "a");

    // Its mark does not show in an animation, and is not hit.
    scene.animateAt(0);
    scene.dragThrough({{60, 60}, {65, 60}}, kAlt);
    scene.dragThrough({{60, 60}, {65, 60}});
    expectPoint(scene.a->anchorPoint(), {2.5, 2.5});
    EXPECT_EQ(keysText(*scene.a->translationXTimeline()), "0:10");
}

// Canvas.

TEST(CanvasDrag, MovesAnyEdge) {
    struct Case {
        const char* what;
        QPointF from;
        QSizeF size;  // after (20, 10)
        QPointF scrolled;
    };
    for (const Case& c : {Case{"left", {0, 150}, {380, 300}, {-20, 0}},
                          Case{"right", {400, 150}, {420, 300}, {0, 0}},
                          Case{"lower", {200, 299}, {400, 309}, {0, 0}},
                          Case{"upper", {200, 0}, {400, 290}, {0, -10}},
                          Case{"upper left", {0, 0}, {380, 290}, {-20, -10}},
                          Case{"upper right", {400, 0}, {420, 290}, {0, -10}},
                          Case{"lower left", {0, 300}, {380, 310}, {-20, 0}},
                          Case{"lower right", {400, 300}, {420, 310}, {0, 0}}}) {
        DragScene scene;
        scene.viewport.setMagnificationFactor(2);
        scene.viewport.scrollToCenter();
        const QPointF scrolled = scene.viewport.scrollOrigin();
        scene.interaction.press(scene.at(c.from));
        const PointerEvent to = scene.at(c.from + QPointF(20, 10));
        scene.interaction.drag(scene.at(c.from + QPointF(-9, 5)));
        scene.interaction.drag(to);
        scene.interaction.drag(to);
        scene.release();
        EXPECT_EQ(scene.canvas->size(), c.size) << c.what;
        EXPECT_EQ(scene.viewport.scrollOrigin() - scrolled, 2 * c.scrolled) << c.what;
        EXPECT_EQ(scene.a->position(), QPointF(60, 60));
    }
}

TEST(CanvasDrag, StopsAtOnePointAndDoesNotRunAwayAtTheDocumentsEnd) {
    DragScene scene;
    scene.viewport.scrollTo({});
    const PointerEvent from = scene.at({0, 150});
    PointerEvent to = from;
    to.viewPoint.rx() += 30;
    scene.interaction.press(from);
    for (int i = 0; i < 5; ++i) {
        scene.interaction.drag(to);
    }
    EXPECT_EQ(scene.canvas->size(), QSizeF(370, 300));
    to.viewPoint.rx() += 3000;
    scene.interaction.drag(to);
    EXPECT_EQ(scene.canvas->size(), QSizeF(1, 300));
    scene.release();
    EXPECT_EQ(scene.onlyStep(), "Canvas Size");
}

// Marquee.

TEST(Marquee, SelectsWhatItTouchesAsItGoes) {
    DragScene scene;
    scene.a->setZRotation(45 * kDegree);  // its box is larger than its outline
    scene.b->setLocked(true);
    scene.addPicture(scene.canvas, u"c"_s, {.position = {160, 160}, .size = {60, 40}});
    scene.forgetSteps();
    scene.press({250, 200});
    scene.drag({120, 20});
    EXPECT_EQ(scene.selected(), "c");
    EXPECT_EQ(scene.editor.selectionLayer().frame(), QRectF(120, 20, 130, 180));
    scene.drag({90, 30});
    EXPECT_EQ(scene.selected(), "a,c");
    scene.drag({240, 190});
    EXPECT_EQ(scene.selected(), "");
    scene.release();
    EXPECT_TRUE(scene.editor.selectionLayer().bounds().isEmpty());
    EXPECT_FALSE(scene.project->undoManager().canUndo());
}

}  // namespace
}  // namespace tweenery::test
