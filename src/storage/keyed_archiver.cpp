#include "storage/keyed_archiver.h"

#include <array>
#include <cmath>
#include <deque>
#include <unordered_map>
#include <vector>

#include "base/errors.h"
#include "base/point_text.h"
#include "storage/binary_plist_writer.h"

namespace tweenery {
namespace {

using Ref = BinaryPlistWriter::Ref;

constexpr uint32_t kNullUid = 0;
constexpr int64_t kArchiveVersion = 100000;
constexpr ArchiveClass kMutableArrayClass{"NSMutableArray", "NSArray"};
constexpr ArchiveClass kArrayClass{"NSArray", "NSObject"};

// Gathers the object table. An object's references get their numbers at once and their contents
// later, from a queue.
class ArchiveBuilder final : public KeyedEncoder {
 public:
    ArchiveBuilder() {
        m_pairs.reserve(64);
        m_objects.reserve(64);
        m_uids.reserve(64);
        m_uidOfRef.reserve(128);
        newObject(m_plist.unsharedAscii("$null"));
    }

    QByteArray archive(const Archivable& root) {
        const uint32_t rootUid = uidOf(&root);
        while (!m_queue.empty()) {
            const auto [object, uid] = m_queue.front();
            m_queue.pop_front();
            const size_t begin = m_pairs.size();
            object->encodeWithCoder(*this);
            m_objects[uid] = finishDictionary(begin, object->archiveClass());
        }
        return finish(rootUid);
    }

    void encodeBool(std::string_view key, bool value) override {
        put(key, value ? m_true : m_false);
    }

    void encodeInt(std::string_view key, int32_t value) override {
        put(key, m_plist.integer(value));
    }

    void encodeFloat(std::string_view key, float value) override {
        requireFinite(value);
        put(key, m_plist.real(value));
    }

    void encodeDouble(std::string_view key, double value) override {
        requireFinite(value);
        put(key, m_plist.real(value));
    }

    void encodeString(std::string_view key, const QString& value) override {
        put(key, uidRef(value.isNull() ? kNullUid : uidOfShared(m_plist.string(value))));
    }

    void encodeAscii(std::string_view key, std::string_view value) override {
        put(key, uidRef(uidOfShared(m_plist.ascii(value))));
    }

    void encodePoint(std::string_view key, QPointF value) override {
        requireFinite(value.x());
        requireFinite(value.y());
        encodeAscii(key, textFromPoint(value));
    }

    void encodeSize(std::string_view key, QSizeF value) override {
        encodePoint(key, {value.width(), value.height()});
    }

    void encodeNumberObject(std::string_view key, float value) override {
        requireFinite(value);
        put(key, uidRef(uidOfShared(m_plist.real(value))));
    }

    void encodeObject(std::string_view key, const Archivable* object) override {
        put(key, uidRef(object == nullptr ? kNullUid : uidOf(object)));
    }

    void encodeObjects(std::string_view key, std::span<const Archivable* const> objects) override {
        std::vector<Ref> items;
        items.reserve(objects.size());
        for (const Archivable* object : objects) {
            assertContract(object != nullptr, QStringLiteral("an array cannot hold null"));
            items.push_back(uidRef(uidOf(object)));
        }
        putArray(key, kMutableArrayClass, items);
    }

    void encodeStrings(std::string_view key, const QStringList& strings) override {
        std::vector<Ref> items;
        items.reserve(static_cast<size_t>(strings.size()));
        for (const QString& string : strings) {
            items.push_back(uidRef(uidOfShared(m_plist.string(string))));
        }
        putArray(key, kArrayClass, items);
    }

    void encodeRecords(std::string_view key, const ArchiveClass& itemClass, size_t count,
                       const std::function<void(size_t, KeyedEncoder&)>& encodeItem) override {
        std::vector<Ref> items;
        items.reserve(count);
        for (size_t i = 0; i < count; ++i) {
            const uint32_t uid = newObject(0);
            const size_t begin = m_pairs.size();
            encodeItem(i, *this);
            m_objects[uid] = finishDictionary(begin, itemClass);
            items.push_back(uidRef(uid));
        }
        putArray(key, kMutableArrayClass, items);
    }

 private:
    struct KeySlot {
        std::string_view key;
        Ref ref = 0;
    };
    struct ClassUid {
        std::string_view name;
        uint32_t uid = 0;
    };

