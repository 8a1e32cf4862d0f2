#include "base/undo_manager.h"

#include <gmock/gmock.h>

#include <array>
#include <memory>
#include <vector>

#include "base/errors.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

/// A document of one text whose setter records its inverse, as the model's setters do.
class UndoManagerTest : public testing::Test {
 protected:
    void set(const std::string& text) {
        undo.registerUndo([this, old = m_text] { set(old); });
        m_text = text;
    }
    void setInEventOfItsOwn(const std::string& text) {
        set(text);
        undo.endEvent();
    }
    const std::string& text() const { return m_text; }

    UndoManager undo;

 private:
    std::string m_text = "start";
};

TEST_F(UndoManagerTest, WalksThroughTheNamedStatesAndBack) {
    setInEventOfItsOwn("one");
    undo.setActionName(u"First"_s);
    setInEventOfItsOwn("two");
    undo.setActionName(u"Second"_s);

    struct Step {
        bool (UndoManager::*walk)();
        std::string text;
        QString undoName, redoName;
        int64_t changeCount;
    };
    const std::vector<Step> steps = {
        {&UndoManager::undo, "one", u"First"_s, u"Second"_s, 1},
        {&UndoManager::undo, "start", {}, u"First"_s, 0},
        {&UndoManager::undo, "start", {}, u"First"_s, 0},  // nothing is left
        {&UndoManager::redo, "one", u"First"_s, u"Second"_s, 1},
        {&UndoManager::redo, "two", u"Second"_s, {}, 2},
        {&UndoManager::redo, "two", u"Second"_s, {}, 2},
        {&UndoManager::undo, "one", u"First"_s, u"Second"_s, 1},
    };
    for (size_t i = 0; i < steps.size(); ++i) {
        SCOPED_TRACE(i);
        const bool isLeft = i > 0 ? steps[i].text != steps[i - 1].text : true;
        EXPECT_EQ((undo.*steps[i].walk)(), isLeft);
        EXPECT_EQ(text(), steps[i].text);
        EXPECT_EQ(undo.canUndo(), !steps[i].undoName.isNull());
        EXPECT_EQ(undo.canRedo(), !steps[i].redoName.isNull());
        EXPECT_EQ(undo.undoActionName(), steps[i].undoName);
        EXPECT_EQ(undo.redoActionName(), steps[i].redoName);
        EXPECT_EQ(undo.changeCount(), steps[i].changeCount);
    }
}

TEST_F(UndoManagerTest, ANewEditDropsRedoAndIsNoReturnToASavedState) {
    setInEventOfItsOwn("one");
    const int64_t saved = undo.changeCount();
    undo.undo();
    EXPECT_NE(undo.changeCount(), saved);
    set("other");
    EXPECT_FALSE(undo.canRedo());
    EXPECT_NE(undo.changeCount(), saved);
    undo.undo();
    EXPECT_EQ(text(), "start");
}

TEST_F(UndoManagerTest, ASaveInTheMiddleOfAStepDoesNotHideTheRest) {
    set("a");
    const int64_t savedInEvent = undo.changeCount();
    set("b");
    EXPECT_NE(undo.changeCount(), savedInEvent);
    undo.endEvent();
    EXPECT_NE(undo.changeCount(), savedInEvent);
    const int64_t whole = undo.changeCount();
    undo.undo();
    EXPECT_EQ(undo.changeCount(), 0);
    undo.redo();
    EXPECT_EQ(undo.changeCount(), whole);
}

TEST_F(UndoManagerTest, OneEventOrOneOuterGroupIsOneStep) {
    set("a");
    {
        const UndoGroup within(undo);
        set("b");
    }
    set("c");
    undo.undo();
    EXPECT_EQ(text(), "start") << "the group lay within the event";

    {
        const UndoGroup drag(undo);
        setInEventOfItsOwn("a");
        {
            const UndoGroup inner(undo);
            setInEventOfItsOwn("b");
        }
        setInEventOfItsOwn("c");
    }
    undo.undo();
    EXPECT_EQ(text(), "start") << "the group went over several events";
    EXPECT_EQ(undo.changeCount(), 0);
    undo.redo();
    EXPECT_EQ(text(), "c");
}

TEST_F(UndoManagerTest, AGroupThatOutlivesItsEventTakesTheEventsActionsAlong) {
    set("a");
    undo.beginUndoGrouping();
    undo.endEvent();
    set("b");
    EXPECT_THROW(undo.undo(), AssertionFailure);
    undo.endUndoGrouping();
    set("c");
    undo.undo();
    EXPECT_EQ(text(), "b");
    undo.undo();
    EXPECT_EQ(text(), "start");
}

