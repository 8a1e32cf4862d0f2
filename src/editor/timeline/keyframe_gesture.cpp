#include "editor/timeline/keyframe_gesture.h"

#include <algorithm>

#include "editor/timeline/playhead_gesture.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

void pin(PCKeyedPropertyTimeline& timeline, int32_t timeInMS) {
    const TimelineKeyframe keyframe = timeline.setExistingValueAtTimeInMS(timeInMS);
    if (timeline.isInstantTransition()) { keyframe->setInstantTransition(true); }
    keyframe->setKeyall(true);
}

}  // namespace

KeyframeGesture::KeyframeGesture(const TimelineScene& scene, const TimelineKeyframe& pressed,
                                 bool duplicates)
    : KeyframeDragGesture(scene, pressed) {
    if (duplicates) { duplicate(); }
    m_leaderStart = m_leader->timeInMS();
    m_tracks = draggedTracks(m_scene.keyframes);
    m_limits = limits();
}

// One at the end of all times has no copy, and is left alone.
void KeyframeGesture::duplicate() {
    m_originals = m_scene.keyframes.selectedKeyframes();
    const TimelineKeyframe pressed = m_leader;
    PCKeyframeManager::KeyframeSet copies;
    for (const auto& [timeline, start] : draggedTracks(m_scene.keyframes)) {
        PCKeyedPropertyTimeline::Keyframes originals;
        for (const auto& [keyframe, timeInMS] : start) {
            originals.push_back(keyframe);
        }
        for (const auto& [original, copy] : timeline->duplicateKeyframes(originals)) {
            copies.insert(copy);
            if (original == pressed) { m_leader = copy; }
        }
    }
    m_scene.keyframes.selectKeyframes(copies);
}

bool KeyframeGesture::isSqueezed(const TimelineScene& scene, const PCPropertyKeyframe& keyframe) {
    const auto previous = keyframe.prevKeyframe();
    const auto next = keyframe.nextKeyframe();
    if (!previous || !next) { return false; }
    const int64_t tick = scene.time.subsegmentWidthInMS();
    const int64_t time = keyframe.timeInMS();
    return time - previous->timeInMS() < tick && next->timeInMS() - time < tick;
}

// All of the dragged one's time. Copies may go anywhere from 0 on.
TimeLimits KeyframeGesture::limits() const {
    TimeLimits all;
    const int32_t leader = m_leader->timeInMS();
    for (const auto& [timeline, start] : m_tracks) {
        for (const auto& [keyframe, time] : start) {
            const TimeLimits own =
                m_originals.empty() ? limitsBetweenNeighbours(m_scene, *timeline, keyframe->index())
                                    : TimeLimits();
            all.from = std::max(all.from, own.from - time + leader);
            all.to = std::min(all.to, own.to - time + leader);
        }
    }
    return all;
}

void KeyframeGesture::moveLeaderTo(int32_t timeInMS) {
    const int32_t delta = timeInMS - m_leaderStart;
    setTimes(m_tracks, [delta](int32_t start) { return start + delta; });
    pinAtMasterKeyframes();
}

bool KeyframeGesture::release() {
    snapPlayhead(m_scene.time);
    if (!m_originals.empty() && !removeCopiesThatStayed()) {
        m_scene.keyframes.selectKeyframes(m_originals);
        return false;
    }
    const int32_t delta = m_leader->timeInMS() - m_leaderStart;
    bool hasMoved = false;
    setTimes(m_tracks, [&](int32_t start) {
        const int32_t end = m_scene.time.zoomSpecificTickClosestToTimeInMS(start + delta);
        hasMoved = hasMoved || end != start;
        return end;
    });
    return hasMoved;
}

// True when some are left.
bool KeyframeGesture::removeCopiesThatStayed() {
    const auto tick = [this](int32_t time) {
        return m_scene.time.zoomSpecificTickClosestToTimeInMS(time);
    };
    bool someAreLeft = false;
    for (const auto& [timeline, start] : m_tracks) {
        PCKeyedPropertyTimeline::Keyframes stayed;
        for (const auto& [copy, time] : start) {
            if (tick(time) == tick(copy->timeInMS())) { stayed.push_back(copy); }
        }
        someAreLeft = someAreLeft || stayed.size() < start.size();
        for (const TimelineKeyframe& copy : stayed) {
            m_scene.keyframes.deselectKeyframe(copy);
        }
        timeline->deleteKeyframes(stayed);
    }
    return someAreLeft;
}

void KeyframeGesture::pinAtMasterKeyframes() {
    const auto animation = m_scene.project.animationsManager().selectedAnimation();
    if (!animation || m_leader->keyall()) { return; }
    const PCKeyedPropertyTimeline& master = *animation->masterKeyframesTimeline();
    const int32_t time = m_leader->timeInMS();
    const auto here = master.existingKeyframeAtTimeInMS(time);
    const auto before = here ? here->prevKeyframe() : master.keyframeAtOrBeforeTimeInMS(time);
    const auto after = here ? here->nextKeyframe() : master.keyframeAtOrAfterTimeInMS(time);
    PCKeyedPropertyTimeline& timeline = *m_leader->timeline();
    if (before && !m_leader->instantTransition()) { pin(timeline, before->timeInMS()); }
    if (after) { pin(timeline, after->timeInMS()); }
}

QString KeyframeGesture::actionName() const {
    const bool isOne = m_scene.keyframes.selectedKeyframes().size() == 1;
    if (m_originals.empty()) { return isOne ? u"Move Keyframe"_s : u"Move Keyframes"_s; }
    return isOne ? u"Duplicate Keyframe"_s : u"Duplicate Keyframes"_s;
}

}  // namespace tweenery
