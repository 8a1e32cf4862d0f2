#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <numbers>

#include "base/errors.h"
#include "base/user_defaults.h"
#include "model/preferences/app_preferences.h"
#include "support/model_builder.h"
#include "support/model_recorders.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;

constexpr double pi = std::numbers::pi;

class ElementState : public testing::Test {
 protected:
    void SetUp() override {
        UserDefaults::useMemory();
        project->setViewLayerFactory(&layers);
        group = addGroup(project->canvas(), u"group"_s,
                         {{10, 20}, {3, 1}, pi / 2, {40, 60}, {0.5, 0.5}});
        ball = addElement(group, u"ball"_s, {{30, 40}, {2, 5}, 1, {4, 2}, {0, 0}});
        animation = selectNewAnimation(*project, u"Bounce"_s);
        layers.calls.clear();
    }
    void master(const std::vector<int32_t>& times) {
        for (const int32_t time : times) {
            animation->masterKeyframesTimeline()->setFloatPropertyValue(0, time);
        }
    }

    RecordingLayerFactory layers;
    PCProject::Ptr project = PCProject::init();
    PCElement::Ptr group, ball;
    PCAnimation::Ptr animation;
};

// A master keyframe is a wall that a new keyframe does not reach through.
TEST_F(ElementState, PinsAtTheNeighbouringMasterKeyframes) {
    struct Case {
        const char* what;
        std::vector<int32_t> masters;
        bool tweenOn;
        std::vector<int32_t> present;  // keyframes that are there, opacity 0.5
        int32_t time;
        const char* keys;
    };
    const std::vector<Case> cases = {
        {"no master", {}, true, {}, 2000, "2000:0"},
        {"between two", {1000, 3000}, true, {}, 2000, "1000:1k 2000:0 3000:1k"},
        {"without tweening only the next", {1000, 3000}, false, {}, 2000, "2000:0! 3000:1!k"},
        {"on one, its neighbours", {1000, 2000, 3000}, true, {}, 2000, "1000:1k 2000:0 3000:1k"},
        {"before the first", {1000}, true, {}, 500, "500:0 1000:1k"},
        {"after the last", {1000}, true, {}, 1500, "1000:1k 1500:0"},
        {"on the only one", {1000}, true, {}, 1000, "1000:0"},
        {"what is pinned is the value before the edit",
         {1000, 3000},
         true,
         {0, 4000},
         2000,
         "0:0.5 1000:0.5k 2000:0 3000:0.5k 4000:0.5"},
        {"at the ends of time", {0, INT32_MAX}, true, {}, INT32_MAX, "0:1k 2147483647:0"},
    };
    for (const Case& c : cases) {
        const UndoRegistrationPause pause(project->undoManager());
        const auto timeline = ball->opacityTimeline();
        timeline->removeAllKeyframes();
        animation->masterKeyframesTimeline()->removeAllKeyframes();
        PCAppPreferences::setTweenOn(true);
        for (const int32_t time : c.present) {
            timeline->setFloatPropertyValue(0.5F, time);
        }
        PCAppPreferences::setTweenOn(c.tweenOn);
        master(c.masters);
        const auto keyframe = ball->setOpacity(-3, c.time);
        EXPECT_EQ(keyframe->timeInMS(), c.time) << c.what;
        EXPECT_EQ(keysText(*timeline), c.keys) << c.what;
    }
}

