#include <gtest/gtest.h>

#include "model/app_preferences.h"
#include "model/easing.h"
#include "platform/errors.h"
#include "platform/user_defaults.h"
#include "support/model_builder.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

using Keyframe = PCKeyedPropertyTimeline::KeyframePtr;

/// An element of a project, with its x translation, which stores what is written.
class KeyframeEdits : public testing::Test {
 protected:
    void SetUp() override { UserDefaults::useMemory(); }

    PCProject::Ptr project = PCProject::init();
    PCElement::Ptr element = addElement(project->canvas(), u"ball"_s);
    PCKeyedPropertyTimeline::Ptr timeline =
        PCKeyedPropertyTimeline::initForElement(element, PCPropertyTypeTranslationX);

    Keyframe at(int32_t time) { return timeline->existingKeyframeAtTimeInMS(time); }
    void key(const std::vector<int32_t>& times) {
        for (const int32_t time : times) {
            timeline->setFloatPropertyValue(static_cast<float>(time), time);
        }
    }
    std::string state() const {
        return keysText(*timeline) + " " +
               stringFromRepeatBehavior(timeline->repeatBehavior()).toStdString();
    }
};

struct Listener : PCKeyedPropertyTimelineChangeListener {
    int calls = 0;
    void keyedPropertyTimelineDidChange(PCKeyedPropertyTimeline&) override { ++calls; }
};

TEST_F(KeyframeEdits, HandlesKeepTheirKeyframe) {
    key({100, 200, 300});
    const Keyframe first = at(100), middle = at(200), last = at(300);
    const auto check = [&](const char* what, int32_t one, int32_t two, int32_t three) {
        SCOPED_TRACE(what);
        EXPECT_EQ(first->timeInMS(), one);
        EXPECT_EQ(middle->timeInMS(), two);
        EXPECT_EQ(last->timeInMS(), three);
        EXPECT_EQ(first->floatPropertyValue(), 100);
        EXPECT_EQ(middle->floatPropertyValue(), 200);
        EXPECT_EQ(last->floatPropertyValue(), 300);
        for (const Keyframe& handle : {first, middle, last}) {
            if (!handle->isInTimeline()) continue;
            EXPECT_EQ(at(handle->timeInMS()), handle);
            EXPECT_EQ(timeline->existingKeyframeAtKeyframeIndex(handle->index()), handle);
        }
    };
    key({0, 150});
    check("inserted before and between", 100, 200, 300);
    timeline->deleteKeyframe(at(0));
    timeline->deleteKeyframe(at(150));
    check("deleted again", 100, 200, 300);
    timeline->moveKeyframeAtTimeInMS(100, 250);
    check("moved past another", 250, 200, 300);
    EXPECT_EQ(first->index(), 1U);
    first->setTimeInMS(400);
    EXPECT_FALSE(timeline->validateTimeForKeyframesAreSorted());
    timeline->updateKeyframeSort();
    check("sorted after a change of time", 400, 200, 300);
    EXPECT_EQ(state(), "200:200 300:300 400:100 never");

    const QString identifier = middle->identifier().toString();
    timeline->deleteKeyframe(middle);
    check("deleted", 400, 200, 300);
    EXPECT_FALSE(middle->isInTimeline());
    EXPECT_THROW(static_cast<void>(middle->index()), AssertionFailure);
    EXPECT_EQ(middle->identifier().toString(), identifier);
    timeline->deleteKeyframe(middle);
    middle->setEasingMode(PCEasingModeEaseIn);
    EXPECT_EQ(state(), "300:300 400:100 never");

    timeline->setKeyframes({middle, last});
    check("a new list", 400, 200, 300);
    EXPECT_FALSE(first->isInTimeline());
    EXPECT_EQ(state(), "200:200(easeIn) 300:300 never");
    timeline->removeAllKeyframes();
    check("emptied", 400, 200, 300);
    EXPECT_TRUE(timeline->isEmpty());
}

