// How a timeline's keyframes change, and how they are kept packed. How that is undone stands in
// keyed_property_timeline_undo.cpp.

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

#include "base/errors.h"
#include "model/edit_context.h"
#include "model/keyed_property_timeline.h"
#include "model/preferences/project_preferences.h"
#include "model/properties/easing.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

// What an archive can hold.
float finite(float number) {
    constexpr float kGreatest = std::numeric_limits<float>::max();
    return std::isnan(number) ? 0 : std::clamp(number, -kGreatest, kGreatest);
}

}  // namespace

// Packed storage.

KeyframeRecord PCKeyedPropertyTimeline::recordOfKeyframe(size_t index) const {
    const Key& key = m_keys[index];
    KeyframeRecord record;
    record.timeInMS = m_times[index];
    record.easingMode = easingModeOfKeyframe(index);
    record.instantTransition = key.has(kInstant);
    record.keyall = key.has(kKeyall);
    record.liveRecorded = key.has(kRecorded);
    record.liveRecordedStart = key.has(kRecordedStart);
    record.liveRecordedEnd = key.has(kRecordedEnd);
    record.identifier = m_identifiers[index];
    record.value = storedValueOfKeyframe(index);
    return record;
}

PropertyValue PCKeyedPropertyTimeline::storedValueOfKeyframe(size_t index) const {
    switch (m_keys[index].held) {
        case Held::Number:
            return m_keys[index].number;
        case Held::Other:
            return (*m_otherValues)[index];
        case Held::Nothing:
            break;
    }
    return {};
}

void PCKeyedPropertyTimeline::writeRecord(size_t index, const KeyframeRecord& record) {
    const auto flag = [](bool set, PackedKeyframe::Flag bit) {
        return set ? static_cast<int>(bit) : 0;
    };
    Key& key = m_keys[index];
    m_times[index] = record.timeInMS;
    key.easingMode = static_cast<int16_t>(record.easingMode);
    key.flags = static_cast<uint8_t>(
        flag(record.instantTransition, kInstant) | flag(record.keyall, kKeyall) |
        flag(record.liveRecorded, kRecorded) | flag(record.liveRecordedStart, kRecordedStart) |
        flag(record.liveRecordedEnd, kRecordedEnd));
    m_identifiers[index] = record.identifier;
    writeValue(index, record.value);
    contentsDidChange();
}

void PCKeyedPropertyTimeline::writeValue(size_t index, const PropertyValue& value) {
    Key& key = m_keys[index];
    if (key.held == Held::Other) { (*m_otherValues)[index] = {}; }
    if (const float* number = std::get_if<float>(&value)) {
        key.number = *number;
        key.held = Held::Number;
    } else if (std::holds_alternative<std::monostate>(value)) {
        key.held = Held::Nothing;
    } else {
        if (!m_otherValues) { m_otherValues = std::make_unique<OtherValues>(m_keys.size()); }
        (*m_otherValues)[index] = value;
        key.held = Held::Other;
    }
}

void PCKeyedPropertyTimeline::insertRecord(size_t index, const KeyframeRecord& record,
                                           PCPropertyKeyframe* handle) {
    const auto at = static_cast<ptrdiff_t>(index);
    m_times.insert(m_times.begin() + at, 0);
    m_keys.insert(m_keys.begin() + at, Key());
    m_identifiers.insert(m_identifiers.begin() + at, Identifier());
    if (m_otherValues) { m_otherValues->insert(m_otherValues->begin() + at, PropertyValue()); }
    if (m_handles) { m_handles->insert(m_handles->begin() + at, nullptr); }
    renumberHandles(index + 1);
    writeRecord(index, record);
    if (handle) { attach(*handle, index); }
}

void PCKeyedPropertyTimeline::appendRecord(const KeyframeRecord& record) {
    m_times.push_back(0);
    m_keys.emplace_back();
    m_identifiers.emplace_back();
    if (m_otherValues) { m_otherValues->emplace_back(); }
    if (m_handles) { m_handles->push_back(nullptr); }
    writeRecord(m_keys.size() - 1, record);
}

