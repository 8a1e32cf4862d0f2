#include "sample_scene.h"

#include <QPainter>
#include <QSvgRenderer>
#include <QtMath>

#include "base/errors.h"
#include "base/ports.h"
#include "model/document.h"
#include "storage/bitmap.h"

using namespace Qt::StringLiterals;

namespace tweenery::samples {
namespace {

// Nobody is there to be asked.
class NoAlerts : public AlertPort {
 public:
    AlertAnswer runModal(const Alert& alert) override {
        failContract(alert.message + u": "_s + alert.informativeText);
    }
};

QByteArray drawn(const QRectF& place, const QByteArray& svg, int density) {
    QByteArray document("<svg xmlns=\"http://www.w3.org/2000/svg\" fill=\"none\" viewBox=\"");
    for (const double number : {place.x(), place.y(), place.width(), place.height()}) {
        document += QByteArray::number(number) + ' ';
    }
    document += "\">" + svg + "</svg>";
    QSvgRenderer renderer(document);
    assertContract(renderer.isValid(), u"the artwork is no SVG"_s);
    QImage image((place.size() * density).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    renderer.render(&painter);
    painter.end();
    return encodeImage(image, ImageFormat::Png);
}

}  // namespace

QByteArray verticalGradient(const QByteArray& id, const QByteArray& top, const QByteArray& bottom) {
    return "<defs><linearGradient id=\"" + id +
           "\" x1=\"0\" y1=\"0\" x2=\"0\" y2=\"1\"><stop offset=\"0\" stop-color=\"" + top +
           "\"/><stop offset=\"1\" stop-color=\"" + bottom + "\"/></linearGradient></defs>";
}

SampleScene::SampleScene(const QString& name, QSizeF canvas)
    : m_name(name), m_project(PCProject::init()) {
    m_project->canvas()->setSize(canvas);
    m_project->setProjectName(name);
    PCProjectPreferences& preferences = m_project->preferences();
    preferences.setGeneratedCodeIncludesImages(true);
}

// Artwork and elements.

QString SampleScene::addPicture(const QString& name, const QRectF& place, const QByteArray& svg) {
    PCImageSetManager& sets = m_project->imageSetManager();
    sets.putImageSet(
        sets.makeImageSet({PCImage::pcimageWithData(drawn(place, svg, 1), name + u".png"_s),
                           PCImage::pcimageWithData(drawn(place, svg, 2), name + u"@2x.png"_s)}));
    return name + u".png"_s;
}

SampleScene::Element SampleScene::add(const QString& name, const QRectF& place,
                                      const QByteArray& svg) {
    const Element element = PCElement::init();
    element->setName(name);
    element->setImageName(addPicture(name, place, svg));
    element->setSize(place.size());
    element->setPosition(place.center());
    m_project->canvas()->insertSubelement(element, m_project->canvas()->children().size());
    return element;
}

SampleScene::Element SampleScene::group(const QString& name, const PCElement::Elements& elements,
                                        QPointF anchor) {
    m_project->groupElements(elements);
    const Element group =
        m_project->elementForIdentifier(elements.front()->parentElement()->identifier());
    group->setName(name);
    setAnchor(group, anchor);
    return group;
}

void SampleScene::setAnchor(const Element& element, QPointF anchor) {
    const QSizeF size = element->size();
    const QPointF own = anchor - element->convertToCanvas({0, 0});
    element->setAnchorPoint({own.x() / size.width(), own.y() / size.height()});
}

// Animations.

void SampleScene::animation(const QString& name) {
    PCAnimationsManager& manager = m_project->animationsManager();
    manager.setSelectedAnimation(manager.renameAnimation(manager.addNewEmptyAnimation(), name));
}

void SampleScene::key(const Element& element, PCPropertyType type, const std::vector<Key>& keys,
                      PCRepeatBehavior repeat) {
    for (const Key& key : keys) {
        const double value =
            type == PCPropertyTypeZRotation ? qDegreesToRadians(key.value) : key.value;
        const auto keyframe =
            element->setFloatValue(static_cast<float>(value), key.time, element->timeline(type));
        keyframe->setEasingMode(key.easing);
    }
    element->timeline(type)->setRepeatBehavior(repeat);
}

void SampleScene::keyScale(const Element& element, const std::vector<Key>& keys,
                           PCRepeatBehavior repeat) {
    key(element, PCPropertyTypeScaleX, keys, repeat);
    key(element, PCPropertyTypeScaleY, keys, repeat);
}

void SampleScene::keyPictures(const Element& element,
                              const std::vector<std::pair<int32_t, QString>>& pictures,
                              PCRepeatBehavior repeat) {
    for (const auto& [time, picture] : pictures) {
        element->setImageContents(picture, time);
    }
    element->timeline(PCPropertyTypeImageContents)->setRepeatBehavior(repeat);
}

void SampleScene::keyOrder(const Element& parent,
                           const std::vector<std::pair<int32_t, PCElement::Elements>>& orders,
                           PCRepeatBehavior repeat) {
    const Element owner = parent ? parent : m_project->canvas();
    for (const auto& [time, elements] : orders) {
        QStringList identifiers;
        for (const Element& element : elements) {
            identifiers << element->identifier().toString();
        }
        owner->setChildrenZPositions(identifiers, time);
    }
    owner->timeline(PCPropertyTypeChildrenZPositions)->setRepeatBehavior(repeat);
}

void SampleScene::keyAll(const std::vector<int32_t>& times) {
    const auto& master =
        m_project->animationsManager().selectedAnimation()->masterKeyframesTimeline();
    for (const int32_t time : times) {
        master->setFloatPropertyValue(0, time);
    }
}

void SampleScene::save(const QString& folder) {
    m_project->animationsManager().setSelectedAnimation(nullptr);
    m_project->undoManager().removeAllActions();
    NoAlerts alerts;
    StandardErrorLog log;
    PCDocument document(alerts, log);
    document.setProject(m_project);
    document.saveAs(folder + u'/' + m_name + u".tweenery"_s);
}

}  // namespace tweenery::samples
