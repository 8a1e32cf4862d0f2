#include "editor/timeline/timeline_interaction.h"

#include "editor/canvas/press_step.h"
#include "editor/timeline/easing_choice.h"

namespace tweenery {

struct TimelineInteraction::Press {
    PointerEvent began;
    PressStep step;
    std::unique_ptr<TimelineGesture> gesture = {};
};

TimelineInteraction::TimelineInteraction(const TimelineScene& scene, TimelineInteractionHost& host)
    : m_scene(scene), m_host(host) {}

TimelineInteraction::~TimelineInteraction() = default;

bool TimelineInteraction::isDraggingPlayhead() const {
    return m_press && m_scene.viewport.isInRuler(m_press->began.viewPoint);
}

void TimelineInteraction::press(const PointerEvent& event) {
    if (isPressed() || event.button != Qt::LeftButton || m_scene.project.isSetupMode()) { return; }
    if (m_easingPopover) { return closeEasingPopover(); }
    if (m_scene.viewport.isInScroller(event.viewPoint)) { return; }
    m_host.endPlaybackAtTimeShown();
    m_press.reset(new Press{event, PressStep(m_scene.project.undoManager())});
    m_scene.time.setPlayheadPositionInMS(m_scene.viewport.timeAt(event.viewPoint.x()));
    m_host.timelineNeedsDisplay();
}

void TimelineInteraction::drag(const PointerEvent& event) {
    if (!m_press) { return; }
    m_scene.time.setPlayheadPositionInMS(m_scene.viewport.timeAt(event.viewPoint.x()));
    m_host.timelineNeedsDisplay();
}

void TimelineInteraction::release(const PointerEvent& event) {
    if (m_press && event.button == m_press->began.button) { lost(); }
}

void TimelineInteraction::lost() {
    if (!m_press) { return; }
    m_press->step.end();
    m_press.reset();
    m_host.timelineNeedsDisplay();
}

bool TimelineInteraction::cancel() {
    if (!m_press) { return false; }
    m_press->step.cancel();
    m_press.reset();
    m_host.timelineNeedsDisplay();
    return true;
}

bool TimelineInteraction::wantsTicks() const {
    return m_press && m_press->gesture && m_press->gesture->wantsTicks();
}

void TimelineInteraction::tick(std::chrono::duration<double> elapsed) {
    if (wantsTicks()) { m_press->gesture->tick(elapsed); }
}

void TimelineInteraction::modifiersChanged(Qt::KeyboardModifiers modifiers) {
    m_modifiers = modifiers;
}

TimelineMenu TimelineInteraction::pressForContextMenu(QPointF point) {
    if (isPressed() || m_scene.project.isSetupMode()) { return {}; }
    const TimelineKeyframe keyframe = keyframeAt(m_scene, point);
    if (!keyframe) { return {}; }
    m_scene.keyframes.setSelectionToSingleKeyframe(keyframe);
    return {TimelineMenu::Target::Keyframe, keyframe->instantTransition()};
}

void TimelineInteraction::hover(QPointF point) {
    m_pointer = point;
    m_isHovering = true;
    m_host.timelineNeedsDisplay();
}

void TimelineInteraction::leave() {
    m_isHovering = false;
    m_host.timelineNeedsDisplay();
}

bool TimelineInteraction::skimIsShown() const {
    return m_isHovering && !isPressed();
}

std::optional<QRectF> TimelineInteraction::marquee() const {
    return m_press && m_press->gesture ? m_press->gesture->marquee() : std::nullopt;
}

QString TimelineInteraction::feedback() const {
    return m_press && m_press->gesture ? m_press->gesture->feedback() : QString();
}

ShownEasing TimelineInteraction::shownEasing() const {
    return {};
}

void TimelineInteraction::chooseEasing(PCEasingMode mode) {
    setEasingOfSelectedTweens(m_scene.project, m_scene.keyframes, mode);
}

void TimelineInteraction::closeEasingPopover() {
    m_easingPopover.reset();
    m_host.timelineNeedsDisplay();
}

}  // namespace tweenery
