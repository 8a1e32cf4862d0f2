#include "editor/timeline/project_time_manager.h"

#include <algorithm>
#include <cmath>

#include "base/number_text.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

constexpr float kFirstZoom = 0.101F;  // points per millisecond, until the first one is assigned

// How the ruler is divided at a zoom above `minimumZoom`.
struct ZoomBand {
    // Decimal numbers on purpose: the 32-bit number nearest to 0.1 lies above it, that nearest to
    // 0.02 below.
    double minimumZoom;
    int32_t segmentWidthInMS;
    int32_t numberOfSubsegments;
};

constexpr ZoomBand kZoomBands[] = {
    {1.0, 100, 10},   {0.4, 250, 10},    {0.2, 500, 10},        {0.1, 1000, 8},
    {0.02, 5000, 10}, {0.01, 10000, 10}, {-INFINITY, 20000, 8},
};
constexpr uint64_t kFirstScale = 3;
constexpr int32_t kFirstSubsegments = 4;

constexpr double kZoomAtZeroPercent = 1.5;
constexpr double kZoomPerPercent = -1.485;

int32_t nearestTime(int64_t timeInMS) {
    return static_cast<int32_t>(std::clamp<int64_t>(timeInMS, INT32_MIN, INT32_MAX));
}

int32_t wholeMilliseconds(double timeInMS) {
    if (std::isnan(timeInMS)) { return 0; }
    return static_cast<int32_t>(std::clamp<double>(timeInMS, INT32_MIN, INT32_MAX));
}

QString twoDigits(int32_t number) {
    return u"%1"_s.arg(number, 2, 10, QChar(u'0'));
}

}  // namespace

PCProjectTimeManager::PCProjectTimeManager(const MediaClock& clock, LogPort& log)
    : m_clock(clock), m_log(log), m_zoomInPointsPerMillisecond(kFirstZoom) {
    setSegments(kFirstScale, kZoomBands[kFirstScale].segmentWidthInMS, kFirstSubsegments);
}

void PCProjectTimeManager::prepareToAnimateLayer(Layer& layer) {
    m_animationController = std::make_unique<PCLayerAnimationController>(layer, m_clock);
    m_displaylinkAdapter = std::make_unique<PCDisplaylinkAdapter>(
        m_clock, m_log, [this] { updatePlayheadDuringPlayback(); });
    m_displaylinkAdapter->setPaused(true);
}

// Playheads.

void PCProjectTimeManager::setPlayheadPositionInMS(int32_t timeInMS) {
    const int32_t position = std::max(timeInMS, 0);
    if (position == m_playheadPositionInMS) { return; }
    m_playheadPositionInMS = position;
    m_timePlayheadListeners.tell(
        [this](auto& listener) { listener.timeManagerDidUpdatePlayhead(*this); });
    scrubToTimeInMS(m_playheadPositionInMS);
}

void PCProjectTimeManager::setSkimPositionInMS(int32_t timeInMS) {
    const int32_t position = std::max(timeInMS, 0);
    if (position == m_skimPositionInMS) { return; }
    m_skimPositionInMS = position;
    m_timePlayheadListeners.tell(
        [this](auto& listener) { listener.timeManagerDidUpdateSkimPlayhead(*this); });
    scrubToTimeInMS(m_skimPositionInMS);
}

void PCProjectTimeManager::scrubToTimeInMS(int32_t timeInMS) {
    if (!m_animationController) { return; }
    m_animationController->scrubToAnimationTime(static_cast<float>(timeInMS) / 1000.0F);
}

// Playback.

void PCProjectTimeManager::setPlayback(bool playback) {
    m_playback = playback;
    playback ? startPlayback() : stopPlayback();
    m_playbackStateListeners.tell(
        [this](auto& listener) { listener.timeManagerDidChangePlaybackState(*this); });
}

void PCProjectTimeManager::startPlayback() {
    m_playbackStartTimeInMS = m_playheadPositionInMS;
    m_playbackStartMediaTimeInSeconds = m_clock.now();
    beginPass();
    // The layers may stand at the skim playhead.
    scrubToTimeInMS(m_playheadPositionInMS);
    if (m_displaylinkAdapter) { m_displaylinkAdapter->setPaused(false); }
}

