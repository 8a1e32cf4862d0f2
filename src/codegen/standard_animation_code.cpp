#include "codegen/standard_animation_code.h"

#include <QHash>

#include "base/errors.h"
#include "base/parallel_for.h"
#include "codegen/keyframe_lists.h"

using namespace Qt::StringLiterals;

namespace tweenery {

namespace {

const PropertyTypeRow& generatedRow(PCPropertyType propertyType, const QString& complaint) {
    const PropertyTypeRow& row = propertyTypeRow(propertyType);
    if (!row.qualifier) { failContract(complaint); }
    return row;
}

// About as many bytes as the animations of a bundle take.
size_t estimatedSize(const PCAnimationExportBundle& bundle) {
    constexpr size_t bytesOfFrame = 700;
    constexpr size_t bytesOfKeyframe = 40;
    size_t size = 1000;
    for (const PCAnimationExportElementTimelines& record : bundle.timelinesByElement) {
        for (const auto* timeline : record.allNonNilTimelines()) {
            size += bytesOfFrame + bytesOfKeyframe * timeline->keyframesCount();
        }
    }
    return size;
}

// Whether any animation is written: the order of no children is none.
bool animatesAnything(const PCAnimationExportBundle& bundle) {
    const auto& records = bundle.timelinesByElement;
    return std::any_of(records.begin(), records.end(), [](const auto& record) {
        const bool onlyOrder = record.zPosition && record.allNonNilTimelines().size() == 1;
        return !onlyOrder || !record.element->children().empty();
    });
}

// With the "speed" tag.
float playingSeconds(const PCAnimationExportBundle& bundle) {
    const float seconds = static_cast<float>(bundle.durationInMS) / 1000.0F;
    return bundle.timeScalar > 0 ? seconds / bundle.timeScalar : seconds;
}

}  // namespace

std::string_view animationQualifierForPropertyType(PCPropertyType propertyType) {
    return generatedRow(propertyType,
                        u"keyall, translation, scale, childZPosition timelines should NOT be used "
                        "in code generation"_s)
        .qualifier;
}

std::string_view animationKeyPathForPropertyType(PCPropertyType propertyType) {
    return generatedRow(propertyType,
                        u"should NOT be generating code using keyall, scale, translation, or "
                        "childrenZPositions types directly"_s)
        .keyPath;
}

// The code of one animation. Animations are independent of each other, so that each can be written
// on a thread of its own.
class StandardAnimationCode::BundleCode {
 public:
    BundleCode(const ExportPlan& plan, const PCLanguageCodeProvider& provider,
               PCAnimationExportBundle& bundle)
        : m_plan(plan),
          m_provider(provider),
          m_bundle(bundle),
          m_animationName(bundle.animation->name().toStdString()),
          m_lists(provider) {}

    // Fills the bundle's add code and remove code.
    EasingModes generate();

 private:
    void generateCodeForTimeline(const PlannedElement& planned,
                                 const PCKeyedPropertyTimeline& timeline);
    void generateCodeForChildrenOrder(const PCElement& parent,
                                      const PCKeyedPropertyTimeline& timeline);
    void generateCodeForAnimatingTimeline(const PlannedElement& planned,
                                          PCPropertyType propertyType,
                                          const PCKeyedPropertyTimeline& timeline);

