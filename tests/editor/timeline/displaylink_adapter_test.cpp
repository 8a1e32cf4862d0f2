#include "editor/timeline/displaylink_adapter.h"

#include <gmock/gmock.h>

#include "base/errors.h"
#include "support/model_recorders.h"
#include "support/scripted_clock.h"

using namespace Qt::StringLiterals;

namespace tweenery::test {
namespace {

class DisplaylinkAdapterTest : public testing::Test {
 protected:
    ScriptedClock clock;
    RecordingLog log;
    int calls = 0;
    PCDisplaylinkAdapter adapter{clock, log, [this] { ++calls; }};

    int callsOfTicks(int ticks) {
        const int before = calls;
        for (int i = 0; i < ticks; ++i) {
            adapter.tick();
        }
        return calls - before;
    }
};

TEST_F(DisplaylinkAdapterTest, CallsOnceForEveryFrameInterval) {
    EXPECT_EQ(callsOfTicks(3), 0) << "it begins paused";
    adapter.setPaused(false);
    EXPECT_EQ(callsOfTicks(3), 3);
    adapter.setFrameInterval(3);
    EXPECT_EQ(callsOfTicks(8), 2);
    EXPECT_EQ(adapter.internalFrameCount(), 2);
    adapter.setPaused(false);
    EXPECT_EQ(callsOfTicks(2), 0) << "counting begins anew";
    adapter.setFrameInterval(1);
    EXPECT_EQ(callsOfTicks(1), 1) << "a shorter interval takes effect at once";
    adapter.setPaused(true);
    EXPECT_EQ(callsOfTicks(3), 0);
    EXPECT_THROW(adapter.setFrameInterval(0), AssertionFailure);
}

TEST_F(DisplaylinkAdapterTest, LetsGoOfItsTarget) {
    adapter.setPaused(false);
    adapter.invalidate();
    EXPECT_TRUE(adapter.isPaused());
    adapter.setPaused(false);
    EXPECT_EQ(callsOfTicks(2), 0);
    // Its target may be what does it.
    std::unique_ptr<PCDisplaylinkAdapter> owner = std::make_unique<PCDisplaylinkAdapter>(
        clock, log, [this, &owner] { ++calls, owner->invalidate(); });
    owner->setPaused(false);
    owner->tick();
    owner->tick();
    EXPECT_EQ(calls, 1);
}

TEST_F(DisplaylinkAdapterTest, MeasuresTheRefreshes) {
    adapter.setPaused(false);
    const auto durationAfterTickAt = [this](double seconds) {
        clock.seconds = seconds;
        adapter.tick();
        return adapter.duration();
    };
    EXPECT_EQ(durationAfterTickAt(1), 0);
    EXPECT_EQ(durationAfterTickAt(1.25), 0.25);
    EXPECT_EQ(durationAfterTickAt(1.75), 0.5);
    adapter.setPaused(true);
    adapter.setPaused(false);
    EXPECT_EQ(durationAfterTickAt(9), 0);
}

}  // namespace
}  // namespace tweenery::test
