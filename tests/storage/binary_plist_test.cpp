#include "storage/binary_plist.h"

#include <gtest/gtest.h>

#include <bit>
#include <limits>

#include "base/errors.h"
#include "storage/binary_plist_writer.h"
#include "support/raw_plist.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

const QString Entry = u"some/entry"_s;

BinaryPlist plistOf(const std::string& object) {
    RawPlist raw;
    return {raw.finish(raw.add(object)), Entry};
}

std::string integerBytes(unsigned marker, uint64_t high, uint64_t low) {
    const size_t width = size_t{1} << (marker & 0xF);
    const std::string bytes = width == 16
                                  ? RawPlist::bigEndian(high, 8) + RawPlist::bigEndian(low, 8)
                                  : RawPlist::bigEndian(low, width);
    return static_cast<char>(marker) + bytes;
}

TEST(BinaryPlist, ReadsNumbersOfEveryWidth) {
    const auto minusTwo = static_cast<uint64_t>(-2);
    const struct {
        std::string object;
        std::optional<int64_t> whole;
        double number;
    } cases[] = {
        {integerBytes(0x10, 0, 0xFF), 255, 255},
        {integerBytes(0x11, 0, 0xFFFF), 65535, 65535},
        {integerBytes(0x12, 0, 0xFFFFFFFF), 4294967295, 4294967295},
        {integerBytes(0x13, 0, minusTwo), -2, -2},
        {integerBytes(0x14, 0, 7), 7, 7},
        {integerBytes(0x14, UINT64_MAX, minusTwo), -2, -2},
        {integerBytes(0x14, 0, UINT64_MAX), std::nullopt, 0x1p64},
        {integerBytes(0x14, 1, 0), std::nullopt, 0x1p64},
        {'\x22' + RawPlist::bigEndian(std::bit_cast<uint32_t>(-1.5F), 4), std::nullopt, -1.5},
        {'\x23' + RawPlist::bigEndian(std::bit_cast<uint64_t>(0.1), 8), std::nullopt, 0.1},
    };
    for (const auto& [object, whole, number] : cases) {
        const BinaryPlist plist = plistOf(object);
        const PlistObject read = plist.object(plist.top());
        EXPECT_EQ(plist.number(read), number);
        if (read.type == PlistType::Integer) { EXPECT_EQ(plist.integer(read), whole); }
    }
}

TEST(BinaryPlist, ReadsReferencesOffsetsAndCountsOfEveryWidth) {
    for (size_t width = 1; width <= 8; ++width) {
        RawPlist raw(width, 9 - width);
        const auto key = raw.ascii("key");
        const auto value = raw.uid(300);
        const auto top = raw.dictionary({{key, raw.array({key, value})}});
        const BinaryPlist plist(raw.finish(top), Entry);
        const PlistObject dict = plist.object(plist.top());
        ASSERT_EQ(dict.type, PlistType::Dict);
        EXPECT_EQ(plist.positionOfKey(dict, "key"), 0U);
        EXPECT_EQ(plist.positionOfKey(dict, "kez"), 1U);
        const PlistObject items = plist.object(plist.value(dict, 0));
        ASSERT_EQ(items.count, 2U) << width;
        EXPECT_EQ(plist.uid(plist.object(plist.item(items, 1))), 300U);
    }
    for (const size_t width : {0U, 1U, 2U, 4U, 8U}) {
        const BinaryPlist plist = plistOf(RawPlist::marker(5, 3, width) + "abc");
        EXPECT_EQ(plist.text(plist.object(0)), u"abc"_s) << width;
    }
}

TEST(BinaryPlist, RefusesADamagedTrailer) {
    RawPlist raw(1, 1);
    const QByteArray sound = raw.finish(raw.ascii("text"));
    const auto patched = [&](qsizetype fromEnd, char value) {
        QByteArray bytes = sound;
        bytes[bytes.size() - fromEnd] = value;
        return bytes;
    };
    const struct {
        const char* what;
        QByteArray bytes;
    } files[] = {
        {"empty", {}},
        {"header only", "bplist00"},
        {"other format", QByteArray("<?xml version=\"1.0\"?>").repeated(4)},
        {"other version", QByteArray(sound).replace("bplist00", "bplist15")},
        {"reference width 0", patched(25, 0)},
        {"reference width 9", patched(25, 9)},
        {"offset width 0", patched(26, 0)},
        {"offset width 9", patched(26, 9)},
        {"no objects", patched(17, 0)},
        {"more objects than offsets", patched(17, 2)},
        {"huge number of objects", patched(24, '\x7F')},
        {"top beyond the objects", patched(9, 1)},
        {"offset table inside the header", patched(1, 8)},
        {"offset table beyond the end", patched(1, 0x7F)},
        {"huge offset of the table", patched(8, '\xFF')},
    };
    EXPECT_NO_THROW(BinaryPlist(sound, Entry));
    for (const auto& [what, bytes] : files) {
        EXPECT_THROW(BinaryPlist(bytes, Entry), InputError) << what;
    }
}

