#pragma once

#include <QBrush>
#include <QColor>
#include <QImage>
#include <QPainterPath>
#include <QPointF>
#include <QRectF>
#include <QString>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "base/block_list.h"
#include "scene/affine.h"
#include "scene/keyframe_animation.h"

namespace tweenery {

/// What a layer does to its contents about its anchor point: scales first, then turns, then moves.
struct LayerTransform {
    QPointF scale{1, 1};
    double rotation = 0;  // radians, positive from x towards y
    QPointF translation;

    Linear linear() const;
};

/// Where the contents lie in the bounds: at their own size in the middle, or stretched to fill.
enum class ContentsGravity : uint8_t { Center, Resize };

/// The values of a layer that it is placed and drawn with. Those that are animated differ between
/// the layer itself and what it presents.
struct LayerValues {
    QPointF position;
    QPointF anchorPoint{0.5, 0.5};
    QRectF bounds;
    LayerTransform transform;
    double opacity = 1;
    double zPosition = 0;
    QImage contents;
    double contentsScale = 1;  // pixels of the contents for one point
};

/// How a layer that shows more than an image is drawn: under its contents the background, over its
/// sublayers the border, which lies inside the bounds.
struct LayerStyle {
    QBrush background{Qt::NoBrush};  // a colour, or a texture with its corner at the bounds' origin
    QColor borderColor{Qt::black};
    double borderWidth = 0;
    double cornerRadius = 0;
};

/// The outline of a shape layer, in its own coordinates. The path's fill rule counts.
struct LayerShape {
    QPainterPath path;
    QColor fillColor{Qt::transparent};
    QColor strokeColor{Qt::transparent};
    double lineWidth = 1;
    std::vector<double> lineDashPattern;  // points on, points off
    double lineDashPhase = 0;
};

/// A node of the retained tree that is drawn, hit and animated. Its position is the place of its
/// anchor point in the superlayer; coordinates are points, y down.
///
/// A layer belongs to whoever made it; the tree only links. One that goes takes itself out of the
/// tree and leaves its sublayers without a superlayer.
///
/// Time is in seconds. A layer's clock runs from its superlayer's by `speed`, `timeOffset` and
/// `beginTime`; a layer of speed 0 is frozen at `timeOffset`, with everything below it. Geometry
/// and hits go by what is presented: the layer's values with its animations applied at its time.
/// Main thread only.
class Layer {
 public:
    using Sublayers = BlockList<Layer*>;

    Layer() = default;
    virtual ~Layer();
    Layer(const Layer&) = delete;
    Layer& operator=(const Layer&) = delete;

    // Tree. Sublayers stand back to front, as far as their zPosition is equal.

    Layer* superlayer() const { return m_superlayer; }
    const Sublayers& sublayers() const { return m_sublayers; }
    /// Each takes the sublayer out of the tree that it is in. An index above the count is the
    /// count. Throws AssertionFailure for a layer in itself.
    void addSublayer(Layer& sublayer) { insertSublayer(sublayer, m_sublayers.size()); }
    void insertSublayer(Layer& sublayer, size_t index);
    virtual void removeFromSuperlayer();
    /// The sublayers by presented zPosition, in their own order within equal ones: back to front.
    const std::vector<Layer*>& sublayersInDrawingOrder() const {
        return sublayersInDrawingOrderAt(m_sublayersThatAnimateOrder > 0 ? localTime() : 0);
    }
    /// The same for who walks the tree and knows the layer's own time. The list is good until the
    /// next call.
    const std::vector<Layer*>& sublayersInDrawingOrderAt(double time) const;

    // Values. They are good for the next drawing; nothing animates by itself.

    const LayerValues& values() const { return m_values; }
    QPointF position() const { return m_values.position; }
    QPointF anchorPoint() const { return m_values.anchorPoint; }
    const QRectF& bounds() const { return m_values.bounds; }
    const LayerTransform& transform() const { return m_values.transform; }
    double opacity() const { return m_values.opacity; }
    double zPosition() const { return m_values.zPosition; }
    const QImage& contents() const { return m_values.contents; }
    double contentsScale() const { return m_values.contentsScale; }
    ContentsGravity contentsGravity() const { return m_contentsGravity; }
    bool isHidden() const { return m_hidden; }
    bool masksToBounds() const { return m_masksToBounds; }
    const LayerStyle& style() const;

    void setPosition(QPointF position);
    void setAnchorPoint(QPointF anchorPoint);  // unit coordinates of the bounds
    void setBounds(const QRectF& bounds);
    void setTransform(const LayerTransform& transform);
    /// Of the layer with all below it as a whole, 0 to 1.
    void setOpacity(double opacity);
    void setZPosition(double zPosition);
    /// Shared, never copied or converted: ARGB32_Premultiplied.
    void setContents(const QImage& contents);
    /// Pixels of the contents for one point, above 0.
    void setContentsScale(double scale);
    void setContentsGravity(ContentsGravity gravity) { m_contentsGravity = gravity; }
    void setHidden(bool hidden) { m_hidden = hidden; }
    /// Cuts sublayers and contents at the bounds, with the style's corner radius.
    void setMasksToBounds(bool masks) { m_masksToBounds = masks; }
    void setStyle(const LayerStyle& style);
    /// The outline that is drawn over the contents; null for a layer without one.
    virtual const LayerShape* shape() const { return nullptr; }