void PCKeyedPropertyTimeline::eraseAt(size_t index) {
    const auto at = static_cast<ptrdiff_t>(index);
    if (m_handles) {
        if (PCPropertyKeyframe* handle = (*m_handles)[index]) { detach(*handle); }
        m_handles->erase(m_handles->begin() + at);
    }
    m_times.erase(m_times.begin() + at);
    m_keys.erase(m_keys.begin() + at);
    m_identifiers.erase(m_identifiers.begin() + at);
    if (m_otherValues) { m_otherValues->erase(m_otherValues->begin() + at); }
    contentsDidChange();
    renumberHandles(index);
}

// Handles.

PCKeyedPropertyTimeline::KeyframePtr PCKeyedPropertyTimeline::handleAt(size_t index) const {
    if (m_handles && (*m_handles)[index]) { return (*m_handles)[index]->shared_from_this(); }
    // A handle may write, which is the timeline's business and not its reader's.
    auto* self = const_cast<PCKeyedPropertyTimeline*>(this);
    KeyframePtr handle = PCPropertyKeyframe::initWithRecord(self->shared_from_this(), {});
    self->attach(*handle, index);
    return handle;
}

void PCKeyedPropertyTimeline::attach(PCPropertyKeyframe& handle, size_t index) {
    if (!m_handles) { m_handles = std::make_unique<Handles>(m_keys.size(), nullptr); }
    (*m_handles)[index] = &handle;
    handle.m_owner = this;
    handle.m_index = index;
    handle.m_store = weak_from_this();
    handle.m_record = {};
}

void PCKeyedPropertyTimeline::detach(PCPropertyKeyframe& handle) {
    handle.m_record = recordOfKeyframe(handle.m_index);
    handle.m_owner = nullptr;
    (*m_handles)[handle.m_index] = nullptr;
}

void PCKeyedPropertyTimeline::forgetHandle(size_t index) {
    (*m_handles)[index] = nullptr;
}

void PCKeyedPropertyTimeline::detachAll() {
    if (!m_handles) { return; }
    for (PCPropertyKeyframe* handle : *m_handles) {
        if (handle) { detach(*handle); }
    }
    m_handles.reset();
}

void PCKeyedPropertyTimeline::renumberHandles(size_t from) {
    if (!m_handles) { return; }
    for (size_t i = from; i < m_handles->size(); ++i) {
        if ((*m_handles)[i]) { (*m_handles)[i]->m_index = i; }
    }
}

// Edits.

void PCKeyedPropertyTimeline::contentsDidChange() {
    m_isAsStored = false;
    forgetSamples();
}

void PCKeyedPropertyTimeline::forgetSamples() const {
    if (const TimelineOwner* element = owner()) { element->forgetSamplesOf(*this); }
}

Subscription PCKeyedPropertyTimeline::addChangeListener(
    PCKeyedPropertyTimelineChangeListener* listener) {
    if (!m_listeners) {
        m_listeners = std::make_unique<ListenerSet<PCKeyedPropertyTimelineChangeListener>>();
    }
    return m_listeners->add(listener);
}

void PCKeyedPropertyTimeline::rewriteKeyframe(size_t index, const KeyframeRecord& record) {
    writeRecord(index, record);
    m_hasUnsavedChanges = true;  // whether it is reported or not
}

void PCKeyedPropertyTimeline::registerUndoOfKeyframe(UndoAction inverse) {
    if (owner()) { registerUndo(std::move(inverse)); }
}

void PCKeyedPropertyTimeline::didChange() {
    m_hasUnsavedChanges = true;
    tellOfChange();
}

void PCKeyedPropertyTimeline::tellOfChange() {
    if (m_listeners) {
        m_listeners->tell(
            [this](auto& listener) { listener.keyedPropertyTimelineDidChange(*this); });
    }
    if (EditContext* context = project()) { context->timelineDidChange(*this); }
}

void PCKeyedPropertyTimeline::setRepeatBehavior(PCRepeatBehavior behavior) {
    if (behavior != m_repeatBehavior) {
        registerUndo(
            [self = shared_from_this(), old = repeatBehavior()] { self->setRepeatBehavior(old); });
    }
    m_isAsStored = false;
    m_repeatBehavior = static_cast<int8_t>(std::clamp<int64_t>(behavior, INT8_MIN, INT8_MAX));
    forgetSamples();
    didChange();
}

