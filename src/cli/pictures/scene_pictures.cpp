#include "cli/pictures/scene_pictures.h"

#include <QSet>
#include <algorithm>
#include <cmath>

#include "editor/layers/element_layer.h"
#include "scene/touched_pixels.h"

namespace tweenery {
namespace {

// The editor's document goes on for that many points on each side of the canvas.
constexpr double kMarginInPoints = 600;

}  // namespace

ScenePictures::ScenePictures(const PCProject::Ptr& project, const PictureLook& look)
    : m_project(project), m_layers(ProjectLayers::forProject(project)), m_look(look) {
    project->setBackingScale(look.scale > 1 ? 2 : 1);
    Layer& canvas = canvasLayer();
    canvas.setAnchorPoint({0, 0});
    canvas.setPosition({0, 0});
    canvas.setTransform({{look.scale, look.scale}, 0, {}});
    canvas.setMasksToBounds(look.clips);
    m_stage.setAnchorPoint({0, 0});
    m_stage.setStyle({.background = look.background, .borderColor = {}});
    m_stage.addSublayer(canvas);
}

ScenePictures::~ScenePictures() {
    canvasLayer().removeFromSuperlayer();
}

Layer& ScenePictures::canvasLayer() const {
    return *PCLayer::of(*m_project->canvas());
}

void ScenePictures::select(const PCAnimation::Ptr& animation) {
    m_project->animationsManager().setSelectedAnimation(animation);
    requireImages();
    m_layers->show(EditTime::setup());
}

// A layer shows nothing in place of an image that is damaged; a picture would hide the damage.
void ScenePictures::requireImages() {
    QSet<QString> names;
    for (const PCElement::Ptr& element : m_project->canvas()->elementAndAllDescendants()) {
        if (element->isGroup()) { continue; }
        names.insert(element->imageName());
        const auto timeline = element->imageContentsTimeline();
        if (!timeline) { continue; }
        for (const auto& keyframe : timeline->keyframesSortedByTime()) {
            names.insert(keyframe->stringPropertyValue());
        }
    }
    const PCImageSetManager& sets = m_project->imageSetManager();
    for (const QString& name : names) {
        sets.imageWithName(name, m_project->backingScale());
    }
}

void ScenePictures::setTime(int32_t timeInMS) {
    m_layers->show(EditTime::at(timeInMS));
}

QRect ScenePictures::canvasPixels() const {
    return touchedPixels({QPointF(), m_project->canvas()->size() * m_look.scale});
}

QRect ScenePictures::pixels() {
    const QRect canvas = canvasPixels();
    if (m_look.clips) { return canvas; }
    const int margin = static_cast<int>(std::ceil(kMarginInPoints * m_look.scale));
    const QRect reach = canvas.adjusted(-margin, -margin, margin, margin);
    list(reach, m_list);
    QRect pixels = canvas;
    for (const DisplayItem& item : m_list.items()) {
        const auto* image = std::get_if<ImageDrawing>(&item.drawing);
        if (!image) { continue; }
        const QRectF place = item.toDevice.mapRect(image->rect).translated(reach.topLeft());
        pixels |= touchedPixels(place & QRectF(reach));
    }
    return pixels;
}

void ScenePictures::list(const QRect& pixels, DisplayList& list) {
    m_stage.setBounds(pixels);
    const QPointF origin = pixels.topLeft();
    list.build(m_stage, {{}, -origin}, pixels.size());
}

int64_t ScenePictures::elementCount() const {
    return static_cast<int64_t>(m_project->canvas()->elementAndAllDescendants().size());
}

void ScenePictures::paintBackground(QPainter& painter, const QRect& place) const {
    painter.setBrushOrigin(place.topLeft());
    painter.fillRect(place, m_look.background);
}

}  // namespace tweenery
