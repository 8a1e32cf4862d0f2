#pragma once

#include <QImage>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "editor/layers/element_layer.h"
#include "editor/layers/guide_layer.h"
#include "editor/layers/no_hit_layer.h"

namespace tweenery {

/// What a press at a point of the editor means.
enum PCEditorLocation : int64_t {
    PCEditorLocationNone = 0,
    // Edges of the canvas. Its y runs down: "top" is the edge at its full height.
    PCEditorLocationCanvasLeft = 1,
    PCEditorLocationCanvasTop = 2,
    PCEditorLocationCanvasRight = 3,
    PCEditorLocationCanvasBottom = 4,
    PCEditorLocationCanvasTopRight = 5,
    PCEditorLocationCanvasTopLeft = 6,
    PCEditorLocationCanvasBottomRight = 7,
    PCEditorLocationCanvasBottomLeft = 8,
    PCEditorLocationDrag = 9,
    // Handles of a selected element.
    PCEditorLocationHandleTopLeft = 10,
    PCEditorLocationHandleTopCenter = 11,
    PCEditorLocationHandleTopRight = 12,
    PCEditorLocationHandleCenterLeft = 13,
    PCEditorLocationHandleCenterRight = 14,
    PCEditorLocationHandleBottomLeft = 15,
    PCEditorLocationHandleBottomCenter = 16,
    PCEditorLocationHandleBottomRight = 17,
    PCEditorLocationRotate = 18,
    PCEditorLocationAnchorPoint = 19,
};

/// The root of all that the editor draws: the surround, the canvas with its elements, its frame,
/// the guides, the marquee and the mark of the anchor point. Its coordinates are screen points from
/// the top left of the scrollable document; those of the canvas are scene points.
class PCEditorLayer : public Layer, private CanvasLayerHolder {
 public:
    PCEditorLayer();
    ~PCEditorLayer() override;

    /// Not owned, may go before the editor. Null before setCanvasLayer().
    PCLayer* canvasLayer() const { return m_canvasLayer; }
    void setCanvasLayer(PCLayer& canvas);

    // Which element is under a point.

    /// The deepest element's layer under a point of the editor, or, when not direct, that of the
    /// topmost ancestor of it below the canvas. Null where there is none.
    PCLayer* layerAtLocationOnEditor(QPointF point, bool isDirect);
    /// The same, with precedence for the handles of selected elements, and when not direct for
    /// selected elements as a whole.
    PCLayer* layerAtLocationInEditor(QPointF point, const PCElement::Elements& currentSelection,
                                     bool isDirect);
    /// `point` in canvas coordinates; `layer`, the one hit, may be null.
    PCEditorLocation locationAtPosition(QPointF point, const PCLayer* layer,
                                        size_t numberOfSelectedElements) const;

    QPointF convertPointFromEditorToCanvas(QPointF point) const;
    QPointF convertPointFromCanvasToEditor(QPointF point) const;

    // Marquee. Rectangles are in canvas coordinates.

    void updateSelectionRect(const QRectF& rect);
    /// The children of the canvas whose outlines touch the rectangle, back to front.
    PCElement::Elements elementsHitInSelectionRect(const QRectF& rect) const;

    // Guides and the anchor point's mark.

    /// Shows where the box stands aligned with the canvas's edges or middle, in whole points.
    void layoutGuidesForBoundingBox(const QRectF& box);
    void hideGuides();
    bool showsAnchorPoint() const { return m_showsAnchorPoint; }
    void setShowsAnchorPoint(bool shows);
    Layer& anchorPointLayer() { return m_anchorPointLayer; }
    const PCGuideLayer& verticalSnapGuideline() const { return *m_verticalSnapGuideline; }
    const PCGuideLayer& horizontalSnapGuideline() const { return *m_horizontalSnapGuideline; }
    const PCGuideLayer& xAxis() const { return *m_xAxis; }
    const PCGuideLayer& yAxis() const { return *m_yAxis; }
    const Layer& innerBorder() const { return m_innerBorder; }
    const Layer& outerBorder() const { return m_outerBorder; }
    const Layer& selectionLayer() const { return m_selectionLayer; }

    // Size.

    /// The document's rectangle: the magnified canvas with a margin to reach what lies beside it,
    /// at least as large as the container.
    static QRectF boundsSizedForCanvasSize(QSizeF canvasSize, float magnificationFactor,
                                           QSizeF containerSize);
    /// Takes `bounds` and fits the canvas, its frame and the guides into them.
    void refreshBounds(const QRectF& bounds, float magnificationFactor);

    /// A bitmap of the whole editor, one pixel a screen point. Throws std::bad_alloc when there is
    /// no memory for one of that size.
    QImage imageRepresentation();

 private:
    bool m_showsAnchorPoint = false;
    PCLayer* m_canvasLayer = nullptr;
    Layer m_anchorPointLayer;
    std::unique_ptr<PCGuideLayer> m_xAxis;
    std::unique_ptr<PCGuideLayer> m_yAxis;
    PCNoHitLayer m_innerBorder;
    PCNoHitLayer m_outerBorder;
    std::unique_ptr<PCGuideLayer> m_verticalSnapGuideline;
    std::unique_ptr<PCGuideLayer> m_horizontalSnapGuideline;
    Layer m_selectionLayer;

    /// On a handle or the rotation band, at a point of the editor.
    bool isOnHandleOf(const PCBorderLayer& border, QPointF point) const;
    void canvasLayerGoes() override;
    void showCanvasFrame(bool shows, QSizeF sizeOnScreen);
    void showAxes(bool shows);
    void showAnchorPointPicture();
    void setCanvasStyle(const QBrush& background, double cornerRadius);
};

}  // namespace tweenery
