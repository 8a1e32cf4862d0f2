#pragma once

#include <QByteArray>
#include <QPointF>
#include <QSizeF>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>

#include "storage/archived_kind.h"

namespace tweenery {

class KeyedUnarchiver;
class ArchivedArray;
struct ArchiveTable;
struct ArchivedValue;

/// Reads the keys of one archived object. A small value that points into its KeyedUnarchiver, which
/// must outlive it. Values behind a key are accepted inline or as a reference to a boxed value.
/// Every reader throws InputError (with the unarchiver's entry name) when the value has another
/// type, or a number is not finite or out of range; a missing key reads as zero or null, and so
/// does the null object.
class KeyedDecoder {
 public:
    KeyedDecoder() = default;

    /// True for the null object and for a missing key.
    bool isNull() const { return m_archive == nullptr; }
    /// The object's number in the archive: equal for references to the same object.
    uint32_t number() const { return m_object; }
    QString className() const;
    /// Throws InputError unless the object's class is `name`.
    void requireClass(std::string_view name) const;

    bool containsValueForKey(std::string_view key) const {
        return kindOfKey(key) != ArchivedKind::Missing;
    }
    ArchivedKind kindOfKey(std::string_view key) const;

    bool decodeBool(std::string_view key) const;      // also from a number: not zero
    int32_t decodeInt(std::string_view key) const;    // also from a real: cut toward zero
    float decodeFloat(std::string_view key) const;    // also from an integer
    double decodeDouble(std::string_view key) const;  // also from an integer
    /// Null for a missing key and for the null object.
    QString decodeString(std::string_view key) const;
    /// The string as a view into the archive's bytes if it is stored as 7-bit text of at most 64
    /// characters, which is how identifiers and mode names are stored; nullopt otherwise (also for
    /// a missing key): then decodeString() has it.
    std::optional<std::string_view> decodeAscii(std::string_view key) const;
    QPointF decodePoint(std::string_view key) const;
    QSizeF decodeSize(std::string_view key) const;
    KeyedDecoder decodeObject(std::string_view key) const;
    /// An array object (NSArray, NSMutableArray); empty when the key is missing or null.
    ArchivedArray decodeArray(std::string_view key) const;
    QStringList decodeStrings(std::string_view key) const;

 private:
    friend class KeyedUnarchiver;
    friend class ArchivedArray;
    KeyedDecoder(const KeyedUnarchiver* archive, uint32_t object)
        : m_archive(archive), m_object(object) {}

    const KeyedUnarchiver* m_archive = nullptr;
    uint32_t m_object = 0;

    ArchivedValue valueForKey(std::string_view key) const;
    template <typename Read>
    auto read(std::string_view key, const Read& readValue) const;
};

/// The items of an archived array, read on demand.
class ArchivedArray {
 public:
    size_t size() const { return m_size; }
    /// The object at `index` (below size()). Throws InputError when the item is no object.
    KeyedDecoder object(size_t index) const;
    /// The string at `index`. Throws InputError when the item is no string.
    QString string(size_t index) const;

 private:
    friend class KeyedDecoder;
    friend class RecordDecoder;
    const KeyedUnarchiver* m_archive = nullptr;
    uint32_t m_array = 0;
    size_t m_size = 0;
};

/// Opens a keyed archive and reads its objects by key, on demand: nothing is decoded until asked
/// for. Opening checks the property list's outline (trailer, offset table, the top-level keys);
/// each object is checked when it is touched. Reading remembers where keys were found, so one
/// unarchiver and its decoders serve one thread at a time.
class KeyedUnarchiver {
 public:
    /// `data` is shared, not copied. `entry` names the archive in errors.
    /// Throws InputError when the bytes are no keyed archive.
    KeyedUnarchiver(const QByteArray& data, const QString& entry);
    ~KeyedUnarchiver();
    KeyedUnarchiver(const KeyedUnarchiver&) = delete;
    KeyedUnarchiver& operator=(const KeyedUnarchiver&) = delete;

    /// The root object. Throws InputError when it is missing or null.
    KeyedDecoder root() const;
    /// The number of entries in the object table, an upper bound for KeyedDecoder::number().
    uint32_t objectCount() const;
    const QString& entry() const;
    [[noreturn]] void fail(const QString& reason) const;

    /// Walks every object that the root reaches and reads every value once, building nothing.
    /// Throws InputError on the first that cannot be read. Returns the number of values read.
    size_t verifyEverything() const;

 private:
    friend class KeyedDecoder;
    friend class ArchivedArray;
    friend class RecordDecoder;
    std::unique_ptr<ArchiveTable> m_table;
};

}  // namespace tweenery
