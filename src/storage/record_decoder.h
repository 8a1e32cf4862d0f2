#pragma once

#include <array>
#include <span>

#include "storage/archive_table.h"
#include "storage/binary_plist.h"
#include "storage/keyed_unarchiver.h"

namespace tweenery {

/// Reads the same keys of many objects of one class: where the keys stand is found once for all
/// objects that have the same keys in the same order. A key is named by its place in the list of
/// keys. Of each key the last value is remembered, since many objects share one. Values are read,
/// and errors thrown, as KeyedDecoder does it.
class RecordDecoder {
 public:
    static constexpr size_t kMostKeys = 16;

    /// For the objects in `array`, whose unarchiver must outlive this; so must `keys`, at most
    /// kMostKeys, and `className`.
    RecordDecoder(const ArchivedArray& array, std::span<const std::string_view> keys,
                  std::string_view className);

    /// Goes to item `index` of the array (below its size). Throws InputError unless that is an
    /// object of the class. Everything below reads from it.
    void open(size_t index);

    bool containsValueForKey(size_t key) const { return m_positions[key] < m_record.count; }
    ArchivedKind kindOfKey(size_t key) const;
    bool decodeBool(size_t key) const;
    int32_t decodeInt(size_t key) const;
    float decodeFloat(size_t key) const;
    QString decodeString(size_t key) const;
    std::optional<std::string_view> decodeAscii(size_t key) const;
    QPointF decodePoint(size_t key) const;
    QStringList decodeStrings(size_t key) const;

 private:
    ArchivedArray m_array;
    PlistObject m_items;
    std::span<const std::string_view> m_keys;
    std::string_view m_className;
    PlistObject m_record;
    PlistObject m_layout;  // an object with the keys at m_positions
    std::array<uint32_t, kMostKeys> m_positions{};
    uint32_t m_classPosition = 0;
    uint32_t m_classRef = ArchivedValue::NoObject;  // is known to lead to the class
    struct LastValue {
        uint32_t ref = ArchivedValue::NoObject;
        ArchivedValue value;
    };
    mutable std::array<LastValue, kMostKeys> m_lastValues;

    ArchiveTable& table() const;
    void findKeys();
    void requireClass(size_t index);
    const ArchivedValue& valueForKey(size_t key) const;
};

}  // namespace tweenery
