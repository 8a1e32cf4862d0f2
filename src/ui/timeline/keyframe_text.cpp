#include "ui/timeline/keyframe_text.h"

#include <numbers>

#include "base/number_text.h"
#include "editor/timeline/easing_choice.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

constexpr double kPercent = 100;

// Up to two decimals.
QString numberText(double value) {
    QString text = QString::fromStdString(fixedText(value, 2));
    while (text.endsWith(u'0')) {
        text.chop(1);
    }
    if (text.endsWith(u'.')) { text.chop(1); }
    return text == u"-0" ? u"0"_s : text;
}

QString valueText(const PCKeyedPropertyTimeline& timeline, size_t index) {
    const PropertyValue value = timeline.valueOfKeyframeAtIndex(index);
    const double number = static_cast<double>(floatOfValue(value));
    switch (timeline.propertyType()) {
        case PCPropertyTypeImageContents:
            return stringOfValue(value);
        case PCPropertyTypeChildrenZPositions:
            return u"order of %1"_s.arg(arrayOfValue(value).size());
        case PCPropertyTypeZRotation:
            return numberText(number * 180 / std::numbers::pi) + u'°';
        case PCPropertyTypeOpacity:
        case PCPropertyTypeScaleX:
        case PCPropertyTypeScaleY:
            return numberText(number * kPercent) + u'%';
        default:
            return numberText(number) + u" pt"_s;
    }
}

}  // namespace

QString timelineName(const PCKeyedPropertyTimeline& timeline) {
    QString name = timeline.displayString();
    if (name.endsWith(u':')) { name.chop(1); }
    return name;
}

QString keyframeName(const PCKeyedPropertyTimeline& timeline, size_t index) {
    return u"%1, %2 ms"_s.arg(timelineName(timeline)).arg(timeline.timeOfKeyframe(index));
}

QString keyframeDescription(const PCKeyedPropertyTimeline& timeline, size_t index) {
    return valueText(timeline, index) + u", "_s + easingName(timeline, index);
}

QString tweenName(const PCKeyedPropertyTimeline& timeline, size_t endIndex) {
    const int32_t start = endIndex == 0 ? 0 : timeline.timeOfKeyframe(endIndex - 1);
    return u"%1, %2 to %3 ms"_s.arg(timelineName(timeline))
        .arg(start)
        .arg(timeline.timeOfKeyframe(endIndex));
}

QString easingName(const PCKeyedPropertyTimeline& timeline, size_t index) {
    const bool jumps = timeline.keyframeIsInstant(index);
    return QString::fromLatin1(
        easingChoice(jumps ? easingModeInstant : timeline.easingModeOfKeyframe(index)).label);
}

QString masterKeyframeName(int32_t timeInMS) {
    return u"Key All, %1 ms"_s.arg(timeInMS);
}

QString loopModeName(PCRepeatBehavior behavior) {
    switch (behavior) {
        case PCRepeatBehaviorForever:
            return u"Loop"_s;
        case PCRepeatBehaviorForeverAutoreverse:
            return u"Autoreverse"_s;
        default:
            return u"No loop"_s;
    }
}

QStringList keyframeMenu(bool canSwitchTransition) {
    QStringList commands{u"deleteKeyframes"_s, u"editKeyframe"_s,   u"cutKeyframes"_s,
                         u"copyKeyframes"_s,   u"pasteKeyframes"_s, u"reverseKeyframes"_s,
                         u"stretchKeyframes"_s};
    if (canSwitchTransition) { commands.prepend(u"switchTransitionType"_s); }
    return commands;
}

QStringList trackMenu() {
    return {u"pasteKeyframes"_s,
            u"selectAllKeyframes"_s,
            u"selectKeyframesAtPlayhead"_s,
            u"selectKeyframesAfterPlayhead"_s,
            u"insertTime"_s,
            u"removeTime"_s};
}

QStringList timelineRowMenu() {
    return {u"deleteTimeline"_s, u"createKeyframes"_s, u"cycleLoopMode"_s,
            u"selectKeyframesOfRows"_s, u"pasteKeyframes"_s};
}

QStringList elementRowMenu() {
    return {u"deleteAllTimelines"_s, u"createKeyframes"_s, u"selectKeyframesOfRows"_s,
            u"showOnlySelectedRows"_s};
}

}  // namespace tweenery
