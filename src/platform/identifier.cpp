#include "platform/identifier.h"

#include <QHash>
#include <QRandomGenerator>
#include <utility>

namespace tweenery {
namespace {

constexpr size_t UuidLength = Identifier::UuidLength;

constexpr bool isDashPosition(size_t position) {
    return position == 8 || position == 13 || position == 18 || position == 23;
}

constexpr int hexDigit(char16_t character) {
    if (character >= u'0' && character <= u'9') return character - u'0';
    if (character >= u'A' && character <= u'F') return character - u'A' + 10;
    return -1;
}

/// Reads the canonical form "XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX"; false for any other text.
template <typename Character>
bool parseUuid(const Character* text, size_t length, uint64_t& high, uint64_t& low) {
    if (length != UuidLength) return false;
    uint64_t halves[2] = {0, 0};
    size_t digits = 0;
    for (size_t i = 0; i < length; ++i) {
        const auto character = static_cast<char16_t>(text[i]);
        if (isDashPosition(i)) {
            if (character != u'-') return false;
            continue;
        }
        const int digit = hexDigit(character);
        if (digit < 0) return false;
        uint64_t& half = halves[digits++ / 16];
        half = half << 4 | static_cast<uint64_t>(digit);
    }
    high = halves[0];
    low = halves[1];
    return true;
}

void printUuid(uint64_t high, uint64_t low, std::array<char, UuidLength>& out) {
    size_t digits = 0;
    for (size_t i = 0; i < UuidLength; ++i) {
        if (isDashPosition(i)) {
            out[i] = '-';
            continue;
        }
        const uint64_t half = digits < 16 ? high : low;
        out[i] = "0123456789ABCDEF"[half >> (60 - 4 * (digits % 16)) & 0xF];
        ++digits;
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
    if (!parseUuid(text, length, high, low) || low == 0) return false;
    m_high = high;
    m_low = low;
    return true;
}

Identifier::Identifier(QStringView text) {
    if (text.isEmpty() || takeUuid(text.utf16(), static_cast<size_t>(text.size()))) return;
    keepText(text.toString());
}

Identifier::Identifier(const QString& text) {
    if (text.isEmpty() || takeUuid(text.utf16(), static_cast<size_t>(text.size()))) return;
    keepText(text);
}

Identifier Identifier::fromAscii(std::string_view text) {
    Identifier result;
    if (text.empty() || result.takeUuid(text.data(), text.size())) return result;
    result.keepText(QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size())));
    return result;
}

void Identifier::keepText(const QString& text) {
    m_high = reinterpret_cast<uintptr_t>(new OtherText{text});
    m_low = 0;
}

Identifier::Identifier(const Identifier& other) : m_high(other.m_high), m_low(other.m_low) {
    if (other.isText()) keepText(other.text());
}

Identifier::Identifier(Identifier&& other) noexcept
    : m_high(std::exchange(other.m_high, 0)), m_low(std::exchange(other.m_low, 0)) {}

Identifier& Identifier::operator=(Identifier other) noexcept {
    std::swap(m_high, other.m_high);
    std::swap(m_low, other.m_low);
    return *this;
}

Identifier::~Identifier() {
    if (isText()) delete reinterpret_cast<OtherText*>(static_cast<uintptr_t>(m_high));
}

Identifier Identifier::generate() {
    Identifier result;
    auto* random = QRandomGenerator::global();
    // Version 4 in the third group, variant 1 in the fourth (RFC 4122, section 4.4).
    result.m_high = (random->generate64() & ~0xF000ULL) | 0x4000ULL;
    result.m_low = (random->generate64() & ~(3ULL << 62)) | 2ULL << 62;
    return result;
}

bool Identifier::isText() const {
    return m_low == 0 && m_high != 0;
}

const QString& Identifier::text() const {
    return reinterpret_cast<const OtherText*>(static_cast<uintptr_t>(m_high))->text;
}

QString Identifier::toString() const {
    if (isText()) return text();
    const auto ascii = uuidText();
    if (!ascii) return QStringLiteral("");
    return QString::fromLatin1(ascii->data(), UuidLength);
}

std::optional<std::array<char, UuidLength>> Identifier::uuidText() const {
    if (m_low == 0) return std::nullopt;
    std::array<char, UuidLength> result;
    printUuid(m_high, m_low, result);
    return result;
}

size_t Identifier::hash() const {
    if (isText()) return qHash(text());
    return static_cast<size_t>((m_high ^ (m_low << 1 | m_low >> 63)) * 0x9E3779B97F4A7C15ULL);
}

bool Identifier::operator==(const Identifier& other) const {
    if (isText() && other.isText()) return text() == other.text();
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
