#include "codegen/hierarchy_code.h"

#include <cmath>

#include "base/errors.h"
#include "base/path_name.h"

using namespace Qt::StringLiterals;

namespace tweenery {

void HierarchyCode::addSetup() {
    m_imageVariableNamesByImageFileName.clear();
    m_takenVariables = m_plan.elementVariables;
    m_provider.addCodeMarkWithName("Setup");
    m_provider.beginSetupAndUseCompletionBlocksTable(m_plan.usesCompletionBlocksTable());
    if (m_plan.target.generateForMac) { m_provider.setWantsLayer(true, "self"); }
    m_provider.addLocalSetupVariablesIncludesLayer(m_plan.hasAtLeastOneLayer,
                                                   m_plan.hasAtLeastOneView);
    m_provider.addScalingContainerWithSize(m_plan.canvasSize(), false, m_plan.target.clipsCanvas);
    for (size_t i = 1; i < m_plan.elements.size(); ++i) {
        addCodeForCreatingElement(m_plan.elements[i]);
    }
    m_provider.endSetupIncludesLayers(m_plan.hasAtLeastOneLayer, m_plan.hasAtLeastOneView);
}

void HierarchyCode::addCodeForCreatingElement(const PlannedElement& planned) {
    const PCElement& element = *planned.element;
    m_provider.addNewline();
    createObject(planned);
    m_provider.setBoundsWithSize(element.size(), planned.variable);
    const QPointF anchor = element.anchorPoint();
    const bool hasCustomAnchor = anchor.x() != 0.5 || anchor.y() != 0.5;
    if (hasCustomAnchor) { m_provider.setAnchor(anchor, planned.variable, planned.isLayer()); }
    if (!element.imageName().isEmpty()) {
        appendSettingOfImageWithFileName(element.imageName(), planned);
        // Layers have no content mode.
        if (!planned.isLayer()) {
            m_provider.setCenterContentModeOnVariableNamed(planned.variable);
        }
    }
    m_provider.setPosition(element.position(), planned.variable, planned.isLayer(),
                           hasCustomAnchor);
    appendSettingOfOpacity(planned);
    appendSettingOfScaleAndZRotation(planned);
    addToParent(planned);
    m_provider.addElementToByNameDictionaryWithVariableName(planned.variable, planned.userName,
                                                            planned.isLayer());
}

void HierarchyCode::createObject(const PlannedElement& planned) {
    const bool mac = m_plan.target.generateForMac;
    // In current Swift a group that has an image shows it.
    const bool isGroup =
        planned.element->isGroup() && (m_plan.target.language != TargetLanguage::CurrentSwift ||
                                       planned.element->imageName().isEmpty());
    switch (planned.type) {
        case PCCodeGeneratorType::Layer:
            m_provider.addLayerWithVariableName(planned.variable, planned.userName);
            break;
        case PCCodeGeneratorType::View:
            if (mac) {
                m_provider.addVariableWithName(planned.variable,
                                               isGroup ? "NSView" : "NSImageView");
            } else {
                m_provider.addVariableWithName(planned.variable,
                                               isGroup ? "UIView" : "UIImageView");
            }
            break;
        case PCCodeGeneratorType::RecordableView:
            assertContract(!mac, u"PCCodeGeneratorTypeRecordableView not Supported on Mac"_s);
            m_provider.addVariableWithName(
                planned.variable, isGroup ? "LFTRecordableView" : "LFTRecordableImageView");
            break;
        case PCCodeGeneratorType::Button:
            assertContract(!mac, u"PCCodeGeneratorTypeButton not Supported on Mac"_s);
            m_provider.addCustomButtonVariableWithName(planned.variable);
            break;
    }
}

// The image's variable; the statement that loads it stands where it is first used.
const std::string& HierarchyCode::imageVariable(const QString& imageName) {
    const auto [entry, isNew] = m_imageVariableNamesByImageFileName.try_emplace(imageName);
    if (isNew) {
        const QString variable =
            codeFriendlyNameFromName(withoutPathExtension(imageName), &m_takenVariables, true);
        m_takenVariables.insert(variable);
        entry->second = variable.toStdString();
        m_provider.addImageVariableWithName(entry->second, imageName.toStdString());
    }
    return entry->second;
}

void HierarchyCode::appendSettingOfImageWithFileName(const QString& imageName,
                                                     const PlannedElement& planned) {
    const std::string& image = imageVariable(imageName);
    switch (planned.type) {
        case PCCodeGeneratorType::Layer:
            m_provider.setLayerContents(planned.variable, image);
            break;
        case PCCodeGeneratorType::View:
        case PCCodeGeneratorType::RecordableView:
            m_provider.setImageFromVariableNameOnImageView(image, planned.variable);
            break;
        case PCCodeGeneratorType::Button:
            m_provider.setImageFromVariableNameOnButton(image, planned.variable);
            break;
    }
}

void HierarchyCode::appendSettingOfOpacity(const PlannedElement& planned) {
    const double opacity = planned.element->opacity();
    if (std::abs(1.0 - opacity) <= 0.0001) { return; }
    m_provider.setOpacity(static_cast<float>(opacity), planned.variable, planned.isLayer());
}

void HierarchyCode::appendSettingOfScaleAndZRotation(const PlannedElement& planned) {
    const QPointF scale = planned.element->scale();
    const auto xScale = static_cast<float>(scale.x());
    const auto yScale = static_cast<float>(scale.y());
    const auto zRotation = static_cast<float>(planned.element->zRotation());
    const bool isScaled = scale.x() != 1.0 || scale.y() != 1.0;
    const bool isRotated = planned.element->zRotation() != 0;
    if (isScaled && isRotated) {
        m_provider.setTransformWithXScaleAndZRotation(xScale, yScale, zRotation, planned.variable,
                                                      planned.isLayer());
    } else if (isScaled) {
        m_provider.setTransformWithXScale(xScale, yScale, planned.variable, planned.isLayer());
    } else if (isRotated) {
        m_provider.setTransformWithZRotation(zRotation, planned.variable, planned.isLayer());
    }
}

void HierarchyCode::addToParent(const PlannedElement& planned) {
    if (planned.parent == 0) {
        m_provider.addElementWithName(planned.variable, planned.isLayer(), "__scaling__",
                                      m_plan.target.generateForMac);
    } else {
        const PlannedElement& parent = m_plan.elements[planned.parent];
        m_provider.addElementWithName(planned.variable, planned.isLayer(), parent.variable,
                                      parent.isLayer());
    }
}

}  // namespace tweenery
