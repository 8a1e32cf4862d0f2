#include "storage/record_decoder.h"

#include <algorithm>

#include "base/errors.h"
#include "storage/archive_table.h"

namespace tweenery {

RecordDecoder::RecordDecoder(const ArchivedArray& array, std::span<const std::string_view> keys,
                             std::string_view className)
    : m_array(array), m_keys(keys), m_className(className) {
    assertContract(keys.size() <= kMostKeys, QStringLiteral("too many keys for a record"));
    if (array.size() > 0) { m_items = table().m_plist.object(array.m_array); }
}

ArchiveTable& RecordDecoder::table() const {
    return *m_array.m_archive->m_table;
}

void RecordDecoder::open(size_t index) {
    assertContract(index < m_array.size(),
                   QStringLiteral("index beyond the end of an archived array"));
    const uint32_t number = table().itemNumber(m_items, index);
    if (number == ArchivedValue::NoObject) {
        m_array.object(index);  // says so
    }
    m_record = table().dictionary(number);
    const bool isFirst = m_layout.type != PlistType::Dict;
    if (isFirst || !table().m_plist.haveSameKeys(m_record, m_layout)) { findKeys(); }
    requireClass(index);
}

void RecordDecoder::requireClass(size_t index) {
    const bool hasClass = m_classPosition < m_record.count;
    const uint32_t ref =
        hasClass ? table().m_plist.value(m_record, m_classPosition) : ArchivedValue::NoObject;
    if (hasClass && ref == m_classRef) { return; }
    if (table().classAt(m_record, m_classPosition).name != m_className) {
        m_array.object(index).requireClass(m_className);
    }
    m_classRef = ref;
}

void RecordDecoder::findKeys() {
    const BinaryPlist& plist = table().m_plist;
    table().requireFewKeys(m_record);
    m_layout = m_record;
    m_positions.fill(m_record.count);
    m_classPosition = m_record.count;
    // Backwards: of a key that is there twice the first counts.
    for (uint32_t position = m_record.count; position-- > 0;) {
        const PlistObject key = plist.object(plist.item(m_record, position));
        if (key.type != PlistType::Ascii) { continue; }
        const std::string_view text(reinterpret_cast<const char*>(key.payload), key.count);
        const auto known = std::find(m_keys.begin(), m_keys.end(), text);
        if (known != m_keys.end()) {
            m_positions[static_cast<size_t>(known - m_keys.begin())] = position;
        }
        if (text == "$class") { m_classPosition = position; }
    }
}

const ArchivedValue& RecordDecoder::valueForKey(size_t key) const {
    static const ArchivedValue missing;
    if (!containsValueForKey(key)) { return missing; }
    const uint32_t ref = table().m_plist.value(m_record, m_positions[key]);
    LastValue& last = m_lastValues[key];
    if (last.ref != ref) { last = {ref, table().resolve(ref)}; }
    return last.value;
}

ArchivedKind RecordDecoder::kindOfKey(size_t key) const {
    return valueForKey(key).kind;
}

bool RecordDecoder::decodeBool(size_t key) const {
    return table().boolean(valueForKey(key), m_keys[key]);
}

int32_t RecordDecoder::decodeInt(size_t key) const {
    return table().integer(valueForKey(key), m_keys[key]);
}

float RecordDecoder::decodeFloat(size_t key) const {
    return table().real(valueForKey(key), m_keys[key]);
}

QString RecordDecoder::decodeString(size_t key) const {
    return table().text(valueForKey(key), m_keys[key]);
}

std::optional<std::string_view> RecordDecoder::decodeAscii(size_t key) const {
    return table().ascii(valueForKey(key), m_keys[key]);
}

QPointF RecordDecoder::decodePoint(size_t key) const {
    return table().point(valueForKey(key), m_keys[key]);
}

QStringList RecordDecoder::decodeStrings(size_t key) const {
    return table().strings(valueForKey(key), m_keys[key]);
}

}  // namespace tweenery
