#pragma once

#include "codegen/export_plan.h"
#include "codegen/language/language_code_provider.h"

namespace tweenery {

/// Writes the method of the generated class that rebuilds the scene: one block an element, parents
/// before their children, back to front.
class HierarchyCode {
 public:
    HierarchyCode(const ExportPlan& plan, PCLanguageCodeProvider& provider)
        : m_plan(plan), m_provider(provider) {}

    void addSetup();

 private:
    void addCodeForCreatingElement(const PlannedElement& planned);
    void createObject(const PlannedElement& planned);
    void appendSettingOfImageWithFileName(const QString& imageName, const PlannedElement& planned);
    void appendSettingOfOpacity(const PlannedElement& planned);
    void appendSettingOfScaleAndZRotation(const PlannedElement& planned);
    void addToParent(const PlannedElement& planned);
    const std::string& imageVariable(const QString& imageName);

    const ExportPlan& m_plan;
    PCLanguageCodeProvider& m_provider;
    std::unordered_map<QString, std::string> m_imageVariableNamesByImageFileName;
    TakenNames m_takenVariables;
};

}  // namespace tweenery
