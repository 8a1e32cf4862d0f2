#include "codegen/project_exporter.h"

#include <QDate>
#include <QLocale>

#include "base/errors.h"
#include "codegen/language/current_swift_code_provider.h"
#include "codegen/language/objc_code_provider.h"
#include "codegen/language/swift_code_provider.h"
#include "codegen/project_code_generator.h"

using namespace Qt::StringLiterals;

namespace tweenery {

namespace {

// The same bytes, which must outlive the views.
QByteArrayList viewsOf(const SourcePieces& pieces) {
    QByteArrayList views;
    for (const std::string& piece : pieces) {
        views << QByteArray::fromRawData(piece.data(), static_cast<qsizetype>(piece.size()));
    }
    return views;
}

TargetLanguage targetLanguage(bool usingSwift, const ExportOptions& options) {
    if (!usingSwift) { return TargetLanguage::ObjectiveC; }
    return options.swiftDialect == SwiftDialect::First ? TargetLanguage::FirstSwift
                                                       : TargetLanguage::CurrentSwift;
}

}  // namespace

std::unique_ptr<PCLanguageCodeProvider> makeLanguageProvider(TargetLanguage language,
                                                             const GenerationStamp& stamp) {
    switch (language) {
        case TargetLanguage::FirstSwift:
            return std::make_unique<PCSwiftCodeProvider>(stamp);
        case TargetLanguage::CurrentSwift:
            return std::make_unique<CurrentSwiftCodeProvider>(stamp);
        case TargetLanguage::ObjectiveC:
            break;
    }
    return std::make_unique<PCObjCCodeProvider>(stamp);
}

ExportOptions ExportOptions::fromPreferences(PCProject& project) {
    const PCProjectPreferences& preferences = project.preferences();
    const QString date = QLocale::system().toString(QDate::currentDate(), QLocale::ShortFormat);
    return {!preferences.generatedCodeIsIOS(),
            preferences.generatedCodeClipsToBounds(),
            preferences.generatedCodeIncludesImages(),
            preferences.generatedCodeCleansImageDirectory(),
            false,
            {TWEENERY_VERSION, date.toStdString()},
            preferences.generatedCodeSwiftDialect()};
}

ExportResult exportCodeToDirectory(const std::shared_ptr<PCProject>& project,
                                   const QString& directory, bool usingSwift,
                                   const ExportOptions& options) {
    PCProjectCodeGenerator generator;
    generator.setProject(project);
    generator.setGenerateForMac(options.generateForMac);
    generator.setClipsCanvas(options.clipsToBounds);
    generator.setLanguageProvider(
        makeLanguageProvider(targetLanguage(usingSwift, options), options.stamp));
    generator.loadFileContentsByName();
    std::vector<std::shared_ptr<PCImageSet>> imageSets;
    if (options.includesImages) { imageSets = imageSetsInUse(*project); }

    ExportResult result;
    result.diagnostics = generator.diagnostics();
    try {
        const OutputFolder folder =
            options.isDryRun ? OutputFolder::pretended(directory) : OutputFolder::make(directory);
        for (const auto& [name, pieces] : generator.fileContentsByName()) {
            writeExportedFile(folder, name, viewsOf(pieces), name, result.files);
        }
        if (options.includesImages) {
            exportArtwork(imageSets, folder, options.cleansImageDirectory, result.files);
        }
    } catch (const InputError& error) { result.files.failures.push_back({u"."_s, error.reason()}); }
    return result;
}

std::vector<ExportDiagnostic> diagnosticsOfExport(PCProject& project, bool usingSwift,
                                                  const ExportOptions& options) {
    const ExportPlan plan =
        planExport(project, {targetLanguage(usingSwift, options), options.generateForMac,
                             options.clipsToBounds, false});
    return exportDiagnostics(project, plan);
}

}  // namespace tweenery