    const ExportPlan& m_plan;
    const PCLanguageCodeProvider& m_provider;
    PCAnimationExportBundle& m_bundle;
    const std::string m_animationName;
    // Used again for one timeline after another.
    KeyframeLists m_lists;
    std::string m_variable;
    std::string m_key;
    std::string m_duration;
};

void StandardAnimationCode::addStandardAnimations() {
    auto& bundles = m_plan.standardAnimationExportBundles;
    std::vector<EasingModes> easingModesNeeded(bundles.size());
    parallelFor(bundles.size(), [&](size_t i) {
        easingModesNeeded[i] = BundleCode(m_plan, m_provider, bundles[i]).generate();
    });
    for (size_t i = 0; i < bundles.size(); ++i) {
        PCAnimationExportBundle& bundle = bundles[i];
        const std::string stem = methodStem(bundle.baseMethodName);
        m_provider.describeStandardAnimation(playingSeconds(bundle), bundle.hasLooping);
        m_provider.beginStandardAnimationWithBaseName(stem, bundle.animation->name().toStdString(),
                                                      !bundle.hasLooping,
                                                      m_plan.target.addAnimationSuffix);
        addDefinitionCodeForTimingFunctionsWithEasingModes(easingModesNeeded[i]);
        m_provider.addStandardAnimationWithBaseName(stem, std::move(bundle.generatedAddCode),
                                                    bundle.generatedRemoveCode, !bundle.hasLooping);
    }
    if (m_plan.usesCompletionBlocksTable()) { m_provider.addAnimationDidStopMethod(); }
    if (!bundles.empty()) {
        m_provider.addRemoveAllAnimationsMethodWithBaseMethodNames(
            m_plan.animationBaseMethodNamesUsingCompletionBlock);
    }
}

void StandardAnimationCode::addDefinitionCodeForTimingFunctionsWithEasingModes(EasingModes modes) {
    for (size_t mode = 0; mode < modes.size(); ++mode) {
        if (!modes.test(mode)) { continue; }
        const TimingFunctionCode& function = timingFunctionCode(easingModes()[mode].mode);
        if (function.builtInName.empty()) {
            m_provider.addTimingFunctionDefinitionWithControlPoints(
                function.variable, function.controlPoint1, function.controlPoint2);
        } else {
            m_provider.addTimingFunctionDefinitionWithBuiltInFunctionName(function.variable,
                                                                          function.builtInName);
        }
    }
}

EasingModes StandardAnimationCode::BundleCode::generate() {
    std::string& addCode = m_bundle.generatedAddCode;
    std::string& removeCode = m_bundle.generatedRemoveCode;
    addCode.reserve(estimatedSize(m_bundle));
    // Current Swift complains about a variable that nothing reads.
    const bool writesScalar =
        m_plan.target.language != TargetLanguage::CurrentSwift || animatesAnything(m_bundle);
    if (m_bundle.timeScalar > 0 && writesScalar) {
        m_provider.codeForFloatWithName(addCode, "timeScalar", m_bundle.timeScalar);
    }
    if (!m_bundle.hasLooping) {
        m_provider.codeForAddingRepresentativeAnimationWithBaseName(
            addCode, m_bundle.baseMethodName, static_cast<float>(m_bundle.durationInMS) / 1000.0F);
        m_provider.codeForRemovingRepresentativeAnimationWithBaseName(removeCode,
                                                                      m_bundle.baseMethodName);
    }
    for (const PCAnimationExportElementTimelines& record : m_bundle.timelinesByElement) {
        const PlannedElement& planned = m_plan.planned(*record.element);
        for (const auto* timeline : record.allNonNilTimelines()) {
            if (timeline->propertyType() == PCPropertyTypeChildrenZPositions) {
                generateCodeForChildrenOrder(*record.element, *timeline);
            } else {
                generateCodeForTimeline(planned, *timeline);
            }
        }
    }
    return m_lists.easingModesNeeded();
}

void StandardAnimationCode::BundleCode::generateCodeForTimeline(
    const PlannedElement& planned, const PCKeyedPropertyTimeline& timeline) {
    std::string& values = m_lists.values();
    if (isStringProperty(timeline.propertyType())) {
        const auto appendImage = [&](const PropertyValue& value) {
            m_provider.codeForImageRefWithName(values, stringOfValue(value).toStdString());
        };
        m_lists.populate(
            timeline, [&](size_t i) { appendImage(timeline.valueOfKeyframeAtIndex(i)); },
            [&] { appendImage(timeline.valueAtTimeInMS(0)); });
    } else {
        m_lists.populate(
            timeline,
            [&](size_t i) {
                m_provider.codeForBoxedNumber(values, timeline.floatValueOfKeyframeAtIndex(i));
            },
            [&] { m_provider.codeForBoxedNumber(values, timeline.floatValueAtTimeInMS(0)); });
    }
    generateCodeForAnimatingTimeline(planned, timeline.propertyType(), timeline);
}

// A stacking change becomes a number animation of each child's place in the stored order, in which
// deleted children keep theirs; one that the order lacks stays at its own.
void StandardAnimationCode::BundleCode::generateCodeForChildrenOrder(
    const PCElement& parent, const PCKeyedPropertyTimeline& timeline) {
    const QStringList children = PCProject::sortedSubelementIdentifiers(parent);
    std::vector<QHash<QString, float>> placeByKeyframe(timeline.keyframesCount());
    for (size_t i = 0; i < placeByKeyframe.size(); ++i) {
        const QStringList order = arrayOfValue(timeline.storedValueOfKeyframe(i));
        // An identifier that is there twice counts where it comes first.
        for (qsizetype place = order.size(); place-- > 0;) {
            placeByKeyframe[i][order[place]] = static_cast<float>(place);
        }
    }
    for (qsizetype child = 0; child < children.size(); ++child) {
        const auto own = static_cast<float>(child);
        m_lists.populate(
            timeline,
            [&](size_t i) {
                m_provider.codeForBoxedNumber(m_lists.values(),
                                              placeByKeyframe[i].value(children[child], own));
            },
            [&] { m_provider.codeForBoxedNumber(m_lists.values(), own); });
        const PCElement& element = *parent.children()[static_cast<size_t>(child)];
        generateCodeForAnimatingTimeline(m_plan.planned(element), PCPropertyTypeZPosition,
                                         timeline);
    }
}

void StandardAnimationCode::BundleCode::generateCodeForAnimatingTimeline(
    const PlannedElement& planned, PCPropertyType propertyType,
    const PCKeyedPropertyTimeline& timeline) {
    const std::string_view qualifier = animationQualifierForPropertyType(propertyType);
    m_variable.clear();
    append(m_variable, "%@%@Animation", planned.variable, qualifier);
    m_key.clear();
    append(m_key, "%@_%@", m_animationName, qualifier);
    m_duration.clear();
    append(m_duration, "%0.3f", static_cast<float>(timeline.durationInMS()) / 1000.0F);
    if (m_bundle.timeScalar > 0) { m_duration += " / timeScalar"; }

    KeyframeAnimationCode code;
    code.variableName = m_variable;
    code.keypath = animationKeyPathForPropertyType(propertyType);
    code.duration = m_duration;
    code.values = m_lists.values();
    code.times = m_lists.times();
    code.timingFunctions = m_lists.timingFunctions();
    code.valueCuts = m_lists.valueCuts();
    code.timeCuts = m_lists.timeCuts();
    code.timingFunctionCuts = m_lists.timingFunctionCuts();
    if (timeline.repeatBehavior() == PCRepeatBehaviorForeverAutoreverse) {
        code.autoreverses = true;
    }
    code.repeatForever = timeline.repeatBehavior() != PCRepeatBehaviorNever;
    code.animationKey = m_key;
    if (m_plan.target.addAnimationSuffix) { code.animationKeySuffix = "animationKeySuffix"; }
    code.elementUserName = planned.userName;
    m_provider.codeForAnimationWithVariableName(m_bundle.generatedAddCode, code);
    m_provider.codeForRemovingAnimationWithKey(m_bundle.generatedRemoveCode, m_key,
                                               planned.userName, planned.isLayer());
}

}  // namespace tweenery
