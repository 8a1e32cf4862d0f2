#pragma once

#include <memory>
#include <optional>
#include <string>

#include "codegen/export_plan.h"
#include "codegen/language/language_code_provider.h"

namespace tweenery {

/// Writes the frame-sliced animations: a table of the values that change, sampled in equal steps,
/// and methods that show any frame of it. A language without buffers for it gets nothing.
class FrameSlicedAnimationCode {
 public:
    /// The code in the provider's language. `plan` receives the sorted timelines of its bundles.
    static std::unique_ptr<FrameSlicedAnimationCode> make(ExportPlan& plan,
                                                          PCLanguageCodeProvider& provider);
    virtual ~FrameSlicedAnimationCode() = default;

    bool writesText() const;

    /// Sorts the timelines and names the tables. Throws ExportError for an animation that no table
    /// can hold.
    void prepareForSlicedAnimationExport();
    /// Before the class.
    void appendStructDefinitionAndValuesArrayForSlicedAnimations();
    /// Before the end of the class.
    void appendSlicedApplyFrameMethodsForSlicedAnimations();
    /// Behind the class.
    void appendStructValuesArrayForSlicedAnimations();

 protected:
    using Bundle = PCAnimationExportBundle;
    using Timeline = PCKeyedPropertyTimeline;

    FrameSlicedAnimationCode(ExportPlan& plan, PCLanguageCodeProvider& provider)
        : m_plan(plan), m_provider(provider) {}

    virtual void appendStructDefinition(const Bundle& bundle) = 0;
    virtual void appendMark() = 0;
    virtual void appendMethods(const Bundle& bundle) = 0;
    virtual void appendStructValuesArray(const Bundle& bundle) = 0;

    const ExportPlan& plan() const { return m_plan; }
    PCLanguageCodeProvider& provider() const { return m_provider; }

    /// The name of a timeline's member of the frame table.
    static std::string structVariableName(const PlannedElement& planned, const Timeline& timeline);
    static std::string_view playbackKeyPath(PCPropertyType propertyType);
    /// In milliseconds.
    static int32_t timeOfFrame(const Bundle& bundle, int32_t frame);
    /// What the table holds: places in the parent instead of translations.
    static double tableValue(const PlannedElement& planned, const Timeline& timeline,
                             int32_t timeInMS);
    template <class Visit>
    void forEachChangingTimeline(const Bundle& bundle, Visit visit) const {
        for (const auto& [element, timelines] : bundle.changingTimelinesByElement) {
            for (const auto* timeline : timelines) {
                visit(m_plan.planned(*element), *timeline);
            }
        }
    }

 private:
    ExportPlan& m_plan;
    PCLanguageCodeProvider& m_provider;
};

/// The most frames that a table may have; a number in a name is quickly typed.
inline constexpr int32_t kMaximumFrameSlices = 1'000'000;

/// Why no table can hold the frame-sliced animation; nothing when one can.
std::optional<QString> obstacleToSlicing(const PCAnimationExportBundle& bundle);
/// The same with what all sliced animations hold together: their values are added to `valuesInAll`.
std::optional<QString> obstacleToSlicing(const PCAnimationExportBundle& bundle,
                                         int64_t& valuesInAll);

}  // namespace tweenery
