#include "editor/timeline/keyframe_commands.h"

#include <algorithm>
#include <unordered_map>

#include "base/errors.h"
#include "editor/timeline/easing_choice.h"
#include "editor/timeline/timeline_outline.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

using Keyframe = KeyframeCommands::Keyframe;

// The marks of Key All, and what else registers nothing itself, come back with all the rest.
void setKeyall(PCKeyedPropertyTimeline& timeline, const Keyframe& keyframe, bool keyall) {
    timeline.registerUndoOfContents();
    keyframe->setKeyall(keyall);
}

void setInstant(const Keyframe& keyframe, bool instant) {
    if (keyframe->instantTransition() != instant) { keyframe->setInstantTransition(instant); }
}

bool canJumpOrTween(const Keyframe& keyframe) {
    const auto timeline = keyframe->isInTimeline() ? keyframe->timeline() : nullptr;
    return timeline && !isMasterTimeline(*timeline) &&
           timeline->propertyType() != PCPropertyTypeChildrenZPositions;
}

PropertyValue storedValue(const PCKeyedPropertyTimeline& timeline, const PropertyValue& absolute) {
    const float* number = std::get_if<float>(&absolute);
    const TimelineOwner* element = timeline.owner();
    if (!number || !element) { return absolute; }
    const PCPropertyType type = timeline.propertyType();
    const auto [factor, offset] = factorAndOffset(type, element->setupNumberForPropertyType(type));
    return *number / factor - offset;
}

void setSplit(UndoManager& undo, const PCElement::Ptr& element, PCPropertyType type, bool split) {
    undo.registerUndo([&undo, element, type, split] { setSplit(undo, element, type, !split); });
    if (type == PCPropertyTypeScale) {
        element->setScaleTimelineSplit(split);
    } else {
        element->setTranslationTimelineSplit(split);
    }
}

}  // namespace

KeyframeCommands::KeyframeCommands(PCProject& project, PCKeyframeManager& keyframes,
                                   PCElementSelectionManager& selection, PCProjectTimeManager& time,
                                   KeyframeCommandsHost& host)
    : m_project(project),
      m_keyframes(keyframes),
      m_selection(selection),
      m_time(time),
      m_host(host) {}

// A gesture, because of which each timeline is kept as it was but once, whatever is done to it.
void KeyframeCommands::edit(const QString& name, const std::function<void()>& change) {
    m_host.asOneStep(name, [&] {
        const UndoGesture gesture(m_project.undoManager());
        change();
    });
    deselectDeleted();
}

// What there is to act on.

// In the order of the rows, with Key All at the end.
std::vector<RowKeyframes> KeyframeCommands::selectedRows() const {
    std::vector<RowKeyframes> rows = keyframesByRow(m_keyframes.selectedKeyframes());
    if (rows.size() < 2) { return rows; }
    std::unordered_map<const PCKeyedPropertyTimeline*, size_t> places;
    for (const Timeline& timeline : timelinesAndMaster()) {
        places.emplace(timeline.get(), places.size());
    }
    std::sort(rows.begin(), rows.end(), [&places](const auto& a, const auto& b) {
        return places[a.timeline.get()] < places[b.timeline.get()];
    });
    return rows;
}

Timelines KeyframeCommands::rows() const {
    Timelines timelines;
    for (const RowKeyframes& row : selectedRows()) {
        if (!isMasterTimeline(*row.timeline)) { timelines.push_back(row.timeline); }
    }
    if (!timelines.empty() || !isInAnimation()) { return timelines; }
    for (const PCElement::Ptr& element : m_selection.selectedElements()) {
        const Timelines own = TimelineOutline::timelinesForElement(*element);
        timelines.insert(timelines.end(), own.begin(), own.end());
    }
    return timelines;
}

bool KeyframeCommands::hasRows() const {
    if (!isInAnimation()) { return false; }
    if (hasKeyframes()) { return true; }
    const auto elements = m_selection.selectedElements();
    return std::any_of(elements.begin(), elements.end(), [](const PCElement::Ptr& element) {
        return !TimelineOutline::timelinesForElement(*element).empty();
    });
}

int32_t KeyframeCommands::lengthOfSelection() const {
    const auto [first, last] = std::minmax_element(
        m_keyframes.selectedKeyframes().begin(), m_keyframes.selectedKeyframes().end(),
        [](const Keyframe& a, const Keyframe& b) { return a->timeInMS() < b->timeInMS(); });
    return hasKeyframes() ? (*last)->timeInMS() - (*first)->timeInMS() : 0;
}

