#pragma once

#include <QBrush>
#include <QImage>
#include <QPainter>
#include <QRect>
#include <QSize>

#include "editor/layers/project_layers.h"
#include "model/project.h"
#include "scene/display_list.h"
#include "scene/layer.h"

namespace tweenery {

/// How the pictures of a scene look.
struct PictureLook {
    double scale = 1;  // pixels a point, above 0
    QBrush background{Qt::NoBrush};
    bool clips = false;  // nothing shows outside of the canvas
};

/// The layers of a project that nobody edits, set to any time and listed for drawing. Dense screens
/// take their artwork from the 2x files, and so do pictures of a scale above 1.
class ScenePictures {
 public:
    /// Gives the project layers.
    ScenePictures(const PCProject::Ptr& project, const PictureLook& look);
    ~ScenePictures();
    ScenePictures(const ScenePictures&) = delete;
    ScenePictures& operator=(const ScenePictures&) = delete;

    /// Selects an animation; null for the setup state. Throws InputError when it, or an image that
    /// the elements show in it, cannot be read.
    void select(const PCAnimation::Ptr& animation);
    /// Sets all layers to a time of the selected animation.
    void setTime(int32_t timeInMS);

    /// The pixels of the canvas, which begins at (0, 0).
    QRect canvasPixels() const;
    /// The pixels in which something shows now, the canvas included. What lies farther from the
    /// canvas than the editor can scroll is left out, and when clipping, everything outside.
    QRect pixels();
    /// What to draw for that part of the scene, now.
    void list(const QRect& pixels, DisplayList& list);
    const PictureLook& look() const { return m_look; }
    int64_t elementCount() const;
    /// Paints a picture of nothing but the background in that place.
    void paintBackground(QPainter& painter, const QRect& place) const;

 private:
    PCProject::Ptr m_project;
    ProjectLayers::Ptr m_layers;
    PictureLook m_look;
    Layer m_stage;  // has the background; its units are pixels
    DisplayList m_list;

    Layer& canvasLayer() const;
    void requireImages();
};

}  // namespace tweenery
