#include "editor/canvas/canvas_interaction.h"

#include <gtest/gtest.h>

#include "editor/canvas/interaction_scene.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

// Two pictures side by side, and a group with two.
struct PressScene : InteractionScene {
    PCElement::Ptr a = addPicture(canvas, u"a"_s, {.position = {60, 60}, .size = {60, 40}});
    PCElement::Ptr b = addPicture(canvas, u"b"_s, {.position = {160, 60}, .size = {60, 40}});
    PCElement::Ptr group = addGroup(canvas, u"g"_s, {.size = {100, 100}, .anchor = {0, 0}});
    PCElement::Ptr c = addPicture(group, u"c"_s, {.position = {60, 200}, .size = {60, 40}});

    PressScene() {
        addPicture(group, u"d"_s, {.position = {160, 200}, .size = {60, 40}});
        forgetSteps();
    }
    std::string state() const { return exactState(*canvas); }
};

constexpr QPointF kOnA(40, 50);
constexpr QPointF kOnB(140, 50);
constexpr QPointF kOnC(40, 190);
constexpr QPointF kNowhere(250, 150);

TEST(CanvasInteraction, PressesSelectByToolAndModifiers) {
    struct Case {
        const char* what;
        const char* before;
        QPointF at;
        Qt::KeyboardModifiers modifiers;
        const char* pressed;
        const char* dragged;  // as well, by (1, 1)
    };
    const QPointF handleOfA(30, 40);
    const QPointF bandOfA(18, 60);
    for (const Case& c :
         {Case{"element", "", kOnA, kNone, "a", "a"}, Case{"another", "a", kOnB, kNone, "b", "b"},
          Case{"one of two", "a,b", kOnA, kNone, "a,b", "a,b"},
          Case{"empty", "a", kNowhere, kNone, "", ""},
          Case{"shift adds", "a", kOnB, kShift, "a,b", "a,b"},
          Case{"shift removes", "a,b", kOnA, kShift, "b", "b"},
          Case{"shift on empty, then a marquee", "a", kNowhere, kShift, "a", ""},
          Case{"handle", "a,b", handleOfA, kNone, "a,b", "a,b"},
          Case{"shift on handle", "a", handleOfA, kShift, "a", "a"},
          Case{"band", "a", bandOfA, kNone, "a", "a"},
          Case{"shift on band", "a,b", bandOfA, kShift, "b", "b"},
          Case{"group", "", kOnC, kNone, "g", "g"},
          Case{"in a group, direct", "g", kOnC, kControl, "c", "c"}}) {
        PressScene scene;
        scene.choose(c.before);
        scene.press(c.at, c.modifiers);
        EXPECT_TRUE(scene.interaction.isPressed()) << c.what;
        EXPECT_EQ(scene.selected(), c.pressed) << c.what;
        scene.drag(c.at, c.modifiers);  // no movement, no drag
        EXPECT_EQ(scene.selected(), c.pressed) << c.what;
        scene.drag(c.at + QPointF(1, 1), c.modifiers);
        EXPECT_EQ(scene.selected(), c.dragged) << c.what;
        scene.release();
        EXPECT_FALSE(scene.interaction.isPressed()) << c.what;
    }
}

