#include "model/keyed_property_timeline.h"

#include <gtest/gtest.h>

#include "support/model_builder.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

// An element with these setup values.
PCElement::Ptr elementWith(double opacity, double scaleX, double rotation) {
    auto element = PCElement::init();
    element->setOpacity(opacity);
    element->setScale({scaleX, 1});
    element->setZRotation(rotation);
    return element;
}

// clang-format off
TEST(KeyedPropertyTimeline, AnswersTheValueAtATime) {
    struct Case {
        const char* what;
        PCElement::Ptr element;
        PCPropertyType type;
        const char* keys;
        int64_t repeat;
        const char* values;  // time:value
    };
    const auto one = elementWith(1, 1, 0);
    const auto half = elementWith(0.5, 2, 1);
    const auto none = elementWith(0.02, 0, 0);
    const auto opacity = PCPropertyTypeOpacity, scale = PCPropertyTypeScaleX;
    const auto rotation = PCPropertyTypeZRotation, x = PCPropertyTypeTranslationX;
    const std::vector<Case> cases = {
        {"an empty one answers setup", half, opacity, "", 0, "0:0.5 9:0.5"},
        {"tweens from setup, then holds", one, opacity, "1000:0.5", 0, "0:1 500:0.75 1000:0.5 2000:0.5"},
        {"an instant first keyframe holds setup", one, opacity, "1000:0.5!", 0, "0:1 999:1 1000:0.5"},
        {"a keyframe at 0 hides setup", one, opacity, "0:0.25", 0, "0:0.25 50:0.25"},
        {"an instant keyframe holds the one before", one, x, "0:1 100:5!", 0, "99:1 100:5 101:5"},
        {"ratios of setup", half, scale, "0:3", 0, "0:6"},
        {"differences from setup", half, rotation, "0:0.5", 0, "0:1.5"},
        {"offsets", half, x, "0:3", 0, "0:3"},
        {"a setup of 0 counts as 0.05, but starts at 0", none, scale, "1000:40", 0, "0:0 500:1 1000:2"},
        {"likewise for rotations", none, rotation, "1000:0.95", 0, "0:0 1000:1"},
        {"only tweens of opacity are clamped", one, opacity, "0:3 1000:-1 2000:-1!", 0, "0:3 250:0.75 500:0.5 1000:-1 1500:-1"},
        {"scales are not clamped", one, scale, "0:3 1000:-1", 0, "500:1"},
        {"linear is the exact ratio", one, x, "0:0 1000:100", 0, "1:0.1 333:33.3 999:99.9"},
        {"until the last half thousandth", one, x, "0:0 10000:100", 0, "9994:99.94 9995:100 9996:100"},
        {"a curve steps in thousandths", one, x, "0:0 10000:100(easeOut)", 0, "1000:16.06 1004:16.06 1005:16.21 9995:100"},
        {"ease in", one, x, "0:0 1000:100(easeIn)", 0, "500:31.54"},
        {"ease in and out", one, x, "0:0 1000:100(easeInOut)", 0, "500:50"},
        {"anticipate goes back first", one, x, "0:0 1000:100(anticipate)", 0, "100:-4.22"},
        {"overshoot goes too far", one, x, "0:0 1000:100(overshoot)", 0, "900:104.22"},
        {"both", one, x, "0:0 1000:100(anticOver)", 0, "100:-3.76 900:103.76"},
        {"the easing is that of the end", one, x, "0:0(easeIn) 1000:100 2000:0(easeIn)", 0, "500:50 1500:68.46"},
        {"forever starts over", one, x, "0:0 1000:100", 1, "1000:100 1500:50 2000:0 2250:25 3000:0"},
        {"forever and back", one, x, "0:0 1000:100", 2, "1250:75 1500:50 2000:0 2250:25 3000:100"},
        {"a loop runs from 0, not from the first", one, x, "1000:100", 1, "500:50 1500:50 2000:0"},
        {"a loop over nothing", one, x, "0:7", 1, "0:7 5:7"},
        {"the greatest times", one, x, "2147482647:4 2147483647:8", 0, "1073741824:2 2147483647:8"},
        {"the greatest times in a loop", one, x, "0:4 2147483647:8", 2, "0:4 2147483647:8"},
    };
    // clang-format on
    for (const Case& c : cases) {
        const auto timeline =
            timelineWithKeys(c.element, c.type, c.keys, static_cast<PCRepeatBehavior>(c.repeat));
        for (const QString& pair : QString::fromLatin1(c.values).split(u' ')) {
            const int32_t time = pair.section(u':', 0, 0).toInt();
            const float value = timeline->floatValueAtTimeInMS(time);
            EXPECT_NEAR(value, pair.section(u':', 1).toFloat(), 2e-5) << c.what << " at " << time;
            EXPECT_EQ(floatOfValue(timeline->valueAtTimeInMS(time)), value) << c.what;
        }
    }
}