// What the element remembers of its timelines, against the timelines themselves.
void expectValuesOfTimelines(const PCElement& element, const std::string& when) {
    for (const int32_t time : {1975, 0, 30, 30, 46, 999, 5000, 20000001, 2000, 100}) {
        SCOPED_TRACE(when + " at " + std::to_string(time));
        const auto number = [&](PCPropertyType type) {
            const auto timeline = element.timeline(type);
            return timeline ? timeline->floatValueAtTimeInMS(time) : 0;
        };
        const auto image = element.imageContentsTimeline();
        const auto children = element.childrenZPositionsTimeline();
        const ElementValues values = element.valuesAtTimeInMS(time);
        EXPECT_EQ(values.opacity, number(PCPropertyTypeOpacity));
        EXPECT_EQ(values.rotation, number(PCPropertyTypeZRotation));
        EXPECT_EQ(values.scale.x(), double(number(PCPropertyTypeScaleX)));
        EXPECT_EQ(values.scale.y(), double(number(PCPropertyTypeScaleY)));
        EXPECT_EQ(values.translation.x(), double(number(PCPropertyTypeTranslationX)));
        EXPECT_EQ(values.translation.y(), double(number(PCPropertyTypeTranslationY)));
        EXPECT_EQ(*values.image, image ? image->stringValueAtTimeInMS(time) : QString());
        EXPECT_EQ(*values.children,
                  children ? children->arrayValueAtTimeInMS(time) : QStringList());
        EXPECT_EQ(element.scaleAtTimeInMS(time).y(), values.scale.y());
        EXPECT_EQ(element.imageContentsAtTimeInMS(time), *values.image);
    }
}

TEST_F(ElementState, WhatIsRememberedFollowsEveryChange) {
    for (int32_t time = 0; time < 50 * 40; time += 50) {
        const auto number = static_cast<float>(time % 700) / 100;
        ball->setXTranslation(number, time);
        ball->setZRotation(number + 1, time);
        ball->setImageContents(QString::number(time), time);
    }
    ball->setOpacity(0.25F, 100);
    ball->setYScale(3, 900);
    group->setChildrenZPositions(PCProject::sortedSubelementIdentifiers(*group), 500);
    project->undoManager().removeAllActions();
    const auto x = ball->translationXTimeline();
    const auto foreign = PCKeyedPropertyTimeline::initForElement(group, PCPropertyTypeScaleX);
    foreign->setFloatPropertyValue(7, 40);

    struct Change {
        const char* what;
        std::function<void()> make;
    };
    const std::vector<Change> changes{
        {"as keyed", [] {}},
        {"a value keyed", [&] { ball->setXTranslation(-40, 30); }},
        {"undone", [&] { project->undoManager().undo(); }},
        {"a keyframe moved", [&] { x->moveKeyframeAtTimeInMS(1950, 1980); }},
        {"an easing", [&] { x->keyframesSortedByTime()[1]->setEasingMode(PCEasingModeEaseIn); }},
        {"an instant key", [&] { x->keyframesSortedByTime()[1]->setInstantTransition(true); }},
        {"a keyframe deleted", [&] { x->deleteKeyframe(x->existingKeyframeAtTimeInMS(0)); }},
        {"a loop", [&] { x->setRepeatBehavior(PCRepeatBehaviorForever); }},
        {"there and back", [&] { x->setRepeatBehavior(PCRepeatBehaviorForeverAutoreverse); }},
        {"an image order that loops",
         [&] { ball->imageContentsTimeline()->setRepeatBehavior(PCRepeatBehaviorForever); }},
        {"the setup scale", [&] { ball->setScale(QPointF(2, 5)); }},
        {"the setup rotation", [&] { ball->setZRotation(2.5); }},
        {"the setup opacity", [&] { ball->setOpacity(0.5); }},
        {"the setup order", [&] { project->moveElementsToFront({group->children()[0]}); }},
        {"another's timeline", [&] { ball->setTimeline(foreign); }},
        {"which changes", [&] { foreign->setFloatPropertyValue(9, 46); }},
        {"the other's setup scale", [&] { group->setScale(QPointF(3, 3)); }},
        {"and becomes its own", [&] { foreign->setElement(ball); }},
        {"all removed", [&] { x->removeAllKeyframes(); }},
        {"no timelines", [&] { ball->clearTimelines(); }},
    };
    for (const Change& change : changes) {
        change.make();
        for (const PCElement::Ptr& element : {ball, group, project->canvas()}) {
            expectValuesOfTimelines(*element, change.what);
        }
    }
    EXPECT_EQ(ball->valuesAtTimeInMS(100).opacity, 0) << "in setup mode";
    EXPECT_TRUE(ball->valuesAtTimeInMS(100).image->isNull());
}

