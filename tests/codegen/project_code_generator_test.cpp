#include "codegen/project_code_generator.h"

#include <gmock/gmock.h>

#include <gtest/gtest.h>
#include <QRegularExpression>

#include "base/errors.h"
#include "codegen/export_error.h"
#include "codegen/scene.h"

using namespace Qt::StringLiterals;

namespace tweenery::test {
namespace {

using testing::HasSubstr;
using testing::Not;

TEST(Hierarchy, GivesAnImageTheNameThatNoElementHasAnyMore) {
    Scene scene;
    scene.add(u"imgA"_s);
    const auto twin = scene.add(u"twin"_s);
    twin->setName(u"imgA"_s);
    twin->setImageName(u"a.png"_s);  // both are imgA2 now
    EXPECT_THAT(scene.source(u".m"_s), HasSubstr("\n\timgA2.image = imgA;"));
}

TEST(ProjectCodeGenerator, NeedsAProject) {
    PCProjectCodeGenerator generator;
    try {
        generator.loadFileContentsByName();
        FAIL();
    } catch (const AssertionFailure& failure) {
        EXPECT_EQ(failure.message(), u"project MUST be set"_s);
    }
}

TEST(ProjectCodeGenerator, DerivesFromThePuppetOnTheMobilePlatformOnly) {
    Scene scene(u"_LFT_Hero"_s);
    scene.add(u"hero"_s);
    const std::string mobile = scene.source(u".h"_s);
    EXPECT_THAT(mobile, HasSubstr("#import <UIKit/UIKit.h>\n#import \"LFTPuppetView.h\"\n\n"
                                  "IB_DESIGNABLE\n@interface HeroView : LFTPuppetView\n\n\n@end"));
    const std::string desktop = scene.source(u".h"_s, {.mac = true});
    EXPECT_THAT(desktop, HasSubstr("@interface HeroView : NSView\n"));
    EXPECT_THAT(desktop, Not(HasSubstr("LFT")));
    EXPECT_THAT(
        scene.source(u".swift"_s, {.language = TargetLanguage::Swift}),
        HasSubstr("import UIKit\n\n@IBDesignable\nclass HeroView : LFTPuppetView {\n\n\n\t// "
                  "- MARK: Life Cycle"));
}

TEST(ProjectCodeGenerator, RefusesAnEmptyProjectForTheDesktop) {
    const Scene scene;
    PCProjectCodeGenerator run = scene.generator({.mac = true});
    try {
        run.loadFileContentsByName();
        ADD_FAILURE() << "what does not compile was written";
    } catch (const ExportError& error) { EXPECT_THAT(error.what(), HasSubstr("no element")); }
    EXPECT_TRUE(run.fileContentsByName().empty());
    ASSERT_EQ(run.diagnostics().size(), 1U);
    EXPECT_EQ(run.diagnostics().front().kind, ExportDiagnostic::Kind::EmptyProject);
    EXPECT_EQ(run.diagnostics().front().severity, ExportDiagnostic::Severity::Error);
    EXPECT_FALSE(scene.source(u".m"_s).empty());
}

TEST(ProjectCodeGenerator, LeavesTheProjectAsItWas) {
    Scene scene(u"_LFT_Hero"_s);
    const auto menu = scene.add(u"menu_button"_s);
    const auto ghost = scene.add(u"ghost_layer"_s, menu);
    scene.store(scene.addAnimation(u"walk"_s), ghost, PCPropertyTypeOpacity, {{9, 0.5F}});
    scene.addAnimation(u"wait"_s);
    const PCProject::Ptr& project = scene.project();
    project->fileWrapper();
    project->canvas()->setModified(false);
    project->undoManager().removeAllActions();
    const QString before = project->fileWrapper()->debugDescriptionWithIndent({});
    const QByteArray canvas = project->packageRoot()->child(u"canvas"_s)->contents();
    EXPECT_FALSE(scene.source(u".m"_s).empty());
    EXPECT_EQ(menu->name(), u"menu_button"_s);
    EXPECT_EQ(ghost->name(), u"ghost_layer"_s);
    EXPECT_EQ(project->projectName(), u"_LFT_Hero"_s);
    EXPECT_FALSE(project->canvas()->modified());
    EXPECT_FALSE(project->undoManager().canUndo());
    EXPECT_EQ(project->fileWrapper()->debugDescriptionWithIndent({}), before);
    EXPECT_EQ(project->packageRoot()->child(u"canvas"_s)->contents(), canvas);
}

TEST(ProjectCodeGenerator, PassesTheKeySuffixOn) {
    Scene scene;
    const auto hero = scene.add(u"hero"_s);
    scene.store(scene.addAnimation(u"walk"_s), hero, PCPropertyTypeOpacity, {{9, 0.5F}});
    EXPECT_THAT(
        scene.source(u".m"_s, {.addAnimationSuffix = true}),
        HasSubstr("forKey:[@\"walk_Opacity\" stringByAppendingString:animationKeySuffix]];"));
    EXPECT_THAT(scene.source(u".m"_s), HasSubstr("forKey:@\"walk_Opacity\"];"));
}

using Kind = ExportDiagnostic::Kind;

/// Every diagnostic as "kind name".
std::vector<std::string> listed(const std::vector<ExportDiagnostic>& diagnostics) {
    std::vector<std::string> lines;
    for (const ExportDiagnostic& diagnostic : diagnostics) {
        lines.push_back((nameOf(diagnostic.kind) + u' ' + diagnostic.name).toStdString());
        EXPECT_TRUE(diagnostic.sentence.endsWith(u'.')) << qPrintable(diagnostic.sentence);
        EXPECT_EQ(diagnostic.identifier.isEmpty(),
                  diagnostic.subject == ExportDiagnostic::Subject::Project);
    }
    return lines;
}

TEST(ExportDiagnostics, TellWhatWillNotCompileOrSurprises) {
    struct Case {
        std::function<void(Scene&)> make;
        RunTarget target;
        std::vector<std::string> expected;
    };
    const RunTarget swift{.language = TargetLanguage::Swift};
    const RunTarget mac{.mac = true};
    const auto animate = [](Scene& scene, const QString& name, PCPropertyType type,
                            const Key& key) {
        const auto element = scene.project()->canvas()->children().front();
        scene.store(scene.addAnimation(name), element, type, {key});
    };
    const Case cases[] = {
        {[](Scene&) {}, {}, {"empty-project Scene"}},
        {[](Scene& s) { s.add(u"fine"_s); }, {}, {}},
        {[](Scene& s) {
             s.add(u"in it"_s), s.add(u"func"_s), s.add(u"default"_s), s.add(u"bundle"_s);
         },
         {},
         {"reserved-word default", "reserved-word bundle"}},
        {[](Scene& s) { s.add(u"func"_s); }, swift, {"reserved-word func"}},
        {[](Scene& s) { s.add(u"2 up"_s), s.add(u"a²"_s); }, {}, {"leading-digit 2 up"}},
        {[](Scene& s) {
             for (const QString& name : {u"a²"_s, u"½"_s, u"①"_s, u"١٢٣"_s, u"ⅷ"_s}) {
                 s.add(name);
             }
         },
         {},
         {}},
        {[](Scene& s) {
             s.add(u"a\u2E2F"_s), s.add(u"\u0301b"_s);
             s.addAnimation(u"\u2E2Fc"_s);
         },
         {},
         {"unusable-character a\u2E2F", "unusable-character \u0301b",
          "unusable-character \u2E2Fc"}},
        {[](Scene& s) { s.add(u"errno"_s), s.add(u"assert"_s), s.add(u"stdin"_s); },
         {},
         {"reserved-word errno", "reserved-word assert", "reserved-word stdin"}},
        {[](Scene& s) { s.add(u"errno"_s), s.add(u"assert"_s); }, swift, {}},
        {[](Scene& s) { s.add(u"play"_s), s.add(u"play_button"_s), s.add(u"__scaling__"_s); },
         {},
         {"colliding-names play_button", "colliding-names __scaling__"}},
        {[](Scene& s) { s.add(u"play"_s), s.add(u"play_button"_s); }, mac, {}},
        {[](Scene& s) { s.project()->setProjectName(u"UI"_s), s.add(u"a"_s); },
         {},
         {"colliding-names UI"}},
        {[](Scene& s) { s.project()->setProjectName(u"UI scroll"_s), s.add(u"a"_s); },
         {},
         {"colliding-names UI scroll"}},
        {[](Scene& s) { s.project()->setProjectName(u"NSOutline"_s), s.add(u"a"_s); },
         mac,
         {"colliding-names NSOutline"}},
        {[](Scene& s) { s.project()->setProjectName(u"_LFT_Hero"_s), s.add(u"a"_s); }, {}, {}},
        {[](Scene& s) { s.project()->setProjectName(u"_LFT_Hero"_s), s.add(u"a"_s); },
         mac,
         {"puppet-is-mobile-code _LFT_Hero"}},
        {[](Scene& s) { s.project()->setProjectName(u"2 up"_s), s.add(u"a"_s); },
         {},
         {"leading-digit 2 up"}},
        {[](Scene& s) {
             s.add(u"a"_s);
             s.addAnimation(u"walk"_s), s.addAnimation(u"walk animation"_s);
         },
         {},
         {"colliding-names walk animation"}},
        {[&](Scene& s) {
             s.add(u"a"_s)->setImageName(u"lost.png"_s);
             animate(s, u"blink"_s, PCPropertyTypeImageContents, {0, u"gone.png"_s});
         },
         {},
         {"missing-image a", "missing-image blink"}},
        {[&](Scene& s) {
             s.add(u"a"_s);
             animate(s, u"walk_sliced_3"_s, PCPropertyTypeOpacity, {9, 0.5F});
         },
         swift,
         {"sliced-left-out walk_sliced_3"}},
        {[&](Scene& s) {
             s.add(u"a"_s);
             animate(s, u"walk_sliced_3"_s, PCPropertyTypeOpacity, {9, 0.5F});
         },
         mac,
         {"sliced-is-mobile-code walk_sliced_3"}},
        {[&](Scene& s) {
             s.add(u"a"_s);
             animate(s, u"old"_s, PCPropertyTypeOpacity, {9, 0.5F});
             const auto& animation = s.project()->animationsManager().animations().front();
             s.store(animation, s.project()->canvas()->children().front(), PCPropertyTypeScale,
                     {{9, QPointF(2, 2)}}, PCRepeatBehaviorNever, u"xScale.data"_s);
             s.store(animation, u"GONE"_s, PCPropertyTypeOpacity, {{9, 0.5F}});
         },
         {},
         {"legacy-timeline old", "deleted-element old"}},
        {[&](Scene& s) {
             s.add(u"a_layer"_s);
             animate(s, u"blink"_s, PCPropertyTypeOpacity, {9, 0.5F});
         },
         {},
         {"does-not-animate blink"}},
        {[&](Scene& s) {
             s.add(u"a<recordable>"_s);
             animate(s, u"a_pngs_5"_s, PCPropertyTypeOpacity, {9, 0.5F});
         },
         {},
         {"recordable-needs-import a<recordable>", "no-pictures-drawn a_pngs_5"}},
    };
    for (const Case& c : cases) {
        Scene scene;
        c.make(scene);
        EXPECT_EQ(listed(scene.diagnostics(c.target)), c.expected);
    }
}

TEST(ExportDiagnostics, TellWhichImagesADeviceCannotShow) {
    struct Case {
        const char* what;
        const char* element;  // its image
        bool isGroup;
        std::vector<Key> keys;
        std::vector<std::string> mobile, desktop;
    };
    const Case cases[] = {
        {"a group with an image", "a.png", true, {}, {"no-image-view a"}, {}},
        {"an image from the start", "", false, {{0, u"a.png"_s}}, {}, {}},
        {"one that comes later, from none",
         "",
         false,
         {{9, u"a.png"_s}},
         {"empty-image blink"},
         {"empty-image blink"}},
        {"none in the end",
         "a.png",
         false,
         {{9, QString()}},
         {"empty-image blink"},
         {"empty-image blink"}},
        {"a JPEG that stands still", "b.jpg", false, {}, {}, {}},
        {"a JPEG from the start",
         "b.jpg",
         false,
         {{9, u"a.png"_s}},
         {"image-not-found-on-device blink"},
         {}},
        {"a JPEG in the end",
         "a.png",
         false,
         {{9, u"b.jpg"_s}},
         {"image-not-found-on-device blink"},
         {}},
    };
    for (const Case& c : cases) {
        Scene scene;
        scene.addImage(u"a.png"_s);
        scene.addImage(u"b.jpg"_s);
        const auto element = scene.add(u"a"_s);
        element->setGroup(c.isGroup);
        element->setImageName(QString::fromLatin1(c.element));
        if (!c.keys.empty()) {
            scene.store(scene.addAnimation(u"blink"_s), element, PCPropertyTypeImageContents,
                        c.keys);
        }
        for (const auto language : {TargetLanguage::ObjectiveC, TargetLanguage::Swift}) {
            EXPECT_EQ(listed(scene.diagnostics({language})), c.mobile) << c.what;
            EXPECT_EQ(listed(scene.diagnostics({language, true})), c.desktop) << c.what;
        }
    }
}

TEST(ExportDiagnostics, TellThatAFrameSlicedImageStopsAButton) {
    Scene scene;
    scene.addImage(u"a.png"_s);
    const auto animation = scene.addAnimation(u"blink_sliced_2"_s);
    for (const char* name : {"shot", "go_button"}) {
        const auto element = scene.add(QString::fromLatin1(name));
        element->setImageName(u"a.png"_s);
        scene.store(animation, element, PCPropertyTypeImageContents, {{0, u"a.png"_s}});
    }
    const auto diagnostics = scene.diagnostics();
    EXPECT_EQ(listed(diagnostics), std::vector<std::string>{"no-image-view blink_sliced_2"});
    EXPECT_TRUE(diagnostics.front().sentence.contains(u"'go_button'"));
}

TEST(ExportDiagnostics, TellWhereADeviceShowsOtherThanThePreview) {
    struct Case {
        const char* what;
        std::vector<Key> opacity, order;
        PCRepeatBehavior repeat;
        std::vector<std::string> expected;
    };
    const QStringList none;
    const Case cases[] = {
        {"within 0 to 1", {{0, 1.0F}, {90, 0.0F}}, {}, PCRepeatBehaviorNever, {}},
        {"to 2", {{90, 2.0F}}, {}, PCRepeatBehaviorNever, {}},  // from 1, which looks the same
        {"from 0 to 2",
         {{0, 0.0F}, {90, 2.0F}},
         {},
         PCRepeatBehaviorNever,
         {"opacity-out-of-range walk"}},
        {"a jump to 2", {{0, 0.0F}, {90, 2.0F, 0, true}}, {}, PCRepeatBehaviorNever, {}},
        {"order to the end", {{90, 1.0F}}, {{90, none}}, PCRepeatBehaviorNever, {}},
        {"order that ends before",
         {{90, 1.0F}},
         {{80, none}},
         PCRepeatBehaviorNever,
         {"order-ends-early walk"}},
        {"order that repeats", {{90, 1.0F}}, {{80, none}}, PCRepeatBehaviorForever, {}},
    };
    for (const Case& c : cases) {
        Scene scene;
        const auto group = scene.add(u"group"_s);
        group->setGroup(true);
        const auto animation = scene.addAnimation(u"walk"_s);
        scene.store(animation, group, PCPropertyTypeOpacity, c.opacity);
        if (!c.order.empty()) {
            scene.store(animation, group, PCPropertyTypeChildrenZPositions, c.order, c.repeat);
        }
        EXPECT_EQ(listed(scene.diagnostics()), c.expected) << c.what;
    }
}

TEST(ExportDiagnostics, TellWhereKeyTimesAreTooCoarse) {
    struct Case {
        std::vector<Key> keys;  // of an x translation
        std::string expected;   // "ms, percent, step" of the note; empty: none
    };
    const Case cases[] = {
        {{{0, 0.0F}, {500, 1.0F}, {1000, 0.0F}}, ""},
        {{{0, 0.0F}, {433, 1.0F, 0, true}, {1000, 0.0F}}, ""},
        // 100 of 3,600 is 0.02777…, printed as 0.028, 0.8 ms late, of spans of 100 and 20 ms.
        {{{0, 0.0F}, {100, 1.0F}, {3600, 0.0F}}, ""},
        {{{0, 0.0F}, {80, 0.0F}, {100, 1.0F}, {3600, 0.0F}}, "0.80, 4, 3.6"},
        {{{0, 1.0F}, {80, 1.0F}, {100, 1.0F}, {3600, 0.0F}}, ""},  // nothing changes there
        // The slow beginning of an easing forgives what its steep end does not.
        {{{0, 0.0F}, {80, 0.0F}, {100, 1.0F, 1}, {3600, 0.0F}}, "0.80, 6, 3.6"},
        // 700 of 3,600 is 0.19444…, printed as 0.194: the jump comes 1.6 ms early.
        {{{0, 0.0F}, {700, 1.0F, 0, true}, {3600, 0.0F}}, "1.60, 100, 3.6"},
        {{{0, 1.0F}, {700, 1.0F, 0, true}, {3600, 0.0F}}, ""},
        // Two keyframes fall on one printed time.
        {{{0, 0.0F}, {4000, 0.0F}, {4001, 1.0F}, {10000, 0.0F}}, "1.00, 100, 10"},
        // It starts from the setup value, which the first keyframe has, or has not.
        {{{100, 1.0F, 0, true}, {3600, 0.0F}}, "1.30, 100, 3.6"},
        {{{100, 0.0F, 0, true}, {3600, 0.0F}}, ""},
        {{{0, 3.0F}}, ""},
    };
    for (const Case& c : cases) {
        Scene scene;
        const auto hero = scene.add(u"hero"_s);
        scene.store(scene.addAnimation(u"walk"_s), hero, PCPropertyTypeTranslationX, c.keys);
        std::string told;
        for (const ExportDiagnostic& diagnostic : scene.diagnostics()) {
            EXPECT_EQ(diagnostic.kind, Kind::CoarseKeyTimes);
            EXPECT_EQ(diagnostic.severity, ExportDiagnostic::Severity::Note);
            EXPECT_EQ(diagnostic.name, u"walk"_s);
            static const QRegularExpression numbers(
                u"'hero' by (\\S+) ms and costs up to (\\S+) % .* multiples of (\\S+) ms"_s);
            const auto match = numbers.match(diagnostic.sentence);
            EXPECT_TRUE(match.hasMatch()) << qPrintable(diagnostic.sentence);
            told += match.capturedTexts().mid(1).join(u", "_s).toStdString();
        }
        EXPECT_EQ(told, c.expected) << c.keys.size() << " keyframes to " << c.keys.back().timeInMS;
    }
}

}  // namespace
}  // namespace tweenery::test
