#pragma once

#include <QRectF>
#include <chrono>
#include <optional>

#include "editor/canvas/pointer_gesture.h"
#include "editor/timeline/keyframe_manager.h"
#include "editor/timeline/project_time_manager.h"
#include "editor/timeline/timeline_outline.h"
#include "editor/timeline/timeline_viewport.h"
#include "model/project.h"

namespace tweenery {

/// What an interaction with the timeline works on. Nothing is owned.
struct TimelineScene {
    PCProject& project;
    PCProjectTimeManager& time;
    PCKeyframeManager& keyframes;
    TimelineOutline& outline;
    TimelineViewport& viewport;
};

/// One drag in the timeline.
class TimelineGesture : public PointerGesture {
 public:
    /// What follows is as long as the pointer stays where it is: whether to scroll on, every 10 ms.
    virtual bool wantsTicks() const { return false; }
    /// Some time has gone by since the last tick, or since they were wanted.
    virtual void tick(std::chrono::duration<double> /*elapsed*/) {}
    /// The button is up. False when the drag led back to where it began, and is no edit.
    virtual bool release() { return true; }
    /// In the viewport's points; it may reach beyond the tracks.
    virtual std::optional<QRectF> marquee() const { return std::nullopt; }
};

}  // namespace tweenery