void PCProjectTimeManager::stopPlayback() {
    if (m_displaylinkAdapter) { m_displaylinkAdapter->setPaused(true); }
    setPlayheadPositionInMS(m_playbackStartTimeInMS);
}

void PCProjectTimeManager::setPlaybackBounds(const std::optional<PlaybackBounds>& bounds) {
    m_playbackBounds = bounds;
    if (m_playback) { beginPass(); }
}

void PCProjectTimeManager::beginPass() {
    const auto& bounds = m_playbackBounds;
    const int32_t time = m_playheadPositionInMS;
    const bool isWithin = !bounds || (time >= bounds->startInMS && time < bounds->endInMS);
    m_passStartTimeInMS = isWithin ? time : bounds->startInMS;
    m_passStartMediaTimeInSeconds = m_clock.now();
    setPlayheadPositionInMS(m_passStartTimeInMS);
}

void PCProjectTimeManager::updatePlayheadDuringPlayback() {
    if (!m_playback) { return; }
    const double elapsedInMS = (m_clock.now() - m_passStartMediaTimeInSeconds) * 1000.0;
    const double time = elapsedInMS + static_cast<double>(m_passStartTimeInMS);
    if (!m_playbackBounds || time < m_playbackBounds->endInMS) {
        return setPlayheadPositionInMS(wholeMilliseconds(time));
    }
    const auto [start, end, loops] = *m_playbackBounds;
    if (loops) {
        return setPlayheadPositionInMS(
            wholeMilliseconds(start + std::fmod(time - start, end - start)));
    }
    setPlayheadPositionInMS(end);
    if (m_playbackEndHandler) { m_playbackEndHandler(); }
}

// Zoom.

void PCProjectTimeManager::setZoomInPointsPerMillisecond(float zoom) {
    m_zoomInPointsPerMillisecond = zoom;
    chooseSegments();
    m_timeZoomListeners.tell([this](auto& listener) { listener.timeManagerDidUpdateZoom(*this); });
}

void PCProjectTimeManager::chooseSegments() {
    const auto zoom = static_cast<double>(m_zoomInPointsPerMillisecond);
    const auto* band =
        std::find_if(std::begin(kZoomBands), std::end(kZoomBands) - 1,
                     [zoom](const ZoomBand& candidate) { return zoom > candidate.minimumZoom; });
    setSegments(static_cast<uint64_t>(band - kZoomBands), band->segmentWidthInMS,
                band->numberOfSubsegments);
}

void PCProjectTimeManager::setSegments(uint64_t scale, int32_t widthInMS, int32_t subsegments) {
    m_segmentScale = scale;
    m_segmentWidthInMS = widthInMS;
    m_numberOfSubsegments = subsegments;
    m_segmentWidthInPoints = static_cast<float>(widthInMS) * m_zoomInPointsPerMillisecond;
    m_subsegmentWidthInMS = widthInMS / subsegments;
    const auto subsegmentWidth = static_cast<float>(m_subsegmentWidthInMS);
    m_halfSubsegmentWidthInMS = subsegmentWidth * 0.5F;
    m_subsegmentWidthInPoints = subsegmentWidth * m_zoomInPointsPerMillisecond;
}

float PCProjectTimeManager::zoomAsNormalizedPercent() const {
    const auto zoom = static_cast<double>(m_zoomInPointsPerMillisecond);
    return static_cast<float>((zoom - kZoomAtZeroPercent) / kZoomPerPercent);
}

void PCProjectTimeManager::setZoomAsNormalizedPercent(float percent) {
    setZoomInPointsPerMillisecond(
        static_cast<float>(static_cast<double>(percent) * kZoomPerPercent + kZoomAtZeroPercent));
}

double PCProjectTimeManager::pointValueFromMS(int32_t timeInMS) const {
    return static_cast<double>(static_cast<float>(timeInMS) * m_zoomInPointsPerMillisecond);
}

int32_t PCProjectTimeManager::msFromPointValue(double points) const {
    return wholeMilliseconds(points / static_cast<double>(m_zoomInPointsPerMillisecond));
}

