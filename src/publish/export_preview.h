#pragma once

#include <QSizeF>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "editor/layers/project_layers.h"
#include "model/document.h"
#include "model/project.h"

namespace tweenery {

/// How long an animation lasts, by its stored timelines.
struct AnimationLength {
    int32_t durationInMS = 0;
    bool isEndless = false;

    /// "0.8 s", from a hundred seconds on "123 s", without an end "∞".
    QString text() const;
    bool isAbove0() const { return isEndless || durationInMS > 0; }
};

/// A scene that plays beside the project's own: a copy of its elements, read from what is stored,
/// with layers of their own. Any of the animations may play, each from the moment in which it was
/// started. Time is in seconds and is told from outside.
class ExportPreview {
 public:
    struct Animation {
        QString name;
        AnimationLength length;
        QString failure;  // why it cannot be read and played; null for most
        bool isRunning = false;
    };

    /// Reads the copy and decodes what it shows, on whatever thread; the preview is then used on
    /// one. Throws InputError when the project cannot be read.
    static std::unique_ptr<ExportPreview> read(const DocumentSnapshot& snapshot,
                                               double backingScale);
    /// Gives the elements their layers, on the thread that draws. Once.
    void show();

    const std::vector<Animation>& animations() const { return m_animations; }
    /// Begins at the time told last. Nothing for one that cannot be read.
    void start(size_t animation);
    void stop(size_t animation);
    void stopAll();
    bool isAnyRunning() const;

    void setClipsToBounds(bool clips);
    /// Fits the scene into a view of that size, in points: the box round all elements and 50 points
    /// more, never enlarged. The middle of the canvas stands in the middle of the view.
    void setViewSize(QSizeF size);
    void setTime(double seconds) { m_backing.setRootTime(seconds); }
    /// What to draw: the view's ground with the canvas on it, in points of the view.
    Layer& layer() { return m_backing; }
    /// Draws come after this.
    void update() { m_layers->update(); }

    PCProject& project() { return *m_project; }
    QSizeF canvasSize() const { return m_project->canvas()->size(); }
    bool hasElements() const { return !m_project->canvas()->children().empty(); }

 private:
    ExportPreview() = default;

    PCProject::Ptr m_project;
    ProjectLayers::Ptr m_layers;
    Layer m_backing;
    QRectF m_box;  // round all elements in setup, in points of the canvas
    std::vector<Animation> m_animations;

    Layer& canvasLayer();
    const PCAnimation::Ptr& animationAt(size_t index) const;
    void readAnimations();
    QRectF boxOfElements();
};

/// The scale at which a box, with 50 points added to its width and height, fits into a view of that
/// size: at most 1.
double scaleToFit(QSizeF box, QSizeF view);

}  // namespace tweenery
