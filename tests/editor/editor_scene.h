#pragma once

#include <QImage>

#include "editor/canvas/element_selection_manager.h"
#include "editor/layers/editor_layer.h"
#include "editor/layers/project_layers.h"
#include "support/model_builder.h"

namespace tweenery::test {

/// A project on a screen: every element has its layer, the canvas lies in an editor.
struct EditorScene {
    PCProject::Ptr project;
    PCElement::Ptr canvas = project->canvas();
    ProjectLayers::Ptr layers;
    PCEditorLayer editor;
    PCElementSelectionManager selection{project};

    explicit EditorScene(const PCProject::Ptr& shown) : project(shown) {
        project->setBackingScale(1);
        layers = ProjectLayers::forProject(project);
        editor.setCanvasLayer(*PCLayer::of(*canvas));
        magnify(1);
    }
    explicit EditorScene(QSizeF size = {1000, 800}) : EditorScene(PCProject::init()) {
        canvas->setSize(size);
        magnify(1);
    }
    ~EditorScene() { selection.deselectAllElements(); }

    void magnify(float factor) {
        project->preferences().setCanvasZoomLevel(factor);
        editor.refreshBounds(
            PCEditorLayer::boundsSizedForCanvasSize(canvas->size(), factor, QSizeF()), factor);
        editor.layoutIfNeeded();
    }
    /// Up to date.
    PCLayer& layer(const PCElement::Ptr& element) const {
        layers->update();
        return *PCLayer::of(*element);
    }
    PCLayer& layer(const QString& name) const { return layer(named(*project, name)); }
    /// An image set of one pixel a point.
    void addImage(const QString& filename, const QImage& image) const {
        project->imageSetManager().addOrReplaceImageSetWithPCImage(
            std::make_shared<PCImage>(image, filename));
    }
    /// A new element below `parent` that shows all of an opaque image.
    PCElement::Ptr addPicture(const PCElement::Ptr& parent, const QString& name, Look look) const {
        const QString file = name + QStringLiteral(".png");
        QImage image(look.size.toSize(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::darkCyan);
        addImage(file, image);
        const auto element = addElement(parent, name, look);
        element->setImageName(file);
        return element;
    }
    void select(const QStringList& names) { selection.selectElements(allNamed(*project, names)); }
    PCBorderLayer& border(const QString& name) const { return *layer(name).borderLayer(); }
    /// A point of the canvas on the editor.
    QPointF onEditor(QPointF point) const { return editor.convertPointFromCanvasToEditor(point); }
    /// The name of the element hit at a point of the canvas, by the rules of a press.
    QString pressed(QPointF point, bool isDirect) {
        const PCLayer* hit =
            editor.layerAtLocationInEditor(onEditor(point), selection.selectedElements(), isDirect);
        return hit ? hit->element()->name() : QStringLiteral("-");
    }
};

}  // namespace tweenery::test