TEST_F(KeyframeEdits, HandlesAndTimelinesOutliveEachOther) {
    key({100, 200});
    at(100);  // a handle that goes at once
    key({50});
    Keyframe kept = at(200);
    EXPECT_EQ(kept->timeline(), timeline);
    std::weak_ptr<PCKeyedPropertyTimeline> gone = timeline;
    timeline.reset();
    project->undoManager().removeAllActions();
    ASSERT_TRUE(gone.expired());
    EXPECT_EQ(kept->timeline(), nullptr);
    EXPECT_EQ(kept->nextKeyframe(), nullptr);
    EXPECT_EQ(kept->floatPropertyValue(), 200);
    kept->setFloatPropertyValue(3);
    kept->setEasingMode(PCEasingModeEaseIn);
    EXPECT_EQ(kept->description(), u"<200(easeIn)|3>"_s);
}

TEST_F(KeyframeEdits, WalkBackAndForth) {
    UndoWalk walk(*project, [this] { return state(); });
    walk.edit([&] { timeline->setFloatPropertyValue(1, 100); });
    walk.edit([&] { timeline->setFloatPropertyValue(2, 100); });
    walk.edit([&] { timeline->setFloatPropertyValue(3, 0); });
    walk.edit([&] { at(100)->setEasingMode(PCEasingModeEaseOut); });
    walk.edit([&] { at(0)->setInstantTransition(true); });
    walk.edit([&] { timeline->moveKeyframeAtTimeInMS(100, 300); });
    walk.edit([&] { timeline->moveKeyframeAtTimeInMS(290, 50); });  // the closest, which is at 300
    walk.edit([&] { timeline->duplicateKeyframe(at(50)); });
    walk.edit([&] { timeline->setExistingValueAtTimeInMS(25); });
    walk.check();
}

// A keyframe that comes back is a new one: its value and its time are what is restored.
TEST_F(KeyframeEdits, UndoOfADeletionRestoresValueAndTime) {
    UndoManager& undo = project->undoManager();
    key({100, 200});
    at(200)->setEasingMode(PCEasingModeEaseIn);
    const QString identifier = at(200)->identifier().toString();
    undo.endEvent();
    timeline->deleteKeyframe(at(200));
    undo.undo();
    EXPECT_EQ(state(), "100:100 200:200 never");
    EXPECT_NE(at(200)->identifier().toString(), identifier);
    undo.redo();
    EXPECT_EQ(state(), "100:100 never");
}

TEST_F(KeyframeEdits, NewKeyframesFollowThePreferences) {
    struct Case {
        bool tweenOn;
        int64_t defaultEasing;
        const char* keys;
    };
    for (const Case& c :
         {Case{true, PCEasingModeLinear, "5:1"},
          Case{true, PCEasingModeOvershoot, "5:1(overshoot)"}, Case{true, -1, "5:1!"},
          Case{false, PCEasingModeEaseIn, "5:1!(easeIn)"}, Case{false, -1, "5:1!"}}) {
        timeline->removeAllKeyframes();
        PCAppPreferences::setTweenOn(c.tweenOn);
        project->preferences().setDefaultEasingMode(c.defaultEasing);
        timeline->setFloatPropertyValue(1, 5);
        EXPECT_EQ(keysText(*timeline), c.keys);
        // What stands there keeps its own.
        at(5)->setEasingMode(PCEasingModeAnticOver);
        at(5)->setInstantTransition(false);
        timeline->setFloatPropertyValue(2, 5);
        EXPECT_EQ(keysText(*timeline), "5:2(anticOver)");
    }
}

TEST_F(KeyframeEdits, DuplicatesTakeTheInstantFlagOnly) {
    key({100});
    at(100)->setInstantTransition(true);
    at(100)->setEasingMode(PCEasingModeEaseIn);
    at(100)->setKeyall(true);
    const Keyframe copy = timeline->duplicateKeyframe(at(100));
    EXPECT_EQ(keysText(*timeline), "100:100!(easeIn)k 101:100!");
    EXPECT_NE(copy->identifier(), at(100)->identifier());
    key({INT32_MAX});
    EXPECT_EQ(timeline->duplicateKeyframe(at(INT32_MAX)), nullptr);
}

TEST_F(KeyframeEdits, ALoopNeedsSomethingToLoopOver) {
    struct Case {
        std::vector<int32_t> keys;
        int64_t after;
    };
    for (const Case& c :
         {Case{{0, 500}, 0}, Case{{100, 500}, 1}, Case{{500}, 0}, Case{{0, 100, 500}, 1}}) {
        timeline->removeAllKeyframes();
        key(c.keys);
        timeline->setRepeatBehavior(PCRepeatBehaviorForever);
        timeline->deleteKeyframe(at(500));
        EXPECT_EQ(timeline->repeatBehavior(), c.after) << keysText(*timeline);
    }
}

