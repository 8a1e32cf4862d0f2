#include "editor/timeline/keyframe_commands.h"

#include "base/errors.h"
#include "editor/timeline/keyframe_rows.h"
#include "editor/timeline/keyframe_value_text.h"
#include "editor/timeline/time_text.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

// What one edit does to rows, and that it is one step both ways.
struct Case {
    const char* what;
    QStringList rows;
    const char* selected;  // keyframes
    std::function<void(KeyframeRows&)> edit;
    QStringList expected;  // the same rows; empty: nothing happens, and there is no step
    const char* selectedThen = nullptr;
    int32_t playhead = 0;
};

void check(const std::vector<Case>& cases) {
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        KeyframeRows scene(c.rows);
        UndoManager& undo = scene.project->undoManager();
        scene.selectKeys(QString::fromLatin1(c.selected));
        scene.time.setPlayheadPositionInMS(c.playhead);
        const std::string before = scene.allKeys();
        c.edit(scene);
        const std::string after = scene.allKeys();
        for (const QString& row : c.expected) {
            EXPECT_EQ(scene.keysOf(row), row.section(u' ', 2).toStdString()) << qPrintable(row);
        }
        if (c.selectedThen) { EXPECT_EQ(scene.selectedKeys(), c.selectedThen); }
        if (c.expected.isEmpty()) {
            EXPECT_EQ(after, before);
            EXPECT_FALSE(undo.canUndo());
            continue;
        }
        EXPECT_NE(after, before);
        EXPECT_FALSE(undo.undoActionName().isEmpty());
        scene.perform("undo");
        EXPECT_EQ(scene.allKeys(), before);
        EXPECT_FALSE(undo.canUndo());
        for (const auto& keyframe : scene.keyframes.selectedKeyframes()) {
            EXPECT_TRUE(keyframe->isInTimeline());
        }
        scene.perform("redo");
        EXPECT_EQ(scene.allKeys(), after);
    }
}

std::function<void(KeyframeRows&)> perform(const char* command) {
    return [command](KeyframeRows& scene) { scene.perform(command); };
}

// A refusal is what is to happen when nothing is expected of the rows.
std::function<void(KeyframeRows&)> told(std::function<QString(KeyframeCommands&)> edit,
                                        bool refuses = false) {
    return [edit = std::move(edit), refuses](KeyframeRows& scene) {
        EXPECT_EQ(edit(scene.commands).isNull(), !refuses);
    };
}

TEST(KeyframeCommands, DeleteAndKeyAll) {
    const QStringList marked{u"A x 0:0 500:10k 900:5k"_s, u"B r 500:1k"_s, u"- K 500:0k 900:0k"_s};
    check({
        {"keyframes go, others stay",
         {u"A x 0:0 500:10(easeIn) 900:5"_s, u"B r 0:1 500:2"_s},
         "A x 500, B r 0",
         perform("deleteKeyframes"),
         {u"A x 0:0 900:5"_s, u"B r 500:2"_s},
         ""},
        {"a master keyframe takes the marks of its time with it, not the keyframes",
         marked,
         "- K 500",
         perform("deleteKeyframes"),
         {u"A x 0:0 500:10 900:5k"_s, u"B r 500:1"_s, u"- K 900:0k"_s}},
        {"of two at one time only the one that is selected",
         {u"A x 0:0 250:1 250:2"_s},
         "",
         [](KeyframeRows& scene) {
             const auto first = scene.timelineOf(u"A x"_s)->existingKeyframeAtKeyframeIndex(1);
             scene.keyframes.selectKeyframe(first);
             scene.perform("deleteKeyframes");
         },
         {u"A x 0:0 250:2"_s}},
        {"nothing is selected", {u"A x 0:0"_s}, "", perform("deleteKeyframes"), {}},
        {"Key All makes a master keyframe and marks what is there",
         {u"A x 0:0 500:10"_s, u"B r 400:1"_s},
         "",
         perform("keyAll"),
         {u"A x 0:0 500:10k"_s, u"B r 400:1"_s, u"- K 500:0k"_s},
         nullptr,
         500},
        {"what Key All has marked already", marked, "", perform("keyAll"), {}, nullptr, 500},
    });
}

