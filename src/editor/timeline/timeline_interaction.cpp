#include "editor/timeline/timeline_interaction.h"

#include "editor/canvas/press_step.h"
#include "editor/timeline/easing_choice.h"
#include "editor/timeline/keyframe_gesture.h"
#include "editor/timeline/playhead_gesture.h"
#include "editor/timeline/stretch_gesture.h"
#include "editor/timeline/timeline_marquee_gesture.h"
#include "editor/timeline/timeline_press_record.h"

namespace tweenery {
namespace {

using KeyframeSet = PCKeyframeManager::KeyframeSet;

bool gathers(Qt::KeyboardModifiers modifiers) {
    return (modifiers & (Qt::ShiftModifier | Qt::ControlModifier)) != 0;
}

}  // namespace

struct TimelineInteraction::Press {
    PointerEvent began;
    PointerEvent last;
    TimelineBeforePress before;
    PressStep step;
    std::unique_ptr<TimelineGesture> gesture = {};
    MakeGesture makeGesture = {};      // what the first drag starts, or null
    std::function<void()> click = {};  // what a release without a drag means
};

TimelineInteraction::TimelineInteraction(const TimelineScene& scene, TimelineInteractionHost& host)
    : m_scene(scene),
      m_host(host),
      m_playbackSubscription(scene.time.addPlaybackStateListener(this)) {}

TimelineInteraction::~TimelineInteraction() = default;

// The press.

void TimelineInteraction::press(const PointerEvent& event) {
    if (isPressed() || event.button != Qt::LeftButton || m_scene.project.isSetupMode()) { return; }
    noteEvent(event);
    if (easingPopover()) { return closeEasingPopover(); }
    if (m_scene.viewport.isInScroller(event.viewPoint)) { return; }
    m_host.endPlaybackAtTimeShown();
    m_press.reset(new Press{event, event, TimelineBeforePress(m_scene),
                            PressStep(m_scene.project.undoManager())});
    m_scene.time.setPlayheadPositionInMS(m_scene.viewport.timeAt(event.viewPoint.x()));
    deselectMasterKeyframes();
    if (m_scene.viewport.isInRuler(event.viewPoint)) {
        pressRuler();
    } else if (const TimelineKeyframe keyframe = keyframeAt(m_scene, event.viewPoint)) {
        pressKeyframe(keyframe);
    } else {
        pressTracks();
    }
    m_host.timelineNeedsDisplay();
}

void TimelineInteraction::noteEvent(const PointerEvent& event) {
    m_pointer = event.viewPoint;
    m_modifiers = event.modifiers;
}

// They are for the menu and the keys; no press keeps them selected.
void TimelineInteraction::deselectMasterKeyframes() {
    const auto master =
        m_scene.project.animationsManager().selectedAnimation()->masterKeyframesTimeline();
    const KeyframeSet& selected = m_scene.keyframes.selectedKeyframes();
    const bool someAreSelected =
        std::any_of(selected.begin(), selected.end(),
                    [&master](const auto& keyframe) { return keyframe->timeline() == master; });
    if (someAreSelected) { m_scene.keyframes.deselectAllKeyframes(); }
}

void TimelineInteraction::pressRuler() {
    m_scene.keyframes.deselectAllKeyframes();
    if (const auto master = masterKeyframeAt(m_scene, m_press->began.viewPoint.x())) {
        m_scene.keyframes.setSelectionToSingleKeyframe(master);
    }
    m_press->gesture = std::make_unique<PlayheadGesture>(m_scene, m_press->began);
}

void TimelineInteraction::pressKeyframe(const TimelineKeyframe& keyframe) {
    const PointerEvent& event = m_press->began;
    if (!m_scene.keyframes.keyframeIsSelected(keyframe)) {
        if (event.isHeld(Qt::ShiftModifier)) {
            m_scene.keyframes.selectKeyframeByExtendingSelection(keyframe);
        } else if (event.isHeld(Qt::ControlModifier)) {
            m_scene.keyframes.selectKeyframe(keyframe);
        } else {
            m_scene.keyframes.setSelectionToSingleKeyframe(keyframe);
        }
    }
    m_press->click = [this, keyframe] {
        m_scene.time.setPlayheadPositionInMS(keyframe->timeInMS());
    };
    m_press->makeGesture = [this, keyframe](const PointerEvent& drag) {
        return keyframeGesture(keyframe, drag);
    };
}

// Window managers take Alt with a press, so that it counts from the first drag.
std::unique_ptr<TimelineGesture> TimelineInteraction::keyframeGesture(
    const TimelineKeyframe& keyframe, const PointerEvent& drag) const {
    const bool isAltDown = drag.isHeld(Qt::AltModifier);
    const bool stretches = isAltDown && drag.isHeld(Qt::ShiftModifier) &&
                           StretchGesture::canStretchBy(m_scene.keyframes, keyframe);
    if (stretches) { return std::make_unique<StretchGesture>(m_scene, keyframe); }
    if (KeyframeGesture::isSqueezed(m_scene, *keyframe)) { return nullptr; }
    return std::make_unique<KeyframeGesture>(m_scene, keyframe, keyframe->keyall() || isAltDown);
}

void TimelineInteraction::pressTracks() {
    m_scene.keyframes.deselectAllKeyframes();
    // What lies there before the click snaps the playhead, and may scroll.
    m_press->click = [this, tween = tweenAt(m_scene, m_press->began.viewPoint)] {
        // A bar between equal values is not drawn.
        if (tween && changesValue(*tween->timeline(), tween->index())) { return pickTween(tween); }
        snapPlayhead(m_scene.time);
        m_scene.keyframes.deselectAllTweens();
    };
    m_press->makeGesture = [this](const PointerEvent&) {
        return std::make_unique<TimelineMarqueeGesture>(m_scene, m_press->began);
    };
}

void TimelineInteraction::drag(const PointerEvent& event) {
    if (!m_press) { return; }
    noteEvent(event);
    m_press->last = event;
    if (!m_press->gesture) {
        if (!m_press->makeGesture || event.viewPoint == m_press->began.viewPoint) { return; }
        m_press->click = {};
        m_press->gesture = std::exchange(m_press->makeGesture, {})(event);
        if (!m_press->gesture) { return; }
        m_press->step.setActionName(m_press->gesture->actionName());
    }
    m_press->gesture->drag(event);
    m_host.timelineNeedsDisplay();
}

bool TimelineInteraction::wantsTicks() const {
    return m_press && m_press->gesture && m_press->gesture->wantsTicks();
}

void TimelineInteraction::tick(std::chrono::duration<double> elapsed) {
    if (!wantsTicks()) { return; }
    m_press->gesture->tick(elapsed);
    m_host.timelineNeedsDisplay();
}

void TimelineInteraction::release(const PointerEvent& event) {
    if (!m_press || event.button != m_press->began.button) { return; }
    noteEvent(event);
    m_press->last = event;
    end();
}

void TimelineInteraction::lost() {
    if (m_press) { end(); }
}

void TimelineInteraction::end() {
    tick({});  // a quick pointer has left the tracks a moment ago
    const bool isEdit = !m_press->gesture || m_press->gesture->release();
    if (m_press->click) { m_press->click(); }
    if (isEdit) {
        m_press->step.end();
    } else {
        m_press->step.cancel();
    }
    finishPress();
}

bool TimelineInteraction::cancel() {
    if (!m_press) { return false; }
    m_press->gesture.reset();
    m_press->step.cancel();
    m_press->before.restore(m_scene);
    finishPress();
    return true;
}

void TimelineInteraction::finishPress() {
    m_press.reset();
    m_isSkimming = false;
    m_scene.time.setSkimPositionInMS(m_scene.time.playheadPositionInMS());
    m_host.timelineNeedsDisplay();
}

TimelineMenu TimelineInteraction::pressForContextMenu(QPointF point) {
    const bool isForTimeline =
        !isPressed() && !m_scene.project.isSetupMode() && !m_scene.viewport.isInScroller(point);
    if (!isForTimeline) { return {}; }
    closeEasingPopover();
    m_host.endPlaybackAtTimeShown();
    const bool isInRuler = m_scene.viewport.isInRuler(point);
    const TimelineKeyframe keyframe =
        isInRuler ? masterKeyframeAt(m_scene, point.x()) : keyframeAt(m_scene, point);
    if (!keyframe) { return {}; }
    if (isInRuler) { m_scene.keyframes.deselectAllKeyframes(); }
    m_scene.keyframes.setSelectionToSingleKeyframe(keyframe);
    m_host.timelineNeedsDisplay();
    if (isInRuler) { return {TimelineMenu::Target::MasterKeyframe}; }
    TimelineMenu menu{TimelineMenu::Target::Keyframe};
    const bool canTween = keyframe->timeline()->propertyType() != PCPropertyTypeChildrenZPositions;
    if (canTween) { menu.isInstant = keyframe->instantTransition(); }
    return menu;
}

// Tweens.

void TimelineInteraction::pickTween(const TimelineKeyframe& tween) {
    const PointerEvent& event = m_press->last;
    const bool isGathering = gathers(event.modifiers);
    m_hasGatheredTweens = isGathering;
    if (!isGathering) { m_scene.keyframes.deselectAllTweens(); }
    if (m_scene.keyframes.tweenIsSelected(tween)) { return m_scene.keyframes.deselectTween(tween); }
    m_scene.keyframes.selectTween(tween);
    m_pickedTween = tween;
    if (!isGathering) { m_easingPopover = m_press->began.viewPoint; }
}

void TimelineInteraction::modifiersChanged(Qt::KeyboardModifiers modifiers) {
    const bool wereDown = gathers(std::exchange(m_modifiers, modifiers));
    const bool areDown = gathers(modifiers);
    if (areDown && easingPopover()) {
        m_hasGatheredTweens = true;  // to go on with
        closeEasingPopover();
    } else if (wereDown && !areDown && !isPressed()) {
        const bool shows = std::exchange(m_hasGatheredTweens, false);
        if (!shows || m_scene.keyframes.selectedTweens().empty()) { return; }
        m_easingPopover = m_pointer;
        m_host.timelineNeedsDisplay();
    }
}

std::optional<QPointF> TimelineInteraction::easingPopover() const {
    return m_scene.keyframes.selectedTweens().empty() ? std::nullopt : m_easingPopover;
}

void TimelineInteraction::closeEasingPopover() {
    if (!std::exchange(m_easingPopover, std::nullopt)) { return; }
    m_host.timelineNeedsDisplay();
}

ShownEasing TimelineInteraction::shownEasing() const {
    const KeyframeSet& tweens = m_scene.keyframes.selectedTweens();
    if (tweens.empty()) { return {}; }
    const TimelineKeyframe shown = tweens.contains(m_pickedTween) ? m_pickedTween : *tweens.begin();
    ShownEasing easing{easingOf(*shown)};
    const auto timeline = tweens.size() == 1 ? shown->timeline() : nullptr;
    if (timeline) { easing.property = timeline->propertyType(); }
    return easing;
}

void TimelineInteraction::chooseEasing(PCEasingMode mode) {
    if (isPressed()) { return; }
    m_host.endPlaybackAtTimeShown();
    setEasingOfSelectedTweens(m_scene.project, m_scene.keyframes, mode);
    m_host.timelineNeedsDisplay();
}

// The skim bar.

void TimelineInteraction::hover(QPointF point) {
    if (isPressed()) { return; }
    m_pointer = point;
    const bool skims = !m_scene.project.isSetupMode() && !m_scene.time.isPlayingBack() &&
                       PCAppPreferences::showsTimelineSkimbar();
    const int32_t time = m_scene.viewport.timeAt(point.x());
    m_isSkimming = skims && time >= 0;
    if (!skims) { return; }
    // Whatever moved the playhead since the last time has it shown.
    m_scene.time.setSkimPositionInMS(m_scene.time.playheadPositionInMS());
    if (m_isSkimming) { m_scene.time.setSkimPositionInMS(time); }
    m_host.timelineNeedsDisplay();
}

void TimelineInteraction::leave() {
    if (m_scene.project.isSetupMode() || isPressed()) { return; }
    stopSkimming();
    m_host.timelineNeedsDisplay();
}

void TimelineInteraction::stopSkimming() {
    m_isSkimming = false;
    if (m_scene.time.isPlayingBack()) { return; }
    m_scene.time.setSkimPositionInMS(m_scene.time.playheadPositionInMS());
}

void TimelineInteraction::timeManagerDidChangePlaybackState(PCProjectTimeManager&) {
    stopSkimming();
}

bool TimelineInteraction::skimIsShown() const {
    return m_isSkimming && !isPressed() && !m_scene.project.isSetupMode();
}

// What shows.

bool TimelineInteraction::isDraggingPlayhead() const {
    return m_press && m_scene.viewport.isInRuler(m_press->began.viewPoint);
}

std::optional<QRectF> TimelineInteraction::marquee() const {
    return m_press && m_press->gesture ? m_press->gesture->marquee() : std::nullopt;
}

QString TimelineInteraction::feedback() const {
    return m_press && m_press->gesture ? m_press->gesture->feedback() : QString();
}

}  // namespace tweenery
