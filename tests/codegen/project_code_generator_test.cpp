#include "codegen/project_code_generator.h"

#include <gmock/gmock.h>

#include <gtest/gtest.h>
#include <QRegularExpression>

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
        scene.source(u".swift"_s, {.language = TargetLanguage::FirstSwift}),
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
    const std::string objc = scene.source(u".m"_s, {.addAnimationSuffix = true});
    for (const char* part :
         {":NO andAnimationKeySuffix:@\"\" completion:NULL];\n}",
          " andAnimationKeySuffix:(NSString *)animationKeySuffix completion:(void (^)(BOOL "
          "finished))completionBlock\n{",
          "forKey:[@\"walk_Opacity\" stringByAppendingString:animationKeySuffix]];"}) {
        EXPECT_THAT(objc, HasSubstr(part));
    }
    const std::string swift = scene.source(
        u".swift"_s, {.language = TargetLanguage::FirstSwift, .addAnimationSuffix = true});
    for (const char* part :
         {"removedOnCompletion: removedOnCompletion, animationKeySuffix:\"\", nil)\n\t}",
          "removedOnCompletion: removedOnCompletion, animationKeySuffix:\"\", completion)\n\t}",
          "removedOnCompletion: Bool, animationKeySuffix: String, completion: ((Bool) -> Void)?) {",
          "forKey:\"walk_Opacity\" + animationKeySuffix)"}) {
        EXPECT_THAT(swift, HasSubstr(part));
    }
    EXPECT_THAT(scene.source(u".m"_s), HasSubstr("forKey:@\"walk_Opacity\"];"));
}

using Kind = ExportDiagnostic::Kind;

/// Every diagnostic as "kind name", separated by commas.
std::string listed(const std::vector<ExportDiagnostic>& diagnostics) {
    QStringList all;
    for (const ExportDiagnostic& diagnostic : diagnostics) {
        all << nameOf(diagnostic.kind) + u' ' + diagnostic.name;
        EXPECT_TRUE(diagnostic.sentence.endsWith(u'.')) << qPrintable(diagnostic.sentence);
        EXPECT_EQ(diagnostic.identifier.isEmpty(),
                  diagnostic.subject == ExportDiagnostic::Subject::Project);
    }
    return all.join(u", "_s).toStdString();
}

constexpr RunTarget kObjc{};
constexpr RunTarget kSwift{.language = TargetLanguage::FirstSwift};
constexpr RunTarget kMac{.mac = true};
constexpr RunTarget kCurrentSwift{.language = TargetLanguage::CurrentSwift};
constexpr RunTarget kCurrentSwiftMac{.language = TargetLanguage::CurrentSwift, .mac = true};

