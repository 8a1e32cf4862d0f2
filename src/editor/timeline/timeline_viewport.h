#pragma once

#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <functional>
#include <span>

#include "base/handler_set.h"
#include "editor/timeline/project_time_manager.h"
#include "editor/timeline/timeline_outline.h"

namespace tweenery {

/// How the window looks at the timeline: its zoom, and which rows and times show. Keeps both in the
/// project's preferences.
///
/// All points are those of the area right of the list of rows, from its top left: the ruler, below
/// it the tracks, each as high as its row, below them the scroller. The tracks run one width past
/// the last keyframe and the playhead.
class TimelineViewport {
 public:
    static constexpr double kRulerHeight = 42;
    static constexpr double kRowHeight = 28;
    static constexpr double kScrollerHeight = 15;

    /// Points per millisecond, ascending.
    static std::span<const double> zoomStops();
    static int lastZoomIndex() { return static_cast<int>(zoomStops().size()) - 1; }

    /// All outlive this. The view has no size yet.
    TimelineViewport(PCProject& project, PCProjectTimeManager& time, TimelineOutline& outline);
    TimelineViewport(const TimelineViewport&) = delete;
    TimelineViewport& operator=(const TimelineViewport&) = delete;

    /// Called after every change of zoom, size and scroll position.
    Subscription addChangeHandler(std::function<void()> handler) {
        return m_changeHandlers.add(std::move(handler));
    }

    // Size.

    QSizeF size() const { return m_size; }
    /// Of the whole area.
    void setSize(QSizeF size);
    /// The part of the area in which tracks show.
    QRectF tracksRect() const;
    bool isInRuler(QPointF point) const { return point.y() < kRulerHeight; }
    bool isInScroller(QPointF point) const {
        return point.y() >= m_size.height() - kScrollerHeight;
    }

    // Zoom. Where nothing else is said, the time in the middle of the tracks stays there, as far as
    // the tracks reach.

    /// Where the slider stands: the index of the present stop, or of the next one above.
    int zoomIndex() const { return m_zoomIndex; }
    /// Brought into the stops.
    void setZoomIndex(int index);
    void zoomIn() { setZoomIndex(m_zoomIndex + 1); }
    void zoomOut() { setZoomIndex(m_zoomIndex - 1); }
    /// Everything up to the last keyframe and the playhead fills the width. Nothing happens when
    /// both are at 0, and without a width.
    void zoomToFit();
    /// Multiplies the zoom, within its ends, and holds the time at `x`.
    void zoomAbout(double x, double factor);
    /// The stop and the scroll position of the preferences, once the view has its size.
    void showAsStored();

    // Scrolling, in points.

    /// Of all tracks together: from time 0, and from the first row.
    double columnWidth() const;
    double contentHeight() const;
    /// What of them shows at the top left of tracksRect().
    QPointF scrollOrigin() const;
    /// The largest origin.
    QPointF scrollRange() const;
    /// Brought into the range.
    void scrollTo(QPointF origin);
    void scrollBy(QPointF distance) { scrollTo(scrollOrigin() + distance); }

    // Places.

    double pointForTime(int32_t timeInMS) const;
    /// Cut toward 0; negative left of the start.
    int32_t timeAt(double x) const;
    /// -1 above the first row and below the last. Does not ask whether rows show there.
    int rowAt(double y) const;
    double rowTop(int row) const;

    /// From `first` up to and without `end`.
    struct RowRange {
        int first = 0;
        int end = 0;
    };
    RowRange visibleRows() const;
    /// Both ends included.
    struct TimeRange {
        int32_t from = 0;
        int32_t to = 0;
    };
    /// What can reach into the view: `margin` points are added on either side.
    TimeRange visibleTimes(double margin = 0) const;

 private:
    PCProject& m_project;
    PCProjectTimeManager& m_time;
    TimelineOutline& m_outline;
    QSizeF m_size;
    QPointF m_origin;
    int m_zoomIndex = 0;
    HandlerSet m_changeHandlers;

    double zoom() const { return static_cast<double>(m_time.zoomInPointsPerMillisecond()); }
    int32_t lastTime() const;
    /// Holds the time at `x`.
    void setZoom(float zoom, int index, double x);
    void store(QPointF origin);
};

}  // namespace tweenery
