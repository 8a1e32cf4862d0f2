#pragma once

#include <QColor>
#include <array>
#include <cstdint>
#include <memory>

#include "scene/layer.h"

namespace tweenery {

class PCElement;

/// The parts of a selection border.
enum PCBorderLocation : int64_t {
    PCBorderLocationNone = 0,
    PCBorderLocationDrag = 1,
    PCBorderLocationAnchorPoint = 2,
    PCBorderLocationRotate = 3,
    PCBorderLocationTopLeft = 4,
    PCBorderLocationTopCenter = 5,
    PCBorderLocationTopRight = 6,
    PCBorderLocationCenterLeft = 7,
    PCBorderLocationCenterRight = 8,
    PCBorderLocationBottomLeft = 9,
    PCBorderLocationBottomCenter = 10,
    PCBorderLocationBottomRight = 11,
};

/// What a border frames: the layer of an element.
class BorderedLayer : public Layer {
 public:
    /// Null for a layer that has none yet.
    virtual PCElement* element() const = 0;
    virtual bool isSelected() const = 0;
};

/// The frame of a selected element: outline, eight handles, the mark of its anchor point and an
/// invisible band around the outline in which a drag rotates. It hangs directly below the canvas's
/// layer, keeps its size on the screen at any magnification, and follows its element through
/// rotation, scale and nesting.
class PCBorderLayer : public Layer {
 public:
    /// The bordered layer is not owned and outlives the border. The result is up to date, and in no
    /// tree.
    static std::unique_ptr<PCBorderLayer> layerWithLayerToBorder(BorderedLayer& layer);

    QColor colorOfBorder() const { return m_outline.shape()->strokeColor; }
    void setColorOfBorder(const QColor& color) { m_outline.editShape().strokeColor = color; }
    BorderedLayer& borderedLayer() const { return m_borderedLayer; }

    /// Takes over the bordered layer's place, as presented.
    void syncWithBorderedLayer();
    /// Around all that is drawn of it, in the superlayer's coordinates.
    QRectF drawnRect() const;
    /// The bordered layer's scale on the canvas, without the canvas's magnification.
    double netXScaleOfBoundedLayer() const { return netScaleOfBorderedLayer().x(); }
    double netYScaleOfBoundedLayer() const { return netScaleOfBorderedLayer().y(); }
    /// The part under a point of this layer's coordinates; none unless the element is selected.
    PCBorderLocation borderLocationForPoint(QPointF point) const;
    /// The bordered layer when the point, in the superlayer's coordinates, lies in the rotation
    /// band.
    Layer* hitTest(QPointF point) override;

    // Parts, in this layer's coordinates.

    /// The handle of a location from PCBorderLocationTopLeft on.
    const Layer& handle(PCBorderLocation location) const;
    const Layer& anchorPointLayer() const { return m_anchorPointLayer; }
    const ShapeLayer& outline() const { return m_outline; }
    const ShapeLayer& rotationBand() const { return m_rotationBand; }

 protected:
    void layoutSublayers() override { syncWithBorderedLayer(); }

 private:
    static constexpr size_t kHandleCount = 8;

    BorderedLayer& m_borderedLayer;
    std::array<Layer, kHandleCount> m_handles;  // by location
    Layer m_anchorPointLayer;
    ShapeLayer m_outline;
    ShapeLayer m_rotationBand;
    double m_pictureScale = 0;

    explicit PCBorderLayer(BorderedLayer& layer);
    QPointF netScaleOfBorderedLayer() const;
    Affine fromBorderedLayer() const;
    double zoom() const;
    void showPictures();
    void keepPartsAtScreenSize();
    void placeParts(const Affine& fromBordered);
    void shapeOutline();
    void shapeRotationBand(const Affine& fromBordered);
    QPainterPath quadrilateralOfHandles() const;
};

}  // namespace tweenery
