#pragma once

#include <QString>
#include <functional>
#include <memory>

#include "editor/canvas/canvas_gesture.h"
#include "editor/canvas/canvas_tools.h"
#include "editor/canvas/delayed_action.h"

namespace tweenery {

/// What a canvas needs of its window.
class CanvasInteractionHost {
 public:
    virtual ~CanvasInteractionHost() = default;
    /// What an edit is written to: the setup state, or the playhead's time.
    virtual EditTime editTime() const = 0;
    virtual bool additiveModeIsOn() const = 0;
    /// Ends a run, if there is one. The playhead stays at the time shown, and what playing had
    /// deselected is selected again.
    virtual void endPlaybackAtTimeShown() = 0;
    /// The tool in use is another one.
    virtual void canvasToolDidChange() = 0;
    /// Something besides the elements looks different: the marquee, a guide, the anchor point's
    /// ring, the plate, the cursor.
    virtual void canvasNeedsDisplay() = 0;
    virtual void callLater(std::chrono::milliseconds delay, std::function<void()> call) = 0;
};

/// Decides what a press on the canvas means, and runs the one gesture that it starts. The widget
/// forwards events of pointer, keys and focus; nothing else changes the project, the selection or
/// the tool while a press lasts.
///
/// A press is one step of undo, all written at the time at which it began; one that changed nothing
/// leaves none.
class CanvasInteraction {
 public:
    /// What the scene refers to, and the host, outlive this.
    CanvasInteraction(const CanvasScene& scene, CanvasInteractionHost& host);
    ~CanvasInteraction();
    CanvasInteraction(const CanvasInteraction&) = delete;
    CanvasInteraction& operator=(const CanvasInteraction&) = delete;

    // Tools.

    PCSelectionState tool() const { return m_tools.current(); }
    /// Ignored during a press.
    void setTool(PCSelectionState tool);
    /// The temporary tools. What keys do during a press counts once it is over. Repetitions of a
    /// key do nothing. Every pointer event reconciles Control with its modifiers.
    void setSpaceIsDown(bool isDown);
    void modifiersChanged(Qt::KeyboardModifiers modifiers);
    /// Ends the temporary tools and the press.
    void focusLost();

    // The press.

    bool isPressed() const { return m_press != nullptr; }
    /// The left button, or the middle one, which scrolls. Others, and one pressed during a press,
    /// are ignored.
    void press(const PointerEvent& event);
    /// Any movement while the button is down.
    void drag(const PointerEvent& event);
    /// Ignored but for the button of the press.
    void release(const PointerEvent& event);
    /// The release will not come: the press ends as if it had.
    void lost();
    /// Puts everything back as it was before the press, which is over. False without a press.
    bool cancel();
    /// Before a context menu opens: selects what lies under the pointer, unless it is selected;
    /// nothing is selected when nothing lies there. False during a press: no menu then.
    bool pressForContextMenu(const PointerEvent& event);

    // What shows.

    /// For a pointer at that point of the view.
    CanvasCursor cursorAt(QPointF viewPoint) const;
    /// Of the drag under way; null for no plate.
    QString feedback() const;

 private:
    using MakeGesture = std::function<std::unique_ptr<CanvasGesture>()>;
    struct Press;

    CanvasScene m_scene;
    CanvasInteractionHost& m_host;
    CanvasTools m_tools;
    bool m_spaceIsDown = false;
    bool m_controlIsDown = false;
    DelayedAction m_hideGuides;
    std::unique_ptr<Press> m_press;

    void reconcileTools();
    EditTarget editTarget() const;
    void begin(const PointerEvent& event);
    void beginLeftPress(const PointerEvent& event);
    bool movesAnchorPointAtOnce(const PointerEvent& event) const;
    void changeSelection(const PCElement::Ptr& pressed, bool toggles);
    PCElement::Ptr elementAt(QPointF viewPoint);
    MakeGesture gestureFor(PCEditorLocation location, const PCElement::Ptr& element);
    void startGesture(std::unique_ptr<CanvasGesture> gesture);
    void end();
};

}  // namespace tweenery
