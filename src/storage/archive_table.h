#pragma once

#include <QHash>
#include <QPointF>
#include <QStringList>
#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

#include "storage/archived_kind.h"
#include "storage/binary_plist.h"

namespace tweenery {

/// What stands behind a key or in an array, with references followed.
struct ArchivedValue {
    static constexpr uint32_t NoObject = UINT32_MAX;

    ArchivedKind kind = ArchivedKind::Missing;
    uint32_t number = NoObject;  // in the archive, if a reference led here
    uint32_t ref = NoObject;     // in the property list
    PlistObject object;

    bool isAbsent() const { return kind == ArchivedKind::Missing || kind == ArchivedKind::Null; }
};

/// Remembers where each key was last found. Objects of one class have their keys at the same
/// positions, and as a rule all of them refer to the same key string.
class KeyHints {
 public:
    struct Hint {
        const char* text = nullptr;  // the key string in the archive
        size_t size = 0;
        uint32_t ref = 0;
        uint32_t position = 0;

        bool isFor(std::string_view key) const {
            return text != nullptr && std::string_view(text, size) == key;
        }
    };

    Hint& at(std::string_view key) {
        if (key.empty()) { return m_hints[0]; }
        const auto byte = [key](size_t index) { return size_t{static_cast<uint8_t>(key[index])}; };
        const size_t mixed =
            key.size() + 7 * byte(0) + 13 * byte(key.size() - 1) + 29 * byte(key.size() / 2);
        return m_hints[mixed % m_hints.size()];
    }

 private:
    std::array<Hint, 64> m_hints;
};

/// The object table of an open keyed archive, and what has been learnt about it while reading.
struct ArchiveTable {
    static constexpr uint32_t NoObject = ArchivedValue::NoObject;

    ArchiveTable(const QByteArray& data, const QString& entry);

    /// The number of the root object; NoObject when there is none.
    uint32_t root() const { return m_root; }
    uint32_t objectCount() const { return m_objects.count; }
    const QString& entry() const { return m_plist.entry(); }
    [[noreturn]] void fail(const QString& reason) const { m_plist.fail(reason); }
    [[noreturn]] void failKey(std::string_view key, const char* reason) const;

    std::string_view className(uint32_t object) { return classOf(dictionary(object)).name; }
    ArchivedValue value(uint32_t object, std::string_view key) {
        return value(dictionary(object), key);
    }
    ArchivedValue item(uint32_t arrayRef, size_t index);
    /// The number of the object at `index`; NoObject when the item is none.
    uint32_t itemNumber(uint32_t arrayRef, size_t index) {
        return itemNumber(m_plist.object(arrayRef), index);
    }

    // What stands behind `key`; zero or null when that is absent.
    bool boolean(const ArchivedValue& value, std::string_view key) const;
    int32_t integer(const ArchivedValue& value, std::string_view key) const;
    float real(const ArchivedValue& value, std::string_view key) const;
    double number(const ArchivedValue& value, std::string_view key) const;
    QString text(const ArchivedValue& value, std::string_view key);
    /// The text as a view into the archive, if it is stored as short 7-bit text.
    std::optional<std::string_view> ascii(const ArchivedValue& value, std::string_view key);
    QPointF point(const ArchivedValue& value, std::string_view key);
    QStringList strings(const ArchivedValue& value, std::string_view key);

    /// The string as it is stored; nullopt when `value` is none.
    std::optional<PlistObject> string(const ArchivedValue& value);
    QString text(const PlistObject& string);
    /// The property list's array in an array object, and its size.
    struct Array {
        uint32_t ref = NoObject;
        size_t size = 0;
    };
    Array array(const ArchivedValue& value, std::string_view key);

    size_t verifyEverything();

 private:
    struct ClassEntry {
        uint32_t number = NoObject;
        std::string_view name;
        ArchivedKind kind = ArchivedKind::Object;  // of its instances
    };

    size_t m_bytes;  // of the archive
    BinaryPlist m_plist;
    PlistObject m_objects;          // the array $objects
    uint32_t m_nullRef = NoObject;  // the property list's object that stands for null
    uint32_t m_root = NoObject;

    KeyHints m_hints;
    uint32_t m_lastFound = 0;
    std::array<ClassEntry, 4> m_classes;
    uint32_t m_dictionaryNumber = NoObject;
    PlistObject m_dictionary;
    // Long strings and lists of strings are decoded once and shared, so that many references to one
    // of them cannot ask for more memory than the archive's size warrants.
    QHash<const uint8_t*, QString> m_longStrings;
    QHash<const uint8_t*, QStringList> m_stringLists;
    size_t m_listedStrings = 0;

    void open();
    void requireShort(const PlistObject& string) const;
    uint32_t itemNumber(const PlistObject& array, size_t index);
    PlistObject requireString(const ArchivedValue& value, std::string_view key);
    std::optional<std::string_view> ascii(const PlistObject& string) const;
    void requireFewKeys(const PlistObject& dict) const;
    [[noreturn]] void failReference() const;
    uint32_t refOfObject(uint32_t number) const { return m_plist.item(m_objects, number); }
    uint32_t referencedNumber(const PlistObject& uid) const;
    const PlistObject& dictionary(uint32_t number);
    uint32_t find(const PlistObject& dict, std::string_view key);
    ArchivedValue value(const PlistObject& dict, std::string_view key);
    ArchivedValue resolve(uint32_t ref);
    ArchivedKind kindOf(const PlistObject& object);
    const ClassEntry& classOf(const PlistObject& dict) {
        return classAt(dict, find(dict, "$class"));
    }
    /// With the position of "$class" in `dict`.
    const ClassEntry& classAt(const PlistObject& dict, uint32_t position);
    friend class ArchiveWalk;
    friend class RecordDecoder;
};

}  // namespace tweenery