    // Time.

    double speed() const { return m_speed; }
    double timeOffset() const { return m_timeOffset; }
    double beginTime() const { return m_beginTime; }
    void setSpeed(double speed) { m_speed = speed; }
    void setTimeOffset(double seconds) { m_timeOffset = seconds; }
    void setBeginTime(double seconds) { m_beginTime = seconds; }
    /// The clock above a layer without a superlayer, set by what drives the tree; 0 at first.
    void setRootTime(double seconds) { m_rootTime = seconds; }
    /// This layer's own clock.
    double localTime() const;
    double localTimeAt(double superlayerTime) const {
        return (superlayerTime - m_beginTime) * m_speed + m_timeOffset;
    }

    /// Replaces the animation of that key. Of several of one property the last added counts. Throws
    /// AssertionFailure when the animation's lists do not fit each other.
    void addAnimation(KeyframeAnimation animation, const QString& key);
    void removeAnimationForKey(const QString& key);
    virtual void removeAllAnimations();
    bool isAnimated() const { return m_running != nullptr; }
    std::vector<QString> animationKeys() const;
    /// Null when there is none.
    const KeyframeAnimation* animationForKey(const QString& key) const;

    /// The values with the animations applied at the layer's time. Good until the next call that
    /// changes the layer or its time.
    const LayerValues& presented() const { return m_running ? presentedAt(localTime()) : m_values; }
    /// The same for who walks the tree and knows the layer's own time.
    const LayerValues& presentedAt(double time) const;

    // Geometry, as presented.

    /// From this layer's coordinates to its superlayer's.
    Affine toSuperlayer() const;
    Affine toSuperlayerAt(double time) const;
    /// Nothing where the layer is flattened to a line or a point.
    std::optional<QPointF> fromSuperlayer(QPointF point) const;
    /// From this layer's coordinates to those of another layer of the tree; null means those above
    /// the root. Nothing where `other`, or a layer around it, is flattened.
    std::optional<QPointF> pointIn(const Layer* other, QPointF point) const;
    /// The same, with the anchor point of `other` in place of nothing.
    QPointF convertPointTo(QPointF point, const Layer* other) const;
    QPointF convertPointFrom(QPointF point, const Layer* other) const;
    /// The upright rectangle around the converted corners.
    QRectF convertRectTo(const QRectF& rect, const Layer* other) const;
    /// The upright rectangle around the layer's bounds in its superlayer.
    QRectF frame() const;

    /// Whether the layer itself covers a point of its own coordinates: its bounds, unless a layer
    /// knows better.
    virtual bool containsPoint(QPointF point) const;
    /// The frontmost, deepest layer below this one, or this one, that contains a point of the
    /// superlayer's coordinates; null if there is none. Hidden layers are passed over; transparent
    /// ones are not.
    virtual Layer* hitTest(QPointF point);

    // Layout: work put off until the tree is next drawn or asked.

    void setNeedsLayout();
    /// Lays out what asked for it, here and below.
    void layoutIfNeeded();

 protected:
    virtual void layoutSublayers() {}
    /// What a hit test asks once nothing below this layer was hit: containsPoint(), unless a layer
    /// need not ask below a second time.
    virtual bool coversPoint(QPointF point) const { return containsPoint(point); }

 private:
    friend BlockHook& blockHook(const Layer& layer) { return layer.m_blockHook; }

    struct Running {
        std::vector<std::pair<QString, KeyframeAnimation>> animations;
        LayerValues presented;
        double time = 0;
        bool isCurrent = false;
    };

    // What a hit test reads comes first.
    LayerValues m_values;
    mutable Linear m_linear;
    mutable bool m_linearIsCurrent = true;
    mutable bool m_orderIsCurrent = true;
    bool m_hidden = false;
    bool m_masksToBounds = false;
    bool m_needsLayout = false;
    bool m_belowNeedsLayout = false;
    ContentsGravity m_contentsGravity = ContentsGravity::Resize;
    std::unique_ptr<Running> m_running;
    Layer* m_superlayer = nullptr;
    Sublayers m_sublayers;
    mutable BlockHook m_blockHook;  // of the superlayer's list
    mutable std::vector<Layer*> m_drawingOrder;
    int m_sublayersThatAnimateOrder = 0;
    double m_speed = 1;
    double m_timeOffset = 0;
    double m_beginTime = 0;
    double m_rootTime = 0;
    std::unique_ptr<LayerStyle> m_style;  // null: the default one

    Linear presentedLinear(const LayerValues& values) const;
    void valuesDidChange();
    void unlink();
    bool animatesOrder() const;
    void animationsDidChange(bool animatedOrder);
    Layer* hitBelow(QPointF point) const;
    QPointF mapToAncestor(QPointF point, const Layer* ancestor) const;
    std::optional<QPointF> mapFromAncestor(QPointF point, const Layer* ancestor) const;
};

/// A layer that draws an outline.
class ShapeLayer : public Layer {
 public:
    const LayerShape* shape() const override { return &m_shape; }
    LayerShape& editShape() { return m_shape; }

 private:
    LayerShape m_shape;
};

}  // namespace tweenery
