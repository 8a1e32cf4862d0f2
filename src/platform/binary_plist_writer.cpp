#include "platform/binary_plist_writer.h"

#include <QHash>
#include <QtEndian>
#include <bit>
#include <cstring>
#include <limits>

#include "platform/binary_plist.h"
#include "platform/errors.h"

namespace tweenery {
namespace {

constexpr size_t InitialSlots = 128;

/// The width, out of those that every reader knows, for numbers up to `largest`.
size_t widthOf(uint64_t largest) {
    if (largest <= UINT8_MAX) return 1;
    if (largest <= UINT16_MAX) return 2;
    return largest <= UINT32_MAX ? 4 : 8;
}

size_t integerWidth(uint64_t bits) {
    return widthOf(bits);  // a negative number has its high bit set
}

uint32_t hashOfBits(uint64_t bits, uint64_t salt) {
    return static_cast<uint32_t>((bits + salt * 0x9E3779B97F4A7C15ULL) * 0xD6E8FEB86659FD93ULL >>
                                 32);
}

size_t countSize(uint32_t count) {
    return count < 15 ? 0 : 1 + widthOf(count);
}

}  // namespace

/// Writes into bytes whose number was computed before.
class BinaryPlistWriter::Output {
 public:
    Output(char* place, size_t refWidth) : m_place(place), m_refWidth(refWidth) {}

    const char* place() const { return m_place; }

    void byte(size_t value) { *m_place++ = static_cast<char>(value); }

    void number(uint64_t value, size_t width) {
        if (width == 1) {
            byte(value);
            return;
        }
        const uint64_t bigEndian = qToBigEndian(value);
        std::memcpy(m_place, reinterpret_cast<const char*>(&bigEndian) + 8 - width, width);
        m_place += width;
    }

    void marker(size_t type, uint32_t count) {
        byte(type << 4 | std::min(count, 15U));
        if (count >= 15) integer(count);
    }

    void integer(uint64_t value) {
        const size_t width = integerWidth(value);
        byte(0x10U | static_cast<size_t>(std::countr_zero(width)));
        number(value, width);
    }

    void bytes(std::string_view text) {
        std::memcpy(m_place, text.data(), text.size());
        m_place += text.size();
    }

    void refs(std::span<const Ref> refs) {
        for (const Ref ref : refs)
            number(ref, m_refWidth);
    }

