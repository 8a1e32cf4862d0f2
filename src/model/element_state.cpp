// The seam between an element's setup state and the timelines of the selected animation.

#include <algorithm>
#include <cmath>

#include "base/errors.h"
#include "model/element.h"
#include "model/element_sampler.h"
#include "model/project.h"
#include "scene/affine.h"

using namespace Qt::StringLiterals;

namespace tweenery {

using KeyframePtr = PCKeyedPropertyTimeline::KeyframePtr;
using TimelinePtr = PCKeyedPropertyTimeline::Ptr;

namespace {

// The master keyframes between which an edit at a time stays.
struct Neighbours {
    KeyframePtr previous;
    KeyframePtr next;
};

Neighbours masterNeighbours(const PCElement& element, int32_t timeInMS) {
    EditContext* project = element.project();
    const PCAnimation::Ptr animation =
        project ? project->animationsManager().selectedAnimation() : nullptr;
    if (!animation) { return {}; }
    const TimelinePtr& master = animation->masterKeyframesTimeline();
    if (const KeyframePtr here = master->existingKeyframeAtTimeInMS(timeInMS)) {
        return {here->prevKeyframe(), here->nextKeyframe()};
    }
    return {master->keyframeAtOrBeforeTimeInMS(timeInMS),
            master->keyframeAtOrAfterTimeInMS(timeInMS)};
}

}  // namespace

PropertyValue PCElement::setupValueForPropertyType(PCPropertyType type) const {
    switch (type) {
        case PCPropertyTypeImageContents:
            return m_imageName;
        case PCPropertyTypeOpacity:
            return static_cast<float>(m_opacity);
        case PCPropertyTypeZRotation:
            return static_cast<float>(m_zRotation);
        case PCPropertyTypeChildrenZPositions:
        case PCPropertyTypeKeyAll:
            return PCProject::sortedSubelementIdentifiers(*this);
        case PCPropertyTypeScale:
            return QPointF(1, 1);
        case PCPropertyTypeTranslation:
            return QPointF(0, 0);
        case PCPropertyTypeScaleX:
            return static_cast<float>(m_scale.x());
        case PCPropertyTypeScaleY:
            return static_cast<float>(m_scale.y());
        case PCPropertyTypeTranslationX:
        case PCPropertyTypeTranslationY:
            return 0.0F;
        case PCPropertyTypeZPosition:
            return m_parent ? static_cast<float>(index()) : 0.0F;
        default:
            return {};
    }
}

float PCElement::setupNumberForPropertyType(PCPropertyType type) const {
    switch (type) {
        case PCPropertyTypeOpacity:
            return static_cast<float>(m_opacity);
        case PCPropertyTypeZRotation:
            return static_cast<float>(m_zRotation);
        case PCPropertyTypeScaleX:
            return static_cast<float>(m_scale.x());
        case PCPropertyTypeScaleY:
            return static_cast<float>(m_scale.y());
        default:
            return 0;
    }
}

// Reading.

ElementValues PCElement::valuesAtTimeInMS(int32_t timeInMS) const {
    return sampler().valuesAt(timeInMS);
}
float PCElement::zRotationAtTimeInMS(int32_t timeInMS) const {
    return sampler().rotationAt(timeInMS);
}
float PCElement::opacityAtTimeInMS(int32_t timeInMS) const {
    return sampler().opacityAt(timeInMS);
}
QPointF PCElement::scaleAtTimeInMS(int32_t timeInMS) const {
    return sampler().scaleAt(timeInMS);
}
QPointF PCElement::translationAtTimeInMS(int32_t timeInMS) const {
    return sampler().translationAt(timeInMS);
}

QPointF PCElement::positionAtTimeInMS(int32_t timeInMS) const {
    return m_position + translationAtTimeInMS(timeInMS);
}

QString PCElement::imageContentsAtTimeInMS(int32_t timeInMS) const {
    return sampler().imageAt(timeInMS);
}
QStringList PCElement::childrenZPositionsAtTimeInMS(int32_t timeInMS) const {
    return sampler().childrenAt(timeInMS);
}

float PCElement::canvasRotationAtTimeInMS(int32_t timeInMS) const {
    if (isCanvas()) { return 0; }
    const PCElement* parent = parentElement();
    return zRotationAtTimeInMS(timeInMS) +
           (parent ? parent->canvasRotationAtTimeInMS(timeInMS) : 0);
}

double PCElement::canvasXScaleAtTimeInMS(int32_t timeInMS) const {
    if (isCanvas()) { return 1; }
    const PCElement* parent = parentElement();
    return scaleAtTimeInMS(timeInMS).x() * (parent ? parent->canvasXScaleAtTimeInMS(timeInMS) : 1);
}

double PCElement::canvasYScaleAtTimeInMS(int32_t timeInMS) const {
    if (isCanvas()) { return 1; }
    const PCElement* parent = parentElement();
    return scaleAtTimeInMS(timeInMS).y() * (parent ? parent->canvasYScaleAtTimeInMS(timeInMS) : 1);
}

QPointF PCElement::canvasTranslationAtTimeInMS(int32_t timeInMS) const {
    const PCElement* parent = parentElement();
    if (isCanvas() || !parent) { return {}; }
    const QPointF sum =
        parent->canvasTranslationAtTimeInMS(timeInMS) + translationAtTimeInMS(timeInMS);
    const float rotation = parent->zRotationAtTimeInMS(timeInMS);
    if (rotation == 0) { return sum; }
    const auto cosine = static_cast<double>(std::cos(rotation));
    const auto sine = static_cast<double>(std::sin(rotation));
    const QPointF pivot = parent->anchorPointInPts();
    const QPointF arm = m_position - pivot;
    const QPointF rotated(arm.x() * cosine - arm.y() * sine + pivot.x(),
                          arm.x() * sine + arm.y() * cosine + pivot.y());
    return sum + rotated - m_position;
}

// Writing.

// A master keyframe is a wall: the values at the neighbouring ones are pinned before the edit. They
// are read before anything is written.
template <typename Read, typename Write>
void PCElement::pinNeighbours(int32_t timeInMS, Read read, Write write) {
    const Neighbours neighbours = masterNeighbours(*this, timeInMS);
    const bool pinsPrevious = neighbours.previous && project()->tweenOn();
    const int32_t previousTime = pinsPrevious ? neighbours.previous->timeInMS() : 0;
    const int32_t nextTime = neighbours.next ? neighbours.next->timeInMS() : 0;
    const auto previousValue = read(previousTime);
    const auto nextValue = read(nextTime);
    if (pinsPrevious) { write(previousValue, previousTime)->setKeyall(true); }
    if (neighbours.next) { write(nextValue, nextTime)->setKeyall(true); }
}

KeyframePtr PCElement::setFloatValue(float value, int32_t timeInMS, const TimelinePtr& timeline) {
    if (!timeline || !std::isfinite(value)) { return nullptr; }
    if (!isFloatProperty(timeline->propertyType())) {
        failContract(
            u"You cannot call setFloatValue:atTimeInMS:forTimeline: on this timeline %1"_s.arg(
                stringFromPropertyType(timeline->propertyType())));
    }
    pinNeighbours(
        timeInMS, [&timeline](int32_t time) { return timeline->floatValueAtTimeInMS(time); },
        [&timeline](float pinned, int32_t time) {
            return timeline->setFloatPropertyValue(pinned, time);
        });
    return timeline->setFloatPropertyValue(value, timeInMS);
}

// Null in setup mode, and where a damaged or very old package filed a timeline of another type.
TimelinePtr PCElement::editableTimeline(PCPropertyType type) const {
    TimelinePtr attached = timeline(type);
    return attached && attached->propertyType() == type ? attached : nullptr;
}

KeyframePtr PCElement::setSyncedFloat(float value, int32_t timeInMS, PCPropertyType type,
                                      const QString& notification) {
    KeyframePtr keyframe = setFloatValue(value, timeInMS, editableTimeline(type));
    viewLayer().syncWithModelAtTimeInMS(timeInMS);
    post(notification);
    return keyframe;
}

KeyframePtr PCElement::setXScale(float value, int32_t timeInMS) {
    return setSyncedFloat(value, timeInMS, PCPropertyTypeScaleX, ElementNotification::scale);
}
KeyframePtr PCElement::setYScale(float value, int32_t timeInMS) {
    return setSyncedFloat(value, timeInMS, PCPropertyTypeScaleY, ElementNotification::scale);
}
KeyframePtr PCElement::setXTranslation(float value, int32_t timeInMS) {
    return setSyncedFloat(value, timeInMS, PCPropertyTypeTranslationX,
                          ElementNotification::position);
}
KeyframePtr PCElement::setYTranslation(float value, int32_t timeInMS) {
    return setSyncedFloat(value, timeInMS, PCPropertyTypeTranslationY,
                          ElementNotification::position);
}
KeyframePtr PCElement::setOpacity(float opacity, int32_t timeInMS) {
    return setSyncedFloat(std::clamp(opacity, 0.0F, 1.0F), timeInMS, PCPropertyTypeOpacity,
                          ElementNotification::opacity);
}

KeyframePtr PCElement::setZRotation(float radians, int32_t timeInMS) {
    KeyframePtr keyframe =
        setFloatValue(radians, timeInMS, editableTimeline(PCPropertyTypeZRotation));
    post(ElementNotification::rotation);
    return keyframe;
}

void PCElement::setScale(QPointF scale, int32_t timeInMS) {
    const QPointF old = scaleAtTimeInMS(timeInMS);
    if (old.x() != scale.x()) { setXScale(static_cast<float>(scale.x()), timeInMS); }
    if (old.y() != scale.y()) { setYScale(static_cast<float>(scale.y()), timeInMS); }
    viewLayer().syncWithModelAtTimeInMS(timeInMS);
    post(ElementNotification::scale);
}

void PCElement::setTranslation(QPointF translation, int32_t timeInMS) {
    const QPointF old = translationAtTimeInMS(timeInMS);
    if (old.x() != translation.x()) {
        setXTranslation(static_cast<float>(translation.x()), timeInMS);
    }
    if (old.y() != translation.y()) {
        setYTranslation(static_cast<float>(translation.y()), timeInMS);
    }
    viewLayer().syncWithModelAtTimeInMS(timeInMS);
    post(ElementNotification::position);
}

// Images and children orders only jump: every keyframe written is instant.
KeyframePtr PCElement::keyInstantly(const PropertyValue& value, int32_t timeInMS,
                                    PCPropertyType type) {
    const TimelinePtr target = editableTimeline(type);
    if (!target) { return nullptr; }
    const auto write = [&target](const PropertyValue& written, int32_t time) {
        KeyframePtr keyframe = target->setStoredPropertyValue(written, time);
        keyframe->setInstantTransition(true);
        return keyframe;
    };
    pinNeighbours(
        timeInMS, [&target](int32_t time) { return target->valueAtTimeInMS(time); }, write);
    return write(value, timeInMS);
}

KeyframePtr PCElement::setImageContents(const QString& imageName, int32_t timeInMS) {
    KeyframePtr keyframe = keyInstantly(imageName, timeInMS, PCPropertyTypeImageContents);
    viewLayer().syncWithModelAtTimeInMS(timeInMS);
    post(ElementNotification::contents);
    return keyframe;
}

KeyframePtr PCElement::setChildrenZPositions(const QStringList& identifiers, int32_t timeInMS) {
    KeyframePtr keyframe = keyInstantly(identifiers, timeInMS, PCPropertyTypeChildrenZPositions);
    viewLayer().syncWithModelAtTimeInMS(timeInMS);
    post(ElementNotification::childrenZPosition);
    return keyframe;
}

// The state at the time stays where it is: its own shift, less the one that the setup position
// gets. Both are nothing, to the bit, for the anchor point that is there already.
void PCElement::setAnchorPoint(QPointF anchorPoint, int32_t timeInMS) {
    const QPointF translation = translationAtTimeInMS(timeInMS);
    const QPointF newAnchor(m_size.width() * anchorPoint.x(), m_size.height() * anchorPoint.y());
    const QTransform transform = scaleThenTurn(scaleAtTimeInMS(timeInMS),
                                               static_cast<double>(zRotationAtTimeInMS(timeInMS)));
    const QPointF shift = transform.map(newAnchor) - transform.map(anchorPointInPts());
    const QPointF oldPosition = m_position;
    setAnchorPoint(anchorPoint);
    setTranslation(translation + shift - (m_position - oldPosition), timeInMS);
}

void PCElement::removeAllTimelines() {
    viewLayer().removeAllAnimations();
    clearTimelines();
    viewLayer().syncWithModel();
}

}  // namespace tweenery
