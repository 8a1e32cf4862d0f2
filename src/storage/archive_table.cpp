#include "storage/archive_table.h"

#include <cmath>
#include <limits>

#include "base/limits.h"
#include "base/point_text.h"

namespace tweenery {
namespace {

// Many references may lead to one object, so what a look-up or a reading costs each time is
// bounded.
constexpr uint32_t kMostKeys = 256;
constexpr uint32_t kLongestClassName = 256;
constexpr uint32_t kLongestPoint = 256;
constexpr uint32_t kShortString = 64;  // a longer one is decoded once

QString quoted(std::string_view key) {
    return u'"' + QString::fromUtf8(key.data(), static_cast<qsizetype>(key.size())) + u'"';
}

ArchivedKind kindOfInstances(std::string_view className) {
    if (className == "NSArray" || className == "NSMutableArray") { return ArchivedKind::Array; }
    if (className == "NSString" || className == "NSMutableString") { return ArchivedKind::String; }
    if (className == "NSData" || className == "NSMutableData") { return ArchivedKind::Data; }
    if (className == "NSNull") { return ArchivedKind::Null; }
    return ArchivedKind::Object;
}

}  // namespace

ArchiveTable::ArchiveTable(const QByteArray& data, const QString& entry)
    : m_bytes(static_cast<size_t>(data.size())), m_plist(data, entry) {
    open();
}

void ArchiveTable::open() {
    const auto failAsArchive = [this] { fail(QStringLiteral("this is no keyed archive")); };
    const auto refOf = [this](const PlistObject& dict, std::string_view key) {
        const uint32_t position = m_plist.positionOfKey(dict, key);
        return position < dict.count ? m_plist.value(dict, position) : NoObject;
    };
    const auto isText = [this](uint32_t ref, std::string_view text) {
        const PlistObject object = m_plist.object(ref);
        return object.type == PlistType::Ascii && m_plist.ascii(object) == text;
    };
    const PlistObject top = m_plist.object(m_plist.top());
    if (top.type != PlistType::Dict) { failAsArchive(); }
    const uint32_t archiver = refOf(top, "$archiver");
    if (archiver != NoObject && !isText(archiver, "NSKeyedArchiver")) { failAsArchive(); }
    const uint32_t objects = refOf(top, "$objects");
    const uint32_t roots = refOf(top, "$top");
    if (objects == NoObject || roots == NoObject) { failAsArchive(); }
    m_objects = m_plist.object(objects);
    const PlistObject rootTable = m_plist.object(roots);
    if (m_objects.type != PlistType::Array || rootTable.type != PlistType::Dict) {
        failAsArchive();
    }

    if (m_objects.count > 0 && isText(refOfObject(0), "$null")) { m_nullRef = refOfObject(0); }
    uint32_t root = refOf(rootTable, "root");
    if (root == NoObject && rootTable.count == 1) { root = m_plist.value(rootTable, 0); }
    if (root == NoObject) { return; }
    const ArchivedValue value = resolve(root);
    if (value.object.type == PlistType::Dict) { m_root = value.number; }
}

void ArchiveTable::failKey(std::string_view key, const char* reason) const {
    fail(QStringLiteral("the value of %1 %2").arg(quoted(key), QLatin1String(reason)));
}

uint32_t ArchiveTable::referencedNumber(const PlistObject& uid) const {
    const uint32_t number = m_plist.uid(uid);
    if (number >= m_objects.count) {
        fail(QStringLiteral("the archive refers to an object that it does not have"));
    }
    return number;
}

const PlistObject& ArchiveTable::dictionary(uint32_t number) {
    if (number != m_dictionaryNumber) {
        m_dictionary = m_plist.object(refOfObject(number));
        m_dictionaryNumber = number;
    }
    return m_dictionary;
}

uint32_t ArchiveTable::find(const PlistObject& dict, std::string_view key) {
    requireFewKeys(dict);
    KeyHints::Hint& hint = m_hints.at(key);
    if (hint.isFor(key)) {
        if (hint.position < dict.count && m_plist.item(dict, hint.position) == hint.ref) {
            return hint.position;
        }
        const uint32_t position = m_plist.positionOfKey(dict, hint.ref);
        if (position < dict.count) { return hint.position = position; }
    }
    // A key is often asked for after the one that was written before it. The text decides, since
    // another writer may have stored it more than once.
    const uint32_t position = m_plist.positionOfKey(dict, key, m_lastFound + 1);
    if (position < dict.count) {
        m_lastFound = position;
        const uint32_t ref = m_plist.item(dict, position);
        const auto* text = reinterpret_cast<const char*>(m_plist.object(ref).payload);
        hint = {text, key.size(), ref, position};
    }
    return position;
}

ArchivedValue ArchiveTable::value(const PlistObject& dict, std::string_view key) {
    const uint32_t position = find(dict, key);
    if (position == dict.count) { return {}; }
    return resolve(m_plist.value(dict, position));
}

ArchivedValue ArchiveTable::item(uint32_t arrayRef, size_t index) {
    return resolve(m_plist.item(m_plist.object(arrayRef), static_cast<uint32_t>(index)));
}

uint32_t ArchiveTable::itemNumber(const PlistObject& array, size_t index) {
    const PlistObject reference = m_plist.object(m_plist.item(array, static_cast<uint32_t>(index)));
    if (reference.type != PlistType::Uid) { return NoObject; }
    const uint32_t number = referencedNumber(reference);
    return dictionary(number).type == PlistType::Dict ? number : NoObject;
}

ArchivedValue ArchiveTable::resolve(uint32_t ref) {
    ArchivedValue value;
    value.ref = ref;
    value.object = m_plist.object(ref);
    if (value.object.type == PlistType::Uid) {
        value.number = referencedNumber(value.object);
        value.ref = refOfObject(value.number);
        if (value.ref == m_nullRef) {
            value.kind = ArchivedKind::Null;
            return value;
        }
        value.object = m_plist.object(value.ref);
    }
    value.kind = kindOf(value.object);
    // Objects stand in the object table; a dictionary elsewhere is nothing that a reader takes.
    const bool isLoose = value.number == NoObject && value.object.type == PlistType::Dict;
    if (isLoose) { value.kind = ArchivedKind::Data; }
    return value;
}

ArchivedKind ArchiveTable::kindOf(const PlistObject& object) {
    switch (object.type) {
        case PlistType::Null:
            return ArchivedKind::Null;
        case PlistType::False:
        case PlistType::True:
            return ArchivedKind::Bool;
        case PlistType::Integer:
        case PlistType::Real:
            return ArchivedKind::Number;
        case PlistType::Ascii:
        case PlistType::Utf16:
            return ArchivedKind::String;
        case PlistType::Array:
            return ArchivedKind::Array;
        case PlistType::Dict:
            return classOf(object).kind;
        case PlistType::Data:
        case PlistType::Date:
        case PlistType::Set:
            return ArchivedKind::Data;
        case PlistType::Uid:
            break;
    }
    failReference();
}

void ArchiveTable::requireFewKeys(const PlistObject& dict) const {
    if (dict.count > kMostKeys) {
        fail(QStringLiteral("an object of the archive has too many keys"));
    }
}

void ArchiveTable::failReference() const {
    fail(QStringLiteral("a reference of the archive leads to another reference"));
}

auto ArchiveTable::classAt(const PlistObject& dict, uint32_t position) -> const ClassEntry& {
    static const ClassEntry unknown;
    if (position == dict.count) { return unknown; }
    const PlistObject reference = m_plist.object(m_plist.value(dict, position));
    if (reference.type != PlistType::Uid) { failKey("$class", "is no reference to a class"); }
    const uint32_t number = referencedNumber(reference);
    ClassEntry& entry = m_classes[number % m_classes.size()];
    if (entry.number == number) { return entry; }

    const PlistObject description = m_plist.object(refOfObject(number));
    if (description.type == PlistType::Dict) {
        requireFewKeys(description);
        const uint32_t name = m_plist.positionOfKey(description, "$classname");
        if (name < description.count) {
            const PlistObject text = m_plist.object(m_plist.value(description, name));
            if (text.type == PlistType::Ascii && text.count <= kLongestClassName) {
                const std::string_view className = m_plist.ascii(text);
                return entry = {number, className, kindOfInstances(className)};
            }
        }
    }
    failKey("$class", "leads to a class entry without a valid name");
}

bool ArchiveTable::boolean(const ArchivedValue& value, std::string_view key) const {
    if (value.isAbsent()) { return false; }
    if (value.object.isBool()) { return value.object.type == PlistType::True; }
    if (value.object.isNumber()) { return number(value, key) != 0; }
    failKey(key, "is no yes or no");
}

int32_t ArchiveTable::integer(const ArchivedValue& value, std::string_view key) const {
    const double whole = std::trunc(number(value, key));
    if (whole < std::numeric_limits<int32_t>::min() ||
        whole > std::numeric_limits<int32_t>::max()) {
        failKey(key, "does not fit into 32 bits");
    }
    return static_cast<int32_t>(whole);
}

float ArchiveTable::real(const ArchivedValue& value, std::string_view key) const {
    const double wide = number(value, key);
    constexpr double largest = std::numeric_limits<float>::max();
    if (wide < -largest || wide > largest) { failKey(key, "does not fit into a 32-bit float"); }
    return static_cast<float>(wide);
}

double ArchiveTable::number(const ArchivedValue& value, std::string_view key) const {
    if (value.isAbsent()) { return 0; }
    if (!value.object.isNumber()) { failKey(key, "is no number"); }
    const double number = m_plist.number(value.object);
    if (!std::isfinite(number)) { failKey(key, "is not finite"); }
    return number;
}

std::optional<PlistObject> ArchiveTable::string(const ArchivedValue& value) {
    if (value.kind != ArchivedKind::String) { return std::nullopt; }
    if (value.object.isString()) { return value.object; }
    const PlistObject inner = this->value(value.object, "NS.string").object;
    if (!inner.isString()) { return std::nullopt; }
    return inner;
}

PlistObject ArchiveTable::requireString(const ArchivedValue& value, std::string_view key) {
    const auto stored = string(value);
    if (!stored) { failKey(key, "is no string"); }
    return *stored;
}

QString ArchiveTable::text(const ArchivedValue& value, std::string_view key) {
    return value.isAbsent() ? QString() : text(requireString(value, key));
}

std::optional<std::string_view> ArchiveTable::ascii(const ArchivedValue& value,
                                                    std::string_view key) {
    if (value.isAbsent()) { return std::nullopt; }
    return ascii(requireString(value, key));
}

void ArchiveTable::requireShort(const PlistObject& string) const {
    if (string.count > limits::kLengthOfText) {
        fail(beyondLimit(QStringLiteral("characters of a name"), string.count,
                         limits::kLengthOfText));
    }
}

QString ArchiveTable::text(const PlistObject& string) {
    if (string.count <= kShortString) { return m_plist.text(string); }
    requireShort(string);
    QString& shared = m_longStrings[string.payload];
    if (shared.isNull()) { shared = m_plist.text(string); }
    return shared;
}

std::optional<std::string_view> ArchiveTable::ascii(const PlistObject& string) const {
    if (string.type != PlistType::Ascii || string.count > kShortString) { return std::nullopt; }
    return m_plist.ascii(string);
}

QPointF ArchiveTable::point(const ArchivedValue& value, std::string_view key) {
    if (value.isAbsent()) { return {}; }
    ArchivedValue boxed = value;
    if (value.kind == ArchivedKind::Object && classOf(value.object).name == "NSValue") {
        boxed = this->value(value.object, "NS.pointval");
        if (boxed.isAbsent()) { boxed = this->value(value.object, "NS.sizeval"); }
    }
    const auto stored = string(boxed);
    if (!stored || stored->count > kLongestPoint) { failKey(key, "is no point"); }
    const auto plain = ascii(*stored);
    const auto point =
        plain ? pointFromText(*plain) : pointFromText(m_plist.text(*stored).toStdString());
    if (!point) { failKey(key, "is no point of the form {x, y}"); }
    return *point;
}

auto ArchiveTable::array(const ArchivedValue& value, std::string_view key) -> Array {
    ArchivedValue items = value;
    if (value.object.type == PlistType::Dict) { items = this->value(value.object, "NS.objects"); }
    if (value.kind != ArchivedKind::Array || items.object.type != PlistType::Array) {
        failKey(key, "is no array");
    }
    return {items.ref, items.object.count};
}

QStringList ArchiveTable::strings(const ArchivedValue& value, std::string_view key) {
    if (value.isAbsent()) { return {}; }
    const Array array = this->array(value, key);
    if (array.size == 0) { return {}; }
    // A list that is written out takes a byte at least for each of its items.
    m_listedStrings += array.size;
    if (m_listedStrings > m_bytes) {
        fail(beyondLimit(QStringLiteral("names in the archive's lists"),
                         static_cast<int64_t>(m_listedStrings), static_cast<int64_t>(m_bytes)));
    }
    QStringList& shared = m_stringLists[m_plist.object(array.ref).payload];
    if (!shared.isEmpty()) { return shared; }
    QStringList list;
    list.reserve(static_cast<qsizetype>(array.size));
    for (size_t i = 0; i < array.size; ++i) {
        const auto stored = string(item(array.ref, i));
        if (!stored) { failKey(key, "is no array of strings"); }
        list.append(text(*stored));
    }
    return shared = list;
}

}  // namespace tweenery
