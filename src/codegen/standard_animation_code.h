#pragma once

#include "codegen/export_plan.h"
#include "codegen/language/language_code_provider.h"
#include "codegen/timing_function_code.h"

namespace tweenery {

/// Writes the methods of the standard animations: one keyframe animation for each stored timeline,
/// with exactly its keyframes.
class StandardAnimationCode {
 public:
    /// `plan` receives the code of its bundles.
    StandardAnimationCode(ExportPlan& plan, PCLanguageCodeProvider& provider)
        : m_plan(plan), m_provider(provider) {}

    void addStandardAnimations();

 private:
    class BundleCode;

    void addDefinitionCodeForTimingFunctionsWithEasingModes(EasingModes modes);

    ExportPlan& m_plan;
    PCLanguageCodeProvider& m_provider;
};

/// The qualifier in names and the layer key path of a property. Throws AssertionFailure for the
/// children order and the combined types, which never stand in generated code as such.
std::string_view animationQualifierForPropertyType(PCPropertyType propertyType);
std::string_view animationKeyPathForPropertyType(PCPropertyType propertyType);

}  // namespace tweenery
