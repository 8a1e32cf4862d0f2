// The commands of the timeline that move keyframes in time.

#include <algorithm>
#include <cmath>

#include "editor/timeline/keyframe_commands.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

using Keyframe = KeyframeCommands::Keyframe;
using KeyframeTimes = std::vector<PCKeyedPropertyTimeline::KeyframeTime>;

struct TimeSpan {
    int32_t start = 0;
    int32_t end = 0;
};

TimeSpan spanOf(const std::vector<RowKeyframes>& rows) {
    TimeSpan span{INT32_MAX, 0};
    for (const RowKeyframes& row : rows) {
        span.start = std::min(span.start, row.firstTimeInMS());
        span.end = std::max(span.end, row.lastTimeInMS());
    }
    return span;
}

// Whether the keyframes of one row, given in its order with new times, stay between those beside
// them, and apart.
bool keepTheirOrder(const PCKeyedPropertyTimeline& timeline, const KeyframeTimes& moved) {
    const auto isApart = [](int64_t oldGap, int64_t newGap) {
        return oldGap == 0 ? newGap == 0 : newGap > 0;
    };
    for (size_t i = 0; i < moved.size(); ++i) {
        const size_t index = moved[i].keyframe->index();
        const int64_t oldTime = timeline.timeOfKeyframe(index);
        const int64_t newTime = moved[i].timeInMS;
        const bool followsMoved = i > 0 && moved[i - 1].keyframe->index() + 1 == index;
        if (index > 0) {
            const int64_t before = timeline.timeOfKeyframe(index - 1);
            const int64_t newBefore = followsMoved ? moved[i - 1].timeInMS : before;
            if (!isApart(oldTime - before, newTime - newBefore)) { return false; }
        }
        const bool leadsMoved = i + 1 < moved.size() && moved[i + 1].keyframe->index() == index + 1;
        if (!leadsMoved && index + 1 < timeline.keyframesCount()) {
            const int64_t after = timeline.timeOfKeyframe(index + 1);
            if (!isApart(after - oldTime, after - newTime)) { return false; }
        }
    }
    return true;
}

PCEasingMode easingTurnedRound(PCEasingMode mode) {
    switch (mode) {
        case PCEasingModeEaseIn:
            return PCEasingModeEaseOut;
        case PCEasingModeEaseOut:
            return PCEasingModeEaseIn;
        case PCEasingModeAnticipate:
            return PCEasingModeOvershoot;
        case PCEasingModeOvershoot:
            return PCEasingModeAnticipate;
        default:
            return mode;
    }
}

// How one keyframe is reached.
struct Transition {
    PCEasingMode easing = PCEasingModeLinear;
    bool instant = false;

    explicit Transition(const PCPropertyKeyframe& keyframe)
        : easing(keyframe.easingMode()), instant(keyframe.instantTransition()) {}
    void applyTo(PCPropertyKeyframe& keyframe) const {
        if (keyframe.easingMode() != easing) { keyframe.setEasingMode(easing); }
        if (keyframe.instantTransition() != instant) { keyframe.setInstantTransition(instant); }
    }
};

// The easing between two keyframes belongs to the later one: the other one, once turned round.
void turnTransitionsRound(const PCKeyedPropertyTimeline::Keyframes& keyframes) {
    const Transition intoFirst(*keyframes.front());
    for (size_t i = 0; i + 1 < keyframes.size(); ++i) {
        Transition turned(*keyframes[i + 1]);
        turned.easing = easingTurnedRound(turned.easing);
        turned.applyTo(*keyframes[i]);
    }
    intoFirst.applyTo(*keyframes.back());
}

KeyframeTimes shifted(const PCKeyedPropertyTimeline& timeline, int64_t fromTime, int64_t delta) {
    KeyframeTimes times;
    if (fromTime > INT32_MAX) { return times; }
    for (size_t i = timeline.firstKeyframeIndexAtOrAfterTimeInMS(static_cast<int32_t>(fromTime));
         i < timeline.keyframesCount(); ++i) {
        times.push_back({timeline.existingKeyframeAtKeyframeIndex(i),
                         static_cast<int32_t>(timeline.timeOfKeyframe(i) + delta)});
    }
    return times;
}

}  // namespace

void KeyframeCommands::setTimes(const QString& name, const TimeOf& newTime) {
    edit(name, [&] {
        for (const RowKeyframes& row : selectedRows()) {
            KeyframeTimes times;
            for (const Keyframe& keyframe : row.keyframes) {
                times.push_back({keyframe, newTime(keyframe->timeInMS())});
            }
            row.timeline->setTimes(times);
        }
    });
}

void KeyframeCommands::moveByTick(TimeDirection direction) {
    const auto rows = selectedRows();
    if (rows.empty()) { return; }
    const bool isLater = direction == TimeDirection::Later;
    const auto tick = [this, isLater](int32_t time) {
        return isLater ? m_time.zoomSpecificTickAfterTimeInMS(time)
                       : m_time.zoomSpecificTickBeforeTimeInMS(time);
    };
    const TimeSpan span = spanOf(rows);
    for (const RowKeyframes& row : rows) {
        const Keyframe& outermost = isLater ? row.keyframes.back() : row.keyframes.front();
        if (outermost->timeInMS() != (isLater ? span.end : span.start)) { continue; }
        const int32_t target = tick(outermost->timeInMS());
        const Keyframe neighbour = isLater ? outermost->nextKeyframe() : outermost->prevKeyframe();
        const bool isBlocked = isLater ? (neighbour ? target >= neighbour->timeInMS()
                                                    : target == outermost->timeInMS())
                                       : target <= (neighbour ? neighbour->timeInMS() : -1);
        if (isBlocked) { return; }
    }
    setTimes(u"Move Keyframes"_s, tick);
}

