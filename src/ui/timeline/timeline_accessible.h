#pragma once

#include "editor/timeline/timeline_hits.h"

namespace tweenery {

class RowsView;
class TracksView;

/// From now on assistive tools see the timeline: a tree of rows, with the keyframes and tweens that
/// show; and over the tracks the playhead and the master keyframes. Once for the program.
void installTimelineAccessibility();

// Told to assistive tools, where one listens.

void announcePlayhead(TracksView& tracks);
void announceSelection(RowsView& rows, const TimelineKeyframe& keyframe);
/// Where the keyboard's mark is now.
void announceMark(RowsView& rows);

}  // namespace tweenery