// Looking up in any order gives what a fresh timeline gives: the remembered segment is only a hint.
TEST(KeyedPropertyTimeline, AnswersTheSameInAnyOrder) {
    const auto element = elementWith(1, 1, 0);
    const auto make = [&element] {
        return timelineWithKeys(element, PCPropertyTypeTranslationX, "10:1 20:5 30:2 40:8 50:3");
    };
    const auto timeline = make();
    for (const int32_t time : {45, 5, 15, 60, 25, 10, 50, 49, 0, 35, 34, 12, 55}) {
        EXPECT_EQ(timeline->floatValueAtTimeInMS(time), make()->floatValueAtTimeInMS(time)) << time;
    }
    timeline->deleteKeyframe(timeline->existingKeyframeAtTimeInMS(50));
    timeline->deleteKeyframe(timeline->existingKeyframeAtTimeInMS(40));
    EXPECT_EQ(timeline->floatValueAtTimeInMS(45), 2);
}

TEST(KeyedPropertyTimeline, KeepsValuesFromTooSmallASetup) {
    for (const auto& [value, parsed] : {std::pair(0.0F, 0.05F),
                                        {-0.0F, 0.05F},
                                        {0.04F, 0.05F},
                                        {0.05F, 0.05F},
                                        {0.06F, 0.06F},
                                        {-0.01F, -0.05F},
                                        {-0.05F, -0.05F},
                                        {-0.06F, -0.06F}}) {
        EXPECT_EQ(PCKeyedPropertyTimeline::floatParsedByThreshold(value), parsed) << value;
    }
    struct Write {
        PCPropertyType type;
        double opacity, scaleX, rotation;
        float written, stored;
    };
    for (const Write& write : {Write{PCPropertyTypeScaleX, 1, 0, 0, 2, 40},
                               Write{PCPropertyTypeScaleX, 1, -0.001, 0, 2, -40},
                               Write{PCPropertyTypeScaleX, 1, 4, 0, 2, 0.5F},
                               Write{PCPropertyTypeOpacity, 0.5, 1, 0, 1, 2},
                               Write{PCPropertyTypeZRotation, 1, 1, 0, 1, 0.95F},
                               Write{PCPropertyTypeZRotation, 1, 1, 2, 1, -1},
                               Write{PCPropertyTypeTranslationY, 1, 1, 2, 7, 7}}) {
        const auto element = elementWith(write.opacity, write.scaleX, write.rotation);
        const auto timeline = PCKeyedPropertyTimeline::initForElement(element, write.type);
        const auto keyframe = timeline->setFloatPropertyValue(write.written, 10);
        EXPECT_FLOAT_EQ(keyframe->floatPropertyValue(), write.stored) << write.type;
        EXPECT_FLOAT_EQ(timeline->floatValueAtTimeInMS(10), write.written) << write.type;
    }
    const auto flat =
        PCKeyedPropertyTimeline::initForElement(elementWith(1, 0, 0), PCPropertyTypeScaleX);
    EXPECT_TRUE(std::isfinite(flat->setFloatPropertyValue(3e38F, 0)->floatPropertyValue()));
}