void KeyframeCommands::nudge(TimeDirection direction) {
    const auto rows = selectedRows();
    if (rows.empty()) { return; }
    const int64_t delta = static_cast<int>(direction);
    for (const RowKeyframes& row : rows) {
        for (const Keyframe& keyframe : row.keyframes) {
            const int64_t target = keyframe->timeInMS() + delta;
            if (target < 0 || target > INT32_MAX) { return; }
            const Keyframe there =
                row.timeline->existingKeyframeAtTimeInMS(static_cast<int32_t>(target));
            if (there && !m_keyframes.keyframeIsSelected(there)) { return; }
        }
    }
    setTimes(u"Move Keyframes"_s,
             [delta](int32_t time) { return static_cast<int32_t>(time + delta); });
}

void KeyframeCommands::reverse() {
    const auto rows = selectedRows();
    if (lengthOfSelection() == 0) { return; }
    const auto [start, end] = spanOf(rows);
    edit(u"Reverse Keyframes"_s, [&] {
        for (const RowKeyframes& row : rows) {
            KeyframeTimes times;
            for (const Keyframe& keyframe : row.keyframes) {
                const int64_t mirrored = int64_t{start} + end - keyframe->timeInMS();
                times.push_back({keyframe, static_cast<int32_t>(mirrored)});
            }
            row.timeline->setTimes(times);
            turnTransitionsRound(row.keyframes);
        }
    });
}

QString KeyframeCommands::stretchTo(int32_t lengthInMS) {
    const auto rows = selectedRows();
    const int32_t length = lengthOfSelection();
    if (length == 0) { return u"Two keyframes of different times have to be selected."_s; }
    if (length == lengthInMS) { return {}; }
    const int64_t start = spanOf(rows).start;
    if (start + lengthInMS > INT32_MAX) { return u"There is no time as late as that."_s; }
    const double ratio = static_cast<double>(lengthInMS) / length;
    std::vector<KeyframeTimes> stretched;
    for (const RowKeyframes& row : rows) {
        KeyframeTimes& times = stretched.emplace_back();
        for (const Keyframe& keyframe : row.keyframes) {
            const auto offset = static_cast<double>(keyframe->timeInMS() - start);
            times.push_back({keyframe, static_cast<int32_t>(start + std::llround(offset * ratio))});
        }
        if (keepTheirOrder(*row.timeline, times)) { continue; }
        return u"On %1 a keyframe would reach or pass another one."_s.arg(nameOfRow(*row.timeline));
    }
    edit(u"Stretch Keyframes"_s, [&] {
        for (size_t i = 0; i < rows.size(); ++i) {
            rows[i].timeline->setTimes(stretched[i]);
        }
    });
    return {};
}

QString KeyframeCommands::insertTime(int32_t lengthInMS) {
    const Timelines timelines = timelinesAndMaster();
    bool hasLater = false;
    for (const Timeline& timeline : timelines) {
        if (timeline->isEmpty() || timeline->durationInMS() < playhead()) { continue; }
        hasLater = true;
        if (int64_t{timeline->durationInMS()} + lengthInMS > INT32_MAX) {
            return u"There is no time as late as that for the last keyframe."_s;
        }
    }
    if (!hasLater) { return u"There is no keyframe at the playhead or after it."_s; }
    if (lengthInMS == 0) { return {}; }
    edit(u"Insert Time"_s, [&] {
        for (const Timeline& timeline : timelines) {
            timeline->setTimes(shifted(*timeline, playhead(), lengthInMS));
        }
    });
    return {};
}

QString KeyframeCommands::removeTime(int32_t lengthInMS) {
    const Timelines timelines = timelinesAndMaster();
    const bool hasLater =
        std::any_of(timelines.begin(), timelines.end(), [this](const Timeline& timeline) {
            return !timeline->isEmpty() && timeline->durationInMS() >= playhead();
        });
    if (!hasLater) { return u"There is no keyframe at the playhead or after it."_s; }
    if (lengthInMS == 0) { return {}; }
    const int64_t end = int64_t{playhead()} + lengthInMS;
    edit(u"Remove Time"_s, [&] {
        for (const Timeline& timeline : timelines) {
            Keyframes within;
            for (size_t i = timeline->firstKeyframeIndexAtOrAfterTimeInMS(playhead());
                 i < timeline->keyframesCount() && timeline->timeOfKeyframe(i) < end; ++i) {
                within.push_back(timeline->existingKeyframeAtKeyframeIndex(i));
            }
            timeline->deleteKeyframes(within);
            timeline->setTimes(shifted(*timeline, end, -int64_t{lengthInMS}));
        }
    });
    return {};
}

}  // namespace tweenery
