#pragma once

#include <QByteArray>
#include <QString>
#include <QtEndian>
#include <array>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string_view>

namespace tweenery {

enum class PlistType : uint8_t {
    Null,
    False,
    True,
    Integer,
    Real,
    Date,
    Data,
    Ascii,
    Utf16,
    Uid,
    Array,
    Set,
    Dict
};

/// One object of a binary property list, as a view into the list's bytes: where its payload lies
/// and how long it is. The whole payload is known to be inside the list.
struct PlistObject {
    PlistType type = PlistType::Null;
    /// Bytes of a number, a UID, data or an ASCII string; code units of a UTF-16 string; items of
    /// an array or set; pairs of a dictionary.
    uint32_t count = 0;
    const uint8_t* payload = nullptr;

    bool isString() const { return type == PlistType::Ascii || type == PlistType::Utf16; }
    bool isNumber() const { return type == PlistType::Integer || type == PlistType::Real; }
    bool isBool() const { return type == PlistType::False || type == PlistType::True; }
};

/// Reads a binary property list ("bplist00") in place. Opening verifies the trailer and the bounds
/// of the offset table; each object is verified when it is touched, and costs no memory.
/// Every reader throws InputError with the entry's name when the bytes are damaged.
class BinaryPlist {
 public:
    /// `data` is shared, not copied. Throws InputError unless it is a binary property list of less
    /// than 4 GiB.
    BinaryPlist(const QByteArray& data, const QString& entry);

    const QString& entry() const { return m_entry; }
    [[noreturn]] void fail(const QString& reason) const;

    uint32_t objectCount() const { return m_objectCount; }
    uint32_t top() const { return m_top; }
    /// The room between header and offset table, in bytes; objects that do not overlap fit into it.
    size_t objectBytes() const { return static_cast<size_t>(m_objectsEnd - m_bytes) - HeaderSize; }

    /// The object of that number (below objectCount()).
    PlistObject object(uint32_t ref) const {
        const uint64_t offset =
            unsignedAt(m_objectsEnd + size_t{ref} * m_offsetWidth, m_offsetWidth);
        if (offset < HeaderSize || offset >= static_cast<size_t>(m_objectsEnd - m_bytes)) {
            failOffset();
        }
        const uint8_t* place = m_bytes + offset;
        const Marker marker = Markers[*place++];
        uint64_t count = marker.count;
        if (count >= LongCount) { count = longCount(marker, place); }
        const auto left = static_cast<size_t>(m_objectsEnd - place);
        if (count * m_unitSizes[static_cast<size_t>(marker.type)] > left) { failBounds(); }
        return {marker.type, static_cast<uint32_t>(count), place};
    }
    /// The bytes that the object's payload takes.
    size_t payloadSize(const PlistObject& object) const {
        return size_t{object.count} * m_unitSizes[static_cast<size_t>(object.type)];
    }

    /// The object number of an array's or set's item, or of a dictionary's key.
    uint32_t item(const PlistObject& container, uint32_t index) const {
        return refAt(container.payload + size_t{index} * m_refWidth);
    }
    /// The object number of a dictionary's value.
    uint32_t value(const PlistObject& dict, uint32_t index) const {
        return refAt(dict.payload + (size_t{dict.count} + index) * m_refWidth);
    }
    /// True when both dictionaries have the same key objects in the same order.
    bool haveSameKeys(const PlistObject& a, const PlistObject& b) const {
        return a.count == b.count &&
               std::memcmp(a.payload, b.payload, size_t{a.count} * m_refWidth) == 0;
    }
    /// The first position in `dict` whose key is object `ref`; dict.count when there is none.
    uint32_t positionOfKey(const PlistObject& dict, uint32_t ref) const;
    /// A position in `dict` whose key has that text, the first from `start` on and around;
    /// dict.count when there is none.
    uint32_t positionOfKey(const PlistObject& dict, std::string_view key, uint32_t start = 0) const;

    /// A 7-bit string's text. Throws InputError when a byte is not 7-bit.
    std::string_view ascii(const PlistObject& string) const;
    /// Any string's text.
    QString text(const PlistObject& string) const;
    /// A number as a double; not finite only if it is stored so.
    double number(const PlistObject& number) const;
    /// An Integer's value; nullopt when it needs more than 64 bits.
    std::optional<int64_t> integer(const PlistObject& number) const;
    /// A UID's value. Throws InputError when it needs more than 32 bits.
    uint32_t uid(const PlistObject& uid) const;

 private:
    static constexpr size_t HeaderSize = 8;
    static constexpr size_t TrailerSize = 32;
    static constexpr size_t TypeCount = static_cast<size_t>(PlistType::Dict) + 1;

    /// What an object's first byte says.
    struct Marker {
        PlistType type = PlistType::Null;
        uint8_t count = NoObject;
    };
    static constexpr uint8_t LongCount = 0xFE;  // an integer object behind the marker holds it
    static constexpr uint8_t NoObject = 0xFF;
    static const std::array<Marker, 256> Markers;
    static constexpr std::array<Marker, 256> makeMarkers();

    QByteArray m_data;
    QString m_entry;
    const uint8_t* m_bytes = nullptr;
    const uint8_t* m_objectsEnd = nullptr;  // where the offset table begins
    uint32_t m_objectCount = 0;
    uint32_t m_top = 0;
    uint8_t m_offsetWidth = 1;
    uint8_t m_refWidth = 1;
    std::array<uint8_t, TypeCount> m_unitSizes{};  // bytes that each of PlistObject::count takes

    void readTrailer();
    uint32_t refAt(const uint8_t* place) const {
        const uint64_t ref = unsignedAt(place, m_refWidth);
        if (ref >= m_objectCount) { failRef(); }
        return static_cast<uint32_t>(ref);
    }
    [[noreturn]] void failRef() const;
    [[noreturn]] void failBounds() const;
    [[noreturn]] void failOffset() const;
    uint64_t longCount(Marker marker, const uint8_t*& place) const;

    /// A big-endian number of 1 to 8 bytes.
    static uint64_t unsignedAt(const uint8_t* place, size_t width) {
        if (width == 1) { return *place; }
        if (width == 2) { return qFromBigEndian<quint16>(place); }
        if (width == 4) { return qFromBigEndian<quint32>(place); }
        if (width == 8) { return qFromBigEndian<quint64>(place); }
        uint64_t result = 0;
        for (size_t i = 0; i < width; ++i) {
            result = result << 8 | place[i];
        }
        return result;
    }
};

/// True when no byte has its high bit set.
bool isSevenBit(const char* bytes, size_t size);

}  // namespace tweenery