TEST(ExportDiagnostics, TellWhichNamesWillNotCompile) {
    struct Case {
        const char* project;
        QStringList elements, animations;
        RunTarget target;
        const char* expected;
    };
    const Case cases[] = {
        {"Scene", {}, {}, kObjc, "empty-project Scene"},
        {"Scene", {u"fine"_s}, {}, kObjc, ""},
        {"Scene", {u"in it"_s, u"func"_s, u"default"_s}, {}, kObjc, "reserved-word default"},
        {"Scene", {u"bundle"_s}, {}, kObjc, "reserved-word bundle"},
        {"Scene", {u"func"_s}, {}, kSwift, "first-swift Scene, reserved-word func"},
        {"Scene", {u"func"_s, u"self"_s, u"2 up"_s, u"\u0301b"_s}, {}, kCurrentSwift, ""},
        {"Scene", {u"a\u2E2F"_s}, {}, kCurrentSwift, "unusable-character a\u2E2F"},
        {"Scene", {u"a"_s}, {u"a_sliced_2"_s}, kCurrentSwiftMac, ""},
        {"_LFT_Hero", {u"a"_s}, {}, kCurrentSwiftMac, ""},
        {"2 up", {u"a"_s}, {}, kCurrentSwift, "leading-digit 2 up"},
        {"Scene", {u"2 up"_s, u"a²"_s}, {}, kObjc, "leading-digit 2 up"},
        {"Scene", {u"a²"_s, u"½"_s, u"①"_s, u"١٢٣"_s, u"ⅷ"_s}, {}, kObjc, ""},
        {"Scene", {u"a\u2E2F"_s}, {}, kObjc, "unusable-character a\u2E2F"},
        {"Scene", {u"\u0301b"_s}, {}, kObjc, "unusable-character \u0301b"},
        {"Scene", {u"a"_s}, {u"\u2E2Fc"_s}, kObjc, "unusable-character \u2E2Fc"},
        {"Scene", {u"errno"_s, u"stdin"_s}, {}, kObjc, "reserved-word errno, reserved-word stdin"},
        {"Scene", {u"errno"_s, u"assert"_s}, {}, kSwift, "first-swift Scene"},
        {"Scene", {u"play"_s, u"play_button"_s}, {}, kObjc, "colliding-names play_button"},
        {"Scene", {u"play"_s, u"play_button"_s}, {}, kMac, ""},
        {"Scene", {u"__scaling__"_s}, {}, kObjc, "colliding-names __scaling__"},
        {"Scene", {u"a"_s}, {u"up"_s, u"up animation"_s}, kObjc, "colliding-names up animation"},
        {"UI", {u"a"_s}, {}, kObjc, "colliding-names UI"},
        {"UI scroll", {u"a"_s}, {}, kObjc, "colliding-names UI scroll"},
        {"NSOutline", {u"a"_s}, {}, kMac, "colliding-names NSOutline"},
        {"_LFT_Hero", {u"a"_s}, {}, kObjc, ""},
        {"_LFT_Hero", {u"a"_s}, {}, kMac, "puppet-is-mobile-code _LFT_Hero"},
        {"2 up", {u"a"_s}, {}, kObjc, "leading-digit 2 up"},
    };
    for (const Case& c : cases) {
        Scene scene(QString::fromUtf8(c.project));
        for (const QString& name : c.elements) {
            scene.add(name);
        }
        for (const QString& name : c.animations) {
            scene.addAnimation(name);
        }
        EXPECT_EQ(listed(scene.diagnostics(c.target)), c.expected);
    }
}

TEST(ExportDiagnostics, TellWhatIsLeftOutOrSurprises) {
    struct Case {
        QString element, animation;
        RunTarget target;
        PCPropertyType type;
        PropertyValue value;
        const char* expected;
    };
    constexpr auto opacity = PCPropertyTypeOpacity, image = PCPropertyTypeImageContents;
    const QString sliced = u"walk_sliced_3"_s;
    const Case cases[] = {
        {u"a"_s, u"blink"_s, kObjc, image, u"gone.png"_s, "missing-image blink, empty-image blink"},
        {u"a"_s, sliced, kSwift, opacity, 0.5F, "first-swift Scene, sliced-left-out walk_sliced_3"},
        {u"a"_s, sliced, kCurrentSwiftMac, opacity, 0.5F, ""},
        {u"a"_s, u"blink"_s, kCurrentSwift, image, u"gone.jpg"_s, "missing-image blink"},
        {u"a"_s, sliced, kMac, opacity, 0.5F, "sliced-is-mobile-code walk_sliced_3"},
        {u"a_layer"_s, u"blink"_s, kObjc, opacity, 0.5F, "does-not-animate blink"},
        {u"a<recordable>"_s, u"a_pngs_5"_s, kObjc, opacity, 0.5F,
         "recordable-needs-import a<recordable>, no-pictures-drawn a_pngs_5"},
    };
    for (const Case& c : cases) {
        Scene scene;
        const auto element = scene.add(c.element);
        scene.store(scene.addAnimation(c.animation), element, c.type, {{9, c.value}});
        EXPECT_EQ(listed(scene.diagnostics(c.target)), c.expected);
    }
    Scene scene;
    const auto element = scene.add(u"a"_s);
    element->setImageName(u"lost.png"_s);
    const auto animation = scene.addAnimation(u"old"_s);
    scene.store(animation, element, PCPropertyTypeScale, {{9, QPointF(2, 2)}},
                PCRepeatBehaviorNever, u"xScale.data"_s);
    scene.store(animation, u"GONE"_s, opacity, {{9, 0.5F}});
    EXPECT_EQ(listed(scene.diagnostics()),
              "missing-image a, legacy-timeline old, deleted-element old");
}

