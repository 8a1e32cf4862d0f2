// The stored form of a timeline and of its keyframes.

#include <algorithm>
#include <array>

#include "base/errors.h"
#include "model/keyed_property_timeline.h"
#include "model/properties/easing.h"
#include "storage/record_decoder.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

// Files from before the scale timelines were split hold these types.
bool isLegacyScaleString(const QString& string) {
    return string == u"xScale"_s || string == u"yScale"_s;
}

PCPropertyType decodePropertyType(const KeyedDecoder& coder, const KeyedUnarchiver& archive) {
    const QString string = coder.decodeString("property_type");
    if (isLegacyScaleString(string)) { return PCPropertyTypeScale; }
    if (!isKnownPropertyString(string)) {
        archive.fail(u"holds a timeline of the unknown property type '%1'"_s.arg(string.left(100)));
    }
    return propertyTypeFromString(string);
}

void encodeIdentifier(KeyedEncoder& coder, const Identifier& identifier) {
    if (const auto uuid = identifier.uuidText()) {
        coder.encodeAscii("identifier", {uuid->data(), uuid->size()});
    } else {
        coder.encodeString("identifier", identifier.toString());
    }
}

// The keys of a keyframe, by their places in the list of names.
enum KeyframeKey : size_t {
    kTimeKey,
    kInstantKey,
    kEasingKey,
    kFloatKey,
    kPointKey,
    kArrayKey,
    kImageKey,
    kExportedKeysCount,  // of those above
    kRecordedKey = kExportedKeysCount,
    kRecordedStartKey,
    kRecordedEndKey,
    kKeyallKey,
    kIdentifierKey,
    kKeysCount
};

constexpr std::array<std::string_view, kKeysCount> kKeyframeKeys{
    "time",      "instant",  "easingMode",    "float",       "point",  "array",
    "imageName", "recorded", "recordedStart", "recordedEnd", "keyall", "identifier"};

Identifier decodeIdentifier(const RecordDecoder& coder) {
    const auto ascii = coder.decodeAscii(kIdentifierKey);
    const Identifier identifier =
        ascii ? Identifier::fromAscii(*ascii) : Identifier(coder.decodeString(kIdentifierKey));
    return identifier.isNull() ? Identifier::generate() : identifier;
}

PCEasingMode decodeEasingMode(const RecordDecoder& coder) {
    const auto ascii = coder.decodeAscii(kEasingKey);
    return ascii ? easingModeFromName(*ascii)
                 : easingModeFromString(coder.decodeString(kEasingKey));
}

PropertyValue decodeImageValue(const RecordDecoder& coder) {
    // The master timeline keeps numbers under this key.
    if (coder.kindOfKey(kImageKey) == ArchivedKind::Number) { return coder.decodeFloat(kImageKey); }
    const QString name = coder.decodeString(kImageKey);
    return name.isNull() ? PropertyValue() : PropertyValue(name);
}

PropertyValue decodeValue(const RecordDecoder& coder) {
    if (coder.containsValueForKey(kFloatKey)) { return coder.decodeFloat(kFloatKey); }
    if (coder.containsValueForKey(kPointKey)) { return coder.decodePoint(kPointKey); }
    if (coder.containsValueForKey(kArrayKey)) { return coder.decodeStrings(kArrayKey); }
    if (coder.containsValueForKey(kImageKey)) { return decodeImageValue(coder); }
    return {};
}

void decodeExportedFields(const RecordDecoder& coder, KeyframeRecord& record) {
    record.timeInMS = coder.decodeInt(kTimeKey);
    record.instantTransition = coder.decodeBool(kInstantKey);
    record.easingMode = packedEasingMode(decodeEasingMode(coder));
    record.value = decodeValue(coder);
}

void decodeOtherFields(const RecordDecoder& coder, KeyframeRecord& record) {
    record.liveRecorded = coder.decodeBool(kRecordedKey);
    record.liveRecordedStart = coder.decodeBool(kRecordedStartKey);
    record.liveRecordedEnd = coder.decodeBool(kRecordedEndKey);
    record.keyall = coder.decodeBool(kKeyallKey);
    record.identifier = decodeIdentifier(coder);
}