TEST(KeyframeCommands, DeletingATweenMakesItJump) {
    KeyframeRows scene({u"A x 0:0 500:10(easeIn)"_s});
    const auto end = scene.keysAt(u"A x 500"_s).front();
    scene.keyframes.selectTween(end);
    scene.controller.setKeyboardPane(KeyboardPane::Timeline);
    scene.select({u"A"_s});
    scene.perform("delete");
    EXPECT_EQ(scene.keysOf(u"A x"_s), "0:0 500:10!(easeIn)");
    EXPECT_EQ(scene.tree(), "A B G{C D}") << "elements stay";
    EXPECT_TRUE(scene.keyframes.selectedTweens().empty());
    scene.perform("undo");
    EXPECT_EQ(scene.keysOf(u"A x"_s), "0:0 500:10(easeIn)");
    EXPECT_FALSE(scene.project->undoManager().canUndo());
}

TEST(KeyframeCommands, RowsAndTransitions) {
    const auto loop = [](KeyframeRows& scene) {
        scene.commands.cycleLoopMode(scene.timelineOf(u"A x"_s));
    };
    const auto behavior = [](KeyframeRows& scene) {
        return scene.timelineOf(u"A x"_s)->repeatBehavior();
    };
    check({
        {"the row at the playhead becomes a keyframe",
         {u"A x 0:0 1000:10"_s, u"A y 0:3"_s},
         "A x 0",
         perform("createKeyframes"),
         {u"A x 0:0 500:5 1000:10"_s, u"A y 0:3"_s},
         nullptr,
         500},
        {"a row goes",
         {u"A x 0:0 9:1"_s, u"A y 0:3"_s},
         "A x 9",
         perform("deleteTimeline"),
         {u"A x "_s, u"A y 0:3"_s},
         ""},
        {"all rows of the element go, and those of no other",
         {u"A x 0:0 9:1"_s, u"A y 0:3"_s, u"B y 0:3"_s, u"- K 0:0k"_s},
         "A x 9",
         perform("deleteAllTimelines"),
         {u"A x "_s, u"A y "_s, u"B y 0:3"_s, u"- K 0:0k"_s}},
        {"all become what the earliest is not",
         {u"A x 0:0 500:10! 900:1"_s},
         "A x 500 900",
         perform("switchTransitionType"),
         {u"A x 0:0 500:10 900:1"_s}},
        {"an easing for keyframes that jump",
         {u"A x 0:0 500:10!"_s, u"B r 0:1 10:2"_s},
         "A x 500, B r 10",
         perform("easingOvershoot"),
         {u"A x 0:0 500:10(overshoot)"_s, u"B r 0:1 10:2(overshoot)"_s}},
        {"the easing stays for when it tweens again",
         {u"A x 0:0 500:10(easeIn)"_s},
         "A x 500",
         perform("easingInstant"),
         {u"A x 0:0 500:10!(easeIn)"_s}},
        {"one keyframe at 0 cannot loop", {u"A x 0:0"_s}, "", loop, {}},
    });
    KeyframeRows scene({u"A x 0:0 500:1"_s});
    for (const auto expected : {PCRepeatBehaviorForever, PCRepeatBehaviorForeverAutoreverse,
                                PCRepeatBehaviorNever, PCRepeatBehaviorForever}) {
        loop(scene);
        EXPECT_EQ(behavior(scene), expected);
    }
    scene.selectKeys(u"A x 500"_s);
    scene.perform("deleteKeyframes");
    EXPECT_EQ(behavior(scene), PCRepeatBehaviorNever) << "there is nothing left to loop over";
    loop(scene);
    EXPECT_EQ(behavior(scene), PCRepeatBehaviorNever);
    scene.perform("undo");
    EXPECT_EQ(behavior(scene), PCRepeatBehaviorForever) << "the step before was the deletion";
}

TEST(KeyframeCommands, SplitsACombinedRow) {
    KeyframeRows scene;
    const auto a = named(*scene.project, u"A"_s);
    const auto timeline = PCKeyedPropertyTimeline::initForElement(a, PCPropertyTypeScale);
    scene.commands.splitTimeline(*timeline);
    EXPECT_TRUE(a->scaleTimelineSplit());
    scene.perform("undo");
    EXPECT_FALSE(a->scaleTimelineSplit());
    scene.perform("redo");
    EXPECT_TRUE(a->scaleTimelineSplit());
    EXPECT_FALSE(a->translationTimelineSplit());
    EXPECT_THROW(scene.commands.splitTimeline(*scene.timelineOf(u"A x"_s)), AssertionFailure);
}