void KeyframeCommands::deselectDeleted() {
    const auto deleted = [](const PCKeyframeManager::KeyframeSet& all) {
        Keyframes found;
        std::copy_if(all.begin(), all.end(), std::back_inserter(found),
                     [](const Keyframe& keyframe) { return !keyframe->isInTimeline(); });
        return found;
    };
    for (const Keyframe& keyframe : deleted(m_keyframes.selectedKeyframes())) {
        m_keyframes.deselectKeyframe(keyframe);
    }
    for (const Keyframe& keyframe : deleted(m_keyframes.selectedTweens())) {
        m_keyframes.deselectTween(keyframe);
    }
}

Timelines KeyframeCommands::timelinesAndMaster() const {
    Timelines timelines = timelinesWithKeyframes(m_project);
    if (auto master = masterKeyframesTimeline(m_project)) { timelines.push_back(master); }
    return timelines;
}

// Keyframes.

void KeyframeCommands::keyAll() {
    const Timeline master = masterKeyframesTimeline(m_project);
    if (!master) { return; }
    Keyframes unmarked;
    for (const Timeline& timeline : timelinesWithKeyframes(m_project)) {
        const Keyframe keyframe = timeline->existingKeyframeAtTimeInMS(playhead());
        if (keyframe && !keyframe->keyall()) { unmarked.push_back(keyframe); }
    }
    const Keyframe present = master->existingKeyframeAtTimeInMS(playhead());
    if (present && present->keyall() && unmarked.empty()) { return; }
    edit(u"Key All"_s, [&] {
        master->setFloatPropertyValue(0, playhead())->setKeyall(true);
        for (const Keyframe& keyframe : unmarked) {
            setKeyall(*keyframe->timeline(), keyframe, true);
        }
    });
}

void KeyframeCommands::createKeyframe(const Timeline& timeline) {
    edit(u"Create Keyframe"_s, [&] { timeline->setExistingValueAtTimeInMS(playhead()); });
}

void KeyframeCommands::createKeyframes() {
    const Timelines timelines = rows();
    if (timelines.empty()) { return; }
    edit(u"Create Keyframe"_s, [&] {
        for (const Timeline& timeline : timelines) {
            timeline->setExistingValueAtTimeInMS(playhead());
        }
    });
}

void KeyframeCommands::deleteSelection() {
    if (!hasKeyframesOrTweens()) { return; }
    edit(u"Delete Keyframes"_s, [this] {
        for (const Keyframe& endKeyframe : m_keyframes.selectedTweens()) {
            if (endKeyframe->isInTimeline()) { setInstant(endKeyframe, true); }
        }
        deleteKeyframes();
    });
    m_keyframes.deselectAllTweens();
}

void KeyframeCommands::deleteKeyframes() {
    std::unordered_set<int32_t> masterTimes;
    for (const RowKeyframes& row : selectedRows()) {
        if (isMasterTimeline(*row.timeline)) {
            for (const Keyframe& keyframe : row.keyframes) {
                masterTimes.insert(keyframe->timeInMS());
            }
        }
        row.timeline->deleteKeyframes(row.keyframes);
    }
    if (!masterTimes.empty()) { clearKeyallMarksAt(masterTimes); }
}

void KeyframeCommands::clearKeyallMarksAt(const std::unordered_set<int32_t>& times) {
    for (const Timeline& timeline : timelinesWithKeyframes(m_project)) {
        for (size_t i = 0; i < timeline->keyframesCount(); ++i) {
            const bool isMarked = timeline->packedKeyframes().keys[i].has(PackedKeyframe::kKeyall);
            if (!isMarked || !times.contains(timeline->timeOfKeyframe(i))) { continue; }
            setKeyall(*timeline, timeline->existingKeyframeAtKeyframeIndex(i), false);
        }
    }
}

bool KeyframeCommands::canSwitchTransitionType() const {
    const auto& keyframes = m_keyframes.selectedKeyframes();
    return std::any_of(keyframes.begin(), keyframes.end(), canJumpOrTween);
}

bool KeyframeCommands::selectionIsInstant() const {
    const Keyframe* earliest = nullptr;
    for (const Keyframe& keyframe : m_keyframes.selectedKeyframes()) {
        if (!canJumpOrTween(keyframe)) { continue; }
        if (!earliest || keyframe->timeInMS() < (*earliest)->timeInMS()) { earliest = &keyframe; }
    }
    return earliest && (*earliest)->instantTransition();
}

