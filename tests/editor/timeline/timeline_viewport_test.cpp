#include "editor/timeline/timeline_viewport.h"

#include <gtest/gtest.h>

#include "editor/timeline/timeline_scene.h"

using namespace Qt::StringLiterals;

namespace tweenery::test {
namespace {

using Scene = TimelineEditScene;

TEST(TimelineViewport, ZoomsFromStopToStop) {
    Scene scene;
    TimelineViewport& viewport = scene.viewport;
    viewport.setZoomIndex(15);
    viewport.zoomIn();
    viewport.zoomIn();
    EXPECT_EQ(viewport.zoomIndex(), 16);
    EXPECT_EQ(scene.time.zoomInPointsPerMillisecond(), 1.1F);
    EXPECT_EQ(scene.project->preferences().timelineZoomLevel(), 16);
    viewport.setZoomIndex(-4);
    viewport.zoomOut();
    EXPECT_EQ(viewport.zoomIndex(), 0);
    EXPECT_EQ(scene.time.zoomInPointsPerMillisecond(), 0.01F);
}

TEST(TimelineViewport, AZoomHoldsTheTimeInTheMiddleOrUnderThePointer) {
    Scene scene("100:1 30000:2");
    TimelineViewport& viewport = scene.viewport;
    viewport.scrollTo({10000, 0});
    const double middle = viewport.timeAt(400);
    for (const int index : {16, 9, 7, 15}) {
        viewport.setZoomIndex(index);
        EXPECT_NEAR(viewport.timeAt(400), middle, 1);
    }
    const double pointed = viewport.timeAt(100);
    viewport.zoomAbout(100, 0.35);
    EXPECT_NEAR(viewport.timeAt(100), pointed, 3);
    EXPECT_EQ(viewport.zoomIndex(), 9);  // the stop above
    viewport.zoomAbout(100, 100);
    EXPECT_EQ(scene.time.zoomInPointsPerMillisecond(), 1.1F);
    viewport.setZoomIndex(0);  // everything is left of the middle
    EXPECT_EQ(viewport.scrollOrigin().x(), 0);
}

TEST(TimelineViewport, FitsTheLastKeyframeOrThePlayheadToTheWidth) {
    Scene scene("100:1 3200:2");
    scene.viewport.scrollTo({500, 0});
    scene.viewport.zoomToFit();
    EXPECT_EQ(scene.time.zoomInPointsPerMillisecond(), 0.25F);
    EXPECT_EQ(scene.viewport.zoomIndex(), 8);
    EXPECT_EQ(scene.viewport.scrollOrigin(), QPointF());
    EXPECT_EQ(scene.viewport.pointForTime(3200), 800);
    scene.time.setPlayheadPositionInMS(6400);
    scene.viewport.zoomToFit();
    EXPECT_EQ(scene.time.zoomInPointsPerMillisecond(), 0.125F);

    Scene empty("0:0", "0:0", "0:1");
    empty.viewport.zoomToFit();  // nothing to fit
    EXPECT_EQ(empty.time.zoomInPointsPerMillisecond(), 1);
}

TEST(TimelineViewport, TracksRunAWidthPastTheLastKeyframeAndThePlayhead) {
    Scene scene;
    TimelineViewport& viewport = scene.viewport;
    EXPECT_EQ(viewport.columnWidth(), 1300);
    viewport.scrollTo({9999, 9999});
    EXPECT_EQ(viewport.scrollOrigin(), QPointF(500, 0));
    scene.time.setPlayheadPositionInMS(2000);
    EXPECT_EQ(viewport.scrollRange(), QPointF(2000, 0));
    viewport.setSize({600, 42 + 28 * 4 + 15});
    EXPECT_EQ(viewport.columnWidth(), 2600);
    EXPECT_EQ(viewport.scrollRange(), QPointF(2000, 56));
    viewport.scrollTo({1200, 40});
    EXPECT_EQ(scene.project->preferences().timelineScrollOffset(), QPointF(1200, 40));
    scene.time.setPlayheadPositionInMS(0);
    EXPECT_EQ(viewport.scrollOrigin(), QPointF(500, 40));
}

TEST(TimelineViewport, ConvertsPlacesToRowsAndTimesAndBack) {
    Scene scene;
    TimelineViewport& viewport = scene.viewport;
    viewport.setSize({600, 42 + 28 * 4 + 15});
    viewport.scrollTo({100, 30});
    EXPECT_EQ(viewport.timeAt(50), 150);
    EXPECT_EQ(viewport.timeAt(-150.5), -50);
    EXPECT_EQ(viewport.pointForTime(150), 50);
    EXPECT_EQ(viewport.rowAt(42), 1);
    EXPECT_EQ(viewport.rowAt(67.9), 1);
    EXPECT_EQ(viewport.rowAt(68), 2);
    EXPECT_EQ(viewport.rowAt(0), -1);
    EXPECT_EQ(viewport.rowAt(42 + 28 * 6 - 30), -1);
    EXPECT_EQ(viewport.rowTop(2), 68);
    EXPECT_EQ(viewport.visibleRows().first, 1);
    EXPECT_EQ(viewport.visibleRows().end, 6);
    EXPECT_EQ(viewport.visibleTimes(10).from, 90);
    EXPECT_EQ(viewport.visibleTimes(10).to, 710);
    viewport.setSize({});
    EXPECT_EQ(viewport.visibleRows().first, viewport.visibleRows().end - 1);
}

TEST(TimelineViewport, ShowsAProjectAsItWasLastSeen) {
    Scene scene;
    scene.project->preferences().setTimelineZoomLevel(9.4F);
    scene.project->preferences().setTimelineScrollOffset({40, 9000});
    scene.project->preferences().setModified(false);
    scene.viewport.showAsStored();
    EXPECT_EQ(scene.viewport.zoomIndex(), 9);
    EXPECT_EQ(scene.time.zoomInPointsPerMillisecond(), 0.4F);
    EXPECT_EQ(scene.viewport.scrollOrigin(), QPointF(40, 0));
    EXPECT_FALSE(scene.project->preferences().modified());
}

}  // namespace
}  // namespace tweenery::test
