#include <gtest/gtest.h>

#include "base/errors.h"
#include "base/user_defaults.h"
#include "model/preferences/app_preferences.h"
#include "model/properties/easing.h"
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
        const std::array<std::pair<Keyframe, int32_t>, 3> rows{
            {{first, one}, {middle, two}, {last, three}}};
        for (size_t i = 0; i < rows.size(); ++i) {
            const auto& [handle, time] = rows[i];
            EXPECT_EQ(handle->timeInMS(), time) << what;
            EXPECT_EQ(handle->floatPropertyValue(), 100.0F * static_cast<float>(i + 1)) << what;
            EXPECT_EQ(at(time), handle->isInTimeline() ? handle : nullptr) << what;
        }
    };
    key({0, 150});
    check("inserted before and between", 100, 200, 300);
    timeline->deleteKeyframe(at(0));
    timeline->deleteKeyframe(at(150));
    check("deleted again", 100, 200, 300);
    timeline->moveKeyframeAtTimeInMS(100, 250);
    check("moved past another", 250, 200, 300);
    first->setTimeInMS(400);
    EXPECT_FALSE(timeline->validateTimeForKeyframesAreSorted());
    timeline->updateKeyframeSort();
    check("sorted after a change of time", 400, 200, 300);
    EXPECT_EQ(first->index(), 2U);

    const QString identifier = middle->identifier().toString();
    timeline->deleteKeyframe(middle);
    timeline->deleteKeyframe(middle);
    check("deleted", 400, 200, 300);
    EXPECT_THROW(static_cast<void>(middle->index()), AssertionFailure);
    EXPECT_EQ(middle->identifier().toString(), identifier);
    middle->setEasingMode(PCEasingModeEaseIn);
    EXPECT_EQ(state(), "300:300 400:100 never");
    timeline->setKeyframes({middle, last});
    check("a new list", 400, 200, 300);
    EXPECT_FALSE(first->isInTimeline());
    EXPECT_EQ(state(), "200:200(easeIn) 300:300 never");
    timeline->removeAllKeyframes();
    check("emptied", 400, 200, 300);
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

TEST_F(KeyframeEdits, OfOneMillisecondStayThemselves) {
    key({0, 100, 101, 300});
    UndoWalk walk(*project, [this] { return state(); });
    const Keyframe neighbour = at(101);
    Keyframe copy;
    walk.edit([&] { copy = timeline->duplicateKeyframe(at(100)); });
    EXPECT_EQ(state(), "0:0 100:100 101:100 101:101 300:300 never") << "nothing is overwritten";
    EXPECT_EQ(at(101), neighbour) << "the one that showed there still does";
    walk.edit([&] { timeline->moveKeyframes({copy}, 99); });  // past its neighbour
    EXPECT_EQ(copy->timeInMS(), 200);
    EXPECT_EQ(neighbour->timeInMS(), 101);
    walk.edit([&] { timeline->moveKeyframes({copy}, 100); });
    EXPECT_EQ(state(), "0:0 100:100 101:101 300:100 300:300 never");
    EXPECT_EQ(timeline->floatValueAtTimeInMS(300), 300);
    EXPECT_LT(timeline->floatValueAtTimeInMS(299), 101) << "leads to the first of the two";
    walk.edit([&] { timeline->setFloatPropertyValue(7, 300); });
    EXPECT_EQ(state(), "0:0 100:100 101:101 300:100 300:7 never");
    walk.edit([&] { timeline->moveKeyframes({copy, at(300), neighbour}, -50); });
    walk.edit([&] { timeline->moveKeyframes({copy}, 10); });
    EXPECT_EQ(state(), "0:0 51:101 100:100 250:7 260:100 never") << "one of the two goes alone";
    walk.edit([&] { timeline->moveKeyframes({copy}, -10); });
    walk.edit([&] { timeline->deleteKeyframe(at(250)); });
    EXPECT_FALSE(copy->isInTimeline()) << "it had come to stand behind the other";
    walk.check();
    EXPECT_EQ(state(), "0:0 100:100 101:101 300:300 never");
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

    timeline->setFloatPropertyValue(5, 0);
    timeline->setRepeatBehavior(PCRepeatBehaviorForever);
    undo.endEvent();
    timeline->deleteKeyframe(at(100));
    EXPECT_EQ(state(), "0:5 never");
    for (int i = 0; i < 2; ++i) {
        undo.undo();
        EXPECT_EQ(state(), "0:5 100:100 forever");
        undo.redo();
        EXPECT_EQ(state(), "0:5 never");
    }
}

