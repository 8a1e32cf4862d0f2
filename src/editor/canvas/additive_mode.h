#pragma once

#include <QPointF>
#include <optional>

#include "model/element.h"

namespace tweenery {

/// How much of a change each target of an edit gets: in additive mode one link factor more than the
/// target before it, otherwise all of it.
class AdditiveShare {
 public:
    /// The factor is that of the targets' project.
    AdditiveShare(const PCElement::Elements& targets, bool additive);

    /// The share of the first target, of the second, and so on.
    double next() {
        const float share = m_share;
        m_share += m_step;
        return static_cast<double>(share);
    }

 private:
    float m_step;
    float m_share;
};

/// The unit point of an element's bounds about which an edit scales or turns it: in additive mode
/// where `additiveAnchorPoint`, in canvas points, lies in it, otherwise its own anchor point. None
/// for an element without an area on the canvas, which has no such point.
std::optional<QPointF> pivotOfEdit(const PCElement& element, bool additive,
                                   QPointF additiveAnchorPoint);

}  // namespace tweenery
