#include "storage/keyed_unarchiver.h"

#include "base/errors.h"
#include "storage/archive_table.h"

namespace tweenery {

ArchivedValue KeyedDecoder::valueForKey(std::string_view key) const {
    return isNull() ? ArchivedValue{} : m_archive->m_table->value(m_object, key);
}

QString KeyedDecoder::className() const {
    if (isNull()) { return {}; }
    const std::string_view name = m_archive->m_table->className(m_object);
    return QString::fromLatin1(name.data(), static_cast<qsizetype>(name.size()));
}

void KeyedDecoder::requireClass(std::string_view name) const {
    assertContract(!isNull(), QStringLiteral("the null object has no class"));
    if (m_archive->m_table->className(m_object) == name) { return; }
    m_archive->fail(QStringLiteral("an object of class \"%1\" stands where a \"%2\" is expected")
                        .arg(className(), QString::fromUtf8(name.data(), name.size())));
}

ArchivedKind KeyedDecoder::kindOfKey(std::string_view key) const {
    return valueForKey(key).kind;
}

// The null object has no key.
template <typename Read>
auto KeyedDecoder::read(std::string_view key, const Read& readValue) const {
    using Value = decltype(readValue(*m_archive->m_table, ArchivedValue{}));
    return isNull() ? Value{} : readValue(*m_archive->m_table, valueForKey(key));
}

bool KeyedDecoder::decodeBool(std::string_view key) const {
    return read(key, [key](auto& table, auto value) { return table.boolean(value, key); });
}

int32_t KeyedDecoder::decodeInt(std::string_view key) const {
    return read(key, [key](auto& table, auto value) { return table.integer(value, key); });
}

float KeyedDecoder::decodeFloat(std::string_view key) const {
    return read(key, [key](auto& table, auto value) { return table.real(value, key); });
}

double KeyedDecoder::decodeDouble(std::string_view key) const {
    return read(key, [key](auto& table, auto value) { return table.number(value, key); });
}

QString KeyedDecoder::decodeString(std::string_view key) const {
    return read(key, [key](auto& table, auto value) { return table.text(value, key); });
}

std::optional<std::string_view> KeyedDecoder::decodeAscii(std::string_view key) const {
    return read(key, [key](auto& table, auto value) { return table.ascii(value, key); });
}

QPointF KeyedDecoder::decodePoint(std::string_view key) const {
    return read(key, [key](auto& table, auto value) { return table.point(value, key); });
}

QSizeF KeyedDecoder::decodeSize(std::string_view key) const {
    const QPointF size = decodePoint(key);
    return {size.x(), size.y()};
}

KeyedDecoder KeyedDecoder::decodeObject(std::string_view key) const {
    const ArchivedValue value = valueForKey(key);
    if (value.isAbsent()) { return {}; }
    if (value.object.type != PlistType::Dict || value.number == ArchivedValue::NoObject) {
        m_archive->m_table->failKey(key, "is no object");
    }
    return {m_archive, value.number};
}

ArchivedArray KeyedDecoder::decodeArray(std::string_view key) const {
    ArchivedArray result;
    const ArchivedValue value = valueForKey(key);
    if (value.isAbsent()) { return result; }
    const auto array = m_archive->m_table->array(value, key);
    result.m_archive = m_archive;
    result.m_array = array.ref;
    result.m_size = array.size;
    return result;
}

QStringList KeyedDecoder::decodeStrings(std::string_view key) const {
    return read(key, [key](auto& table, auto value) { return table.strings(value, key); });
}

KeyedDecoder ArchivedArray::object(size_t index) const {
    assertContract(index < m_size, QStringLiteral("index beyond the end of an archived array"));
    const uint32_t number = m_archive->m_table->itemNumber(m_array, index);
    if (number == ArchivedValue::NoObject) {
        m_archive->fail(QStringLiteral("an array's item number %1 is no object").arg(index));
    }
    return {m_archive, number};
}

QString ArchivedArray::string(size_t index) const {
    assertContract(index < m_size, QStringLiteral("index beyond the end of an archived array"));
    const auto string = m_archive->m_table->string(m_archive->m_table->item(m_array, index));
    if (!string) {
        m_archive->fail(QStringLiteral("an array's item number %1 is no string").arg(index));
    }
    return m_archive->m_table->text(*string);
}

KeyedUnarchiver::KeyedUnarchiver(const QByteArray& data, const QString& entry)
    : m_table(std::make_unique<ArchiveTable>(data, entry)) {}

KeyedUnarchiver::~KeyedUnarchiver() = default;

KeyedDecoder KeyedUnarchiver::root() const {
    if (m_table->root() == ArchiveTable::NoObject) {
        fail(QStringLiteral("the archive has no root object"));
    }
    return {this, m_table->root()};
}

uint32_t KeyedUnarchiver::objectCount() const {
    return m_table->objectCount();
}

const QString& KeyedUnarchiver::entry() const {
    return m_table->entry();
}

void KeyedUnarchiver::fail(const QString& reason) const {
    m_table->fail(reason);
}

size_t KeyedUnarchiver::verifyEverything() const {
    root();
    return m_table->verifyEverything();
}

}  // namespace tweenery
