#pragma once

#include <QString>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include "base/listener_set.h"
#include "base/media_clock.h"
#include "base/ports.h"
#include "editor/timeline/displaylink_adapter.h"
#include "editor/timeline/layer_animation_controller.h"

namespace tweenery {

class PCProjectTimeManager;

/// How far the playhead goes while playing, in milliseconds.
struct PlaybackBounds {
    int32_t startInMS = 0;
    int32_t endInMS = 0;  // above the start
    bool loops = true;    // from the end back to the start; else the run ends there
};

/// Told when the playhead has moved, and when the skim playhead has. The layers still show the old
/// time then.
class PCProjectTimeManagerPlayheadListener {
 public:
    virtual ~PCProjectTimeManagerPlayheadListener() = default;
    virtual void timeManagerDidUpdatePlayhead(PCProjectTimeManager& manager) = 0;
    virtual void timeManagerDidUpdateSkimPlayhead(PCProjectTimeManager&) {}
};

/// Told of every zoom that is assigned.
class PCProjectTimeManagerZoomListener {
 public:
    virtual ~PCProjectTimeManagerZoomListener() = default;
    virtual void timeManagerDidUpdateZoom(PCProjectTimeManager& manager) = 0;
};

/// Told of every start and stop of playback.
class PCProjectTimeManagerPlaybackStateListener {
 public:
    virtual ~PCProjectTimeManagerPlaybackStateListener() = default;
    virtual void timeManagerDidChangePlaybackState(PCProjectTimeManager& manager) = 0;
};

/// The current time of one open project: the playhead and the skim playhead, the clock that moves
/// the playhead during playback, the timeline's zoom with the arithmetic of its ruler, and the text
/// of a time. It knows nothing of keyframes or elements.
///
/// Times are whole milliseconds; widths are points. The ruler has labelled segments, divided into
/// subsegments, whose ends are the ticks that times snap to. What no 32-bit time can hold becomes
/// the nearest that can. Listeners are not owned and each a member once; adding one again, or
/// taking away one that is not there, changes nothing.
class PCProjectTimeManager {
 public:
    /// The clock and the log must outlive the manager.
    PCProjectTimeManager(const MediaClock& clock, LogPort& log);
    PCProjectTimeManager(const PCProjectTimeManager&) = delete;
    PCProjectTimeManager& operator=(const PCProjectTimeManager&) = delete;

    /// From now on the layer's time follows the playheads, and displaylinkAdapter() is there,
    /// paused. `layer` is the root of the scene and outlives the manager.
    void prepareToAnimateLayer(Layer& layer);
    /// Null before prepareToAnimateLayer(), like the adapter.
    PCLayerAnimationController* animationController() const { return m_animationController.get(); }
    /// Whoever drives playback calls its tick() at each refresh of the display.
    PCDisplaylinkAdapter* displaylinkAdapter() const { return m_displaylinkAdapter.get(); }

    // The playheads: never negative. Nothing happens when a value is assigned that they have.
    // Listeners are told first, then the layer's time follows: the last one assigned wins.

    int32_t playheadPositionInMS() const { return m_playheadPositionInMS; }
    void setPlayheadPositionInMS(int32_t timeInMS);
    int32_t skimPositionInMS() const { return m_skimPositionInMS; }
    void setSkimPositionInMS(int32_t timeInMS);

    // Playback.

    bool isPlayingBack() const { return m_playback; }
    /// True starts the frames, and the playhead moves with the clock from where it is; without
    /// bounds it runs on past the end of the animation. False stops them and returns the playhead
    /// to where it was at the start, when it no longer counts as playing. Told to the listeners,
    /// changed or not.
    void setPlayback(bool playback);
    int32_t playbackStartTimeInMS() const { return m_playbackStartTimeInMS; }
    /// Seconds on the clock at the start of playback.
    double playbackStartMediaTimeInSeconds() const { return m_playbackStartMediaTimeInSeconds; }
    /// Where it plays: a run that would start outside of them starts at their start. While playing,
    /// the run goes on from where it is.
    void setPlaybackBounds(const std::optional<PlaybackBounds>& bounds);
    /// Called when the playhead has come to the end of bounds that do not loop, and is to stop the
    /// run.
    void setPlaybackEndHandler(std::function<void()> handler) {
        m_playbackEndHandler = std::move(handler);
    }
    /// Called for every frame. Does nothing unless playing.
    void updatePlayheadDuringPlayback();

    // Zoom.

