#pragma once

#include <QString>
#include <functional>
#include <memory>

#include "editor/canvas/pointer_event.h"
#include "editor/timeline/timeline_gesture.h"
#include "editor/timeline/timeline_hits.h"

namespace tweenery {

/// What the timeline needs of its window.
class TimelineInteractionHost {
 public:
    virtual ~TimelineInteractionHost() = default;
    /// Ends a run, if there is one. The playhead stays at the time shown, and what playing had
    /// deselected is selected again.
    virtual void endPlaybackAtTimeShown() = 0;
    /// Something besides rows and keyframes looks different: playhead, skim bar, marquee, easing
    /// popover, feedback.
    virtual void timelineNeedsDisplay() = 0;
};

/// What a context menu is about.
struct TimelineMenu {
    enum class Target { Nothing, Keyframe, MasterKeyframe };
    Target target = Target::Nothing;
    /// Of a keyframe that could tween: whether it jumps now; else nothing.
    std::optional<bool> isInstant = {};
};

/// The easing that the popover over the tracks shows.
struct ShownEasing {
    PCEasingMode mode = PCEasingModeLinear;  // or easingModeInstant
    /// Whose colour marks it; none while several tweens are selected.
    std::optional<PCPropertyType> property = {};
};

/// Decides what a press on ruler or tracks means, and runs the one gesture that it starts. The
/// widget forwards events of pointer, keys and focus, in the points of TimelineViewport; nothing
/// else changes the animation, the selection of keyframes or the playhead while a press lasts.
///
/// A press is one step of undo; one that changed nothing leaves none. Nothing happens in setup
/// mode.
class TimelineInteraction : private PCProjectTimeManagerPlaybackStateListener {
 public:
    /// What the scene refers to, and the host, outlive this.
    TimelineInteraction(const TimelineScene& scene, TimelineInteractionHost& host);
    ~TimelineInteraction() override;
    TimelineInteraction(const TimelineInteraction&) = delete;
    TimelineInteraction& operator=(const TimelineInteraction&) = delete;

    // The press.

    bool isPressed() const { return m_press != nullptr; }
    bool isDraggingPlayhead() const;
    /// Others than the left button, the scroller, and what comes during a press are ignored. While
    /// the easing popover shows, a press only closes it.
    void press(const PointerEvent& event);
    /// Any movement while the button is down.
    void drag(const PointerEvent& event);
    /// Ignored but for the button of the press.
    void release(const PointerEvent& event);
    /// The release will not come: the press ends as if it had.
    void lost();
    /// Puts keyframes, selection, playhead and scroll position back as they were before the press,
    /// which is over. False without a press.
    bool cancel();
    /// While a gesture scrolls with the pointer at rest: tick() is to be called every 10 ms.
    bool wantsTicks() const;
    void tick(std::chrono::duration<double> elapsed);
    /// Wherever the pointer is: with Shift and Control up again, the tweens that were gathered get
    /// the easing popover, at the point where the pointer was seen last.
    void modifiersChanged(Qt::KeyboardModifiers modifiers);
    void focusLost() { lost(); }
    /// Before a context menu opens: selects the keyframe under the pointer, unless it is selected.
    TimelineMenu pressForContextMenu(QPointF point);

    // The skim bar.

    /// The pointer moves over the pane, no button down; left of the tracks `x` is negative.
    void hover(QPointF point);
    /// It has left the pane.
    void leave();
    /// The skim playhead is where the pointer is, and shows.
    bool skimIsShown() const;

    // What shows.

    /// What is being drawn around keyframes, in the viewport's points; it may reach beyond the
    /// tracks.
    std::optional<QRectF> marquee() const;
    /// The time of the keyframe that is dragged, for the plate beside the pointer; null for none.
    QString feedback() const;
    /// Where the popover for the selected tweens points at; nothing while it is closed.
    std::optional<QPointF> easingPopover() const;
    ShownEasing shownEasing() const;
    /// A button of the popover; easingModeInstant makes the tweens jump.
    void chooseEasing(PCEasingMode mode);
    void closeEasingPopover();

 private:
    using MakeGesture = std::function<std::unique_ptr<TimelineGesture>(const PointerEvent& drag)>;
    struct Press;

    TimelineScene m_scene;
    TimelineInteractionHost& m_host;
    std::unique_ptr<Press> m_press;
    std::optional<QPointF> m_easingPopover;
    TimelineKeyframe m_pickedTween;    // the last one
    bool m_hasGatheredTweens = false;  // which get the popover when Shift and Control are up
    bool m_isSkimming = false;
    QPointF m_pointer;
    Qt::KeyboardModifiers m_modifiers;
    Subscription m_playbackSubscription;

    void noteEvent(const PointerEvent& event);
    void deselectMasterKeyframes();
    void pressRuler();
    void pressKeyframe(const TimelineKeyframe& keyframe);
    void pressTracks();
    std::unique_ptr<TimelineGesture> keyframeGesture(const TimelineKeyframe& keyframe,
                                                     const PointerEvent& drag) const;
    void pickTween(const TimelineKeyframe& tween);
    void end();
    void finishPress();
    void stopSkimming();
    void timeManagerDidChangePlaybackState(PCProjectTimeManager& manager) override;
};

}  // namespace tweenery
