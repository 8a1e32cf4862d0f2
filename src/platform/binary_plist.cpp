#include "platform/binary_plist.h"

#include <cstring>

#include "platform/errors.h"

namespace tweenery {

bool isSevenBit(const char* bytes, size_t size) {
    uint64_t seen = 0;
    for (; size >= 8; bytes += 8, size -= 8) {
        uint64_t word = 0;
        std::memcpy(&word, bytes, 8);
        seen |= word;
    }
    for (; size > 0; ++bytes, --size)
        seen |= static_cast<uint8_t>(*bytes);
    return (seen & 0x8080808080808080U) == 0;
}

BinaryPlist::BinaryPlist(const QByteArray& data, const QString& entry)
    : m_data(data), m_entry(entry), m_bytes(reinterpret_cast<const uint8_t*>(m_data.constData())) {
    readTrailer();
}

void BinaryPlist::readTrailer() {
    const auto size = static_cast<size_t>(m_data.size());
    if (size < HeaderSize + 1 + 1 + TrailerSize || size > UINT32_MAX ||
        std::memcmp(m_bytes, "bplist00", HeaderSize) != 0) {
        fail(QStringLiteral("this is no binary property list"));
    }
    // Five unused bytes and a sort version come first.
    const uint8_t* trailer = m_bytes + size - TrailerSize;
    m_offsetWidth = trailer[6];
    m_refWidth = trailer[7];
    const auto count = qFromBigEndian<quint64>(trailer + 8);
    const auto top = qFromBigEndian<quint64>(trailer + 16);
    const auto table = qFromBigEndian<quint64>(trailer + 24);
    const bool widthsAreSound =
        m_offsetWidth >= 1 && m_offsetWidth <= 8 && m_refWidth >= 1 && m_refWidth <= 8;
    const size_t end = size - TrailerSize;
    if (!widthsAreSound || table <= HeaderSize || table >= end ||
        count > (end - table) / m_offsetWidth || top >= count) {
        fail(QStringLiteral("the property list's trailer is damaged"));
    }
    m_objectsEnd = m_bytes + table;
    m_objectCount = static_cast<uint32_t>(count);
    m_top = static_cast<uint32_t>(top);
}

void BinaryPlist::fail(const QString& reason) const {
    throw InputError(m_entry, reason);
}

void BinaryPlist::failRef() const {
    fail(QStringLiteral("the property list refers to an object that it does not have"));
}

void BinaryPlist::failBounds() const {
    fail(QStringLiteral("an object of the property list is larger than the bytes that are left"));
}

PlistObject BinaryPlist::sized(PlistType type, uint64_t count, size_t unit,
                               const uint8_t* payload) const {
    if (count > static_cast<size_t>(m_objectsEnd - payload) / unit) failBounds();
    return {type, static_cast<uint32_t>(count), payload};
}

uint64_t BinaryPlist::longCount(const uint8_t*& place) const {
    if (place == m_objectsEnd) failBounds();
    const uint8_t marker = *place++;
    if (marker < 0x10 || marker > 0x13) {
        fail(QStringLiteral("an object of the property list has no valid count"));
    }
    const size_t width = size_t{1} << (marker & 0xF);
    const PlistObject count = sized(PlistType::Integer, width, 1, place);
    place += width;
    return unsignedAt(count.payload, width);
}

PlistObject BinaryPlist::container(PlistType type, uint8_t marker, size_t unit,
                                   const uint8_t* place) const {
    uint64_t count = marker & 0xF;
    if (count == 0xF) count = longCount(place);
    return sized(type, count, unit, place);
}

PlistObject BinaryPlist::object(uint32_t ref) const {
    const uint64_t offset = unsignedAt(m_objectsEnd + size_t{ref} * m_offsetWidth, m_offsetWidth);
    if (offset < HeaderSize || offset >= static_cast<size_t>(m_objectsEnd - m_bytes)) {
        fail(QStringLiteral("an object of the property list lies outside of it"));
    }
    const uint8_t* place = m_bytes + offset;
    const uint8_t marker = *place++;
    switch (marker >> 4) {
        case 0x0:
            if (marker == 0x00 || marker == 0x0F) return {PlistType::Null, 0, place};
            if (marker == 0x08) return {PlistType::False, 0, place};
            if (marker == 0x09) return {PlistType::True, 0, place};
            break;
        case 0x1:
            if (marker <= 0x14) return sized(PlistType::Integer, 1U << (marker & 0xF), 1, place);
            break;
        case 0x2:
            if (marker == 0x22 || marker == 0x23) {
                return sized(PlistType::Real, 1U << (marker & 0xF), 1, place);
            }
            break;
        case 0x3:
            if (marker == 0x33) return sized(PlistType::Date, 8, 1, place);
            break;
        case 0x4:
            return container(PlistType::Data, marker, 1, place);
        case 0x5:
            return container(PlistType::Ascii, marker, 1, place);
        case 0x6:
            return container(PlistType::Utf16, marker, 2, place);
        case 0x8:
            return sized(PlistType::Uid, (marker & 0xF) + 1U, 1, place);
        case 0xA:
            return container(PlistType::Array, marker, m_refWidth, place);
        case 0xC:
            return container(PlistType::Set, marker, m_refWidth, place);
        case 0xD:
            return container(PlistType::Dict, marker, 2U * m_refWidth, place);
        default:
            break;
    }
    fail(QStringLiteral("the property list holds an object of an unknown type"));
}

size_t BinaryPlist::payloadSize(const PlistObject& object) const {
    switch (object.type) {
        case PlistType::Utf16:
            return size_t{object.count} * 2;
        case PlistType::Array:
        case PlistType::Set:
            return size_t{object.count} * m_refWidth;
        case PlistType::Dict:
            return size_t{object.count} * m_refWidth * 2;
        default:
            return object.count;
    }
}

uint32_t BinaryPlist::positionOfKey(const PlistObject& dict, uint32_t ref) const {
    for (uint32_t i = 0; i < dict.count; ++i) {
        if (item(dict, i) == ref) return i;
    }
    return dict.count;
}

uint32_t BinaryPlist::positionOfKey(const PlistObject& dict, std::string_view key) const {
    for (uint32_t i = 0; i < dict.count; ++i) {
        const PlistObject candidate = object(item(dict, i));
        if (candidate.type == PlistType::Ascii && candidate.count == key.size() &&
            std::memcmp(candidate.payload, key.data(), key.size()) == 0) {
            return i;
        }
    }
    return dict.count;
}

std::string_view BinaryPlist::ascii(const PlistObject& string) const {
    const auto* bytes = reinterpret_cast<const char*>(string.payload);
    if (!isSevenBit(bytes, string.count)) {
        fail(QStringLiteral("a 7-bit string of the property list holds other bytes"));
    }
    return {bytes, string.count};
}

QString BinaryPlist::text(const PlistObject& string) const {
    if (string.type == PlistType::Ascii) {
        const std::string_view bytes = ascii(string);
        return QString::fromLatin1(bytes.data(), static_cast<qsizetype>(bytes.size()));
    }
    QString result(string.count, Qt::Uninitialized);
    qFromBigEndian<char16_t>(string.payload, string.count, result.data());
    return result;
}

double BinaryPlist::number(const PlistObject& number) const {
    if (number.type != PlistType::Integer) {
        return number.count == 4 ? static_cast<double>(qFromBigEndian<float>(number.payload))
                                 : qFromBigEndian<double>(number.payload);
    }
    if (const auto value = integer(number)) return static_cast<double>(*value);
    const double high = static_cast<double>(qFromBigEndian<qint64>(number.payload));
    return high * 0x1p64 + static_cast<double>(qFromBigEndian<quint64>(number.payload + 8));
}

std::optional<int64_t> BinaryPlist::integer(const PlistObject& number) const {
    // Up to four bytes are unsigned, eight and sixteen are signed.
    if (number.count < 16) {
        return static_cast<int64_t>(unsignedAt(number.payload, number.count));
    }
    const auto high = qFromBigEndian<qint64>(number.payload);
    const auto low = qFromBigEndian<qint64>(number.payload + 8);
    if (high != (low < 0 ? -1 : 0)) return std::nullopt;
    return low;
}

uint32_t BinaryPlist::uid(const PlistObject& uid) const {
    const size_t leading = uid.count > 8 ? uid.count - 8 : 0;
    uint64_t value = unsignedAt(uid.payload + leading, uid.count - leading);
    for (size_t i = 0; i < leading; ++i) {
        if (uid.payload[i] != 0) value = UINT64_MAX;
    }
    if (value > UINT32_MAX) failRef();
    return static_cast<uint32_t>(value);
}

}  // namespace tweenery
