#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>

#include "base/handler_set.h"
#include "editor/canvas/element_selection_manager.h"
#include "editor/layers/project_layers.h"
#include "editor/timeline/project_time_manager.h"
#include "model/animations_manager.h"

namespace tweenery {

class PCProject;
class TimelineOutline;

/// A stretch of time that is played over and over, in milliseconds.
struct LoopRange {
    int32_t startInMS = 0;
    int32_t endInMS = 0;  // above the start; no longer part of it
    bool isOn = true;

    bool operator==(const LoopRange&) const = default;
};

/// Plays the selected animation on the canvas's layers. While it plays, each element's layer stands
/// at the setup state and carries the animations of the element's timelines, and the time manager
/// moves the layers' time. While it does not, the layers show the playhead's time, or that of the
/// skim playhead. Works without a screen, too: then there are no layers to move.
///
/// What happens at the last keyframe is the user's choice (PCAppPreferences::playbackEnd()), unless
/// a range is looped. Each animation has its own, as long as the window is open.
class Playback : public PCProjectTimeManagerPlayheadListener,
                 public PCProjectTimeManagerPlaybackStateListener,
                 public PCAnimationsManagerChangeListener {
 public:
    /// The managers and the outline must outlive it; the project is not kept alive. `layers` is
    /// null without a screen.
    Playback(const std::shared_ptr<PCProject>& project, PCProjectTimeManager& timeManager,
             PCElementSelectionManager& selectionManager, const TimelineOutline& outline,
             std::shared_ptr<ProjectLayers> layers);
    ~Playback() override;
    Playback(const Playback&) = delete;
    Playback& operator=(const Playback&) = delete;

    /// Starts from the playhead, without a selection whose borders would show; from the start of
    /// what is played where the playhead lies beyond it. Or stops, returns
    /// the playhead to where it was and selects again what was selected.
    void togglePlayPause();
    /// Ends a run so that the playhead stays at the time shown, and selects again what was
    /// selected. Does nothing unless playing.
    void stopHere();

    // The range of the selected animation. A change goes for a run under way, too.

    /// Nothing without a range, and in setup mode.
    std::optional<LoopRange> loopRange() const;
    /// Makes it a range that is on. `startInMS` is 0 or more, and less than `endInMS`.
    void setLoopRange(int32_t startInMS, int32_t endInMS);
    /// From a time to where the range ended, if that is later, else to the last keyframe, or for
    /// one second.
    void setLoopStart(int32_t timeInMS);
    /// From where the range began, if that is earlier, else from 0. Nothing happens at 0.
    void setLoopEnd(int32_t timeInMS);
    /// Switches a range on and off. Without one, and on: from 0 to the last keyframe.
    void setLoopRangeIsOn(bool isOn);
    void clearLoopRange();
    /// To be called when the user has chosen another PCAppPreferences::playbackEnd().
    void playbackEndDidChange() { updateBounds(); }
    /// Called when loopRange() is another.
    Subscription addLoopRangeHandler(std::function<void()> handler) {
        return m_rangeHandlers.add(std::move(handler));
    }

    /// Empty unless playing.
    const PCElement::Elements& selectionBeforePlayback() const { return m_selectionBeforePlayback; }

    void timeManagerDidUpdatePlayhead(PCProjectTimeManager& manager) override;
    void timeManagerDidUpdateSkimPlayhead(PCProjectTimeManager& manager) override;
    void timeManagerDidChangePlaybackState(PCProjectTimeManager& manager) override;
    /// Another animation ends playback; nothing is selected then.
    void animationManagerDidSelectAnimation(PCAnimationsManager& manager,
                                            const PCAnimation::Ptr& animation) override;

 private:
    std::weak_ptr<PCProject> m_project;
    PCProjectTimeManager& m_timeManager;
    PCElementSelectionManager& m_selectionManager;
    const TimelineOutline& m_outline;
    std::shared_ptr<ProjectLayers> m_layers;
    PCElement::Elements m_selectionBeforePlayback;
    PCElement::Elements m_animatedElements;  // whose layers carry animations
    std::array<Subscription, 3> m_subscriptions;
    std::map<QString, LoopRange> m_loopRanges;  // by the animation's identifier
    HandlerSet m_rangeHandlers;

    void attachAnimations(PCProject& project);
    void removeAnimations();
    void show(EditTime time);
    void restoreSelection();
    QString animationIdentifier() const;
    void storeLoopRange(const std::optional<LoopRange>& range);
    int32_t lastKeyframeTime() const;
    void updateBounds();
    std::optional<PlaybackBounds> bounds() const;
};

}  // namespace tweenery
