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

// Only what no generated class holds is written out here; all else stands in the goldens.

TEST(LanguageProviders, SetFrames) {
    const auto write = [](auto& p) { p.setFrameWithRect({1, -2.5, 3, 4}, "v"); };
    EXPECT_EQ(mainFile<PCObjCCodeProvider>(false, write),
              "\n\tv.frame = CGRectMake(1.000, -2.500, 3.000, 4.000);");
    EXPECT_EQ(mainFile<PCSwiftCodeProvider>(false, write),
              "\n\t\tv.frame = CGRectMake(1.000, -2.500, 3.000, 4.000)");
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