 private:
    char* m_place;
    size_t m_refWidth;
};

BinaryPlistWriter::BinaryPlistWriter() : m_slots(InitialSlots) {
    m_objects.reserve(InitialSlots);
    m_refs.reserve(InitialSlots * 2);
    m_bytes.reserve(InitialSlots * 8);
}

auto BinaryPlistWriter::add(Type type, uint64_t payload, uint32_t count) -> Ref {
    m_objects.push_back({payload, count, type});
    return static_cast<Ref>(m_objects.size() - 1);
}

template <typename IsEqual>
auto BinaryPlistWriter::shared(uint32_t hash, IsEqual isEqual, Type type, uint64_t payload,
                               uint32_t count) -> Ref {
    const size_t mask = m_slots.size() - 1;
    size_t index = hash & mask;
    for (; m_slots[index].ref != Slot::Free; index = (index + 1) & mask) {
        const Slot& slot = m_slots[index];
        if (slot.hash == hash && m_objects[slot.ref].type == type && isEqual(m_objects[slot.ref])) {
            return slot.ref;
        }
    }
    const Ref ref = add(type, payload, count);
    m_slots[index] = {hash, ref};
    if (++m_sharedCount * 2 > m_slots.size()) growSlots();
    return ref;
}

void BinaryPlistWriter::growSlots() {
    const std::vector<Slot> old = std::exchange(m_slots, std::vector<Slot>(m_slots.size() * 4));
    const size_t mask = m_slots.size() - 1;
    for (const Slot& slot : old) {
        if (slot.ref == Slot::Free) continue;
        size_t index = slot.hash & mask;
        while (m_slots[index].ref != Slot::Free)
            index = (index + 1) & mask;
        m_slots[index] = slot;
    }
}

auto BinaryPlistWriter::sharedScalar(Type type, uint64_t bits) -> Ref {
    return shared(
        hashOfBits(bits, static_cast<uint64_t>(type)),
        [bits](const Object& other) { return other.payload == bits; }, type, bits, 0);
}

std::string_view BinaryPlistWriter::bytesOf(const Object& object) const {
    const size_t unit = object.type == Type::Utf16 ? 2 : 1;
    return std::string_view(m_bytes).substr(object.payload, object.count * unit);
}

/// Shares the string whose bytes have been put at the end of m_bytes.
auto BinaryPlistWriter::sharedBytes(Type type, size_t begin) -> Ref {
    const std::string_view text = std::string_view(m_bytes).substr(begin);
    const size_t count = type == Type::Utf16 ? text.size() / 2 : text.size();
    assertContract(count < UINT32_MAX, QStringLiteral("a string is too long for an archive"));
    const auto hash =
        static_cast<uint32_t>(qHashBits(text.data(), text.size(), QHashSeed::globalSeed()));
    const size_t before = m_objects.size();
    const Ref ref = shared(
        hash, [&](const Object& other) { return bytesOf(other) == text; }, type, begin,
        static_cast<uint32_t>(count));
    if (m_objects.size() == before) m_bytes.resize(begin);
    return ref;
}

auto BinaryPlistWriter::boolean(bool value) -> Ref {
    return sharedScalar(value ? Type::True : Type::False, 0);
}

auto BinaryPlistWriter::integer(int64_t value) -> Ref {
    return sharedScalar(Type::Integer, static_cast<uint64_t>(value));
}

auto BinaryPlistWriter::real(float value) -> Ref {
    return sharedScalar(Type::Float, std::bit_cast<uint32_t>(value));
}

auto BinaryPlistWriter::real(double value) -> Ref {
    return sharedScalar(Type::Double, std::bit_cast<uint64_t>(value));
}

auto BinaryPlistWriter::uid(uint32_t value) -> Ref {
    return sharedScalar(Type::Uid, value);
}

auto BinaryPlistWriter::ascii(std::string_view text) -> Ref {
    assertContract(isSevenBit(text.data(), text.size()),
                   QStringLiteral("a string of an archive is not 7-bit"));
    const size_t begin = m_bytes.size();
    m_bytes += text;
    return sharedBytes(Type::Ascii, begin);
}

auto BinaryPlistWriter::unsharedAscii(std::string_view text) -> Ref {
    const size_t begin = m_bytes.size();
    m_bytes += text;
    return add(Type::Ascii, begin, static_cast<uint32_t>(text.size()));
}

auto BinaryPlistWriter::string(QStringView text) -> Ref {
    const size_t begin = m_bytes.size();
    const auto size = static_cast<size_t>(text.size());
    char16_t seen = 0;
    for (const QChar character : text)
        seen |= character.unicode();
    if (seen < 0x80) {
        m_bytes.resize(begin + size);
        for (size_t i = 0; i < size; ++i) {
            m_bytes[begin + i] = static_cast<char>(text.utf16()[i]);
        }
        return sharedBytes(Type::Ascii, begin);
    }
    m_bytes.resize(begin + 2 * size);
    qToBigEndian<char16_t>(text.utf16(), text.size(), m_bytes.data() + begin);
    return sharedBytes(Type::Utf16, begin);
}

auto BinaryPlistWriter::array(std::span<const Ref> items) -> Ref {
    const size_t begin = m_refs.size();
    m_refs.insert(m_refs.end(), items.begin(), items.end());
    return add(Type::Array, begin, static_cast<uint32_t>(items.size()));
}

auto BinaryPlistWriter::dictionary(std::span<const Pair> pairs) -> Ref {
    const size_t begin = m_refs.size();
    m_refs.resize(begin + 2 * pairs.size());
    for (size_t i = 0; i < pairs.size(); ++i) {
        m_refs[begin + i] = pairs[i].first;
        m_refs[begin + pairs.size() + i] = pairs[i].second;
    }
    return add(Type::Dict, begin, static_cast<uint32_t>(pairs.size()));
}

size_t BinaryPlistWriter::sizeOf(const Object& object, size_t refWidth) const {
    switch (object.type) {
        case Type::False:
        case Type::True:
            return 1;
        case Type::Integer:
            return 1 + integerWidth(object.payload);
        case Type::Float:
            return 5;
        case Type::Double:
            return 9;
        case Type::Uid:
            return 1 + widthOf(object.payload);
        case Type::Ascii:
            return 1 + countSize(object.count) + object.count;
        case Type::Utf16:
            return 1 + countSize(object.count) + size_t{object.count} * 2;
        case Type::Array:
            return 1 + countSize(object.count) + object.count * refWidth;
        case Type::Dict:
            return 1 + countSize(object.count) + object.count * refWidth * 2;
    }
    return 0;
}

void BinaryPlistWriter::write(const Object& object, Output& out) const {
    switch (object.type) {
        case Type::False:
            return out.byte(0x08);
        case Type::True:
            return out.byte(0x09);
        case Type::Integer:
            return out.integer(object.payload);
        case Type::Float:
            out.byte(0x22);
            return out.number(object.payload, 4);
        case Type::Double:
            out.byte(0x23);
            return out.number(object.payload, 8);
        case Type::Uid:
            out.byte(0x80 + widthOf(object.payload) - 1);
            return out.number(object.payload, widthOf(object.payload));
        case Type::Ascii:
            out.marker(0x5, object.count);
            return out.bytes(bytesOf(object));
        case Type::Utf16:
            out.marker(0x6, object.count);
            return out.bytes(bytesOf(object));
        case Type::Array:
            out.marker(0xA, object.count);
            return out.refs(std::span(m_refs).subspan(object.payload, object.count));
        case Type::Dict:
            out.marker(0xD, object.count);
            return out.refs(std::span(m_refs).subspan(object.payload, size_t{object.count} * 2));
    }
}

QByteArray BinaryPlistWriter::finish(Ref top) const {
    constexpr std::string_view Header = "bplist00";
    constexpr size_t TrailerSize = 32;
    const size_t refWidth = widthOf(m_objects.size() - 1);
    size_t table = Header.size();
    for (const Object& object : m_objects)
        table += sizeOf(object, refWidth);
    const size_t offsetWidth = widthOf(table);
    const size_t total = table + m_objects.size() * offsetWidth + TrailerSize;

    QByteArray result(static_cast<qsizetype>(total), Qt::Uninitialized);
    Output out(result.data(), refWidth);
    Output offsets(result.data() + table, offsetWidth);
    out.bytes(Header);
    for (const Object& object : m_objects) {
        offsets.number(static_cast<size_t>(out.place() - result.constData()), offsetWidth);
        write(object, out);
    }
    // Five unused bytes and a sort version, then the widths.
    offsets.number(0, 6);
    offsets.byte(offsetWidth);
    offsets.byte(refWidth);
    offsets.number(m_objects.size(), 8);
    offsets.number(top, 8);
    offsets.number(table, 8);
    return result;
}

}  // namespace tweenery