    float zoomInPointsPerMillisecond() const { return m_zoomInPointsPerMillisecond; }
    /// Above 0. Told to the listeners, changed or not.
    void setZoomInPointsPerMillisecond(float zoom);
    /// 0 stands for 1.5 points per millisecond, 1 for 0.015; goes on beyond both.
    float zoomAsNormalizedPercent() const;
    void setZoomAsNormalizedPercent(float percent);
    /// 0 (finest) to 6 (coarsest): how long the segments are at this zoom.
    uint64_t segmentScale() const { return m_segmentScale; }
    int32_t segmentWidthInMS() const { return m_segmentWidthInMS; }
    float segmentWidthInPoints() const { return m_segmentWidthInPoints; }
    int32_t numberOfSubsegments() const { return m_numberOfSubsegments; }
    int32_t subsegmentWidthInMS() const { return m_subsegmentWidthInMS; }
    float subsegmentWidthInPoints() const { return m_subsegmentWidthInPoints; }
    float halfSubsegmentWidthInMS() const { return m_halfSubsegmentWidthInMS; }

    /// The place of a time on the ruler.
    double pointValueFromMS(int32_t timeInMS) const;
    /// The whole millisecond at a place, cut toward zero.
    int32_t msFromPointValue(double points) const;

    // Ruler snapping. Results may be negative.

    /// The beginning of the segment; that of the one below for a negative time on a boundary.
    int32_t segmentStartInMSNotAfterTimeInMS(int32_t timeInMS) const;
    /// Half way between two ticks is nearer to the later one. A negative time goes toward zero.
    int32_t zoomSpecificTickClosestToTimeInMS(int32_t timeInMS) const;
    /// Strictly before, except for a negative time between two ticks, which goes toward zero.
    int32_t zoomSpecificTickBeforeTimeInMS(int32_t timeInMS) const;
    /// Strictly after.
    int32_t zoomSpecificTickAfterTimeInMS(int32_t timeInMS) const;

    /// Seconds and hundredths, "1.23", from one minute on with minutes, "1:01.00". A negative time
    /// is shown as 0.
    static QString displayStringForTimeInMS(int32_t timeInMS);

    // Listeners.

    Subscription addPlayheadTimeListener(PCProjectTimeManagerPlayheadListener* listener);
    void removePlayheadTimeListener(PCProjectTimeManagerPlayheadListener* listener);
    Subscription addZoomTimeListener(PCProjectTimeManagerZoomListener* listener);
    void removeZoomTimeListener(PCProjectTimeManagerZoomListener* listener);
    Subscription addPlaybackStateListener(PCProjectTimeManagerPlaybackStateListener* listener);
    void removePlaybackStateListener(PCProjectTimeManagerPlaybackStateListener* listener);
    /// Tells the zoom to its listeners, then the playhead to its.
    void notifyAllTimeListeners();
    /// Those of the zoom and of the playheads; those of playback stay.
    void removeAllListeners();

    QString debugDescription() const;

 private:
    const MediaClock& m_clock;
    LogPort& m_log;
    bool m_playback = false;
    int32_t m_playheadPositionInMS = 0;
    int32_t m_skimPositionInMS = 0;
    float m_zoomInPointsPerMillisecond = 0;
    int32_t m_segmentWidthInMS = 0;
    float m_segmentWidthInPoints = 0;
    int32_t m_numberOfSubsegments = 0;
    int32_t m_subsegmentWidthInMS = 0;
    float m_subsegmentWidthInPoints = 0;
    float m_halfSubsegmentWidthInMS = 0;
    int32_t m_playbackStartTimeInMS = 0;
    uint64_t m_segmentScale = 0;
    std::unique_ptr<PCLayerAnimationController> m_animationController;
    std::unique_ptr<PCDisplaylinkAdapter> m_displaylinkAdapter;
    double m_playbackStartMediaTimeInSeconds = 0;
    std::optional<PlaybackBounds> m_playbackBounds;
    std::function<void()> m_playbackEndHandler;
    int32_t m_passStartTimeInMS = 0;  // from which the clock counts
    double m_passStartMediaTimeInSeconds = 0;
    ListenerSet<PCProjectTimeManagerPlayheadListener> m_timePlayheadListeners;
    ListenerSet<PCProjectTimeManagerZoomListener> m_timeZoomListeners;
    ListenerSet<PCProjectTimeManagerPlaybackStateListener> m_playbackStateListeners;

    void setSegments(uint64_t scale, int32_t widthInMS, int32_t subsegments);
    void chooseSegments();
    void scrubToTimeInMS(int32_t timeInMS);
    void startPlayback();
    void stopPlayback();
    void beginPass();
};

}  // namespace tweenery
