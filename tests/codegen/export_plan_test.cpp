#include "codegen/export_plan.h"

#include <gtest/gtest.h>

#include <QScopeGuard>

#include "base/errors.h"
#include "codegen/scene.h"
#include "model/preferences/app_preferences.h"

using namespace Qt::StringLiterals;

namespace tweenery::test {
namespace {

TEST(ExportPlan, NamesTheClassAfterTheProject) {
    struct Case {
        QString project;
        QString className;
        bool isPuppet = false;
    };
    const Case cases[] = {
        {u"My Scene"_s, u"MySceneView"_s}, {u"_LFT_Hero"_s, u"HeroView"_s, true},
        {u"_LFT_"_s, u"VarView"_s, true},  {QString(), u"VarView"_s},
        {u"a_LFT_b"_s, u"ALFTBView"_s},    {u"2 up"_s, u"2UpView"_s},
        {u"übung"_s, u"ÜbungView"_s},
    };
    for (const Case& c : cases) {
        const ExportPlan plan = Scene(c.project).plan();
        EXPECT_EQ(plan.generatedClassName, c.className);
        EXPECT_EQ(plan.isLFTPuppetView, c.isPuppet) << qPrintable(c.project);
    }
}

TEST(ExportPlan, ReadsTheTagsOfAnimations) {
    using enum AnimationExportType;
    struct Case {
        QString name;
        AnimationExportType type;
        std::string stem;
        double number = 0;
    };
    const Case cases[] = {
        {u"sliced_10"_s, standardAnimation, "Sliced10"},
        {u"walk_speed_abc"_s, standardAnimation, "WalkSpeedAbc"},
        {u"walk_speed_0"_s, standardAnimation, "WalkSpeed0"},
        {u"walk_sliced_0"_s, standardAnimation, "WalkSliced0"},
        {u"walk_pngs_-3"_s, standardAnimation, "WalkPngs3"},
        {u"walk_Sliced_24"_s, standardAnimation, "WalkSliced24"},
        {u"walk_sliced_24_extra"_s, standardAnimation, "WalkSliced24Extra"},
        {u"a_b_sliced_24"_s, frameSlicedAnimation, "AB", 24},
        {u"walk_sliced_24px"_s, frameSlicedAnimation, "Walk", 24},
        {u"fast_speed_150"_s, standardAnimation, "Fast", 1.5},
        {u"_speed_50"_s, standardAnimation, "Var", 0.5},
        {u"walk_pngs_33"_s, pngGeneratorAnimation, "Walk", 33},
        {u"walk_speed_150_sliced_8"_s, frameSlicedAnimation, "WalkSpeed150", 8},
    };
    for (const Case& c : cases) {
        Scene scene;
        scene.addAnimation(c.name);
        const ExportPlan plan = scene.plan();
        ASSERT_EQ(plan.standardAnimationExportBundles.size() +
                      plan.frameSlicedAnimationExportBundles.size() +
                      plan.pngGeneratorAnimationExportBundles.size(),
                  1U);
        const auto& list = c.type == frameSlicedAnimation ? plan.frameSlicedAnimationExportBundles
                           : c.type == pngGeneratorAnimation
                               ? plan.pngGeneratorAnimationExportBundles
                               : plan.standardAnimationExportBundles;
        ASSERT_EQ(list.size(), 1U) << qPrintable(c.name);
        const PCAnimationExportBundle& bundle = list.front();
        EXPECT_EQ(bundle.type, c.type) << qPrintable(c.name);
        EXPECT_EQ(bundle.baseMethodName, c.stem) << qPrintable(c.name);
        EXPECT_EQ(static_cast<double>(bundle.timeScalar + bundle.generatePNGsDeltaTimeInMS) +
                      bundle.numberOfFrameSlices,
                  c.number)
            << qPrintable(c.name);
    }
}

TEST(ExportPlan, TellsStemsApart) {
    struct Case {
        QStringList names;  // in the project's order, which is that of the names
        QStringList stems;  // standard ones first, then frame-sliced ones
    };
    const Case cases[] = {
        {{u"walk cycle"_s, u"walk-cycle"_s}, {u"WalkCycle"_s, u"WalkCycle2"_s}},
        {{u"_ignore_draft"_s, u"ignore draft"_s}, {u"IgnoreDraft2"_s}},
        {{u"walk"_s, u"walk_speed_150"_s}, {u"Walk"_s, u"Walk2"_s}},
        {{u"walk_speed_150"_s, u"walk_speed_50"_s}, {u"Walk"_s, u"Walk2"_s}},
        // The second "walk" takes the entry of the first, whose stem is free again.
        {{u"walk"_s, u"walk"_s, u"walk_speed_200"_s}, {u"Walk2"_s, u"Walk2"_s, u"Walk"_s}},
        {{u"a_speed_9"_s, u"aSpeed9_speed_8"_s}, {u"A"_s, u"ASpeed9"_s}},
        {{u"walk_sliced_10"_s, u"walk_sliced_20"_s}, {u"Walk"_s, u"Walk2"_s}},
        {{u"walk"_s, u"walk_sliced_10"_s, u"walk_sliced_20"_s},
         {u"Walk"_s, u"Walk2"_s, u"Walk22"_s}},
        {{u"walk_pngs_9"_s, u"walk_sliced_10"_s}, {u"Walk"_s}},
    };
    for (const Case& c : cases) {
        Scene scene;
        QStringList stems;
        for (const QString& name : c.names) {
            scene.addAnimation(name);
        }
        const ExportPlan plan = scene.plan();
        for (const auto& bundle : plan.standardAnimationExportBundles) {
            stems << QString::fromStdString(bundle.baseMethodName);
        }
        for (const auto& bundle : plan.frameSlicedAnimationExportBundles) {
            stems << QString::fromStdString(bundle.baseMethodName);
        }
        EXPECT_EQ(stems, c.stems) << qPrintable(c.names.join(u' '));
    }
}

TEST(ExportPlan, DecidesWhatElementsBecome) {
    using enum PCCodeGeneratorType;
    Scene scene;
    const auto menu = scene.add(u"menu_button"_s);
    scene.add(u"label"_s, menu);
    const auto ghost = scene.add(u"ghost_layer"_s, menu);
    scene.add(u"close_button"_s, scene.add(u"body<recordable>"_s, ghost));
    scene.add(u"shot<recordable>"_s);
    scene.add(u"_layer"_s);
    scene.add(u"Canvas!"_s);
    struct Row {
        QString name;
        std::string variable;
        PCCodeGeneratorType type;
    };
    const auto expect = [&](bool mac, const std::vector<Row>& rows) {
        const ExportPlan plan = scene.plan({.mac = mac});
        ASSERT_EQ(plan.elements.size(), rows.size() + 1);
        for (size_t i = 0; i < rows.size(); ++i) {
            const PlannedElement& planned = plan.elements[i + 1];
            EXPECT_EQ(planned.name, rows[i].name);
            EXPECT_EQ(planned.variable, rows[i].variable);
            EXPECT_EQ(planned.type, rows[i].type) << qPrintable(planned.name);
        }
        EXPECT_TRUE(plan.hasAtLeastOneView);
        EXPECT_TRUE(plan.hasAtLeastOneLayer);
    };
    expect(false, {{u"menu"_s, "menu", Button},
                   {u"label"_s, "label", View},
                   {u"ghost"_s, "ghost", Layer},
                   {u"body<recordable>"_s, "bodyRecordable", Layer},
                   {u"close_button"_s, "closeButton", Layer},
                   {u"shot"_s, "shot", RecordableView},
                   {QString(), "var", Layer},
                   {u"Canvas!"_s, "canvas2", View}});
    expect(true, {{u"menu_button"_s, "menuButton", Layer},
                  {u"label"_s, "label", Layer},
                  {u"ghost_layer"_s, "ghostLayer", Layer},
                  {u"body<recordable>"_s, "bodyRecordable", Layer},
                  {u"close_button"_s, "closeButton", Layer},
                  {u"shot<recordable>"_s, "shotRecordable", Layer},
                  {u"_layer"_s, "layer", Layer},
                  {u"Canvas!"_s, "canvas2", Layer}});
    EXPECT_FALSE(Scene().plan().hasAtLeastOneLayer);
}

TEST(ExportPlan, MakesFiniteTimelinesAsLongAsTheAnimation) {
    Scene scene;
    const auto a = scene.add(u"a"_s);
    const auto b = scene.add(u"b"_s);
    const auto animation = scene.addAnimation(u"move"_s);
    scene.store(animation, b, PCPropertyTypeTranslationX, {{2000, 5.0F}});
    scene.store(animation, a, PCPropertyTypeTranslationX, {{0, 1.0F}, {500, 7.0F}});
    scene.store(animation, a, PCPropertyTypeOpacity, {{700, 0.5F}}, PCRepeatBehaviorForever);
    scene.store(animation, a, PCPropertyTypeChildrenZPositions, {{300, QStringList()}});
    scene.store(animation, u"NO-SUCH-ELEMENT"_s, PCPropertyTypeOpacity, {{9000, 0.5F}});
    const auto finite = scene.addAnimation(u"wait"_s);
    const ExportPlan plan = scene.plan();
    const auto& bundle = plan.standardAnimationExportBundles.front();
    EXPECT_TRUE(bundle.hasLooping);
    EXPECT_EQ(bundle.durationInMS, 2000);
    ASSERT_EQ(bundle.timelinesByElement.size(), 2U);
    const auto& record = bundle.timelinesByElement.front();
    EXPECT_EQ(record.element, a);  // tree order, not that of the files
    EXPECT_EQ(record.xPosition->durationInMS(), 2000);
    EXPECT_EQ(record.xPosition->floatValueOfKeyframeAtIndex(2), 7.0F);
    EXPECT_EQ(record.opacity->durationInMS(), 700);
    EXPECT_EQ(record.zPosition->durationInMS(), 300);
    EXPECT_EQ(plan.standardAnimationExportBundles.back().durationInMS, 0);
    EXPECT_EQ(plan.animationBaseMethodNamesUsingCompletionBlock, std::vector<std::string>{"Wait"});
    ASSERT_EQ(plan.leftOutTimelines.size(), 1U);
    EXPECT_EQ(plan.leftOutTimelines.front().elementIdentifier, u"NO-SUCH-ELEMENT"_s);
}

TEST(ExportPlan, LengthensWithAJumpWhileTweeningIsOff) {
    const auto tweenAgain = qScopeGuard([] { PCAppPreferences::setTweenOn(true); });
    for (const bool tweenOn : {true, false}) {
        PCAppPreferences::setTweenOn(tweenOn);
        Scene scene;
        const auto a = scene.add(u"a"_s);
        const auto animation = scene.addAnimation(u"move"_s);
        scene.store(animation, a, PCPropertyTypeTranslationX, {{500, 7.0F}});
        scene.store(animation, a, PCPropertyTypeTranslationY, {{2000, 7.0F}});
        const ExportPlan plan = scene.plan();
        const auto& bundle = plan.standardAnimationExportBundles.front();
        const auto& lengthened = *bundle.timelinesByElement.front().xPosition;
        ASSERT_EQ(lengthened.durationInMS(), 2000);
        EXPECT_EQ(lengthened.keyframeIsInstant(1), !tweenOn);
        EXPECT_FALSE(lengthened.keyframeIsInstant(0));
    }
}

TEST(ExportPlan, TakesLegacyTimelinesByTheirFilesName) {
    Scene scene;
    const auto a = scene.add(u"a"_s);
    const auto animation = scene.addAnimation(u"old"_s);
    scene.store(animation, a, PCPropertyTypeScale, {{5000, QPointF(2, 3)}}, PCRepeatBehaviorForever,
                u"xScale.data"_s);
    scene.store(animation, a, PCPropertyTypeOpacity, {{400, 0.5F}});
    const ExportPlan plan = scene.plan();
    const auto& bundle = plan.standardAnimationExportBundles.front();
    EXPECT_EQ(bundle.durationInMS, 5000);
    EXPECT_TRUE(bundle.hasLooping);
    const auto& record = bundle.timelinesByElement.front();
    EXPECT_EQ(record.allNonNilTimelines().size(), 2U);
    EXPECT_EQ(record.xScale->floatValueAtTimeInMS(5000), 2) << "of the point its x";
    ASSERT_EQ(plan.olderTimelines.size(), 1U);
    EXPECT_EQ(plan.olderTimelines.front().element, a);
    EXPECT_EQ(plan.olderTimelines.front().propertyType, PCPropertyTypeScaleX);
}

TEST(ExportPlan, NamesTheEntryThatCannotBeRead) {
    Scene scene;
    const auto a = scene.add(u"a"_s);
    const auto animation = scene.addAnimation(u"old"_s);
    animation->fileWrapper()
        ->pc_ensureSubfileWrapperDirectoryExistsWithName(a->identifier().toString())
        ->pc_replaceSubFileWrapperNamed(u"opacity.data"_s, "noise");
    try {
        scene.plan();
        FAIL() << "noise was read";
    } catch (const InputError& error) {
        EXPECT_EQ(error.entry(), u"animations/"_s + animation->identifier() + u'/' +
                                     a->identifier().toString() + u"/opacity.data"_s);
    }
}

TEST(PNGTimes, WalkFromZeroToTheDuration) {
    const std::tuple<int32_t, float, std::vector<int32_t>> cases[] = {
        {100, 33, {0, 33, 66, 99}},
        {99, 33, {0, 33, 66, 99}},
        {98, 33, {0, 33, 66}},
        {0, 5, {0}},
    };
    for (const auto& [duration, delta, expected] : cases) {
        PCAnimationExportBundle bundle;
        bundle.durationInMS = duration;
        bundle.generatePNGsDeltaTimeInMS = delta;
        std::vector<int32_t> times;
        forEachPNGTime(bundle, [&](int32_t time) { times.push_back(time); });
        EXPECT_EQ(times, expected);
    }
    PCAnimationExportBundle endless;  // where 32-bit steps stand still
    endless.durationInMS = INT32_MAX;
    endless.generatePNGsDeltaTimeInMS = 1;
    int32_t last = 0;
    forEachPNGTime(endless, [&](int32_t time) { last = time; });
    EXPECT_EQ(last, 1 << 24);
}

}  // namespace
}  // namespace tweenery::test
