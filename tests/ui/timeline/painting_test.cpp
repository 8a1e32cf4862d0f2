// What the timeline paints, measured on pictures of eight pixels a point.

#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>
#include <functional>

#include "editor/controller_scene.h"
#include "ui/timeline/keyframe_painting.h"
#include "ui/timeline/ruler_painting.h"
#include "ui/timeline/track_painting.h"
#include "ui/widgets/appearance.h"

using namespace Qt::StringLiterals;

namespace tweenery::test {
namespace {

constexpr double kHalfPoint = 0.5;
const QColor kPaper(0xF3, 0xF3, 0xF3);

// Something painted, and where its colours lie, in points.
class Painted {
 public:
    Painted(QSize size, const std::function<void(QPainter&)>& paint, int scale = 8)
        : m_scale(scale), m_image(size * scale, QImage::Format_RGB32) {
        m_image.setDevicePixelRatio(scale);
        m_image.fill(kPaper);
        QPainter painter(&m_image);
        paint(painter);
    }

    QColor at(double x, double y) const {
        return m_image.pixelColor(static_cast<int>(x * m_scale), static_cast<int>(y * m_scale));
    }
    bool has(double x, double y, const QColor& color) const { return isLike(at(x, y), color); }
    // From the first to the last place of `color`, along a line.
    struct Extent {
        double from = -1;
        double to = -1;
    };
    Extent alongRow(double y, const QColor& color) const {
        return extent(m_image.width(), color, [&](int i) { return QPoint(i, int(y * m_scale)); });
    }
    Extent alongColumn(double x, const QColor& color) const {
        return extent(m_image.height(), color, [&](int i) { return QPoint(int(x * m_scale), i); });
    }
    bool isEmpty() const {
        QImage paper(m_image.size(), m_image.format());
        paper.setDevicePixelRatio(m_scale);
        paper.fill(kPaper);
        return m_image == paper;
    }

 private:
    int m_scale;
    QImage m_image;

