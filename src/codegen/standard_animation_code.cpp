#include "codegen/standard_animation_code.h"

#include <QHash>

#include "codegen/parallel.h"
#include "platform/errors.h"
#include "platform/path_name.h"

using namespace Qt::StringLiterals;

namespace tweenery {

namespace {

/// A timing function as generated code has it; by easing mode.
struct TimingFunction {
    std::string_view variable;
    std::string_view builtInName;  // empty: custom
    QPointF controlPoint1{0, 0};
    QPointF controlPoint2{0, 0};
};

const std::array<TimingFunction, 7>& timingFunctions() {
    static const std::array<TimingFunction, 7> functions{{
        {"linearTiming", "kCAMediaTimingFunctionLinear"},
        {"easeInTiming", "kCAMediaTimingFunctionEaseIn"},
        {"easeOutTiming", "kCAMediaTimingFunctionEaseOut"},
        {"easeInOutTiming", "kCAMediaTimingFunctionEaseInEaseOut"},
        {"anticipateTiming", "", {0.42, -0.3}, {1.0, 1.0}},
        {"overshootTiming", "", {0.0, 0.0}, {0.58, 1.3}},
        {"anticOverTiming", "", {0.42, -0.3}, {0.58, 1.3}},
    }};
    return functions;
}

const PropertyTypeRow& generatedRow(int32_t propertyType, const QString& complaint) {
    const PropertyTypeRow& row = propertyTypeRow(propertyType);
    if (!row.qualifier) failContract(complaint);
    return row;
}

}  // namespace

std::string_view animationQualifierForPropertyType(int32_t propertyType) {
    return generatedRow(propertyType,
                        u"keyall, translation, scale, childZPosition timelines should NOT be used "
                        "in code generation"_s)
        .qualifier;
}

std::string_view animationKeyPathForPropertyType(int32_t propertyType) {
    return generatedRow(propertyType,
                        u"should NOT be generating code using keyall, scale, translation, or "
                        "childrenZPositions types directly"_s)
        .keyPath;
}

/// The three comma-separated lists of one keyframe animation.
class StandardAnimationCode::Lists {
 public:
    Lists(const PCLanguageCodeProvider& provider, EasingModes& easingModesNeeded)
        : m_provider(provider), m_easingModesNeeded(easingModesNeeded) {}

    /// Lists the keyframes of `timeline`. `appendValue(index)` puts a keyframe's value into
    /// values(), `appendStartValue()` the value at time 0.
    template <class AppendValue, class AppendStartValue>
    void populate(const PCKeyedPropertyTimeline& timeline, AppendValue appendValue,
                  AppendStartValue appendStartValue) {
        const size_t count = timeline.keyframesCount();
        const auto duration = static_cast<float>(timeline.durationInMS());
        // An instant keyframe holds the value before it until half a millisecond before its time.
        const auto justBefore = [&](size_t i) {
            return static_cast<float>((timeline.timeOfKeyframe(i) - 0.5) /
                                      static_cast<double>(duration));
        };
        if (count > 0 && timeline.timeOfKeyframe(0) > 0) {
            appendStartValue();
            appendTime(0, 0, false);
            if (timeline.keyframeIsInstant(0)) {
                appendStartValue();
                appendTime(justBefore(0), timeline.easingModeOfKeyframe(0), false);
            }
        }
        for (size_t i = 0; i < count; ++i) {
            const int64_t easing = timeline.easingModeOfKeyframe(i);
            const auto time = static_cast<float>(timeline.timeOfKeyframe(i));
            if (i > 0 && timeline.keyframeIsInstant(i)) {
                appendValue(i - 1);
                appendTime(justBefore(i), easing, false);
            }
            appendValue(i);
            appendTime(duration == 0 ? 0 : time / duration, easing, i + 1 == count);
        }
    }

    std::string& values() { return m_values; }
    const std::string& values() const { return m_values; }
    const std::string& times() const { return m_times; }
    const std::string& timingFunctions() const { return m_timingFunctions; }

