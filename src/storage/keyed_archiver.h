#pragma once

#include <QByteArray>
#include <QPointF>
#include <QSizeF>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string_view>

namespace tweenery {

class KeyedEncoder;

/// The class entry of an archived object: its name and its base classes down to the root.
struct ArchiveClass {
    std::string_view name;
    std::string_view baseName = "NSObject";  // the only base class below `name`
};

/// An object that can stand in a keyed archive. Two references to the same object (by address)
/// become two references to one archived object.
class Archivable {
 public:
    virtual ~Archivable() = default;
    virtual ArchiveClass archiveClass() const = 0;
    /// Writes the object's keys. Called once per object and archive.
    virtual void encodeWithCoder(KeyedEncoder& coder) const = 0;
};

/// Writes the keys of one archived object. Keys must be unique within one object and must outlive
/// the archiving call (string literals). Numbers that are not finite throw AssertionFailure.
class KeyedEncoder {
 public:
    virtual ~KeyedEncoder() = default;

    virtual void encodeBool(std::string_view key, bool value) = 0;
    virtual void encodeInt(std::string_view key, int32_t value) = 0;
    virtual void encodeFloat(std::string_view key, float value) = 0;    // 32-bit real
    virtual void encodeDouble(std::string_view key, double value) = 0;  // 64-bit real
    /// A null string is archived as the null object, an empty one as the empty string.
    virtual void encodeString(std::string_view key, const QString& value) = 0;
    /// A 7-bit string, written as it stands.
    virtual void encodeAscii(std::string_view key, std::string_view value) = 0;
    /// "{x, y}" with up to 17 significant digits, the shortest text that reads back equal.
    virtual void encodePoint(std::string_view key, QPointF value) = 0;
    virtual void encodeSize(std::string_view key, QSizeF value) = 0;
    /// A number object (a boxed 32-bit real), as opposed to an inline number.
    virtual void encodeNumberObject(std::string_view key, float value) = 0;
    /// A reference; null is archived as the null object. The object's own keys are written later,
    /// without recursion, so depth costs no stack.
    virtual void encodeObject(std::string_view key, const Archivable* object) = 0;
    /// An array of objects, class NSMutableArray. None may be null.
    virtual void encodeObjects(std::string_view key,
                               std::span<const Archivable* const> objects) = 0;
    /// An array of strings, class NSArray.
    virtual void encodeStrings(std::string_view key, const QStringList& strings) = 0;
    /// An array (NSMutableArray) of `count` objects without an identity of their own; `encodeItem`
    /// is called at once for each index from 0 with the coder of that object.
    virtual void encodeRecords(std::string_view key, const ArchiveClass& itemClass, size_t count,
                               const std::function<void(size_t, KeyedEncoder&)>& encodeItem) = 0;
};

/// Writes keyed archives: binary property lists with the top-level keys $archiver
/// ("NSKeyedArchiver"), $version (100000), $objects and $top.
class KeyedArchiver {
 public:
    /// The archive of `root` and of everything it reaches. The same graph gives the same bytes.
    static QByteArray archivedDataWithRootObject(const Archivable& root);
};

}  // namespace tweenery
