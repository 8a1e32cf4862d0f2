#include "editor/timeline/keyframe_manager.h"

#include <gmock/gmock.h>

#include "base/errors.h"
#include "support/model_builder.h"

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

namespace tweenery::test {
namespace {

/// Keyframes of two timelines, called x and y, with their times.
class KeyframeManagerTest : public testing::Test, public PCKeyframeManagerSelectionListener {
 protected:
    PCProject::Ptr project = PCProject::init();
    PCElement::Ptr element;
    PCKeyedPropertyTimeline::Ptr x;
    PCKeyedPropertyTimeline::Ptr y;
    std::unique_ptr<PCKeyframeManager> manager;
    std::vector<std::string> told;
    Subscription subscription;

    void SetUp() override {
        element = addElement(project->canvas(), u"hero"_s);
        selectNewAnimation(*project, u"walk"_s);
        x = attach(PCPropertyTypeTranslationX, "0:0 100:1 200:2 300:3 400:4");
        y = attach(PCPropertyTypeTranslationY, "0:0 150:1 250:2");
        manager = std::make_unique<PCKeyframeManager>(project);
        subscription = manager->addSelectionListener(this);
    }
    PCKeyedPropertyTimeline::Ptr attach(PCPropertyType type, const char* keys) {
        const auto timeline = timelineWithKeys(element, type, keys);
        element->setTimeline(timeline);
        return timeline;
    }
    std::string name(const Keyframe& keyframe) const {
        if (!keyframe) { return "null"; }
        return (keyframe->timeline() == x ? "x" : "y") + std::to_string(keyframe->timeInMS());
    }
    void select(const std::string& names) {
        for (const Keyframe& keyframe : keyframes(names)) {
            manager->selectKeyframe(keyframe);
        }
        told.clear();
    }
    PCKeyframeManager::KeyframeSet keyframes(const std::string& names) const {
        PCKeyframeManager::KeyframeSet found;
        for (const QString& text : QString::fromStdString(names).split(u' ', Qt::SkipEmptyParts)) {
            found.insert(keyframe(text.toStdString()));
        }
        return found;
    }
    Keyframe keyframe(const std::string& text) const {
        const int32_t time = std::stoi(text.substr(1));
        return (text[0] == 'x' ? x : y)->existingKeyframeAtTimeInMS(time);
    }
    std::vector<std::string> selection() const { return names(manager->selectedKeyframes()); }
    std::vector<std::string> names(const PCKeyframeManager::KeyframeSet& set) const {
        std::vector<std::string> all;
        for (const Keyframe& keyframe : set) {
            all.push_back(name(keyframe));
        }
        return all;
    }
    std::vector<std::string> takeTold() { return std::exchange(told, {}); }

