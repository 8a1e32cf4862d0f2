// Shows packages: gives every element a layer, selects, hits and draws at the setup state
// and at times of each animation.

#include <cstdint>
#include <cstdlib>

#include "base/errors.h"
#include "editor/canvas/element_selection_manager.h"
#include "editor/layers/editor_layer.h"
#include "editor/layers/project_layers.h"
#include "model/project.h"
#include "scene/layer_renderer.h"
#include "structured_package.h"

using namespace tweenery;

namespace {

void require(bool holds) {
    if (!holds) { std::abort(); }
}

// A small picture of whatever part of the canvas the bytes choose.
void draw(LayerRenderer& renderer, PCEditorLayer& editor, fuzz::FuzzInput& input) {
    constexpr QSize kPicture(48, 40);
    const double scale = 0.01 * (1 + input.below(200));
    const Affine toDevice{{scale, 0, 0, scale}, QPointF(input.below(64), input.below(64))};
    require(renderer.frame(editor, toDevice, kPicture).size() == kPicture);
}

void press(PCEditorLayer& editor, PCElementSelectionManager& selection, fuzz::FuzzInput& input) {
    const QPointF point(input.below(2000), input.below(2000));
    const bool isDirect = input.chance(50);
    const PCLayer* layer =
        editor.layerAtLocationInEditor(point, selection.selectedElements(), isDirect);
    editor.locationAtPosition(editor.convertPointFromEditorToCanvas(point), layer,
                              selection.selectedElementsCount());
    selection.selectElements(editor.elementsHitInSelectionRect({point, QSizeF(300, 300)}));
}

void show(PCProject& project, fuzz::FuzzInput& input) {
    const std::shared_ptr<PCProject> standing = project.shared_from_this();
    PCElementSelectionManager selection(standing);
    PCEditorLayer editor;
    const ProjectLayers::Ptr layers = ProjectLayers::forProject(standing);
    editor.setCanvasLayer(*PCLayer::of(*project.canvas()));
    editor.refreshBounds(PCEditorLayer::boundsSizedForCanvasSize(project.canvas()->size(), 1, {}),
                         1);
    LayerRenderer renderer(1);
    draw(renderer, editor, input);
    press(editor, selection, input);
    for (const PCAnimation::Ptr& animation : project.animationsManager().animations()) {
        try {
            project.animationsManager().setSelectedAnimation(animation);
        } catch (const InputError&) { continue; }
        for (const int32_t time : {0, 1, 500, 123456, INT32_MAX}) {
            layers->show(EditTime::at(time));
            layers->flush();
            draw(renderer, editor, input);
            press(editor, selection, input);
        }
    }
    selection.deselectAllElements();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzz::FuzzInput input({data, size});
    try {
        show(*PCProject::projectForReadingWithFileWrapper(fuzz::structuredPackage(input)), input);
    } catch (const InputError&) {
        // What a package with faults deserves.
    }
    return 0;
}
