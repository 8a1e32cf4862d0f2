#pragma once

#include <cstdint>
#include <memory>

#include "editor/layers/border_layer.h"
#include "model/element.h"
#include "model/view_layer.h"
#include "scene/layer.h"

namespace tweenery {

class PCEditorLayer;

/// The layer that draws one element: a copy of the element's state, in setup or at a time. The
/// layers of an element's children are its sublayers, so that groups carry them along. An element
/// that is hidden shows as opacity 0. Owned by its element.
class PCLayer : public Layer, public ElementViewLayer {
 public:
    PCLayer();
    ~PCLayer() override;

    /// The layer of an element; null for an element made without a screen.
    static PCLayer* of(const PCElement& element);

    PCElement* element() const { return m_element; }
    bool isSelected() const { return m_selected; }
    /// The selection border, a sublayer of the canvas's layer; null unless selected.
    PCBorderLayer* borderLayer() const { return m_borderLayer.get(); }

    // What the model asks for. Nothing of it changes the model.

    void setElement(PCElement* element) override;
    void syncPositionWithModel() override;
    void syncTransformsWithModel() override;
    void syncAnchorPointWithModel() override;
    /// Shows a hidden element until the next syncHiddenWithModel().
    void syncOpacityWithModel() override;
    void syncBoundsWithModel() override;
    /// An image that cannot be read, or that no set has, shows nothing.
    void syncContentsWithModel() override;
    void syncHiddenWithModel() override;
    void syncHiddenWithModelAtTimeInMS(int32_t timeInMS);
    /// The setup state. Nothing happens on the canvas's layer, here and in the two that follow.
    void syncWithModel() override;
    /// The state at a time; below 0 counts as 0. Nothing happens in setup mode.
    void syncWithModelAtTimeInMS(int32_t timeInMS) override;
    /// The element's place in its parent's children order at the time. Whoever syncs all layers
    /// uses syncLayersWithModelAtTimeInMS(), which reads each order once.
    void syncZIndexWithModelAtTimeInMS(int32_t timeInMS);
    void setSelected(bool selected) override;
    using Layer::addSublayer;
    using Layer::insertSublayer;
    void addSublayer(ElementViewLayer& sublayer) override;
    void insertSublayer(ElementViewLayer& sublayer, uint32_t index) override;
    /// The border goes too.
    void removeFromSuperlayer() override;
    void removeAllAnimations() override { Layer::removeAllAnimations(); }

    /// Puts the element's timeline of that type on this layer as an animation, under the type's key
    /// path, in place of the one there. An empty timeline leaves none. Playback has keys of its
    /// own. Throws AssertionFailure for a type without an animation.
    void addAnimationForProperty(PCPropertyType type);
    /// Opacity, rotation, image, stacking, scale and translation.
    void addAllPropertyAnimations();
    void addAllPropertyAnimationsExceptZIndex();

    /// The hit rule of one element: a selected one owns its handles and its rotation band; a locked
    /// one is never hit; a group covers what its children cover; artwork covers its pixels of an
    /// alpha above 50 of 255.
    bool containsPoint(QPointF point) const override;

 protected:
    /// The canvas's layer brings the borders up to date.
    void layoutSublayers() override;
    bool coversPoint(QPointF point) const override;

 private:
    friend class PCEditorLayer;

    // The image that the contents show, to tell whether they are up to date.
    struct ShownImage {
        QString name;
        double backingScale = 0;
        uint64_t revision = 0;
        bool isKnown = false;
    };

    PCElement* m_element = nullptr;
    bool m_selected = false;
    std::unique_ptr<PCBorderLayer> m_borderLayer;
    ShownImage m_shownImage;
    PCEditorLayer* m_editor = nullptr;  // of the canvas's layer

    bool isCanvasLayer() const;
    PCLayer* canvasLayer() const;
    void showImage(const QString& name, double backingScale);
    void syncBorder();
    void showBorder();
    bool isOwnedByBorder(QPointF point) const;
    bool imageCovers(QPointF point) const;
};

/// Gives each element of a project a PCLayer.
class PCLayerFactory : public ElementViewLayerFactory {
 public:
    /// The one factory; it has no state.
    static PCLayerFactory& shared();
    std::unique_ptr<ElementViewLayer> layer() override { return std::make_unique<PCLayer>(); }
};

/// The setup state in every layer of a project.
void syncLayersWithModel(PCProject& project);
/// The state and the stacking at a time in every layer; nothing in setup mode.
void syncLayersWithModelAtTimeInMS(PCProject& project, int32_t timeInMS);

}  // namespace tweenery
