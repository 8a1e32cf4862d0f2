#include "base/number_text.h"

#include <gtest/gtest.h>

#include <bit>
#include <cfloat>
#include <cmath>
#include <cstdlib>
#include <random>

#include "base/errors.h"

namespace tweenery::test {
namespace {

TEST(NumberText, RoundsTheBinaryValueToFixedDecimals) {
    struct Case {
        double value;
        int decimals;
        std::string text;
    };
    const std::vector<Case> cases = {
        {10.25, 1, "10.2"},
        {10.35, 1, "10.3"},  // the double lies below the decimal
        {0.5, 0, "0"},
        {1.5, 0, "2"},
        {2.675, 2, "2.67"},
        {0.0005, 3, "0.001"},
        {0.00049, 3, "0.000"},
        {-0.0, 1, "-0.0"},
        {-0.04, 1, "-0.0"},
        {1234567.891, 2, "1234567.89"},
        {static_cast<double>(0.1F), 9, "0.100000001"},
        {1e21, 1, "1000000000000000000000.0"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(fixedText(c.value, c.decimals), c.text);
    }
    EXPECT_EQ(fixedText(-DBL_MAX, 9).size(), 1 + 309 + 1 + 9);
    EXPECT_THROW(fixedText(1, 10), AssertionFailure);

    std::string line = "x = ";
    appendFixed(line, 2.5, 3);
    EXPECT_EQ(line, "x = 2.500");
}

TEST(NumberText, ThreeDecimalsOfAFloatAreTheSameByEitherWay) {
    const auto expectSame = [](float value) {
        std::string text = "=";
        appendThreeDecimals(text, value);
        ASSERT_EQ(text, '=' + fixedText(static_cast<double>(value), 3)) << value;
    };
    for (const float value : {0.0F, -0.0F, 0.0625F, 0.1875F, -0.0004F, 0.0005F, 0.9995F, 1.0005F,
                              999.9995F, 1e12F, 9.9e14F, 1e15F, FLT_MAX, -FLT_MIN, FLT_TRUE_MIN}) {
        expectSame(value);
    }
    std::mt19937 random(7);
    for (int i = 0; i < 200000; ++i) {
        expectSame(static_cast<float>(random() % 4000000) / 4096);  // many ties
        const float any = std::bit_cast<float>(static_cast<uint32_t>(random()));
        if (std::isfinite(any)) { expectSame(any); }
    }
}

TEST(NumberText, ShortestTextReadsBackEqual) {
    struct Case {
        double value;
        std::string text;
    };
    const std::vector<Case> cases = {
        {0, "0"},
        {-0.0, "-0"},
        {100000, "100000"},
        {0.1, "0.1"},
        {1.0 / 3, "0.3333333333333333"},
        {1e15, "1000000000000000"},
        {1e22, "1e+22"},
        {1e-7, "1e-07"},
        {-12.5, "-12.5"},
        {DBL_MIN, "2.2250738585072014e-308"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(shortestText(c.value), c.text);
        EXPECT_EQ(std::strtod(shortestText(c.value).c_str(), nullptr), c.value);
    }
}

}  // namespace
}  // namespace tweenery::test
