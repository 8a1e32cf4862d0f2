// Animation code of small scenes: what keyframe lists and frame tables hold at their edges. The
// text around them is that of the goldens.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QRegularExpression>

#include "base/errors.h"
#include "codegen/export_error.h"
#include "codegen/scene.h"
#include "codegen/standard_animation_code.h"

using namespace Qt::StringLiterals;

namespace tweenery::test {
namespace {

using testing::HasSubstr;

/// What stands in the brackets of `statement` in `code`, boxes taken off.
std::string listOf(const std::string& code, const std::string& statement) {
    const QString text = QString::fromStdString(code);
    const QRegularExpression pattern(QRegularExpression::escape(QString::fromStdString(statement)) +
                                     u" = @\\[(.*)\\];"_s);
    static const QRegularExpression box(u"@\\(([^)]*)\\)"_s);
    const auto match = pattern.match(text);
    EXPECT_TRUE(match.hasMatch()) << statement << " in " << code;
    return match.captured(1).replace(box, u"\\1"_s).toStdString();
}

TEST(StandardAnimationCode, ListsExactlyTheKeyframes) {
    struct Case {
        const char* what;
        std::vector<Key> keys;
        std::string values, times, timing;
    };
    const Case cases[] = {
        {"a value for time 0 is added",
         {{500, 10.0F}, {1000, 20.0F, 2}},
         "0.000, 10.000, 20.000",
         "0.000, 0.500, 1.000",
         "linearTiming, easeOutTiming"},
        {"an instant keyframe holds the old value until half a millisecond before",
         {{0, 1.0F}, {1000, 2.0F, 4, true}, {2000, 3.0F, 6}},
         "1.000, 1.000, 2.000, 3.000",
         "0.000, 0.500, 0.500, 1.000",
         "anticipateTiming, anticipateTiming, anticOverTiming"},
        {"half a millisecond shows in a short timeline",
         {{0, 1.0F}, {10, 2.0F, 0, true}},
         "1.000, 1.000, 2.000",
         "0.000, 0.950, 1.000",
         "linearTiming, linearTiming"},
        {"an instant first keyframe holds the setup value",
         {{100, 7.0F, 1, true}},
         "0.000, 0.000, 7.000",
         "0.000, 0.995, 1.000",
         "easeInTiming, easeInTiming"},
        {"an instant first keyframe at time 0 adds nothing",
         {{0, 7.0F, 1, true}, {100, 7.0F, 5}},
         "7.000, 7.000",
         "0.000, 1.000",
         "overshootTiming"},
        {"a single keyframe at time 0", {{0, 7.0F, 3}}, "7.000", "0.000", ""},
        {"no keyframes", {}, "", "", ""},
    };
    for (const Case& c : cases) {
        Scene scene;
        const auto hero = scene.add(u"hero"_s);
        scene.store(scene.addAnimation(u"walk"_s), hero, PCPropertyTypeTranslationX, c.keys);
        const std::string code = scene.source(u".m"_s);
        EXPECT_EQ(listOf(code, "heroTranslationXAnimation.values"), c.values) << c.what;
        EXPECT_EQ(listOf(code, "heroTranslationXAnimation.keyTimes"), c.times) << c.what;
        EXPECT_EQ(listOf(code, "heroTranslationXAnimation.timingFunctions"), c.timing) << c.what;
        size_t defined = 0;
        for (const char* name :
             {"linear", "easeIn", "easeOut", "easeInOut", "anticipate", "overshoot", "anticOver"}) {
            const std::string variable = std::string(name) + "Timing";
            const bool isUsed =
                (", " + c.timing + ",").find(' ' + variable + ',') != std::string::npos;
            EXPECT_EQ(code.find("*" + variable + " =") != std::string::npos, isUsed) << c.what;
            defined += isUsed ? 1 : 0;
        }
        EXPECT_EQ(defined == 0, c.timing.empty()) << c.what;
    }
}

TEST(StandardAnimationCode, PlacesChildrenAsStoredAmongDeletedOnes) {
    Scene scene;
    const auto id = [&](const QString& name) { return scene.add(name)->identifier().toString(); };
    const QString a = id(u"a"_s);
    const QString b = id(u"b"_s);
    const QString c = id(u"c"_s);
    scene.store(scene.addAnimation(u"shuffle"_s), scene.project()->canvas(),
                PCPropertyTypeChildrenZPositions,
                {{50, QStringList{u"GONE"_s, c, a, b}, 0, true}, {100, QStringList{c, a}}});
    const std::string code = scene.source(u".m"_s);
    EXPECT_EQ(listOf(code, "aZPositionAnimation.values"), "0.000, 0.000, 2.000, 1.000");
    EXPECT_EQ(listOf(code, "cZPositionAnimation.values"), "2.000, 2.000, 1.000, 0.000");
    // The last order lacks it.
    EXPECT_EQ(listOf(code, "bZPositionAnimation.values"), "1.000, 1.000, 3.000, 1.000");
}

TEST(StandardAnimationCode, RefusesCombinedProperties) {
    for (const PCPropertyType type : {PCPropertyTypeChildrenZPositions, PCPropertyTypeScale,
                                      PCPropertyTypeTranslation, PCPropertyTypeKeyAll}) {
        EXPECT_THROW(animationQualifierForPropertyType(type), AssertionFailure);
        EXPECT_THROW(animationKeyPathForPropertyType(type), AssertionFailure);
    }
    EXPECT_EQ(animationQualifierForPropertyType(PCPropertyTypeZPosition), "ZPosition");
    EXPECT_EQ(animationKeyPathForPropertyType(PCPropertyTypeZPosition), "zPosition");
}

// From the setup value to half of it, by a stored ratio that is the setup value.
TEST(FrameSlicedAnimationCode, KeepsAFadeByTheRatioOfItsOwnOpacity) {
    Scene scene;
    const auto hero = scene.add(u"hero"_s);
    hero->setOpacity(0.5);
    scene.store(scene.addAnimation(u"fade_sliced_2"_s), hero, PCPropertyTypeOpacity,
                {{1000, 0.5F}});
    EXPECT_THAT(scene.source(u".h"_s), HasSubstr("float hero_Opacity;"));
    EXPECT_THAT(scene.source(u".m"_s), HasSubstr("\n\t{0.500},\n\t{0.375}\n"));
}

TEST(FrameSlicedAnimationCode, PrintsAPositionOfNegativeZeroAsItIs) {
    Scene scene;
    const auto hero = scene.add(u"hero"_s);
    hero->setPosition({-0.0, 5});
    const auto animation = scene.addAnimation(u"fall_sliced_2"_s);
    scene.store(animation, hero, PCPropertyTypeTranslationY, {{1000, 9.0F}});
    EXPECT_THAT(scene.source(u".m"_s),
                HasSubstr("CGPointMake(-0.000,frameValues.hero_TranslationY)"));
}

TEST(FrameSlicedAnimationCode, StopsTheRunWhenNoTableCanHoldIt) {
    struct Case {
        PCPropertyType type;
        std::vector<Key> keys;
        QString name;
        const char* message;
    };
    const Case cases[] = {
        {PCPropertyTypeImageContents,
         {{100, u"b.png"_s}},
         u"walk_sliced_24"_s,
         "image contents and zPosition not yet supported in frame sliced animations"},
        {PCPropertyTypeChildrenZPositions,
         {{0, QStringList()}},
         u"walk_sliced_24"_s,
         "* keyall, childrenZPositions, Translation should NOT be used in export"},
        {PCPropertyTypeOpacity,
         {{100, 0.5F}},
         u"walk_sliced_2000000000"_s,
         "cannot have more than 1000000 frames"},
    };
    for (const Case& c : cases) {
        Scene scene;
        const auto hero = scene.add(u"hero_button"_s);
        scene.store(scene.addAnimation(c.name), hero, c.type, c.keys);
        PCProjectCodeGenerator run = scene.generator();
        try {
            run.loadFileContentsByName();
            ADD_FAILURE() << c.message;
        } catch (const ExportError& error) {
            EXPECT_THAT(error.what(), HasSubstr(c.message));
            EXPECT_THAT(error.what(), HasSubstr(c.name.toStdString()));
        }
        EXPECT_TRUE(run.fileContentsByName().empty());
        EXPECT_EQ(hero->name(), u"hero_button"_s);
        ASSERT_FALSE(run.diagnostics().empty());
        EXPECT_EQ(run.diagnostics().back().kind, ExportDiagnostic::Kind::CannotSlice);
        EXPECT_FALSE(scene.source(u".swift"_s, {.language = TargetLanguage::FirstSwift}).empty());
    }
}

}  // namespace
}  // namespace tweenery::test