// Ticks lie 125 ms apart.
TEST(KeyframeCommands, MoveInTime) {
    const QStringList three{u"A x 250:1 600:2 1000:3"_s, u"B r 700:1 800:2"_s};
    check({
        {"each to its own tick",
         three,
         "A x 600, B r 700",
         perform("moveKeyframesLeft"),
         {u"A x 250:1 500:2 1000:3"_s, u"B r 625:1 800:2"_s},
         "A x 500, B r 625"},
        {"the earliest would reach its neighbour",
         {u"A x 500:1 600:2"_s, u"B r 900:1"_s},
         "A x 600, B r 900",
         perform("moveKeyframesLeft"),
         {}},
        {"it would leave the times", {u"A x 0:1"_s}, "A x 0", perform("moveKeyframesLeft"), {}},
        {"a tick before 0 is none",
         {u"A x 100:1"_s},
         "A x 100",
         perform("moveKeyframesLeft"),
         {u"A x 0:1"_s}},
        {"only the neighbour of the latest counts",
         {u"A x 400:1 500:2"_s, u"B r 800:1"_s},
         "A x 400, B r 800",
         perform("moveKeyframesRight"),
         {u"A x 500:1 500:2"_s, u"B r 875:1"_s},
         "A x 500, B r 875"},
        {"the latest would reach its neighbour",
         three,
         "A x 600",
         perform("moveKeyframesRight"),
         {u"A x 250:1 625:2 1000:3"_s}},
        {"…and does not", {u"A x 600:1 625:2"_s}, "A x 600", perform("moveKeyframesRight"), {}},
        {"by 1 ms, side by side",
         {u"A x 1:1 2:2 4:3"_s},
         "A x 1 2",
         perform("nudgeKeyframesRight"),
         {u"A x 2:1 3:2 4:3"_s}},
        {"by 1 ms onto a neighbour",
         {u"A x 1:1 3:2 4:3"_s, u"B r 0:1"_s},
         "A x 1 3, B r 0",
         perform("nudgeKeyframesRight"),
         {}},
        {"by 1 ms before 0", {u"A x 0:1"_s}, "A x 0", perform("nudgeKeyframesLeft"), {}},
        {"reverse turns the easings round",
         {u"A x 0:0(easeOut) 100:1 300:2(easeIn) 400:3(anticipate)"_s, u"B r 50:1"_s},
         "A x 100 300 400, B r 50",
         perform("reverseKeyframes"),
         {u"A x 0:0(easeOut) 50:3 150:2(overshoot) 350:1(easeOut)"_s, u"B r 400:1"_s}},
        {"nothing to reverse", {u"A x 100:1"_s}, "A x 100", perform("reverseKeyframes"), {}},
        {"stretch in proportion",
         {u"A x 100:1 200:2 300:3 900:4"_s, u"B r 150:1"_s},
         "A x 100 200 300, B r 150",
         told([](auto& keys) { return keys.stretchTo(500); }),
         {u"A x 100:1 350:2 600:3 900:4"_s, u"B r 225:1"_s}},
        {"stretched onto a neighbour",
         {u"A x 100:1 300:3 900:4"_s},
         "A x 100 300",
         told([](auto& keys) { return keys.stretchTo(800); }, true),
         {}},
        {"pressed onto each other",
         {u"A x 100:1 200:2 300:3"_s},
         "A x 100 200 300",
         told([](auto& keys) { return keys.stretchTo(1); }, true),
         {}},
        {"two of one time stay of one",
         {u"A x 100:1 300:2 300:3"_s},
         "A x 100 300",
         told([](auto& keys) { return keys.stretchTo(50); }),
         {u"A x 100:1 150:2 150:3"_s}},
        {"stretched past the last time",
         {u"A x 100:1 200:2"_s},
         "A x 100 200",
         told([](auto& keys) { return keys.stretchTo(INT32_MAX); }, true),
         {}},
        {"nothing to stretch",
         {u"A x 100:1"_s},
         "A x 100",
         told([](auto& keys) { return keys.stretchTo(50); }, true),
         {}},
        {"past another",
         {u"A x 100:1 200:2"_s},
         "A x 100",
         [](KeyframeRows& scene) {
             EXPECT_TRUE(
                 scene.commands.setTimeAndValue(scene.commands.singleKeyframe(), 300, {}).isNull());
         },
         {u"A x 200:2 300:1"_s},
         "A x 300"},
        {"onto another",
         {u"A x 100:1 200:2"_s},
         "A x 100",
         [](KeyframeRows& scene) {
             EXPECT_FALSE(scene.commands.setTimeAndValue(scene.commands.singleKeyframe(), 200, 5.0F)
                              .isNull());
         },
         {}},
    });
}

