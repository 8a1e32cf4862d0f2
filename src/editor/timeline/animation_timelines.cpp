#include "editor/timeline/animation_timelines.h"

#include <algorithm>
#include <unordered_map>

#include "editor/timeline/timeline_outline.h"
#include "model/project.h"

using namespace Qt::StringLiterals;

namespace tweenery {

Timelines timelinesWithKeyframes(PCProject& project) {
    Timelines all;
    if (project.isSetupMode()) { return all; }
    for (const PCElement::Ptr& element : project.canvas()->reversedElementAndAllDescendants()) {
        const Timelines timelines = TimelineOutline::timelinesForElement(*element);
        all.insert(all.end(), timelines.begin(), timelines.end());
    }
    return all;
}

PCKeyedPropertyTimeline::Ptr masterKeyframesTimeline(PCProject& project) {
    const PCAnimation::Ptr animation = project.animationsManager().selectedAnimation();
    return animation ? animation->masterKeyframesTimeline() : nullptr;
}

bool isMasterTimeline(const PCKeyedPropertyTimeline& timeline) {
    return timeline.owner() == nullptr;
}

QString nameOfRow(const PCKeyedPropertyTimeline& timeline) {
    const PCElement* element = timeline.element();
    if (!element) { return u"Key All"_s; }
    return u"%1, %2"_s.arg(element->name(), timeline.displayString().remove(u':'));
}

std::vector<RowKeyframes> keyframesByRow(
    const std::unordered_set<PCKeyedPropertyTimeline::KeyframePtr>& keyframes) {
    std::vector<RowKeyframes> rows;
    std::unordered_map<PCKeyedPropertyTimeline*, size_t> places;
    for (const auto& keyframe : keyframes) {
        if (!keyframe->isInTimeline()) { continue; }
        const auto timeline = keyframe->timeline();
        const auto [place, isNew] = places.try_emplace(timeline.get(), rows.size());
        if (isNew) { rows.push_back({timeline, {}}); }
        rows[place->second].keyframes.push_back(keyframe);
    }
    for (RowKeyframes& row : rows) {
        std::sort(row.keyframes.begin(), row.keyframes.end(),
                  [](const auto& a, const auto& b) { return a->index() < b->index(); });
    }
    return rows;
}

}  // namespace tweenery