TEST_F(UndoManagerTest, EmptyGroupsAndPausedRegistrationLeaveNoStep) {
    { const UndoGroup empty(undo); }
    {
        const UndoRegistrationPause pause(undo);
        const UndoRegistrationPause again(undo);
        set("unrecorded");
    }
    undo.endEvent();
    EXPECT_FALSE(undo.canUndo());
    EXPECT_EQ(undo.changeCount(), 0);
    EXPECT_TRUE(undo.isUndoRegistrationEnabled());
}

TEST_F(UndoManagerTest, TellsWhereAnActionRunsAndGroupsWhatItRecords) {
    std::vector<std::string> seen;
    const auto note = [&] {
        seen.emplace_back(undo.isUndoing() ? "undoing" : undo.isRedoing() ? "redoing" : "normal");
    };
    std::function<void()> edit = [&] {
        note();
        const UndoGroup group(undo);
        undo.registerUndo(edit);
        undo.setActionName(u"Renamed"_s);
        undo.endEvent();
    };
    {
        const UndoGroup twice(undo);
        edit();
        edit();
    }
    undo.undo();
    undo.redo();
    EXPECT_THAT(
        seen, testing::ElementsAre("normal", "normal", "undoing", "undoing", "redoing", "redoing"));
    EXPECT_EQ(undo.undoActionName(), u"Renamed"_s);
    EXPECT_FALSE(undo.canRedo());
}

// Small actions lie in the step itself, large ones elsewhere.
TEST_F(UndoManagerTest, CallsActionsOfAnySizeAndLetsGoOfWhatTheyHold) {
    const auto held = std::make_shared<std::vector<int>>();
    const std::array<int, 100> large{1, 2, 3};
    for (int i = 0; i < 40; ++i) {
        undo.registerUndo([held, i] { held->push_back(i); });
        undo.registerUndo([held, large] { held->push_back(large[2]); });
    }
    undo.undo();
    ASSERT_EQ(held->size(), 80U);
    EXPECT_EQ((*held)[0], 3);
    EXPECT_EQ((*held)[1], 39);
    EXPECT_EQ((*held)[79], 0);
    EXPECT_EQ(held.use_count(), 1) << "the step that was undone is gone";
    undo.registerUndo([held] {});
    undo.registerUndo([held, large] { held->push_back(large[0]); });
    EXPECT_EQ(held.use_count(), 3);
    undo.removeAllActions();
    EXPECT_EQ(held.use_count(), 1);
}

TEST_F(UndoManagerTest, KeepsTheLastLevels) {
    undo.setLevelsOfUndo(2);
    for (const char* text : {"a", "b", "c"}) {
        setInEventOfItsOwn(text);
    }
    while (undo.canUndo()) {
        undo.undo();
    }
    EXPECT_EQ(text(), "a");
    EXPECT_EQ(undo.changeCount(), 1);
}

TEST_F(UndoManagerTest, DropsAllStepsWhenAnActionThrows) {
    setInEventOfItsOwn("one");
    const int64_t saved = undo.changeCount();
    undo.registerUndo([this] {
        const UndoGroup group(undo);
        set("half");
        failContract(u"broken"_s);
    });
    EXPECT_THROW(undo.undo(), AssertionFailure);
    EXPECT_FALSE(undo.canUndo() || undo.canRedo() || undo.isUndoing());
    EXPECT_NE(undo.changeCount(), saved);
    setInEventOfItsOwn("after");
    undo.undo();
    EXPECT_EQ(text(), "half");
}

TEST_F(UndoManagerTest, RefusesUnbalancedCalls) {
    EXPECT_THROW(undo.endUndoGrouping(), AssertionFailure);
    EXPECT_THROW(undo.enableUndoRegistration(), AssertionFailure);
    undo.registerUndo([this] { undo.endUndoGrouping(); });
    EXPECT_THROW(undo.undo(), AssertionFailure);
}

TEST_F(UndoManagerTest, TellsTheHandlerOfEveryChange) {
    std::vector<bool> canUndo;
    const Subscription subscription =
        undo.addChangeHandler([&] { canUndo.push_back(undo.canUndo()); });
    set("a");
    set("b");
    EXPECT_THAT(canUndo, testing::ElementsAre(true));
    undo.beginGesture();
    EXPECT_FALSE(canUndo.back()) << "during a gesture";
    undo.cancelGesture();
    EXPECT_TRUE(canUndo.back());
    undo.undo();
    EXPECT_FALSE(canUndo.back());
    undo.redo();
    EXPECT_TRUE(canUndo.back());
    undo.removeAllActions();
    EXPECT_FALSE(canUndo.back());
}

/// Texts that know by which key they are set, as the model's properties do.
class GestureTest : public testing::Test {
 protected:
    void set(size_t which, char text) {
        if (undo.needsInverse({this, static_cast<int>(which)})) {
            undo.registerUndo([this, which, old = texts[which]] {
                ++played;
                set(which, old);
            });
        }
        texts[which] = text;
    }
    /// An edit whose inverse depends on all edits before and after it.
    void swap() {
        undo.registerUndo([this] { swap(); });
        std::swap(order[0], order[1]);
    }
    std::string state() const { return order + texts; }