TEST_F(KeyframeEdits, ReportTheirChanges) {
    Listener listener;
    timeline->setChangeListener(&listener);
    const auto reported = [&](const char* what, const std::function<void()>& change) {
        listener.calls = 0;
        timeline->setHasUnsavedChanges(false);
        change();
        EXPECT_GT(listener.calls, 0) << what;
        EXPECT_TRUE(timeline->hasUnsavedChanges()) << what;
    };
    reported("a value", [&] { key({100, 200}); });
    reported("its easing", [&] { at(100)->setEasingMode(1); });
    reported("its flag", [&] { at(100)->setInstantTransition(false); });
    reported("its time", [&] { at(100)->setTimeInMS(50); });
    reported("its value", [&] { at(50)->setFloatPropertyValue(4); });
    reported("a move", [&] { timeline->moveKeyframeAtTimeInMS(50, 60); });
    reported("a copy", [&] { timeline->duplicateKeyframe(at(60)); });
    reported("a deletion", [&] { timeline->deleteKeyframe(at(61)); });
    reported("the loop", [&] { timeline->setRepeatBehavior(1); });
    reported("the end", [&] { timeline->removeAllKeyframes(); });

    listener.calls = 0;
    timeline->setHasUnsavedChanges(false);
    const auto silent = timeline->retrieveOrCreateKeyframeAtTimeInMS(10);
    silent->setTimeInMS(20);  // it has no value yet
    silent->setPropertyValue(1.0F);
    silent->setKeyall(true);
    silent->setLiveRecordedStart(true);
    EXPECT_EQ(listener.calls, 0);
    timeline->setHasUnsavedChanges(false);
    timeline->setKeyframes({silent});
    EXPECT_EQ(listener.calls, 1);
    EXPECT_FALSE(timeline->hasUnsavedChanges());
    timeline->setChangeListener(nullptr);
}

TEST_F(KeyframeEdits, RegisterStepsByTheElement) {
    UndoManager& undo = project->undoManager();
    key({100});
    undo.removeAllActions();
    at(100)->setEasingMode(PCEasingModeLinear);
    EXPECT_TRUE(undo.canUndo()) << "an equal easing is a step too";

    const PCAnimation::Ptr animation = selectNewAnimation(*project, u"Bounce"_s);
    undo.removeAllActions();
    const Keyframe master = animation->masterKeyframesTimeline()->setFloatPropertyValue(0, 100);
    undo.removeAllActions();
    master->setEasingMode(PCEasingModeEaseIn);
    EXPECT_FALSE(undo.canUndo()) << "the master keyframes have no element";
}

TEST_F(KeyframeEdits, CompareByTheirKind) {
    const auto make = [this](int32_t type, const PropertyValue& value) {
        const auto made = PCKeyedPropertyTimeline::initForElement(element, type);
        return std::pair(made, made->setStoredPropertyValue(value, 0));
    };
    struct Case {
        int32_t typeA;
        PropertyValue a;
        int32_t typeB;
        PropertyValue b;
        bool equal;
    };
    const std::vector<Case> cases = {
        {6, 1.5F, 6, 1.5F, true},
        {6, 1.5F, 6, std::nextafter(1.5F, 2.0F), false},
        {6, 1.5F, 7, 1.5F, false},
        {4, QPointF(1, 2), 4, QPointF(1, 2), true},
        {4, QPointF(1, 2), 4, QPointF(1, 2 + 1e-14), false},
        {3, QStringList{u"a"_s, u"b"_s}, 3, QStringList{u"a"_s, u"b"_s}, true},
        {3, QStringList{u"a"_s, u"b"_s}, 3, QStringList{u"b"_s, u"a"_s}, false},
        {0, u"a.png"_s, 0, u"a.png"_s, true},
        {0, u"a.png"_s, 0, u"A.png"_s, false},
        {10, 1.0F, 10, 1.0F, false},
    };
    for (const Case& c : cases) {
        const auto [timelineA, a] = make(c.typeA, c.a);
        const auto [timelineB, b] = make(c.typeB, c.b);
        EXPECT_EQ(a->valueIsEqualToKeyframeValue(*b), c.equal)
            << keysText(*timelineA) << " and " << keysText(*timelineB);
    }
}

}  // namespace
}  // namespace tweenery::test