    void keyframeSelectionManagerDidSelectKeyframe(PCKeyframeManager&,
                                                   const Keyframe& keyframe) override {
        told.push_back("+" + name(keyframe));
    }
    void keyframeSelectionManagerDidDeselectKeyframe(PCKeyframeManager&,
                                                     const Keyframe& keyframe) override {
        told.push_back("-" + name(keyframe));
    }
    void keyframeManagerDidSelectTween(PCKeyframeManager&, const Keyframe& keyframe) override {
        told.push_back("+tween " + name(keyframe));
    }
    void keyframeManagerDidDeselectTween(PCKeyframeManager&, const Keyframe& keyframe) override {
        told.push_back("-tween " + name(keyframe));
    }
};

TEST_F(KeyframeManagerTest, SelectsKeyframesAndTweensIndependently) {
    const Keyframe k = keyframe("x100");
    manager->selectKeyframe(nullptr);
    manager->selectKeyframe(k);
    manager->selectKeyframe(k);
    EXPECT_THAT(takeTold(), ElementsAre("+x100"));
    EXPECT_FALSE(manager->tweenIsSelected(k));
    manager->selectTween(k);
    manager->selectTween(k);
    EXPECT_THAT(takeTold(), ElementsAre("+tween x100"));
    manager->deselectKeyframe(k);
    manager->deselectKeyframe(k);
    EXPECT_THAT(takeTold(), ElementsAre("-x100", "-x100")) << "told even when it was not selected";
    EXPECT_TRUE(manager->tweenIsSelected(k));
    manager->deselectAllTweens();
    manager->deselectTween(k);
    EXPECT_THAT(takeTold(), ElementsAre("-tween x100"));
}

TEST_F(KeyframeManagerTest, APressSelectsOneOrKeepsTheGroup) {
    select("x0 x100 y150");
    manager->selectTween(keyframe("x200"));
    manager->setSelectionToSingleKeyframe(keyframe("x100"));
    EXPECT_THAT(selection(), UnorderedElementsAre("x0", "x100", "y150"));
    EXPECT_THAT(takeTold(), ElementsAre("+tween x200", "-tween x200"));
    manager->setSelectionToSingleKeyframe(keyframe("x300"));
    EXPECT_THAT(selection(), ElementsAre("x300"));
    EXPECT_THAT(takeTold(), UnorderedElementsAre("-x0", "-x100", "-y150", "+x300"));
}

TEST_F(KeyframeManagerTest, AShiftPressFillsTheRun) {
    struct Case {
        const char* before;
        const char* pressed;
        std::vector<std::string> after;
    };
    const Case cases[] = {
        {"", "x200", {"x200"}},
        {"y0 y250", "x200", {"x200", "y0", "y250"}},
        {"x100", "x300", {"x100", "x200", "x300"}},
        {"x100 y0", "x0", {"x0", "x100", "y0"}},
        {"x0 x400", "x100", {"x0", "x100", "x200", "x300", "x400"}},
        {"x0 x400", "x400", {"x0", "x400"}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.before) + ", press on " + c.pressed);
        manager->deselectAllKeyframes();
        select(c.before);
        manager->selectTween(keyframe("y150"));
        manager->selectKeyframeByExtendingSelection(keyframe(c.pressed));
        EXPECT_THAT(selection(), testing::UnorderedElementsAreArray(c.after));
        EXPECT_THAT(manager->selectedTweens(), IsEmpty());
    }
}

TEST_F(KeyframeManagerTest, AMarqueeTellsOnlyWhatChanged) {
    select("x0 x100 y150");
    manager->selectKeyframes(keyframes("x100 y250"));
    EXPECT_THAT(selection(), UnorderedElementsAre("x100", "y250"));
    EXPECT_THAT(takeTold(), UnorderedElementsAre("-x0", "-y150", "+y250"));
    manager->selectKeyframes(manager->selectedKeyframes());
    EXPECT_THAT(takeTold(), IsEmpty());
}

TEST_F(KeyframeManagerTest, AWholeTimelineIsAddedInTheOrderOfTime) {
    select("x200 x300");
    manager->selectAllKeyframesForTimeline(*y);
    EXPECT_THAT(takeTold(), ElementsAre("+y0", "+y150", "+y250"));
    std::vector<std::string> sorted;
    for (const Keyframe& keyframe : manager->selectedKeyframesSortedByTimeInMS()) {
        sorted.push_back(name(keyframe));
    }
    EXPECT_THAT(sorted, ElementsAre("y0", "y150", "x200", "y250", "x300"));
}

TEST_F(KeyframeManagerTest, ShiftsEachKeyframeAndUndoes) {
    const auto state = [this] { return keysText(*x) + " | " + keysText(*y); };
    struct Case {
        const char* selected;
        int32_t delta;
        std::string after;
    };
    const Case cases[] = {
        // Into each other's places: each keyframe moves once.
        {"x0 x100 x200 x300 x400", 100, "100:0 200:1 300:2 400:3 500:4 | 0:0 150:1 250:2"},
        {"x100 x200 y150", -99, "0:0 1:1 101:2 300:3 400:4 | 0:0 51:1 250:2"},
        {"x100 y250", 150, "0:0 200:2 250:1 300:3 400:4 | 0:0 150:1 400:2"},
        {"x0", -10, "-10:0 100:1 200:2 300:3 400:4 | 0:0 150:1 250:2"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.selected) + " by " + std::to_string(c.delta));
        manager->deselectAllKeyframes();
        select(c.selected);
        UndoWalk walk(*project, state);
        const auto moved = selection();
        walk.edit([&] { manager->shiftSelectedKeyframesBy(c.delta); });
        EXPECT_EQ(state(), c.after);
        walk.check();
        EXPECT_THAT(selection(), testing::UnorderedElementsAreArray(moved))
            << "a keyframe stays itself";
    }
    select("x100");
    const int64_t steps = project->undoManager().changeCount();
    manager->shiftSelectedKeyframesBy(0);
    project->undoManager().endEvent();
    EXPECT_GT(project->undoManager().changeCount(), steps) << "a shift by nothing is a step too";
    EXPECT_THROW(manager->shiftSelectedKeyframesBy(INT32_MAX), AssertionFailure);
}