TEST(KeyframeCommands, InsertAndRemoveTime) {
    const QStringList rows{u"A x 0:0 500:10k 900:5"_s, u"B r 499:1 700:2"_s, u"- K 500:0k"_s};
    const auto insert = [](int32_t length) {
        return [length](KeyframeCommands& keys) { return keys.insertTime(length); };
    };
    const auto remove = [](int32_t length) {
        return [length](KeyframeCommands& keys) { return keys.removeTime(length); };
    };
    check({
        {"what is at the playhead moves, too",
         rows,
         "",
         told(insert(100)),
         {u"A x 0:0 600:10k 1000:5"_s, u"B r 499:1 800:2"_s, u"- K 600:0k"_s},
         nullptr,
         500},
        {"what lies in the time goes, the rest closes up",
         rows,
         "B r 700",
         told(remove(300)),
         {u"A x 0:0 500:10k 600:5"_s, u"B r 499:1"_s, u"- K 500:0k"_s},
         "",
         600},
        {"up to, but without, its end",
         rows,
         "",
         told(remove(200)),
         {u"A x 0:0 700:5"_s, u"B r 499:1 500:2"_s, u"- K "_s},
         nullptr,
         500},
        {"nothing comes later", rows, "", told(insert(100), true), {}, nullptr, 901},
        {"nothing comes later", rows, "", told(remove(100), true), {}, nullptr, 901},
        {"there is no time so late",
         rows,
         "",
         told(insert(INT32_MAX - 800), true),
         {},
         nullptr,
         500},
        {"to the end of all times",
         rows,
         "",
         told(remove(INT32_MAX)),
         {u"A x 0:0"_s, u"B r 499:1"_s, u"- K "_s},
         nullptr,
         500},
    });
}

// A loop gets longer or shorter with its keyframes; what is left of it may be none.
TEST(KeyframeCommands, InsertAndRemoveTimeInALoop) {
    KeyframeRows scene({u"A x 0:0 1000:100"_s});
    const auto timeline = scene.timelineOf(u"A x"_s);
    timeline->setRepeatBehavior(PCRepeatBehaviorForeverAutoreverse);
    scene.project->undoManager().removeAllActions();
    const std::string before = scene.allKeys();
    scene.time.setPlayheadPositionInMS(1000);
    EXPECT_TRUE(scene.commands.insertTime(1000).isNull());
    EXPECT_EQ(timeline->floatValueAtTimeInMS(3000), 50) << "on the way back";
    EXPECT_FALSE((scene.time.setPlayheadPositionInMS(2001), scene.commands.insertTime(1)).isNull())
        << "the repeats have no keyframes";
    scene.time.setPlayheadPositionInMS(1);
    EXPECT_TRUE(scene.commands.removeTime(2000).isNull());
    EXPECT_EQ(scene.allKeys(), "A x 0:0 loop0\nK ");
    scene.perform("undo");
    scene.perform("undo");
    EXPECT_EQ(scene.allKeys(), before);
}

TEST(KeyframeCommands, Select) {
    const QStringList rows{u"A x 0:0 500:10 900:5"_s, u"A y 500:1"_s, u"B r 500:1 501:2"_s,
                           u"- K 500:0k"_s};
    struct SelectCase {
        const char* command;
        const char* selected;
        const char* expected;
    };
    for (const SelectCase& c : {
             SelectCase{"selectAllKeyframes", "", "A x 0 500 900, A y 500, B r 500 501"},
             {"selectKeyframesAtPlayhead", "A x 0", "A x 500, A y 500, B r 500"},
             {"selectKeyframesAfterPlayhead", "A x 0", "A x 900, B r 501"},
             {"selectKeyframesOfRows", "A x 0, B r 500", "A x 0 500 900, B r 500 501"},
             {"selectKeyframesOfRows", "", "A x 0 500 900, A y 500"},  // of the selected element
             {"deselectAllKeyframes", "A x 0", ""},
             {"selectLaterKeyframe", "A x 0, B r 500", "B r 501"},
             {"selectLaterKeyframe", "A x 0 500", "A x 900"},
             {"selectLaterKeyframe", "A x 900", "A x 900"},
             {"selectEarlierKeyframe", "A x 900, B r 501", "B r 500"},
         }) {
        SCOPED_TRACE(c.command);
        KeyframeRows scene(rows);
        scene.select({u"A"_s});
        scene.time.setPlayheadPositionInMS(500);
        scene.selectKeys(QString::fromLatin1(c.selected));
        scene.perform(c.command);
        EXPECT_EQ(scene.selectedKeys(), c.expected);
        EXPECT_FALSE(scene.project->undoManager().canUndo());
    }
}

