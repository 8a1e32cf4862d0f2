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
        QStringList before;
        QPointF at;
        Qt::KeyboardModifiers modifiers;
        QStringList pressed;
        QStringList dragged;  // as well, by (1, 1)
    };
    const QPointF handleOfA(30, 40);
    const QPointF bandOfA(18, 60);
    const Qt::KeyboardModifiers none;
    for (const Case& c : {
             Case{"element", {}, kOnA, none, {u"a"_s}, {u"a"_s}},
             Case{"another", {u"a"_s}, kOnB, none, {u"b"_s}, {u"b"_s}},
             Case{"one of two", {u"a"_s, u"b"_s}, kOnA, none, {u"a"_s, u"b"_s}, {u"a"_s, u"b"_s}},
             Case{"empty", {u"a"_s}, kNowhere, none, {}, {}},
             Case{"shift adds",
                  {u"a"_s},
                  kOnB,
                  Qt::ShiftModifier,
                  {u"a"_s, u"b"_s},
                  {u"a"_s, u"b"_s}},
             Case{"shift removes", {u"a"_s, u"b"_s}, kOnA, Qt::ShiftModifier, {u"b"_s}, {u"b"_s}},
             Case{"shift on empty, then a marquee",
                  {u"a"_s},
                  kNowhere,
                  Qt::ShiftModifier,
                  {u"a"_s},
                  {}},
             Case{"handle", {u"a"_s, u"b"_s}, handleOfA, none, {u"a"_s, u"b"_s}, {u"a"_s, u"b"_s}},
             Case{"shift on handle", {u"a"_s}, handleOfA, Qt::ShiftModifier, {u"a"_s}, {u"a"_s}},
             Case{"band", {u"a"_s}, bandOfA, none, {u"a"_s}, {u"a"_s}},
             Case{
                 "shift on band", {u"a"_s, u"b"_s}, bandOfA, Qt::ShiftModifier, {u"b"_s}, {u"b"_s}},
             Case{"group", {}, kOnC, none, {u"g"_s}, {u"g"_s}},
             Case{"in a group, direct", {u"g"_s}, kOnC, Qt::ControlModifier, {u"c"_s}, {u"c"_s}},
         }) {
        PressScene scene;
        scene.select(c.before);
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
        QStringList before;
        QPointF from;
        QPointF to;
        Qt::KeyboardModifiers modifiers;
        bool inAnimation = false;
    };
    const Qt::KeyboardModifiers none;
    for (const Case& c : {
             Case{"Move", {}, kOnA, {90, 77}, none},
             Case{"Move", {u"a"_s, u"b"_s}, kOnA, {90, 77}, none},
             Case{"Move", {u"a"_s, u"b"_s}, kOnA, {90, 77}, Qt::AltModifier},
             Case{"Move", {u"a"_s}, kOnA, {90, 77}, Qt::AltModifier, true},
             Case{"Scale", {u"a"_s}, {90, 80}, {117, 93}, none},
             Case{"Scale", {u"a"_s}, {90, 80}, {117, 93}, none, true},
             Case{"Rotate", {u"a"_s, u"b"_s}, {18, 60}, {30, 20}, none},
             Case{"Rotate", {u"a"_s}, {18, 60}, {30, 20}, none, true},
             Case{"Anchor Point", {u"a"_s}, {60, 60}, {33, 44}, none},
             Case{"Anchor Point", {u"a"_s}, {75, 75}, {75, 75}, Qt::AltModifier},
             Case{"Canvas Size", {}, {0, 150}, {-40, 150}, none},
             Case{"-", {u"a"_s}, {10, 10}, {200, 200}, none},
             Case{"-", {}, kOnA, kOnA, none},
         }) {
        PressScene scene;
        scene.select(c.before);
        if (c.inAnimation) {
            scene.animateAt(500);
            scene.select(c.before);
        }
        const std::string before = scene.state();
        const QPointF scrolled = scene.viewport.scrollOrigin();
        const QPointF anchor = scene.project->eventAnchorPoint();
        scene.project->preferences().setModified(false);
        const auto pressAndDrag = [&] {
            scene.press(c.from, c.modifiers);
            scene.drag((c.from + c.to) / 2, c.modifiers);
            scene.drag(c.to, c.modifiers);
        };
        pressAndDrag();
        EXPECT_FALSE(scene.project->undoManager().canUndo()) << c.step;
        EXPECT_TRUE(scene.interaction.cancel()) << c.step;
        EXPECT_FALSE(scene.interaction.cancel()) << c.step;
        EXPECT_EQ(scene.state(), before) << c.step;
        EXPECT_EQ(scene.selected(), c.before) << c.step;
        EXPECT_EQ(scene.viewport.scrollOrigin(), scrolled) << c.step;
        EXPECT_EQ(scene.project->eventAnchorPoint(), anchor) << c.step;
        EXPECT_FALSE(scene.editor.verticalSnapGuideline().isShown()) << c.step;
        EXPECT_EQ(scene.editor.selectionLayer().bounds().size(), QSizeF(0, 0)) << c.step;
        scene.drag(c.to + QPointF(9, 9));  // the button is still down
        scene.release();
        EXPECT_EQ(scene.state(), before) << c.step;
        EXPECT_EQ(scene.onlyStep(), u"-"_s) << c.step;

        pressAndDrag();
        scene.release();
        EXPECT_EQ(scene.onlyStep().toStdString(), c.step);
        if (scene.project->undoManager().undo()) { EXPECT_EQ(scene.state(), before) << c.step; }
    }
}