TEST(BinaryPlist, RefusesDamagedObjects) {
    const std::string eight(8, '\0');
    const std::string objects[] = {
        "\x01",
        "\x0D",
        "\x20",
        "\x24" + eight + eight,
        "\x32" + eight,
        "\x70",
        "\xB0",
        "\xF0",
        "\x15" + eight + eight + eight + eight,
        "\x13short",
        "\x23short",
        "\x5Etoo short",
        "\x6Etoo short",
        "\x4Etoo short",
        RawPlist::marker(5, 1000, 2) + "x",
        RawPlist::marker(6, 0x7FFFFFFF, 4) + "x",
        RawPlist::marker(0xA, 0xFFFFFFFFFFFFFFFF, 8) + "x",
        RawPlist::marker(0xD, 0x8000000000000000, 8) + "x",
        RawPlist::marker(0xC, 0xFFFFFFFF, 4) + "x",
        "\x5F",
        "\x5F\x13shrt",
        "\x5F\x14" + eight + eight,
        "\x5F\x51x",
        "\x8Fshort",
    };
    for (const std::string& object : objects) {
        const BinaryPlist plist = plistOf(object);
        EXPECT_THROW(plist.object(0), InputError) << testing::PrintToString(object);
    }
    const BinaryPlist dangling = plistOf(std::string("\xA1\x00\x01", 3));
    EXPECT_THROW(dangling.item(dangling.object(0), 0), InputError);
    const BinaryPlist latin = plistOf("\x52\xE9!");
    EXPECT_THROW(latin.text(latin.object(0)), InputError);
    const BinaryPlist wide = plistOf("\x8F\x01" + eight + eight.substr(1));
    EXPECT_THROW(wide.uid(wide.object(0)), InputError);
}

TEST(BinaryPlistWriter, RoundTripsValuesInTheFewestBytes) {
    const struct {
        int64_t value;
        size_t bytes;
    } integers[] = {{0, 1},
                    {255, 1},
                    {256, 2},
                    {65535, 2},
                    {65536, 4},
                    {4294967295, 4},
                    {4294967296, 8},
                    {-1, 8},
                    {std::numeric_limits<int64_t>::max(), 8},
                    {std::numeric_limits<int64_t>::min(), 8}};
    for (const auto& [value, bytes] : integers) {
        BinaryPlistWriter writer;
        const BinaryPlist plist(writer.finish(writer.integer(value)), Entry);
        EXPECT_EQ(plist.integer(plist.object(plist.top())), value);
        EXPECT_EQ(plist.object(plist.top()).count, bytes);
    }
    const QString texts[] = {u""_s,
                             u"a"_s,
                             u"fourteen chars"_s,
                             u"fifteen charact"_s,
                             u"Größe 😀 日本"_s,
                             QString(70000, u'x'),
                             QString(70000, QChar(0x20AC)),
                             QString(1, QChar(0xD800))};
    for (const QString& text : texts) {
        BinaryPlistWriter writer;
        const BinaryPlist plist(writer.finish(writer.string(text)), Entry);
        EXPECT_EQ(plist.text(plist.object(plist.top())), text);
    }
}

TEST(BinaryPlistWriter, SharesEqualValuesOnly) {
    BinaryPlistWriter writer;
    EXPECT_EQ(writer.ascii("text"), writer.string(u"text"));
    EXPECT_EQ(writer.integer(1), writer.integer(1));
    EXPECT_EQ(writer.real(0.5F), writer.real(0.5F));
    EXPECT_NE(writer.real(0.0F), writer.real(-0.0F));
    EXPECT_NE(writer.real(1.0F), writer.real(1.0));
    EXPECT_NE(writer.integer(1), writer.boolean(true));
    EXPECT_NE(writer.ascii("ab"), writer.string(u"\u6162"));
    EXPECT_NE(writer.unsharedAscii("text"), writer.ascii("text"));
}

TEST(BinaryPlistWriter, KeepsManyValuesApart) {
    // Enough of them for references of four bytes and several growths of the table.
    constexpr int Count = 70000;
    BinaryPlistWriter writer;
    std::vector<BinaryPlistWriter::Ref> items;
    for (int i = 0; i < Count; ++i) {
        items.push_back(writer.string(QString::number(i)));
    }
    for (int i = 0; i < Count; ++i) {
        ASSERT_EQ(writer.string(QString::number(i)), items[static_cast<size_t>(i)]);
    }
    const BinaryPlist plist(writer.finish(writer.array(items)), Entry);
    const PlistObject array = plist.object(plist.top());
    ASSERT_EQ(array.count, static_cast<uint32_t>(Count));
    for (uint32_t i = 0; i < array.count; ++i) {
        ASSERT_EQ(plist.text(plist.object(plist.item(array, i))), QString::number(i));
    }
}

}  // namespace
}  // namespace tweenery::test