TEST(KeyframeCommands, ThePlayheadGoesFromKeyframeToKeyframe) {
    KeyframeRows scene({u"A x 0:0 500:10"_s, u"B r 501:1"_s, u"- K 900:0k"_s});
    for (const int32_t expected : {500, 501, 900, 900}) {
        scene.perform("goToNextKeyframe");
        EXPECT_EQ(scene.time.playheadPositionInMS(), expected);
    }
    for (const int32_t expected : {501, 500, 0, 0}) {
        scene.perform("goToPreviousKeyframe");
        EXPECT_EQ(scene.time.playheadPositionInMS(), expected);
    }
}

// Copied keyframes, onto which elements they are pasted at 1000 ms, and what the rows are then.
TEST(KeyframeCommands, Paste) {
    struct PasteCase {
        const char* what;
        const char* copied;
        QStringList selected;  // elements, at the paste
        QStringList expected;  // empty: a refusal
    };
    const QStringList rows{u"A x 100:1 600:2(easeIn)"_s, u"A w 300:1.5!"_s, u"B r 300:1"_s,
                           u"C y 100:7"_s};
    for (const PasteCase& c : {
             PasteCase{"back onto its own element",
                       "A x 600",
                       {},
                       {u"A x 100:1 600:2(easeIn) 1000:2(easeIn)"_s}},
             {"with their distances, relative to another setup state",
              "A x 100 600, A w 300",
              {u"B"_s},
              {u"B x 1000:1 1500:2(easeIn)"_s, u"B w 1200:1.5!"_s, u"A x 100:1 600:2(easeIn)"_s}},
             {"onto each that is selected",
              "B r 300",
              {u"A"_s, u"D"_s},
              {u"A r 1000:1"_s, u"D r 1000:1"_s, u"B r 300:1"_s}},
             {"of two, while one of them is selected",
              "A x 100, B r 300",
              {u"A"_s},
              {u"A x 100:1 600:2(easeIn) 1000:1"_s, u"B r 300:1 1200:1"_s}},
             {"of two onto two others, in the order of the tree",
              "A x 100, C y 100",
              {u"D"_s, u"B"_s},
              {u"D y 1000:7"_s, u"B x 1000:1"_s}},
         }) {
        SCOPED_TRACE(c.what);
        KeyframeRows scene(rows);
        scene.selectKeys(QString::fromLatin1(c.copied));
        scene.perform("copyKeyframes");
        scene.keyframes.deselectAllKeyframes();
        scene.select(c.selected);
        scene.time.setPlayheadPositionInMS(1000);
        const std::string before = scene.allKeys();
        scene.perform("paste");  // whoever has the keyboard
        for (const QString& row : c.expected) {
            EXPECT_EQ(scene.keysOf(row), row.section(u' ', 2).toStdString()) << qPrintable(row);
        }
        EXPECT_FALSE(scene.keyframes.selectedKeyframes().empty());
        scene.perform("undo");
        EXPECT_EQ(scene.allKeys(), before);
        EXPECT_TRUE(scene.keyframes.selectedKeyframes().empty());
        EXPECT_FALSE(scene.project->undoManager().canUndo());
    }
}

TEST(KeyframeCommands, CutAndPasteBetweenWindows) {
    KeyframeRows from({u"A x 100:1 600:2"_s, u"A o 100:0.5"_s});
    from.selectKeys(u"A x 100 600, A o 100"_s);
    from.controller.setKeyboardPane(KeyboardPane::Timeline);
    from.perform("cut");
    EXPECT_EQ(from.allKeys(), "K ");
    from.perform("undo");
    EXPECT_EQ(from.keysOf(u"A x"_s), "100:1 600:2");

    KeyframeRows to({u"A x 0:9 500:8"_s});
    to.clipboard.items = from.clipboard.items;
    to.perform("pasteKeyframes");
    EXPECT_EQ(to.keysOf(u"A x"_s), "0:1 500:2")
        << "the element of that name; what is there is replaced";
    EXPECT_EQ(to.keysOf(u"A o"_s), "0:0.5");
    EXPECT_EQ(to.selectedKeys(), "A o 0, A x 0 500");
}

