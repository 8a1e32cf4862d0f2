#pragma once

#include <QStringList>
#include <cstdint>
#include <memory>
#include <optional>

#include "base/weak_ref.h"
#include "editor/layers/border_layer.h"
#include "model/edit_time.h"
#include "model/element.h"
#include "model/view_layer.h"
#include "scene/layer.h"

namespace tweenery {

class PCLayer;

/// Who makes the layers of a project's elements and copies them from the model. Layers tell it what
/// happens to them. Outlived by the layers.
class ElementLayerKeeper {
 public:
    /// Brings up to date what waits.
    virtual void update() = 0;
    virtual void repaintEverything() = 0;
    virtual void layerIsStale(PCLayer& layer) = 0;
    virtual void layerGoes(PCLayer& layer) = 0;
    virtual void layerLeavesTree(PCLayer& layer) = 0;
    virtual void borderDidChange(PCLayer& layer) = 0;

 protected:
    ~ElementLayerKeeper() = default;
};

/// Who shows the canvas's layer and has to know when it goes.
class CanvasLayerHolder {
 public:
    virtual void canvasLayerGoes() = 0;

 protected:
    ~CanvasLayerHolder() = default;
};

/// The layer that draws one element: a copy of the element's state, in setup or at a time. The
/// layers of an element's children are its sublayers, so that groups carry them along. An element
/// that is hidden shows as opacity 0. Owned by its element; its keeper makes it and says when it
/// copies.
class PCLayer : public BorderedLayer, public ElementViewLayer {
 public:
    explicit PCLayer(const std::shared_ptr<ElementLayerKeeper>& keeper) : m_keeper(keeper) {
        setContentsGravity(ContentsGravity::Center);
    }
    ~PCLayer() override;

    /// The layer of an element; null for an element made without a screen.
    static PCLayer* of(const PCElement& element);

    PCElement* element() const override { return m_element; }
    bool isSelected() const override { return m_selected; }
    /// The selection border, a sublayer of the canvas's layer; null unless selected.
    PCBorderLayer* borderLayer() const { return m_borderLayer.get(); }
    /// Brings all layers of the project up to date, where one waits for it. Whoever asks a layer
    /// for its geometry amid edits calls it first.
    void updateIfNeeded() const;
    /// For what changes without the model, such as the magnification.
    void repaintEverything();
    /// Of the canvas's layer. Not owned; null when there is none any more.
    void setHolder(CanvasLayerHolder* holder) { m_holder = holder; }

    // What the model tells. Nothing of it changes the model; what it says is copied at the next
    // update of the project's layers.

    void setElement(PCElement* element) override;
    void elementDidChange() override;
    void setSelected(bool selected) override;
    using Layer::addSublayer;
    using Layer::insertSublayer;
    void addSublayer(ElementViewLayer& sublayer) override;
    void insertSublayer(ElementViewLayer& sublayer, uint32_t index) override;
    /// The borders of the element and of those below it go too.
    void removeFromSuperlayer() override;
    void removeAllAnimations() override;

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
    /// The canvas's layer brings all others up to date.
    void layoutSublayers() override;
    bool coversPoint(QPointF point) const override;

 private:
    friend class ProjectLayers;

    // The image that the contents show, to tell whether they are up to date.
    struct ShownImage {
        QString name;
        double backingScale = 0;
        uint64_t revision = 0;
        bool isKnown = false;
    };

    PCElement* m_element = nullptr;
    WeakRef<ElementLayerKeeper> m_keeper;  // null once nobody shows the project any more
    std::unique_ptr<PCBorderLayer> m_borderLayer;
    ShownImage m_shownImage;
    // The stored order by which the children stand; empty: their own; nothing: setup, where the
    // order of the layers decides.
    std::optional<QStringList> m_stackedBy;
    CanvasLayerHolder* m_holder = nullptr;

    // Kept by ProjectLayers: areas of the canvas that were reported as painted, and what waits.
    QRectF m_painted;
    QRectF m_paintedBorder;
    size_t m_placeAmongStale = 0;
    bool m_isStale = false;
    bool m_stackingIsStale = false;
    bool m_needsPlacing = false;  // whatever is copied: it is new here, or its border is
    bool m_hasChanged = false;
    bool m_selected = false;

    bool isCanvasLayer() const;
    PCLayer* canvasLayer() const;
    void childrenDidChange();
    void adopt(const WeakRef<ElementLayerKeeper>& keeper);
    /// Each returns whether anything looks different.
    bool copyElement(EditTime time);
    bool copyCanvas();
    bool copyImage(const QString& name);
    /// The stored order of the children at the time; see m_stackedBy.
    std::optional<QStringList> stackingAt(EditTime time) const;
    void showBorder();
    bool isOwnedByBorder(QPointF point) const;
    bool imageCovers(QPointF point) const;
};

}  // namespace tweenery