    static bool isLike(const QColor& a, const QColor& b) {
        constexpr int kTolerance = 8;
        return qAbs(a.red() - b.red()) < kTolerance && qAbs(a.green() - b.green()) < kTolerance &&
               qAbs(a.blue() - b.blue()) < kTolerance;
    }
    template <class Place>
    Extent extent(int count, const QColor& color, Place place) const {
        Extent found;
        for (int i = 0; i < count; ++i) {
            if (!isLike(m_image.pixelColor(place(i)), color)) { continue; }
            if (found.from < 0) { found.from = double(i) / m_scale; }
            found.to = double(i + 1) / m_scale;
        }
        return found;
    }
};

void expectExtent(const Painted::Extent& extent, double from, double to, const char* what) {
    EXPECT_NEAR(extent.from, from, kHalfPoint) << what;
    EXPECT_NEAR(extent.to, to, kHalfPoint) << what;
}

QColor orange() {
    return propertyColor(PCPropertyTypeTranslationX);
}

TEST(TimelinePainting, DiamondsTellTweenedInstantAndSelected) {
    struct Case {
        const char* what;
        bool isInstant, isSelected;
        double left, right;  // of the colour, along the middle
        bool middleIsWhite;
        bool ringIsWhite;  // between the outer and the inner diamond
    };
    // A line of 2 round a diamond of 19 by 27 ends 1.23 further out at the sides.
    const Case cases[] = {
        {"tweened", false, false, 29.27, 50.73, true, true},
        {"tweened, selected", false, true, 30.5, 49.5, false, false},
        {"instant", true, false, 29.27, 50.73, true, true},
        {"instant, selected", true, true, 29.27, 50.73, true, false},
    };
    for (const Case& c : cases) {
        const Painted track({80, 28}, [&](QPainter& painter) {
            paintKeyframe(painter, {40, 14}, {orange(), c.isInstant, c.isSelected});
        });
        expectExtent(track.alongRow(14, orange()), c.left, c.right, c.what);
        EXPECT_EQ(track.has(40, 14, Qt::white), c.middleIsWhite) << c.what;
        EXPECT_EQ(track.has(33.2, 14, Qt::white), c.ringIsWhite) << c.what;
        const bool fillsRow = c.isInstant || !c.isSelected;
        expectExtent(track.alongColumn(40, orange()), fillsRow ? 0 : 0.5, fillsRow ? 28 : 27.5,
                     c.what);
        if (c.isInstant) { EXPECT_TRUE(track.has(40, 7.25, orange())) << c.what; }
    }
}

TEST(TimelinePainting, KeyframesStandAtTheirTimeAtEveryScale) {
    for (const int scale : {1, 2, 3}) {
        for (const double x : {40.0, 40.3, 40.5, 40.8}) {
            const Painted track(
                {80, 28},
                [&](QPainter& painter) {
                    paintKeyframe(painter, {x, 14}, {orange(), false, true});
                },
                scale);
            const auto extent = track.alongRow(14, orange());
            EXPECT_NEAR((extent.from + extent.to) / 2, x, kHalfPoint + 1e-9) << scale;
        }
    }
}

TEST(TimelinePainting, MasterKeyframesAreWhiteOverBlack) {
    for (const bool isSelected : {false, true}) {
        const QColor fill = isSelected ? QColor(0x80, 0x80, 0x80) : QColor(Qt::white);
        const Painted overlay({80, 60}, [&](QPainter& painter) {
            paintMasterLine(painter, 40, 60);
            paintMasterKeyframe(painter, 40, isSelected);
        });
        expectExtent(overlay.alongRow(14, fill), 30, 50, "outer");
        expectExtent(overlay.alongRow(14, Qt::black), 31.8, 48.2, "inner");
        EXPECT_TRUE(overlay.has(40.5, 14, fill));
        expectExtent(overlay.alongRow(50, Qt::black), 40, 41, "line");
        expectExtent(overlay.alongRow(50, Qt::white), 39.25, 41.75, "edges of the line");
    }
}

TEST(TimelinePainting, EachEasingHasItsCurve) {
    struct Case {
        PCEasingMode mode;
        double from, to;              // where the curve begins and ends
        std::vector<QPointF> points;  // of the curve, a quarter of its parameter apart
        bool hasBaseLine;
    };
    const Case cases[] = {
        {PCEasingModeLinear, 100, 500, {{218.8, 14}, {300, 14}, {381.2, 14}}, false},
        {PCEasingModeEaseIn, 100, 500, {{289.1, 23.22}, {412.5, 14}, {479.7, 4.78}}, true},
        {PCEasingModeEaseOut, 100, 500, {{120.3, 23.22}, {187.5, 14}, {310.9, 4.78}}, true},
        {PCEasingModeEaseInOut, 100, 500, {{190.6, 23.22}, {300, 14}, {409.4, 4.78}}, true},
        {PCEasingModeAnticipate, 110, 500, {{212.1, 26.58}, {341.6, 20.12}, {452.8, 7.11}}, true},
        {PCEasingModeOvershoot, 100, 490, {{147.2, 20.89}, {258.4, 7.88}, {387.9, 1.42}}, true},
        {PCEasingModeAnticOver, 110, 490, {{196.1, 23.84}, {300, 14}, {403.9, 4.16}}, true},
    };
    const QColor color = propertyColor(PCPropertyTypeScaleX);
    for (const Case& c : cases) {
        for (const bool isSelected : {false, true}) {
            const Painted track({600, 28}, [&](QPainter& painter) {
                paintTween(painter, {color, c.mode, isSelected}, 100, 500, {0, 600});
            });
            int covered = 0;
            double first = 600;
            double last = 0;
            for (double x = 0; x < 600; x += 1) {
                if (const auto curve = track.alongColumn(x, color); curve.from >= 0) {
                    ++covered;
                    first = std::min(first, x);
                    last = std::max(last, x);
                }
            }
            EXPECT_NEAR(first, c.from, 1.5) << c.mode;
            EXPECT_NEAR(last + 1, c.to, 1.5) << c.mode;
            EXPECT_GT(covered, (c.to - c.from) * 0.9) << c.mode;
            for (const QPointF& point : c.points) {
                const auto curve = track.alongColumn(point.x(), color);
                EXPECT_NEAR((curve.from + curve.to) / 2, point.y(), kHalfPoint) << c.mode;
            }
            const bool hasBase = track.has(c.from + 16, 13.2, lightened(color, 0.8));
            EXPECT_EQ(hasBase, c.hasBaseLine) << c.mode;
            if (c.mode == PCEasingModeLinear) {
                const auto line = track.alongColumn(300, color);
                EXPECT_NEAR(line.to - line.from, isSelected ? 2 : 1, 0.3);
            }
        }
    }
}

TEST(TimelinePainting, TheBaseLineIsDashedTenAndThree) {
    const Painted track({200, 28}, [&](QPainter& painter) {
        paintTween(painter, {orange(), PCEasingModeEaseIn}, 20, 180, {0, 200});
    });
    const QColor pale = lightened(orange(), 0.8);
    for (const double dash : {20.0, 33.0, 46.0}) {
        EXPECT_TRUE(track.has(dash + 0.5, 14, pale)) << dash;
        EXPECT_TRUE(track.has(dash + 9.5, 14, pale)) << dash;
        EXPECT_TRUE(track.has(dash + 11.5, 14, kPaper)) << dash;
    }
    const auto thickness = track.alongColumn(25, pale);
    EXPECT_NEAR(thickness.from, 13, 0.2);
    EXPECT_NEAR(thickness.to, 15, 0.2);
}

// The part in sight of a tween a million points long looks as if it were drawn whole.
TEST(TimelinePainting, LongTweensAreCutToWhatShows) {
    const auto painted = [](PCEasingMode mode) {
        return Painted({100, 28}, [mode](QPainter& painter) {
            painter.translate(-50, 0);
            paintTween(painter, {orange(), mode, true}, -1'000'000, 1'000'200, {50, 150});
        });
    };
    const auto curve = painted(PCEasingModeEaseInOut).alongColumn(50, orange());
    EXPECT_NEAR((curve.from + curve.to) / 2, 14, kHalfPoint);
    const auto dashes = painted(PCEasingModeEaseIn).alongRow(14, lightened(orange(), 0.8));
    EXPECT_GE(dashes.from, 0);
    EXPECT_LT(dashes.from, 4);
    EXPECT_GT(dashes.to, 96);
}

// Keyframes at 1000, 2000 and 3000 ms on a ruler of 0.2 points a millisecond.
struct TrackScene {
    ControllerScene scene{"A"};
    PCKeyedPropertyTimeline::Ptr timeline;

