#include "codegen/language/identifiers.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tweenery::test {
namespace {

TEST(Identifiers, AreMadeOfTheLettersAndDigitsOfAName) {
    struct Case {
        QString name;
        QString identifier;
        QString imageIdentifier;
    };
    const Case cases[] = {
        {u"Body Copy"_s, u"bodyCopy"_s, u"imgBodyCopy"_s},
        {u"BODY"_s, u"bODY"_s, u"imgBODY"_s},
        {u"hero.png"_s, u"heroPng"_s, u"imgHeroPng"_s},
        {u"card back"_s, u"cardBack"_s, u"imgCardBack"_s},
        {u"walk_cycle-2"_s, u"walkCycle2"_s, u"imgWalkCycle2"_s},
        {u"2 up"_s, u"2Up"_s, u"img2Up"_s},
        {u"---"_s, u"var"_s, u"img"_s},
        {u""_s, u"var"_s, u"img"_s},
        {u"Grüße"_s, u"grüße"_s, u"imgGrüße"_s},
        {u"_ß_"_s, u"sS"_s, u"imgSS"_s},
        {u"été"_s, u"été"_s, u"imgÉté"_s},
        {u"e\u0301t\u0301"_s, u"e\u0301t\u0301"_s, u"imgE\u0301t\u0301"_s},  // marks stay
        {u"日本 語"_s, u"日本語"_s, u"img日本語"_s},
        {u"\U00010428x"_s, u"\U00010428x"_s, u"img\U00010400x"_s},  // beyond 16 bits
        {u"a🎈b"_s, u"aB"_s, u"imgAB"_s},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(codeFriendlyNameFromName(c.name), c.identifier) << qPrintable(c.name);
        EXPECT_EQ(codeFriendlyNameFromName(c.name, nullptr, true), c.imageIdentifier)
            << qPrintable(c.name);
    }
}

TEST(Identifiers, AreNumberedByTwosWhileTaken) {
    TakenNames taken;
    QStringList made;
    for (int i = 0; i < 4; ++i) {
        made << codeFriendlyNameFromName(u"Hero"_s, &taken);
        taken.insert(made.back());
    }
    EXPECT_EQ(made, QStringList({u"hero"_s, u"hero2"_s, u"hero22"_s, u"hero222"_s}));
    EXPECT_EQ(taken.firstFree(u"hero2"_s), u"hero2222"_s);

    taken.erase(u"hero22"_s);
    EXPECT_EQ(taken.firstFree(u"hero"_s), u"hero22"_s);
    EXPECT_EQ(taken.firstFree(u"hero2"_s), u"hero22"_s);
    EXPECT_EQ(taken.firstFree(u"hero222"_s), u"hero2222"_s);
}

TEST(Identifiers, LeadingIntegersAreReadLikeAScannerDoes) {
    const std::pair<QString, int32_t> cases[] = {
        {u"24"_s, 24},
        {u"24px"_s, 24},
        {u"abc"_s, 0},
        {u""_s, 0},
        {u" 7"_s, 7},
        {u"-3"_s, -3},
        {u"99999999999"_s, INT32_MAX},
        {u"1.9"_s, 1},
    };
    for (const auto& [text, value] : cases) {
        EXPECT_EQ(leadingInteger(text), value) << qPrintable(text);
    }
}

TEST(Identifiers, FaultsAreFoundByLanguage) {
    using enum IdentifierFault;
    struct Case {
        QString identifier;
        IdentifierFault objectiveC;
        IdentifierFault swift;
    };
    const Case cases[] = {
        {u"hero"_s, None, None},
        {u"grüße"_s, None, None},
        {u"default"_s, ReservedWord, ReservedWord},
        {u"func"_s, None, ReservedWord},
        {u"int"_s, ReservedWord, None},
        {u"bundle"_s, ReservedWord, ReservedWord},
        {u"2Up"_s, LeadingDigit, LeadingDigit},
        {u"errno"_s, ReservedWord, None},
        {u"a½"_s, None, None},
        {u"②"_s, None, None},
        {u"١٢٣"_s, None, None},
        {u"\u20DDa"_s, UnusableCharacter, UnusableCharacter},
        {u"a\u20DD"_s, None, None},
        {u"a\u2E2F"_s, UnusableCharacter, UnusableCharacter},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(faultOfIdentifier(TargetLanguage::ObjectiveC, c.identifier), c.objectiveC)
            << qPrintable(c.identifier);
        EXPECT_EQ(faultOfIdentifier(TargetLanguage::FirstSwift, c.identifier), c.swift)
            << qPrintable(c.identifier);
    }
}

TEST(Identifiers, OfCurrentSwiftAreMadeUsable) {
    const std::pair<QString, std::string> cases[] = {
        {u"hero"_s, "hero"},        {u"default"_s, "`default`"}, {u"await"_s, "`await`"},
        {u"2Up"_s, "_2Up"},         {u"self"_s, "_self"},        {u"viewsByName"_s, "viewsByName"},
        {u"\u0301a"_s, "_\u0301a"}, {u"bundle"_s, "bundle"},     {u"²"_s, "²"},
    };
    for (const auto& [variable, text] : cases) {
        EXPECT_EQ(escapedIdentifier(TargetLanguage::CurrentSwift,
                                    usableSwiftVariable(variable).toStdString()),
                  text);
    }
    EXPECT_EQ(escapedIdentifier(TargetLanguage::FirstSwift, "default"), "default");
}

}  // namespace
}  // namespace tweenery::test
