#include "editor/canvas/keyboard_edits.h"

#include <gtest/gtest.h>

#include "editor/canvas/interaction_scene.h"
#include "support/scripted_clock.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

struct NudgeScene : InteractionScene {
    PCElement::Ptr a = addElement(canvas, u"a"_s, {.position = {60, 60}});
    ScriptedClock clock;
    NudgeSeries series{*project, selection, clock};

    NudgeScene() {
        forgetSteps();
        choose("a");
    }
    void nudge(double x, double y, double secondsLater) {
        clock.seconds += secondsLater;
        series.nudge({x, y}, {editTime(), false});
    }
    bool undo() const { return project->undoManager().undo(); }
};

TEST(NudgeSeries, IsOneStepUntilAPauseOfASecond) {
    NudgeScene scene;
    scene.nudge(1, 0, 0);
    scene.nudge(1, 0, 0.9);
    scene.nudge(0, 10, 0.9);
    EXPECT_EQ(scene.onlyStep(), "Move");
    scene.nudge(1, 0, 1.1);
    EXPECT_EQ(scene.a->position(), QPointF(63, 70));
    EXPECT_TRUE(scene.undo());
    EXPECT_EQ(scene.a->position(), QPointF(62, 70));
    EXPECT_TRUE(scene.undo());
    EXPECT_EQ(scene.a->position(), QPointF(60, 60));
    EXPECT_FALSE(scene.undo());
}

TEST(NudgeSeries, NeverTakesAnotherStepAlong) {
    NudgeScene scene;
    scene.a->setOpacity(0.5);
    // There and back again leaves nothing to undo.
    for (const double x : {1, -1}) {
        scene.nudge(x, 0, 0.1);
    }
    EXPECT_EQ(scene.project->undoManager().undoActionName(), u""_s);
    scene.nudge(1, 0, 0.1);
    scene.nudge(1, 0, 0.1);
    EXPECT_EQ(scene.a->position(), QPointF(62, 60));
    EXPECT_EQ(scene.a->opacity(), 0.5);
    // Another edit, another selection, an undo between.
    scene.a->setOpacity(0.25);
    scene.nudge(1, 0, 0.1);
    EXPECT_TRUE(scene.undo());
    EXPECT_EQ(scene.a->position(), QPointF(62, 60));
    scene.nudge(5, 0, 0.1);
    EXPECT_EQ(scene.a->position(), QPointF(67, 60));
    EXPECT_EQ(scene.a->opacity(), 0.25);
    scene.selection.deselectAllElements();
    scene.nudge(1, 0, 0.1);
    scene.nudge(1, 0, 0.1);
    EXPECT_EQ(scene.a->position(), QPointF(67, 60));
    EXPECT_EQ(scene.a->opacity(), 0.25);
}

TEST(NudgeSeries, KeysOneTime) {
    NudgeScene scene;
    scene.animateAt(500);
    scene.choose("a");
    scene.nudge(1, 0, 0);
    scene.nudge(1, 0, 0.1);
    EXPECT_EQ(keysText(*scene.a->translationXTimeline()), "500:2");
    scene.layers->show(EditTime::at(700));
    scene.nudge(1, 0, 0.1);
    EXPECT_EQ(keysText(*scene.a->translationXTimeline()), "500:2 700:3");
    EXPECT_TRUE(scene.undo());
    EXPECT_EQ(keysText(*scene.a->translationXTimeline()), "500:2");
}

TEST(KeyboardEdits, TellDigitsByPlaceElseByText) {
    struct Case {
        uint32_t code;
        QString text;
        std::optional<double> opacity;
    };
    for (const Case& c :
         {Case{10, u"&"_s, 0.1}, Case{14, u"5"_s, 0.5}, Case{19, u"0"_s, 1.0},
          Case{20, u"-"_s, std::nullopt}, Case{9, u"\x1b"_s, std::nullopt}, Case{0, u"7"_s, 0.7},
          Case{90, u"0"_s, 1.0}, Case{0, u""_s, std::nullopt}, Case{38, u"a"_s, std::nullopt}}) {
        EXPECT_EQ(opacityForDigitKey(c.code, c.text), c.opacity) << c.code;
    }
}

TEST(KeyboardEdits, OpacityAndAnchorPointsAreOneStepEach) {
    InteractionScene scene;
    const auto a = addElement(scene.canvas, u"a"_s, {.position = {60, 60}});
    const auto b = addElement(scene.canvas, u"b"_s, {.position = {90, 60}, .rotation = 1});
    scene.forgetSteps();
    scene.choose("a,b");
    const QRectF frame = b->frame();
    placeAnchorPoints(scene.scene, {1, 0});
    EXPECT_EQ(a->position(), QPointF(65, 55));
    EXPECT_EQ(b->frame(), frame);
    EXPECT_EQ(scene.onlyStep(), "Anchor Point");
    setOpacityOfSelection(scene.scene, 0.3, {});
    EXPECT_EQ(b->opacity(), 0.3);
    EXPECT_EQ(scene.project->undoManager().undoActionName(), u"Opacity"_s);
    setOpacityOfSelection(scene.scene, 0.3, {});
    scene.project->undoManager().undo();
    EXPECT_EQ(a->opacity(), 1);
    EXPECT_EQ(scene.onlyStep(), "Anchor Point");
}

TEST(KeyboardEdits, GoToTheNextElementRoundAndRound) {
    InteractionScene scene;
    buildTree(*scene.project, "A G{B C} L D");
    named(*scene.project, u"L"_s)->setLocked(true);
    const auto round = [&](bool isDirect, bool backward) {
        scene.selection.deselectAllElements();
        QString names;
        for (int i = 0; i < 6; ++i) {
            const auto next = elementAfterSelection(scene.scene, isDirect, backward);
            scene.selection.selectElements({next});
            names += next->name();
        }
        return names;
    };
    EXPECT_EQ(round(false, false), u"DGADGA"_s);
    EXPECT_EQ(round(false, true), u"AGDAGD"_s);
    EXPECT_EQ(round(true, false), u"DGCBAD"_s);
    scene.choose("C");
    EXPECT_EQ(elementAfterSelection(scene.scene, false, false)->name(), u"A"_s);
}

TEST(KeyboardEdits, NothingToGoToAmongLockedElements) {
    InteractionScene scene;
    EXPECT_EQ(elementAfterSelection(scene.scene, true, false), nullptr);
    const auto only = addElement(scene.canvas, u"a"_s);
    scene.choose("a");
    only->setLocked(true);
    EXPECT_EQ(elementAfterSelection(scene.scene, true, false), nullptr);
}

TEST(DropTarget, IsInFrontOfTheElementSelectedFirst) {
    InteractionScene scene;
    buildTree(*scene.project, "A G{B C} D");
    EXPECT_EQ(dropTarget(scene.scene).parent, scene.canvas);
    EXPECT_EQ(dropTarget(scene.scene).index, 3U);
    scene.choose("B,A");
    EXPECT_EQ(dropTarget(scene.scene).parent, named(*scene.project, u"G"_s));
    EXPECT_EQ(dropTarget(scene.scene).index, 1U);
}

}  // namespace
}  // namespace tweenery::test
