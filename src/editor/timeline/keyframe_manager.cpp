#include "editor/timeline/keyframe_manager.h"

#include <algorithm>
#include <map>

#include "base/errors.h"
#include "model/project.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

using Keyframes = PCKeyframeManager::Keyframes;
using KeyframeSet = PCKeyframeManager::KeyframeSet;

Keyframes membersNotIn(const KeyframeSet& others, const KeyframeSet& set) {
    Keyframes members;
    std::copy_if(set.begin(), set.end(), std::back_inserter(members),
                 [&others](const auto& keyframe) { return !others.contains(keyframe); });
    return members;
}

}  // namespace

PCKeyframeManager::PCKeyframeManager(const std::shared_ptr<PCProject>& project)
    : m_project(project),
      m_animationSubscription(project->animationsManager().addChangeListener(this)) {}

// Keyframes.

void PCKeyframeManager::selectKeyframe(const Keyframe& keyframe) {
    if (!keyframe || !m_selectedKeyframes.insert(keyframe).second) { return; }
    m_selectionListeners.tell([&](auto& listener) {
        listener.keyframeSelectionManagerDidSelectKeyframe(*this, keyframe);
    });
}

void PCKeyframeManager::deselectKeyframe(const Keyframe& keyframe) {
    const Keyframe deselected = keyframe;  // which may be the member that goes
    m_selectedKeyframes.erase(deselected);
    m_selectionListeners.tell([&](auto& listener) {
        listener.keyframeSelectionManagerDidDeselectKeyframe(*this, deselected);
    });
}

void PCKeyframeManager::deselectAllKeyframes() {
    const KeyframeSet all = m_selectedKeyframes;
    for (const Keyframe& keyframe : all) {
        deselectKeyframe(keyframe);
    }
}

void PCKeyframeManager::setSelectionToSingleKeyframe(const Keyframe& keyframe) {
    deselectAllTweens();
    if (keyframeIsSelected(keyframe)) { return; }
    deselectAllKeyframes();
    selectKeyframe(keyframe);
}

void PCKeyframeManager::selectKeyframeByExtendingSelection(const Keyframe& keyframe) {
    deselectAllTweens();
    if (!keyframe || keyframeIsSelected(keyframe)) { return; }
    selectKeyframe(keyframe);
    if (!keyframe->isInTimeline()) { return; }
    const auto timeline = keyframe->timeline();
    size_t first = keyframe->index();
    size_t last = first;
    for (const Keyframe& selected : m_selectedKeyframes) {
        if (!selected->isInTimeline() || selected->timeline() != timeline) { continue; }
        first = std::min(first, selected->index());
        last = std::max(last, selected->index());
    }
    for (size_t i = first; i <= last; ++i) {
        selectKeyframe(timeline->existingKeyframeAtKeyframeIndex(i));
    }
}

void PCKeyframeManager::selectKeyframes(const KeyframeSet& keyframes) {
    for (const Keyframe& keyframe : membersNotIn(keyframes, m_selectedKeyframes)) {
        deselectKeyframe(keyframe);
    }
    for (const Keyframe& keyframe : keyframes) {
        selectKeyframe(keyframe);
    }
}

void PCKeyframeManager::selectAllKeyframesForTimeline(const PCKeyedPropertyTimeline& timeline) {
    for (const Keyframe& keyframe : timeline.keyframesSortedByTime()) {
        selectKeyframe(keyframe);
    }
}

PCKeyframeManager::Keyframes PCKeyframeManager::selectedKeyframesSortedByTimeInMS() const {
    Keyframes sorted(m_selectedKeyframes.begin(), m_selectedKeyframes.end());
    std::sort(sorted.begin(), sorted.end(),
              [](const Keyframe& a, const Keyframe& b) { return a->timeInMS() < b->timeInMS(); });
    return sorted;
}

// What is selected is held.
bool PCKeyframeManager::keyframeIsSelected(const PCKeyedPropertyTimeline& timeline,
                                           size_t index) const {
    return !m_selectedKeyframes.empty() && keyframeIsSelected(timeline.heldKeyframe(index));
}

bool PCKeyframeManager::tweenIsSelected(const PCKeyedPropertyTimeline& timeline,
                                        size_t index) const {
    return !m_selectedTweens.empty() && tweenIsSelected(timeline.heldKeyframe(index));
}

void PCKeyframeManager::shiftSelectedKeyframesBy(int32_t deltaInMS) {
    std::map<PCKeyedPropertyTimeline::Ptr, Keyframes> byTimeline;
    for (const Keyframe& keyframe : m_selectedKeyframes) {
        if (keyframe->isInTimeline()) { byTimeline[keyframe->timeline()].push_back(keyframe); }
    }
    for (const auto& [timeline, keyframes] : byTimeline) {
        timeline->moveKeyframes(keyframes, deltaInMS);
    }
}

// Tweens.

void PCKeyframeManager::selectTween(const Keyframe& endKeyframe) {
    if (!endKeyframe || !m_selectedTweens.insert(endKeyframe).second) { return; }
    m_selectionListeners.tell(
        [&](auto& listener) { listener.keyframeManagerDidSelectTween(*this, endKeyframe); });
}

void PCKeyframeManager::deselectTween(const Keyframe& endKeyframe) {
    const Keyframe deselected = endKeyframe;  // which may be the member that goes
    if (m_selectedTweens.erase(deselected) == 0) { return; }
    m_selectionListeners.tell(
        [&](auto& listener) { listener.keyframeManagerDidDeselectTween(*this, deselected); });
}

void PCKeyframeManager::deselectAllTweens() {
    const KeyframeSet all = m_selectedTweens;
    for (const Keyframe& endKeyframe : all) {
        deselectTween(endKeyframe);
    }
}

void PCKeyframeManager::selectTweens(const KeyframeSet& endKeyframes) {
    for (const Keyframe& endKeyframe : membersNotIn(endKeyframes, m_selectedTweens)) {
        deselectTween(endKeyframe);
    }
    for (const Keyframe& endKeyframe : endKeyframes) {
        selectTween(endKeyframe);
    }
}

// Listeners.

Subscription PCKeyframeManager::addSelectionListener(PCKeyframeManagerSelectionListener* listener) {
    assertContract(!m_selectionListeners.contains(listener), u"listener was already added"_s);
    return m_selectionListeners.add(listener);
}

void PCKeyframeManager::removeSelectionListener(PCKeyframeManagerSelectionListener* listener) {
    assertContract(m_selectionListeners.remove(listener), u"listener was not already added"_s);
}

// Keyframes of an animation that is no longer shown are nothing to act on.
void PCKeyframeManager::animationManagerDidSelectAnimation(PCAnimationsManager&,
                                                           const PCAnimation::Ptr&) {
    deselectAllTweens();
    deselectAllKeyframes();
}

}  // namespace tweenery
