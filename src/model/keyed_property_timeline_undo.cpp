// How the edits of a timeline's keyframes are undone: by handle, since two keyframes may share a
// time, and within a gesture by a snapshot of them all.

#include <algorithm>
#include <unordered_map>

#include "model/element.h"
#include "model/keyed_property_timeline.h"
#include "model/project.h"

namespace tweenery {

void PCKeyedPropertyTimeline::registerUndo(UndoAction inverse) {
    UndoManager* undo = undoManager();
    if (!undo) { return; }
    if (undo->isInGesture()) { return registerUndoOfContents(); }
    undo->registerUndo(std::move(inverse));
}

void PCKeyedPropertyTimeline::registerUndoOfContents() {
    UndoManager* undo = undoManager();
    if (!undo || !undo->needsInverse({this, 0})) { return; }
    undo->registerUndo(
        [self = shared_from_this(), former = snapshot()] { self->restore(*former); });
}

bool PCKeyedPropertyTimeline::isPlayedBack() const {
    const UndoManager* undo = undoManager();
    return undo && (undo->isUndoing() || undo->isRedoing());
}

// Snapshots.

std::shared_ptr<const PCKeyedPropertyTimeline::Snapshot> PCKeyedPropertyTimeline::snapshot() const {
    return std::make_shared<Snapshot>(Snapshot{copy(), heldHandles()});
}

PCKeyedPropertyTimeline::IndexedHandles PCKeyedPropertyTimeline::heldHandles() const {
    IndexedHandles held;
    for (size_t i = 0; m_handles && i < m_handles->size(); ++i) {
        if ((*m_handles)[i]) { held.emplace_back(i, (*m_handles)[i]->shared_from_this()); }
    }
    return held;
}

void PCKeyedPropertyTimeline::restore(const Snapshot& former) {
    registerUndo([self = shared_from_this(), now = snapshot()] { self->restore(*now); });
    const IndexedHandles held = heldHandles();
    detachAll();
    const PCKeyedPropertyTimeline& lists = *former.lists;
    m_times = lists.m_times;
    m_keys = lists.m_keys;
    m_identifiers = lists.m_identifiers;
    m_otherValues =
        lists.m_otherValues ? std::make_unique<OtherValues>(*lists.m_otherValues) : nullptr;
    m_repeatBehavior = lists.m_repeatBehavior;
    for (const auto& [index, handle] : former.handles) {
        if (!handle->m_owner) { attach(*handle, index); }
    }
    attachByIdentifier(held);
    contentsDidChange();
    didChange();
}

// The handles that were made since the snapshot, of keyframes that it has.
void PCKeyedPropertyTimeline::attachByIdentifier(const IndexedHandles& handles) {
    std::unordered_map<Identifier, size_t> indices;
    for (const auto& [index, handle] : handles) {
        if (handle->m_owner) { continue; }
        for (size_t i = 0; indices.empty() && i < m_identifiers.size(); ++i) {
            indices.emplace(m_identifiers[i], i);
        }
        const auto found = indices.find(handle->identifier());
        const bool isFree = found != indices.end() && !(m_handles && (*m_handles)[found->second]);
        if (isFree) { attach(*handle, found->second); }
    }
}

// Single keyframes.

void PCKeyedPropertyTimeline::takeOut(const KeyframePtr& keyframe) {
    if (keyframe->m_owner != this) { return; }
    registerUndo([self = shared_from_this(), keyframe, index = keyframe->m_index] {
        self->putIn(keyframe, index);
    });
    eraseKeyframe(keyframe);
}

void PCKeyedPropertyTimeline::putIn(const KeyframePtr& keyframe, size_t index) {
    if (keyframe->m_owner) { return; }
    registerUndo([self = shared_from_this(), keyframe] { self->takeOut(keyframe); });
    insertHandle(keyframe, index, keyframe->record());
}

// The deletion's inverse: of the keyframe only its time and its value come back.
void PCKeyedPropertyTimeline::recreate(const KeyframePtr& keyframe, size_t index) {
    if (keyframe->m_owner) { return; }
    registerUndo([self = shared_from_this(), keyframe] { self->deleteKeyframe(keyframe); });
    KeyframeRecord record = newKeyframeRecord(keyframe->timeInMS());
    record.value = keyframe->propertyValue();
    insertHandle(keyframe, index, record);
}

// At `index`, or where the time belongs when the list is no longer the one that it was.
void PCKeyedPropertyTimeline::insertHandle(const KeyframePtr& keyframe, size_t index,
                                           const KeyframeRecord& record) {
    const int32_t time = record.timeInMS;
    const bool fits = index <= m_times.size() && (index == 0 || m_times[index - 1] <= time) &&
                      (index == m_times.size() || m_times[index] >= time);
    insertRecord(fits ? index : packedKeyframes().indexAtOrBefore(time) + 1, record,
                 keyframe.get());
    didChange();
}

// Moves.

PCKeyedPropertyTimeline::Placements PCKeyedPropertyTimeline::placementsOf(
    const Keyframes& keyframes) const {
    Placements placements;
    placements.reserve(keyframes.size());
    for (const KeyframePtr& keyframe : keyframes) {
        if (keyframe->m_owner != this) { continue; }
        placements.push_back({keyframe, m_times[keyframe->m_index], keyframe->m_index});
    }
    return placements;
}

// The other keyframes keep their order and fill the places between.
void PCKeyedPropertyTimeline::place(const Placements& placements) {
    Keyframes keyframes;
    std::transform(placements.begin(), placements.end(), std::back_inserter(keyframes),
                   [](const Placement& placement) { return placement.keyframe; });
    registerUndo(
        [self = shared_from_this(), former = placementsOf(keyframes)] { self->place(former); });
    std::vector<size_t> order(m_keys.size(), kNotFound);
    std::vector<bool> isPlaced(m_keys.size());
    for (const auto& [keyframe, timeInMS, index] : placements) {
        const bool hasPlace = keyframe->m_owner == this && index < order.size();
        if (!hasPlace || order[index] != kNotFound || isPlaced[keyframe->m_index]) { continue; }
        order[index] = keyframe->m_index;
        isPlaced[keyframe->m_index] = true;
        m_times[keyframe->m_index] = timeInMS;
    }
    size_t other = 0;
    for (size_t& from : order) {
        if (from != kNotFound) { continue; }
        while (isPlaced[other]) {
            ++other;
        }
        from = other++;
    }
    arrange(order);
    if (!std::is_sorted(m_times.begin(), m_times.end())) { updateKeyframeSort(); }
    didChange();
}

}  // namespace tweenery
