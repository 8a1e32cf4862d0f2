#include "editor/canvas/additive_mode.h"

#include <cmath>

#include "editor/canvas/element_space.h"
#include "model/edit_context.h"

namespace tweenery {
namespace {

float linkFactorOf(const PCElement::Elements& elements) {
    const EditContext* project = elements.empty() ? nullptr : elements.front()->project();
    return project ? project->linkFXFactor() : 1;
}

}  // namespace

AdditiveShare::AdditiveShare(const PCElement::Elements& targets, bool additive)
    : m_step(additive ? linkFactorOf(targets) : 0), m_share(additive ? m_step : 1) {}

std::optional<QPointF> pivotOfEdit(const PCElement& element, bool additive,
                                   QPointF additiveAnchorPoint) {
    if (!additive) { return element.anchorPoint(); }
    const EditContext* project = element.project();
    if (!project) { return std::nullopt; }
    const QPointF point = convertPoint(additiveAnchorPoint, *project->canvas(), element);
    const QSizeF size = element.size();
    const QPointF pivot(point.x() / size.width(), point.y() / size.height());
    if (!std::isfinite(pivot.x()) || !std::isfinite(pivot.y())) { return std::nullopt; }
    return pivot;
}

}  // namespace tweenery
