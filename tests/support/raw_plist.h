#pragma once

#include <QByteArray>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tweenery::test {

/// Puts a binary property list together byte by byte, with any widths and any lies, to try the
/// reader with what our own writer never writes.
class RawPlist {
 public:
    using Ref = uint32_t;
    using Pair = std::pair<Ref, Ref>;

    explicit RawPlist(size_t refWidth = 2, size_t offsetWidth = 4)
        : m_refWidth(refWidth), m_offsetWidth(offsetWidth) {}

    static std::string bigEndian(uint64_t value, size_t width) {
        std::string bytes(width, '\0');
        for (size_t i = 0; i < width && i < 8; ++i) {
            bytes[width - 1 - i] = static_cast<char>(value >> (8 * i));
        }
        return bytes;
    }
    /// A marker with the count behind it in a number of `countWidth` bytes; 0 puts it into the
    /// marker if it fits.
    static std::string marker(unsigned type, uint64_t count, size_t countWidth = 0) {
        if (count < 15 && countWidth == 0) { return {static_cast<char>(type << 4 | count)}; }
        if (countWidth == 0) { countWidth = 4; }
        std::string bytes{static_cast<char>(type << 4 | 15)};
        bytes += static_cast<char>(countWidth == 1   ? 0x10
                                   : countWidth == 2 ? 0x11
                                   : countWidth == 4 ? 0x12
                                                     : 0x13);
        return bytes + bigEndian(count, countWidth);
    }
    static std::string uidBytes(uint64_t number, size_t width = 4) {
        return static_cast<char>(0x80 + width - 1) + bigEndian(number, width);
    }
    static std::string asciiBytes(std::string_view text) {
        return marker(5, text.size()) + std::string(text);
    }

    /// Adds an object as it stands, marker and all.
    Ref add(std::string bytes) {
        m_objects.push_back(std::move(bytes));
        return static_cast<Ref>(m_objects.size() - 1);
    }
    Ref ascii(std::string_view text) { return add(asciiBytes(text)); }
    Ref uid(uint64_t number) { return add(uidBytes(number)); }
    Ref array(const std::vector<Ref>& items) {
        return add(marker(0xA, items.size()) + refs(items));
    }
    Ref dictionary(const std::vector<Pair>& pairs) {
        std::vector<Ref> keysAndValues;
        keysAndValues.reserve(2 * pairs.size());
        for (const Pair& pair : pairs) {
            keysAndValues.push_back(pair.first);
        }
        for (const Pair& pair : pairs) {
            keysAndValues.push_back(pair.second);
        }
        return add(marker(0xD, pairs.size()) + refs(keysAndValues));
    }
    std::string refs(const std::vector<Ref>& items) const {
        std::string bytes;
        for (const Ref item : items) {
            bytes += bigEndian(item, m_refWidth);
        }
        return bytes;
    }

    QByteArray finish(Ref top) const {
        std::string bytes = "bplist00";
        std::string offsets;
        for (const std::string& object : m_objects) {
            offsets += bigEndian(bytes.size(), m_offsetWidth);
            bytes += object;
        }
        const size_t table = bytes.size();
        bytes += offsets + std::string(6, '\0');
        bytes += static_cast<char>(m_offsetWidth);
        bytes += static_cast<char>(m_refWidth);
        bytes += bigEndian(m_objects.size(), 8) + bigEndian(top, 8) + bigEndian(table, 8);
        return QByteArray::fromStdString(bytes);
    }

 private:
    size_t m_refWidth;
    size_t m_offsetWidth;
    std::vector<std::string> m_objects;
};

/// A keyed archive made of raw objects. Number 0 is the null object.
class RawArchive {
 public:
    using Ref = RawPlist::Ref;

    explicit RawArchive(size_t refWidth = 2, size_t offsetWidth = 4)
        : plist(refWidth, offsetWidth), m_objects{plist.ascii("$null")} {}

    RawPlist plist;

    /// Files a plist object in the object table and returns its number.
    uint32_t file(Ref object) {
        m_objects.push_back(object);
        return static_cast<uint32_t>(m_objects.size() - 1);
    }
    uint32_t reserve() { return file(0); }
    void fill(uint32_t number, Ref object) { m_objects[number] = object; }

    uint32_t classEntry(std::string_view name) {
        const Ref text = plist.ascii(name);
        return file(plist.dictionary(
            {{plist.ascii("$classname"), text}, {plist.ascii("$classes"), plist.array({text})}}));
    }
    /// An object of class `name` whose values are plist objects.
    Ref object(std::string_view name, const std::vector<std::pair<std::string_view, Ref>>& values) {
        std::vector<RawPlist::Pair> pairs;
        pairs.reserve(values.size() + 1);
        for (const auto& [key, value] : values) {
            pairs.emplace_back(plist.ascii(key), value);
        }
        pairs.emplace_back(plist.ascii("$class"), plist.uid(classEntry(name)));
        return plist.dictionary(pairs);
    }

    QByteArray finish(uint32_t root, std::string_view rootKey = "root") {
        const Ref roots = plist.dictionary({{plist.ascii(rootKey), plist.uid(root)}});
        return plist.finish(plist.dictionary({
            {plist.ascii("$top"), roots},
            {plist.ascii("$objects"), plist.array(m_objects)},
            {plist.ascii("$archiver"), plist.ascii("NSKeyedArchiver")},
        }));
    }

 private:
    std::vector<Ref> m_objects;
};

/// An archive whose root object has one key, "k", with these bytes as its value, either in place or
/// behind a reference.
inline QByteArray archiveOfValue(const std::string& value, bool boxed) {
    RawArchive archive;
    RawPlist::Ref ref = archive.plist.add(value);
    if (boxed) { ref = archive.plist.uid(archive.file(ref)); }
    return archive.finish(archive.file(archive.object("Thing", {{"k", ref}})));
}

}  // namespace tweenery::test
