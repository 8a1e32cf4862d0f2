// Copying, cutting and pasting keyframes.

#include <algorithm>

#include "editor/timeline/keyframe_clip.h"
#include "editor/timeline/keyframe_commands.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

struct RowToWrite {
    PCKeyedPropertyTimeline::Ptr timeline;
    std::vector<KeyframeRecord> records;
};

RowToWrite rowToWrite(const ClipTarget& target, int32_t startTime) {
    const KeyframeClip::Track& track = *target.track;
    RowToWrite row{target.element->timeline(track.property), {}};
    for (const KeyframeClip::Key& key : track.keys) {
        KeyframeRecord record;
        record.timeInMS = startTime + key.offsetInMS;
        record.easingMode = key.easing;
        record.instantTransition = key.instant;
        record.value = pasteableValue(key.value, track.property, *target.element);
        if (std::holds_alternative<std::monostate>(record.value)) { return {}; }
        row.records.push_back(std::move(record));
    }
    return row;
}

// A value that is held at a master keyframe.
struct Pin {
    PropertyValue value;
    int32_t timeInMS = 0;
};

void writePin(PCKeyedPropertyTimeline& timeline, const Pin& pin) {
    const auto write = [&] {
        if (const float* number = std::get_if<float>(&pin.value)) {
            return timeline.setFloatPropertyValue(*number, pin.timeInMS);
        }
        return timeline.setStoredPropertyValue(pin.value, pin.timeInMS);
    };
    const auto keyframe = write();
    keyframe->setKeyall(true);
    if (timeline.isInstantTransition()) { keyframe->setInstantTransition(true); }
}

// Key All is a wall: what a row has at the master keyframes around what is written stays so.
std::vector<Pin> pinsAround(const RowToWrite& row, const PCKeyedPropertyTimeline& master,
                            bool tweenOn) {
    std::vector<Pin> pins;
    const auto add = [&](const PCKeyedPropertyTimeline::KeyframePtr& wall) {
        if (!wall) { return; }
        pins.push_back({row.timeline->valueAtTimeInMS(wall->timeInMS()), wall->timeInMS()});
    };
    const int32_t first = row.records.front().timeInMS;
    const int32_t last = row.records.back().timeInMS;
    if (tweenOn) { add(master.keyframeAtOrBeforeTimeInMS(first - 1)); }
    if (last < INT32_MAX) { add(master.keyframeAtOrAfterTimeInMS(last + 1)); }
    return pins;
}

}  // namespace

void KeyframeCommands::copy(PasteboardPort& pasteboard) const {
    const KeyframeClip clip = KeyframeClip::copyOf(selectedRows());
    if (clip.tracks.empty()) { return; }
    pasteboard.write({{KeyframeClip::kPasteboardType, clip.propertyList()}});
}

void KeyframeCommands::cut(PasteboardPort& pasteboard) {
    if (!hasKeyframes()) { return; }
    copy(pasteboard);
    edit(u"Cut Keyframes"_s, [this] { deleteKeyframes(); });
}

bool KeyframeCommands::canPasteFrom(const PasteboardPort& pasteboard) {
    return !pasteboard.read(KeyframeClip::kPasteboardType).isEmpty();
}

QString KeyframeCommands::paste(const PasteboardPort& pasteboard) {
    const Timeline master = masterKeyframesTimeline(m_project);
    if (!master) { return u"Keyframes belong to an animation. Select one first."_s; }
    const QVariantList lists = pasteboard.read(KeyframeClip::kPasteboardType);
    if (lists.isEmpty()) { return u"There are no keyframes on the clipboard."_s; }
    const KeyframeClip clip = KeyframeClip::fromPropertyList(lists.first());
    if (clip.lengthInMS() > INT32_MAX - playhead()) {
        return u"There is no time as late as that for the last keyframe."_s;
    }
    const ClipTargets found = targetsOf(clip, m_project, m_selection.selectedElements());
    if (!found.refusal.isEmpty()) { return found.refusal; }
    std::vector<RowToWrite> rows;
    for (const ClipTarget& target : found.targets) {
        RowToWrite row = rowToWrite(target, playhead());
        if (row.timeline) { rows.push_back(std::move(row)); }
    }
    if (rows.empty()) { return u"What was copied is of properties that the element lacks."_s; }
    Keyframes pasted;
    edit(u"Paste Keyframes"_s, [&] {
        for (const RowToWrite& row : rows) {
            const auto pins = pinsAround(row, *master, m_project.tweenOn());
            const Keyframes written = row.timeline->writeKeyframes(row.records);
            pasted.insert(pasted.end(), written.begin(), written.end());
            for (const Pin& pin : pins) {
                writePin(*row.timeline, pin);
            }
        }
    });
    select(pasted);
    return {};
}

}  // namespace tweenery
