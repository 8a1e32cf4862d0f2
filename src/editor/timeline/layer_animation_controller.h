#pragma once

#include "base/media_clock.h"
#include "scene/layer.h"

namespace tweenery {

/// The clock of a layer tree: freezes the root layer at a time, or lets it run. Times are seconds
/// in the root's own time, 32-bit; playback and scrubbing only ever freeze.
class PCLayerAnimationController {
 public:
    /// The layer and the clock must outlive the controller.
    PCLayerAnimationController(Layer& animatedLayer, const MediaClock& clock)
        : m_animatedLayer(animatedLayer), m_clock(clock) {}

    Layer& animatedLayer() const { return m_animatedLayer; }
    /// Freezes the layer at `seconds`; at 0 when that is not above 0.
    void scrubToAnimationTime(float seconds);
    /// Lets the layer run from `seconds` on.
    void playAtAnimationTime(float seconds);
    /// Freezes the layer where it is. Returns that time.
    float pause();
    float currentAnimationTime() const;
    bool isPlaying() const;

 private:
    Layer& m_animatedLayer;
    const MediaClock& m_clock;
};

}  // namespace tweenery
