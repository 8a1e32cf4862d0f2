#include "editor/canvas/timed_element.h"

namespace tweenery {

QPointF TimedElement::place() const {
    return m_when.isSetup() ? m_element.position()
                            : m_element.translationAtTimeInMS(m_when.timeInMS());
}

QPointF TimedElement::scale() const {
    return m_when.isSetup() ? m_element.scale() : m_element.scaleAtTimeInMS(m_when.timeInMS());
}

double TimedElement::zRotation() const {
    if (m_when.isSetup()) { return m_element.zRotation(); }
    return static_cast<double>(m_element.zRotationAtTimeInMS(m_when.timeInMS()));
}

double TimedElement::opacity() const {
    if (m_when.isSetup()) { return m_element.opacity(); }
    return static_cast<double>(m_element.opacityAtTimeInMS(m_when.timeInMS()));
}

void TimedElement::setPlace(QPointF place) {
    if (m_when.isSetup()) {
        m_element.setPosition(place);
    } else {
        m_element.setTranslation(place, m_when.timeInMS());
    }
}

void TimedElement::setX(float x) {
    if (m_when.isSetup()) {
        m_element.setPosition({static_cast<double>(x), m_element.position().y()});
    } else {
        m_element.setXTranslation(x, m_when.timeInMS());
    }
}

void TimedElement::setY(float y) {
    if (m_when.isSetup()) {
        m_element.setPosition({m_element.position().x(), static_cast<double>(y)});
    } else {
        m_element.setYTranslation(y, m_when.timeInMS());
    }
}

void TimedElement::setScale(QPointF scale) {
    if (m_when.isSetup()) {
        m_element.setScale(scale);
    } else {
        m_element.setScale(scale, m_when.timeInMS());
    }
}

void TimedElement::setXScale(double factor) {
    if (m_when.isSetup()) {
        m_element.setScale({factor, m_element.scale().y()});
    } else {
        m_element.setXScale(static_cast<float>(factor), m_when.timeInMS());
    }
}

void TimedElement::setYScale(double factor) {
    if (m_when.isSetup()) {
        m_element.setScale({m_element.scale().x(), factor});
    } else {
        m_element.setYScale(static_cast<float>(factor), m_when.timeInMS());
    }
}

void TimedElement::setZRotation(double radians) {
    if (m_when.isSetup()) {
        m_element.setZRotation(radians);
    } else {
        m_element.setZRotation(static_cast<float>(radians), m_when.timeInMS());
    }
}

void TimedElement::setOpacity(double opacity) {
    if (m_when.isSetup()) {
        m_element.setOpacity(opacity);
    } else {
        m_element.setOpacity(static_cast<float>(opacity), m_when.timeInMS());
    }
}

void TimedElement::setAnchorPoint(QPointF anchorPoint) {
    if (m_when.isSetup()) {
        m_element.setAnchorPoint(anchorPoint);
    } else {
        m_element.setAnchorPoint(anchorPoint, m_when.timeInMS());
    }
}

}  // namespace tweenery
