#include "editor/timeline/layer_animation_controller.h"

#include <gtest/gtest.h>

#include "support/scripted_clock.h"

namespace tweenery::test {
namespace {

TEST(LayerAnimationController, FreezesAndRuns) {
    ScriptedClock clock;
    Layer layer;
    PCLayerAnimationController controller(layer, clock);
    clock.seconds = 50;
    EXPECT_TRUE(controller.isPlaying()) << "a new layer runs";
    controller.scrubToAnimationTime(1.5F);
    EXPECT_FALSE(controller.isPlaying());
    EXPECT_EQ(layer.beginTime(), 50);
    EXPECT_EQ(controller.currentAnimationTime(), 1.5F);

    clock.seconds = 60;
    for (const float seconds : {-1.0F, 0.0F, std::numeric_limits<float>::quiet_NaN()}) {
        controller.scrubToAnimationTime(seconds);
        EXPECT_EQ(layer.timeOffset(), 0) << seconds;
    }
    EXPECT_EQ(layer.beginTime(), 50) << "a frozen layer keeps its begin";

    controller.playAtAnimationTime(4);
    EXPECT_TRUE(controller.isPlaying());
    EXPECT_EQ(layer.beginTime(), 56);
    EXPECT_EQ(layer.timeOffset(), 0);
    clock.seconds = 61.5;
    EXPECT_EQ(controller.currentAnimationTime(), 5.5F);
    EXPECT_EQ(controller.pause(), 5.5F);
    EXPECT_FALSE(controller.isPlaying());
    clock.seconds = 99;
    EXPECT_EQ(controller.currentAnimationTime(), 5.5F);
}

}  // namespace
}  // namespace tweenery::test