KeyframeRecord PCKeyedPropertyTimeline::newKeyframeRecord(int32_t timeInMS) const {
    KeyframeRecord record;
    record.timeInMS = timeInMS;
    record.identifier = Identifier::generate();
    EditContext* context = project();
    record.instantTransition = context && !context->tweenOn();
    const PCEasingMode easing =
        context ? context->preferences().defaultEasingMode() : PCEasingModeLinear;
    if (easing == easingModeInstant) {
        record.instantTransition = true;
    } else {
        record.easingMode = packedEasingMode(easing);
    }
    return record;
}

PCKeyedPropertyTimeline::KeyframePtr PCKeyedPropertyTimeline::retrieveOrCreateKeyframeAtTimeInMS(
    int32_t timeInMS) {
    if (KeyframePtr existing = existingKeyframeAtTimeInMS(timeInMS)) { return existing; }
    const size_t index = packedKeyframes().indexAtOrBefore(timeInMS) + 1;
    insertRecord(index, newKeyframeRecord(timeInMS), nullptr);
    m_hasUnsavedChanges = true;
    return handleAt(index);
}

PCKeyedPropertyTimeline::KeyframePtr PCKeyedPropertyTimeline::setStoredPropertyValue(
    const PropertyValue& value, int32_t timeInMS) {
    if (const KeyframePtr existing = existingKeyframeAtTimeInMS(timeInMS)) {
        setStoredPropertyValue(value, existing);
        return existing;
    }
    const KeyframePtr keyframe =
        PCPropertyKeyframe::initWithRecord(shared_from_this(), newKeyframeRecord(timeInMS));
    keyframe->setPropertyValue(value);
    putIn(keyframe, packedKeyframes().indexAtOrBefore(timeInMS) + 1);
    return keyframe;
}

void PCKeyedPropertyTimeline::setStoredPropertyValue(const PropertyValue& value,
                                                     const KeyframePtr& keyframe) {
    registerUndo([self = shared_from_this(), keyframe, old = keyframe->propertyValue()] {
        self->setStoredPropertyValue(old, keyframe);
    });
    keyframe->setPropertyValue(value);
    didChange();
}

PCKeyedPropertyTimeline::KeyframePtr PCKeyedPropertyTimeline::setFloatPropertyValue(
    float value, int32_t timeInMS) {
    const auto [factor, offset] = factorAndOffset();
    return setStoredPropertyValue(finite(value / factor - offset), timeInMS);
}

PCKeyedPropertyTimeline::KeyframePtr PCKeyedPropertyTimeline::setPointPropertyValue(
    QPointF value, int32_t timeInMS) {
    return setStoredPropertyValue(value, timeInMS);
}

PCKeyedPropertyTimeline::KeyframePtr PCKeyedPropertyTimeline::setArrayPropertyValue(
    const QStringList& value, int32_t timeInMS) {
    return setStoredPropertyValue(value, timeInMS);
}

PCKeyedPropertyTimeline::KeyframePtr PCKeyedPropertyTimeline::setStringPropertyValue(
    const QString& value, int32_t timeInMS) {
    return setStoredPropertyValue(value, timeInMS);
}

PCKeyedPropertyTimeline::KeyframePtr PCKeyedPropertyTimeline::setExistingValueAtTimeInMS(
    int32_t timeInMS) {
    if (isStringProperty(m_propertyType)) {
        return setStringPropertyValue(stringValueAtTimeInMS(timeInMS), timeInMS);
    }
    if (isArrayProperty(m_propertyType)) {
        return setArrayPropertyValue(arrayValueAtTimeInMS(timeInMS), timeInMS);
    }
    if (isPointProperty(m_propertyType)) {
        return setPointPropertyValue(pointValueAtTimeInMS(timeInMS), timeInMS);
    }
    return setFloatPropertyValue(floatValueAtTimeInMS(timeInMS), timeInMS);
}

void PCKeyedPropertyTimeline::deleteKeyframe(const KeyframePtr& keyframe) {
    if (!keyframe || keyframe->m_owner != this) { return; }
    registerUndo([self = shared_from_this(), keyframe, index = keyframe->m_index] {
        self->recreate(keyframe, index);
    });
    eraseKeyframe(keyframe);
}

void PCKeyedPropertyTimeline::eraseKeyframe(const KeyframePtr& keyframe) {
    eraseAt(keyframe->m_index);
    didChange();
    stopRepeatingIfInVain();
}

