// The setters of an element's setup state. Each compares, registers its inverse, stores, marks the
// element as modified, tells the view layer and posts a notification.

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include "model/element.h"
#include "model/element_placement.h"
#include "model/project.h"

namespace tweenery {
namespace {

// The point types' own operators compare fuzzily.
bool equal(QPointF a, QPointF b) {
    return a.x() == b.x() && a.y() == b.y();
}
bool equal(QSizeF a, QSizeF b) {
    return a.width() == b.width() && a.height() == b.height();
}
bool isFinite(QPointF point) {
    return std::isfinite(point.x()) && std::isfinite(point.y());
}
bool isFinite(QSizeF size) {
    return std::isfinite(size.width()) && std::isfinite(size.height());
}
// What a 32-bit number can hold, which is how scales are stored.
bool isFiniteFloat(double number) {
    return std::abs(number) <= static_cast<double>(std::numeric_limits<float>::max());
}

constexpr double kTurn = 2 * std::numbers::pi;

// Half a degree and less below it.
bool isNearlyAFullTurn(double rotation) {
    constexpr double kLargestDegrees = 359.5;
    constexpr double kRoom = 1e-9;
    return rotation * 180 / std::numbers::pi > kLargestDegrees + kRoom;
}

}  // namespace

double PCElement::withoutFullTurns(double radians) {
    const double rotation = std::fmod(radians, kTurn);
    return rotation < 0 && rotation + kTurn < kTurn ? rotation + kTurn : std::max(rotation, 0.0);
}

double PCElement::storableRotation(double radians) {
    const double rotation = withoutFullTurns(radians);
    return isNearlyAFullTurn(rotation) ? rotation - kTurn : rotation;
}

UndoManager* PCElement::recordingUndoManager() const {
    EditContext* owner = project();
    if (!owner || !owner->undoManager().isUndoRegistrationEnabled()) { return nullptr; }
    return &owner->undoManager();
}

void PCElement::post(const QString& notification) {
    if (EditContext* owner = project()) { owner->notificationCentre().post(notification, this); }
}

void PCElement::setPosition(QPointF position) {
    if (equal(position, m_position) || !isFinite(position)) { return; }
    registerUndoOf(Field::Position, [old = m_position](PCElement& self) { self.setPosition(old); });
    m_position = position;
    setModified(true);
    viewLayer().syncPositionWithModel();
    post(ElementNotification::position);
}

void PCElement::setZRotation(double radians) {
    const double rotation = withoutFullTurns(radians);
    storeRotation(isNearlyAFullTurn(rotation) ? 0 : rotation);
}

void PCElement::setPlacement(const ElementPlacement& placement) {
    storeRotation(storableRotation(placement.rotation));
    setScale(placement.scale);
    setPosition(placement.position);
}

void PCElement::storeRotation(double radians) {
    if (radians == m_zRotation || !std::isfinite(radians)) { return; }
    registerUndoOf(Field::Rotation,
                   [old = m_zRotation](PCElement& self) { self.storeRotation(old); });
    m_zRotation = radians;
    forgetSamples();
    setModified(true);
    viewLayer().syncTransformsWithModel();
    post(ElementNotification::rotation);
}

void PCElement::setScale(QPointF scale) {
    if (equal(scale, m_scale) || !isFiniteFloat(scale.x()) || !isFiniteFloat(scale.y())) { return; }
    registerUndoOf(Field::Scale, [old = m_scale](PCElement& self) { self.setScale(old); });
    m_scale = scale;
    forgetSamples();
    setModified(true);
    viewLayer().syncTransformsWithModel();
    post(ElementNotification::scale);
}

void PCElement::setAnchorPoint(QPointF anchorPoint) {
    if (equal(anchorPoint, m_anchorPoint)) { return; }
    const QTransform transform = scaleThenRotate();
    const QPointF newAnchor(m_size.width() * anchorPoint.x(), m_size.height() * anchorPoint.y());
    const QPointF position =
        m_position - transform.map(anchorPointInPts()) + transform.map(newAnchor);
    if (!isFinite(anchorPoint) || !isFinite(position)) { return; }
    storeAnchorPoint(anchorPoint, position);
}

void PCElement::storeAnchorPoint(QPointF anchorPoint, QPointF position) {
    registerUndoOf(Field::AnchorPoint,
                   [oldAnchor = m_anchorPoint, oldPosition = m_position](PCElement& self) {
                       self.storeAnchorPoint(oldAnchor, oldPosition);
                   });
    m_anchorPoint = anchorPoint;
    m_position = position;
    setModified(true);
    viewLayer().syncAnchorPointWithModel();
    post(ElementNotification::anchorPoint);
}

void PCElement::setOpacity(double opacity) {
    if (!std::isfinite(opacity)) { return; }
    const double clamped = std::clamp(opacity, 0.0, 1.0);
    if (clamped == m_opacity) { return; }
    registerUndoOf(Field::Opacity, [old = m_opacity](PCElement& self) { self.setOpacity(old); });
    m_opacity = clamped;
    forgetSamples();
    setModified(true);
    viewLayer().syncOpacityWithModel();
    post(ElementNotification::opacity);
}

void PCElement::setSize(QSizeF size) {
    if (!isFinite(size)) { return; }
    const QSizeF allowed = isCanvas() ? size.expandedTo(QSizeF(0, 0)) : size;
    if (equal(allowed, m_size)) { return; }
    registerUndoOf(Field::Size, [old = m_size](PCElement& self) { self.setSize(old); });
    m_size = allowed;
    setModified(true);
    viewLayer().syncBoundsWithModel();
    post(ElementNotification::size);
}

void PCElement::setName(const QString& newName) {
    if (newName == m_name) { return; }
    registerUndoOf(Field::Name, [old = m_name](PCElement& self) { self.setName(old); });
    storeName(newName);
    setModified(true);
    post(ElementNotification::name);
}

void PCElement::storeName(const QString& newName) {
    const QString old = std::exchange(m_name, newName);
    if (EditContext* owner = project()) { owner->nameDidChange(*this, old); }
}

void PCElement::setImageName(const QString& imageName) {
    if (imageName == m_imageName) { return; }
    // Undone and redone, the size has a step of its own.
    if (!isPlayedBack()) {
        EditContext* owner = project();
        const auto set = owner ? owner->imageSetManager().imageSetWithName(imageName) : nullptr;
        setSize(set ? QSizeF(set->size()) : QSizeF(0, 0));  // throws for damaged artwork
    }
    registerUndoOf(Field::ImageName,
                   [old = m_imageName](PCElement& self) { self.setImageName(old); });
    m_imageName = imageName;
    setModified(true);
    viewLayer().syncContentsWithModel();
    post(ElementNotification::imageName);
}

// While undoing, redoing or cancelling, whatever an edit had changed beside has its own step.
bool PCElement::isPlayedBack() const {
    EditContext* owner = project();
    return owner && (owner->undoManager().isUndoing() || owner->undoManager().isRedoing());
}

void PCElement::setHidden(bool hidden) {
    if (hidden == m_hidden) { return; }
    registerUndoOf(Field::Hidden, [old = m_hidden](PCElement& self) { self.setHidden(old); });
    m_hidden = hidden;
    if (!isPlayedBack()) {
        for (const Ptr& child : subelements()) {
            child->setHidden(hidden);
        }
        if (!hidden) { unHideRecursivelyUp(); }
    }
    setModified(true);
    viewLayer().syncHiddenWithModel();
    post(ElementNotification::hidden);
}

void PCElement::unHideRecursivelyUp() {
    if (m_hidden) { setHidden(false); }
    PCElement* parent = parentElement();
    if (parent && !parent->isCanvas()) { parent->unHideRecursivelyUp(); }
}

void PCElement::setLocked(bool locked) {
    if (locked == m_locked) { return; }
    storeLocked(locked);
    if (!isPlayedBack()) {
        for (const Ptr& child : subelements()) {
            child->setLocked(locked);
        }
        if (!locked) { unlockRecursivelyUp(); }
    }
    setModified(true);
    post(ElementNotification::locked);
}

void PCElement::unlockRecursivelyUp() {
    for (PCElement* element = this; element && !element->isCanvas();
         element = element->parentElement()) {
        element->storeLocked(false);
    }
}

void PCElement::storeLocked(bool locked) {
    if (locked == m_locked) { return; }
    registerUndoOf(Field::Locked, [old = m_locked](PCElement& self) { self.setLocked(old); });
    m_locked = locked;
}

void PCElement::setExpanded(bool expanded) {
    if (expanded == m_expanded) { return; }
    registerUndoOf(Field::Expanded, [old = m_expanded](PCElement& self) { self.setExpanded(old); });
    m_expanded = expanded;
    setModified(true);
    post(ElementNotification::expanded);
}

void PCElement::setScalesLocked(bool scalesLocked) {
    if (scalesLocked == m_scalesLocked) { return; }
    registerUndoOf(Field::ScalesLocked,
                   [old = m_scalesLocked](PCElement& self) { self.setScalesLocked(old); });
    m_scalesLocked = scalesLocked;
    setModified(true);
    post(ElementNotification::scalesLocked);
}

void PCElement::setSelected(bool selected) {
    m_selected = selected;
    viewLayer().setSelected(selected);
}

void PCElement::setScaleTimelineSplit(bool split) {
    m_scaleTimelineSplit = split;
    setModified(true);
}

void PCElement::setTranslationTimelineSplit(bool split) {
    m_translationTimelineSplit = split;
    setModified(true);
}

}  // namespace tweenery
