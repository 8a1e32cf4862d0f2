#include "editor/timeline/last_keyframe_time.h"

#include <gtest/gtest.h>

#include "support/model_builder.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

TEST(LastKeyframeTime, CountsAllTimelinesOfTheElementsInTheTree) {
    const auto project = PCProject::init();
    buildTree(*project, "A G{B}");
    EXPECT_EQ(lastKeyframeTimeInMS(*project), -1);
    const auto animation = selectNewAnimation(*project, u"Bounce"_s);
    EXPECT_EQ(lastKeyframeTimeInMS(*project), 0);
    const auto child = named(*project, u"B"_s);
    int32_t time = 100;
    for (const PCPropertyType type : elementTimelineTypes()) {
        child->timeline(type)->setStoredPropertyValue(1.0F, time);
        EXPECT_EQ(lastKeyframeTimeInMS(*project), time);
        time += 100;
    }
    named(*project, u"A"_s)->setOpacity(0.5F, 2000);
    EXPECT_EQ(lastKeyframeTimeInMS(*project), 2000);
    named(*project, u"A"_s)->removeFromParentElement();
    EXPECT_EQ(lastKeyframeTimeInMS(*project), time - 100);
    project->animationsManager().setSelectedAnimation(nullptr);
    EXPECT_EQ(lastKeyframeTimeInMS(*project), -1);
}

}  // namespace
}  // namespace tweenery::test
