#pragma once

#include <QPointF>
#include <QString>
#include <Qt>
#include <cstdint>
#include <optional>

#include "base/media_clock.h"
#include "editor/canvas/canvas_gesture.h"

namespace tweenery {

/// How far an arrow key moves what is selected, in scene points: 1, with Shift 10. Nothing for
/// other keys.
std::optional<QPointF> nudgeForKey(int key, Qt::KeyboardModifiers modifiers);

/// Moves what is selected by arrow keys. What comes within a second of the last nudge of the same
/// elements at the same time, with no other edit between, belongs to its undo step. Nothing stays
/// open meanwhile: every step is whole, and the next one takes its place.
class NudgeSeries {
 public:
    /// All outlive this.
    NudgeSeries(PCProject& project, PCElementSelectionManager& selection, const MediaClock& clock)
        : m_project(project), m_selection(selection), m_clock(clock) {}

    /// By a distance in scene points. Outside of any undo group.
    void nudge(QPointF distance, EditTarget target);

 private:
    static constexpr int64_t kNoStep = -1;

    PCProject& m_project;
    PCElementSelectionManager& m_selection;
    const MediaClock& m_clock;
    QPointF m_distance;  // of the series so far
    EditTarget m_target;
    PCElement::Elements m_elements;
    int64_t m_changeCount = kNoStep;  // after the last nudge
    double m_lastTime = 0;            // seconds

    bool goesOn(const PCElement::Elements& elements, EditTarget target) const;
};

/// The opacity that a digit key stands for: a tenth for each, and 1 for 0. The row of digits is
/// told by the place of its keys, X11's codes 10 to 19, whatever the layout writes on them, other
/// keys by their text.
std::optional<double> opacityForDigitKey(uint32_t nativeScanCode, const QString& text);
/// Gives what is selected that opacity, as one undo step.
void setOpacityOfSelection(const CanvasScene& scene, double opacity, EditTarget target);

/// Places the anchor points of what is selected at a unit point of their bounds, such as (0.5, 0.5)
/// for the centre, as one undo step. Of the setup state: no element moves.
void placeAnchorPoints(const CanvasScene& scene, QPointF unitPoint);

/// The element after the one selected last, front to back and round again: of those in the direct
/// tool's reach all, otherwise the children of the canvas. Locked ones, which cannot be selected,
/// are passed over. Null when there is none.
PCElement::Ptr elementAfterSelection(const CanvasScene& scene, bool isDirect, bool backward);

/// Where dropped artwork goes: in front of the element selected first, or of all.
struct DropTarget {
    PCElement::Ptr parent;
    size_t index = 0;
};
DropTarget dropTarget(const CanvasScene& scene);

}  // namespace tweenery
