#include "editor/timeline/project_time_manager.h"

#include <gmock/gmock.h>

#include <cmath>

#include "support/model_recorders.h"
#include "support/scripted_clock.h"

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace tweenery::test {
namespace {

/// A manager over a frozen layer, as a project window has it, with a clock that the test moves.
class TimeManagerTest : public testing::Test,
                        public PCProjectTimeManagerPlayheadListener,
                        public PCProjectTimeManagerZoomListener,
                        public PCProjectTimeManagerPlaybackStateListener {
 protected:
    ScriptedClock clock;
    RecordingLog log;
    Layer layer;
    PCProjectTimeManager manager{clock, log};
    std::vector<std::string> told;
    std::vector<Subscription> subscriptions;

    void SetUp() override {
        layer.setSpeed(0);
        manager.prepareToAnimateLayer(layer);
        subscriptions.push_back(manager.addPlayheadTimeListener(this));
        subscriptions.push_back(manager.addZoomTimeListener(this));
        subscriptions.push_back(manager.addPlaybackStateListener(this));
    }
    std::vector<std::string> takeTold() { return std::exchange(told, {}); }
    void frameAt(double seconds) {
        clock.seconds = seconds;
        manager.displaylinkAdapter()->tick();
    }
    std::string atLayerTime(const std::string& what) const {
        return what + " (layer at " + std::to_string(std::lround(layer.timeOffset() * 1000)) + ")";
    }

    void timeManagerDidUpdatePlayhead(PCProjectTimeManager& sender) override {
        told.push_back(atLayerTime("playhead " + std::to_string(sender.playheadPositionInMS()) +
                                   (sender.isPlayingBack() ? " playing" : "")));
    }
    void timeManagerDidUpdateSkimPlayhead(PCProjectTimeManager& sender) override {
        told.push_back(atLayerTime("skim " + std::to_string(sender.skimPositionInMS())));
    }
    void timeManagerDidUpdateZoom(PCProjectTimeManager&) override { told.push_back("zoom"); }
    void timeManagerDidChangePlaybackState(PCProjectTimeManager& sender) override {
        told.push_back(sender.isPlayingBack() ? "plays" : "stopped");
    }
};

TEST_F(TimeManagerTest, StartsStoppedAtZeroWithFourSubsegments) {
    const PCProjectTimeManager fresh(clock, log);
    EXPECT_EQ(fresh.zoomInPointsPerMillisecond(), 0x1.9db22ep-4F);  // bits 0x3DCED917
    EXPECT_EQ(fresh.segmentScale(), 3U);
    EXPECT_EQ(fresh.segmentWidthInMS(), 1000);
    EXPECT_EQ(fresh.numberOfSubsegments(), 4);
    EXPECT_EQ(fresh.subsegmentWidthInMS(), 250);
    EXPECT_EQ(fresh.halfSubsegmentWidthInMS(), 125.0F);
    EXPECT_EQ(fresh.segmentWidthInPoints(), 1000.0F * 0.101F);
    EXPECT_EQ(fresh.subsegmentWidthInPoints(), 250.0F * 0.101F);
    EXPECT_FALSE(fresh.isPlayingBack());
    EXPECT_EQ(fresh.debugDescription(),
              u"<PCProjectTimeManager playhead:0 zoomInPointsPerMS:0.101/>"_s);
}

TEST_F(TimeManagerTest, ZoomChoosesTheBand) {
    struct Case {
        float zoom;
        uint64_t scale;
        int32_t segment;
        int32_t subsegments;
        int32_t subsegment;
    };
    // The 32-bit numbers nearest to 0.4, 0.2 and 0.1 lie above them, those nearest to 0.02 and 0.01
    // below.
    const Case cases[] = {
        {1.1F, 0, 100, 10, 10},       {std::nextafter(1.0F, 2.0F), 0, 100, 10, 10},
        {1.0F, 1, 250, 10, 25},       {0.4F, 1, 250, 10, 25},
        {0.399F, 2, 500, 10, 50},     {0.2F, 2, 500, 10, 50},
        {0.199F, 3, 1000, 8, 125},    {0.1F, 3, 1000, 8, 125},
        {0.05F, 4, 5000, 10, 500},    {0.02F, 5, 10000, 10, 1000},
        {0.011F, 5, 10000, 10, 1000}, {0.01F, 6, 20000, 8, 2500},
        {0.0F, 6, 20000, 8, 2500},    {-1.0F, 6, 20000, 8, 2500},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.zoom);
        manager.setZoomInPointsPerMillisecond(c.zoom);
        EXPECT_EQ(manager.segmentScale(), c.scale);
        EXPECT_EQ(manager.segmentWidthInMS(), c.segment);
        EXPECT_EQ(manager.numberOfSubsegments(), c.subsegments);
        EXPECT_EQ(manager.subsegmentWidthInMS(), c.subsegment);
        EXPECT_EQ(manager.halfSubsegmentWidthInMS(), static_cast<float>(c.subsegment) / 2);
        EXPECT_EQ(manager.segmentWidthInPoints(), static_cast<float>(c.segment) * c.zoom);
        EXPECT_EQ(manager.subsegmentWidthInPoints(), static_cast<float>(c.subsegment) * c.zoom);
    }
    EXPECT_EQ(takeTold().size(), std::size(cases));
    manager.setZoomInPointsPerMillisecond(-1.0F);
    EXPECT_THAT(told, ElementsAre("zoom")) << "the same zoom is told again";
}

TEST_F(TimeManagerTest, ZoomAsPercentIsAPairOfConversions) {
    const std::pair<float, float> cases[] = {{0, 1.5F}, {1, 0.015F}, {0.5F, 0.7575F}, {2, -1.47F}};
    for (const auto& [percent, zoom] : cases) {
        manager.setZoomAsNormalizedPercent(percent);
        EXPECT_FLOAT_EQ(manager.zoomInPointsPerMillisecond(), zoom);
        EXPECT_NEAR(manager.zoomAsNormalizedPercent(), percent, 1e-6);
    }
}

TEST_F(TimeManagerTest, PointsAndMillisecondsConvert) {
    manager.setZoomInPointsPerMillisecond(0.1F);
    EXPECT_EQ(manager.pointValueFromMS(1001), static_cast<double>(1001.0F * 0.1F));
    struct Case {
        double points;
        int32_t time;
    };
    const Case cases[] = {{100.19, 1001}, {-0.19, -1}, {1e12, INT32_MAX}, {-1e12, INT32_MIN}};
    for (const Case& c : cases) {
        EXPECT_EQ(manager.msFromPointValue(c.points), c.time) << c.points;
    }
    manager.setZoomInPointsPerMillisecond(0);
    EXPECT_EQ(manager.msFromPointValue(5), INT32_MAX);
    EXPECT_EQ(manager.msFromPointValue(0), 0);
}

TEST_F(TimeManagerTest, SnapsToTheRuler) {
    struct Case {
        float zoom;  // 0.1: ticks every 125 of 1000; 0.3: every 50 of 500; 0.5: every 25 of 250
        int32_t time;
        int32_t closest;
        int32_t before;
        int32_t after;
        int32_t segment;
    };
    const Case cases[] = {
        {0.1F, 0, 0, -125, 125, 0},
        {0.1F, 62, 0, 0, 125, 0},
        {0.1F, 63, 125, 0, 125, 0},
        {0.1F, 125, 125, 0, 250, 0},
        {0.1F, 1000, 1000, 875, 1125, 1000},
        {0.1F, -1, 0, 0, 125, -1000},
        {0.1F, -124, 0, 0, 125, -1000},
        {0.1F, -1000, -1000, -1125, -875, -2000},
        {0.3F, 25, 50, 0, 50, 0},
        {0.3F, 524, 500, 500, 550, 500},
        {0.5F, 12, 0, 0, 25, 0},
        {0.5F, 13, 25, 0, 25, 0},
        {0.1F, INT32_MAX, INT32_MAX - 22, INT32_MAX - 22, INT32_MAX, INT32_MAX - 647},
        {0.1F, INT32_MIN, INT32_MIN + 23, INT32_MIN + 23, INT32_MIN + 148, INT32_MIN},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::to_string(c.time) + " at " + std::to_string(c.zoom));
        manager.setZoomInPointsPerMillisecond(c.zoom);
        EXPECT_EQ(manager.zoomSpecificTickClosestToTimeInMS(c.time), c.closest);
        EXPECT_EQ(manager.zoomSpecificTickBeforeTimeInMS(c.time), c.before);
        EXPECT_EQ(manager.zoomSpecificTickAfterTimeInMS(c.time), c.after);
        EXPECT_EQ(manager.segmentStartInMSNotAfterTimeInMS(c.time), c.segment);
    }
}