TEST_F(ElementState, ImagesAndOrdersJumpAtTheirPinsToo) {
    master({100, 300});
    ball->setImageName(u"setup.png"_s);
    ball->setImageContents(u"a.png"_s, 200);
    EXPECT_EQ(keysText(*ball->imageContentsTimeline()),
              "100:setup.png!k 200:a.png! 300:setup.png!k");
    const auto order = PCProject::sortedSubelementIdentifiers(*group);
    group->setChildrenZPositions(order, 300);
    EXPECT_EQ(group->childrenZPositionsTimeline()->keyframesCount(), 2U);
    EXPECT_EQ(group->childrenZPositionsAtTimeInMS(250), order);
    EXPECT_EQ(ball->imageContentsAtTimeInMS(250), u"a.png"_s);
}

TEST_F(ElementState, WalksBackAndForth) {
    master({0, 500, 1000});
    // The flag of Key All is no undo step: what a redo makes anew lacks it.
    const auto keys = [this] {
        std::string text;
        for (const PCPropertyType type : elementTimelineTypes()) {
            text += keysText(*ball->timeline(type)) + '|';
        }
        std::erase(text, 'k');
        return text;
    };
    UndoWalk walk(*project, [&] { return keys() + exactState(*ball); });
    walk.edit([&] { ball->setOpacity(0.5F, 250); });
    walk.edit([&] { ball->setScale({4, 5}, 250); });
    walk.edit([&] { ball->setTranslation({1, 2}, 250); });
    walk.edit([&] { ball->setZRotation(2, 750); });
    walk.edit([&] { ball->setImageContents(u"a.png"_s, 250); });
    walk.edit([&] { ball->setScale({3, 3}, 250); });
    walk.check();
}

TEST_F(ElementState, TellsLayersAndListeners) {
    NotificationRecorder notifications(*project);
    struct Case {
        std::function<void()> set;
        size_t synced;  // how often the layer is, at the time
        size_t posts;
        const char* posted;
    };
    const char *scale = "elementscalechangenotification",
               *moved = "elementpositionchangenotification";
    const std::vector<Case> cases = {
        {[&] { ball->setXScale(4, 7); }, 1, 1, scale},
        {[&] { ball->setYScale(4, 7); }, 1, 1, scale},
        {[&] { ball->setXTranslation(4, 7); }, 1, 1, moved},
        {[&] { ball->setYTranslation(4, 7); }, 1, 1, moved},
        {[&] { ball->setZRotation(4, 7); }, 0, 1, "elementrotationchangenotification"},
        {[&] { ball->setOpacity(4, 7); }, 1, 1, "elementopacitychangenotification"},
        {[&] { ball->setScale(QPointF(5, 5), 7); }, 3, 3, scale},
        {[&] { ball->setScale(QPointF(5, 6), 7); }, 2, 2, scale},  // one differs
        {[&] { ball->setScale(QPointF(5, 6), 7); }, 1, 1, scale},  // none does
        {[&] { ball->setTranslation(QPointF(4, 9), 7); }, 2, 2, moved},
        {[&] { ball->setImageContents({}, 7); }, 1, 1, "elementcontentschangenotification"},
        {[&] { ball->setChildrenZPositions({}, 7); }, 1, 1,
         "elementchildrenzpositionchangenotification"},
    };
    for (size_t i = 0; i < cases.size(); ++i) {
        const Case& c = cases[i];
        layers.calls.clear();
        notifications.posts.clear();
        c.set();
        EXPECT_EQ(layers.calls, std::vector<std::string>(c.synced, "ball: all at 7")) << i;
        EXPECT_EQ(notifications.posts,
                  std::vector<std::string>(c.posts, std::string("ball: ") + c.posted))
            << i;
    }
    layers.calls.clear();
    ball->removeAllTimelines();
    EXPECT_THAT(layers.calls, ElementsAre("ball: stop animations", "ball: all"));
    EXPECT_EQ(ball->setXScale(4, 7), nullptr);
    EXPECT_EQ(ball->opacityAtTimeInMS(7), 0) << "in setup mode";
    EXPECT_TRUE(ball->imageContentsAtTimeInMS(7).isNull());
}

