#include "editor/inspector/inspector_panes.h"

using namespace Qt::StringLiterals;

namespace tweenery {

std::vector<InspectorPaneKind> inspectorPanes(const PCElementSelectionManager& selection,
                                              bool isSetupMode) {
    using enum InspectorPaneKind;
    const size_t count = selection.selectedElementsCount();
    if (count == 0) { return {isSetupMode ? CanvasSize : ZPosition}; }
    std::vector<InspectorPaneKind> panes{Position, Scale, Rotation, Opacity};
    if (count > 1) { return panes; }
    const PCElement& element = *selection.firstSelectedElement();
    if (!element.isGroup()) { panes.push_back(Image); }
    if (!isSetupMode && element.children().size() > 1) { panes.push_back(ZPosition); }
    return panes;
}

InspectorHeader inspectorHeader(const PCElementSelectionManager& selection) {
    switch (selection.selectedElementsCount()) {
        case 0:
            return {u"Canvas"_s, u"header_canvas_icon"_s};
        case 1: {
            const PCElement& element = *selection.firstSelectedElement();
            return {element.name(),
                    element.isGroup() ? u"property_folder_icon"_s : u"property_element_icon"_s};
        }
        default:
            return {u"Multiple Values"_s, u"property_folder_icon"_s};
    }
}

std::span<const PCPropertyType> keyedTypes(InspectorPaneKind pane) {
    static constexpr PCPropertyType position[] = {PCPropertyTypeTranslationX,
                                                  PCPropertyTypeTranslationY};
    static constexpr PCPropertyType scale[] = {PCPropertyTypeScaleX, PCPropertyTypeScaleY};
    static constexpr PCPropertyType rotation[] = {PCPropertyTypeZRotation};
    static constexpr PCPropertyType opacity[] = {PCPropertyTypeOpacity};
    static constexpr PCPropertyType image[] = {PCPropertyTypeImageContents};
    static constexpr PCPropertyType order[] = {PCPropertyTypeChildrenZPositions};
    switch (pane) {
        case InspectorPaneKind::CanvasSize:
            break;
        case InspectorPaneKind::Position:
            return position;
        case InspectorPaneKind::Scale:
            return scale;
        case InspectorPaneKind::Rotation:
            return rotation;
        case InspectorPaneKind::Opacity:
            return opacity;
        case InspectorPaneKind::Image:
            return image;
        case InspectorPaneKind::ZPosition:
            return order;
    }
    return {};
}

NumberUnit unitOf(InspectorField field) {
    switch (field) {
        case InspectorField::ScaleX:
        case InspectorField::ScaleY:
        case InspectorField::Opacity:
            return NumberUnit::Percent;
        case InspectorField::Rotation:
            return NumberUnit::Degrees;
        default:
            return NumberUnit::Points;
    }
}

QString labelOf(InspectorField field, bool isSetupMode) {
    switch (field) {
        case InspectorField::CanvasWidth:
            return u"Width"_s;
        case InspectorField::CanvasHeight:
            return u"Height"_s;
        case InspectorField::PositionX:
            return isSetupMode ? u"Position X"_s : u"Translate X"_s;
        case InspectorField::PositionY:
            return isSetupMode ? u"Position Y"_s : u"Translate Y"_s;
        case InspectorField::ScaleX:
            return u"Scale X"_s;
        case InspectorField::ScaleY:
            return u"Scale Y"_s;
        case InspectorField::Rotation:
            return u"Rotation"_s;
        case InspectorField::Opacity:
            break;
    }
    return u"Opacity"_s;
}

}  // namespace tweenery
