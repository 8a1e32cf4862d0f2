// Animation code of small scenes: keyframe lists, durations, completion, stacking, frame slices.

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
using testing::Not;

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

TEST(StandardAnimationCode, PrintsAbsoluteValues) {
    Scene scene;
    const auto hero = scene.add(u"hero"_s);
    hero->setOpacity(0.5);
    hero->setScale({2, 0});
    hero->setZRotation(1);
    hero->setImageName(u"a.b.png"_s);
    const auto animation = scene.addAnimation(u"walk"_s);
    scene.store(animation, hero, PCPropertyTypeOpacity, {{0, 4.0F}, {9, 0.5F}});
    scene.store(animation, hero, PCPropertyTypeScaleX, {{0, 1.5F}, {9, 1.0F}});
    scene.store(animation, hero, PCPropertyTypeScaleY, {{9, 40.0F}});
    scene.store(animation, hero, PCPropertyTypeZRotation, {{9, -3.0F}});
    scene.store(animation, hero, PCPropertyTypeImageContents, {{9, u"c d.jpg"_s, 0, true}});
    const std::string code = scene.source(u".m"_s);
    EXPECT_EQ(listOf(code, "heroOpacityAnimation.values"), "2.000, 0.250");
    EXPECT_EQ(listOf(code, "heroScaleXAnimation.values"), "3.000, 2.000");
    EXPECT_EQ(listOf(code, "heroScaleYAnimation.values"), "0.000, 2.000");
    EXPECT_EQ(listOf(code, "heroRotationAnimation.values"), "1.000, -2.000");
    EXPECT_EQ(
        listOf(code, "heroImageContentsAnimation.values"),
        "(id)[UIImage imageNamed:@\"a.b\"].CGImage, (id)[UIImage imageNamed:@\"a.b\"].CGImage, "
        "(id)[UIImage imageNamed:@\"c d\"].CGImage");
    // The order of an element's animations is fixed.
    size_t last = 0;
    for (const char* qualifier : {"Rotation", "Opacity", "ImageContents", "ScaleX", "ScaleY"}) {
        const size_t place = code.find("*hero" + std::string(qualifier) + "Animation");
        EXPECT_LT(last, place) << qualifier;
        last = place;
    }
}

