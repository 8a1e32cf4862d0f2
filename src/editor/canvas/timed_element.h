#pragma once

#include <QPointF>

#include "model/edit_time.h"
#include "model/element.h"

namespace tweenery {

/// An element as it stands at setup or at a time of the selected animation: reads and writes the
/// one or the other. Points, radians, opacity from 0 to 1; each write is the element's own, with
/// undo.
class TimedElement {
 public:
    TimedElement(PCElement& element, EditTime when) : m_element(element), m_when(when) {}

    /// The position at setup, the translation at a time.
    QPointF place() const;
    QPointF scale() const;
    double zRotation() const;
    double opacity() const;

    void setPlace(QPointF place);
    void moveBy(QPointF distance) { setPlace(place() + distance); }
    void setX(float x);
    void setY(float y);
    void setScale(QPointF scale);
    void setXScale(double factor);
    void setYScale(double factor);
    void setZRotation(double radians);
    void setOpacity(double opacity);
    /// Unit coordinates of the bounds; the state at the time stays where it is.
    void setAnchorPoint(QPointF anchorPoint);

 private:
    PCElement& m_element;
    EditTime m_when;
};

}  // namespace tweenery