void PCKeyedPropertyTimeline::stopRepeatingIfInVain() {
    if (canRepeat() || m_repeatBehavior == PCRepeatBehaviorNever || isPlayedBack()) { return; }
    setRepeatBehavior(PCRepeatBehaviorNever);
}

KeyframeRecord PCKeyedPropertyTimeline::recordOfDuplicate(
    const PCPropertyKeyframe& keyframe) const {
    KeyframeRecord record = newKeyframeRecord(keyframe.timeInMS() + 1);
    record.value = keyframe.propertyValue();
    record.instantTransition = keyframe.instantTransition();
    return record;
}

PCKeyedPropertyTimeline::KeyframePtr PCKeyedPropertyTimeline::duplicateKeyframe(
    const KeyframePtr& keyframe) {
    if (keyframe->timeInMS() == INT32_MAX) { return nullptr; }
    KeyframePtr copy =
        PCPropertyKeyframe::initWithRecord(shared_from_this(), recordOfDuplicate(*keyframe));
    putIn(copy, packedKeyframes().indexAtOrBefore(keyframe->timeInMS()) + 1);
    return copy;
}

void PCKeyedPropertyTimeline::moveKeyframeAtTimeInMS(int32_t fromTime, int32_t toTime) {
    const KeyframePtr keyframe = keyframeClosestToTimeInMS(fromTime);
    if (keyframe) { moveKeyframes({keyframe}, int64_t{toTime} - keyframe->timeInMS()); }
}

void PCKeyedPropertyTimeline::moveKeyframes(const Keyframes& keyframes, int64_t deltaInMS) {
    std::vector<KeyframeTime> times;
    times.reserve(keyframes.size());
    for (const KeyframePtr& keyframe : keyframes) {
        if (keyframe->m_owner != this) { continue; }
        const int64_t newTime = m_times[keyframe->m_index] + deltaInMS;
        assertContract(newTime >= INT32_MIN && newTime <= INT32_MAX,
                       u"a keyframe cannot move out of the range of times"_s);
        times.push_back({keyframe, static_cast<int32_t>(newTime)});
    }
    setTimes(times);
}

void PCKeyedPropertyTimeline::reserveLists(size_t count) {
    m_times.reserve(count);
    m_keys.reserve(count);
    m_identifiers.reserve(count);
}

void PCKeyedPropertyTimeline::clearLists() {
    m_times.clear();
    m_keys.clear();
    m_identifiers.clear();
    m_otherValues.reset();
    contentsDidChange();
}

void PCKeyedPropertyTimeline::removeAllKeyframes() {
    detachAll();
    clearLists();
    didChange();
}

void PCKeyedPropertyTimeline::setKeyframes(const Keyframes& keyframes) {
    std::vector<KeyframeRecord> records;
    records.reserve(keyframes.size());
    for (const KeyframePtr& keyframe : keyframes) {
        records.push_back(keyframe->record());
    }
    detachAll();
    clearLists();
    reserveLists(records.size());
    for (size_t i = 0; i < records.size(); ++i) {
        const bool isOurs = keyframes[i]->m_owner == nullptr;
        insertRecord(i, records[i], isOurs ? keyframes[i].get() : nullptr);
    }
    tellOfChange();
}

std::vector<size_t> PCKeyedPropertyTimeline::indicesByTime() const {
    std::vector<size_t> order(m_keys.size());
    std::iota(order.begin(), order.end(), size_t{0});
    std::stable_sort(order.begin(), order.end(),
                     [this](size_t a, size_t b) { return m_times[a] < m_times[b]; });
    return order;
}

void PCKeyedPropertyTimeline::updateKeyframeSort() {
    if (std::is_sorted(m_times.begin(), m_times.end())) { return contentsDidChange(); }
    arrange(indicesByTime());
}

// The list becomes the keyframes at the indices in `order`.
void PCKeyedPropertyTimeline::arrange(const std::vector<size_t>& order) {
    const auto permute = [&order](auto& values) {
        std::remove_reference_t<decltype(values)> sorted;
        sorted.reserve(order.size());
        for (const size_t from : order) {
            sorted.push_back(std::move(values[from]));
        }
        values.swap(sorted);
    };
    permute(m_times);
    permute(m_keys);
    permute(m_identifiers);
    if (m_otherValues) { permute(*m_otherValues); }
    if (m_handles) { permute(*m_handles); }
    renumberHandles(0);
    contentsDidChange();
}

}  // namespace tweenery