TEST(KeyframeCommands, PasteSaysWhyNot) {
    KeyframeRows scene({u"A x 100:1 600:2"_s});
    const auto refused = [&](const char* reason) {
        scene.alerts.answers = {0};
        scene.perform("pasteKeyframes");
        ASSERT_FALSE(scene.alerts.shown.empty());
        EXPECT_TRUE(scene.alerts.shown.back().informativeText.contains(QString::fromUtf8(reason)))
            << qPrintable(scene.alerts.shown.back().informativeText);
        EXPECT_EQ(scene.keysOf(u"A x"_s), "100:1 600:2");
    };
    refused("no keyframes on the clipboard");
    scene.selectKeys(u"A x 100 600"_s);
    scene.perform("copyKeyframes");
    const auto copied = scene.clipboard.items.items;
    scene.time.setPlayheadPositionInMS(INT32_MAX - 499);
    refused("no time as late");
    scene.time.setPlayheadPositionInMS(0);
    auto track = copied.front().propertyList.toList().first().toMap();
    const auto put = [&] {
        scene.clipboard.items.items = {{copied.front().type, QVariantList{track}}};
    };
    track.insert(u"identifier"_s, u"elsewhere"_s);
    track.insert(u"element"_s, u"kite"_s);
    put();
    refused("no element “kite”");
    for (const auto& [key, damaged] :
         {std::pair<QString, QVariant>{u"property"_s, u"shoe size"_s},
          {u"keys"_s, QVariantList{}},
          {u"keys"_s, QVariantList{QVariantMap{{u"offset"_s, -1}, {u"value"_s, 1.0}}}},
          {u"keys"_s, QVariantList{QVariantMap{{u"offset"_s, 1}, {u"value"_s, u"much"_s}}}}}) {
        const QVariant whole = track.value(key);
        track.insert(key, damaged);
        put();
        refused("cannot be read");
        track.insert(key, whole);
    }
    EXPECT_FALSE(scene.project->undoManager().undoActionName().contains(u"Paste"_s));
}

// Orders of children and images are pasted where the names exist.
TEST(KeyframeCommands, PasteByNames) {
    KeyframeRows from;
    const auto group = named(*from.project, u"G"_s);
    const QString c = named(*from.project, u"C"_s)->identifier().toString();
    const QString d = named(*from.project, u"D"_s)->identifier().toString();
    group->setChildrenZPositions({d, c}, 0);
    from.keyframes.selectAllKeyframesForTimeline(*group->childrenZPositionsTimeline());
    from.perform("copyKeyframes");
    KeyframeRows to;
    to.clipboard.items = from.clipboard.items;
    to.perform("pasteKeyframes");
    const auto pasted = named(*to.project, u"G"_s);
    EXPECT_EQ(to.project->namesFromIdentifiers(pasted->childrenZPositionsAtTimeInMS(0)),
              (QStringList{u"D"_s, u"C"_s}));
    to.select({u"A"_s});
    to.alerts.answers = {0};
    to.perform("pasteKeyframes");
    EXPECT_EQ(to.alerts.shown.size(), 1U) << "A has no children";
}

// What rows have at the key-all moments around a paste stays so.
TEST(KeyframeCommands, PasteKeepsWhatKeyAllHolds) {
    KeyframeRows scene({u"A x 0:0 1000:100"_s, u"B x 0:50"_s, u"- K 200:0k 800:0k"_s});
    scene.selectKeys(u"B x 0"_s);
    scene.perform("copyKeyframes");
    scene.select({u"A"_s});
    scene.time.setPlayheadPositionInMS(500);
    scene.perform("pasteKeyframes");
    EXPECT_EQ(scene.keysOf(u"A x"_s), "0:0 200:20k 500:50 800:80k 1000:100");
}

