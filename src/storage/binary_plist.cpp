#include "storage/binary_plist.h"

#include "base/errors.h"
#include "storage/machine_word.h"

namespace tweenery {

bool isSevenBit(const char* bytes, size_t size) {
    uint64_t seen = 0;
    if (size >= 8) {
        for (size_t i = 0; i + 8 < size; i += 8) {
            seen |= wordAt<uint64_t>(bytes + i);
        }
        seen |= wordAt<uint64_t>(bytes + size - 8);
    } else if (size >= 4) {
        seen = wordAt<uint32_t>(bytes) | wordAt<uint32_t>(bytes + size - 4);
    } else {
        for (size_t i = 0; i < size; ++i) {
            seen |= static_cast<uint8_t>(bytes[i]);
        }
    }
    return (seen & 0x8080808080808080U) == 0;
}

constexpr auto BinaryPlist::makeMarkers() -> std::array<Marker, 256> {
    std::array<Marker, 256> markers;
    markers[0x00] = {PlistType::Null, 0};
    markers[0x08] = {PlistType::False, 0};
    markers[0x09] = {PlistType::True, 0};
    markers[0x0F] = {PlistType::Null, 0};
    for (size_t i = 0; i <= 4; ++i) {
        markers[0x10 + i] = {PlistType::Integer, static_cast<uint8_t>(1U << i)};
    }
    markers[0x22] = {PlistType::Real, 4};
    markers[0x23] = {PlistType::Real, 8};
    markers[0x33] = {PlistType::Date, 8};
    constexpr std::pair<size_t, PlistType> counted[] = {
        {0x40, PlistType::Data},  {0x50, PlistType::Ascii}, {0x60, PlistType::Utf16},
        {0xA0, PlistType::Array}, {0xC0, PlistType::Set},   {0xD0, PlistType::Dict}};
    for (uint8_t i = 0; i <= 0xF; ++i) {
        markers[0x80U + i] = {PlistType::Uid, static_cast<uint8_t>(i + 1)};
        for (const auto& [first, type] : counted) {
            markers[first + i] = {type, i == 0xF ? LongCount : i};
        }
    }
    return markers;
}

constexpr std::array<BinaryPlist::Marker, 256> BinaryPlist::Markers = makeMarkers();

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
    m_unitSizes.fill(1);
    m_unitSizes[static_cast<size_t>(PlistType::Utf16)] = 2;
    m_unitSizes[static_cast<size_t>(PlistType::Array)] = m_refWidth;
    m_unitSizes[static_cast<size_t>(PlistType::Set)] = m_refWidth;
    m_unitSizes[static_cast<size_t>(PlistType::Dict)] = static_cast<uint8_t>(2 * m_refWidth);
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

void BinaryPlist::failOffset() const {
    fail(QStringLiteral("an object of the property list lies outside of it"));
}

uint64_t BinaryPlist::longCount(Marker marker, const uint8_t*& place) const {
    if (marker.count == NoObject) {
        fail(QStringLiteral("the property list holds an object of an unknown type"));
    }
    if (place == m_objectsEnd) { failBounds(); }
    const uint8_t width = *place++;
    if (width < 0x10 || width > 0x13) {
        fail(QStringLiteral("an object of the property list has no valid count"));
    }
    const size_t size = size_t{1} << (width & 0xF);
    if (size > static_cast<size_t>(m_objectsEnd - place)) { failBounds(); }
    const uint64_t count = unsignedAt(place, size);
    if (count > UINT32_MAX) { failBounds(); }
    place += size;
    return count;
}

uint32_t BinaryPlist::positionOfKey(const PlistObject& dict, uint32_t ref) const {
    for (uint32_t i = 0; i < dict.count; ++i) {
        if (item(dict, i) == ref) { return i; }
    }
    return dict.count;
}

uint32_t BinaryPlist::positionOfKey(const PlistObject& dict, std::string_view key,
                                    uint32_t start) const {
    uint32_t position = start < dict.count ? start : 0;
    for (uint32_t tried = 0; tried < dict.count; ++tried) {
        const PlistObject candidate = object(item(dict, position));
        if (candidate.type == PlistType::Ascii && candidate.count == key.size() &&
            std::memcmp(candidate.payload, key.data(), key.size()) == 0) {
            return position;
        }
        if (++position == dict.count) { position = 0; }
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
    if (const auto value = integer(number)) { return static_cast<double>(*value); }
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
    if (high != (low < 0 ? -1 : 0)) { return std::nullopt; }
    return low;
}

uint32_t BinaryPlist::uid(const PlistObject& uid) const {
    const size_t leading = uid.count > 8 ? uid.count - 8 : 0;
    uint64_t value = unsignedAt(uid.payload + leading, uid.count - leading);
    for (size_t i = 0; i < leading; ++i) {
        if (uid.payload[i] != 0) { value = UINT64_MAX; }
    }
    if (value > UINT32_MAX) { failRef(); }
    return static_cast<uint32_t>(value);
}

}  // namespace tweenery
