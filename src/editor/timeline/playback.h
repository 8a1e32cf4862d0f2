#pragma once

#include <memory>

#include "editor/canvas/element_selection_manager.h"
#include "editor/layers/project_layers.h"
#include "editor/timeline/project_time_manager.h"
#include "model/animations_manager.h"

namespace tweenery {

class PCProject;

/// Plays the selected animation on the canvas's layers. While it plays, each element's layer stands
/// at the setup state and carries the animations of the element's timelines, and the time manager
/// moves the layers' time. While it does not, the layers show the playhead's time, or that of the
/// skim playhead. Works without a screen, too: then there are no layers to move.
class Playback : public PCProjectTimeManagerPlayheadListener,
                 public PCProjectTimeManagerPlaybackStateListener,
                 public PCAnimationsManagerChangeListener {
 public:
    /// The managers must outlive it; the project is not kept alive. `layers` is null without a
    /// screen.
    Playback(const std::shared_ptr<PCProject>& project, PCProjectTimeManager& timeManager,
             PCElementSelectionManager& selectionManager, std::shared_ptr<ProjectLayers> layers);
    Playback(const Playback&) = delete;
    Playback& operator=(const Playback&) = delete;

    /// Starts from the playhead, without a selection whose borders would show. Or stops, returns
    /// the playhead to where it was and selects again what was selected.
    void togglePlayPause();
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
    std::shared_ptr<ProjectLayers> m_layers;
    PCElement::Elements m_selectionBeforePlayback;
    PCElement::Elements m_animatedElements;  // whose layers carry animations
    std::array<Subscription, 3> m_subscriptions;

    void attachAnimations(PCProject& project);
    void removeAnimations();
    void show(EditTime time);
    void restoreSelection();
};

}  // namespace tweenery
