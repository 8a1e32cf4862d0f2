#include "codegen/project_code_generator.h"

#include "base/errors.h"
#include "codegen/export_error.h"
#include "codegen/frame_sliced_animation_code.h"
#include "codegen/hierarchy_code.h"
#include "codegen/standard_animation_code.h"

using namespace Qt::StringLiterals;

namespace tweenery {

std::shared_ptr<PCProject> PCProjectCodeGenerator::project() const {
    auto project = m_project.lock();
    assertContract(project != nullptr, u"project MUST be set"_s);
    return project;
}

void PCProjectCodeGenerator::loadFileContentsByName() {
    const auto exported = project();
    assertContract(m_languageProvider != nullptr, u"languageProvider MUST be set"_s);
    m_fileContentsByName.clear();
    m_plan.reset();
    m_plan = planExport(
        *exported,
        {m_languageProvider->language(), m_generateForMac, m_clipsCanvas, m_addAnimationSuffix},
        m_isLFTPuppetView);
    m_isLFTPuppetView = m_plan->isLFTPuppetView;
    if (const auto obstacle = obstacleToExport(*m_plan)) { throw ExportError(*obstacle); }
    m_languageProvider->setGeneratedClassName(m_plan->generatedClassName.toStdString());
    m_languageProvider->setGenerateForMac(m_generateForMac);
    generateCodeForFileContentsByName(*m_plan);
}

std::vector<ExportDiagnostic> PCProjectCodeGenerator::diagnostics() const {
    if (!m_plan) { return {}; }
    return exportDiagnostics(*project(), *m_plan);
}

void PCProjectCodeGenerator::generateCodeForFileContentsByName(ExportPlan& plan) {
    PCLanguageCodeProvider& provider = *m_languageProvider;
    const auto frameSlices = FrameSlicedAnimationCode::make(plan, provider);
    provider.addTopComments();
    addImports(plan, frameSlices->writesText());
    frameSlices->prepareForSlicedAnimationExport();
    frameSlices->appendStructDefinitionAndValuesArrayForSlicedAnimations();
    beginClassDefinition(plan);
    provider.addCodeMarkWithName("Scaling");
    provider.addLayoutSubelements();
    HierarchyCode(plan, provider).addSetup();
    StandardAnimationCode(plan, provider).addStandardAnimations();
    frameSlices->appendSlicedApplyFrameMethodsForSlicedAnimations();
    provider.endClassDefinition();
    frameSlices->appendStructValuesArrayForSlicedAnimations();
    m_fileContentsByName = provider.fileContentsByName();
}

void PCProjectCodeGenerator::addImports(const ExportPlan& plan, bool usesFrameSlices) {
    PCLanguageCodeProvider& provider = *m_languageProvider;
    provider.beginImports();
    if (m_generateForMac) {
        provider.addFrameworkDependency("AppKit");
        provider.addFrameworkDependency("QuartzCore");
    } else {
        provider.addFrameworkDependency("UIKit");
    }
    // Their playback names a constant of this framework.
    if (usesFrameSlices) { provider.addFrameworkDependency("AVFoundation"); }
    if (!m_generateForMac && plan.isLFTPuppetView) { provider.addClassDependency("LFTPuppetView"); }
    provider.endImports();
}

void PCProjectCodeGenerator::beginClassDefinition(const ExportPlan& plan) {
    PCLanguageCodeProvider& provider = *m_languageProvider;
    std::string_view superName = plan.isLFTPuppetView ? "LFTPuppetView" : "UIView";
    if (m_generateForMac) { superName = "NSView"; }
    provider.beginClassDefinitionWithSuperName(superName, plan.usesCompletionBlocksTable());
    // A puppet view declares both itself; on the desktop there is none.
    const bool isPuppet =
        plan.isLFTPuppetView &&
        !(m_generateForMac && plan.target.language == TargetLanguage::CurrentSwift);
    if (!isPuppet) {
        if (plan.hasAtLeastOneLayer) { provider.addLayersByNameProperty(); }
        if (plan.hasAtLeastOneView) { provider.addViewsByNameProperty(); }
    }
    provider.addCodeMarkWithName("Life Cycle");
    provider.addInitializersForViewWithCanvasSize(plan.canvasSize());
    if (m_generateForMac) { provider.addFlippedViewMethod(); }
}

}  // namespace tweenery