    UndoManager undo;
    std::string texts = "abc";
    std::string order = "12";
    int played = 0;
};

TEST_F(GestureTest, OfManyEventsIsUndoneInAsManyActionsAsItTouched) {
    set(2, 'z');
    undo.endEvent();
    undo.beginGesture();
    undo.setActionName(u"Move"_s);
    for (char text = 'A'; text <= 'Z'; ++text) {
        set(0, text);
        if (text == 'M') { swap(); }
        set(1, text);
        undo.endEvent();
        EXPECT_TRUE(undo.isWhole());
    }
    undo.endGesture();
    EXPECT_EQ(state(), "21ZZz");
    EXPECT_EQ(undo.undoActionName(), u"Move"_s);
    EXPECT_TRUE(undo.undo());
    EXPECT_EQ(state(), "12abz");
    EXPECT_EQ(played, 2);
    EXPECT_TRUE(undo.redo());
    EXPECT_EQ(state(), "21ZZz");
    undo.undo();
    undo.undo();
    EXPECT_EQ(state(), "12abc");
}

TEST_F(GestureTest, CancelledLeavesNoTrace) {
    set(0, 'x');
    undo.endEvent();
    set(0, 'y');
    undo.endEvent();
    undo.undo();
    const int64_t count = undo.changeCount();
    {
        UndoGesture gesture(undo);
        set(0, 'p');
        set(1, 'q');
        swap();
        set(0, 'r');
        gesture.cancel();
    }
    EXPECT_EQ(state(), "12xbc");
    EXPECT_EQ(undo.changeCount(), count);
    EXPECT_TRUE(undo.redo()) << "what could be redone still can be";
    EXPECT_EQ(state(), "12ybc");
    { const UndoGesture empty(undo); }
    undo.undo();
    EXPECT_TRUE(undo.canRedo()) << "and so it can after a gesture without edits";
    {
        const UndoGesture gesture(undo), within(undo);
        set(0, 'z');
    }
    EXPECT_FALSE(undo.canRedo());
}

TEST_F(GestureTest, RefusesUndoPolitely) {
    set(0, 'x');
    undo.beginGesture();
    set(0, 'y');
    EXPECT_FALSE(undo.canUndo() || undo.canRedo());
    EXPECT_FALSE(undo.undo());
    EXPECT_FALSE(undo.redo());
    EXPECT_EQ(state(), "12ybc");
    EXPECT_THROW(
        {
            const UndoGroup group(undo);
            undo.endGesture();
        },
        AssertionFailure);
    undo.cancelGesture();
    EXPECT_THROW(undo.endGesture(), AssertionFailure);
    EXPECT_EQ(state(), "12xbc") << "what the event did before stays";
    EXPECT_TRUE(undo.undo());
    EXPECT_EQ(state(), "12abc");
}

TEST_F(GestureTest, WithinAnotherIsCancelledByItself) {
    {
        const UndoGesture outer(undo);
        set(0, 'x');
        const int64_t saved = undo.changeCount();
        try {
            const UndoGroup edit(undo);
            const UndoGesture attempt(undo);
            EXPECT_FALSE(undo.isWhole());
            set(0, 'y');
            set(1, 'y');
            failContract(u"no room"_s);
        } catch (const AssertionFailure&) { EXPECT_EQ(state(), "12xbc"); }
        EXPECT_EQ(undo.changeCount(), saved);
        {
            const UndoGesture attempt(undo);
            set(0, 'z');
            set(1, 'z');
        }
        set(1, 'Z');
        EXPECT_NE(undo.changeCount(), saved) << "counts though no inverse was needed";
    }
    EXPECT_EQ(state(), "12zZc");
    undo.undo();
    EXPECT_EQ(state(), "12abc");
    undo.redo();
    EXPECT_EQ(state(), "12zZc");
}

TEST_F(GestureTest, WhoseCancellingFailsEndsAndDropsAllSteps) {
    set(0, 'x');
    undo.endEvent();
    undo.beginGesture();
    set(1, 'y');
    undo.registerUndo([] { failContract(u"broken"_s); });
    EXPECT_THROW(undo.cancelGesture(), AssertionFailure);
    EXPECT_FALSE(undo.isInGesture() || undo.canUndo());
    EXPECT_TRUE(undo.isWhole());
    undo.beginGesture();
    set(2, 'z');
    undo.removeAllActions();
    set(2, 'Z');
    undo.cancelGesture();
    EXPECT_EQ(state(), "12xyz");
}

}  // namespace
}  // namespace tweenery::test
