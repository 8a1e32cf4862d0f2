// Drags on ruler and tracks: where they lead, what they leave, and that they can be taken back.

#include <gtest/gtest.h>

#include <random>

#include "editor/timeline/timeline_scene.h"

using namespace Qt::StringLiterals;

namespace tweenery::test {
namespace {

using Scene = TimelineEditScene;

TEST(TimelineDrags, MoveKeyframesBetweenTheirNeighbours) {
    struct Row {
        const char* what;
        const char* keys;
        const char* selected;  // before the press
        double from, to;
        Qt::KeyboardModifiers modifiers;
        const char* expected;
        int steps;
    };
    const std::array rows{
        Row{"to the closest tick", "100:1 500:2", "", 100, 137, kNone, "125:1 500:2", 1},
        Row{"half a tick goes up", "100:1 500:2", "", 100, 138, kNone, "150:1 500:2", 1},
        Row{"the first stops at 0", "100:1 500:2", "", 100, -60, kNone, "0:1 500:2", 1},
        Row{"a tick before the next", "0:1 300:2 600:3", "", 300, 790, kNone, "0:1 575:2 600:3", 1},
        Row{"a tick after the one before", "0:1 500:2 1000:3", "", 500, -40, kNone,
            "0:1 25:2 1000:3", 1},
        Row{"neighbours between ticks", "10:1 500:2 990:3", "", 500, -40, kNone, "10:1 25:2 990:3",
            1},
        Row{"squeezed", "100:1 110:2 124:3", "", 110, 60, kNone, "100:1 110:2 124:3", 0},
        Row{"a gap of a tick is one", "100:1 110:2 135:3", "", 110, 160, kNone, "100:1 125:2 135:3",
            1},
        Row{"no tick between", "101:1 120:2 149:3", "", 120, 160, kNone, "101:1 125:2 149:3", 1},
        Row{"together", "100:1 150:2 500:3", "x100 x150", 100, 200, kNone, "200:1 250:2 500:3", 1},
        Row{"together up to the one that stays", "100:1 150:2 500:3", "x100 x150", 100, 600, kNone,
            "425:1 475:2 500:3", 1},
        Row{"together down to 0", "100:1 150:2 500:3", "x100 x150", 150, 0, kNone, "0:1 50:2 500:3",
            1},
        Row{"each to its own tick", "103:1 164:2 500:3", "x103 x164", 103, 203, kNone,
            "200:1 275:2 500:3", 1},
        Row{"two on one tick", "100:1 108:2 500:3", "x100 x108", 100, 200, kNone,
            "200:1 200:2 500:3", 1},
        Row{"back where it was", "100:1 500:2", "", 100, 106, kNone, "100:1 500:2", 0},
        Row{"one between ticks goes to one", "110:1 500:2", "", 110, 111, kNone, "100:1 500:2", 1},
        Row{"Shift takes all between along", "100:1 200:2 300:3 600:4", "x100", 300, 400, kShift,
            "200:1 300:2 400:3 600:4", 1},
        Row{"Control takes it along, up to the one between", "100:1 200:2 300:3 600:4", "x100", 300,
            400, kControl, "175:1 200:2 375:3 600:4", 1},
        Row{"a copy", "100:1 500:2(easeIn)", "", 500, 700, kAlt, "100:1 500:2(easeIn) 700:2", 1},
        Row{"an instant copy", "100:1 500:2!", "", 500, 700, kAlt, "100:1 500:2! 700:2!", 1},
        Row{"a copy crosses others", "100:1 200:2 300:3", "", 300, 150, kAlt,
            "100:1 150:3 200:2 300:3", 1},
        Row{"a copy onto another", "100:1 200:2 300:3", "", 300, 200, kAlt,
            "100:1 200:2 200:3 300:3", 1},
        Row{"a copy on its own tick", "100:1 200:2", "", 200, 205, kAlt, "100:1 200:2", 0},
        Row{"copies of all", "100:1 200:2 300:3", "x100 x200", 100, 500, kAlt,
            "100:1 200:2 300:3 500:1 600:2", 1},
        Row{"copies stop at 0", "100:1 200:2 300:3", "x100 x200", 200, 0, kAlt,
            "0:1 100:1 100:2 200:2 300:3", 1},
        Row{"copies vanish each on its own", "110:1 200:2", "x110 x200", 200, 203, kAlt,
            "110:1 125:1 200:2", 1},
        Row{"of Key All stays, and a copy moves", "100:1 200:2k", "", 200, 400, kNone,
            "100:1 200:2k 400:2", 1},
        Row{"stretched by the last", "100:1 150:2 200:3", "x100 x150 x200", 200, 301, kAlt | kShift,
            "100:1 200:2 300:3", 1},
        Row{"stretched by the first", "100:1 150:2 200:3", "x100 x150 x200", 100, 12, kAlt | kShift,
            "0:1 100:2 200:3", 1},
        Row{"no shorter than a tick", "100:1 150:2 200:3", "x100 x150 x200", 200, 40, kAlt | kShift,
            "100:1 113:2 125:3", 1},
        Row{"stretched up to the one that stays", "100:1 150:2 200:3 300:4", "x100 x150 x200", 200,
            700, kAlt | kShift, "100:1 188:2 275:3 300:4", 1},
        Row{"stretched around one that stays", "100:1 200:2 300:3", "x100 x300", 300, 120,
            kAlt | kShift, "100:1 200:2 225:3", 1},
        Row{"one in the middle is copied", "100:1 150:2 200:3", "x100 x150 x200", 150, 650,
            kAlt | kShift, "100:1 150:2 200:3 600:1 650:2 700:3", 1},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        Scene scene(row.keys, "0:0");
        scene.selectKeys(row.selected);
        const std::string before = scene.allKeys();
        scene.dragFromTo(row.from, row.to, Scene::kX, row.modifiers);
        EXPECT_EQ(scene.keys(Scene::kX), row.expected);
        ASSERT_EQ(scene.stepsOfUndo(), row.steps);
        const std::string selected = scene.selectedKeys();
        if (row.steps == 1) {
            EXPECT_EQ(scene.playhead() % 25, 0);
            EXPECT_NE(scene.project->undoManager().undoActionName(), u"");
            scene.project->undo();
            EXPECT_EQ(scene.allKeys(), before);
            scene.project->redo();
            EXPECT_EQ(scene.keys(Scene::kX), row.expected);
            EXPECT_EQ(scene.selectedKeys(), selected);
        }
    }
}

TEST(TimelineDrags, KeyframesOfAllRowsMoveAndTheNearestNeighbourStopsThem) {
    Scene scene("100:1 500:2", "150:1 250:2");
    scene.selectKeys("x100 y150 o300");
    scene.dragFromTo(300, 700, Scene::kOpacity);
    EXPECT_EQ(scene.allKeys(), "\n175:1 500:2\n225:1 250:2\n375:0.5");
    EXPECT_EQ(scene.selectedKeys(), "o375 x175 y225");
    EXPECT_EQ(scene.project->undoManager().undoActionName(), u"Move Keyframes");
    scene.dragFromTo(375, 475, Scene::kOpacity, kAlt);
    EXPECT_EQ(scene.allKeys(), "\n175:1 275:1 500:2\n225:1 250:2 325:1\n375:0.5 475:0.5");
    EXPECT_EQ(scene.selectedKeys(), "o475 x275 y325");
    EXPECT_EQ(scene.stepsOfUndo(), 2);
}

TEST(TimelineDrags, OptionCountsFromTheFirstDragOn) {
    Scene scene("100:1 600:2", "0:0");
    scene.press(100, Scene::kX);
    scene.drag(200, Scene::kX, kAlt);
    scene.drag(300, Scene::kX);
    scene.release(300, Scene::kX);
    EXPECT_EQ(scene.keys(Scene::kX), "100:1 300:1 600:2");
    scene.press(300, Scene::kX, kAlt);
    scene.drag(400, Scene::kX);
    scene.release(400, Scene::kX, kAlt);
    EXPECT_EQ(scene.keys(Scene::kX), "100:1 400:1 600:2");
    EXPECT_EQ(scene.selectedKeys(), "x400");
}

TEST(TimelineDrags, MasterKeyframesKeepTheValuesThatTheyHadBesideADraggedKeyframe) {
    struct Row {
        const char* what;
        const char* keys;
        double to;
        const char* expected;
    };
    const std::array rows{
        Row{"ahead", "0:0 100:1", 150, "0:0 150:1 300:1k"},
        Row{"past it", "0:0 100:1", 400, "0:0 300:1k 400:1 600:1k"},
        Row{"an instant one", "0:0 400:1!", 500, "0:0 500:1! 600:1k"},
        Row{"onto it", "0:0 100:1", 300, "0:0 300:1 300:1k 600:1k"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        Scene scene(row.keys, "0:0");
        scene.addMasterKeyframe(300);
        scene.addMasterKeyframe(600);
        const double from = scene.timeline(Scene::kX).timeOfKeyframe(1);
        const std::string before = scene.allKeys();
        scene.dragFromTo(from, row.to, Scene::kX);
        EXPECT_EQ(scene.keys(Scene::kX), row.expected);
        EXPECT_EQ(scene.stepsOfUndo(), 1);
        scene.project->undo();
        EXPECT_EQ(scene.allKeys(), before);
    }
}

TEST(TimelineDrags, EscapeAndALostRelease) {
    struct Row {
        const char* what;
        double from, to;
        int row;
        Qt::KeyboardModifiers modifiers;
    };
    const std::array rows{
        Row{"playhead", 400, 600, -1, kNone},
        Row{"keyframe", 300, 400, Scene::kX, kNone},
        Row{"group", 200, 250, Scene::kX, kNone},
        Row{"copies", 200, 600, Scene::kX, kAlt},
        Row{"stretch", 200, 50, Scene::kX, kAlt | kShift},
        Row{"marquee", 700, 100, Scene::kBlank, kNone},
        Row{"beside the tracks", 500, 900, Scene::kX, kNone},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        Scene scene;
        scene.addMasterKeyframe(700);
        scene.selectKeys("x100 x200 y150");
        scene.keyframes.selectTween(scene.key(Scene::kX, 500));
        scene.time.setPlayheadPositionInMS(70);
        const std::string keys = scene.allKeys();
        scene.press(row.from, row.row, row.modifiers);
        scene.drag(row.to, row.row < 0 ? row.row : int{Scene::kX}, row.modifiers);
        scene.tick(5);
        EXPECT_NE(scene.playhead(), 70);
        EXPECT_TRUE(scene.controller.cancelPress());
        EXPECT_EQ(scene.allKeys(), keys);
        EXPECT_EQ(scene.selectedKeys(), "x100 x200 y150");
        EXPECT_EQ(scene.selectedTweens(), "x500");
        EXPECT_EQ(scene.playhead(), 70);
        EXPECT_EQ(scene.viewport.scrollOrigin(), QPointF());
        EXPECT_EQ(scene.stepsOfUndo(), 0);
        EXPECT_EQ(scene.interaction.marquee(), std::nullopt);

        scene.press(row.from, row.row, row.modifiers);
        scene.drag(row.to, row.row < 0 ? row.row : int{Scene::kX}, row.modifiers);
        scene.controller.focusLost();
        EXPECT_FALSE(scene.interaction.isPressed());
        EXPECT_EQ(scene.playhead() % 25, 0);
        const std::string after = scene.allKeys();
        scene.drag(300, Scene::kX);
        scene.release(300, Scene::kX);
        EXPECT_EQ(scene.allKeys(), after);
    }
}

TEST(TimelineDrags, ThePlayheadGoesWithThePointerAndTheTracksWithIt) {
    Scene scene;
    scene.press(400, -1);
    EXPECT_EQ(scene.playhead(), 400);
    scene.drag(512, -1);
    EXPECT_EQ(scene.playhead(), 511);
    EXPECT_EQ(scene.project->preferences().timelinePlayheadPosition(), 0);
    scene.drag(820, 3);
    EXPECT_EQ(scene.playhead(), 511);
    scene.tick();  // 20 points beyond: 2,000 a second
    EXPECT_EQ(scene.viewport.scrollOrigin().x(), 20);
    EXPECT_EQ(scene.playhead(), 819);
    scene.tick(10);
    EXPECT_EQ(scene.playhead(), 1019);
    scene.drag(-50, 3);
    scene.tick(3);
    EXPECT_EQ(scene.viewport.scrollOrigin().x(), 70);
    EXPECT_EQ(scene.playhead(), 70);
    scene.tick(3);
    EXPECT_EQ(scene.playhead(), 0);
    EXPECT_FALSE(scene.interaction.marquee());
    scene.drag(413, -1);
    scene.release(413, -1);
    EXPECT_EQ(scene.playhead(), 400);
    EXPECT_EQ(scene.project->preferences().timelinePlayheadPosition(), 400);
}

TEST(TimelineDrags, BesideTheTracksKeyframesGoOnAsFarAsTheyMay) {
    Scene scene("100:1 700:2", "0:0");
    scene.press(700, Scene::kX);
    scene.drag(810, Scene::kX);
    EXPECT_TRUE(scene.interaction.wantsTicks());
    EXPECT_EQ(scene.key(Scene::kX, 700)->index(), 1U);  // until it ticks
    scene.tick(4);
    EXPECT_EQ(scene.viewport.scrollOrigin().x(), 40);
    EXPECT_EQ(scene.interaction.feedback(), u"0.84");
    scene.drag(-30, Scene::kX);
    scene.tick(5);
    EXPECT_EQ(scene.viewport.scrollOrigin().x(), 0);
    scene.release(-30, Scene::kX);
    EXPECT_EQ(scene.keys(Scene::kX), "100:1 125:2");

    Scene stopped("100:1 700:2", "820:0");
    stopped.selectKeys("x700");
    stopped.setKeys(PCPropertyTypeTranslationX, "100:1 700:2 760:3");
    stopped.press(700, Scene::kX);
    stopped.drag(900, Scene::kX);
    stopped.tick(10);
    EXPECT_EQ(stopped.viewport.scrollOrigin().x(), 0);  // nowhere to go
    stopped.release(900, Scene::kX);
}

TEST(TimelineDrags, TheMarqueeSelectsWhatItTouches) {
    Scene scene;
    scene.selectKeys("o300");
    scene.keyframes.selectTween(scene.key(Scene::kX, 500));
    scene.press(189, 1);
    scene.drag(188, 2);
    EXPECT_EQ(scene.selectedTweens(), "");
    EXPECT_EQ(scene.selectedKeys(), "");
    scene.drag(190, 2);
    EXPECT_EQ(scene.selectedKeys(), "x200");
    scene.drag(290, 3);
    EXPECT_EQ(scene.selectedKeys(), "x200 x300 y250");
    EXPECT_EQ(scene.interaction.marquee(), QRectF(QPointF(189, 84), QPointF(290, 140)));
    EXPECT_EQ(scene.playhead(), 290);
    scene.drag(289, 2);
    EXPECT_EQ(scene.selectedKeys(), "x200");
    scene.drag(131, -3);
    EXPECT_EQ(scene.selectedKeys(), "");
    scene.drag(131, 9);
    EXPECT_EQ(scene.selectedKeys(), "y150");
    scene.release(131, 9);
    EXPECT_EQ(scene.selectedKeys(), "y150");
    EXPECT_EQ(scene.playhead(), 125);
    EXPECT_EQ(scene.stepsOfUndo(), 0);
}

TEST(TimelineDrags, AtTheEdgesTheMarqueeScrolls) {
    Scene scene("100:1 2000:2", "1500:0");
    scene.viewport.setSize({800, 42 + 28 * 3 + 15});
    scene.press(700, 1);
    scene.drag(900, 9);
    scene.tick(6);  // 1,000 points a second both ways, as far as there are rows
    EXPECT_EQ(scene.viewport.scrollOrigin(), QPointF(60, 60));
    scene.tick(70);
    EXPECT_EQ(scene.viewport.scrollOrigin(), QPointF(760, 84));
    EXPECT_EQ(scene.selectedKeys(), "y1500");
    EXPECT_EQ(scene.interaction.marquee()->left(), -60);
    scene.drag(-10, -2);
    scene.tick(100);
    EXPECT_EQ(scene.viewport.scrollOrigin(), QPointF(0, 0));
    EXPECT_EQ(scene.playhead(), 0);
    scene.drag(400, 1);
    EXPECT_FALSE(scene.interaction.wantsTicks());
}

/// Presses anywhere, with any modifiers, drags and ticks, some of them cancelled.
class GestureWalk {
 public:
    GestureWalk(Scene& scene, uint32_t seed) : m_scene(scene), m_random(seed) {}
    void press() {
        const std::string before = m_scene.allKeys();
        const std::string selected = m_scene.selectedKeys();
        const std::array modifiers{kNone, kNone, kNone, kShift, kControl, kAlt, kAlt | kShift};
        const Qt::KeyboardModifiers held = modifiers[below(modifiers.size())];
        m_scene.press(place(), static_cast<int>(below(7)) - 1, held);
        for (size_t drags = below(5); drags > 0; --drags) {
            m_scene.drag(place(), static_cast<int>(below(9)) - 2, held);
            m_scene.tick(static_cast<int>(below(4)));
        }
        if (below(4) == 0) {
            m_scene.interaction.cancel();
            EXPECT_EQ(m_scene.allKeys(), before);
            EXPECT_EQ(m_scene.selectedKeys(), selected);
        } else {
            m_scene.release(place(), 2, held);
        }
        m_scene.interaction.closeEasingPopover();
    }

 private:
    Scene& m_scene;
    std::mt19937 m_random;
    size_t below(size_t count) {
        return std::uniform_int_distribution<size_t>(0, count - 1)(m_random);
    }
    double place() { return static_cast<double>(below(1000)) - 100; }
};

TEST(TimelineDrags, AnyRunOfGesturesIsUndoneAndRedone) {
    for (uint32_t seed = 0; seed < 20 && !HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        Scene scene("100:1 200:2 300:3 500:4", "150:1k 250:1 400:5");
        scene.addMasterKeyframe(350);
        GestureWalk walk(scene, seed);
        UndoWalk undo(*scene.project, [&scene] { return scene.allKeys(); });
        for (int i = 0; i < 60; ++i) {
            const int64_t count = scene.project->undoManager().changeCount();
            const std::string before = scene.allKeys();
            undo.edit([&walk] { walk.press(); });
            if (scene.project->undoManager().changeCount() == count) {
                EXPECT_EQ(scene.allKeys(), before);
            }
            for (const auto& timeline : TimelineOutline::timelinesForElement(*scene.kite)) {
                const auto* const times = timeline->packedKeyframes().times;
                EXPECT_TRUE(std::is_sorted(times, times + timeline->keyframesCount()));
                EXPECT_GE(times[0], 0);
            }
        }
        undo.check();
    }
}

}  // namespace
}  // namespace tweenery::test