    BinaryPlistWriter m_plist;
    const Ref m_false = m_plist.boolean(false);
    const Ref m_true = m_plist.boolean(true);
    std::vector<Ref> m_objects;        // the array $objects, by number in the archive
    std::vector<Ref> m_uids;           // the reference to each of them
    std::vector<uint32_t> m_uidOfRef;  // of strings and numbers, by number in the property list
    std::vector<BinaryPlistWriter::Pair> m_pairs;  // of the objects that are being encoded
    std::unordered_map<const Archivable*, uint32_t> m_uidOfObject;
    std::deque<std::pair<const Archivable*, uint32_t>> m_queue;
    std::vector<ClassUid> m_classes;
    std::array<KeySlot, 64> m_keys;

    uint32_t newObject(Ref ref) {
        m_objects.push_back(ref);
        return static_cast<uint32_t>(m_objects.size() - 1);
    }

    uint32_t uidOf(const Archivable* object) {
        const auto [found, isNew] = m_uidOfObject.try_emplace(object, 0U);
        if (isNew) {
            found->second = newObject(0);
            m_queue.emplace_back(object, found->second);
        }
        return found->second;
    }

    uint32_t uidOfShared(Ref ref) {
        if (ref >= m_uidOfRef.size()) { m_uidOfRef.resize(ref * 2 + 64, kNullUid); }
        if (m_uidOfRef[ref] == kNullUid) { m_uidOfRef[ref] = newObject(ref); }
        return m_uidOfRef[ref];
    }

    uint32_t uidOfClass(const ArchiveClass& archiveClass) {
        for (const ClassUid& known : m_classes) {
            if (known.name == archiveClass.name) { return known.uid; }
        }
        const Ref name = m_plist.ascii(archiveClass.name);
        std::vector<Ref> names{name, m_plist.ascii(archiveClass.baseName)};
        if (archiveClass.baseName != "NSObject") { names.push_back(m_plist.ascii("NSObject")); }
        const BinaryPlistWriter::Pair pairs[] = {
            {m_plist.ascii("$classname"), name},
            {m_plist.ascii("$classes"), m_plist.array(names)},
        };
        const uint32_t uid = newObject(m_plist.dictionary(pairs));
        m_classes.push_back({archiveClass.name, uid});
        return uid;
    }

    Ref uidRef(uint32_t uid) {
        constexpr Ref None = UINT32_MAX;
        if (uid >= m_uids.size()) { m_uids.resize(uid * 2 + 64, None); }
        if (m_uids[uid] == None) { m_uids[uid] = m_plist.uid(uid); }
        return m_uids[uid];
    }

    // Keys are literals: equal address and length mean equal text.
    Ref keyRef(std::string_view key) {
        const auto address = reinterpret_cast<uintptr_t>(key.data());
        KeySlot& slot = m_keys[(address ^ address >> 6) % m_keys.size()];
        if (slot.key.data() != key.data() || slot.key.size() != key.size()) {
            slot = {key, m_plist.ascii(key)};
        }
        return slot.ref;
    }

    void put(std::string_view key, Ref value) { m_pairs.emplace_back(keyRef(key), value); }

    void putArray(std::string_view key, const ArchiveClass& arrayClass,
                  std::span<const Ref> items) {
        const size_t begin = m_pairs.size();
        put("NS.objects", m_plist.array(items));
        put(key, uidRef(newObject(finishDictionary(begin, arrayClass))));
    }

    Ref finishDictionary(size_t begin, const ArchiveClass& archiveClass) {
        put("$class", uidRef(uidOfClass(archiveClass)));
        const Ref ref = m_plist.dictionary(std::span(m_pairs).subspan(begin));
        m_pairs.resize(begin);
        return ref;
    }

    static void requireFinite(double value) {
        assertContract(std::isfinite(value), QStringLiteral("an archived number is not finite"));
    }

    QByteArray finish(uint32_t rootUid) {
        const BinaryPlistWriter::Pair roots[] = {{m_plist.ascii("root"), uidRef(rootUid)}};
        const BinaryPlistWriter::Pair top[] = {
            {m_plist.ascii("$version"), m_plist.integer(kArchiveVersion)},
            {m_plist.ascii("$archiver"), m_plist.ascii("NSKeyedArchiver")},
            {m_plist.ascii("$top"), m_plist.dictionary(roots)},
            {m_plist.ascii("$objects"), m_plist.array(m_objects)},
        };
        return m_plist.finish(m_plist.dictionary(top));
    }
};

}  // namespace

QByteArray KeyedArchiver::archivedDataWithRootObject(const Archivable& root) {
    return ArchiveBuilder().archive(root);
}

}  // namespace tweenery