TEST(TimeDisplay, CutsHundredths) {
    const std::pair<int32_t, const char*> cases[] = {
        {-1, "0.00"},       {0, "0.00"},           {9, "0.00"},           {10, "0.01"},
        {999, "0.99"},      {1234, "1.23"},        {59999, "59.99"},      {60000, "1:00.00"},
        {61005, "1:01.00"}, {3599999, "59:59.99"}, {3600000, "60:00.00"},
    };
    for (const auto& [time, text] : cases) {
        EXPECT_EQ(PCProjectTimeManager::displayStringForTimeInMS(time).toStdString(), text);
    }
}

TEST_F(TimeManagerTest, PlayheadsTellFirstAndScrubThen) {
    manager.setPlayheadPositionInMS(-5);
    EXPECT_THAT(takeTold(), IsEmpty()) << "it was at 0 already";
    manager.setPlayheadPositionInMS(1500);
    manager.setPlayheadPositionInMS(1500);
    EXPECT_THAT(takeTold(), ElementsAre("playhead 1500 (layer at 0)"));
    EXPECT_EQ(layer.timeOffset(), 1.5);
    manager.setSkimPositionInMS(250);
    manager.setSkimPositionInMS(250);
    EXPECT_THAT(takeTold(), ElementsAre("skim 250 (layer at 1500)"));
    EXPECT_EQ(layer.timeOffset(), 0.25) << "the last one assigned wins";
    manager.setPlayheadPositionInMS(1001);
    EXPECT_EQ(layer.timeOffset(), static_cast<double>(1001.0F / 1000.0F));
    manager.setPlayheadPositionInMS(-1);
    EXPECT_EQ(layer.timeOffset(), 0);
    EXPECT_EQ(manager.playheadPositionInMS(), 0);
}