TEST_F(KeyframeEdits, NewKeyframesFollowThePreferences) {
    struct Case {
        bool tweenOn;
        PCEasingMode defaultEasing;
        const char* keys;
    };
    for (const Case& c :
         {Case{true, PCEasingModeLinear, "5:1"},
          Case{true, PCEasingModeOvershoot, "5:1(overshoot)"},
          Case{true, easingModeInstant, "5:1!"}, Case{false, PCEasingModeEaseIn, "5:1!(easeIn)"},
          Case{false, easingModeInstant, "5:1!"}}) {
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

TEST_F(KeyframeEdits, ManyDuplicatesAreAsSingleOnes) {
    key({100, 101, 200, INT32_MAX});
    at(100)->setInstantTransition(true);
    const auto pairs = timeline->duplicateKeyframes({at(200), at(100), at(INT32_MAX)});
    ASSERT_EQ(pairs.size(), 2U);
    EXPECT_EQ(pairs[1].first, at(100));
    EXPECT_EQ(pairs[1].second->timeInMS(), 101);
    EXPECT_EQ(pairs[1].second->index(), 1U);  // before the one that was there
    EXPECT_TRUE(pairs[1].second->instantTransition());
    EXPECT_EQ(pairs[0].second, at(201));
    EXPECT_EQ(timeline->keyframesCount(), 6U);
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
    Subscription subscription = timeline->addChangeListener(&listener);
    const std::vector<std::function<void()>> edits = {
        [&] { timeline->setFloatPropertyValue(1, 100); },
        [&] { at(100)->setEasingMode(PCEasingModeEaseIn); },
        [&] { at(100)->setInstantTransition(false); },
        [&] { at(100)->setTimeInMS(50); },
        [&] { at(50)->setFloatPropertyValue(4); },
        [&] { timeline->moveKeyframeAtTimeInMS(50, 60); },
        [&] { timeline->duplicateKeyframe(at(60)); },
        [&] { timeline->deleteKeyframe(at(61)); },
        [&] { timeline->setRepeatBehavior(PCRepeatBehaviorForever); },
        [&] { timeline->removeAllKeyframes(); },
    };
    for (size_t i = 0; i < edits.size(); ++i) {
        listener.calls = 0;
        timeline->setHasUnsavedChanges(false);
        edits[i]();
        EXPECT_GT(listener.calls, 0) << i;
        EXPECT_TRUE(timeline->hasUnsavedChanges()) << i;
    }

    listener.calls = 0;
    timeline->setHasUnsavedChanges(false);
    const auto silent = timeline->retrieveOrCreateKeyframeAtTimeInMS(10);
    silent->setTimeInMS(20);  // it has no value yet
    silent->setPropertyValue(1.0F);
    timeline->setHasUnsavedChanges(false);
    silent->setKeyall(true);
    EXPECT_TRUE(timeline->hasUnsavedChanges()) << "or the mark would be lost";
    silent->setLiveRecordedStart(true);
    EXPECT_EQ(listener.calls, 0);
    timeline->setHasUnsavedChanges(false);
    timeline->setKeyframes({silent});
    EXPECT_EQ(listener.calls, 1);
    EXPECT_FALSE(timeline->hasUnsavedChanges());
    subscription.end();
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

TEST_F(KeyframeEdits, CompareWithinTheirProperty) {
    const auto equal = [this](int a, const PropertyValue& x, int b, const PropertyValue& y) {
        const auto one = PCKeyedPropertyTimeline::initForElement(element, PCPropertyType{a});
        const auto two = PCKeyedPropertyTimeline::initForElement(element, PCPropertyType{b});
        return one->setStoredPropertyValue(x, 0)->valueIsEqualToKeyframeValue(
            *two->setStoredPropertyValue(y, 0));
    };
    EXPECT_TRUE(equal(6, 1.5F, 6, 1.5F));
    EXPECT_FALSE(equal(6, 1.5F, 7, 1.5F));
    EXPECT_FALSE(equal(6, 1.5F, 6, std::nextafter(1.5F, 2.0F)));
    EXPECT_FALSE(equal(4, QPointF(1, 2), 4, QPointF(1, 2 + 1e-14)));
    EXPECT_FALSE(equal(3, QStringList{u"a"_s, u"b"_s}, 3, QStringList{u"b"_s, u"a"_s}));
    EXPECT_FALSE(equal(10, 1.0F, 10, 1.0F));
}

}  // namespace
}  // namespace tweenery::test
