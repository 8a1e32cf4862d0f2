#pragma once

#include <QString>
#include <memory>
#include <vector>

#include "codegen/artwork_export.h"
#include "codegen/export_diagnostics.h"
#include "codegen/language/cocoa_language_provider.h"

namespace tweenery {

/// The choices of an export.
struct ExportOptions {
    bool generateForMac = false;        // the desktop platform, not the mobile one
    bool clipsToBounds = false;         // the scene is clipped to its bounds
    bool includesImages = true;         // the artwork is copied beside the source
    bool cleansImageDirectory = false;  // the folder "images" is emptied first
    bool isDryRun = false;              // nothing is written, and the result as if it had been
    GenerationStamp stamp;              // the comment at the head of each file
    SwiftDialect swiftDialect = SwiftDialect::First;  // of an export in Swift

    /// As the project remembers them. The stamp has this program's version, and today's date in the
    /// short form of the system's locale.
    static ExportOptions fromPreferences(PCProject& project);
};

/// What an export came to.
struct ExportResult {
    WrittenFiles files;
    std::vector<ExportDiagnostic> diagnostics;
};

/// The provider of a language, for one run.
std::unique_ptr<PCLanguageCodeProvider> makeLanguageProvider(TargetLanguage language,
                                                             const GenerationStamp& stamp);

/// Writes the project's source, in Swift or else in Objective-C, and its artwork into `directory`,
/// which is made with its parents if it is not there. Files of the same names are replaced. What is
/// exported is what is stored: call PCProject::fileWrapper() after edits.
///
/// Throws ExportError when the project cannot be exported as it is, and InputError when a stored
/// timeline cannot be read; then nothing has been written. A file that cannot be written is noted
/// in the result, and the export goes on.
ExportResult exportCodeToDirectory(const std::shared_ptr<PCProject>& project,
                                   const QString& directory, bool usingSwift,
                                   const ExportOptions& options);

/// The diagnostics of such an export without writing anything; a project that cannot be exported is
/// one of them. Throws InputError when a stored timeline cannot be read.
std::vector<ExportDiagnostic> diagnosticsOfExport(PCProject& project, bool usingSwift,
                                                  const ExportOptions& options);

}  // namespace tweenery
