#pragma once

#include <optional>

#include "codegen/export_plan.h"
#include "codegen/language/language_code_provider.h"

namespace tweenery {

/// Writes the frame-sliced animations: a table of the values that change, sampled in equal steps,
/// and methods that show any frame of it. Fixed Objective-C for the mobile platform; a language
/// without buffers for it gets nothing.
class FrameSlicedAnimationCode {
 public:
    /// `plan` receives the sorted timelines of its bundles.
    FrameSlicedAnimationCode(ExportPlan& plan, PCLanguageCodeProvider& provider)
        : m_plan(plan),
          m_header(provider.headerStringForFrameSlicedAnimations()),
          m_implementation(provider.implementationStringForFrameSlicedAnimations()) {}

    bool writesText() const {
        return m_header && m_implementation && !m_plan.frameSlicedAnimationExportBundles.empty();
    }

    /// Sorts the timelines and names the tables. Throws ExportError for an animation that no table
    /// can hold.
    void prepareForSlicedAnimationExport();
    /// Into the header, before the class.
    void appendStructDefinitionAndValuesArrayForSlicedAnimations();
    /// Into both files, before the end of the class.
    void appendSlicedApplyFrameMethodsForSlicedAnimations();
    /// Into the implementation, behind the class.
    void appendStructValuesArrayForSlicedAnimations();

 private:
    using Bundle = PCAnimationExportBundle;
    using Timeline = PCKeyedPropertyTimeline;

    void appendMethods(const Bundle& bundle);
    void generateCodeToApplyFrameSlicedValuesWithAnimation(const Bundle& bundle, bool nonChanging);
    void generateCodeToApplyStructValueFromTimeline(const PlannedElement& planned,
                                                    const Timeline& timeline, bool nonChanging);
    struct ElementTransform;
    void generateCodeToApplyTransform(const PlannedElement& planned,
                                      const ElementTransform& transform, bool nonChanging);
    void generateCodeToApplyTranslation(const PlannedElement& planned,
                                        const ElementTransform& transform, bool nonChanging);
    void generateCodeToAnimateForPlaybackWithAnimation(const Bundle& bundle);
    void generateAnimationCodeForTimeline(const PlannedElement& planned, const Timeline& timeline);
    void appendStructValuesArray(const Bundle& bundle);
    void generateStructValueForTimeline(const PlannedElement& planned, const Timeline& timeline,
                                        int32_t timeInMS);
    std::string valueAtStart(const Timeline& timeline) const;
    template <class Number>
    std::string number(Number value) const {
        return numberText(value, 3, m_plan.target.digits);
    }
    template <class Visit>
    void forEachChangingTimeline(const Bundle& bundle, Visit visit) const;

    ExportPlan& m_plan;
    std::string* m_header;
    std::string* m_implementation;
};

/// The most frames that a table may have; a number in a name is quickly typed.
inline constexpr int32_t kMaximumFrameSlices = 1'000'000;

/// Why no table can hold the frame-sliced animation; nothing when one can.
std::optional<QString> obstacleToSlicing(const PCAnimationExportBundle& bundle);
/// The same with what all sliced animations hold together: their values are added to `valuesInAll`.
std::optional<QString> obstacleToSlicing(const PCAnimationExportBundle& bundle,
                                         int64_t& valuesInAll);

}  // namespace tweenery