TEST(KeyedPropertyTimeline, FollowsItsSetup) {
    const auto element = elementWith(1, 2, 0);
    const auto timeline = PCKeyedPropertyTimeline::initForElement(element, PCPropertyTypeScaleX);
    timeline->setFloatPropertyValue(3, 0);
    EXPECT_EQ(timeline->floatValueAtTimeInMS(0), 3);
    element->setScale({4, 1});
    EXPECT_EQ(timeline->floatValueAtTimeInMS(0), 6);
}

TEST(KeyedPropertyTimeline, HoldsWhatCannotTween) {
    const auto element = PCElement::init();
    const auto a = addElement(element, u"a"_s);
    const auto b = addElement(element, u"b"_s);
    const QString aName = a->identifier().toString();
    const QString bName = b->identifier().toString();
    element->setImageName(u"setup.png"_s);
    const auto images =
        PCKeyedPropertyTimeline::initForElement(element, PCPropertyTypeImageContents);
    const auto order =
        PCKeyedPropertyTimeline::initForElement(element, PCPropertyTypeChildrenZPositions);
    EXPECT_EQ(images->stringValueAtTimeInMS(5), u"setup.png"_s);
    EXPECT_EQ(order->arrayValueAtTimeInMS(5), QStringList({aName, bName}));
    images->setStringPropertyValue(u"one.png"_s, 100);
    images->setStringPropertyValue(u"two.png"_s, 200);
    order->setArrayPropertyValue({bName, aName}, 100);
    EXPECT_EQ(images->stringValueAtTimeInMS(99), u"setup.png"_s);
    EXPECT_EQ(images->stringValueAtTimeInMS(199), u"one.png"_s);
    EXPECT_EQ(images->stringValueAtTimeInMS(900), u"two.png"_s);
    EXPECT_EQ(order->arrayValueAtTimeInMS(99), QStringList({aName, bName}));
    EXPECT_EQ(order->arrayValueAtTimeInMS(100), QStringList({bName, aName}));
    images->setRepeatBehavior(PCRepeatBehaviorForever);
    EXPECT_EQ(images->stringValueAtTimeInMS(350), u"one.png"_s);
}

TEST(KeyedPropertyTimeline, ScrubsAReversingOrderBackAsItPlays) {
    const auto canvas = PCElement::makeGroup();
    const auto group = addGroup(canvas, u"group"_s);
    const auto order = group->childrenZPositionsTimeline();
    for (const int32_t time : {0, 100, 200}) {
        order->setArrayPropertyValue({QString::number(time)}, time);
    }
    const auto shownAt = [&](int32_t time) { return order->arrayValueAtTimeInMS(time).front(); };
    canvas->childrenZPositionsTimeline()->setRepeatBehavior(PCRepeatBehaviorForeverAutoreverse);
    order->setRepeatBehavior(PCRepeatBehaviorForever);
    EXPECT_EQ(shownAt(250), u"0"_s);
    canvas->childrenZPositionsTimeline()->setRepeatBehavior(PCRepeatBehaviorNever);
    order->setRepeatBehavior(PCRepeatBehaviorForeverAutoreverse);
    EXPECT_EQ(shownAt(250), u"100"_s);
    EXPECT_EQ(shownAt(350), u"0"_s);
}

// Which way the layer animation of an element's place plays is the matter of its parent's order.
TEST(KeyedPropertyTimeline, TakesTheAutoreverseOfChildrenFromTheParent) {
    const auto parent = PCElement::makeGroup();
    const auto child = addGroup(parent, u"child"_s);
    const auto own = child->childrenZPositionsTimeline();
    own->setRepeatBehavior(PCRepeatBehaviorForeverAutoreverse);
    EXPECT_FALSE(own->autoreversesFromCurrentRepeatBehavior());
    own->setRepeatBehavior(PCRepeatBehaviorForever);
    parent->childrenZPositionsTimeline()->setRepeatBehavior(PCRepeatBehaviorForeverAutoreverse);
    EXPECT_TRUE(own->autoreversesFromCurrentRepeatBehavior());
}

