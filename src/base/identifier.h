#pragma once

#include <QString>
#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>
#include <utility>

namespace tweenery {

/// The identity of an element, a keyframe or an animation: an upper-case UUID string.
/// Canonical UUIDs take 16 bytes; any other text (a package may hold one) is kept as it stands.
class Identifier {
 public:
    /// Characters of a printed UUID.
    static constexpr size_t UuidLength = 36;

    /// The null identifier, which prints as the empty string.
    Identifier() = default;
    /// Keeps any text. Only the canonical upper-case form takes the short representation, so that
    /// toString() always gives back exactly what was given.
    explicit Identifier(QStringView text);
    explicit Identifier(const QString& text);
    /// The same from 7-bit text.
    static Identifier fromAscii(std::string_view text);
    Identifier(const Identifier& other);
    Identifier(Identifier&& other) noexcept
        : m_high(std::exchange(other.m_high, 0)), m_low(std::exchange(other.m_low, 0)) {}
    Identifier& operator=(Identifier other) noexcept;
    ~Identifier() {
        if (isText()) { deleteText(); }
    }

    /// A new random (version 4) UUID.
    static Identifier generate();

    bool isNull() const { return m_high == 0 && m_low == 0; }
    QString toString() const;
    /// The printed UUID without an allocation; nullopt for a null identifier and for other text.
    std::optional<std::array<char, UuidLength>> uuidText() const;
    size_t hash() const;

    bool operator==(const Identifier& other) const;
    /// Order of the printed text.
    bool operator<(const Identifier& other) const;

 private:
    struct OtherText;
    bool isText() const { return m_low == 0 && m_high != 0; }
    const QString& text() const;
    void deleteText();
    void keepText(const QString& text);
    template <typename Character>
    bool takeUuid(const Character* text, size_t length);

    // A UUID's 128 bits. Other text is marked by m_low == 0 with m_high holding a pointer.
    uint64_t m_high = 0;
    uint64_t m_low = 0;
};

/// For Qt's hashes.
inline size_t qHash(const Identifier& identifier, size_t seed = 0) {
    return identifier.hash() ^ seed;
}

}  // namespace tweenery

template <>
struct std::hash<tweenery::Identifier> {
    size_t operator()(const tweenery::Identifier& id) const { return id.hash(); }
};
