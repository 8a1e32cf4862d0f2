#pragma once

#include <cstdint>
#include <memory>
#include <unordered_set>

#include "base/listener_set.h"
#include "model/animations_manager.h"
#include "model/keyed_property_timeline.h"

namespace tweenery {

class PCKeyframeManager;
class PCProject;

/// Told of every keyframe and every tween that is selected or deselected. A tween is named by the
/// keyframe that it ends in.
class PCKeyframeManagerSelectionListener {
 public:
    using Keyframe = PCKeyedPropertyTimeline::KeyframePtr;
    virtual ~PCKeyframeManagerSelectionListener() = default;
    virtual void keyframeSelectionManagerDidSelectKeyframe(PCKeyframeManager& manager,
                                                           const Keyframe& keyframe) = 0;
    virtual void keyframeSelectionManagerDidDeselectKeyframe(PCKeyframeManager& manager,
                                                             const Keyframe& keyframe) = 0;
    virtual void keyframeManagerDidSelectTween(PCKeyframeManager& manager,
                                               const Keyframe& endKeyframe) = 0;
    virtual void keyframeManagerDidDeselectTween(PCKeyframeManager& manager,
                                                 const Keyframe& endKeyframe) = 0;
};

/// Which keyframes, and which tweens, are selected in the timeline of one open project: two
/// independent selections. A tween is the stretch that ends in a keyframe, and is named by it. Both
/// selections are cleared when another animation is selected; a keyframe that is deleted stays
/// selected until someone deselects it.
class PCKeyframeManager : public PCAnimationsManagerChangeListener {
 public:
    using Keyframe = PCKeyedPropertyTimeline::KeyframePtr;
    using Keyframes = PCKeyedPropertyTimeline::Keyframes;
    using KeyframeSet = std::unordered_set<Keyframe>;

    /// Both selections are empty.
    explicit PCKeyframeManager(const std::shared_ptr<PCProject>& project);
    PCKeyframeManager(const PCKeyframeManager&) = delete;
    PCKeyframeManager& operator=(const PCKeyframeManager&) = delete;

    // Keyframes.

    /// Nothing happens for null and for one that is selected.
    void selectKeyframe(const Keyframe& keyframe);
    /// Tells the listeners even when the keyframe was not selected.
    void deselectKeyframe(const Keyframe& keyframe);
    void deselectAllKeyframes();
    /// A press on a keyframe: deselects all tweens and, unless the keyframe is part of the
    /// selection already, makes it the only one.
    void setSelectionToSingleKeyframe(const Keyframe& keyframe);
    /// A press with shift: deselects all tweens, selects the keyframe and, on its timeline, all
    /// between the earliest and the latest that are selected.
    void selectKeyframeByExtendingSelection(const Keyframe& keyframe);
    /// The selection becomes `keyframes`; listeners are told what changed.
    void selectKeyframes(const KeyframeSet& keyframes);
    /// Adds all of the timeline, in the order of time.
    void selectAllKeyframesForTimeline(const PCKeyedPropertyTimeline& timeline);
    bool keyframeIsSelected(const Keyframe& keyframe) const {
        return m_selectedKeyframes.contains(keyframe);
    }
    /// The same for the keyframe at `index` (below keyframesCount()), which needs no handle for it.
    bool keyframeIsSelected(const PCKeyedPropertyTimeline& timeline, size_t index) const;
    const KeyframeSet& selectedKeyframes() const { return m_selectedKeyframes; }
    Keyframes selectedKeyframesSortedByTimeInMS() const;
    /// Moves the selected keyframes by `deltaInMS`, each timeline in one step of undo; a deleted
    /// one stays. A keyframe stays itself wherever it goes, also past another or onto its time.
    /// The caller sees to it that no time becomes negative.
    void shiftSelectedKeyframesBy(int32_t deltaInMS);

    // Tweens, by the keyframe that they end in.

    void selectTween(const Keyframe& endKeyframe);
    void deselectTween(const Keyframe& endKeyframe);
    void deselectAllTweens();
    /// The selection becomes `endKeyframes`; listeners are told what changed.
    void selectTweens(const KeyframeSet& endKeyframes);
    bool tweenIsSelected(const Keyframe& endKeyframe) const {
        return m_selectedTweens.contains(endKeyframe);
    }
    /// The same for the stretch that ends in the keyframe at `index`.
    bool tweenIsSelected(const PCKeyedPropertyTimeline& timeline, size_t index) const;
    const KeyframeSet& selectedTweens() const { return m_selectedTweens; }

    /// Not owned. Throws AssertionFailure "listener was already added".
    Subscription addSelectionListener(PCKeyframeManagerSelectionListener* listener);
    /// Throws AssertionFailure "listener was not already added".
    void removeSelectionListener(PCKeyframeManagerSelectionListener* listener);

    void animationManagerDidSelectAnimation(PCAnimationsManager& manager,
                                            const PCAnimation::Ptr& animation) override;

 private:
    std::weak_ptr<PCProject> m_project;
    KeyframeSet m_selectedTweens;
    KeyframeSet m_selectedKeyframes;
    ListenerSet<PCKeyframeManagerSelectionListener> m_selectionListeners;
    Subscription m_animationSubscription;
};

}  // namespace tweenery