void KeyframeCommands::switchTransitionType() {
    if (!canSwitchTransitionType()) { return; }
    const bool instant = !selectionIsInstant();
    edit(instant ? u"Make Instant Keyframe"_s : u"Make Tweened Keyframe"_s, [&] {
        for (const Keyframe& keyframe : m_keyframes.selectedKeyframes()) {
            if (canJumpOrTween(keyframe)) { setInstant(keyframe, instant); }
        }
    });
}

void KeyframeCommands::setEasing(PCEasingMode mode) {
    if (!hasKeyframesOrTweens()) { return; }
    const bool hasTweens = !m_keyframes.selectedTweens().empty();
    edit(mode == easingModeInstant ? u"Make Instant"_s : u"Change Easing"_s, [&] {
        setEasingOf(hasTweens ? m_keyframes.selectedTweens() : m_keyframes.selectedKeyframes(),
                    mode);
    });
}

// Rows.

void KeyframeCommands::deleteTimelines(const QString& name, const Timelines& timelines) {
    if (timelines.empty()) { return; }
    edit(name, [&] {
        for (const Timeline& timeline : timelines) {
            timeline->registerUndoOfContents();
            timeline->removeAllKeyframes();
            timeline->setRepeatBehavior(PCRepeatBehaviorNever);
        }
    });
}

void KeyframeCommands::deleteTimeline(const Timeline& timeline) {
    deleteTimelines(u"Delete Timeline"_s, {timeline});
}

void KeyframeCommands::deleteTimelines() {
    deleteTimelines(u"Delete Timeline"_s, rows());
}

void KeyframeCommands::deleteAllTimelines(const PCElement& element) {
    deleteTimelines(u"Delete All Timelines"_s, TimelineOutline::timelinesForElement(element));
}

void KeyframeCommands::deleteAllTimelines() {
    Timelines all;
    std::unordered_set<const PCElement*> elements;
    for (const Timeline& timeline : rows()) {
        const PCElement* element = timeline->element();
        if (!element || !elements.insert(element).second) { continue; }
        const Timelines own = TimelineOutline::timelinesForElement(*element);
        all.insert(all.end(), own.begin(), own.end());
    }
    deleteTimelines(u"Delete All Timelines"_s, all);
}

void KeyframeCommands::splitTimeline(const PCKeyedPropertyTimeline& timeline) {
    const PCPropertyType type = timeline.propertyType();
    PCElement* element = timeline.element();
    assertContract(element && (type == PCPropertyTypeScale || type == PCPropertyTypeTranslation),
                   u"only a combined timeline of scale or translation can be split"_s);
    edit(u"Split Timeline"_s,
         [&] { setSplit(m_project.undoManager(), element->shared_from_this(), type, true); });
}

void KeyframeCommands::cycleLoopModes(const Timelines& timelines) {
    const auto leading =
        std::find_if(timelines.begin(), timelines.end(),
                     [](const Timeline& timeline) { return timeline->canRepeat(); });
    if (timelines.empty()) { return; }
    constexpr int kModes = 3;
    PCRepeatBehavior next = PCRepeatBehaviorNever;
    if (leading != timelines.end()) {
        next = static_cast<PCRepeatBehavior>(((*leading)->repeatBehavior() + 1) % kModes);
    }
    edit(u"Change Loop Mode"_s, [&] {
        for (const Timeline& timeline : timelines) {
            const auto behavior = timeline->canRepeat() ? next : PCRepeatBehaviorNever;
            if (timeline->repeatBehavior() != behavior) { timeline->setRepeatBehavior(behavior); }
        }
    });
}

// Selecting.

void KeyframeCommands::select(const Keyframes& keyframes) {
    m_keyframes.deselectAllTweens();
    m_keyframes.selectKeyframes({keyframes.begin(), keyframes.end()});
}

void KeyframeCommands::selectAll() {
    Keyframes all;
    for (const Timeline& timeline : timelinesWithKeyframes(m_project)) {
        const Keyframes own = timeline->keyframesSortedByTime();
        all.insert(all.end(), own.begin(), own.end());
    }
    select(all);
}

