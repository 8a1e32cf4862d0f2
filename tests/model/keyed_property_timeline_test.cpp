#include "model/keyed_property_timeline.h"

#include <gtest/gtest.h>

#include "model/easing.h"
#include "platform/errors.h"
#include "support/model_builder.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

struct Key {
    int32_t time;
    float stored;
    PCEasingMode easing = PCEasingModeLinear;
    bool instant = false;
};

PCKeyedPropertyTimeline::Ptr timelineOf(const PCElement::Ptr& element, int32_t type,
                                        const std::vector<Key>& keys, int64_t repeat = 0) {
    auto timeline = PCKeyedPropertyTimeline::initForElement(element, type);
    for (const Key& key : keys) {
        const auto keyframe = timeline->setStoredPropertyValue(key.stored, key.time);
        keyframe->setEasingMode(key.easing);
        keyframe->setInstantTransition(key.instant);
    }
    timeline->setRepeatBehavior(repeat);
    return timeline;
}

// The setup values of each element.
PCElement::Ptr elementWith(double opacity, double scaleX, double rotation) {
    auto element = PCElement::init();
    element->setOpacity(opacity);
    element->setScale({scaleX, 1});
    element->setZRotation(rotation);
    return element;
}

TEST(KeyedPropertyTimeline, AnswersTheValueAtATime) {
    using T = std::vector<std::pair<int32_t, float>>;  // at a time, the value
    struct Case {
        const char* what;
        PCElement::Ptr element;
        int32_t type;
        std::vector<Key> keys;
        int64_t repeat;
        T values;
    };
    const auto one = elementWith(1, 1, 0);
    const auto half = elementWith(0.5, 2, 1);
    const auto none = elementWith(0.02, 0, 0);
    const auto x = PCPropertyTypeTranslationX;
    const std::vector<Key> ramp{{0, 0}, {1000, 100}};
    const auto eased = [](PCEasingMode mode) {
        return std::vector<Key>{{0, 0}, {1000, 100, mode}};
    };
    const std::vector<Case> cases = {
        {"an empty one answers setup", half, PCPropertyTypeOpacity, {}, 0, T{{0, 0.5F}, {9, 0.5F}}},
        {"tweens from setup, then holds",
         one,
         PCPropertyTypeOpacity,
         {{1000, 0.5F}},
         0,
         T{{0, 1}, {500, 0.75F}, {1000, 0.5F}, {2000, 0.5F}}},
        {"an instant first keyframe holds setup",
         one,
         PCPropertyTypeOpacity,
         {{1000, 0.5F, PCEasingModeLinear, true}},
         0,
         T{{0, 1}, {999, 1}, {1000, 0.5F}}},
        {"a keyframe at 0 hides setup",
         one,
         PCPropertyTypeOpacity,
         {{0, 0.25F}},
         0,
         T{{0, 0.25F}, {50, 0.25F}}},
        {"an instant keyframe holds the one before",
         one,
         x,
         {{0, 1}, {100, 5, PCEasingModeLinear, true}},
         0,
         T{{99, 1}, {100, 5}, {101, 5}}},
        {"ratios of setup", half, PCPropertyTypeScaleX, {{0, 3}}, 0, T{{0, 6}}},
        {"differences from setup", half, PCPropertyTypeZRotation, {{0, 0.5F}}, 0, T{{0, 1.5F}}},
        {"offsets", half, x, {{0, 3}}, 0, T{{0, 3}}},
        {"a setup of 0 counts as 0.05, but starts at 0",
         none,
         PCPropertyTypeScaleX,
         {{1000, 40}},
         0,
         T{{0, 0}, {500, 1}, {1000, 2}}},
        {"a setup rotation of 0 counts as 0.05",
         none,
         PCPropertyTypeZRotation,
         {{1000, 0.95F}},
         0,
         T{{0, 0}, {1000, 1}}},
        {"only tweens of opacity are clamped",
         one,
         PCPropertyTypeOpacity,
         {{0, 3}, {1000, -1}, {2000, -1, PCEasingModeLinear, true}},
         0,
         T{{0, 3}, {250, 0.75F}, {500, 0.5F}, {1000, -1}, {1500, -1}}},
        {"scales are not clamped", one, PCPropertyTypeScaleX, {{0, 3}, {1000, -1}}, 0, T{{500, 1}}},
        {"linear is the exact ratio", one, x, ramp, 0, T{{1, 0.1F}, {333, 33.3F}, {999, 99.9F}}},
        {"until the last half thousandth",
         one,
         x,
         {{0, 0}, {10000, 100}},
         0,
         T{{9994, 99.94F}, {9995, 100}, {9996, 100}}},
        {"a curve steps in thousandths",
         one,
         x,
         {{0, 0}, {10000, 100, PCEasingModeEaseOut}},
         0,
         T{{1000, 16.06F}, {1004, 16.06F}, {9995, 100}}},
        {"ease in", one, x, eased(PCEasingModeEaseIn), 0, T{{500, 31.54F}}},
        {"ease in and out", one, x, eased(PCEasingModeEaseInOut), 0, T{{500, 50}}},
        {"anticipate goes back first", one, x, eased(PCEasingModeAnticipate), 0, T{{100, -4.22F}}},
        {"overshoot goes too far", one, x, eased(PCEasingModeOvershoot), 0, T{{900, 104.22F}}},
        {"both", one, x, eased(PCEasingModeAnticOver), 0, T{{100, -3.76F}, {900, 103.76F}}},
        {"the easing is that of the segment's end",
         one,
         x,
         {{0, 0, PCEasingModeEaseIn}, {1000, 100}, {2000, 0, PCEasingModeEaseIn}},
         0,
         T{{500, 50}, {1500, 68.46F}}},
        {"forever starts over", one, x, ramp, 1,
         T{{1000, 100}, {1500, 50}, {2000, 0}, {2250, 25}, {3000, 0}}},
        {"forever and back", one, x, ramp, 2,
         T{{1250, 75}, {1500, 50}, {2000, 0}, {2250, 25}, {3000, 100}}},
        {"a loop runs from 0, not from the first keyframe",
         one,
         x,
         {{1000, 100}},
         1,
         T{{500, 50}, {1500, 50}, {2000, 0}}},
        {"a loop over nothing", one, x, {{0, 7}}, 1, T{{0, 7}, {5, 7}}},
        {"the greatest times",
         one,
         x,
         {{INT32_MAX - 1000, 4}, {INT32_MAX, 8}},
         0,
         T{{1000, 4 * 1000.0F / 2147482647.0F}, {INT32_MAX, 8}}},
        {"the greatest times in a loop",
         one,
         x,
         {{0, 4}, {INT32_MAX, 8}},
         2,
         T{{0, 4}, {INT32_MAX, 8}}},
    };
    for (const Case& c : cases) {
        const auto timeline = timelineOf(c.element, c.type, c.keys, c.repeat);
        for (const auto& [time, value] : c.values) {
            EXPECT_FLOAT_EQ(timeline->floatValueAtTimeInMS(time), value)
                << c.what << ", at " << time;
            EXPECT_EQ(floatOfValue(timeline->valueAtTimeInMS(time)),
                      timeline->floatValueAtTimeInMS(time))
                << c.what << ", boxed, at " << time;
        }
    }
}

