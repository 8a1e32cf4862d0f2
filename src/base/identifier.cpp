#include "base/identifier.h"

#include <QHash>
#include <QRandomGenerator>
#include <bit>
#include <type_traits>
#include <utility>

namespace tweenery {
namespace {

constexpr size_t kUuidLength = Identifier::UuidLength;
constexpr size_t kDashPositions[] = {8, 13, 18, 23};
constexpr uint8_t kDigitPositions[] = {0,  1,  2,  3,  4,  5,  6,  7,  9,  10, 11,
                                       12, 14, 15, 16, 17, 19, 20, 21, 22, 24, 25,
                                       26, 27, 28, 29, 30, 31, 32, 33, 34, 35};
constexpr char kDigits[] = "0123456789ABCDEF";
constexpr uint8_t kNoDigit = 0x80;

constexpr std::array<uint8_t, 256> digitValues() {
    std::array<uint8_t, 256> values{};
    values.fill(kNoDigit);
    for (uint8_t i = 0; i < 16; ++i) {
        values[static_cast<uint8_t>(kDigits[i])] = i;
    }
    return values;
}

constexpr std::array<uint8_t, 256> kDigitValues = digitValues();

// Reads the canonical form "XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX"; false for any other text.
template <typename Character>
bool parseUuid(const Character* text, size_t length, uint64_t& high, uint64_t& low) {
    if (length != kUuidLength) { return false; }
    for (const size_t position : kDashPositions) {
        if (text[position] != Character('-')) { return false; }
    }
    uint64_t halves[2] = {0, 0};
    unsigned seen = 0;
    for (size_t i = 0; i < 32; ++i) {
        const auto character =
            static_cast<std::make_unsigned_t<Character>>(text[kDigitPositions[i]]);
        if (character > 0xFF) { return false; }
        const uint8_t digit = kDigitValues[static_cast<uint8_t>(character)];
        seen |= digit;
        halves[i / 16] = halves[i / 16] << 4 | digit;
    }
    high = halves[0];
    low = halves[1];
    return seen < kNoDigit;
}

void printUuid(uint64_t high, uint64_t low, std::array<char, kUuidLength>& out) {
    for (const size_t position : kDashPositions) {
        out[position] = '-';
    }
    for (size_t i = 0; i < 16; ++i) {
        out[kDigitPositions[i]] = kDigits[high >> (60 - 4 * i) & 0xF];
        out[kDigitPositions[16 + i]] = kDigits[low >> (60 - 4 * i) & 0xF];
    }
}

}  // namespace

struct Identifier::OtherText {
    QString text;
};

static_assert(sizeof(Identifier) == 16);

template <typename Character>
bool Identifier::takeUuid(const Character* text, size_t length) {
    uint64_t high = 0;
    uint64_t low = 0;
    // A zero lower half marks other text, so a UUID that ends in sixteen zeros is kept as text.
    if (!parseUuid(text, length, high, low) || low == 0) { return false; }
    m_high = high;
    m_low = low;
    return true;
}

Identifier::Identifier(QStringView text) {
    if (text.isEmpty() || takeUuid(text.utf16(), static_cast<size_t>(text.size()))) { return; }
    keepText(text.toString());
}

Identifier::Identifier(const QString& text) {
    if (text.isEmpty() || takeUuid(text.utf16(), static_cast<size_t>(text.size()))) { return; }
    keepText(text);
}

Identifier Identifier::fromAscii(std::string_view text) {
    Identifier result;
    if (text.empty() || result.takeUuid(text.data(), text.size())) { return result; }
    result.keepText(QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size())));
    return result;
}

void Identifier::keepText(const QString& text) {
    m_high = std::bit_cast<uint64_t>(new OtherText{text});
    m_low = 0;
}

Identifier::Identifier(const Identifier& other) : m_high(other.m_high), m_low(other.m_low) {
    if (other.isText()) { keepText(other.text()); }
}

Identifier& Identifier::operator=(Identifier other) noexcept {
    std::swap(m_high, other.m_high);
    std::swap(m_low, other.m_low);
    return *this;
}

void Identifier::deleteText() {
    delete std::bit_cast<OtherText*>(m_high);
}

Identifier Identifier::generate() {
    Identifier result;
    auto* random = QRandomGenerator::global();
    // Version 4 in the third group, variant 1 in the fourth (RFC 4122, section 4.4).
    result.m_high = (random->generate64() & ~0xF000ULL) | 0x4000ULL;
    result.m_low = (random->generate64() & ~(3ULL << 62)) | 2ULL << 62;
    return result;
}

const QString& Identifier::text() const {
    const auto* other = std::bit_cast<OtherText*>(m_high);
    return other->text;
}

QString Identifier::toString() const {
    if (isText()) { return text(); }
    const auto ascii = uuidText();
    if (!ascii) { return QStringLiteral(""); }
    return QString::fromLatin1(ascii->data(), kUuidLength);
}

std::optional<std::array<char, kUuidLength>> Identifier::uuidText() const {
    if (m_low == 0) { return std::nullopt; }
    std::array<char, kUuidLength> result;
    printUuid(m_high, m_low, result);
    return result;
}

size_t Identifier::hash() const {
    if (isText()) { return qHash(text()); }
    return static_cast<size_t>((m_high ^ (m_low << 1 | m_low >> 63)) * 0x9E3779B97F4A7C15ULL);
}

bool Identifier::operator==(const Identifier& other) const {
    if (isText() && other.isText()) { return text() == other.text(); }
    return m_high == other.m_high && m_low == other.m_low;
}

bool Identifier::operator<(const Identifier& other) const {
    // Hexadecimal digits sort as their values do, and a null identifier before everything.
    if (!isText() && !other.isText()) {
        return m_high != other.m_high ? m_high < other.m_high : m_low < other.m_low;
    }
    return toString() < other.toString();
}

}  // namespace tweenery
