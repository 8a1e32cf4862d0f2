#include "storage/binary_plist_writer.h"

#include <QHash>
#include <QtEndian>
#include <bit>
#include <cstring>

#include "base/errors.h"
#include "storage/binary_plist.h"
#include "storage/machine_word.h"

namespace tweenery {
namespace {

constexpr size_t kInitialSlots = 128;

// The width, out of those that every reader knows, for numbers up to `largest`. A negative number
// has its high bit set and takes all eight bytes.
size_t widthOf(uint64_t largest) {
    if (largest <= UINT8_MAX) { return 1; }
    if (largest <= UINT16_MAX) { return 2; }
    return largest <= UINT32_MAX ? 4 : 8;
}

uint64_t mixed(uint64_t hash, uint64_t word) {
    hash = (hash ^ word) * 0x9E3779B97F4A7C15ULL;
    return hash ^ hash >> 32;
}

// The last up to eight bytes.
uint64_t lastWord(std::string_view text) {
    const char* bytes = text.data();
    const size_t size = text.size();
    if (size >= 8) { return wordAt<uint64_t>(bytes + size - 8); }
    if (size >= 4) {
        return static_cast<uint64_t>(wordAt<uint32_t>(bytes)) << 32 |
               wordAt<uint32_t>(bytes + size - 4);
    }
    uint64_t word = 0;
    for (const char byte : text) {
        word = word << 8 | static_cast<uint8_t>(byte);
    }
    return word;
}

// Seeded anew in each process, so that no file can choose strings that collide.
uint32_t hashOfBytes(std::string_view text) {
    static const uint64_t seed = QHashSeed::globalSeed();
    uint64_t hash = mixed(seed, text.size());
    for (size_t i = 0; i + 8 < text.size(); i += 8) {
        hash = mixed(hash, wordAt<uint64_t>(text.data() + i));
    }
    return static_cast<uint32_t>(mixed(hash, lastWord(text)));
}

size_t countSize(uint32_t count) {
    return count < 15 ? 0 : 1 + widthOf(count);
}

}  // namespace

// Writes into bytes whose number was computed before.
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
        if (count >= 15) { integer(count); }
    }

    void integer(uint64_t value) {
        const size_t width = widthOf(value);
        byte(0x10U | static_cast<size_t>(std::countr_zero(width)));
        number(value, width);
    }

    void bytes(std::string_view text) {
        std::memcpy(m_place, text.data(), text.size());
        m_place += text.size();
    }

    void refs(std::span<const Ref> refs) {
        for (const Ref ref : refs) {
            number(ref, m_refWidth);
        }
    }

 private:
    char* m_place;
    size_t m_refWidth;
};

BinaryPlistWriter::BinaryPlistWriter() : m_slots(kInitialSlots) {
    m_objects.reserve(kInitialSlots);
    m_refs.reserve(kInitialSlots * 2);
    m_bytes.reserve(kInitialSlots * 8);
}

// The object's size in the list, without the references of a container.
size_t BinaryPlistWriter::sizeOf(Type type, uint64_t payload, uint32_t count) {
    switch (type) {
        case Type::False:
        case Type::True:
            return 1;
        case Type::Integer:
        case Type::Uid:
            return 1 + widthOf(payload);
        case Type::Float:
            return 5;
        case Type::Double:
            return 9;
        case Type::Ascii:
            return 1 + countSize(count) + count;
        case Type::Utf16:
            return 1 + countSize(count) + size_t{count} * 2;
        case Type::Array:
        case Type::Dict:
            return 1 + countSize(count);
    }
    return 0;
}

auto BinaryPlistWriter::add(Type type, uint64_t payload, uint32_t count) -> Ref {
    m_size += sizeOf(type, payload, count);
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
    if (++m_sharedCount * 2 > m_slots.size()) { growSlots(); }
    return ref;
}

void BinaryPlistWriter::growSlots() {
    const std::vector<Slot> old = std::exchange(m_slots, std::vector<Slot>(m_slots.size() * 4));
    const size_t mask = m_slots.size() - 1;
    for (const Slot& slot : old) {
        if (slot.ref == Slot::Free) { continue; }
        size_t index = slot.hash & mask;
        while (m_slots[index].ref != Slot::Free) {
            index = (index + 1) & mask;
        }
        m_slots[index] = slot;
    }
}

auto BinaryPlistWriter::sharedScalar(Type type, uint64_t bits) -> Ref {
    return shared(
        static_cast<uint32_t>(mixed(bits, static_cast<uint64_t>(type) << 56)),
        [bits](const Object& other) { return other.payload == bits; }, type, bits, 0);
}

std::string_view BinaryPlistWriter::bytesOf(const Object& object) const {
    const size_t unit = object.type == Type::Utf16 ? 2 : 1;
    return std::string_view(m_bytes).substr(object.payload, object.count * unit);
}

auto BinaryPlistWriter::sharedBytes(Type type, std::string_view text) -> Ref {
    const size_t count = type == Type::Utf16 ? text.size() / 2 : text.size();
    assertContract(count < UINT32_MAX, QStringLiteral("a string is too long for an archive"));
    const size_t before = m_objects.size();
    const Ref ref = shared(
        hashOfBytes(text), [&](const Object& other) { return bytesOf(other) == text; }, type,
        m_bytes.size(), static_cast<uint32_t>(count));
    if (m_objects.size() > before) { m_bytes += text; }
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
    return add(Type::Uid, value, 0);
}

auto BinaryPlistWriter::ascii(std::string_view text) -> Ref {
    assertContract(isSevenBit(text.data(), text.size()),
                   QStringLiteral("a string of an archive is not 7-bit"));
    return sharedBytes(Type::Ascii, text);
}

auto BinaryPlistWriter::unsharedAscii(std::string_view text) -> Ref {
    const size_t begin = m_bytes.size();
    m_bytes += text;
    return add(Type::Ascii, begin, static_cast<uint32_t>(text.size()));
}

auto BinaryPlistWriter::string(QStringView text) -> Ref {
    const auto size = static_cast<size_t>(text.size());
    char16_t seen = 0;
    for (const QChar character : text) {
        seen |= character.unicode();
    }
    if (seen < 0x80) {
        m_encoded.resize(size);
        for (size_t i = 0; i < size; ++i) {
            m_encoded[i] = static_cast<char>(text.utf16()[i]);
        }
        return sharedBytes(Type::Ascii, m_encoded);
    }
    m_encoded.resize(2 * size);
    qToBigEndian<char16_t>(text.utf16(), text.size(), m_encoded.data());
    return sharedBytes(Type::Utf16, m_encoded);
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
    const size_t table = Header.size() + m_size + m_refs.size() * refWidth;
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
