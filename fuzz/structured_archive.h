#pragma once

#include <QByteArray>
#include <cstddef>
#include <cstdint>
#include <span>

namespace tweenery::fuzz {

/// The fuzzer's bytes as a stream of choices. Once they are used up, every choice is the first.
class FuzzInput {
 public:
    explicit FuzzInput(std::span<const uint8_t> bytes) : m_bytes(bytes) {}

    bool isEmpty() const { return m_bytes.empty(); }
    uint8_t byte();
    /// Between 0 and `count` - 1; takes as few bytes as that needs.
    uint32_t below(uint32_t count);
    /// True for `percent` in a hundred.
    bool chance(uint32_t percent) { return below(100) + percent >= 100; }
    uint64_t word();

 private:
    std::span<const uint8_t> m_bytes;
};

/// What an archive's root is; each has the keys and the kinds of values that the program expects.
enum class ArchiveShape { Element, Timeline, Preferences, Version };
inline constexpr uint32_t ArchiveShapeCount = 4;

/// A keyed archive that is nearly sound, so that a reader gets far into it: with references that
/// double, cycles, depth, counts that lie, wrong types under right keys, missing and repeated keys,
/// numbers that are not finite, and any width of references and offsets.
QByteArray structuredArchive(FuzzInput& input, ArchiveShape shape);

}  // namespace tweenery::fuzz