// Looking up in any order gives what a fresh timeline gives: the remembered segment is only a hint.
TEST(KeyedPropertyTimeline, AnswersTheSameInAnyOrder) {
    const auto element = elementWith(1, 1, 0);
    const std::vector<Key> keys{{10, 1}, {20, 5}, {30, 2}, {40, 8}, {50, 3}};
    const auto timeline = timelineOf(element, PCPropertyTypeTranslationX, keys);
    for (const int32_t time : {45, 5, 15, 60, 25, 10, 50, 49, 0, 35, 34, 12}) {
        const auto fresh = timelineOf(element, PCPropertyTypeTranslationX, keys);
        EXPECT_EQ(timeline->floatValueAtTimeInMS(time), fresh->floatValueAtTimeInMS(time)) << time;
    }
    timeline->deleteKeyframe(timeline->existingKeyframeAtTimeInMS(50));
    timeline->deleteKeyframe(timeline->existingKeyframeAtTimeInMS(40));
    EXPECT_EQ(timeline->floatValueAtTimeInMS(45), 2);
}

TEST(KeyedPropertyTimeline, KeepsValuesFromTooSmallASetup) {
    struct Row {
        float value, parsed;
    };
    for (const Row row : {Row{0, 0.05F},
                          {-0.0F, 0.05F},
                          {0.04F, 0.05F},
                          {0.05F, 0.05F},
                          {0.06F, 0.06F},
                          {-0.01F, -0.05F},
                          {-0.05F, -0.05F},
                          {-0.06F, -0.06F}}) {
        EXPECT_EQ(PCKeyedPropertyTimeline::floatParsedByThreshold(row.value), row.parsed)
            << row.value;
    }
    struct Write {
        PCPropertyType type;
        double opacity, scaleX, rotation;
        float written, stored;
    };
    const std::vector<Write> writes = {
        {PCPropertyTypeScaleX, 1, 0, 0, 2, 40},
        {PCPropertyTypeScaleX, 1, -0.001, 0, 2, -40},
        {PCPropertyTypeScaleX, 1, 4, 0, 2, 0.5F},
        {PCPropertyTypeOpacity, 0.5, 1, 0, 1, 2},
        {PCPropertyTypeZRotation, 1, 1, 0, 1, 0.95F},
        {PCPropertyTypeZRotation, 1, 1, 2, 1, -1},
        {PCPropertyTypeTranslationY, 1, 1, 2, 7, 7},
        {PCPropertyTypeScaleX, 1, 0, 0, 3e38F, std::numeric_limits<float>::max()},
    };
    for (const Write& write : writes) {
        const auto element = elementWith(write.opacity, write.scaleX, write.rotation);
        const auto timeline = PCKeyedPropertyTimeline::initForElement(element, write.type);
        const auto keyframe = timeline->setFloatPropertyValue(write.written, 10);
        EXPECT_FLOAT_EQ(keyframe->floatPropertyValue(), write.stored) << write.type;
        if (write.written < 1e38F) {
            EXPECT_FLOAT_EQ(timeline->floatValueAtTimeInMS(10), write.written) << write.type;
            EXPECT_EQ(floatOfValue(timeline->valueOfKeyframe(*keyframe)),
                      timeline->floatValueAtTimeInMS(10));
        }
    }
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

// Whether a children order plays backward is the matter of its parent's children order.
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
    const auto timeline = timelineOf(elementWith(1, 1, 0), PCPropertyTypeTranslationX,
                                     {{100, 1}, {200, 2}, {300, 3}});
    constexpr int32_t none = -1;
    struct Row {
        int32_t time, existing, before, after, closest;
    };
    const std::vector<Row> rows = {
        {0, none, none, 100, 100},  {100, 100, 100, 100, 100},   {149, none, 100, 200, 100},
        {150, none, 100, 200, 100}, {151, none, 100, 200, 200},  {200, 200, 200, 200, 200},
        {300, 300, 300, 300, 300},  {301, none, 300, none, 300}, {INT32_MAX, none, 300, none, 300},
    };
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
    const auto empty = timelineOf(elementWith(1, 1, 0), PCPropertyTypeTranslationX, {});
    EXPECT_EQ(empty->keyframeClosestToTimeInMS(5), nullptr);
    EXPECT_TRUE(empty->timeInMSIsBeforeFirstKeyframe(5));
}

