// The stored form of a timeline and of its keyframes.

#include <algorithm>

#include "model/easing.h"
#include "model/keyed_property_timeline.h"
#include "platform/errors.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

// Files from before the scale timelines were split hold these types.
bool isLegacyScaleString(const QString& string) {
    return string == u"xScale"_s || string == u"yScale"_s;
}

int32_t decodePropertyType(const KeyedDecoder& coder, const KeyedUnarchiver& archive) {
    const QString string = coder.decodeString("property_type");
    if (isLegacyScaleString(string)) return PCPropertyTypeScale;
    if (!isKnownPropertyString(string)) {
        archive.fail(u"holds a timeline of the unknown property type '%1'"_s.arg(string.left(100)));
    }
    return propertyTypeFromString(string);
}

Identifier decodeIdentifier(const KeyedDecoder& coder) {
    const auto ascii = coder.decodeAscii("identifier");
    const Identifier identifier =
        ascii ? Identifier::fromAscii(*ascii) : Identifier(coder.decodeString("identifier"));
    return identifier.isNull() ? Identifier::generate() : identifier;
}

void encodeIdentifier(KeyedEncoder& coder, const Identifier& identifier) {
    if (const auto uuid = identifier.uuidText()) {
        coder.encodeAscii("identifier", {uuid->data(), uuid->size()});
    } else {
        coder.encodeString("identifier", identifier.toString());
    }
}

int64_t decodeEasingMode(const KeyedDecoder& coder) {
    const auto ascii = coder.decodeAscii("easingMode");
    return ascii ? easingModeFromName(*ascii)
                 : easingModeFromString(coder.decodeString("easingMode"));
}

PropertyValue decodeImageValue(const KeyedDecoder& coder) {
    // The master timeline keeps numbers under this key.
    if (coder.kindOfKey("imageName") == ArchivedKind::Number) return coder.decodeFloat("imageName");
    const QString name = coder.decodeString("imageName");
    return name.isNull() ? PropertyValue() : PropertyValue(name);
}

PropertyValue decodeValue(const KeyedDecoder& coder) {
    if (coder.containsValueForKey("float")) return coder.decodeFloat("float");
    if (coder.containsValueForKey("point")) return coder.decodePoint("point");
    if (coder.containsValueForKey("array")) return coder.decodeStrings("array");
    if (coder.containsValueForKey("imageName")) return decodeImageValue(coder);
    return {};
}

void encodeValue(KeyedEncoder& coder, const PropertyValue& value, int32_t type) {
    const bool isImage = type == PCPropertyTypeImageContents;
    if (const float* number = std::get_if<float>(&value)) {
        isImage ? coder.encodeNumberObject("imageName", *number)
                : coder.encodeFloat("float", *number);
    } else if (const QPointF* point = std::get_if<QPointF>(&value)) {
        coder.encodePoint("point", *point);
    } else if (const QStringList* array = std::get_if<QStringList>(&value)) {
        coder.encodeStrings("array", *array);
    } else if (const QString* name = std::get_if<QString>(&value)) {
        coder.encodeString("imageName", *name);
    } else if (isImage) {
        coder.encodeString("imageName", {});
    }
}

}  // namespace

void PCKeyedPropertyTimeline::encodeKeyframe(KeyedEncoder& coder, const KeyframeRecord& record,
                                             int32_t type) {
    assertContract(type != PCPropertyTypeZPosition,
                   u"* should NOT be encoding timeline of type zPosition"_s);
    coder.encodeInt("time", record.timeInMS);
    coder.encodeBool("instant", record.instantTransition);
    coder.encodeAscii("easingMode", nameOfEasingMode(record.easingMode));
    coder.encodeBool("recorded", record.liveRecorded);
    coder.encodeBool("recordedStart", record.liveRecordedStart);
    coder.encodeBool("recordedEnd", record.liveRecordedEnd);
    coder.encodeBool("keyall", record.keyall);
    encodeIdentifier(coder, record.identifier);
    encodeValue(coder, record.value, type);
}