TEST(StandardAnimationCode, ExpandsAChildrenOrder) {
    Scene scene;
    const auto a = scene.add(u"a"_s);
    const auto b = scene.add(u"b"_s);
    const auto c = scene.add(u"c"_s);
    const QString ids[] = {a->identifier().toString(), b->identifier().toString(),
                           c->identifier().toString()};
    // The second keyframe names a deleted child and lacks a new one.
    scene.store(scene.addAnimation(u"shuffle_speed_200"_s), scene.project()->canvas(),
                PCPropertyTypeChildrenZPositions,
                {{50, QStringList{ids[2], ids[1], ids[0]}, 0, true},
                 {100, QStringList{u"GONE"_s, ids[2], ids[0]}, 0, true}},
                PCRepeatBehaviorForeverAutoreverse);
    const std::string code = scene.source(u".m"_s);
    EXPECT_EQ(listOf(code, "aZPositionAnimation.values"), "0.000, 0.000, 2.000, 2.000, 2.000");
    EXPECT_EQ(listOf(code, "bZPositionAnimation.values"), "1.000, 1.000, 1.000, 1.000, 0.000");
    EXPECT_EQ(listOf(code, "cZPositionAnimation.values"), "2.000, 2.000, 0.000, 0.000, 1.000");
    EXPECT_EQ(listOf(code, "cZPositionAnimation.keyTimes"), "0.000, 0.495, 0.500, 0.995, 1.000");
    EXPECT_THAT(code, HasSubstr("\n\tfloat timeScalar = 2.000;"));
    EXPECT_THAT(code, HasSubstr("\n\tcZPositionAnimation.duration = 0.100 / timeScalar;"));
    EXPECT_THAT(code, HasSubstr("\n\tcZPositionAnimation.autoreverses = YES;"
                                "\n\tcZPositionAnimation.repeatCount = HUGE_VALF;"));
    EXPECT_THAT(code, HasSubstr("forKey:@\"shuffle_speed_200_ZPosition\"];"));
    // An animation that repeats never completes.
    EXPECT_THAT(code, Not(HasSubstr("ompletionBlock")));
    EXPECT_THAT(code, HasSubstr("- (void)removeAllAnimations"));
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

TEST(FrameSlicedAnimationCode, WritesStateFramesAndTable) {
    Scene scene(u"Hero"_s);
    const auto hero = scene.add(u"he\"ro"_s);
    hero->setPosition({10, 20});
    hero->setScale({2, 3});
    hero->setImageName(u"hero.png"_s);
    const auto still = scene.add(u"still"_s);
    still->setPosition({1, 2});
    const auto animation = scene.addAnimation(u"walk_sliced_4"_s);
    scene.store(animation, hero, PCPropertyTypeScaleX, {{0, 1.0F}, {1000, 2.0F}});
    scene.store(animation, hero, PCPropertyTypeTranslationY, {{1000, 100.0F}});
    scene.store(animation, hero, PCPropertyTypeImageContents, {{0, u"other.png"_s}});
    // Stored values are compared with the value at 0: equal ratios of another setup value change.
    scene.store(animation, hero, PCPropertyTypeScaleY, {{0, 3.0F}, {1000, 3.0F}});
    scene.store(animation, still, PCPropertyTypeTranslationX, {{0, 5.0F}});
    scene.store(animation, still, PCPropertyTypeOpacity, {{0, 1.0F}});
    const std::string header = scene.source(u".h"_s);
    EXPECT_THAT(header,
                HasSubstr("#import <UIKit/UIKit.h>\n#import <AVFoundation/AVFoundation.h>"
                          "\n\ntypedef struct HeroView_Walk_Values {"
                          "\n\tfloat heRo_ScaleX;\n\tfloat heRo_ScaleY;"
                          "\n\tfloat heRo_TranslationY;\n} HeroView_Walk_Values;"
                          "\n\nextern const HeroView_Walk_Values heroView_Walk_Values[4];"));
    const std::string code = scene.source(u".m"_s);
    EXPECT_THAT(code, HasSubstr("\n- (void)applyWalkState\n{"
                                "\n\t((UIImageView *)(self.viewsByName[@\"he\\\"ro\"])).image = "
                                "[UIImage imageNamed:@\"hero.png\"];"
                                "\n\t((UIView *)self.viewsByName[@\"still\"]).alpha = 1.000;"
                                "\n\t((UIView *)self.viewsByName[@\"still\"]).center = "
                                "CGPointMake(6.000,2.000);\n}"));
    EXPECT_THAT(code,
                HasSubstr("\n\tHeroView_Walk_Values frameValues = heroView_Walk_Values[frame];"
                          "\n\t((UIView *)self.viewsByName[@\"he\\\"ro\"]).transform = "
                          "CGAffineTransformMakeScale(frameValues.heRo_ScaleX, "
                          "frameValues.heRo_ScaleY);"
                          "\n\t((UIView *)self.viewsByName[@\"he\\\"ro\"]).center = "
                          "CGPointMake(10.000,frameValues.heRo_TranslationY);\n}"));
    EXPECT_THAT(code, HasSubstr("\n\n@end\n\nconst HeroView_Walk_Values heroView_Walk_Values[4] = {"
                                "\n\t{2.000, 9.000, 20.000},\n\t{2.500, 9.000, 45.000},"
                                "\n\t{3.000, 9.000, 70.000},\n\t{3.500, 9.000, 95.000}\n};"));
    EXPECT_THAT(scene.source(u".swift"_s, {.language = TargetLanguage::Swift}),
                Not(HasSubstr("Walk")));
}

TEST(FrameSlicedAnimationCode, MeetsRotationAndScaleInOneStatement) {
    Scene scene;
    const auto hero = scene.add(u"hero"_s);
    const auto animation = scene.addAnimation(u"spin_sliced_2"_s);
    scene.store(animation, hero, PCPropertyTypeZRotation, {{500, 1.0F}});
    scene.store(animation, hero, PCPropertyTypeScaleY, {{500, 2.0F}});
    EXPECT_THAT(scene.source(u".m"_s),
                HasSubstr("CGAffineTransformScale(CGAffineTransformMakeRotation(frameValues."
                          "hero_Rotation), 1.000, frameValues.hero_ScaleY);"));
    Scene unchanging;
    unchanging.addAnimation(u"rest_sliced_2"_s);
    EXPECT_THAT(unchanging.source(u".m"_s),
                HasSubstr("sceneView_Rest_Values[2] = {\n\t{},\n\t{}\n};"));
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
        EXPECT_FALSE(scene.source(u".swift"_s, {.language = TargetLanguage::Swift}).empty());
    }
}

}  // namespace
}  // namespace tweenery::test
