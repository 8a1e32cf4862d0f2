#include <cmath>
#include <vector>

#include "storage/archive_table.h"

namespace tweenery {

// Visits each object that the root reaches once, with a worklist: neither depth, nor cycles, nor
// objects that many others refer to make it slower than the archive is long.
class ArchiveWalk {
 public:
    explicit ArchiveWalk(ArchiveTable& table)
        : m_table(table), m_plist(table.m_plist), m_seen(m_plist.objectCount()) {}

    size_t run() {
        visitNumber(m_table.root());
        while (!m_pending.empty()) {
            const PlistObject object = m_plist.object(m_pending.back());
            m_pending.pop_back();
            verify(object);
        }
        return m_values;
    }

 private:
    ArchiveTable& m_table;
    const BinaryPlist& m_plist;
    std::vector<bool> m_seen;
    std::vector<uint32_t> m_pending;
    size_t m_values = 0;
    size_t m_bytes = 0;

    void visit(uint32_t ref) {
        if (m_seen[ref]) { return; }
        m_seen[ref] = true;
        m_pending.push_back(ref);
    }

    void visitNumber(uint32_t number) { visit(m_table.refOfObject(number)); }

    void verify(const PlistObject& object) {
        ++m_values;
        m_bytes += 1 + m_plist.payloadSize(object);
        if (m_bytes > m_plist.objectBytes()) {
            m_plist.fail(QStringLiteral("objects of the property list overlap"));
        }
        switch (object.type) {
            case PlistType::Integer:
            case PlistType::Real:
            case PlistType::Date:
                if (!std::isfinite(m_plist.number(object))) {
                    m_plist.fail(QStringLiteral("a number of the archive is not finite"));
                }
                break;
            case PlistType::Ascii:
                m_plist.ascii(object);
                m_table.requireShort(object);
                break;
            case PlistType::Utf16:
                m_table.requireShort(object);
                break;
            case PlistType::Uid:
                verifyReference(object);
                break;
            case PlistType::Array:
            case PlistType::Set:
                for (uint32_t i = 0; i < object.count; ++i) {
                    visit(m_plist.item(object, i));
                }
                break;
            case PlistType::Dict:
                verifyDictionary(object);
                break;
            default:
                break;
        }
    }

    void verifyReference(const PlistObject& uid) {
        const uint32_t ref = m_table.refOfObject(m_table.referencedNumber(uid));
        if (m_plist.object(ref).type == PlistType::Uid) { m_table.failReference(); }
        visit(ref);
    }

    void verifyDictionary(const PlistObject& dict) {
        for (uint32_t i = 0; i < dict.count; ++i) {
            const uint32_t key = m_plist.item(dict, i);
            if (!m_seen[key] && !m_plist.object(key).isString()) {
                m_plist.fail(QStringLiteral("a key of the archive is no string"));
            }
            visit(key);
            visit(m_plist.value(dict, i));
        }
        ArchivedValue value;
        value.object = dict;
        value.kind = m_table.kindOf(dict);
        if (value.kind == ArchivedKind::Array) { m_table.array(value, "NS.objects"); }
        if (value.kind == ArchivedKind::String && !m_table.string(value)) {
            m_table.failKey("NS.string", "is no string");
        }
    }
};

size_t ArchiveTable::verifyEverything() {
    return ArchiveWalk(*this).run();
}

}  // namespace tweenery