TEST_F(TimeManagerTest, PlaybackFollowsTheClockAndReturns) {
    manager.setPlayheadPositionInMS(2000);
    frameAt(100);
    takeTold();
    manager.setPlayback(true);
    EXPECT_EQ(manager.playbackStartMediaTimeInSeconds(), 100);
    EXPECT_EQ(manager.playbackStartTimeInMS(), 2000);
    frameAt(100.0004);  // within the same millisecond
    frameAt(100.0164);
    frameAt(100.0169);
    EXPECT_THAT(takeTold(), ElementsAre("plays", "playhead 2016 playing (layer at 2000)"));
    EXPECT_EQ(layer.timeOffset(), static_cast<double>(2.016F));
    frameAt(7300);  // it is not wrapped, and nothing stops it
    EXPECT_EQ(manager.playheadPositionInMS(), 7202000);
    takeTold();
    manager.setPlayback(false);
    EXPECT_THAT(takeTold(), ElementsAre("playhead 2000 (layer at 7202000)", "stopped"));
    frameAt(7301);
    manager.updatePlayheadDuringPlayback();  // a frame that arrives late
    EXPECT_EQ(manager.playheadPositionInMS(), 2000);
    manager.setPlayback(false);
    EXPECT_THAT(takeTold(), ElementsAre("stopped")) << "told again";
    manager.setPlayback(true);
    frameAt(1e9);
    EXPECT_EQ(manager.playheadPositionInMS(), INT32_MAX);
}

TEST_F(TimeManagerTest, ListenersAreMembersOnce) {
    subscriptions.push_back(manager.addPlayheadTimeListener(this));
    subscriptions.push_back(manager.addZoomTimeListener(this));
    manager.notifyAllTimeListeners();
    EXPECT_THAT(takeTold(), ElementsAre("zoom", "playhead 0 (layer at 0)"));
    manager.removeAllListeners();
    manager.removeZoomTimeListener(this);
    manager.notifyAllTimeListeners();
    EXPECT_THAT(takeTold(), IsEmpty());
    manager.setPlayback(true);
    EXPECT_THAT(takeTold(), ElementsAre("plays")) << "those of playback stay";
    manager.removePlaybackStateListener(this);
    manager.setPlayback(false);
    EXPECT_THAT(takeTold(), IsEmpty());
}

}  // namespace
}  // namespace tweenery::test
