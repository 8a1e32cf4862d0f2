#include "model/keyed_property_timeline.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "model/easing.h"
#include "model/element.h"
#include "model/project.h"
#include "model/timing_tables.h"
#include "platform/errors.h"

using namespace Qt::StringLiterals;

namespace tweenery {

PCKeyedPropertyTimeline::Ptr PCKeyedPropertyTimeline::initForElement(
    const std::shared_ptr<PCElement>& element, int32_t type) {
    auto timeline = std::make_shared<PCKeyedPropertyTimeline>(Passkey(), type);
    timeline->setElement(element);
    return timeline;
}

PCKeyedPropertyTimeline::~PCKeyedPropertyTimeline() {
    detachAll();
}

void PCKeyedPropertyTimeline::setElement(const std::shared_ptr<PCElement>& element) {
    m_element = WeakRef<PCElement>(element);
}

PCProject* PCKeyedPropertyTimeline::project() const {
    if (const PCElement* owner = element()) return owner->project();
    return m_project.lock().get();
}

UndoManager* PCKeyedPropertyTimeline::undoManager() const {
    PCProject* owner = project();
    return owner ? &owner->undoManager() : nullptr;
}

int64_t PCKeyedPropertyTimeline::currentRepeatBehavior() const {
    if (m_propertyType != PCPropertyTypeChildrenZPositions) return m_repeatBehavior;
    const PCElement* owner = element();
    const PCElement* parent = owner ? owner->parentElement() : nullptr;
    const Ptr decisive = parent ? parent->childrenZPositionsTimeline() : nullptr;
    return decisive ? decisive->repeatBehavior() : int64_t{PCRepeatBehaviorNever};
}

bool PCKeyedPropertyTimeline::autoreversesFromCurrentRepeatBehavior() const {
    return currentRepeatBehavior() == PCRepeatBehaviorForeverAutoreverse;
}

float PCKeyedPropertyTimeline::repeatCountFromCurrentRepeatBehavior() const {
    const int64_t behavior = currentRepeatBehavior();
    const bool repeats =
        behavior == PCRepeatBehaviorForever || behavior == PCRepeatBehaviorForeverAutoreverse;
    return repeats ? std::numeric_limits<float>::infinity() : 0;
}

float PCKeyedPropertyTimeline::effectiveTimeForTimeInMS(int32_t timeInMS) const {
    // What does not repeat is answered without a look at the keyframes.
    if (m_repeatBehavior == PCRepeatBehaviorNever) return static_cast<float>(timeInMS);
    const int32_t duration = durationInMS();
    if (timeInMS <= duration) return static_cast<float>(timeInMS);
    if (duration <= 0) return 0;
    const int32_t rest = timeInMS % duration;
    const bool isOddPass = (timeInMS / duration) % 2 != 0;
    const bool isBackward = isOddPass && autoreversesFromCurrentRepeatBehavior();
    return static_cast<float>(isBackward ? duration - rest : rest);
}

float PCKeyedPropertyTimeline::floatParsedByThreshold(float value) {
    constexpr float kNear = 0.05F;
    if (value > -kNear && value < 0) return -kNear;
    if (value >= 0 && value < kNear) return kNear;
    return value;
}

float PCKeyedPropertyTimeline::interpolateFloatForEffectiveTimeInMS(int32_t effectiveTime,
                                                                    int32_t startTime,
                                                                    float startValue,
                                                                    int32_t endTime, float endValue,
                                                                    int64_t easing) {
    const auto elapsed = static_cast<float>(static_cast<int64_t>(effectiveTime) - startTime);
    const auto length = static_cast<float>(static_cast<int64_t>(endTime) - startTime);
    float progress = elapsed / length;
    const double frame = static_cast<double>(1000.0F * progress) + 0.5;
    if (!(frame < 1000)) {
        progress = 1;
    } else if (const SinglePrecisionTable* table = singlePrecisionTimingTable(easing)) {
        progress = (*table)[static_cast<size_t>(std::max(frame, 0.0))];
    }
    return startValue + (endValue - startValue) * progress;
}

PropertyValue PCKeyedPropertyTimeline::setupValue() const {
    const PCElement* owner = element();
    return owner ? owner->setupValueForPropertyType(m_propertyType) : PropertyValue();
}

// The setup value of a float property without the boxing of setupValue().
float PCKeyedPropertyTimeline::setupNumber() const {
    const PCElement* owner = element();
    if (!owner) return 0;
    switch (m_propertyType) {
        case PCPropertyTypeOpacity:
            return static_cast<float>(owner->opacity());
        case PCPropertyTypeZRotation:
            return static_cast<float>(owner->zRotation());
        case PCPropertyTypeScaleX:
            return static_cast<float>(owner->scale().x());
        case PCPropertyTypeScaleY:
            return static_cast<float>(owner->scale().y());
        case PCPropertyTypeTranslationX:
        case PCPropertyTypeTranslationY:
            return 0;
        default:
            return floatOfValue(setupValue());
    }
}

PCKeyedPropertyTimeline::FactorAndOffset PCKeyedPropertyTimeline::factorAndOffset() const {
    switch (m_propertyType) {
        case PCPropertyTypeOpacity:
        case PCPropertyTypeScaleX:
        case PCPropertyTypeScaleY:
            return {floatParsedByThreshold(setupNumber()), 0};
        case PCPropertyTypeZRotation:
            return {1, floatParsedByThreshold(setupNumber())};
        default:
            return {1, 0};
    }
}

PropertyValue PCKeyedPropertyTimeline::valueOfKeyframe(const PCPropertyKeyframe& keyframe) const {
    const PropertyValue stored = keyframe.propertyValue();
    const float* number = std::get_if<float>(&stored);
    if (!number || isInstantTransition()) return stored;
    const auto [factor, offset] = factorAndOffset();
    return *number * factor + offset;
}

PropertyValue PCKeyedPropertyTimeline::valueOfKeyframeAtIndex(size_t index) const {
    if (m_keys[index].held != Held::Number || isInstantTransition())
        return storedValueOfKeyframe(index);
    return floatValueOfKeyframeAtIndex(index);
}

float PCKeyedPropertyTimeline::floatValueOfKeyframeAtIndex(size_t index) const {
    const auto [factor, offset] = factorAndOffset();
    return m_keys[index].number * factor + offset;
}

PropertyValue PCKeyedPropertyTimeline::valueAtTimeInMS(int32_t timeInMS) const {
    if (isEmpty()) return setupValue();
    if (isFloatProperty(m_propertyType)) return floatValueAtTimeInMS(timeInMS);
    return heldValueAt(wholeMilliseconds(effectiveTimeForTimeInMS(timeInMS)));
}

float PCKeyedPropertyTimeline::floatValueAtTimeInMS(int32_t timeInMS) const {
    if (isEmpty()) return setupNumber();
    if (!isFloatProperty(m_propertyType)) return floatOfValue(valueAtTimeInMS(timeInMS));
    return numberAt(wholeMilliseconds(effectiveTimeForTimeInMS(timeInMS)));
}

QPointF PCKeyedPropertyTimeline::pointValueAtTimeInMS(int32_t timeInMS) const {
    return pointOfValue(valueAtTimeInMS(timeInMS));
}

// The value object of a property that never tweens, without a copy; null where the setup value or
// another kind of value holds.
const PropertyValue* PCKeyedPropertyTimeline::otherValueAt(int32_t timeInMS) const {
    if (!m_otherValues || !isInstantTransition()) return nullptr;
    const size_t index = indexAtOrBefore(wholeMilliseconds(effectiveTimeForTimeInMS(timeInMS)));
    if (index == kNotFound || m_keys[index].held != Held::Other) return nullptr;
    return &(*m_otherValues)[index];
}

QStringList PCKeyedPropertyTimeline::arrayValueAtTimeInMS(int32_t timeInMS) const {
    if (const PropertyValue* value = otherValueAt(timeInMS)) return arrayOfValue(*value);
    return arrayOfValue(valueAtTimeInMS(timeInMS));
}

QString PCKeyedPropertyTimeline::stringValueAtTimeInMS(int32_t timeInMS) const {
    if (const PropertyValue* value = otherValueAt(timeInMS)) return stringOfValue(*value);
    return stringOfValue(valueAtTimeInMS(timeInMS));
}

// Properties that never tween: the last keyframe holds.
PropertyValue PCKeyedPropertyTimeline::heldValueAt(int32_t effectiveTime) const {
    const size_t index = indexAtOrBefore(effectiveTime);
    return index == kNotFound ? setupValue() : storedValueOfKeyframe(index);
}

float PCKeyedPropertyTimeline::numberAt(int32_t effectiveTime) const {
    const auto [factor, offset] = factorAndOffset();
    const Segment& segment = segmentAt(effectiveTime);
    const bool isOnKeyframe = segment.hasStart && segment.from == effectiveTime;
    const bool holdsStart = segment.hasStart && (!segment.hasEnd || segment.endIsInstant);
    if (isOnKeyframe || holdsStart) return segment.startNumber * factor + offset;
    if (segment.endIsInstant) return setupNumber();

    float startValue = segment.hasStart ? segment.startNumber * factor + offset : setupNumber();
    float endValue = segment.endNumber * factor + offset;
    if (m_propertyType == PCPropertyTypeOpacity) {
        startValue = std::clamp(startValue, 0.0F, 1.0F);
        endValue = std::clamp(endValue, 0.0F, 1.0F);
    }
    return interpolateFloatForEffectiveTimeInMS(effectiveTime, segment.hasStart ? segment.from : 0,
                                                startValue, segment.until, endValue,
                                                segment.easingMode);
}

int32_t PCKeyedPropertyTimeline::wholeMilliseconds(float effectiveTime) {
    // The largest times round up past the integers when they become floats.
    if (effectiveTime >= 2147483648.0F) return INT32_MAX;
    return static_cast<int32_t>(effectiveTime);
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
    return isEmpty() || m_keys.front().timeInMS > timeInMS;
}

bool PCKeyedPropertyTimeline::validateTimeForKeyframesAreSorted() const {
    return std::adjacent_find(m_keys.begin(), m_keys.end(), [](const Key& a, const Key& b) {
               return a.timeInMS >= b.timeInMS;
           }) == m_keys.end();
}

// Lookup.

size_t PCKeyedPropertyTimeline::indexAtOrBefore(int32_t timeInMS) const {
    if (isEmpty()) return kNotFound;
    const Segment& segment = segmentAt(timeInMS);
    return segment.hasStart ? segment.startIndex : kNotFound;
}

const PCKeyedPropertyTimeline::Segment& PCKeyedPropertyTimeline::segmentAt(int32_t timeInMS) const {
    if (!m_segment.holds(timeInMS)) m_segment = makeSegment(searchIndexAtOrBefore(timeInMS));
    return m_segment;
}

PCKeyedPropertyTimeline::Segment PCKeyedPropertyTimeline::makeSegment(size_t startIndex) const {
    Segment segment;
    segment.from = INT32_MIN;
    segment.until = INT32_MAX;
    segment.hasStart = startIndex != kNotFound;
    if (segment.hasStart) {
        segment.startIndex = static_cast<uint32_t>(startIndex);
        segment.from = m_keys[startIndex].timeInMS;
        segment.startNumber = m_keys[startIndex].number;
    }
    const size_t end = segment.hasStart ? startIndex + 1 : 0;
    segment.hasEnd = end < m_keys.size();
    if (segment.hasEnd) {
        const Key& key = m_keys[end];
        segment.until = m_keys[end].timeInMS;
        segment.endNumber = key.number;
        segment.easingMode = key.easingMode;
        segment.endIsInstant = key.has(kInstant);
    }
    return segment;
}

void PCKeyedPropertyTimeline::prefetchKeysForTimeInMS(int32_t timeInMS) const {
    constexpr size_t kKeysInCacheLine = 64 / sizeof(Key);
    if (m_segment.holds(timeInMS) || m_keys.size() > kCounted) return;
    for (size_t i = 0; i < m_keys.size(); i += kKeysInCacheLine)
        __builtin_prefetch(&m_keys[i]);
}

// Without branches on the data: with random times a wrong guess would cost more than the search.
// Once a few cache lines are left, they are fetched together by counting through them, where
// halving on would wait for one after the other.
size_t PCKeyedPropertyTimeline::searchIndexAtOrBefore(int32_t timeInMS) const {
    const Key* first = m_keys.data();
    size_t length = m_keys.size();
    while (length > kCounted) {
        const size_t half = length / 2;
        first += half * static_cast<size_t>(first[half].timeInMS <= timeInMS);
        length -= half;
    }
    size_t atOrBefore = 0;
    for (size_t i = 0; i < length; ++i) {
        atOrBefore += static_cast<size_t>(first[i].timeInMS <= timeInMS);
    }
    return static_cast<size_t>(first - m_keys.data()) + atOrBefore - 1;  // kNotFound when 0
}

size_t PCKeyedPropertyTimeline::firstKeyframeIndexAtOrBeforeTimeInMS(int32_t timeInMS) const {
    return indexAtOrBefore(timeInMS);
}

size_t PCKeyedPropertyTimeline::firstKeyframeIndexAtOrAfterTimeInMS(int32_t timeInMS) const {
    const auto found =
        std::partition_point(m_keys.begin(), m_keys.end(),
                             [timeInMS](const Key& key) { return key.timeInMS < timeInMS; });
    return found == m_keys.end() ? kNotFound : static_cast<size_t>(found - m_keys.begin());
}

PCKeyedPropertyTimeline::KeyframePtr PCKeyedPropertyTimeline::existingKeyframeAtKeyframeIndex(
    size_t index) const {
    return index < m_keys.size() ? handleAt(index) : nullptr;
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
    const size_t index = firstKeyframeIndexAtOrAfterTimeInMS(timeInMS);
    if (index == kNotFound || m_keys[index].timeInMS != timeInMS) return nullptr;
    return handleAt(index);
}

PCKeyedPropertyTimeline::KeyframePtr PCKeyedPropertyTimeline::keyframeClosestToTimeInMS(
    int32_t timeInMS) const {
    const auto distance = [timeInMS](const Key& key) {
        return std::abs(int64_t{key.timeInMS} - timeInMS);
    };
    const auto closest = std::min_element(
        m_keys.begin(), m_keys.end(),
        [&distance](const Key& a, const Key& b) { return distance(a) < distance(b); });
    if (closest == m_keys.end()) return nullptr;
    return handleAt(static_cast<size_t>(closest - m_keys.begin()));
}

PCKeyedPropertyTimeline::Keyframes PCKeyedPropertyTimeline::keyframesBetweenStartTime(
    int32_t startTime, int32_t endTime) const {
    Keyframes found;
    for (size_t i = 0; i < m_keys.size(); ++i) {
        if (m_keys[i].timeInMS >= startTime && m_keys[i].timeInMS <= endTime) {
            found.push_back(handleAt(i));
        }
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
    const QString elementName = element() ? element()->name() : QString();
    QString text = u"[timeline%1 %2 (count:%3): "_s.arg(
        element() ? u" (%1)"_s.arg(elementName) : QString(), stringFromPropertyType(m_propertyType),
        QString::number(keyframesCount()));
    if (!isEmpty() && m_keys.front().timeInMS > 0) {
        text += u"%1 (from element '%2')"_s.arg(describeValue(valueAtTimeInMS(0)), elementName);
    }
    QStringList parts;
    for (size_t i = 0; i < m_keys.size(); ++i) {
        parts += u"<%1%2%3|%4-->%5>"_s.arg(QString::number(m_keys[i].timeInMS),
                                           m_keys[i].has(kInstant) ? u"(INSTANT)"_s : QString(),
                                           easingSuffix(m_keys[i].easingMode),
                                           describeValue(storedValueOfKeyframe(i)),
                                           describeValue(valueOfKeyframeAtIndex(i)));
    }
    text +=
        parts.join(u", "_s) + u"] repeatBehavior:"_s + stringFromRepeatBehavior(m_repeatBehavior);
    if (autoreversesFromCurrentRepeatBehavior()) text += u" (AUTOREVERSES)"_s;
    return text;
}

}  // namespace tweenery
