#include "editor/layers/timeline_animations.h"

#include <gmock/gmock.h>

#include <cmath>

#include "support/model_builder.h"

using namespace Qt::StringLiterals;
using testing::ElementsAre;

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

// What the comparison of model, layers and export does not meet.
TEST_F(TimelineAnimationsTest, AnOrderMayNameStrangersAndForgetChildren) {
    buildTree(*project, "a b");  // hero, a, b
    const auto id = [this](const QString& name) {
        return named(*project, name)->identifier().toString();
    };
    const auto order = PCKeyedPropertyTimeline::initForElement(project->canvas(),
                                                               PCPropertyTypeChildrenZPositions);
    // Who is named twice counts first; b is not named.
    order->setArrayPropertyValue({u"gone"_s, id(u"a"_s), id(u"hero"_s), id(u"a"_s)}, 0);
    project->canvas()->setTimeline(order);
    TimelineAnimations animations(*project);
    for (const auto& [name, place] : {std::pair{u"hero"_s, 2.0}, {u"a"_s, 1.0}, {u"b"_s, 2.0}}) {
        const auto stacking =
            animations.animation(*named(*project, name)->childrenZPositionsTimeline());
        ASSERT_TRUE(stacking);
        EXPECT_THAT(stacking->values, ElementsAre(place)) << name.toStdString();
    }
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