TEST(KeyedPropertyTimeline, FindsKeyframes) {
    const auto timeline =
        timelineWithKeys(elementWith(1, 1, 0), PCPropertyTypeTranslationX, "100:1 200:2 300:3");
    constexpr int32_t none = -1;
    struct Row {
        int32_t time, existing, before, after, closest;
    };
    const std::vector<Row> rows = {{0, none, none, 100, 100},        {100, 100, 100, 100, 100},
                                   {150, none, 100, 200, 100},       {151, none, 100, 200, 200},
                                   {300, 300, 300, 300, 300},        {301, none, 300, none, 300},
                                   {INT32_MAX, none, 300, none, 300}};
    const auto timeOf = [](const auto& keyframe) { return keyframe ? keyframe->timeInMS() : none; };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.time);
        EXPECT_EQ(timeOf(timeline->existingKeyframeAtTimeInMS(row.time)), row.existing);
        EXPECT_EQ(timeOf(timeline->keyframeAtOrBeforeTimeInMS(row.time)), row.before);
        EXPECT_EQ(timeOf(timeline->keyframeAtOrAfterTimeInMS(row.time)), row.after);
        EXPECT_EQ(timeOf(timeline->keyframeClosestToTimeInMS(row.time)), row.closest);
        EXPECT_EQ(timeline->timeInMSIsBeforeFirstKeyframe(row.time), row.before == none);
    }
    EXPECT_EQ(timeline->existingKeyframeAtKeyframeIndex(PCKeyedPropertyTimeline::kNotFound),
              nullptr);
    EXPECT_EQ(timeline->keyframesBetweenStartTime(100, 200).size(), 2U);
    EXPECT_EQ(timeline->keyframesBetweenStartTime(101, 199).size(), 0U);
    const auto all = timeline->keyframesSortedByTime();
    EXPECT_EQ(all[1]->nextKeyframe(), all[2]);
    EXPECT_EQ(all[1]->prevKeyframe(), all[0]);
    EXPECT_EQ(all[2]->nextKeyframe(), nullptr);
    EXPECT_EQ(all[0]->prevKeyframe(), nullptr);
    EXPECT_EQ(floatOfValue(timeline->keyframeValueAtOrBeforeTimeInMS(250)), 2);
    EXPECT_EQ(floatOfValue(timeline->keyframeValueAtOrAfterTimeInMS(350)), 0);
    const auto empty = timelineWithKeys(elementWith(1, 1, 0), PCPropertyTypeTranslationX, "");
    EXPECT_EQ(empty->keyframeClosestToTimeInMS(5), nullptr);
    EXPECT_TRUE(empty->timeInMSIsBeforeFirstKeyframe(5));
}

TEST(KeyedPropertyTimeline, DescribesItself) {
    const auto element = elementWith(0.5, 1, 0);
    element->setName(u"Ball %1"_s);
    const auto timeline =
        timelineWithKeys(element, PCPropertyTypeOpacity, "100:1.5(easeIn) 200:0.1!",
                         PCRepeatBehaviorForeverAutoreverse);
    EXPECT_EQ(timeline->debugDescription().toStdString(),
              "[timeline (Ball %1) opacity (count:2): 0.5 (from element 'Ball %1')"
              "<100(easeIn)|1.5-->0.75>, <200(INSTANT)|0.1-->0.05>] "
              "repeatBehavior:forever_autoreverse (AUTOREVERSES)");
    EXPECT_EQ(timeline->keyframesSortedByTime()[0]->description().toStdString(),
              "<100(easeIn)|1.5>");
    const auto master =
        PCKeyedPropertyTimeline::initForElement(nullptr, PCPropertyTypeImageContents);
    master->setFloatPropertyValue(0, 0);
    EXPECT_EQ(master->debugDescription().toStdString(),
              "[timeline imageContents (count:1): <0|0-->0>] repeatBehavior:never");
}

}  // namespace
}  // namespace tweenery::test
