// A certificate that could not fail would say nothing: each of these exports is changed in one
// place after it was written, and each change is found.

#include <gtest/gtest.h>

#include <QDir>

#include "certified.h"
#include "certify/child_process.h"
#include "support/files.h"

using namespace Qt::StringLiterals;

namespace tweenery::test {
namespace {

struct Change {
    const char* what;
    const char* package;
    bool mac;
    const char* text;  // in the implementation, its first occurrence
    const char* replacement;
};

const Change kChanges[] = {
    {"easing", "Bounce", false, "@[easeOutTiming, linearTiming, easeInOut",
     "@[easeInTiming, linearTiming, easeInOut"},
    {"overshoot", "Bounce", false, "0.58 :1.30]", "0.58 :1.00]"},
    {"built-in timing", "Bounce", false, "kCAMediaTimingFunctionEaseIn]",
     "kCAMediaTimingFunctionEaseOut]"},
    {"autoreverse", "Bounce", false, ".autoreverses = YES", ".autoreverses = NO"},
    {"repeat count", "Bounce", false, ".repeatCount = HUGE_VALF", ".repeatCount = 4"},
    {"fill mode", "Bounce", false, "ballTranslationXAnimation.fillMode = fillMode",
     "ballTranslationXAnimation.fillMode = kCAFillModeBackwards"},
    {"fill mode of a call", "Bounce", false,
     "[self addEasingParadeAnimationWithBeginTime:0 andFillMode:kCAFillModeBoth",
     "[self addEasingParadeAnimationWithBeginTime:0 andFillMode:kCAFillModeRemoved"},
    {"removed at once", "Bounce", false, "andRemoveOnCompletion:NO completion:completionBlock",
     "andRemoveOnCompletion:YES completion:completionBlock"},
    {"never removed", "Bounce", false, "ballScaleYAnimation.removedOnCompletion = removed",
     "ballScaleYAnimation.removedOnCompletion = NO && removed"},
    {"key path", "Bounce", false, "@\"transform.scale.x\"", "@\"transform.scale.y\""},
    {"duration", "Bounce", false, "shadowOpacityAnimation.duration = 1.600",
     "shadowOpacityAnimation.duration = 1.610"},
    {"value", "Bounce", false, "@(-180.000)", "@(-180.010)"},
    {"key time", "Bounce", false, "@(0.312), @(0.562), @(0.625)", "@(0.314), @(0.562), @(0.625)"},
    {"begin time", "Bounce", false, "ballScaleXAnimation.beginTime = beginTime",
     "ballScaleXAnimation.beginTime = beginTime + 0.002"},
    {"no begin time", "Bounce", false, "ballScaleXAnimation.beginTime = beginTime;", ""},
    {"additive", "Bounce", false, "ballScaleXAnimation.beginTime = beginTime;",
     "ballScaleXAnimation.beginTime = beginTime; ballScaleXAnimation.additive = YES;"},
    {"wrong layer", "Bounce", false, "[[self.viewsByName[@\"Ball\"] layer] addAnimation",
     "[[self.viewsByName[@\"Sky\"] layer] addAnimation"},
    {"left in place", "Bounce", false,
     "[[self.viewsByName[@\"Ball\"] layer] removeAnimationForKey:@\"Bounce_ScaleX\"];", ""},
    {"block never called", "Bounce", false, "completion(flag);", ";"},
    {"block called as finished", "Bounce", false, "completion(flag);", "completion(YES);"},
    {"late block", "Bounce", false, "representativeAnimation.duration = 1.600",
     "representativeAnimation.duration = 1.700"},
    {"early block", "Bounce", false, "representativeAnimation.duration = 1.600",
     "representativeAnimation.duration = 1.500"},
    {"anchor point", "Bounce", false, "anchorPoint = CGPointMake(0.500, 1.000)",
     "anchorPoint = CGPointMake(0.500, 0.998)"},
    {"place", "Bounce", false, "CGPointMake(240.000, 276.000)", "CGPointMake(240.000, 276.003)"},
    {"own opacity", "Bounce", false, "shadow.alpha = 0.60", "shadow.alpha = 0.61"},
    {"own size", "Bounce", true, "CGRectMake(0, 0, 90.0, 30.0)", "CGRectMake(0, 0, 90.0, 30.2)"},
    {"own image", "Bounce", true, "\"ball\"", "\"shadow\""},
    {"own order", "Bounce", false, "[__scaling__ addSubview:shadow];",
     "[__scaling__.layer addSublayer:shadow.layer]; [__scaling__ addSubview:sky];"},
    {"wrong parent", "Card", false, "[deck addSubview:photo]", "[__scaling__ addSubview:photo]"},
    {"mirror", "Card", false, "CGAffineTransformMakeScale(-1.00, 1.00)",
     "CGAffineTransformMakeScale(1.00, 1.00)"},
    {"stacking", "Card", false, "@[@(0.000), @(0.000), @(2.000), @(2.000), @(0.000)]",
     "@[@(0.000), @(0.000), @(0.500), @(2.000), @(0.000)]"},
    {"image of a keyframe", "Card", false, "@\"card back\"", "@\"badge\""},
    {"no image at all", "Card", false, "@\"card back\"", "@\"card\""},
    {"turn", "Card", false, "@(-0.349)", "@(5.934)"},
    {"lists of two lengths", "Card", false, "keyTimes = @[@(0.000), @(1.000)]",
     "keyTimes = @[@(0.000), @(0.500), @(1.000)]"},
    {"speed", "Gallery", false, "float timeScalar = 1.500", "float timeScalar = 1.510"},
    {"frame", "Gallery", false, "{1.250, 45.000", "{1.250, 45.010"},
    {"frame of a share", "Gallery", false, "((percent * 4) + 0.5)", "(percent * 4)"},
    {"played frames", "Gallery", false, "@\"position.y\"", "@\"transform.translation.y\""},
    {"fitting", "Bounce", true, "MIN(xScale, yScale)", "1"},
};

// In the Swift alone: what the Objective-C does is still what the preview shows.
const Change kSwiftChanges[] = {
    {"value", "Bounce", false, "-180.000 as Float", "-180.001 as Float"},
    {"key path", "Bounce", true, "\"transform.scale.x\"", "\"transform.scale.y\""},
    {"element", "Bounce", false, "self.viewsByName[\"Ball\"]", "self.viewsByName[\"Sky\"]"},
    {"easing", "Bounce", false, "kCAMediaTimingFunctionEaseIn)", "kCAMediaTimingFunctionLinear)"},
    {"missing statement", "Bounce", false, "ballScaleXAnimation.fillMode = fillMode", ""},
    {"another statement", "Bounce", false, "self.viewsByName = viewsByName",
     "self.viewsByName = viewsByName\n\t\tball.alpha = 0.5"},
    {"order", "Bounce", false, "__scaling__.addSubview(shadow)", "__scaling__.addSubview(sky)"},
    {"argument", "Bounce", false, "removedOnCompletion: false, nil",
     "removedOnCompletion: true, nil"},
    {"label", "Bounce", false, ", forKey:\"Bounce_ScaleX\"", ", key:\"Bounce_ScaleX\""},
    {"missing method", "Bounce", false, "func removeBounceAnimation()", "func stop()"},
    {"name of an image", "Card", true, "bundle.pathForImageResource(\"table\")",
     "bundle.pathForImageResource(\"tables\")"},
    {"what cannot be read", "Card", true, "let deck = CALayer()", "let deck = CALayer("},
};

Certificate certifyChanged(const Change& change, bool inSwift = false) {
    CertifyOptions options;
    options.exportOptions.generateForMac = change.mac;
    options.usingSwift = inSwift;
    options.beforeCompiling = [&](const QString& folder) {
        const QString path = folder + (inSwift ? u"/swift/"_s : u"/"_s) +
                             QString::fromLatin1(change.package) +
                             (inSwift ? u"View.swift"_s : u"View.m"_s);
        QByteArray text = contentsOf(path);
        const qsizetype at = text.indexOf(change.text);
        ASSERT_GE(at, 0) << "the text is not there";
        text.replace(at, static_cast<qsizetype>(strlen(change.text)), change.replacement);
        replaceContents(path, text);
    };
    return certify(openProject(packagePath(QString::fromLatin1(change.package))), options,
                   sharedWorkshop());
}

TEST(ChangedExports, AreNotCertified) {
    if (!hasWorkshop()) { GTEST_SKIP() << "there is no clang"; }
    for (const Change& change : kChanges) {
        SCOPED_TRACE(change.what);
        const Certificate certificate = certifyChanged(change);
        EXPECT_TRUE(certificate.obstacle.isEmpty()) << wordsOf(certificate);
        EXPECT_FALSE(certificate.holds());
    }
}

TEST(ChangedExports, InSwiftAreFoundBesideTheObjectiveC) {
    if (!hasWorkshop()) { GTEST_SKIP() << "there is no clang"; }
    for (const Change& change : kSwiftChanges) {
        SCOPED_TRACE(change.what);
        const Certificate certificate = certifyChanged(change, true);
        ASSERT_FALSE(certificate.parts.empty());
        EXPECT_FALSE(certificate.holds());
        for (const CertifiedPart& part : certificate.parts) {
            EXPECT_EQ(part.holds(), part.kind != CertifiedPart::Kind::Swift)
                << wordsOf(certificate);
        }
    }
}

TEST(ChangedExports, AreNotCertifiedWithoutTheirArtwork) {
    if (!hasWorkshop()) { GTEST_SKIP() << "there is no clang"; }
    CertifyOptions options;
    options.beforeCompiling = [](const QString& folder) {
        ASSERT_TRUE(QFile::remove(folder + u"/images/ball.png"_s));
    };
    const auto project = openProject(packagePath(u"Bounce"_s));
    EXPECT_FALSE(certify(project, options, sharedWorkshop()).holds());
}

// Code that crashes or runs on takes nothing with it.
TEST(ChangedExports, ThatComeToNoEndAreNotCertified) {
    if (!hasWorkshop()) { GTEST_SKIP() << "there is no clang"; }
    const Change crash{"crash", "Bounce", false, "completion(flag);", "*(volatile int *)0 = 1;"};
    const Certificate certificate = certifyChanged(crash);
    EXPECT_FALSE(certificate.holds());
    EXPECT_TRUE(certificate.obstacle.contains(u"ended amid its run")) << wordsOf(certificate);

    const ChildResult busy = runChild({.program = u"/bin/sh"_s,
                                       .arguments = {u"-c"_s, u"while :; do :; done"_s},
                                       .folder = u"/"_s,
                                       .inputFile = {},
                                       .outputFile = {},
                                       .processorLimit = std::chrono::seconds(1)});
    EXPECT_FALSE(busy.wasInTime);
    const ChildResult idle = runChild({.program = u"/bin/sleep"_s,
                                       .arguments = {u"600"_s},
                                       .folder = u"/"_s,
                                       .inputFile = {},
                                       .outputFile = {},
                                       .timeLimit = std::chrono::milliseconds(300)});
    EXPECT_FALSE(idle.wasInTime);
}

}  // namespace
}  // namespace tweenery::test
