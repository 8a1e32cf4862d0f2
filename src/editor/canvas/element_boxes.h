#pragma once

#include <QRectF>
#include <optional>

#include "model/edit_time.h"
#include "model/element.h"

namespace tweenery {

/// The smallest upright rectangle, in canvas points, around the frames of the elements; the frame
/// of an element that is turned encloses it within its parent. Nothing for no elements. For zooming
/// to a selection, and for guides.
std::optional<QRectF> boxOfElements(const PCElement::Elements& elements, EditTime when);
/// As they are shown at this moment. Elements without a layer do not count.
std::optional<QRectF> boxOfElementsOnScreen(const PCElement::Elements& elements);

}  // namespace tweenery
