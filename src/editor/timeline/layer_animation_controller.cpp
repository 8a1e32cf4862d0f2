#include "editor/timeline/layer_animation_controller.h"

namespace tweenery {

void PCLayerAnimationController::scrubToAnimationTime(float seconds) {
    if (isPlaying()) {
        m_animatedLayer.setSpeed(0);
        m_animatedLayer.setBeginTime(m_clock.now());
    }
    m_animatedLayer.setTimeOffset(seconds > 0 ? static_cast<double>(seconds) : 0.0);
}

void PCLayerAnimationController::playAtAnimationTime(float seconds) {
    m_animatedLayer.setSpeed(1);
    m_animatedLayer.setTimeOffset(0);
    m_animatedLayer.setBeginTime(m_clock.now() - static_cast<double>(seconds));
}

float PCLayerAnimationController::pause() {
    const float seconds = currentAnimationTime();
    scrubToAnimationTime(seconds);
    return seconds;
}

float PCLayerAnimationController::currentAnimationTime() const {
    const double seconds =
        isPlaying() ? m_clock.now() - m_animatedLayer.beginTime() : m_animatedLayer.timeOffset();
    return static_cast<float>(seconds);
}

bool PCLayerAnimationController::isPlaying() const {
    return m_animatedLayer.speed() > 0;
}

}  // namespace tweenery