TEST(CanvasInteraction, EveryPressIsOneStepThatEscapeTakesBack) {
    struct Case {
        const char* step;
        const char* before;
        QPointF from;
        QPointF to;
        Qt::KeyboardModifiers modifiers;
        bool inAnimation = false;
    };
    for (const Case& c :
         {Case{"Move", "", kOnA, {90, 77}, kNone}, Case{"Move", "a,b", kOnA, {90, 77}, kNone},
          Case{"Move", "a,b", kOnA, {90, 77}, kAlt}, Case{"Move", "a", kOnA, {90, 77}, kAlt, true},
          Case{"Scale", "a", {90, 80}, {117, 93}, kNone},
          Case{"Scale", "a", {90, 80}, {117, 93}, kNone, true},
          Case{"Rotate", "a,b", {18, 60}, {30, 20}, kNone},
          Case{"Rotate", "a", {18, 60}, {30, 20}, kNone, true},
          Case{"Anchor Point", "a", {60, 60}, {33, 44}, kNone},
          Case{"Anchor Point", "a", {75, 75}, {75, 75}, kAlt},
          Case{"Canvas Size", "", {0, 150}, {-40, 150}, kNone},
          Case{"-", "a", {10, 10}, {200, 200}, kNone}, Case{"-", "", kOnA, kOnA, kNone}}) {
        PressScene scene;
        scene.choose(c.before);
        if (c.inAnimation) {
            scene.animateAt(500);
            scene.choose(c.before);
        }
        const std::string before = scene.state();
        const QPointF scrolled = scene.viewport.scrollOrigin();
        const QPointF anchor = scene.project->eventAnchorPoint();
        const auto pressAndDrag = [&] {
            scene.press(c.from, c.modifiers);
            scene.drag((c.from + c.to) / 2, c.modifiers);
            scene.drag(c.to, c.modifiers);
        };
        pressAndDrag();
        scene.viewport.zoomAbout({10, 20}, 1.5);
        EXPECT_FALSE(scene.project->undoManager().canUndo()) << c.step;
        EXPECT_TRUE(scene.interaction.cancel()) << c.step;
        EXPECT_FALSE(scene.interaction.cancel()) << c.step;
        EXPECT_EQ(scene.state(), before) << c.step;
        EXPECT_EQ(scene.selected(), c.before) << c.step;
        EXPECT_EQ(scene.viewport.scrollOrigin(), scrolled) << c.step;
        EXPECT_EQ(scene.viewport.magnificationFactor(), 1) << c.step;
        EXPECT_EQ(scene.project->eventAnchorPoint(), anchor) << c.step;
        EXPECT_FALSE(scene.editor.verticalSnapGuideline().isShown()) << c.step;
        EXPECT_EQ(scene.editor.selectionLayer().bounds().size(), QSizeF(0, 0)) << c.step;
        scene.drag(c.to + QPointF(9, 9));  // the button is still down
        scene.release();
        EXPECT_EQ(scene.state(), before) << c.step;
        EXPECT_EQ(scene.onlyStep(), "-") << c.step;

        pressAndDrag();
        scene.release();
        EXPECT_EQ(scene.onlyStep(), c.step);
        if (scene.project->undoManager().undo()) { EXPECT_EQ(scene.state(), before) << c.step; }
    }
}

TEST(CanvasInteraction, ADragThatLeadsBackLeavesWhatCouldBeRedone) {
    PressScene scene;
    scene.a->setOpacity(0.5);
    scene.project->undoManager().undo();
    scene.press(kOnA);
    scene.drag({90, 77}, kAlt);
    scene.drag({93, 75});
    scene.drag(kOnA);
    scene.release();
    EXPECT_EQ(scene.selected(), "a");
    EXPECT_FALSE(scene.project->undoManager().canUndo());
    EXPECT_TRUE(scene.project->undoManager().canRedo());
}

TEST(CanvasInteraction, WhatCameBeforeInTheSameTurnIsAStepOfItsOwn) {
    PressScene scene;
    scene.a->setOpacity(0.5);
    scene.dragThrough({kOnA, {50, 57}});
    EXPECT_EQ(scene.onlyStep(), "several");
}

TEST(CanvasInteraction, EndsAPressThatLosesItsRelease) {
    PressScene scene;
    scene.interaction.setSpaceIsDown(true);
    scene.interaction.focusLost();
    EXPECT_EQ(scene.interaction.tool(), PCSelectionStateSelect);
    scene.press(kOnA);
    scene.drag({50, 57});
    scene.interaction.release(scene.at({50, 57}, {}, Qt::RightButton));
    EXPECT_TRUE(scene.interaction.isPressed());
    scene.press(kOnB);  // another button, or a second pointer
    scene.interaction.focusLost();
    EXPECT_FALSE(scene.interaction.isPressed());
    EXPECT_EQ(scene.onlyStep(), "Move");
    EXPECT_EQ(scene.selected(), "a");
}

TEST(CanvasInteraction, HasATemporaryToolWhileAKeyIsDown) {
    PressScene scene;
    CanvasInteraction& interaction = scene.interaction;
    interaction.setSpaceIsDown(true);
    interaction.setSpaceIsDown(true);
    EXPECT_EQ(interaction.tool(), PCSelectionStateHand);
    EXPECT_EQ(scene.toolChanges, 1);
    interaction.setSpaceIsDown(false);
    EXPECT_EQ(interaction.tool(), PCSelectionStateSelect);

    // One place for what to go back to.
    interaction.modifiersChanged(kControl);
    interaction.setSpaceIsDown(true);
    interaction.setSpaceIsDown(false);
    interaction.modifiersChanged({});
    EXPECT_EQ(interaction.tool(), PCSelectionStateDirect);
    interaction.setTool(PCSelectionStateSelect);

    // Let go of where nobody saw it.
    interaction.modifiersChanged(kControl);
    scene.dragThrough({kOnC, kOnC});
    EXPECT_EQ(interaction.tool(), PCSelectionStateSelect);
    EXPECT_EQ(scene.selected(), "g");

    // During a press keys wait.
    interaction.setSpaceIsDown(true);
    scene.press(kOnA);
    interaction.setSpaceIsDown(false);
    interaction.setTool(PCSelectionStateDirect);
    EXPECT_EQ(interaction.tool(), PCSelectionStateHand);
    scene.release();
    EXPECT_EQ(interaction.tool(), PCSelectionStateSelect);
}