TEST(CanvasInteraction, ADragThatLeadsBackLeavesWhatCouldBeRedone) {
    PressScene scene;
    scene.a->setOpacity(0.5);
    scene.project->undoManager().undo();
    scene.press(kOnA);
    scene.drag({90, 77}, Qt::AltModifier);
    scene.drag({93, 75});
    scene.drag(kOnA);
    scene.release();
    EXPECT_EQ(scene.selected(), QStringList{u"a"_s});
    EXPECT_FALSE(scene.project->undoManager().canUndo());
    EXPECT_TRUE(scene.project->undoManager().canRedo());
}

TEST(CanvasInteraction, WhatCameBeforeInTheSameTurnIsAStepOfItsOwn) {
    PressScene scene;
    scene.a->setOpacity(0.5);
    scene.dragThrough({kOnA, {50, 57}});
    EXPECT_EQ(scene.onlyStep(), u"several"_s);
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
    EXPECT_EQ(scene.onlyStep(), u"Move"_s);
    EXPECT_EQ(scene.selected(), QStringList{u"a"_s});
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
    interaction.modifiersChanged(Qt::ControlModifier);
    interaction.setSpaceIsDown(true);
    interaction.setSpaceIsDown(false);
    interaction.modifiersChanged({});
    EXPECT_EQ(interaction.tool(), PCSelectionStateDirect);
    interaction.setTool(PCSelectionStateSelect);

    // Let go of where nobody saw it.
    interaction.modifiersChanged(Qt::ControlModifier);
    scene.dragThrough({kOnC, kOnC});
    EXPECT_EQ(interaction.tool(), PCSelectionStateSelect);
    EXPECT_EQ(scene.selected(), QStringList{u"g"_s});

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
    scene.select({u"a"_s});
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
    EXPECT_EQ(scene.selected(), QStringList{u"a"_s});
    EXPECT_EQ(scene.onlyStep(), u"-"_s);
}

TEST(CanvasInteraction, AContextMenuIsForWhatLiesUnderThePointer) {
    PressScene scene;
    scene.select({u"a"_s, u"b"_s});
    EXPECT_TRUE(scene.interaction.pressForContextMenu(scene.at(kOnB)));
    EXPECT_EQ(scene.selected(), QStringList({u"a"_s, u"b"_s}));
    scene.interaction.pressForContextMenu(scene.at(kOnC));
    EXPECT_EQ(scene.selected(), QStringList{u"g"_s});
    scene.interaction.pressForContextMenu(scene.at(kNowhere));
    EXPECT_EQ(scene.selected(), QStringList());
    scene.press(kOnA);
    EXPECT_FALSE(scene.interaction.pressForContextMenu(scene.at(kOnB)));
}

TEST(CanvasInteraction, APressWhilePlayingEndsTheRunAndIsWrittenAtOneTime) {
    PressScene scene;
    scene.animateAt(500);
    scene.selectedBeforePlayback = {scene.a, scene.b};
    scene.press(kOnB);
    EXPECT_EQ(scene.selected(), QStringList({u"a"_s, u"b"_s}));
    scene.layers->show(EditTime::at(700));
    scene.drag(kOnB + QPointF(10, 5));
    scene.release();
    EXPECT_EQ(keysText(*scene.a->translationXTimeline()), "500:10");
    EXPECT_EQ(keysText(*scene.b->translationYTimeline()), "500:5");
}

TEST(CanvasInteraction, ShowsTheCursorOfThePressAndWhatChanges) {
    PressScene scene;
    const QPointF corner(92, 82);
    scene.select({u"a"_s});
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
