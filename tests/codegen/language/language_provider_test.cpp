#include <gtest/gtest.h>

#include <functional>

#include "codegen/language/objc_code_provider.h"
#include "codegen/language/swift_code_provider.h"
#include "codegen/scene.h"

using namespace Qt::StringLiterals;

namespace tweenery::test {
namespace {

const GenerationStamp kStamp{"1.2", "3/4/21"};

template <class Provider>
Provider makeProvider(bool mac) {
    Provider provider(kStamp);
    provider.setGenerateForMac(mac);
    provider.setGeneratedClassName("SceneView");
    return provider;
}

/// What a run of operations leaves in the main file.
template <class Provider>
std::string mainFile(bool mac, const std::function<void(PCLanguageCodeProvider&)>& write) {
    Provider provider = makeProvider<Provider>(mac);
    write(provider);
    const FileContents files = provider.fileContentsByName();
    return joined(files.at(std::is_same_v<Provider, PCSwiftCodeProvider> ? u"SceneView.swift"_s
                                                                         : u"SceneView.m"_s));
}

std::string returned(const std::function<void(std::string&)>& write) {
    std::string text;
    write(text);
    return text;
}

struct TemplateCase {
    const char* what;
    std::function<void(PCLanguageCodeProvider&)> write;
    std::string objcMobile, objcDesktop, swiftMobile, swiftDesktop;
};

// The operations and branches that no golden reaches, and the arithmetic of their numbers.
TEST(LanguageProviders, WriteTheirTemplates) {
    const TemplateCase cases[] = {
        {"container of an odd size, clipped",
         [](auto& p) {
             p.addScalingContainerWithSize({320.5, 480}, false, true);
         },
         "\n\n\tUIView *__scaling__ = [UIView new];"
         "\n\t__scaling__.bounds = CGRectMake(0, 0, 320, 480);"
         "\n\t__scaling__.center = CGPointMake(160.2, 240.0);"
         "\n\t__scaling__.layer.masksToBounds = YES;"
         "\n\t[self addSubview:__scaling__];"
         "\n\tviewsByName[@\"__scaling__\"] = __scaling__;",
         "\n\n\tCALayer *__scaling__ = [CALayer layer];"
         "\n\t__scaling__.bounds = CGRectMake(0, 0, 320, 480);"
         "\n\t__scaling__.position = CGPointMake(160.2, 240.0);"
         "\n\t__scaling__.masksToBounds = YES;"
         "\n\t[self.layer addSublayer:__scaling__];"
         "\n\tlayersByName[@\"__scaling__\"] = __scaling__;",
         "\n\n\t\tlet __scaling__ = UIView()"
         "\n\t\t__scaling__.bounds = CGRect(x:0, y:0, width:320, height:480)"
         "\n\t\t__scaling__.center = CGPoint(x:160.2, y:240.0)"
         "\n\t\t__scaling__.layer.masksToBounds = true"
         "\n\t\tself.addSubview(__scaling__)"
         "\n\t\tviewsByName[\"__scaling__\"] = __scaling__",
         "\n\n\t\tlet __scaling__ = CALayer()"
         "\n\t\t__scaling__.bounds = CGRect(x:0, y:0, width:320, height:480)"
         "\n\t\t__scaling__.position = CGPoint(x:160.2, y:240.0)"
         "\n\t\t__scaling__.masksToBounds = true"
         "\n\t\tself.layer?.addSublayer(__scaling__)"
         "\n\t\tlayersByName[\"__scaling__\"] = __scaling__"},
        {"bounds round the binary value",
         [](auto& p) {
             p.setBoundsWithSize({10.25, 10.75}, "v");
         },
         "\n\tv.bounds = CGRectMake(0, 0, 10.2, 10.8);",
         "\n\tv.bounds = CGRectMake(0, 0, 10.2, 10.8);",
         "\n\t\tv.bounds = CGRect(x:0, y:0, width:10.2, height:10.8)",
         "\n\t\tv.bounds = CGRect(x:0, y:0, width:10.2, height:10.8)"},
        {"frame",
         [](auto& p) {
             p.setFrameWithRect({1, -2.5, 3, 4}, "v");
         },
         "\n\tv.frame = CGRectMake(1.000, -2.500, 3.000, 4.000);",
         "\n\tv.frame = CGRectMake(1.000, -2.500, 3.000, 4.000);",
         "\n\t\tv.frame = CGRectMake(1.000, -2.500, 3.000, 4.000)",
         "\n\t\tv.frame = CGRectMake(1.000, -2.500, 3.000, 4.000)"},
        {"anchor of a view",
         [](auto& p) {
             p.setAnchor({0.5, 0.50001}, "v", false);
         },
         "\n\tv.layer.anchorPoint = CGPointMake(0.500, 0.500);",
         "\n\tv.layer.anchorPoint = CGPointMake(0.500, 0.500);",
         "\n\t\tv.layer.anchorPoint = CGPoint(x:0.500, y:0.500)",
         "\n\t\tv.layer.anchorPoint = CGPoint(x:0.500, y:0.500)"},
        {"layer in a view", [](auto& p) { p.addElementWithName("c", true, "p", false); },
         "\n\t[p.layer addSublayer:c];", "\n\t[p.layer addSublayer:c];",
         "\n\t\tp.layer.addSublayer(c)", "\n\t\tp.layer!.addSublayer(c)"},
        {"layer in a layer", [](auto& p) { p.addElementWithName("c", true, "p", true); },
         "\n\t[p addSublayer:c];", "\n\t[p addSublayer:c];", "\n\t\tp.addSublayer(c)",
         "\n\t\tp.addSublayer(c)"},
        {"a hostile name", [](auto& p) { p.addLayerWithVariableName("v", "a\"\\\n"); },
         "\n\tCALayer *v = [CALayer layer];\n\tv.name = @\"a\\\"\\\\\\n\";",
         "\n\tCALayer *v = [CALayer layer];\n\tv.name = @\"a\\\"\\\\\\n\";",
         "\n\t\tlet v = CALayer()\n\t\tv.name = \"a\\\"\\\\\\n\"",
         "\n\t\tlet v = CALayer()\n\t\tv.name = \"a\\\"\\\\\\n\""},
        {"an image without an extension", [](auto& p) { p.addImageVariableWithName("i", ".png"); },
         "\n\tUIImage *i = [UIImage imageWithContentsOfFile:[bundle pathForResource:@\".png\" "
         "ofType:nil]];",
         "\n\tNSImage *i = [[NSImage alloc] initWithContentsOfFile:[bundle "
         "pathForImageResource:@\".png\"]];",
         "\n\t\tvar i: UIImage!\n\t\tif let imagePath = bundle.pathForResource(\".png\", "
         "ofType:nil) {\n\t\t\ti = UIImage(contentsOfFile:imagePath)\n\t\t}",
         "\n\t\tvar i: NSImage!\n\t\tif let imagePath = bundle.pathForImageResource(\".png\") "
         "{\n\t\t\ti = NSImage(contentsOfFile:imagePath)\n\t\t}"},
    };
    for (const TemplateCase& c : cases) {
        EXPECT_EQ(mainFile<PCObjCCodeProvider>(false, c.write), c.objcMobile) << c.what;
        EXPECT_EQ(mainFile<PCObjCCodeProvider>(true, c.write), c.objcDesktop) << c.what;
        EXPECT_EQ(mainFile<PCSwiftCodeProvider>(false, c.write), c.swiftMobile) << c.what;
        EXPECT_EQ(mainFile<PCSwiftCodeProvider>(true, c.write), c.swiftDesktop) << c.what;
    }
}

TEST(LanguageProviders, PassTheKeySuffixOn) {
    const auto begin = [](PCLanguageCodeProvider& p) {
        p.beginStandardAnimationWithBaseName("WalkAnimation", "walk", true, true);
    };
    EXPECT_EQ(
        mainFile<PCSwiftCodeProvider>(false, begin),
        "\n\n\t// - MARK: walk"
        "\n\n\tfunc addWalkAnimation() {"
        "\n\t\taddWalkAnimationWithBeginTime(0, fillMode: kCAFillModeBoth, removedOnCompletion: "
        "false, nil)\n\t}"
        "\n\n\tfunc addWalkAnimation(completion: ((Bool) -> Void)?) {"
        "\n\t\taddWalkAnimationWithBeginTime(0, fillMode: kCAFillModeBoth, removedOnCompletion: "
        "false, completion)\n\t}"
        "\n\n\tfunc addWalkAnimation(#removedOnCompletion: Bool) {"
        "\n\t\taddWalkAnimationWithBeginTime(0, fillMode: removedOnCompletion ? kCAFillModeRemoved "
        ": kCAFillModeBoth, removedOnCompletion: removedOnCompletion, animationKeySuffix:\"\", "
        "nil)\n\t}"
        "\n\n\tfunc addWalkAnimation(#removedOnCompletion: Bool, completion: ((Bool) -> Void)?) {"
        "\n\t\taddWalkAnimationWithBeginTime(0, fillMode: removedOnCompletion ? kCAFillModeRemoved "
        ": kCAFillModeBoth, removedOnCompletion: removedOnCompletion, animationKeySuffix:\"\", "
        "completion)\n\t}"
        "\n\n\tfunc addWalkAnimationWithBeginTime(beginTime: CFTimeInterval, fillMode: String, "
        "removedOnCompletion: Bool, animationKeySuffix: String, completion: ((Bool) -> Void)?) {");
    const std::string objc = mainFile<PCObjCCodeProvider>(false, begin);
    EXPECT_TRUE(objc.starts_with(
        "\n\n#pragma mark - walk\n\n- (void)addWalkAnimation\n{\n\t[self "
        "addWalkAnimationWithBeginTime:0 andFillMode:kCAFillModeBoth andRemoveOnCompletion:NO "
        "andAnimationKeySuffix:@\"\" completion:NULL];\n}"))
        << objc;
    EXPECT_TRUE(objc.ends_with(
        "\n\n- (void)addWalkAnimationWithBeginTime:(CFTimeInterval)beginTime andFillMode:(NSString "
        "*)fillMode andRemoveOnCompletion:(BOOL)removedOnCompletion "
        "andAnimationKeySuffix:(NSString *)animationKeySuffix completion:(void (^)(BOOL "
        "finished))completionBlock\n{"))
        << objc;

    KeyframeAnimationCode animation{.variableName = "a",
                                    .keypath = "contents",
                                    .duration = "1.000",
                                    .values = "V",
                                    .times = "T",
                                    .timingFunctions = "F",
                                    .autoreverses = false,
                                    .repeatForever = true,
                                    .animationKey = "k\"",
                                    .animationKeySuffix = "animationKeySuffix",
                                    .elementUserName = "e\""};
    EXPECT_EQ(returned([&](std::string& out) {
                  makeProvider<PCObjCCodeProvider>(false).codeForAnimationWithVariableName(
                      out, animation);
              }),
              "\n\n\tCAKeyframeAnimation *a = [CAKeyframeAnimation "
              "animationWithKeyPath:@\"contents\"];\n\ta.duration = 1.000;\n\ta.values = @[V];"
              "\n\ta.keyTimes = @[T];\n\ta.timingFunctions = @[F];\n\ta.autoreverses = NO;"
              "\n\ta.repeatCount = HUGE_VALF;\n\ta.beginTime = beginTime;\n\ta.fillMode = fillMode;"
              "\n\ta.removedOnCompletion = removedOnCompletion;"
              "\n\t[[self.viewsByName[@\"e\\\"\"] layer] addAnimation:a forKey:[@\"k\\\"\" "
              "stringByAppendingString:animationKeySuffix]];");
    EXPECT_EQ(returned([&](std::string& out) {
                  makeProvider<PCSwiftCodeProvider>(true).codeForAnimationWithVariableName(
                      out, animation);
              }),
              "\n\n\t\tlet a = CAKeyframeAnimation(keyPath: \"contents\")\n\t\ta.duration = 1.000"
              "\n\t\ta.values = [V] as [NSImage!]\n\t\ta.keyTimes = [T]\n\t\ta.timingFunctions = "
              "[F]\n\t\ta.autoreverses = false\n\t\ta.repeatCount = HUGE\n\t\ta.beginTime = "
              "beginTime\n\t\ta.fillMode = fillMode\n\t\ta.removedOnCompletion = "
              "removedOnCompletion\n\t\tself.layersByName[\"e\\\"\"]?.addAnimation(a, "
              "forKey:\"k\\\"\" + animationKeySuffix)");
}

TEST(LanguageProviders, ReturnPropertySetters) {
    const auto both = [](const PCLanguageCodeProvider& provider) {
        std::string text;
        provider.codeForPropertySetterString(text, "a = b");
        provider.codeForPropertySetterWithArrayString(text, "a", "b, c");
        return text;
    };
    EXPECT_EQ(both(makeProvider<PCObjCCodeProvider>(false)), "\n\ta = b;\n\ta = @[b, c];");
    EXPECT_EQ(both(makeProvider<PCSwiftCodeProvider>(false)), "\n\t\ta = b\n\t\ta = [b, c]");
}

}  // namespace
}  // namespace tweenery::test
