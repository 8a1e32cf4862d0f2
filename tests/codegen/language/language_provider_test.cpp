#include <gtest/gtest.h>

#include "codegen/language/current_swift_code_provider.h"
#include "codegen/language/objc_code_provider.h"
#include "codegen/language/swift_code_provider.h"
#include "codegen/scene.h"

using namespace Qt::StringLiterals;

namespace tweenery::test {
namespace {

/// What a provider makes of the operations that no generated class needs; all others stand in the
/// goldens.
template <class Provider>
std::string textOf(const QString& file) {
    Provider provider(GenerationStamp{"1.2", "3/4/21"});
    provider.setGeneratedClassName("SceneView");
    provider.setFrameWithRect({1, -2.5, 3, 4}, "v");
    std::string text = joined(provider.fileContentsByName().at(file));
    provider.codeForPropertySetterString(text, "a = b");
    provider.codeForPropertySetterWithArrayString(text, "a", "b, c");
    return text;
}

TEST(LanguageProviders, SetFramesAndProperties) {
    EXPECT_EQ(textOf<PCObjCCodeProvider>(u"SceneView.m"_s),
              "\n\tv.frame = CGRectMake(1.000, -2.500, 3.000, 4.000);\n\ta = b;\n\ta = @[b, c];");
    EXPECT_EQ(textOf<PCSwiftCodeProvider>(u"SceneView.swift"_s),
              "\n\t\tv.frame = CGRectMake(1.000, -2.500, 3.000, 4.000)\n\t\ta = b\n\t\ta = [b, c]");
    EXPECT_EQ(textOf<CurrentSwiftCodeProvider>(u"SceneView.swift"_s),
              "\n\t\tv.frame = CGRect(x: 1.000, y: -2.500, width: 3.000, height: 4.000)\n"
              "\n\t\ta = b\n\t\ta = [b, c]");
}

}  // namespace
}  // namespace tweenery::test
