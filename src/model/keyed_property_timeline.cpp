#include "model/keyed_property_timeline.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>

#include "base/errors.h"
#include "base/undo_manager.h"
#include "model/edit_context.h"
#include "model/properties/easing.h"
#include "model/properties/timing_tables.h"

using namespace Qt::StringLiterals;

namespace tweenery {

PCKeyedPropertyTimeline::Ptr PCKeyedPropertyTimeline::initForElement(
    const std::shared_ptr<TimelineOwner>& element, PCPropertyType type) {
    auto timeline = std::make_shared<PCKeyedPropertyTimeline>(Passkey(), type);
    timeline->setElement(element);
    return timeline;
}

PCKeyedPropertyTimeline::~PCKeyedPropertyTimeline() {
    detachAll();
}

PCElement* PCKeyedPropertyTimeline::element() const {
    TimelineOwner* owner = m_owner.get();
    return owner ? owner->element() : nullptr;
}

void PCKeyedPropertyTimeline::setElement(const std::shared_ptr<TimelineOwner>& element) {
    forgetSamples();
    m_owner = WeakRef<TimelineOwner>(element);
    forgetSamples();
}

EditContext* PCKeyedPropertyTimeline::project() const {
    if (const TimelineOwner* element = owner()) { return element->project(); }
    return m_project.lock().get();
}

UndoManager* PCKeyedPropertyTimeline::undoManager() const {
    EditContext* context = project();
    return context ? &context->undoManager() : nullptr;
}

PCRepeatBehavior PCKeyedPropertyTimeline::currentRepeatBehavior() const {
    if (m_propertyType != PCPropertyTypeChildrenZPositions) { return repeatBehavior(); }
    return owner() ? owner()->repeatBehaviorOfSiblingsOrder() : PCRepeatBehaviorNever;
}

bool PCKeyedPropertyTimeline::autoreversesFromCurrentRepeatBehavior() const {
    return currentRepeatBehavior() == PCRepeatBehaviorForeverAutoreverse;
}

float PCKeyedPropertyTimeline::repeatCountFromCurrentRepeatBehavior() const {
    const PCRepeatBehavior behavior = currentRepeatBehavior();
    const bool repeats =
        behavior == PCRepeatBehaviorForever || behavior == PCRepeatBehaviorForeverAutoreverse;
    return repeats ? std::numeric_limits<float>::infinity() : 0;
}

float PCKeyedPropertyTimeline::effectiveTimeForTimeInMS(int32_t timeInMS) const {
    // What does not repeat is answered without a look at the keyframes.
    if (m_repeatBehavior == PCRepeatBehaviorNever) { return static_cast<float>(timeInMS); }
    const int32_t duration = durationInMS();
    if (timeInMS <= duration) { return static_cast<float>(timeInMS); }
    if (duration <= 0) { return 0; }
    const int32_t rest = timeInMS % duration;
    const bool isOddPass = (timeInMS / duration) % 2 != 0;
    const bool isBackward = isOddPass && m_repeatBehavior == PCRepeatBehaviorForeverAutoreverse;
    return static_cast<float>(isBackward ? duration - rest : rest);
}

float PCKeyedPropertyTimeline::floatParsedByThreshold(float value) {
    return parsedByThreshold(value);
}

float PCKeyedPropertyTimeline::interpolateFloatForEffectiveTimeInMS(int32_t effectiveTime,
                                                                    int32_t startTime,
                                                                    float startValue,
                                                                    int32_t endTime, float endValue,
                                                                    PCEasingMode easing) {
    const auto elapsed = static_cast<float>(static_cast<int64_t>(effectiveTime) - startTime);
    const auto length = static_cast<float>(static_cast<int64_t>(endTime) - startTime);
    return startValue + (endValue - startValue) *
                            easedProgress(elapsed, length, singlePrecisionTimingTable(easing));
}

PropertyValue PCKeyedPropertyTimeline::setupValue() const {
    return owner() ? owner()->setupValueForPropertyType(m_propertyType) : PropertyValue();
}

// Without the boxing of setupValue().
float PCKeyedPropertyTimeline::setupNumber() const {
    const TimelineOwner* element = owner();
    return element ? element->setupNumberForPropertyType(m_propertyType) : 0;
}

FactorAndOffset PCKeyedPropertyTimeline::factorAndOffset() const {
    return tweenery::factorAndOffset(m_propertyType, setupNumber());
}

PropertyValue PCKeyedPropertyTimeline::valueOfKeyframe(const PCPropertyKeyframe& keyframe) const {
    PropertyValue stored = keyframe.propertyValue();
    const float* number = std::get_if<float>(&stored);
    if (!number || isInstantTransition()) { return stored; }
    return factorAndOffset().absolute(*number);
}

PropertyValue PCKeyedPropertyTimeline::valueOfKeyframeAtIndex(size_t index) const {
    if (m_keys[index].held != Held::Number || isInstantTransition()) {
        return storedValueOfKeyframe(index);
    }
    return floatValueOfKeyframeAtIndex(index);
}

float PCKeyedPropertyTimeline::floatValueOfKeyframeAtIndex(size_t index) const {
    return factorAndOffset().absolute(m_keys[index].number);
}

PropertyValue PCKeyedPropertyTimeline::valueAtTimeInMS(int32_t timeInMS) const {
    if (isEmpty()) { return setupValue(); }
    if (isFloatProperty(m_propertyType)) { return floatValueAtTimeInMS(timeInMS); }
    return heldValueAt(effectiveMillisecondsForTimeInMS(timeInMS));
}

float PCKeyedPropertyTimeline::floatValueAtTimeInMS(int32_t timeInMS) const {
    if (isEmpty()) { return setupNumber(); }
    if (!isFloatProperty(m_propertyType)) { return floatOfValue(valueAtTimeInMS(timeInMS)); }
    const int32_t time = effectiveMillisecondsForTimeInMS(timeInMS);
    NumberSpan span;
    span.moveTo(packedKeyframes(), packedKeyframes().indexAtOrBefore(time), m_propertyType,
                setupNumber());
    return span.valueAt(time);
}

QPointF PCKeyedPropertyTimeline::pointValueAtTimeInMS(int32_t timeInMS) const {
    return pointOfValue(valueAtTimeInMS(timeInMS));
}

// The value object of a property that never tweens, without a copy; null where the setup value or
// another kind of value holds.
const PropertyValue* PCKeyedPropertyTimeline::otherValueAt(int32_t timeInMS) const {
    if (!m_otherValues || !isInstantTransition()) { return nullptr; }
    const size_t index =
        packedKeyframes().indexAtOrBefore(effectiveMillisecondsForTimeInMS(timeInMS));
    if (index == kNotFound || m_keys[index].held != Held::Other) { return nullptr; }
    return &(*m_otherValues)[index];
}

QStringList PCKeyedPropertyTimeline::arrayValueAtTimeInMS(int32_t timeInMS) const {
    if (const PropertyValue* value = otherValueAt(timeInMS)) { return arrayOfValue(*value); }
    return arrayOfValue(valueAtTimeInMS(timeInMS));
}

QString PCKeyedPropertyTimeline::stringValueAtTimeInMS(int32_t timeInMS) const {
    if (const PropertyValue* value = otherValueAt(timeInMS)) { return stringOfValue(*value); }
    return stringOfValue(valueAtTimeInMS(timeInMS));
}

// Properties that never tween: the last keyframe holds.
PropertyValue PCKeyedPropertyTimeline::heldValueAt(int32_t effectiveTime) const {
    const size_t index = packedKeyframes().indexAtOrBefore(effectiveTime);
    return index == kNotFound ? setupValue() : storedValueOfKeyframe(index);
}

PropertyValue PCKeyedPropertyTimeline::keyframeValueAtOrBeforeTimeInMS(int32_t timeInMS) const {
    const size_t index = firstKeyframeIndexAtOrBeforeTimeInMS(timeInMS);
    return index == kNotFound ? setupValue() : storedValueOfKeyframe(index);
}

PropertyValue PCKeyedPropertyTimeline::keyframeValueAtOrAfterTimeInMS(int32_t timeInMS) const {
    const size_t index = firstKeyframeIndexAtOrAfterTimeInMS(timeInMS);
    return index == kNotFound ? setupValue() : storedValueOfKeyframe(index);
}

bool PCKeyedPropertyTimeline::timeInMSIsBeforeFirstKeyframe(int32_t timeInMS) const {
    return isEmpty() || m_times.front() > timeInMS;
}

bool PCKeyedPropertyTimeline::validateTimeForKeyframesAreSorted() const {
    return std::adjacent_find(m_times.begin(), m_times.end(), std::greater_equal<>()) ==
           m_times.end();
}

// Lookup.

size_t PCKeyedPropertyTimeline::firstKeyframeIndexAtOrBeforeTimeInMS(int32_t timeInMS) const {
    return packedKeyframes().indexAtOrBefore(timeInMS);
}

size_t PCKeyedPropertyTimeline::firstKeyframeIndexAtOrAfterTimeInMS(int32_t timeInMS) const {
    const auto found = std::lower_bound(m_times.begin(), m_times.end(), timeInMS);
    return found == m_times.end() ? kNotFound : static_cast<size_t>(found - m_times.begin());
}

PCKeyedPropertyTimeline::KeyframePtr PCKeyedPropertyTimeline::existingKeyframeAtKeyframeIndex(
    size_t index) const {
    return index < m_keys.size() ? handleAt(index) : nullptr;
}

PCKeyedPropertyTimeline::KeyframePtr PCKeyedPropertyTimeline::heldKeyframe(size_t index) const {
    PCPropertyKeyframe* handle = m_handles ? (*m_handles)[index] : nullptr;
    return handle ? handle->shared_from_this() : nullptr;
}

PCKeyedPropertyTimeline::KeyframePtr PCKeyedPropertyTimeline::keyframeAtOrAfterTimeInMS(
    int32_t timeInMS) const {
    return existingKeyframeAtKeyframeIndex(firstKeyframeIndexAtOrAfterTimeInMS(timeInMS));
}

PCKeyedPropertyTimeline::KeyframePtr PCKeyedPropertyTimeline::keyframeAtOrBeforeTimeInMS(
    int32_t timeInMS) const {
    return existingKeyframeAtKeyframeIndex(firstKeyframeIndexAtOrBeforeTimeInMS(timeInMS));
}

PCKeyedPropertyTimeline::KeyframePtr PCKeyedPropertyTimeline::existingKeyframeAtTimeInMS(
    int32_t timeInMS) const {
    const size_t index = firstKeyframeIndexAtOrBeforeTimeInMS(timeInMS);
    if (index == kNotFound || m_times[index] != timeInMS) { return nullptr; }
    return handleAt(index);
}

size_t PCKeyedPropertyTimeline::indexOfKeyframeClosestToTimeInMS(int32_t timeInMS) const {
    if (m_times.empty()) { return kNotFound; }
    const size_t after = firstKeyframeIndexAtOrAfterTimeInMS(timeInMS);
    if (after == 0) { return 0; }
    const size_t before = (after == kNotFound ? m_times.size() : after) - 1;
    const bool isNearer = after != kNotFound &&
                          int64_t{m_times[after]} - timeInMS < int64_t{timeInMS} - m_times[before];
    return isNearer ? after : firstKeyframeIndexAtOrAfterTimeInMS(m_times[before]);
}

PCKeyedPropertyTimeline::KeyframePtr PCKeyedPropertyTimeline::keyframeClosestToTimeInMS(
    int32_t timeInMS) const {
    return existingKeyframeAtKeyframeIndex(indexOfKeyframeClosestToTimeInMS(timeInMS));
}

PCKeyedPropertyTimeline::Keyframes PCKeyedPropertyTimeline::keyframesBetweenStartTime(
    int32_t startTime, int32_t endTime) const {
    Keyframes found;
    for (size_t i = firstKeyframeIndexAtOrAfterTimeInMS(startTime);
         i < m_times.size() && m_times[i] <= endTime; ++i) {
        found.push_back(handleAt(i));
    }
    return found;
}

PCKeyedPropertyTimeline::Keyframes PCKeyedPropertyTimeline::keyframesSortedByTime() const {
    Keyframes all;
    all.reserve(m_keys.size());
    for (size_t i = 0; i < m_keys.size(); ++i) {
        all.push_back(handleAt(i));
    }
    std::stable_sort(all.begin(), all.end(), [](const KeyframePtr& a, const KeyframePtr& b) {
        return a->timeInMS() < b->timeInMS();
    });
    return all;
}

QString PCKeyedPropertyTimeline::displayString() const {
    return QString::fromLatin1(propertyTypeRow(m_propertyType).displayText);
}

QString PCKeyedPropertyTimeline::debugDescription() const {
    const QString elementName = owner() ? owner()->name() : QString();
    QString text = u"[timeline%1 %2 (count:%3): "_s.arg(
        owner() ? u" (%1)"_s.arg(elementName) : QString(), stringFromPropertyType(m_propertyType),
        QString::number(keyframesCount()));
    if (!isEmpty() && m_times.front() > 0) {
        text += u"%1 (from element '%2')"_s.arg(describeValue(valueAtTimeInMS(0)), elementName);
    }
    QStringList parts;
    for (size_t i = 0; i < m_keys.size(); ++i) {
        parts += u"<%1%2%3|%4-->%5>"_s.arg(
            QString::number(m_times[i]), m_keys[i].has(kInstant) ? u"(INSTANT)"_s : QString(),
            easingSuffix(easingModeOfKeyframe(i)), describeValue(storedValueOfKeyframe(i)),
            describeValue(valueOfKeyframeAtIndex(i)));
    }
    text +=
        parts.join(u", "_s) + u"] repeatBehavior:"_s + stringFromRepeatBehavior(repeatBehavior());
    if (autoreversesFromCurrentRepeatBehavior()) { text += u" (AUTOREVERSES)"_s; }
    return text;
}

}  // namespace tweenery
