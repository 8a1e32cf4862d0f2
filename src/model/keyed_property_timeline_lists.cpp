// Edits of many keyframes of a timeline at once: the lists are walked once, whatever their number.

#include <algorithm>
#include <numeric>

#include "base/errors.h"
#include "model/edit_context.h"
#include "model/keyed_property_timeline.h"

namespace tweenery {

void PCKeyedPropertyTimeline::setTimes(const std::vector<KeyframeTime>& times) {
    Keyframes keyframes;
    keyframes.reserve(times.size());
    for (const KeyframeTime& time : times) {
        if (time.keyframe->m_owner == this) { keyframes.push_back(time.keyframe); }
    }
    if (keyframes.empty()) { return; }
    registerUndo(
        [self = shared_from_this(), former = placementsOf(keyframes)] { self->place(former); });
    for (const KeyframeTime& time : times) {
        if (time.keyframe->m_owner == this) { m_times[time.keyframe->m_index] = time.timeInMS; }
    }
    updateKeyframeSort();
    didChange();
}

void PCKeyedPropertyTimeline::deleteKeyframes(const Keyframes& keyframes) {
    std::vector<bool> goes(m_keys.size());
    for (const KeyframePtr& keyframe : keyframes) {
        if (keyframe->m_owner == this) { goes[keyframe->m_index] = true; }
    }
    std::vector<size_t> staying;
    for (size_t i = 0; i < goes.size(); ++i) {
        if (!goes[i]) { staying.push_back(i); }
    }
    if (staying.size() == m_keys.size()) { return; }
    registerUndoOfContents();
    for (const KeyframePtr& keyframe : keyframes) {
        if (keyframe->m_owner == this) { detach(*keyframe); }
    }
    arrange(staying);
    didChange();
    stopRepeatingIfInVain();
}

std::vector<std::pair<PCKeyedPropertyTimeline::KeyframePtr, PCKeyedPropertyTimeline::KeyframePtr>>
PCKeyedPropertyTimeline::duplicateKeyframes(const Keyframes& keyframes) {
    std::vector<std::pair<KeyframePtr, KeyframePtr>> pairs;
    pairs.reserve(keyframes.size());
    for (const KeyframePtr& keyframe : keyframes) {
        if (keyframe->m_owner != this || keyframe->timeInMS() == INT32_MAX) { continue; }
        if (pairs.empty()) { registerUndoOfContents(); }
        appendRecord(recordOfDuplicate(*keyframe));
        pairs.emplace_back(keyframe, handleAt(m_keys.size() - 1));
    }
    if (pairs.empty()) { return pairs; }
    std::vector<size_t> order(m_keys.size());
    std::iota(order.begin(), order.end(), size_t{0});
    const auto firstCopy = order.end() - static_cast<ptrdiff_t>(pairs.size());
    std::rotate(order.begin(), firstCopy, order.end());  // before others of their times
    std::stable_sort(order.begin(), order.end(),
                     [this](size_t a, size_t b) { return m_times[a] < m_times[b]; });
    arrange(order);
    didChange();
    return pairs;
}

PCKeyedPropertyTimeline::Keyframes PCKeyedPropertyTimeline::writeKeyframes(
    const std::vector<KeyframeRecord>& records) {
    if (records.empty()) { return {}; }
    registerUndoOfContents();
    std::vector<size_t> places;
    places.reserve(records.size());
    for (const KeyframeRecord& record : records) {
        const size_t index = packedKeyframes().indexAtOrBefore(record.timeInMS);
        const bool isThere = index != kNotFound && m_times[index] == record.timeInMS;
        places.push_back(isThere ? index : kNotFound);
    }
    for (size_t i = 0; i < records.size(); ++i) {
        KeyframeRecord record = records[i];
        const bool isThere = places[i] != kNotFound;
        record.identifier = isThere ? m_identifiers[places[i]] : Identifier::generate();
        isThere ? writeRecord(places[i], record) : appendRecord(record);
    }
    updateKeyframeSort();
    didChange();
    Keyframes written;
    written.reserve(records.size());
    for (const KeyframeRecord& record : records) {
        written.push_back(existingKeyframeAtTimeInMS(record.timeInMS));
    }
    return written;
}

}  // namespace tweenery