// Typed values are absolute, in the units of the inspector.
TEST(KeyframeCommands, TypedValues) {
    struct ValueCase {
        const char* row;
        const char* shown;
        const char* typed;
        const char* stored;  // null: no value of the property
    };
    for (const ValueCase& c : {ValueCase{"B x 0:1.255", "1.25", "12,5", "0:12.5"},
                               {"B w 0:1", "200%", "300 %", "0:1.5"},
                               {"B r 0:0", "57.3°", "90°", "0:0.5707964"},
                               {"B o 0:1", "50%", "150", "0:2"},
                               {"B h 0:1 0:1", "200%", "400", "0:1 0:2"},
                               {"B x 0:10", "10", "50% + 2 * 3", "0:11"},
                               {"B r 0:0", "57.3°", "45 + 45 deg", "0:0.5707964"},
                               {"B w 0:1", "200%", "3 pt", nullptr},
                               {"B y 0:0", "0", "ten", nullptr},
                               {"B y 0:0", "0", "1e99", nullptr}}) {
        SCOPED_TRACE(c.row);
        const QString row = QString::fromLatin1(c.row);
        KeyframeRows scene({row});
        const auto timeline = scene.timelineOf(row);
        const auto last = timeline->existingKeyframeAtKeyframeIndex(timeline->keyframesCount() - 1);
        EXPECT_EQ(textOfKeyframeValue(*last).toStdString(), c.shown);
        const auto value = typedKeyframeValue(QString::fromUtf8(c.typed), *last).value;
        ASSERT_EQ(value.has_value(), c.stored != nullptr);
        if (!value) { continue; }
        EXPECT_TRUE(scene.commands.setTimeAndValue(last, 0, value).isNull());
        EXPECT_EQ(scene.keysOf(row), c.stored);
        EXPECT_TRUE(scene.commands.setTimeAndValue(last, 0, value).isNull()) << "no second step";
        scene.perform("undo");
        EXPECT_EQ(scene.keysOf(row), row.section(u' ', 2).toStdString());
    }
}

TEST(TimeText, ReadsWhatUsersType) {
    struct TextCase {
        const char* text;
        TimeUnit unit;
        std::optional<int32_t> expected;
    };
    constexpr auto kMS = TimeUnit::Milliseconds;
    constexpr auto kSeconds = TimeUnit::Seconds;
    for (const TextCase& c : {TextCase{"500", kMS, 500},
                              {" 500 MS ", kSeconds, 500},
                              {"1.5", kSeconds, 1500},
                              {"1,5 s", kMS, 1500},
                              {".0006s", kMS, 1},
                              {"1:02.5", kMS, 62500},
                              {"2147483.647 s", kMS, INT32_MAX},
                              {"2147483.648 s", kMS, std::nullopt},
                              {"-1", kMS, std::nullopt},
                              {"1:5 ms", kMS, std::nullopt},
                              {"", kMS, std::nullopt},
                              {"soon", kMS, std::nullopt}}) {
        EXPECT_EQ(timeInMSFromText(QString::fromLatin1(c.text), c.unit), c.expected) << c.text;
    }
}

// The keys of a pane, and what is offered where.
TEST(KeyframeCommands, KeysGoToThePaneThatHasTheKeyboard) {
    KeyframeRows scene({u"A x 250:0 600:10"_s});
    CommandSet& commands = scene.controller.commands();
    scene.select({u"A"_s});
    scene.selectKeys(u"A x 600"_s);
    EXPECT_EQ(commands.title(u"copy"_s), u"Copy"_s);
    scene.controller.setKeyboardPane(KeyboardPane::Timeline);
    EXPECT_EQ(commands.title(u"copy"_s), u"Copy Keyframes"_s);
    scene.perform("moveLeft");
    EXPECT_EQ(scene.keysOf(u"A x"_s), "250:0 500:10");
    scene.perform("moveDown");
    EXPECT_EQ(scene.selectedKeys(), "A x 250");
    scene.perform("deselectAll");
    EXPECT_FALSE(commands.isEnabled(u"delete"_s)) << "though an element is selected";
    EXPECT_EQ(commands.title(u"moveLeft"_s), u"Left"_s) << "moves elements";
    scene.perform("selectAll");
    EXPECT_EQ(scene.selectedKeys(), "A x 250 500");
    scene.controller.selectAnimation(nullptr);
    EXPECT_EQ(scene.selectedKeys(), "");
    EXPECT_EQ(commands.title(u"delete"_s), u"Delete"_s);
    for (const char* command : {"keyAll", "createKeyframes", "pasteKeyframes", "selectAllKeyframes",
                                "goToNextKeyframe", "setLoopStart", "deleteTimeline"}) {
        EXPECT_FALSE(commands.isEnabled(QString::fromLatin1(command))) << command;
    }
}

}  // namespace
}  // namespace tweenery::test
