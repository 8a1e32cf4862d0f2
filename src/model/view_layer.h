#pragma once

#include <cstdint>
#include <memory>

namespace tweenery {

class PCElement;

/// What the model expects of the layer that draws an element. This base class does nothing: it is
/// the layer of an element made without a screen. Each of the calls that name what has changed
/// comes down to elementDidChange(), unless a layer wants to know.
class ElementViewLayer {
 public:
    virtual ~ElementViewLayer() = default;

    virtual void setElement(PCElement*) {}
    /// Something has changed that decides how the element looks, in setup or at any time: a field,
    /// a timeline, or which timelines are attached.
    virtual void elementDidChange() {}
    virtual void syncPositionWithModel() { elementDidChange(); }
    virtual void syncTransformsWithModel() { elementDidChange(); }
    virtual void syncAnchorPointWithModel() { elementDidChange(); }
    virtual void syncOpacityWithModel() { elementDidChange(); }
    virtual void syncBoundsWithModel() { elementDidChange(); }
    virtual void syncContentsWithModel() { elementDidChange(); }
    virtual void syncHiddenWithModel() { elementDidChange(); }
    virtual void syncWithModel() { elementDidChange(); }
    virtual void syncWithModelAtTimeInMS(int32_t) { elementDidChange(); }
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
