#include "ui/timeline/keyframe_text.h"

#include <QKeySequence>

#include "editor/commands.h"
#include "editor/timeline/easing_choice.h"
#include "editor/timeline/keyframe_value_text.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

QString valueText(const PCKeyedPropertyTimeline& timeline, size_t index) {
    const QString text = textOfKeyframeValue(*timeline.existingKeyframeAtKeyframeIndex(index));
    return text.isNull() ? u"order"_s : text;
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

QString commandToolTip(const QString& text, const QString& command) {
    const Command* known = commandNamed(command);
    if (!known || known->shortcuts.isEmpty()) { return text; }
    const auto shortcuts = QKeySequence::listFromString(known->shortcuts);
    return u"%1 (%2)"_s.arg(text, shortcuts.first().toString(QKeySequence::NativeText));
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

QStringList rulerMenu() {
    return {u"loopRange"_s, u"setLoopStart"_s, u"setLoopEnd"_s, u"clearLoopRange"_s};
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