    TrackScene() {
        selectNewAnimation(*scene.project, u"Walk"_s);
        const PCElement::Ptr element = named(*scene.project, u"A"_s);
        for (const auto& [time, value] : {std::pair{1000, 10.F}, {2000, 10.F}, {3000, 30.F}}) {
            element->setXTranslation(value, time);
        }
        timeline = element->translationXTimeline();
        scene.controller.timeManager().setZoomInPointsPerMillisecond(0.2F);
    }
    Painted painted(double scrollOffset = 0, QSize size = {900, 28}) {
        return Painted(
            size,
            [&](QPainter& painter) {
                paintTrack(painter, *timeline, scene.controller.keyframeManager(),
                           scene.controller.timeManager(), scrollOffset, {0, double(size.width())});
            },
            4);
    }
};

TEST(TimelinePainting, TracksShowTweensWhereAValueChangesAndNothingJumps) {
    TrackScene track;
    const auto keyframes = track.timeline->keyframesSortedByTime();
    track.timeline->keyframesSortedByTime()[2]->setEasingMode(PCEasingModeLinear);
    keyframes[0]->setEasingMode(PCEasingModeLinear);
    const auto tweens = [&](double scrollOffset = 0) {
        const Painted painted = track.painted(scrollOffset);
        std::string shown;
        for (const double middle : {100.0, 300.0, 500.0}) {
            const auto line = painted.alongColumn(middle - scrollOffset, orange());
            shown += line.from >= 0 ? '-' : ' ';
        }
        return shown;
    };
    EXPECT_EQ(tweens(), "- -");  // from the setup state; equal values; a change
    EXPECT_EQ(tweens(60), "- -");
    keyframes[1]->setInstantTransition(true);
    EXPECT_EQ(tweens(), "-  ");
    keyframes[1]->setInstantTransition(false);
    keyframes[2]->setInstantTransition(true);
    EXPECT_EQ(tweens(), "-  ");
    EXPECT_TRUE(track.painted(1'000'000).isEmpty());
    track.timeline->removeAllKeyframes();
    EXPECT_TRUE(track.painted().isEmpty());
}

TEST(TimelinePainting, TracksShowSelectionAndLoop) {
    TrackScene track;
    const auto keyframes = track.timeline->keyframesSortedByTime();
    EXPECT_TRUE(track.painted().has(400, 14, Qt::white));
    track.scene.controller.keyframeManager().selectKeyframe(keyframes[1]);
    EXPECT_TRUE(track.painted().has(400, 14, orange()));
    EXPECT_TRUE(track.painted().has(600, 14, Qt::white));

    const QColor ink = pictureColors().loopMarker;
    EXPECT_LT(track.painted().alongRow(10.5, ink).from, 0);
    for (const auto behavior : {PCRepeatBehaviorForever, PCRepeatBehaviorForeverAutoreverse}) {
        track.timeline->setRepeatBehavior(behavior);
        const auto marker = track.painted().alongRow(14, ink);
        EXPECT_GE(marker.from, 615) << behavior;
        EXPECT_LE(marker.to, 705) << behavior;
    }
}

TEST(TimelinePainting, RulersMarkSegmentsHalvesAndQuarters) {
    struct Case {
        float zoom;
        double segment;
        std::vector<double> heights;  // of the ticks of the first segment
    };
    const Case cases[] = {
        {0.2F, 100, {42, 10.5, 10.5, 10.5, 10.5, 31.5, 10.5, 10.5, 10.5, 10.5}},
        {0.1F, 100, {42, 10.5, 21, 10.5, 31.5, 10.5, 21, 10.5}},
    };
    ControllerScene scene;
    PCProjectTimeManager& time = scene.controller.timeManager();
    const QColor fill(0x40, 0x40, 0x40);
    const QColor grey = Appearance::current().workbench().lightGrey;
    for (const Case& c : cases) {
        time.setZoomInPointsPerMillisecond(c.zoom);
        for (const double scroll : {0.0, 37.0}) {
            const Painted ruler({300, 42}, [&](QPainter& painter) {
                paintRuler(painter, time, 300, scroll, 1'000'000, fill);
            });
            const double count = static_cast<double>(c.heights.size());
            for (size_t i = 0; i < c.heights.size(); ++i) {
                const double x = c.segment + c.segment * static_cast<double>(i) / count - scroll;
                const auto tick = ruler.alongColumn(x + 0.3, grey);
                EXPECT_NEAR(tick.to, c.heights[i], kHalfPoint) << c.zoom << ' ' << i;
                EXPECT_EQ(tick.from, 0);
            }
            // The label lies 2 to the right of its tick, at the lower edge.
            const auto label = ruler.alongColumn(c.segment - scroll + 6, Qt::white);
            EXPECT_GT(label.from, 26);
            EXPECT_LT(label.to, 42);
        }
    }
    const Painted end({300, 42},
                      [&](QPainter& painter) { paintRuler(painter, time, 300, 0, 1000, fill); });
    EXPECT_GT(end.alongColumn(100.3, grey).to, 40);
    EXPECT_LT(end.alongColumn(112.5, grey).to, 0);  // no tick after the last time
}

TEST(TimelinePainting, RulersStayReadableWhereSegmentsAreNarrow) {
    struct Case {
        float zoom;
        double label;  // from one to the next
        double tick;
    };
    // Segments of 20 s.
    const Case cases[] = {{0.0005F, 100, 10}, {0.0001F, 100, 0}, {0.000001F, 100, 0}};
    ControllerScene scene;
    PCProjectTimeManager& time = scene.controller.timeManager();
    const QColor fill(0x40, 0x40, 0x40);
    const QColor grey = Appearance::current().workbench().lightGrey;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.zoom);
        time.setZoomInPointsPerMillisecond(c.zoom);
        for (const double scroll : {0.0, 37.0}) {
            const Painted ruler({300, 42}, [&](QPainter& painter) {
                paintRuler(painter, time, 300, scroll, INT32_MAX, fill);
            });
            EXPECT_GT(ruler.alongColumn(c.label - scroll + 0.3, grey).to, 40);
            EXPECT_LT(ruler.alongColumn(c.label - scroll + 65, grey).to, 0);
            EXPECT_EQ(ruler.alongColumn(c.label - scroll + 10.3, grey).to > 0, c.tick == 10);
        }
    }
}

