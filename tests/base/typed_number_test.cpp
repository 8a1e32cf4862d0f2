#include "base/typed_number.h"

#include <gtest/gtest.h>

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;
using enum NumberUnit;

TEST(TypedNumber, UnderstandsUnitsAndArithmetic) {
    struct Case {
        QString text;
        NumberUnit unit;
        std::optional<double> present;
        double number;
    };
    const Case cases[] = {
        {u"22.5"_s, Degrees, 0, 22.5},
        {u" 22,5 "_s, Degrees, 0, 22.5},
        {u"100+20"_s, Points, 7, 120},
        {u"100 + 20pt"_s, Points, 7, 120},
        {u"-40"_s, Points, 7, -40},
        {u"−40"_s, Points, 7, -40},
        {u"--3"_s, Points, 7, 3},
        {u"+5"_s, Points, 7, 5},
        {u"2+3*4-6/3"_s, Points, 7, 12},
        {u"(2+3)*4"_s, Points, 7, 20},
        {u"8÷4×3"_s, Points, 7, 6},
        {u"50%"_s, Percent, 80, 50},
        {u"100%/3"_s, Percent, 80, 33.33},
        {u"50%"_s, Points, 640, 320},
        {u"100+10%"_s, Points, 640, 164},
        {u"45°"_s, Degrees, 0, 45},
        {u"45 DEG"_s, Degrees, 0, 45},
        {u"12px"_s, Points, 0, 12},
        {u".5"_s, Points, 0, 0.5},
        {u"1.005"_s, Points, 0, 1},
        {u"1.239"_s, Points, 0, 1.24},
        {u"-0.001"_s, Points, 0, 0},
        {u"0"_s, Points, 5, 0},
    };
    for (const Case& c : cases) {
        const TypedNumber typed = typedNumber(c.text, c.unit, c.present);
        ASSERT_TRUE(typed.number) << qPrintable(c.text) << ": " << qPrintable(typed.reason);
        EXPECT_DOUBLE_EQ(*typed.number, c.number) << qPrintable(c.text);
        EXPECT_TRUE(typed.reason.isEmpty());
    }
    EXPECT_FALSE(std::signbit(*typedNumber(u"-0.001"_s, Points, 0).number));
}

TEST(TypedNumber, SaysWhyATextIsNone) {
    struct Case {
        QString text;
        NumberUnit unit;
        std::optional<double> present;
        QString reason;
    };
    const Case cases[] = {
        {u""_s, Points, 1, u"Type a number."_s},
        {u"  "_s, Points, 1, u"Type a number."_s},
        {u"abc"_s, Points, 1, u"“abc” is not a number."_s},
        {u"12abc"_s, Points, 1, u"“12abc” is not a number."_s},
        {u"1.2.3"_s, Points, 1, u"“1.2.3” is not a number."_s},
        {u"1+"_s, Points, 1, u"“1+” is not a number."_s},
        {u"(1"_s, Points, 1, u"“(1” is not a number."_s},
        {u"1)"_s, Points, 1, u"“1)” is not a number."_s},
        {u"1 2"_s, Points, 1, u"“1 2” is not a number."_s},
        {u"inf"_s, Points, 1, u"“inf” is not a number."_s},
        {u"1/0"_s, Points, 1, u"Nothing can be divided by 0."_s},
        {u"1/(2-2)"_s, Points, 1, u"Nothing can be divided by 0."_s},
        {u"99999999"_s, Points, 1, u"This number is too large."_s},
        {u"45°"_s, Points, 1, u"This field takes points, not “°”."_s},
        {u"5pt"_s, Percent, 1, u"This field takes percent, not “pt”."_s},
        {u"50%"_s, Points, {}, u"There is no single value to take a percentage of."_s},
    };
    for (const Case& c : cases) {
        const TypedNumber typed = typedNumber(c.text, c.unit, c.present);
        EXPECT_FALSE(typed.number) << qPrintable(c.text);
        EXPECT_EQ(typed.reason, c.reason);
    }
    const QString deep = QString(100, u'(') + u'1' + QString(100, u')');
    EXPECT_FALSE(typedNumber(deep, Points, 1).number);
    EXPECT_FALSE(typedNumber(QString(200, u'-'), Points, 1).number);
}

TEST(TypedNumber, IsShownWithoutUselessDecimals) {
    const std::pair<double, const char*> cases[] = {{0, "0"},      {-12.5, "-12.5"}, {100, "100"},
                                                    {20.0, "20"},  {1.005, "1"},     {-0.001, "0"},
                                                    {0.07, "0.07"}};
    for (const auto& [number, text] : cases) {
        EXPECT_EQ(typedNumberText(number).toStdString(), text);
    }
}

}  // namespace
}  // namespace tweenery::test
