#pragma once

#include <QByteArray>
#include <set>
#include <string_view>
#include <vector>

#include "base/errors.h"
#include "storage/binary_plist.h"
#include "storage/keyed_unarchiver.h"

namespace tweenery::test {

/// Reads an archive in every way that the program could, whatever it holds, following references
/// between objects once each. Anything but a reading or an InputError gets out as an exception.
class ArchiveExercise {
 public:
    /// Returns true when the archive opens, and all of it can be read.
    static bool run(const QByteArray& bytes) {
        try {
            return ArchiveExercise(bytes).readAll();
        } catch (const InputError&) { return false; }
    }

 private:
    static constexpr size_t ItemLimit = 100000;      // shared arrays make more items than bytes
    static constexpr size_t WrongReadingLimit = 60;  // exceptions are slow

    BinaryPlist m_plist;
    KeyedUnarchiver m_archive;
    std::vector<bool> m_seen;
    std::vector<KeyedDecoder> m_pending;
    size_t m_items = 0;
    size_t m_wrongReadings = 0;
    bool m_isSound = false;

    explicit ArchiveExercise(const QByteArray& bytes)
        : m_plist(bytes, QStringLiteral("exercise")),
          m_archive(bytes, m_plist.entry()),
          m_seen(m_archive.objectCount()) {}

    /// Which value of a repeated key is found is left open. Also true when there are too many keys
    /// to tell.
    static bool hasRepeatedKeys(const BinaryPlist& plist) {
        size_t count = 0;
        const auto repeats = [&](uint32_t ref) {
            const PlistObject dict = plist.object(ref);
            count += dict.type == PlistType::Dict ? dict.count : 0;
            if (count > ItemLimit) { return true; }
            std::set<std::string_view> keys;
            for (uint32_t i = 0; dict.type == PlistType::Dict && i < dict.count; ++i) {
                const PlistObject key = plist.object(plist.item(dict, i));
                if (key.type == PlistType::Ascii && !keys.insert(plist.ascii(key)).second) {
                    return true;
                }
            }
            return false;
        };
        for (uint32_t ref = 0; ref < plist.objectCount(); ++ref) {
            bool isRepeated = false;
            if (!isRead([&] { isRepeated = repeats(ref); }) || isRepeated) { return true; }
        }
        return false;
    }

    bool readAll() {
        m_isSound = isRead([this] { m_archive.verifyEverything(); }) && !hasRepeatedKeys(m_plist);
        follow(m_archive.root());
        while (!m_pending.empty()) {
            const KeyedDecoder object = m_pending.back();
            m_pending.pop_back();
            read(object);
        }
        return m_isSound;
    }

    void read(const KeyedDecoder& object) {
        static constexpr std::string_view Keys[] = {
            "identifier", "name",       "keyframes", "subelements",  "parentElement",
            "size",       "position",   "time",      "float",        "point",
            "array",      "imageName",  "opacity",   "modelVersion", "instant",
            "easingMode", "windowSize", "NS.objects"};
        attempt([&] { object.className(); });
        for (const std::string_view key : Keys) {
            ArchivedKind kind = ArchivedKind::Missing;
            const bool known = attempt([&] { kind = object.kindOfKey(key); });
            if (known && kind != ArchivedKind::Missing) { readValue(object, key, kind); }
        }
    }

    void readValue(const KeyedDecoder& object, std::string_view key, ArchivedKind kind) {
        const auto require = [&](ArchivedKind needed, auto action) {
            if (kind == needed) { attempt(action); }
        };
        require(ArchivedKind::Bool, [&] { object.decodeBool(key); });
        require(ArchivedKind::Number, [&] { object.decodeDouble(key); });
        require(ArchivedKind::String, [&] { object.decodeString(key); });
        require(ArchivedKind::String, [&] { object.decodeAscii(key); });
        require(ArchivedKind::Null, [&] { object.decodeSize(key); });
        require(ArchivedKind::Object, [&] { follow(object.decodeObject(key)); });
        require(ArchivedKind::Array, [&] { readItems(object.decodeArray(key)); });
        if (m_wrongReadings < WrongReadingLimit) { readAsAnything(object, key); }
    }

    void readAsAnything(const KeyedDecoder& object, std::string_view key) {
        const auto read = [this](auto action) { m_wrongReadings += isRead(action) ? 0 : 1; };
        read([&] { object.decodeBool(key); });
        read([&] { object.decodeInt(key); });
        read([&] { object.decodeFloat(key); });
        read([&] { object.decodeString(key); });
        read([&] { object.decodePoint(key); });
        read([&] { object.decodeStrings(key); });
        read([&] { follow(object.decodeObject(key)); });
        read([&] { readItems(object.decodeArray(key)); });
    }

    void readItems(const ArchivedArray& array) {
        for (size_t i = 0; i < array.size() && m_items < ItemLimit; ++i, ++m_items) {
            if (!isRead([&] { follow(array.object(i)); })) {
                isRead([&] { array.string(i); });
            }
        }
    }

    void follow(const KeyedDecoder& object) {
        if (object.isNull()) { return; }
        assertContract(object.number() < m_seen.size(), QStringLiteral("number beyond the count"));
        if (m_seen[object.number()]) { return; }
        m_seen[object.number()] = true;
        m_pending.push_back(object);
    }

    /// A reading that must succeed in an archive that was verified.
    template <typename Action>
    bool attempt(Action action) {
        const bool read = isRead(action);
        assertContract(read || !m_isSound, QStringLiteral("a verified value cannot be read"));
        return read;
    }

    template <typename Action>
    static bool isRead(Action action) {
        try {
            action();
            return true;
        } catch (const InputError&) { return false; }
    }
};

}  // namespace tweenery::test