TEST(TimelinePainting, PlayheadAndMarqueeKeepTheirMeasures) {
    const WorkbenchColors& colors = Appearance::current().workbench();
    const QString label = playheadLabel(1234);
    EXPECT_EQ(label, u"1.23s"_s);
    EXPECT_EQ(playheadLabel(72345), u"72.34s"_s);
    const Painted overlay({200, 120}, [&](QPainter& painter) {
        paintTimeBar(painter, 50, 110, colors.red);
        paintPlayheadLabel(painter, 50, label);
        paintMarquee(painter, {120, 30, 60, 60});
    });
    expectExtent(overlay.alongRow(100, colors.red), 49.5, 51.5, "bar");
    expectExtent(overlay.alongColumn(50.5, colors.red), 0, 110, "bar");
    expectExtent(overlay.alongColumn(53, colors.playheadPlate), 12, 30, "plate");
    EXPECT_EQ(playheadPlate(50, label).left(), 51.5);
    const QColor fill = blended(QColor(0xAA, 0xAA, 0xAA, 179), kPaper);
    EXPECT_TRUE(overlay.has(150, 60, fill));
    EXPECT_TRUE(overlay.has(150, 41, kPaper));  // keeps off the ruler
    expectExtent(overlay.alongColumn(150, fill), 43, 89, "marquee within its line");
}

TEST(TimelinePainting, KeyframeButtonsAreRoundAndWhiteInTheMiddle) {
    const QColor blue = propertyColor(PCPropertyTypeZRotation);
    const Painted button({40, 30}, [&](QPainter& painter) {
        paintKeyframeButton(painter, {5, 2, 25, 25}, blue);
    });
    expectExtent(button.alongRow(14.5, blue), 5, 30, "disc");
    expectExtent(button.alongRow(14.5, Qt::white), 11.5, 23.5, "diamond");
    expectExtent(button.alongColumn(17.5, Qt::white), 5, 24, "diamond");
    EXPECT_TRUE(button.has(6, 3, kPaper));
}

}  // namespace
}  // namespace tweenery::test
