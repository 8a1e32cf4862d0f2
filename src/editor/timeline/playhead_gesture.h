#pragma once

#include "editor/timeline/timeline_gesture.h"

namespace tweenery {

/// Drags the playhead; beside the ruler it goes on, and the tracks scroll. It comes to rest on the
/// closest tick, which the project remembers.
class PlayheadGesture : public TimelineGesture {
 public:
    PlayheadGesture(const TimelineScene& scene, const PointerEvent& press)
        : m_scene(scene), m_x(press.viewPoint.x()) {}

    void drag(const PointerEvent& event) override;
    bool wantsTicks() const override;
    void tick(std::chrono::duration<double> elapsed) override;
    bool release() override;

 private:
    TimelineScene m_scene;
    double m_x;

    double width() const { return m_scene.viewport.size().width(); }
};

/// To the tick of the ruler closest to it.
void snapPlayhead(PCProjectTimeManager& time);

}  // namespace tweenery