// Ruler snapping.

int32_t PCProjectTimeManager::segmentStartInMSNotAfterTimeInMS(int32_t timeInMS) const {
    const int64_t towardZero = timeInMS - timeInMS % m_segmentWidthInMS;
    if (timeInMS >= 0) { return nearestTime(towardZero); }
    return nearestTime(int64_t{timeInMS} - m_segmentWidthInMS - timeInMS % m_segmentWidthInMS);
}

int32_t PCProjectTimeManager::zoomSpecificTickClosestToTimeInMS(int32_t timeInMS) const {
    const int32_t rest = timeInMS % m_subsegmentWidthInMS;
    const bool isInFirstHalf = m_halfSubsegmentWidthInMS > static_cast<float>(rest);
    return isInFirstHalf ? timeInMS - rest : zoomSpecificTickAfterTimeInMS(timeInMS);
}

int32_t PCProjectTimeManager::zoomSpecificTickBeforeTimeInMS(int32_t timeInMS) const {
    const int32_t rest = timeInMS % m_subsegmentWidthInMS;
    if (rest != 0) { return timeInMS - rest; }
    return nearestTime(int64_t{timeInMS} - m_subsegmentWidthInMS);
}

int32_t PCProjectTimeManager::zoomSpecificTickAfterTimeInMS(int32_t timeInMS) const {
    const int32_t rest = timeInMS % m_subsegmentWidthInMS;
    return nearestTime(int64_t{timeInMS} - rest + m_subsegmentWidthInMS);
}

QString PCProjectTimeManager::displayStringForTimeInMS(int32_t timeInMS) {
    const int32_t time = std::max(timeInMS, 0);
    const int32_t minutes = time / 60000;
    const int32_t seconds = time / 1000 % 60;
    const auto hundredths = static_cast<int32_t>((static_cast<double>(time % 1000) + 0.5) / 10.0);
    if (minutes == 0) { return u"%1.%2"_s.arg(QString::number(seconds), twoDigits(hundredths)); }
    return u"%1:%2.%3"_s.arg(QString::number(minutes), twoDigits(seconds), twoDigits(hundredths));
}

// Listeners.

Subscription PCProjectTimeManager::addPlayheadTimeListener(
    PCProjectTimeManagerPlayheadListener* listener) {
    return m_timePlayheadListeners.add(listener);
}

void PCProjectTimeManager::removePlayheadTimeListener(
    PCProjectTimeManagerPlayheadListener* listener) {
    m_timePlayheadListeners.remove(listener);
}

Subscription PCProjectTimeManager::addZoomTimeListener(PCProjectTimeManagerZoomListener* listener) {
    return m_timeZoomListeners.add(listener);
}

void PCProjectTimeManager::removeZoomTimeListener(PCProjectTimeManagerZoomListener* listener) {
    m_timeZoomListeners.remove(listener);
}

Subscription PCProjectTimeManager::addPlaybackStateListener(
    PCProjectTimeManagerPlaybackStateListener* listener) {
    return m_playbackStateListeners.add(listener);
}

void PCProjectTimeManager::removePlaybackStateListener(
    PCProjectTimeManagerPlaybackStateListener* listener) {
    m_playbackStateListeners.remove(listener);
}

void PCProjectTimeManager::notifyAllTimeListeners() {
    m_timeZoomListeners.tell([this](auto& listener) { listener.timeManagerDidUpdateZoom(*this); });
    m_timePlayheadListeners.tell(
        [this](auto& listener) { listener.timeManagerDidUpdatePlayhead(*this); });
}

void PCProjectTimeManager::removeAllListeners() {
    m_timeZoomListeners.removeAll();
    m_timePlayheadListeners.removeAll();
}

QString PCProjectTimeManager::debugDescription() const {
    return u"<PCProjectTimeManager playhead:%1 zoomInPointsPerMS:%2/>"_s.arg(
        QString::number(m_playheadPositionInMS),
        QString::fromStdString(fixedText(static_cast<double>(m_zoomInPointsPerMillisecond), 3)));
}

}  // namespace tweenery