void KeyframeCommands::selectAtPlayhead() {
    Keyframes here;
    for (const Timeline& timeline : timelinesWithKeyframes(m_project)) {
        for (size_t i = timeline->firstKeyframeIndexAtOrAfterTimeInMS(playhead());
             i < timeline->keyframesCount() && timeline->timeOfKeyframe(i) == playhead(); ++i) {
            here.push_back(timeline->existingKeyframeAtKeyframeIndex(i));
        }
    }
    select(here);
}

void KeyframeCommands::selectAfterPlayhead() {
    Keyframes later;
    for (const Timeline& timeline : timelinesWithKeyframes(m_project)) {
        // Of the place before the first keyframe, which is -1, the next is 0.
        for (size_t i = timeline->firstKeyframeIndexAtOrBeforeTimeInMS(playhead()) + 1;
             i < timeline->keyframesCount(); ++i) {
            later.push_back(timeline->existingKeyframeAtKeyframeIndex(i));
        }
    }
    select(later);
}

void KeyframeCommands::selectRows() {
    Keyframes all;
    for (const Timeline& timeline : rows()) {
        const Keyframes own = timeline->keyframesSortedByTime();
        all.insert(all.end(), own.begin(), own.end());
    }
    select(all);
}

void KeyframeCommands::selectRow(const PCKeyedPropertyTimeline& timeline) {
    select(timeline.keyframesSortedByTime());
}

void KeyframeCommands::deselectAll() {
    select({});
}

void KeyframeCommands::selectNeighbour(TimeDirection direction) {
    const auto rows = selectedRows();
    if (rows.empty()) { return; }
    const bool isLater = direction == TimeDirection::Later;
    const auto byLast = [](const RowKeyframes& a, const RowKeyframes& b) {
        return a.lastTimeInMS() < b.lastTimeInMS();
    };
    const auto byFirst = [](const RowKeyframes& a, const RowKeyframes& b) {
        return a.firstTimeInMS() < b.firstTimeInMS();
    };
    const Keyframe outermost =
        isLater ? std::max_element(rows.begin(), rows.end(), byLast)->keyframes.back()
                : std::min_element(rows.begin(), rows.end(), byFirst)->keyframes.front();
    const Keyframe neighbour = isLater ? outermost->nextKeyframe() : outermost->prevKeyframe();
    if (neighbour) { select({neighbour}); }
}

// The playhead.

void KeyframeCommands::goToKeyframe(TimeDirection direction) {
    std::optional<int32_t> found;
    for (const Timeline& timeline : timelinesAndMaster()) {
        const bool isLater = direction == TimeDirection::Later;
        if (isLater && playhead() == INT32_MAX) { return; }
        const size_t index = isLater
                                 ? timeline->firstKeyframeIndexAtOrAfterTimeInMS(playhead() + 1)
                                 : timeline->firstKeyframeIndexAtOrBeforeTimeInMS(playhead() - 1);
        if (index == PCKeyedPropertyTimeline::kNotFound) { continue; }
        const int32_t time = timeline->timeOfKeyframe(index);
        if (!found || (isLater ? time < *found : time > *found)) { found = time; }
    }
    if (found) { m_time.setPlayheadPositionInMS(*found); }
}

// One keyframe.

Keyframe KeyframeCommands::singleKeyframe() const {
    const auto& keyframes = m_keyframes.selectedKeyframes();
    if (keyframes.size() != 1 || !(*keyframes.begin())->isInTimeline()) { return nullptr; }
    return *keyframes.begin();
}

QString KeyframeCommands::setTimeAndValue(const Keyframe& keyframe, int32_t timeInMS,
                                          const std::optional<PropertyValue>& value) {
    if (!keyframe->isInTimeline()) { return u"The keyframe is no longer there."_s; }
    const Timeline timeline = keyframe->timeline();
    const bool moves = keyframe->timeInMS() != timeInMS;
    if (moves && timeline->existingKeyframeAtTimeInMS(timeInMS)) {
        return u"There is a keyframe at %1 ms already."_s.arg(timeInMS);
    }
    const PropertyValue stored = value ? storedValue(*timeline, *value) : keyframe->propertyValue();
    const bool changes = !valuesEqual(stored, keyframe->propertyValue());
    if (!moves && !changes) { return {}; }
    edit(u"Change Keyframe"_s, [&] {
        if (moves) { timeline->setTimes({{keyframe, timeInMS}}); }
        if (changes) { timeline->setStoredPropertyValue(stored, keyframe); }
    });
    return {};
}

}  // namespace tweenery