TEST_F(ElementState, RefusesWhatItCannotKey) {
    EXPECT_THROW(ball->setFloatValue(1, 0, ball->imageContentsTimeline()), AssertionFailure);
    EXPECT_EQ(ball->setOpacity(std::numeric_limits<float>::quiet_NaN(), 5), nullptr);
    EXPECT_EQ(ball->setXScale(std::numeric_limits<float>::infinity(), 5), nullptr);
    EXPECT_TRUE(ball->opacityTimeline()->isEmpty() && ball->scaleXTimeline()->isEmpty());
    // A damaged package may have filed another property under a name.
    ball->setTimeline(PCKeyedPropertyTimeline::initForElement(ball, PCPropertyTypeImageContents),
                      PCPropertyTypeScaleX);
    EXPECT_EQ(ball->setXScale(2, 5), nullptr);
}

TEST_F(ElementState, SumsUpOnTheCanvas) {
    project->canvas()->setScale({9, 9});
    ball->setTranslation({1, 2}, 100);
    EXPECT_EQ(ball->positionAtTimeInMS(100).x(), 31);
    EXPECT_EQ(ball->positionAtTimeInMS(50).x(), 30.5);
    EXPECT_EQ(ball->canvasXScaleAtTimeInMS(0), 6);
    EXPECT_EQ(ball->canvasYScaleAtTimeInMS(0), 5);
    EXPECT_EQ(project->canvas()->canvasXScaleAtTimeInMS(0), 1);
    EXPECT_EQ(ball->canvasRotationAtTimeInMS(0), 1.0F + static_cast<float>(pi / 2));

    // Turned by a quarter about the middle of the group, (20, 30): (30, 40) comes to (10, 40).
    group->setXTranslation(7, 0);
    const QPointF translation = ball->canvasTranslationAtTimeInMS(100);
    EXPECT_NEAR(translation.x(), 7 + 1 + 10 - 30, 1e-5);
    EXPECT_NEAR(translation.y(), 2 + 40 - 40, 1e-5);
    group->setZRotation(0, 0);
    EXPECT_NEAR(ball->canvasTranslationAtTimeInMS(100).x(), 8, 1e-6);
    EXPECT_EQ(project->canvas()->canvasTranslationAtTimeInMS(100).x(), 0);
}

TEST_F(ElementState, AnAnchorMovesWithoutMovingTheElement) {
    ball->setScale({3, 2}, 100);
    ball->setZRotation(0.3F, 100);
    ball->setTranslation({5, -4}, 100);
    const auto placeOf = [this](QPointF corner) {
        QTransform transform;
        const QPointF position = ball->positionAtTimeInMS(100);
        transform.translate(position.x(), position.y());
        transform.rotateRadians(static_cast<double>(ball->zRotationAtTimeInMS(100)));
        const QPointF scale = ball->scaleAtTimeInMS(100);
        transform.scale(scale.x(), scale.y());
        return transform.map(corner - ball->anchorPointInPts());
    };
    const QPointF before = placeOf({4, 2});
    ball->setAnchorPoint({1, 0.25}, 100);
    EXPECT_EQ(ball->anchorPoint().x(), 1);
    // Translations are 32-bit numbers.
    EXPECT_NEAR(placeOf({4, 2}).x(), before.x(), 1e-5);
    EXPECT_NEAR(placeOf({4, 2}).y(), before.y(), 1e-5);
}

}  // namespace
}  // namespace tweenery::test
