#pragma once

#include <cstdint>
#include <memory>

namespace tweenery {

class PCElement;

/// What the model expects of the layer that draws an element. This base class does nothing: it is
/// the layer of an element made without a screen.
class ElementViewLayer {
 public:
    virtual ~ElementViewLayer() = default;

    virtual void setElement(PCElement*) {}
    virtual void syncPositionWithModel() {}
    virtual void syncTransformsWithModel() {}
    virtual void syncAnchorPointWithModel() {}
    virtual void syncOpacityWithModel() {}
    virtual void syncBoundsWithModel() {}
    virtual void syncContentsWithModel() {}
    virtual void syncHiddenWithModel() {}
    virtual void syncWithModel() {}
    virtual void syncWithModelAtTimeInMS(int32_t) {}
    virtual void setSelected(bool) {}
    virtual void addSublayer(ElementViewLayer&) {}
    virtual void insertSublayer(ElementViewLayer&, uint32_t) {}
    virtual void removeFromSuperlayer() {}
    virtual void removeAllAnimations() {}
};

/// Makes the layer of one element. Set on a project that is shown on a screen.
class ElementViewLayerFactory {
 public:
    virtual ~ElementViewLayerFactory() = default;
    virtual std::unique_ptr<ElementViewLayer> layer() = 0;
};

}  // namespace tweenery