// A copy that is dragged over its neighbours, and two that meet, by many events of one gesture.
TEST_F(KeyframeManagerTest, AGestureMovesTheKeyframesThatItBeganWith) {
    const auto state = [this] { return keysText(*x) + " | " + keysText(*y); };
    const std::string before = state();
    const Keyframe copy = x->duplicateKeyframe(keyframe("x100"));
    select("x300 y150");
    manager->selectKeyframe(copy);
    UndoWalk walk(*project, state);
    for (const bool isCancelled : {true, false}) {
        const std::string atFirst = state();
        walk.edit([&] {
            UndoGesture gesture(project->undoManager());
            for (int i = 0; i < 120; ++i) {
                manager->shiftSelectedKeyframesBy(i < 99 ? 1 : i < 110 ? 20 : -11);
            }
            EXPECT_EQ(copy->timeInMS(), 310);
            EXPECT_EQ(state(), "0:0 100:1 200:2 310:1 400:4 509:3 | 0:0 250:2 359:1");
            if (isCancelled) { gesture.cancel(); }
        });
        if (isCancelled) { EXPECT_EQ(state(), atFirst); }
    }
    walk.check();
    EXPECT_EQ(copy->timeInMS(), 101) << "and they stay themselves through undo";
    EXPECT_TRUE(copy->isInTimeline());
    x->deleteKeyframe(copy);
    EXPECT_EQ(state(), before);
}

TEST_F(KeyframeManagerTest, ADeletedKeyframeStaysSelectedAndInPlace) {
    select("x100 x200");
    const Keyframe deleted = keyframe("x100");
    x->deleteKeyframe(deleted);
    EXPECT_TRUE(manager->keyframeIsSelected(deleted));
    manager->shiftSelectedKeyframesBy(50);
    EXPECT_EQ(keysText(*x), "0:0 250:2 300:3 400:4");
    EXPECT_EQ(deleted->timeInMS(), 100);
    manager->selectKeyframeByExtendingSelection(keyframe("x400"));
    EXPECT_THAT(selection(), UnorderedElementsAre("x100", "x250", "x300", "x400"));
}

TEST_F(KeyframeManagerTest, AnotherAnimationClearsBothSelections) {
    select("x100 y150");
    manager->selectTween(keyframe("x200"));
    told.clear();
    project->animationsManager().setSelectedAnimation(nullptr);
    EXPECT_THAT(selection(), IsEmpty());
    EXPECT_THAT(takeTold(), UnorderedElementsAre("-tween x200", "-x100", "-y150"));
    manager.reset();
    selectNewAnimation(*project, u"run"_s);  // nobody is told any more
}

// With a search or a sort for each keyframe these would take minutes.
TEST_F(KeyframeManagerTest, AHundredThousandKeyframesAreOrdinary) {
    constexpr int32_t kCount = 100000;
    PCKeyedPropertyTimeline::Keyframes many;
    KeyframeRecord record;
    record.value = 0.0F;
    for (; record.timeInMS < kCount; ++record.timeInMS) {
        many.push_back(PCPropertyKeyframe::initWithRecord(x, record));
    }
    x->setKeyframes(many);
    manager->selectKeyframe(many.front());
    manager->selectKeyframeByExtendingSelection(many.back());
    EXPECT_EQ(manager->selectedKeyframes().size(), size_t{kCount});
    manager->selectAllKeyframesForTimeline(*x);
    manager->shiftSelectedKeyframesBy(5);
    EXPECT_EQ(x->timeOfKeyframe(0), 5);
    EXPECT_EQ(x->durationInMS(), kCount + 4);
    EXPECT_EQ(manager->selectedKeyframesSortedByTimeInMS().front(), many.front());
    manager->setSelectionToSingleKeyframe(keyframe("y0"));
    EXPECT_THAT(selection(), ElementsAre("y0"));
}

TEST_F(KeyframeManagerTest, AnswersByPlaceWithoutMakingHandles) {
    project->undoManager().removeAllActions();  // which hold handles
    select("x100 x300");
    manager->selectTween(keyframe("x200"));
    const auto selectedPlaces = [this](const PCKeyedPropertyTimeline& timeline) {
        std::string places;
        for (size_t i = 0; i < timeline.keyframesCount(); ++i) {
            if (manager->keyframeIsSelected(timeline, i)) { places += 'k' + std::to_string(i); }
            if (manager->tweenIsSelected(timeline, i)) { places += 't' + std::to_string(i); }
        }
        return places;
    };
    EXPECT_EQ(selectedPlaces(*x), "k1t2k3");
    EXPECT_EQ(selectedPlaces(*y), "");
    EXPECT_FALSE(x->heldKeyframe(0) || x->heldKeyframe(4) || y->heldKeyframe(0));
    // An unselected one that somebody holds is not mistaken for a selected one.
    const Keyframe held = keyframe("y150");
    EXPECT_EQ(selectedPlaces(*y), "");
    EXPECT_EQ(y->heldKeyframe(1), held);
    x->deleteKeyframe(keyframe("x0"));
    EXPECT_EQ(selectedPlaces(*x), "k0t1k2");
}

}  // namespace
}  // namespace tweenery::test