TEST(CanvasInteraction, TheHandAndTheMiddleButtonScroll) {
    PressScene scene;
    scene.choose("a");
    for (const Qt::MouseButton button : {Qt::LeftButton, Qt::MiddleButton}) {
        const bool isLeft = button == Qt::LeftButton;
        scene.interaction.setTool(isLeft ? PCSelectionStateHand : PCSelectionStateSelect);
        const QPointF origin = scene.viewport.scrollOrigin();
        scene.interaction.press({{100, 100}, {}, {}, button});
        EXPECT_EQ(scene.interaction.cursorAt({}), handClosedCursor());
        scene.interaction.drag({{90, 130}, {}, {}, button});
        scene.interaction.drag({{60, 140}, {}, {}, button});
        EXPECT_EQ(scene.viewport.scrollOrigin(), origin + QPointF(40, -40));
        if (isLeft) {
            EXPECT_TRUE(scene.interaction.cancel());
            EXPECT_EQ(scene.viewport.scrollOrigin(), origin);
        } else {
            scene.interaction.release({{60, 140}, {}, {}, button});
        }
    }
    EXPECT_EQ(scene.selected(), "a");
    EXPECT_EQ(scene.onlyStep(), "-");
}

TEST(CanvasInteraction, AContextMenuIsForWhatLiesUnderThePointer) {
    PressScene scene;
    scene.choose("a,b");
    EXPECT_TRUE(scene.interaction.pressForContextMenu(scene.at(kOnB)));
    EXPECT_EQ(scene.selected(), "a,b");
    scene.interaction.pressForContextMenu(scene.at(kOnC));
    EXPECT_EQ(scene.selected(), "g");
    scene.interaction.pressForContextMenu(scene.at(kNowhere));
    EXPECT_EQ(scene.selected(), "");
    scene.press(kOnA);
    EXPECT_FALSE(scene.interaction.pressForContextMenu(scene.at(kOnB)));
}

TEST(CanvasInteraction, APressWhilePlayingEndsTheRunAndIsWrittenAtOneTime) {
    PressScene scene;
    scene.animateAt(500);
    scene.selectedBeforePlayback = {scene.a, scene.b};
    scene.press(kOnB);
    EXPECT_EQ(scene.selected(), "a,b");
    scene.layers->show(EditTime::at(700));
    scene.drag(kOnB + QPointF(10, 5));
    scene.release();
    EXPECT_EQ(keysText(*scene.a->translationXTimeline()), "500:10");
    EXPECT_EQ(keysText(*scene.b->translationYTimeline()), "500:5");
}

TEST(CanvasInteraction, ShowsTheCursorOfThePressAndWhatChanges) {
    PressScene scene;
    const QPointF corner(92, 82);
    scene.choose("a");
    const auto cursor = [&](QPointF point) {
        return scene.interaction.cursorAt(scene.viewport.viewPoint(point));
    };
    EXPECT_EQ(cursor(corner), transformCursorRotatedBy(315, false));
    EXPECT_EQ(scene.interaction.feedback(), QString());
    scene.press(corner);
    scene.drag({120, 60});  // from (30, 40)
    EXPECT_EQ(cursor(kNowhere), transformCursorRotatedBy(315, false));
    EXPECT_EQ(scene.interaction.feedback(), u"150 % × 50 %"_s);
    scene.interaction.cancel();
    scene.press(kOnA);
    scene.drag(kOnA + QPointF(12.26, -5));
    EXPECT_EQ(scene.interaction.feedback(), u"x 12.3, y −5"_s);
    scene.interaction.cancel();
    scene.press({60, 90});  // below the anchor point
    scene.drag({30, 60});
    EXPECT_EQ(cursor(kNowhere), rotateCursorRotatedBy(-90, false));
    EXPECT_EQ(scene.interaction.feedback(), u"90°"_s);
    scene.interaction.cancel();
    scene.selection.deselectAllElements();
    EXPECT_EQ(cursor({0, 150}), CanvasCursor{u"HorizontalCursor"_s});
    scene.dragThrough({{0, 150}, {-12, 150}});
    EXPECT_EQ(scene.interaction.feedback(), QString());
}

}  // namespace
}  // namespace tweenery::test
