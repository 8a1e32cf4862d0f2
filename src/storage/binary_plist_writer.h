#pragma once

#include <QByteArray>
#include <QStringView>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tweenery {

/// Collects the objects of a binary property list and writes it. Numbers and strings of equal value
/// become one object; every UID, array and dictionary is an object of its own.
class BinaryPlistWriter {
 public:
    /// An object's number in the list.
    using Ref = uint32_t;
    /// A key and its value.
    using Pair = std::pair<Ref, Ref>;

    BinaryPlistWriter();

    Ref boolean(bool value);
    /// In the fewest of 1, 2, 4 or 8 bytes; negative numbers take 8.
    Ref integer(int64_t value);
    Ref real(float value);
    Ref real(double value);
    Ref uid(uint32_t value);
    /// Text of 7-bit characters.
    Ref ascii(std::string_view text);
    Ref string(QStringView text);
    /// A string object that no equal string will share.
    Ref unsharedAscii(std::string_view text);
    Ref array(std::span<const Ref> items);
    Ref dictionary(std::span<const Pair> pairs);

    /// The number of objects so far.
    size_t objectCount() const { return m_objects.size(); }
    /// The whole list with `top` as its top object.
    QByteArray finish(Ref top) const;

 private:
    enum class Type : uint8_t {
        False,
        True,
        Integer,
        Float,
        Double,
        Uid,
        Ascii,
        Utf16,
        Array,
        Dict
    };
    struct Object {
        uint64_t payload = 0;  // the value's bits, or where its bytes or references begin
        uint32_t count = 0;    // characters, items, pairs
        Type type = Type::False;
    };
    struct Slot {
        uint32_t hash = 0;
        Ref ref = Free;
        static constexpr Ref Free = UINT32_MAX;
    };
    class Output;

    std::vector<Object> m_objects;
    std::string m_bytes;        // of all strings; UTF-16 is big-endian
    std::string m_encoded;      // the string that is being added
    std::vector<Ref> m_refs;    // of all arrays and dictionaries
    std::vector<Slot> m_slots;  // open addressing; a power of two, at most half full
    size_t m_sharedCount = 0;
    size_t m_size = 0;  // of all objects in the list, without the references of containers

    static size_t sizeOf(Type type, uint64_t payload, uint32_t count);
    Ref add(Type type, uint64_t payload, uint32_t count);
    Ref sharedScalar(Type type, uint64_t bits);
    Ref sharedBytes(Type type, std::string_view text);
    template <typename IsEqual>
    Ref shared(uint32_t hash, IsEqual isEqual, Type type, uint64_t payload, uint32_t count);
    void growSlots();
    std::string_view bytesOf(const Object& object) const;
    void write(const Object& object, Output& out) const;
};

}  // namespace tweenery
