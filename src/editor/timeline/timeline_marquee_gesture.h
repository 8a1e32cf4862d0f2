#pragma once

#include "editor/timeline/timeline_hits.h"

namespace tweenery {

/// Selects the keyframes that a rectangle touches, and nothing else, as it is drawn. At the edges
/// of the tracks it scrolls. Leaves no undo step.
class TimelineMarqueeGesture : public TimelineGesture {
 public:
    TimelineMarqueeGesture(const TimelineScene& scene, const PointerEvent& press);

    void drag(const PointerEvent& event) override;
    bool wantsTicks() const override { return !direction().isNull(); }
    void tick(std::chrono::duration<double> elapsed) override;
    bool release() override;
    std::optional<QRectF> marquee() const override;

 private:
    TimelineScene m_scene;
    QPointF m_start;  // of all tracks, as they may scroll meanwhile
    QPointF m_end;    // within the tracks that show
    KeyframeArea m_selected;

    QPointF direction() const;
    void select();
    void selectArea(const KeyframeArea& area);
};

}  // namespace tweenery
