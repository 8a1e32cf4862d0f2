#pragma once

#include <array>
#include <set>
#include <unordered_map>

#include "certify/certificate.h"
#include "certify/expected_track.h"
#include "certify/preview_scene.h"

namespace tweenery {

/// A number of an element that a timeline of its own can change.
struct LookProperty {
    const char* name;
    double ElementLook::*value;
    PCAnimationExportElementTimelines::Timeline PCAnimationExportElementTimelines::*timeline;
};
const std::array<LookProperty, 6>& lookProperties();

/// Compares what an export shows with what the preview shows, and finds the cause of each
/// difference. A cause counts only as far as it can reach: whoever is farther off has none.
class DifferenceJudge {
 public:
    /// What is not owned outlives it. `bundle` is null for the scene as it is set up.
    DifferenceJudge(const PreviewScene& preview, const ExportPlan& plan,
                    const PCAnimationExportBundle* bundle, CertifiedPart& part);

    /// What the preview shows at that time of the selected animation.
    void compareLook(int element, int32_t timeInMS, const std::optional<ElementLook>& exported);
    void compareOrder(int parent, int32_t timeInMS, const std::vector<int>& exported,
                      bool isFilled = true);
    /// What it shows without an animation; `timeInMS` is where that is to be told of.
    void compareSetupLook(int element, int32_t timeInMS,
                          const std::optional<ElementLook>& exported);
    void compareSetupOrder(int parent, int32_t timeInMS, const std::vector<int>& exported);
    void comparePlace(int element, const std::optional<ElementPlace>& exported);
    /// A fact, such as how often a block was called. `property` says what.
    void compareFact(const QString& property, int32_t timeInMS, double preview, double exported);
    /// A number of the scene as a whole, which printing may move by `printed`.
    void compareScene(const QString& property, double preview, double exported, double printed);
    /// A frame of a table sets a whole transform: from here on.
    void setShowsFrames() { m_showsFrames = true; }

    /// Whether the export animates that element at all, as layers on the mobile platform are not.
    bool isAnimated(int element) const;
    const PCAnimationExportElementTimelines* record(int element) const;

 private:
    using Timeline = PCKeyedPropertyTimeline;
    struct Sample;

    const PreviewScene& m_preview;
    const ExportPlan& m_plan;
    const PCAnimationExportBundle* m_bundle;
    CertifiedPart& m_part;
    bool m_showsFrames = false;
    std::set<QString> m_collidingNames;
    std::unordered_map<int, const PCAnimationExportElementTimelines*> m_records;

    bool isExact() const { return m_plan.target.digits == NumberDigits::AllNeeded; }
    bool nameCollides(int element) const;
    const Timeline* timeline(const Sample& sample) const;
    double ownNumber(const Sample& sample, bool isPrinted) const;
    double expected(const Sample& sample, PrintedAs printed) const;
    double reachOfKeyTimes(const Timeline& timeline) const;
    bool turnsAt(const Timeline& timeline, int32_t timeInMS) const;
    bool isTransformAmbiguous(int element) const;
    bool isSetByFrames(const Sample& sample) const;
    std::optional<DifferenceCause> expectedCause(const Sample& sample) const;
    std::optional<DifferenceCause> causeOf(const Sample& sample) const;
    static bool isSame(double exported, double expected);
    static double stepsOf(const Timeline& timeline);
    std::optional<DifferenceCause> causeOfImage(int element, int32_t timeInMS,
                                                const QString& exported) const;
    std::optional<DifferenceCause> causeOfOrder(int parent, int32_t timeInMS, const Timeline& keys,
                                                const std::vector<int>& exported,
                                                bool isFilled) const;
    void compareNumbers(int element, int32_t timeInMS, const ElementLook& preview,
                        ElementLook exported, bool isSetup);
    void compareImage(int element, int32_t timeInMS, const QString& preview,
                      const QString& exported, bool isSetup);
    void reportMissing(int element, int32_t timeInMS);
    void addOrder(int parent, int32_t timeInMS, const std::vector<int>& preview,
                  const std::vector<int>& exported, std::optional<DifferenceCause> cause);
    QString namesOf(const std::vector<int>& order) const;
};

}  // namespace tweenery
