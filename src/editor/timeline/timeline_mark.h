#pragma once

#include "editor/timeline/timeline_hits.h"

namespace tweenery {

/// What of the timeline the keyboard is at: a row, or a keyframe in it. Moves over both without
/// changing what is selected, and selects what it is at.
class TimelineMark {
 public:
    /// What the scene refers to outlives this.
    explicit TimelineMark(const TimelineScene& scene) : m_scene(scene) {}

    /// -1 before it was moved, and when its row has gone.
    int row() const;
    /// Null while it is at the row itself.
    TimelineKeyframe keyframe() const;
    /// To another row, that of an element or of a timeline.
    void moveByRows(int step);
    /// To another keyframe of the row; before the first it is at the row itself.
    void moveByKeyframes(int step);
    void moveTo(int row);
    /// Selects what it is at, alone. Nothing without a row.
    void select();

 private:
    TimelineScene m_scene;
    int m_row = -1;
    TimelineKeyframe m_keyframe;

    void reveal();
};

}  // namespace tweenery
