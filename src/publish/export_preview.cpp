#include "publish/export_preview.h"

#include <algorithm>
#include <cmath>

#include "base/errors.h"
#include "base/number_text.h"
#include "editor/layers/attached_animation.h"
#include "editor/layers/screen_image.h"
#include "editor/layers/tweenery_style.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

constexpr double kRoomAround = 50;    // points, of width and of height
constexpr int kLastWithDecimal = 99;  // seconds

}  // namespace

QString AnimationLength::text() const {
    if (isEndless) { return u"∞"_s; }
    const double seconds = durationInMS / 1000.0;
    const std::string number =
        seconds > kLastWithDecimal ? fixedText(std::floor(seconds), 0) : fixedText(seconds, 1);
    return QString::fromStdString(number) + u" s"_s;
}

double scaleToFit(QSizeF box, QSizeF view) {
    const double scale = std::min({view.width() / (box.width() + kRoomAround),
                                   view.height() / (box.height() + kRoomAround), 1.0});
    return std::isfinite(scale) ? std::max(scale, 0.0) : 1.0;
}

std::unique_ptr<ExportPreview> ExportPreview::read(const DocumentSnapshot& snapshot,
                                                   double backingScale) {
    std::unique_ptr<ExportPreview> preview(new ExportPreview);
    preview->m_project = snapshot.projectForReading();
    PCProject& project = *preview->m_project;
    project.setBackingScale(backingScale);
    for (const PCElement::Ptr& element : project.canvas()->elementAndAllDescendants()) {
        screenImageWithName(project, element->imageName());
    }
    preview->readAnimations();
    return preview;
}

void ExportPreview::readAnimations() {
    for (const PCAnimation::Ptr& animation : m_project->animationsManager().animations()) {
        Animation row{animation->name(), {}, {}, false};
        try {
            const PCAnimation::Summary summary = animation->storedSummary();
            row.length = {summary.durationInMS, summary.hasLooping};
        } catch (const InputError& error) {
            row.failure = u"“%1” %2."_s.arg(error.entry(), error.reason());
        }
        m_animations.push_back(row);
    }
}

void ExportPreview::show() {
    m_layers = ProjectLayers::forProject(m_project);
    LayerStyle ground;
    ground.background = TweeneryStyle::lightGrey();
    m_backing.setStyle(ground);
    LayerStyle checkered;
    checkered.background = QBrush(TweeneryStyle::canvasPattern());
    canvasLayer().setStyle(checkered);
    m_backing.addSublayer(canvasLayer());
    m_layers->update();
    m_box = boxOfElements();
}

Layer& ExportPreview::canvasLayer() {
    return *PCLayer::of(*m_project->canvas());
}

const PCAnimation::Ptr& ExportPreview::animationAt(size_t index) const {
    return m_project->animationsManager().animations()[index];
}

// Playing.

void ExportPreview::start(size_t animation) {
    Animation& row = m_animations[animation];
    if (row.isRunning || !row.failure.isNull()) { return; }
    try {
        PCAnimation& played = *animationAt(animation);
        played.applyAnimationWithRootElement(*m_project->canvas());
        attachAnimation(*m_project, played, m_backing.localTime());
        row.isRunning = true;
    } catch (const InputError& error) {
        row.failure = u"“%1” %2."_s.arg(error.entry(), error.reason());
    }
}

void ExportPreview::stop(size_t animation) {
    Animation& row = m_animations[animation];
    if (!std::exchange(row.isRunning, false)) { return; }
    for (const PCElement::Ptr& element : m_project->canvas()->elementAndAllDescendants()) {
        detachAnimation(*PCLayer::of(*element), row.name);
    }
}

void ExportPreview::stopAll() {
    for (size_t i = 0; i < m_animations.size(); ++i) {
        stop(i);
    }
}

bool ExportPreview::isAnyRunning() const {
    return std::any_of(m_animations.begin(), m_animations.end(),
                       [](const Animation& row) { return row.isRunning; });
}

// The view.

void ExportPreview::setClipsToBounds(bool clips) {
    canvasLayer().setMasksToBounds(clips);
}

QRectF ExportPreview::boxOfElements() {
    Layer& canvas = canvasLayer();
    QRectF box;
    for (const PCElement::Ptr& element : m_project->canvas()->elementAndAllDescendants()) {
        if (element == m_project->canvas()) { continue; }
        const PCLayer& layer = *PCLayer::of(*element);
        const QRectF outline = layer.convertRectTo(layer.bounds(), &canvas);
        const bool isFinite = std::isfinite(outline.width() + outline.height());
        if (!isFinite || !(outline.width() + outline.height() > 0)) { continue; }
        box = box.isNull() ? outline : box.united(outline);
    }
    return box.isNull() ? canvas.bounds() : box;
}

void ExportPreview::setViewSize(QSizeF size) {
    Layer& canvas = canvasLayer();
    m_backing.setBounds({QPointF(), size});
    m_backing.setPosition({size.width() / 2, size.height() / 2});
    const double scale = scaleToFit(m_box.size(), size);
    canvas.setTransform({{scale, scale}, 0, {}});
    canvas.setAnchorPoint({0.5, 0.5});
    canvas.setPosition({size.width() / 2, size.height() / 2});
}

}  // namespace tweenery
