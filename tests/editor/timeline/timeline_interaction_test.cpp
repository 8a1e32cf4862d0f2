#include "editor/timeline/timeline_interaction.h"

#include <gtest/gtest.h>

#include "editor/timeline/easing_choice.h"
#include "editor/timeline/timeline_scene.h"

using namespace Qt::StringLiterals;

namespace tweenery::test {
namespace {

using Scene = TimelineEditScene;

TEST(TimelineInteraction, WhatAClickMeans) {
    struct Row {
        const char* what;
        double x;
        int row;
        Qt::KeyboardModifiers modifiers;
        int32_t playhead;
        const char* selected;
        const char* tweens;
        bool popover;
    };
    const std::array rows{
        Row{"a keyframe, from its left edge", 290, Scene::kX, kNone, 300, "x300", "", false},
        Row{"a keyframe, to its right edge", 310, Scene::kX, kNone, 300, "x300", "", false},
        Row{"just right of it", 311, Scene::kX, kNone, 311, "", "x500", true},
        Row{"with Shift, all up to it", 300, Scene::kX, kShift, 300, "x200 x300 y150", "", false},
        Row{"with Control, it too", 300, Scene::kX, kControl, 300, "x200 x300 y150", "x300", false},
        Row{"one that is selected keeps all", 200, Scene::kX, kNone, 200, "x200 y150", "x300",
            false},
        Row{"a bar", 350, Scene::kX, kNone, 350, "", "x500", true},
        Row{"a second bar", 350, Scene::kX, kControl, 350, "", "x300 x500", false},
        Row{"the same bar again", 250, Scene::kX, kShift, 250, "", "", false},
        Row{"a bar before the first keyframe", 30, Scene::kX, kNone, 30, "", "x100", true},
        Row{"a bar that changes nothing", 212, Scene::kY, kNone, 200, "", "", false},
        Row{"a bar with Shift that changes nothing", 213, Scene::kY, kShift, 225, "", "", false},
        Row{"behind the last keyframe", 612, Scene::kX, kNone, 600, "", "", false},
        Row{"the row of an element", 213, 1, kNone, 225, "", "", false},
        Row{"below the last row", 613, 6, kNone, 625, "", "", false},
        Row{"the ruler", 337, -1, kNone, 325, "", "x300", false},
        Row{"a master keyframe", 408, -1, kNone, 400, "master400", "", false},
        Row{"the scroller", 337, 8, kNone, 70, "x200 y150", "x300", false},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        Scene scene;
        scene.addMasterKeyframe(400);
        scene.selectKeys("x200 y150");
        scene.keyframes.selectTween(scene.key(Scene::kX, 300));
        scene.time.setPlayheadPositionInMS(70);
        scene.click(row.x, row.row, row.modifiers);
        EXPECT_EQ(scene.playhead(), row.playhead);
        EXPECT_EQ(scene.selectedKeys(), row.selected);
        EXPECT_EQ(scene.selectedTweens(), row.tweens);
        EXPECT_EQ(scene.interaction.easingPopover().has_value(), row.popover);
        EXPECT_EQ(scene.stepsOfUndo(), 0);
    }
}

TEST(TimelineInteraction, ABarBehindAnInstantKeyframeIsPickedAndOneBeforeItIsNot) {
    Scene scene("100:1 200:2! 300:3");
    scene.click(150, Scene::kX);
    EXPECT_EQ(scene.selectedTweens(), "");
    scene.click(250, Scene::kX);
    EXPECT_EQ(scene.selectedTweens(), "x300");
}

TEST(TimelineInteraction, AnyPressEndsTheSelectionOfAMasterKeyframe) {
    Scene scene;
    const auto master = scene.addMasterKeyframe(400);
    for (const int row : {-1, 1, int{Scene::kX}}) {
        scene.keyframes.selectKeyframes({master});
        scene.press(700, row);
        EXPECT_EQ(scene.selectedKeys(), "");
        scene.release(700, row);
    }
    scene.keyframes.selectKeyframes({master, scene.key(Scene::kX, 100)});
    scene.press(100, Scene::kX);
    EXPECT_EQ(scene.selectedKeys(), "x100");
}

TEST(TimelineInteraction, TheKeyframeClosestInTimeIsHitAndOfSeveralTheOneThatShows) {
    Scene scene("100:1 112:2 113:3 300:4");
    scene.timeline(Scene::kX).setTimes({{scene.key(Scene::kX, 113), 112}});
    scene.click(105, Scene::kX);
    EXPECT_EQ(scene.selectedKeys(), "x100");
    scene.click(107, Scene::kX);
    EXPECT_EQ(scene.selectedKeys(), "x112");
    EXPECT_EQ((*scene.keyframes.selectedKeyframes().begin())->index(), 2U);
}

TEST(TimelineInteraction, GatheredTweensGetThePopoverWhenTheKeysAreUp) {
    Scene scene;
    scene.interaction.modifiersChanged(kShift);
    scene.interaction.modifiersChanged(kNone);
    EXPECT_FALSE(scene.interaction.easingPopover());  // nothing was gathered

    scene.interaction.modifiersChanged(kControl);
    scene.click(250, Scene::kX, kControl);
    scene.click(350, Scene::kX, kControl);
    EXPECT_EQ(scene.interaction.shownEasing().property, std::nullopt);
    scene.interaction.hover({40, 100});
    EXPECT_FALSE(scene.interaction.easingPopover());
    scene.interaction.modifiersChanged(kNone);
    EXPECT_EQ(scene.interaction.easingPopover(), QPointF(40, 100));

    scene.interaction.modifiersChanged(kShift);
    EXPECT_FALSE(scene.interaction.easingPopover());
    scene.click(350, Scene::kX, kShift);  // out again
    scene.interaction.modifiersChanged(kNone);
    EXPECT_TRUE(scene.interaction.easingPopover());
    EXPECT_EQ(scene.interaction.shownEasing().property, PCPropertyTypeTranslationX);

    scene.press(100, Scene::kX);  // only closes it
    EXPECT_FALSE(scene.interaction.easingPopover());
    EXPECT_FALSE(scene.interaction.isPressed());
    EXPECT_EQ(scene.selectedTweens(), "x300");
}

TEST(TimelineInteraction, AnEasingThatIsChosenIsOneStepForAllSelectedTweens) {
    Scene scene;
    scene.click(250, Scene::kX);
    scene.click(0, 0);
    scene.click(350, Scene::kX, kShift);
    ASSERT_EQ(scene.selectedTweens(), "x300 x500");
    const std::string before = scene.allKeys();
    scene.interaction.chooseEasing(PCEasingModeOvershoot);
    EXPECT_EQ(scene.keys(Scene::kX), "100:1 200:2 300:3(overshoot) 500:4(overshoot)");
    EXPECT_EQ(scene.interaction.shownEasing().mode, PCEasingModeOvershoot);
    EXPECT_EQ(scene.project->undoManager().undoActionName(), u"Change Easing");
    scene.interaction.chooseEasing(PCEasingModeOvershoot);  // as it is
    EXPECT_EQ(scene.stepsOfUndo(), 1);
    scene.interaction.chooseEasing(easingModeInstant);
    EXPECT_EQ(scene.interaction.shownEasing().mode, easingModeInstant);
    EXPECT_TRUE(scene.key(Scene::kX, 500)->instantTransition());
    scene.interaction.chooseEasing(PCEasingModeLinear);
    EXPECT_EQ(scene.allKeys(), before);
    EXPECT_EQ(scene.stepsOfUndo(), 3);
}

TEST(TimelineInteraction, WhatAContextMenuIsAbout) {
    using Target = TimelineMenu::Target;
    Scene scene("100:1 200:2! 300:3");
    scene.kite->childrenZPositionsTimeline()->setArrayPropertyValue({}, 600);
    const auto master = scene.addMasterKeyframe(400);
    scene.selectKeys("x100 x200");
    scene.time.setPlayheadPositionInMS(70);
    const auto menuAt = [&](double x, int row) {
        return scene.interaction.pressForContextMenu(Scene::at(x, row).viewPoint);
    };
    EXPECT_EQ(menuAt(150, Scene::kX).target, Target::Nothing);
    EXPECT_EQ(menuAt(200, -1).target, Target::Nothing);
    EXPECT_EQ(scene.selectedKeys(), "x100 x200");
    EXPECT_EQ(menuAt(200, Scene::kX).isInstant, true);
    EXPECT_EQ(scene.selectedKeys(), "x100 x200");
    EXPECT_EQ(menuAt(300, Scene::kX).isInstant, false);
    EXPECT_EQ(scene.selectedKeys(), "x300");
    EXPECT_EQ(menuAt(405, -1).target, Target::MasterKeyframe);
    EXPECT_TRUE(scene.keyframes.keyframeIsSelected(master));
    const TimelineMenu order = menuAt(600, 5);
    EXPECT_EQ(order.target, Target::Keyframe);
    EXPECT_EQ(order.isInstant, std::nullopt);  // it can only jump
    EXPECT_EQ(scene.playhead(), 70);
    scene.press(700, 1);
    EXPECT_EQ(menuAt(100, Scene::kX).target, Target::Nothing);
}

TEST(TimelineInteraction, TheSkimBarFollowsThePointerAndGoesWithIt) {
    Scene scene;
    scene.time.setPlayheadPositionInMS(70);
    PCAppPreferences::setShowsTimelineSkimbar(false);
    scene.interaction.hover({200, 100});
    EXPECT_EQ(scene.time.skimPositionInMS(), 0);
    EXPECT_FALSE(scene.interaction.skimIsShown());
    PCAppPreferences::setShowsTimelineSkimbar(true);
    scene.interaction.hover({200, 100});
    EXPECT_EQ(scene.time.skimPositionInMS(), 200);
    EXPECT_TRUE(scene.interaction.skimIsShown());
    scene.interaction.hover({-20, 100});
    EXPECT_EQ(scene.time.skimPositionInMS(), 70);
    EXPECT_FALSE(scene.interaction.skimIsShown());
    scene.interaction.hover({200, 100});
    scene.interaction.leave();
    EXPECT_EQ(scene.time.skimPositionInMS(), 70);
    scene.interaction.hover({200, 100});
    scene.press(300, -1);
    EXPECT_FALSE(scene.interaction.skimIsShown());
    EXPECT_TRUE(scene.interaction.isDraggingPlayhead());
    scene.release(300, -1);
    EXPECT_EQ(scene.time.skimPositionInMS(), 300);

    scene.interaction.hover({200, 100});
    scene.controller.togglePlayPause();  // from there
    EXPECT_EQ(scene.time.playbackStartTimeInMS(), 200);
    scene.interaction.hover({250, 100});
    EXPECT_EQ(scene.time.skimPositionInMS(), 200);
}

TEST(TimelineInteraction, APressEndsARunAndThePlayheadFollowsIt) {
    for (const int row : {-1, int{Scene::kX}, int{Scene::kBlank}}) {
        Scene scene;
        scene.select({u"kite"_s});
        scene.controller.togglePlayPause();
        scene.clock.seconds += 0.1;
        scene.time.updatePlayheadDuringPlayback();
        scene.press(600, row);
        EXPECT_FALSE(scene.time.isPlayingBack());
        EXPECT_EQ(scene.selected(), u"kite");
        scene.drag(650, row);
        scene.time.updatePlayheadDuringPlayback();
        scene.release(650, row);
        EXPECT_EQ(scene.playhead(), 650);
    }
}

TEST(TimelineInteraction, NothingElseIsDoneDuringAPressAndNothingInSetup) {
    Scene scene;
    scene.press(100, Scene::kX);
    EXPECT_FALSE(scene.controller.commands().isEnabled(u"selectAll"_s));
    scene.press(300, Scene::kX);
    EXPECT_EQ(scene.selectedKeys(), "x100");
    EXPECT_TRUE(scene.controller.cancelPress());
    EXPECT_FALSE(scene.controller.cancelPress());
    EXPECT_TRUE(scene.controller.commands().isEnabled(u"selectAll"_s));
    scene.selectKeys("x100 y150");
    scene.keyframes.selectTween(scene.key(Scene::kX, 300));
    scene.controller.selectAnimation(nullptr);
    EXPECT_EQ(scene.selectedKeys() + scene.selectedTweens(), "");
    scene.time.setPlayheadPositionInMS(70);
    scene.press(100, Scene::kX);
    EXPECT_FALSE(scene.interaction.isPressed());
    EXPECT_EQ(scene.playhead(), 70);
}

}  // namespace
}  // namespace tweenery::test
