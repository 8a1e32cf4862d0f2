#include "editor/layers/timeline_animations.h"

#include <gmock/gmock.h>

#include <cmath>

#include "base/errors.h"
#include "support/model_builder.h"

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::ElementsAreArray;

namespace tweenery::test {
namespace {

class TimelineAnimationsTest : public testing::Test {
 protected:
    PCProject::Ptr project = PCProject::init();
    PCElement::Ptr hero;

    void SetUp() override {
        project->setBackingScale(1);
        hero = addElement(project->canvas(), u"hero"_s, {.opacity = 0.5});
        selectNewAnimation(*project, u"walk"_s);
    }
    PCKeyedPropertyTimeline::Ptr attach(const PCElement::Ptr& element, PCPropertyType type,
                                        const char* keys,
                                        PCRepeatBehavior repeat = PCRepeatBehaviorNever) const {
        const auto timeline = timelineWithKeys(element, type, keys, repeat);
        element->setTimeline(timeline);
        return timeline;
    }
    std::optional<KeyframeAnimation> animate(const PCKeyedPropertyTimeline& timeline) const {
        return TimelineAnimations(*project).animation(timeline);
    }
    void addImage(const QString& filename, QColor color) const {
        QImage image(2, 2, QImage::Format_ARGB32_Premultiplied);
        image.fill(color);
        project->imageSetManager().addImageSetWithPCImage(
            std::make_shared<PCImage>(image, filename));
    }
};

TEST_F(TimelineAnimationsTest, ListsTheKeyframes) {
    struct Case {
        const char* keys;
        std::vector<double> values;  // of an x translation: as stored, 0 at setup
        std::vector<double> keyTimes;
        double duration;
    };
    const auto third = static_cast<double>(1.0F / 3.0F);
    const Case cases[] = {
        {"1000:7", {0, 7}, {0, 1}, 1},
        {"0:1 500:2! 1000:3", {1, 1, 2, 3}, {0, 0.4995, 0.5, 1}, 1},
        {"500:2!", {0, 0, 2}, {0, 0.999, 1}, 0.5},
        {"0:1 1000:2 3000:3", {1, 2, 3}, {0, third, 1}, 3},
        {"0:1! 4:2! 8:3!",
         {1, 1, 2, 2, 3},
         {0, 3.5 / 8, 0.5, 7.5 / 8, 1},
         static_cast<double>(0.008F)},
        {"0:4", {4}, {0}, 0},
        {"0:4!", {4}, {0}, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.keys);
        const auto animation = animate(*attach(hero, PCPropertyTypeTranslationX, c.keys));
        ASSERT_TRUE(animation);
        EXPECT_NO_THROW(animation->check());
        EXPECT_EQ(animation->property, LayerProperty::TranslationX);
        EXPECT_THAT(animation->values, ElementsAreArray(c.values));
        EXPECT_THAT(animation->keyTimes, ElementsAreArray(c.keyTimes));
        EXPECT_EQ(animation->timingFunctions.size(), c.values.size() - 1);
        EXPECT_EQ(animation->duration, c.duration);
        EXPECT_EQ(animation->beginTime, 0);
        EXPECT_EQ(animation->valueAt(-1), c.values.front());
        EXPECT_EQ(animation->valueAt(1e6), c.values.back());
    }
}

TEST_F(TimelineAnimationsTest, ValuesAreAbsoluteWithTheSetupStateBeforeTheFirst) {
    const auto opacity = animate(*attach(hero, PCPropertyTypeOpacity, "200:0.5 400:2"));
    ASSERT_TRUE(opacity);
    EXPECT_THAT(opacity->values, ElementsAre(0.5, 0.25, 1));
}

TEST_F(TimelineAnimationsTest, ASpanHasTheEasingOfItsEnd) {
    const auto animation = animate(*attach(hero, PCPropertyTypeTranslationX,
                                           "0:1(easeIn) 100:2(overshoot) 200:3!(easeOut) 300:4"));
    ASSERT_TRUE(animation);
    std::vector<double> firstControls;
    for (const TimingFunction& function : animation->timingFunctions) {
        firstControls.insert(firstControls.end(), {function.x2, function.y2});
    }
    EXPECT_THAT(firstControls, ElementsAre(0.58, 1.3, 0.58, 1, 0.58, 1, 1, 1));
}

TEST_F(TimelineAnimationsTest, RepeatsAsTheTimelineDoes) {
    struct Case {
        PCRepeatBehavior behavior;
        double count;
        bool autoreverses;
    };
    const Case cases[] = {{PCRepeatBehaviorNever, 0, false},
                          {PCRepeatBehaviorForever, INFINITY, false},
                          {PCRepeatBehaviorForeverAutoreverse, INFINITY, true}};
    const auto child = addElement(addGroup(project->canvas(), u"group"_s), u"child"_s);
    const auto group = named(*project, u"group"_s);
    for (const Case& c : cases) {
        const auto own = animate(*attach(hero, PCPropertyTypeOpacity, "0:1 100:0", c.behavior));
        ASSERT_TRUE(own);
        EXPECT_EQ(own->repeatCount, c.count);
        EXPECT_EQ(own->autoreverses, c.autoreverses);
        // A stacking repeats as its parent's order does.
        const auto order =
            PCKeyedPropertyTimeline::initForElement(group, PCPropertyTypeChildrenZPositions);
        order->setArrayPropertyValue({child->identifier().toString()}, 100);
        order->setRepeatBehavior(c.behavior);
        group->setTimeline(order);
        const auto stacking = animate(*child->childrenZPositionsTimeline());
        ASSERT_TRUE(stacking);
        EXPECT_EQ(stacking->repeatCount, c.count);
        EXPECT_EQ(stacking->autoreverses, c.autoreverses);
    }
}

TEST_F(TimelineAnimationsTest, AStackingIsThePlaceInTheParentsOrder) {
    buildTree(*project, "a b");  // hero, a, b
    const auto id = [this](const QString& name) {
        return named(*project, name)->identifier().toString();
    };
    const auto order = PCKeyedPropertyTimeline::initForElement(project->canvas(),
                                                               PCPropertyTypeChildrenZPositions);
    order->setArrayPropertyValue({id(u"b"_s), id(u"a"_s), id(u"hero"_s)}, 100);
    // Somebody who is gone has a place; who is named twice counts first; b is not named.
    order->setArrayPropertyValue({u"gone"_s, id(u"a"_s), id(u"hero"_s), id(u"a"_s)}, 200);
    for (const auto& keyframe : order->keyframesSortedByTime()) {
        keyframe->setInstantTransition(true);
    }
    project->canvas()->setTimeline(order);
    TimelineAnimations animations(*project);
    const auto values = [&](const QString& name) {
        const auto timeline = named(*project, name)->childrenZPositionsTimeline();
        const auto animation = animations.animation(*timeline);
        return animation ? animation->values : std::vector<double>();
    };
    EXPECT_THAT(values(u"hero"_s), ElementsAre(0, 0, 2, 2, 2));
    EXPECT_THAT(values(u"a"_s), ElementsAre(1, 1, 1, 1, 1));
    EXPECT_THAT(values(u"b"_s), ElementsAre(2, 2, 0, 0, 2));
}

// The clock, the duration and the key times are all rounded to 32 bits.
TEST_F(TimelineAnimationsTest, AnInstantKeyframeShowsInItsMillisecond) {
    for (const int32_t duration : {7, 100, 333, 777, 1200, 3600, 12345, 60000, 600000}) {
        SCOPED_TRACE(duration);
        for (int32_t step = 1; step < 50; ++step) {
            const int32_t time = duration * step / 50;
            if (time == 0) { continue; }
            const std::string keys =
                "0:0 " + std::to_string(time) + ":1! " + std::to_string(duration) + ":1";
            const auto timeline = attach(hero, PCPropertyTypeTranslationX, keys.c_str(),
                                         PCRepeatBehaviorForeverAutoreverse);
            const auto animation = animate(*timeline);
            ASSERT_TRUE(animation);
            const auto valueAt = [&](int32_t timeInMS) {
                return animation->valueAt(static_cast<double>(static_cast<float>(timeInMS) / 1000));
            };
            const int32_t mirrored = 2 * duration - time;
            ASSERT_EQ(valueAt(time - 1), 0) << time;
            ASSERT_EQ(valueAt(time), 1) << time;
            ASSERT_EQ(valueAt(mirrored), 1) << time << " on the way back";
            ASSERT_NEAR(valueAt(mirrored + 1), 0, 1e-6) << time << " on the way back";
        }
    }
}

TEST_F(TimelineAnimationsTest, ImagesAreLookedUpOnceAndMayBeMissing) {
    addImage(u"red.png"_s, Qt::red);
    addImage(u"blue.png"_s, Qt::blue);
    hero->setImageName(u"red.png"_s);
    const auto timeline =
        PCKeyedPropertyTimeline::initForElement(hero, PCPropertyTypeImageContents);
    timeline->setStringPropertyValue(u"blue.png"_s, 100)->setInstantTransition(true);
    timeline->setStringPropertyValue(u"gone.png"_s, 200);
    timeline->setStringPropertyValue(u"red.png"_s, 300);
    const auto animation = animate(*timeline);
    ASSERT_TRUE(animation);
    EXPECT_EQ(animation->property, LayerProperty::Contents);
    const auto& images = animation->images;
    ASSERT_EQ(images.size(), 5U);
    EXPECT_EQ(images[0].pixelColor(0, 0), QColor(Qt::red));
    EXPECT_EQ(images[2].pixelColor(0, 0), QColor(Qt::blue));
    EXPECT_TRUE(images[3].isNull());
    EXPECT_EQ(images[0].cacheKey(), images[1].cacheKey());
    EXPECT_EQ(images[0].cacheKey(), images[4].cacheKey());
}

TEST_F(TimelineAnimationsTest, NothingToPlayGivesNone) {
    const auto canvas = project->canvas();
    const auto& keys = "0:1 100:2";
    EXPECT_FALSE(animate(*attach(canvas, PCPropertyTypeOpacity, keys))) << "the canvas";
    EXPECT_FALSE(animate(*attach(hero, PCPropertyTypeOpacity, ""))) << "no keyframes";
    EXPECT_FALSE(animate(*hero->childrenZPositionsTimeline())) << "its parent has no order";
    EXPECT_FALSE(animate(*timelineWithKeys(nullptr, PCPropertyTypeOpacity, keys)));
    EXPECT_FALSE(animate(*timelineWithKeys(hero, PCPropertyTypeScale, keys))) << "a composite";
}

TEST_F(TimelineAnimationsTest, KeyTimesRiseHoursFromTheStart) {
    const auto animation = animate(*attach(hero, PCPropertyTypeTranslationX,
                                           "2147483000:1 2147483001:2! 2147483002:3! "
                                           "2147483600:4! 2147483646:5! 2147483647:6!"));
    ASSERT_TRUE(animation);
    EXPECT_NO_THROW(animation->check());
    EXPECT_EQ(animation->keyTimes.back(), 1);
}

TEST_F(TimelineAnimationsTest, KeysNameTheAnimationAndTheProperty) {
    struct Case {
        PCPropertyType type;
        const char* key;
    };
    const Case cases[] = {
        {PCPropertyTypeImageContents, "walk_ImageContents"},
        {PCPropertyTypeOpacity, "walk_Opacity"},
        {PCPropertyTypeZRotation, "walk_Rotation"},
        {PCPropertyTypeChildrenZPositions, "walk_ZPosition"},
        {PCPropertyTypeScale, "walk_Scale"},
        {PCPropertyTypeTranslation, "walk_Translation"},
        {PCPropertyTypeScaleX, "walk_Scale.X"},
        {PCPropertyTypeScaleY, "walk_Scale.Y"},
        {PCPropertyTypeTranslationX, "walk_Translation.X"},
        {PCPropertyTypeTranslationY, "walk_Translation.Y"},
        {PCPropertyTypeZPosition, "walk_ZPosition"},
    };
    for (const Case& c : cases) {
        const auto timeline = PCKeyedPropertyTimeline::initForElement(hero, c.type);
        EXPECT_EQ(TimelineAnimations::animationKeyForTimelineOnAnimationName(*timeline, u"walk"_s)
                      .toStdString(),
                  c.key);
    }
    try {
        TimelineAnimations::animationQualifierForPropertyType(PCPropertyTypeKeyAll);
        ADD_FAILURE() << "Key All is not played";
    } catch (const AssertionFailure& failure) {
        EXPECT_EQ(failure.message(), u"* propertype not supported for animationqualifier"_s);
    }
}

// A search of each array for each child would make a thousand million comparisons.
TEST_F(TimelineAnimationsTest, AThousandChildrenAndAThousandOrdersAreOrdinary) {
    constexpr int kCount = 1000;
    const UndoRegistrationPause pause(project->undoManager());
    const auto group = addGroup(project->canvas(), u"group"_s);
    for (int i = 1; i <= kCount; ++i) {
        addElement(group, QString::number(i));
    }
    QStringList children = PCProject::sortedSubelementIdentifiers(*group);
    const auto order =
        PCKeyedPropertyTimeline::initForElement(group, PCPropertyTypeChildrenZPositions);
    for (int i = 1; i <= kCount; ++i) {
        std::rotate(children.begin(), children.begin() + 1, children.end());
        order->setArrayPropertyValue(children, i);
    }
    group->setTimeline(order);
    TimelineAnimations animations(*project);
    for (const PCElement::Ptr& child : group->children()) {
        const auto animation = animations.animation(*child->childrenZPositionsTimeline());
        ASSERT_TRUE(animation);
        ASSERT_EQ(animation->values.back(), child->index()) << "once around";
    }
}

}  // namespace
}  // namespace tweenery::test