void PCKeyedPropertyTimeline::encodeWithCoder(KeyedEncoder& coder) const {
    coder.encodeString("repeat_behavior", stringFromRepeatBehavior(m_repeatBehavior));
    coder.encodeString("property_type", stringFromPropertyType(m_propertyType));
    coder.encodeRecords("keyframes", {"PCPropertyKeyframe"}, m_keys.size(),
                        [this](size_t index, KeyedEncoder& item) {
                            encodeKeyframe(item, recordOfKeyframe(index), m_propertyType);
                        });
}

KeyframeRecord PCKeyedPropertyTimeline::decodeKeyframe(const KeyedDecoder& coder) {
    KeyframeRecord record;
    record.timeInMS = coder.decodeInt("time");
    record.instantTransition = coder.decodeBool("instant");
    record.easingMode = packedEasingMode(decodeEasingMode(coder));
    record.value = decodeValue(coder);
    record.liveRecorded = coder.decodeBool("recorded");
    record.liveRecordedStart = coder.decodeBool("recordedStart");
    record.liveRecordedEnd = coder.decodeBool("recordedEnd");
    record.keyall = coder.decodeBool("keyall");
    record.identifier = decodeIdentifier(coder);
    return record;
}

PCKeyedPropertyTimeline::Ptr PCKeyedPropertyTimeline::initWithArchive(
    const KeyedUnarchiver& archive) {
    const KeyedDecoder root = archive.root();
    root.requireClass("PCKeyedPropertyTimeline");
    auto timeline =
        std::make_shared<PCKeyedPropertyTimeline>(Passkey(), decodePropertyType(root, archive));
    timeline->setRepeatBehavior(repeatBehaviorFromString(root.decodeString("repeat_behavior")));

    const ArchivedArray items = root.decodeArray("keyframes");
    timeline->reserveLists(items.size());
    for (size_t i = 0; i < items.size(); ++i) {
        const KeyedDecoder item = items.object(i);
        item.requireClass("PCPropertyKeyframe");
        timeline->appendRecord(decodeKeyframe(item));
    }
    timeline->restoreOrder();
    timeline->m_isAsStored = true;
    return timeline;
}

PCKeyedPropertyTimeline::Ptr PCKeyedPropertyTimeline::unarchive(const QByteArray& data,
                                                                const QString& entry) {
    return initWithArchive(KeyedUnarchiver(data, entry));
}

TimelineSummary PCKeyedPropertyTimeline::summaryOfArchive(const QByteArray& data,
                                                          const QString& entry) {
    const KeyedUnarchiver archive(data, entry);
    const KeyedDecoder root = archive.root();
    root.requireClass("PCKeyedPropertyTimeline");
    const ArchivedArray keyframes = root.decodeArray("keyframes");
    TimelineSummary summary;
    summary.repeatBehavior = repeatBehaviorFromString(root.decodeString("repeat_behavior"));
    summary.keyframesCount = keyframes.size();
    if (keyframes.size() > 0) {
        summary.durationInMS = keyframes.object(keyframes.size() - 1).decodeInt("time");
    }
    return summary;
}

// Another writer may have left keyframes out of order, or two at one time: the later one stands.
void PCKeyedPropertyTimeline::restoreOrder() {
    if (validateTimeForKeyframesAreSorted()) return;
    const std::vector<size_t> byTime = indicesByTime();
    std::vector<size_t> order;
    order.reserve(byTime.size());
    for (const size_t index : byTime) {
        const bool isSameTime =
            !order.empty() && m_keys[order.back()].timeInMS == m_keys[index].timeInMS;
        if (isSameTime) order.pop_back();
        order.push_back(index);
    }
    arrange(order);
}

PCKeyedPropertyTimeline::Ptr PCKeyedPropertyTimeline::copy() const {
    auto other = std::make_shared<PCKeyedPropertyTimeline>(Passkey(), m_propertyType);
    other->m_repeatBehavior = m_repeatBehavior;
    other->m_keys = m_keys;
    other->m_identifiers = m_identifiers;
    if (m_otherValues) other->m_otherValues = std::make_unique<OtherValues>(*m_otherValues);
    other->m_element = m_element;
    other->m_project = m_project;
    return other;
}

}  // namespace tweenery