TEST(ExportDiagnostics, TellWhichImagesADeviceCannotShow) {
    struct Case {
        const char* what;
        const char* element;  // its image
        std::vector<Key> keys;
        const char *mobile, *desktop;
    };
    const char* const empty = "empty-image blink";
    const char* const lost = "image-not-found-on-device blink";
    const Case cases[] = {
        {"a group with an image", "a.png", {}, "no-image-view a", ""},
        {"an image from the start", "", {{0, u"a.png"_s}}, "", ""},
        {"one that comes later, from none", "", {{9, u"a.png"_s}}, empty, empty},
        {"none in the end", "a.png", {{9, QString()}}, empty, empty},
        {"a JPEG that stands still", "b.jpg", {}, "", ""},
        {"a JPEG from the start", "b.jpg", {{9, u"a.png"_s}}, lost, ""},
        {"a JPEG in the end", "a.png", {{9, u"b.jpg"_s}}, lost, ""},
    };
    for (const Case& c : cases) {
        Scene scene;
        scene.addImage(u"a.png"_s);
        scene.addImage(u"b.jpg"_s);
        const auto element = scene.add(u"a"_s);
        element->setGroup(&c == cases);
        element->setImageName(QString::fromLatin1(c.element));
        if (!c.keys.empty()) {
            scene.store(scene.addAnimation(u"blink"_s), element, PCPropertyTypeImageContents,
                        c.keys);
        }
        const auto expected = [](TargetLanguage language, const std::string& told) {
            if (language == TargetLanguage::ObjectiveC) { return told; }
            return "first-swift Scene" + (told.empty() ? "" : ", " + told);
        };
        for (const auto language : {TargetLanguage::ObjectiveC, TargetLanguage::FirstSwift}) {
            EXPECT_EQ(listed(scene.diagnostics({language})), expected(language, c.mobile))
                << c.what;
            EXPECT_EQ(listed(scene.diagnostics({language, true})), expected(language, c.desktop))
                << c.what;
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
    EXPECT_EQ(listed(diagnostics), "no-image-view blink_sliced_2");
    EXPECT_TRUE(diagnostics.front().sentence.contains(u"'go_button'"));
}

TEST(ExportDiagnostics, TellWhereADeviceShowsOtherThanThePreview) {
    struct Case {
        const char* what;
        std::vector<Key> opacity, order;
        const char* expected;
    };
    const QStringList none;
    const Case cases[] = {
        {"within 0 to 1", {{0, 1.0F}, {90, 0.0F}}, {}, ""},
        {"to 2", {{90, 2.0F}}, {}, ""},  // from 1, which looks the same
        {"from 0 to 2", {{0, 0.0F}, {90, 2.0F}}, {}, "opacity-out-of-range walk"},
        {"a jump to 2", {{0, 0.0F}, {90, 2.0F, 0, true}}, {}, ""},
        {"order to the end", {{90, 1.0F}}, {{90, none}}, ""},
        {"order that ends before", {{90, 1.0F}}, {{80, none}}, "order-ends-early walk"},
        {"order that repeats", {{90, 1.0F}}, {{80, none}}, ""},
    };
    for (const Case& c : cases) {
        Scene scene;
        const auto group = scene.add(u"group"_s);
        group->setGroup(true);
        const auto animation = scene.addAnimation(u"walk"_s);
        scene.store(animation, group, PCPropertyTypeOpacity, c.opacity);
        if (!c.order.empty()) {
            scene.store(
                animation, group, PCPropertyTypeChildrenZPositions, c.order,
                &c == std::end(cases) - 1 ? PCRepeatBehaviorForever : PCRepeatBehaviorNever);
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
