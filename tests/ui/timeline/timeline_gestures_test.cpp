// Gestures of the timeline from the events of the window to what they change.

#include <gmock/gmock.h>

#include "timeline_window.h"

using namespace Qt::StringLiterals;

namespace tweenery::test {
namespace {

using testing::ElementsAre;

TEST(TimelineGestures, AKeyframeIsSelectedDraggedAndPutBack) {
    TimelineWindow scene;
    const QPoint keyframe = scene.keyframeAt(scene.moves(), 1000);
    scene.click(keyframe);
    EXPECT_THAT(scene.selectedTimes(), ElementsAre(1000));
    EXPECT_EQ(scene.time().playheadPositionInMS(), 1000);
    scene.drag(keyframe, {42, 0});
    EXPECT_THAT(scene.times(scene.moves()), ElementsAre(0, 1200, 2000));
    scene.controller().undo();
    EXPECT_THAT(scene.times(scene.moves()), ElementsAre(0, 1000, 2000));

    scene.press(keyframe);
    scene.move(keyframe + QPoint(30, 0));
    EXPECT_NEAR(scene.moves().timeOfKeyframe(1), 1150, 1);
    scene.key(Qt::Key_Escape);
    EXPECT_THAT(scene.times(scene.moves()), ElementsAre(0, 1000, 2000));
    scene.release(keyframe + QPoint(30, 0));
    EXPECT_THAT(scene.times(scene.moves()), ElementsAre(0, 1000, 2000));
    EXPECT_FALSE(scene.controller().undoManager().canUndo());
}

TEST(TimelineGestures, TheRulerMovesThePlayheadAndItEndsOnATick) {
    TimelineWindow scene;
    const QPoint from = scene.rulerAt(500);
    scene.press(from);
    scene.move(from + QPoint(33, 0));
    EXPECT_NEAR(scene.time().playheadPositionInMS(), 665, 10);
    scene.release(from + QPoint(33, 0));
    EXPECT_EQ(scene.time().playheadPositionInMS(), 650);
}

TEST(TimelineGestures, AMarqueeSelectsWhatItTouches) {
    TimelineWindow scene;
    const QPoint from = scene.keyframeAt(scene.moves(), 2000) + QPoint(60, 10);
    const QPoint to =
        scene.keyframeAt(*scene.element("B")->zRotationTimeline(), 500) - QPoint(40, 0);
    scene.press(from);
    scene.move(from + (to - from) / 2);
    scene.move(to);
    EXPECT_THAT(scene.selectedTimes(), ElementsAre(500, 1000, 2000));
    scene.release(to);
    EXPECT_THAT(scene.selectedTimes(), ElementsAre(500, 1000, 2000));
    scene.key(Qt::Key_Delete);
    EXPECT_THAT(scene.times(scene.moves()), ElementsAre(0));
    EXPECT_EQ(scene.project().canvas()->children().size(), 3U);
    scene.controller().undo();
    EXPECT_THAT(scene.times(scene.moves()), ElementsAre(0, 1000, 2000));
}

TEST(TimelineGestures, AClickOnATweenChoosesItsEasing) {
    TimelineWindow scene;
    const auto tweenAt = [&](int32_t time) { return scene.keyframeAt(scene.moves(), time); };
    scene.click(tweenAt(1500));
    QCoreApplication::processEvents();
    ASSERT_TRUE(scene.popoverIsOpen());
    EXPECT_TRUE(scene.button(*scene.pane().popover(), "linear")->isChecked());
    scene.clickOn(scene.button(*scene.pane().popover(), "overshoot"));
    EXPECT_EQ(scene.moves().easingModeOfKeyframe(2), PCEasingModeOvershoot);
    EXPECT_EQ(scene.moves().easingModeOfKeyframe(1), PCEasingModeLinear);
    EXPECT_TRUE(scene.button(*scene.pane().popover(), "overshoot")->isChecked());
    // A press in the tracks only closes it.
    const int32_t playhead = scene.time().playheadPositionInMS();
    scene.click(tweenAt(2500));
    EXPECT_FALSE(scene.popoverIsOpen());
    EXPECT_EQ(scene.time().playheadPositionInMS(), playhead);
    scene.controller().undo();
    EXPECT_EQ(scene.moves().easingModeOfKeyframe(2), PCEasingModeLinear);

    scene.click(tweenAt(2500));  // nothing there: no tween stays selected
    scene.click(tweenAt(500), Qt::ControlModifier);
    scene.click(tweenAt(1500), Qt::ControlModifier);
    EXPECT_FALSE(scene.popoverIsOpen());
    EXPECT_EQ(scene.controller().keyframeManager().selectedTweens().size(), 2U);
}

TEST(TimelineGestures, TheSkimBarFollowsThePointer) {
    TimelineWindow scene;
    const QPoint inside = scene.keyframeAt(scene.moves(), 700) + QPoint(0, 60);
    scene.move(inside - QPoint(5, 0));
    scene.move(inside);
    EXPECT_NEAR(scene.time().skimPositionInMS(), 700, 10);
    EXPECT_EQ(scene.time().playheadPositionInMS(), 0);
    scene.move(scene.at({20, 20}));
    EXPECT_EQ(scene.time().skimPositionInMS(), 0);
}

TEST(TimelineGestures, KeysOfTheTimelineWorkOnKeyframes) {
    TimelineWindow scene;
    scene.click(scene.keyframeAt(scene.moves(), 1000));
    struct Case {
        Qt::Key key;
        Qt::KeyboardModifiers modifiers;
        std::vector<int32_t> times;
    };
    for (const Case& c :
         {Case{Qt::Key_Right, {}, {0, 1050, 2000}},
          Case{Qt::Key_Left, Qt::AltModifier, {0, 1049, 2000}},
          Case{Qt::Key_Left, {}, {0, 1000, 2000}}, Case{Qt::Key_Delete, {}, {0, 2000}}}) {
        scene.key(c.key, c.modifiers);
        EXPECT_EQ(scene.times(scene.moves()), c.times);
    }
    scene.clickOn(scene.button(scene.pane(), "Key All"));
    const auto animation = scene.project().animationsManager().selectedAnimation();
    EXPECT_EQ(animation->masterKeyframesTimeline()->keyframesCount(), 1U);
}

}  // namespace
}  // namespace tweenery::test