TEST(KeyedPropertyTimeline, AnswersTheExport) {
    const auto element = elementWith(0.5, 1, 0);
    const auto timeline = timelineOf(element, PCPropertyTypeOpacity, {{0, 0.5F}, {100, 0.5F}});
    EXPECT_TRUE(timeline->EXPORT_allKeyframeValuesEqual(0.5F));
    // Stored ratios are compared with the absolute value at 0.
    EXPECT_FALSE(timeline->EXPORT_isNonChanging());
    EXPECT_EQ(timeline->EXPORT_propertyValueAsStringAtTimeInMS(50), u"0.250"_s);
    timeline->EXPORT_setDurationInTimeInMS(100);
    EXPECT_EQ(keysText(*timeline), "0:0.5 100:0.5");
    timeline->EXPORT_setDurationInTimeInMS(150);
    EXPECT_EQ(keysText(*timeline), "0:0.5 100:0.5 150:0.5");
    timeline->setRepeatBehavior(PCRepeatBehaviorForever);
    timeline->EXPORT_setDurationInTimeInMS(900);
    EXPECT_EQ(timeline->durationInMS(), 150);
    const auto order = element->childrenZPositionsTimeline();
    order->EXPORT_setDurationInTimeInMS(100);
    EXPECT_TRUE(order->isEmpty() && order->EXPORT_isNonChanging());
}

TEST(KeyedPropertyTimeline, DescribesItself) {
    const auto element = elementWith(0.5, 1, 0);
    element->setName(u"Ball %1"_s);
    const auto timeline =
        timelineOf(element, PCPropertyTypeOpacity,
                   {{100, 1.5F, PCEasingModeEaseIn}, {200, 0.1F, PCEasingModeLinear, true}}, 2);
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
