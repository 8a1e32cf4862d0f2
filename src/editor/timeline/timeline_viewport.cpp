#include "editor/timeline/timeline_viewport.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace tweenery {
namespace {

constexpr std::array kZoomStops{0.01, 0.02, 0.03, 0.04, 0.05, 0.07, 0.1, 0.2, 0.3,
                                0.4,  0.5,  0.6,  0.7,  0.8,  0.9,  1.0, 1.1};

int clampedIndex(ptrdiff_t index) {
    return static_cast<int>(std::clamp<ptrdiff_t>(index, 0, TimelineViewport::lastZoomIndex()));
}

float stopAt(int index) {
    return static_cast<float>(kZoomStops[static_cast<size_t>(index)]);
}

int indexOfStopNotBelow(float zoom) {
    const auto stop =
        std::lower_bound(kZoomStops.begin(), kZoomStops.end(), static_cast<double>(zoom));
    return clampedIndex(stop - kZoomStops.begin());
}

}  // namespace

std::span<const double> TimelineViewport::zoomStops() {
    return kZoomStops;
}

TimelineViewport::TimelineViewport(PCProject& project, PCProjectTimeManager& time,
                                   TimelineOutline& outline)
    : m_project(project), m_time(time), m_outline(outline) {
    m_zoomIndex = clampedIndex(std::lround(project.preferences().timelineZoomLevel()));
    m_time.setZoomInPointsPerMillisecond(stopAt(m_zoomIndex));
}

// Size.

void TimelineViewport::setSize(QSizeF size) {
    if (size == m_size) { return; }
    m_size = size;
    m_changeHandlers.call();
}

QRectF TimelineViewport::tracksRect() const {
    const double height = m_size.height() - kRulerHeight - kScrollerHeight;
    return {0, kRulerHeight, m_size.width(), std::max(height, 0.0)};
}

// Zoom.

void TimelineViewport::setZoom(float zoom, int index, double x) {
    const double timeHeld = (scrollOrigin().x() + x) / this->zoom();
    const double y = scrollOrigin().y();
    m_zoomIndex = index;
    m_project.preferences().setTimelineZoomLevel(static_cast<float>(index));
    m_time.setZoomInPointsPerMillisecond(zoom);
    scrollTo({timeHeld * this->zoom() - x, y});
}

void TimelineViewport::setZoomIndex(int index) {
    const int stop = clampedIndex(index);
    setZoom(stopAt(stop), stop, m_size.width() / 2);
}

void TimelineViewport::zoomToFit() {
    const int32_t last = lastTime();
    if (last <= 0 || m_size.width() <= 0) { return; }
    const float zoom = static_cast<float>(m_size.width()) / static_cast<float>(last);
    setZoom(zoom, indexOfStopNotBelow(zoom), 0);
    scrollTo({0, scrollOrigin().y()});
}

// What fills the view may lie beyond the ends.
void TimelineViewport::zoomAbout(double x, double factor) {
    const double least = std::min(kZoomStops.front(), zoom());
    const double largest = std::max(kZoomStops.back(), zoom());
    const auto wanted = static_cast<float>(std::clamp(zoom() * factor, least, largest));
    setZoom(wanted, indexOfStopNotBelow(wanted), x);
}

void TimelineViewport::showAsStored() {
    const PCProjectPreferences& preferences = m_project.preferences();
    m_zoomIndex = clampedIndex(std::lround(preferences.timelineZoomLevel()));
    m_time.setZoomInPointsPerMillisecond(stopAt(m_zoomIndex));
    m_origin = preferences.timelineScrollOffset();
    m_changeHandlers.call();
}

// Scrolling.

int32_t TimelineViewport::lastTime() const {
    return std::max(m_outline.lastKeyframeTimeInMS(), m_time.playheadPositionInMS());
}

double TimelineViewport::columnWidth() const {
    return m_time.pointValueFromMS(lastTime()) + m_size.width();
}

double TimelineViewport::contentHeight() const {
    return m_outline.rowCount() * kRowHeight;
}

QPointF TimelineViewport::scrollRange() const {
    return {columnWidth() - m_size.width(), std::max(contentHeight() - tracksRect().height(), 0.0)};
}

QPointF TimelineViewport::scrollOrigin() const {
    const QPointF range = scrollRange();
    return {std::clamp(m_origin.x(), 0.0, range.x()), std::clamp(m_origin.y(), 0.0, range.y())};
}

void TimelineViewport::scrollTo(QPointF origin) {
    m_origin = origin;
    m_origin = scrollOrigin();
    m_project.preferences().setTimelineScrollOffset(m_origin);
    m_changeHandlers.call();
}

// Places.

double TimelineViewport::pointForTime(int32_t timeInMS) const {
    return m_time.pointValueFromMS(timeInMS) - scrollOrigin().x();
}

int32_t TimelineViewport::timeAt(double x) const {
    return m_time.msFromPointValue(x + scrollOrigin().x());
}

int TimelineViewport::rowAt(double y) const {
    const double row = std::floor((y - kRulerHeight + scrollOrigin().y()) / kRowHeight);
    return row >= 0 && row < m_outline.rowCount() ? static_cast<int>(row) : -1;
}

double TimelineViewport::rowTop(int row) const {
    return kRulerHeight + row * kRowHeight - scrollOrigin().y();
}

TimelineViewport::RowRange TimelineViewport::visibleRows() const {
    const double top = scrollOrigin().y();
    const double bottom = top + tracksRect().height();
    return {static_cast<int>(top / kRowHeight),
            std::min(static_cast<int>(std::ceil(bottom / kRowHeight)), m_outline.rowCount())};
}

TimelineViewport::TimeRange TimelineViewport::visibleTimes(double margin) const {
    return {timeAt(-margin), timeAt(m_size.width() + margin)};
}

}  // namespace tweenery
