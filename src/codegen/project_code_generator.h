#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "codegen/export_diagnostics.h"
#include "codegen/export_plan.h"
#include "codegen/language/language_code_provider.h"

namespace tweenery {

/// Turns a project into the source of a class that rebuilds its scene and plays its animations.
///
/// Works from what is stored: edits reach it through PCProject::fileWrapper(). A run changes
/// nothing in the project, also when it fails.
class PCProjectCodeGenerator {
 public:
    /// Not owned.
    void setProject(const std::shared_ptr<PCProject>& project) { m_project = project; }
    /// Whether the target is the desktop platform, not the mobile one.
    void setGenerateForMac(bool generateForMac) { m_generateForMac = generateForMac; }
    void setClipsCanvas(bool clipsCanvas) { m_clipsCanvas = clipsCanvas; }
    /// Generated methods take a suffix for animation keys. Off at first.
    void setAddAnimationSuffix(bool addSuffix) { m_addAnimationSuffix = addSuffix; }
    /// Fixed at first.
    void setNumberDigits(NumberDigits digits) { m_digits = digits; }
    /// A fresh one for each run.
    void setLanguageProvider(std::unique_ptr<PCLanguageCodeProvider> provider) {
        m_languageProvider = std::move(provider);
    }

    /// The whole run. Throws ExportError for a project that cannot be exported as it is, InputError
    /// for a stored timeline that cannot be read, AssertionFailure without a project or a provider.
    void loadFileContentsByName();
    /// The result of the last run: empty after one that failed.
    const FileContents& fileContentsByName() const { return m_fileContentsByName; }
    /// What a designer should know of the last run, also of one that stopped with ExportError.
    /// Found out by each call, from the project, which must still be as it was in the run.
    std::vector<ExportDiagnostic> diagnostics() const;

 private:
    std::shared_ptr<PCProject> project() const;
    void generateCodeForFileContentsByName(ExportPlan& plan);
    void addImports(const ExportPlan& plan, bool usesFrameSlices);
    void beginClassDefinition(const ExportPlan& plan);

    std::weak_ptr<PCProject> m_project;
    bool m_generateForMac = false;
    bool m_clipsCanvas = false;
    bool m_addAnimationSuffix = false;
    NumberDigits m_digits = NumberDigits::Fixed;
    bool m_isLFTPuppetView = false;  // once set, it stays
    std::unique_ptr<PCLanguageCodeProvider> m_languageProvider;
    std::optional<ExportPlan> m_plan;  // of the last run, if it came that far
    FileContents m_fileContentsByName;
};

}  // namespace tweenery
