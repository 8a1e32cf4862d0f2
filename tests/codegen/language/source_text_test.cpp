#include "codegen/language/source_text.h"

#include <gtest/gtest.h>

#include <limits>

namespace tweenery::test {
namespace {

TEST(SourceText, FillsItsPlaceholders) {
    std::string text = ">";
    append(text, "%@ = %d%%, %0.1f and %0.3f", std::string("a%@b"), int32_t{-7}, 160.25, 0.1f);
    EXPECT_EQ(text, ">a%@b = -7%, 160.2 and 0.100");
}

TEST(SourceText, CutsLengthsTowardZero) {
    const std::pair<double, int32_t> cases[] = {
        {320.9, 320},
        {-1.9, -1},
        {1e300, std::numeric_limits<int32_t>::max()},
        {-1e300, std::numeric_limits<int32_t>::min()},
        {std::numeric_limits<double>::quiet_NaN(), 0},
    };
    for (const auto& [value, cut] : cases) {
        EXPECT_EQ(cutToInt32(value), cut) << value;
    }
}

TEST(SourceText, EscapesWhatWouldEndALiteralOrALine) {
    using enum TargetLanguage;
    struct Case {
        std::string name;
        std::string objcLiteral, swiftLiteral, objcComment, swiftComment;
    };
    const Case cases[] = {
        {"Grüße 日本 🎈", "Grüße 日本 🎈", "Grüße 日本 🎈", "Grüße 日本 🎈", "Grüße 日本 🎈"},
        {"it's 100% /*\"hi\"*/", "it's 100% /*\\\"hi\\\"*/", "it's 100% /*\\\"hi\\\"*/",
         "it's 100% /*\"hi\"*/", "it's 100% /*\"hi\"*/"},
        {"a\\(b)", "a\\\\(b)", "a\\\\(b)", "a\\(b)", "a\\(b)"},
        {"a\nb\r\tc", "a\\nb\\r\\tc", "a\\nb\\r\\tc", "a\\nb\\r\\tc", "a\\nb\\r\\tc"},
        {std::string("\0"
                     "1",
                     2),
         "\\0001", "\\u{0}1", "\\0001", "\\u{0}1"},
        {"\x1b\x7f", "\\033\\177", "\\u{1B}\\u{7F}", "\\033\\177", "\\u{1B}\\u{7F}"},
        {"\u0085\u00a0", "\\302\\205\u00a0", "\\u{85}\u00a0", "\\302\\205\u00a0", "\\u{85}\u00a0"},
        {"end\\", "end\\\\", "end\\\\", "end\\134", "end\\"},
        {"end\\\\  ", "end\\\\\\\\  ", "end\\\\\\\\  ", "end\\\\134  ", "end\\\\  "},
        {"?\?/\"];abort();//z", "?\\?/\\\"];abort();//z", "?\?/\\\"];abort();//z",
         "? ?/\"];abort();//z", "?\?/\"];abort();//z"},
        {"?\?\?=?\?", "?\?\\?=?\?", "?\?\?=?\?", "?\? ?=?\?", "?\?\?=?\?"},
        {"a\u202eb\u200bc", "a\\342\\200\\256b\\342\\200\\213c", "a\\u{202E}b\\u{200B}c",
         "a\\342\\200\\256b\\342\\200\\213c", "a\\u{202E}b\\u{200B}c"},
        {"\u2028\u009b\u3164", "\\342\\200\\250\\302\\233\\343\\205\\244",
         "\\u{2028}\\u{9B}\\u{3164}", "\\342\\200\\250\\302\\233\\343\\205\\244",
         "\\u{2028}\\u{9B}\\u{3164}"},
        {"", "", "", "", ""},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(literalText(ObjectiveC, c.name), c.objcLiteral);
        EXPECT_EQ(literalText(FirstSwift, c.name), c.swiftLiteral);
        EXPECT_EQ(commentText(ObjectiveC, c.name), c.objcComment);
        EXPECT_EQ(commentText(FirstSwift, c.name), c.swiftComment);
    }
}

}  // namespace
}  // namespace tweenery::test