void encodeValue(KeyedEncoder& coder, const PropertyValue& value, PCPropertyType type) {
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
                                             PCPropertyType type) {
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
    coder.encodeString("repeat_behavior", stringFromRepeatBehavior(repeatBehavior()));
    coder.encodeString("property_type", stringFromPropertyType(m_propertyType));
    coder.encodeRecords("keyframes", {"PCPropertyKeyframe"}, m_keys.size(),
                        [this](size_t index, KeyedEncoder& item) {
                            encodeKeyframe(item, recordOfKeyframe(index), m_propertyType);
                        });
}

std::function<QByteArray()> PCKeyedPropertyTimeline::archiveMadeLater() const {
    const Ptr frozen = copy();
    frozen->m_owner = {};  // belongs to this thread
    frozen->m_project.reset();
    return [frozen] { return KeyedArchiver::archivedDataWithRootObject(*frozen); };
}

PCKeyedPropertyTimeline::Ptr PCKeyedPropertyTimeline::decode(const KeyedUnarchiver& archive,
                                                             Fields fields) {
    const KeyedDecoder root = archive.root();
    root.requireClass("PCKeyedPropertyTimeline");
    auto timeline =
        std::make_shared<PCKeyedPropertyTimeline>(Passkey(), decodePropertyType(root, archive));
    timeline->setRepeatBehavior(repeatBehaviorFromString(root.decodeString("repeat_behavior")));

    const ArchivedArray items = root.decodeArray("keyframes");
    // An export may lengthen its timelines by a keyframe.
    timeline->reserveLists(items.size() + (fields == Fields::Exported ? 1 : 0));
    const size_t keysCount = fields == Fields::All ? kKeysCount : kExportedKeysCount;
    RecordDecoder item(items, std::span(kKeyframeKeys).first(keysCount), "PCPropertyKeyframe");
    for (size_t i = 0; i < items.size(); ++i) {
        item.open(i);
        KeyframeRecord record;
        decodeExportedFields(item, record);
        if (fields == Fields::All) { decodeOtherFields(item, record); }
        timeline->appendRecord(record);
    }
    timeline->restoreOrder();
    timeline->m_isAsStored = true;
    return timeline;
}

PCKeyedPropertyTimeline::Ptr PCKeyedPropertyTimeline::initWithArchive(
    const KeyedUnarchiver& archive) {
    return decode(archive, Fields::All);
}

PCKeyedPropertyTimeline::Ptr PCKeyedPropertyTimeline::unarchive(const QByteArray& data,
                                                                const QString& entry) {
    return initWithArchive(KeyedUnarchiver(data, entry));
}

PCKeyedPropertyTimeline::Ptr PCKeyedPropertyTimeline::EXPORT_unarchive(const QByteArray& data,
                                                                       const QString& entry) {
    return decode(KeyedUnarchiver(data, entry), Fields::Exported);
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

// Another writer may have left keyframes out of order.
void PCKeyedPropertyTimeline::restoreOrder() {
    if (!std::is_sorted(m_times.begin(), m_times.end())) { updateKeyframeSort(); }
}

void PCKeyedPropertyTimeline::takeTypeOfFile(PCPropertyType type) {
    if (elementTimelineSlot(m_propertyType) >= 0) { return; }
    m_propertyType = type;
    m_isOfOlderVersion = true;
    m_isAsStored = false;
    const bool isX = type == PCPropertyTypeScaleX || type == PCPropertyTypeTranslationX;
    for (size_t i = 0; isFloatProperty(type) && i < m_keys.size(); ++i) {
        const PropertyValue value = storedValueOfKeyframe(i);
        const QPointF* point = std::get_if<QPointF>(&value);
        if (point) { writeValue(i, static_cast<float>(isX ? point->x() : point->y())); }
    }
}

PCKeyedPropertyTimeline::Ptr PCKeyedPropertyTimeline::copy() const {
    auto other = std::make_shared<PCKeyedPropertyTimeline>(Passkey(), m_propertyType);
    other->m_repeatBehavior = m_repeatBehavior;
    other->m_isOfOlderVersion = m_isOfOlderVersion;
    other->m_times = m_times;
    other->m_keys = m_keys;
    other->m_identifiers = m_identifiers;
    if (m_otherValues) { other->m_otherValues = std::make_unique<OtherValues>(*m_otherValues); }
    other->m_owner = m_owner;
    other->m_project = m_project;
    return other;
}

}  // namespace tweenery
