// What the code generator asks of its private copies of the timelines.

#include <algorithm>

#include "base/number_text.h"
#include "model/keyed_property_timeline.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

QString threeDecimals(double value) {
    return QString::fromStdString(fixedText(value, 3));
}

}  // namespace

void PCKeyedPropertyTimeline::EXPORT_setDurationInTimeInMS(int32_t duration, bool tweens) {
    if (m_repeatBehavior != PCRepeatBehaviorNever || durationInMS() >= duration) { return; }
    if (m_propertyType == PCPropertyTypeChildrenZPositions) { return; }
    const PropertyValue held = valueAtTimeInMS(duration);
    const auto [factor, offset] = factorAndOffset();
    KeyframeRecord record;
    record.timeInMS = duration;
    record.instantTransition = !tweens;
    const float* number = std::get_if<float>(&held);
    record.value =
        number && !isInstantTransition() ? PropertyValue(*number / factor - offset) : held;
    insertRecord(m_keys.size(), record, nullptr);
}

bool PCKeyedPropertyTimeline::EXPORT_isNonChanging() const {
    const PropertyValue atStart = valueAtTimeInMS(0);
    return EXPORT_allKeyframeValuesEqual(atStart) && staysAt(atStart);
}

// What changes in a span shows at its keyframe, or in the millisecond before.
bool PCKeyedPropertyTimeline::staysAt(const PropertyValue& value) const {
    return std::all_of(m_times.begin(), m_times.end(), [&](int32_t time) {
        return valuesEqual(valueAtTimeInMS(time), value) &&
               valuesEqual(valueAtTimeInMS(std::max(time - 1, 0)), value);
    });
}

bool PCKeyedPropertyTimeline::EXPORT_allKeyframeValuesEqual(const PropertyValue& value) const {
    for (size_t i = 0; i < m_keys.size(); ++i) {
        if (!valuesEqual(storedValueOfKeyframe(i), value)) { return false; }
    }
    return true;
}

QString PCKeyedPropertyTimeline::EXPORT_propertyTypeAsString() const {
    return QString::fromLatin1(propertyTypeRow(m_propertyType).exportType);
}

QString PCKeyedPropertyTimeline::EXPORT_propertyValueAsStringAtTimeInMS(int32_t timeInMS) const {
    const PropertyValue value = valueAtTimeInMS(timeInMS);
    if (isStringProperty(m_propertyType)) { return stringOfValue(value); }
    if (isArrayProperty(m_propertyType)) { return describeValue(value); }
    if (isPointProperty(m_propertyType)) {
        const QPointF point = pointOfValue(value);
        return u"CGPointMake(%1,%2)"_s.arg(threeDecimals(point.x()), threeDecimals(point.y()));
    }
    return threeDecimals(floatValueAtTimeInMS(timeInMS));
}

}  // namespace tweenery