 private:
    /// Completes an entry whose value has just been appended.
    void appendTime(float fraction, int64_t easing, bool isLast) {
        const bool isFirst = m_times.empty();
        m_provider.codeForBoxedNumber(m_times, fraction);
        if (!isFirst) {
            const auto mode = static_cast<size_t>(easing >= 0 && easing <= 6 ? easing : 0);
            m_timingFunctions += tweenery::timingFunctions()[mode].variable;
            m_easingModesNeeded.set(mode);
        }
        if (isLast) return;
        m_values += ", ";
        m_times += ", ";
        if (!isFirst) m_timingFunctions += ", ";
    }

    const PCLanguageCodeProvider& m_provider;
    EasingModes& m_easingModesNeeded;
    std::string m_values;
    std::string m_times;
    std::string m_timingFunctions;
};

void StandardAnimationCode::addStandardAnimations() {
    auto& bundles = m_plan.standardAnimationExportBundles;
    std::vector<EasingModes> easingModesNeeded(bundles.size());
    parallelFor(bundles.size(), [&](size_t i) {
        easingModesNeeded[i] = generateImplmentationCodeForStandardAnimation(bundles[i]);
    });
    for (size_t i = 0; i < bundles.size(); ++i) {
        PCAnimationExportBundle& bundle = bundles[i];
        const std::string stem = methodStem(bundle.baseMethodName);
        m_provider.beginStandardAnimationWithBaseName(stem, bundle.animation->name().toStdString(),
                                                      !bundle.hasLooping,
                                                      m_plan.target.addAnimationSuffix);
        addDefinitionCodeForTimingFunctionsWithEasingModes(easingModesNeeded[i]);
        m_provider.addStandardAnimationWithBaseName(stem, bundle.generatedAddCode,
                                                    bundle.generatedRemoveCode, !bundle.hasLooping);
    }
    if (m_plan.usesCompletionBlocksTable()) m_provider.addAnimationDidStopMethod();
    if (!bundles.empty()) {
        m_provider.addRemoveAllAnimationsMethodWithBaseMethodNames(
            m_plan.animationBaseMethodNamesUsingCompletionBlock);
    }
}

void StandardAnimationCode::addDefinitionCodeForTimingFunctionsWithEasingModes(EasingModes modes) {
    for (size_t mode = 0; mode < modes.size(); ++mode) {
        if (!modes.test(mode)) continue;
        const TimingFunction& function = timingFunctions()[mode];
        if (function.builtInName.empty()) {
            m_provider.addTimingFunctionDefinitionWithControlPoints(
                function.variable, function.controlPoint1, function.controlPoint2);
        } else {
            m_provider.addTimingFunctionDefinitionWithBuiltInFunctionName(function.variable,
                                                                          function.builtInName);
        }
    }
}

StandardAnimationCode::EasingModes
StandardAnimationCode::generateImplmentationCodeForStandardAnimation(
    PCAnimationExportBundle& bundle) const {
    const PCLanguageCodeProvider& provider = m_provider;
    EasingModes easingModesNeeded;
    if (bundle.timeScalar > 0) {
        provider.codeForFloatWithName(bundle.generatedAddCode, "timeScalar", bundle.timeScalar);
    }
    if (!bundle.hasLooping) {
        provider.codeForAddingRepresentativeAnimationWithBaseName(
            bundle.generatedAddCode, bundle.baseMethodName,
            static_cast<float>(bundle.durationInMS) / 1000.0F);
        provider.codeForRemovingRepresentativeAnimationWithBaseName(bundle.generatedRemoveCode,
                                                                    bundle.baseMethodName);
    }
    for (const PCAnimationExportElementTimelines& record : bundle.timelinesByElement) {
        for (const auto& timeline : record.allNonNilTimelines()) {
            if (timeline->propertyType() == PCPropertyTypeChildrenZPositions) {
                generateCodeForChildrenOrder(bundle, easingModesNeeded, *record.element, *timeline);
            } else {
                generateCodeForTimeline(bundle, easingModesNeeded, *record.element, *timeline);
            }
        }
    }
    return easingModesNeeded;
}

void StandardAnimationCode::generateCodeForTimeline(PCAnimationExportBundle& bundle,
                                                    EasingModes& easingModesNeeded,
                                                    const PCElement& element,
                                                    const PCKeyedPropertyTimeline& timeline) const {
    const PCLanguageCodeProvider& provider = m_provider;
    Lists lists(provider, easingModesNeeded);
    if (isStringProperty(timeline.propertyType())) {
        const auto appendImage = [&](const PropertyValue& value) {
            provider.codeForImageRefWithName(
                lists.values(), withoutPathExtension(stringOfValue(value)).toStdString());
        };
        lists.populate(
            timeline, [&](size_t i) { appendImage(timeline.valueOfKeyframeAtIndex(i)); },
            [&] { appendImage(timeline.valueAtTimeInMS(0)); });
    } else {
        lists.populate(
            timeline,
            [&](size_t i) {
                provider.codeForBoxedNumber(lists.values(),
                                            timeline.floatValueOfKeyframeAtIndex(i));
            },
            [&] { provider.codeForBoxedNumber(lists.values(), timeline.floatValueAtTimeInMS(0)); });
    }
    generateCodeForAnimatingTimeline(bundle, lists, m_plan.planned(element),
                                     timeline.propertyType(), timeline);
}

/// A stacking change becomes a number animation of each child's place.
void StandardAnimationCode::generateCodeForChildrenOrder(
    PCAnimationExportBundle& bundle, EasingModes& easingModesNeeded, const PCElement& parent,
    const PCKeyedPropertyTimeline& timeline) const {
    const QStringList children = PCProject::sortedSubelementIdentifiers(parent);
    std::vector<QHash<QString, float>> placeByKeyframe(timeline.keyframesCount());
    for (size_t i = 0; i < placeByKeyframe.size(); ++i) {
        const QStringList order =
            childrenOrderInLine(arrayOfValue(timeline.storedValueOfKeyframe(i)), children);
        for (qsizetype place = order.size(); place-- > 0;)
            placeByKeyframe[i][order[place]] = static_cast<float>(place);
    }
    for (qsizetype child = 0; child < children.size(); ++child) {
        Lists lists(m_provider, easingModesNeeded);
        lists.populate(
            timeline,
            [&](size_t i) {
                m_provider.codeForBoxedNumber(lists.values(),
                                              placeByKeyframe[i].value(children[child]));
            },
            [&] { m_provider.codeForBoxedNumber(lists.values(), static_cast<float>(child)); });
        const PCElement& element = *parent.children()[static_cast<size_t>(child)];
        generateCodeForAnimatingTimeline(bundle, lists, m_plan.planned(element),
                                         PCPropertyTypeZPosition, timeline);
    }
}

void StandardAnimationCode::generateCodeForAnimatingTimeline(
    PCAnimationExportBundle& bundle, const Lists& lists, const PlannedElement& planned,
    int32_t propertyType, const PCKeyedPropertyTimeline& timeline) const {
    const PCLanguageCodeProvider& provider = m_provider;
    const std::string_view qualifier = animationQualifierForPropertyType(propertyType);
    std::string variable;
    append(variable, "%@%@Animation", planned.variable, qualifier);
    std::string key;
    append(key, "%@_%@", bundle.animation->name().toStdString(), qualifier);
    std::string duration;
    append(duration, "%0.3f", static_cast<float>(timeline.durationInMS()) / 1000.0F);
    if (bundle.timeScalar > 0) duration += " / timeScalar";

    KeyframeAnimationCode code;
    code.variableName = variable;
    code.keypath = animationKeyPathForPropertyType(propertyType);
    code.duration = duration;
    code.values = lists.values();
    code.times = lists.times();
    code.timingFunctions = lists.timingFunctions();
    if (timeline.repeatBehavior() == PCRepeatBehaviorForeverAutoreverse) code.autoreverses = true;
    code.repeatForever = timeline.repeatBehavior() != PCRepeatBehaviorNever;
    code.animationKey = key;
    if (m_plan.target.addAnimationSuffix) code.animationKeySuffix = "animationKeySuffix";
    code.elementUserName = planned.userName;
    provider.codeForAnimationWithVariableName(bundle.generatedAddCode, code);
    provider.codeForRemovingAnimationWithKey(bundle.generatedRemoveCode, key, planned.userName,
                                             planned.isLayer());
}

}  // namespace tweenery
