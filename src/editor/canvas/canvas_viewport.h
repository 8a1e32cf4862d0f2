#pragma once

#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <functional>

#include "base/subscription.h"

namespace tweenery {

class EventAnchorPoint;
class PCEditorLayer;
class PCProject;

/// How the window looks at the canvas: the magnification, and which part of the scrollable document
/// shows. Fits the editor's layers to both, and keeps them in the project's preferences.
///
/// There are three coordinate systems: that of the view, in screen points from its top left, that
/// of the document, which is the editor layer's, in screen points too, and that of the canvas, in
/// scene points.
class CanvasViewport {
 public:
    static constexpr double kLeastMagnification = 0.05;
    static constexpr double kLargestMagnification = 10;

    /// All outlive this. The view has no size yet.
    CanvasViewport(PCProject& project, PCEditorLayer& editor, EventAnchorPoint& anchorPoint);
    CanvasViewport(const CanvasViewport&) = delete;
    CanvasViewport& operator=(const CanvasViewport&) = delete;

    /// Called after every change of magnification, document or scroll position, for whoever draws
    /// and shows scroll bars. One handler.
    void setChangeHandler(std::function<void()> handler) { m_changed = std::move(handler); }

    // Size. The view shows as much of the document as it has room for.

    QSizeF containerSize() const { return m_containerSize; }
    void setContainerSize(QSizeF size);
    QSizeF documentSize() const;
    /// Fits the document to the canvas, the magnification and the view, and the layers to it. Comes
    /// by itself, except where the screen's scale has changed.
    void frameChanged();

    // Zoom. The commands keep the point in the middle of the view there, as far as the document
    // reaches, and store the magnification.

    /// Screen points for one scene point.
    double magnificationFactor() const { return m_magnification; }
    /// Neither stores it nor keeps any point in its place; above 0.
    void setMagnificationFactor(double factor);
    /// To the step after, or before, the one closest to the magnification.
    void zoomIn();
    void zoomOut();
    void zoomToActualSize();
    /// The canvas in the middle, and but for a twentieth filling the view.
    void zoomCanvasToFill();
    /// The same for a rectangle of the canvas. One without extent is brought to the middle only.
    void zoomToBox(const QRectF& box);
    /// Multiplies the magnification, within its ends, about a point of the view that stays under
    /// the pointer.
    void zoomAbout(QPointF viewPoint, double factor);
    /// An earlier magnification with its scroll position, stored again.
    void goBackTo(double magnification, QPointF scrollOrigin);
    /// As the preferences have it, once the view of an opened project has its size, without which
    /// nothing can be fitted to it. A stored 1 is no choice: the canvas fills the view.
    void showAsStored();

    // Scrolling, in screen points.

    /// The point of the document at the view's top left, on a whole pixel of the screen as the
    /// canvas is, so that artwork is sharp.
    QPointF scrollOrigin() const;
    /// The largest origin: the document's far edges at those of the view.
    QPointF scrollRange() const;
    QRectF visibleRect() const { return {scrollOrigin(), m_containerSize}; }
    /// Brought into the document.
    void scrollTo(QPointF origin);
    void scrollBy(QPointF distance);
    void scrollToCenter();

    // Points.

    QPointF documentPoint(QPointF viewPoint) const { return viewPoint + scrollOrigin(); }
    QPointF canvasPoint(QPointF viewPoint) const;
    QPointF viewPoint(QPointF canvasPoint) const;

 private:
    PCProject& m_project;
    PCEditorLayer& m_editor;
    EventAnchorPoint& m_anchorPoint;
    std::function<void()> m_changed;
    QSizeF m_containerSize;
    double m_magnification = 1;
    QPointF m_origin;  // before it is brought onto whole pixels
    Subscription m_sizeSubscription;

    QPointF centre() const;
    void layOut();
    void placeAt(QPointF origin);
    void magnify(double factor, QPointF canvasPoint, QPointF viewPoint);
    void changed();
};

}  // namespace tweenery
