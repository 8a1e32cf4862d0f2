#include "codegen/project_exporter.h"

#include <QDate>
#include <QDir>
#include <QLocale>

#include "codegen/language/objc_code_provider.h"
#include "codegen/language/swift_code_provider.h"
#include "codegen/project_code_generator.h"

using namespace Qt::StringLiterals;

namespace tweenery {

namespace {

/// The same bytes, which must outlive the views.
QByteArrayList viewsOf(const SourcePieces& pieces) {
    QByteArrayList views;
    for (const std::string& piece : pieces) {
        views << QByteArray::fromRawData(piece.data(), static_cast<qsizetype>(piece.size()));
    }
    return views;
}

}  // namespace

ExportOptions ExportOptions::fromPreferences(PCProject& project) {
    const PCProjectPreferences& preferences = project.preferences();
    const QString date = QLocale::system().toString(QDate::currentDate(), QLocale::ShortFormat);
    return {!preferences.generatedCodeIsIOS(),
            preferences.generatedCodeClipsToBounds(),
            preferences.generatedCodeIncludesImages(),
            preferences.generatedCodeCleansImageDirectory(),
            {TWEENERY_VERSION, date.toStdString()}};
}

ExportResult exportCodeToDirectory(const std::shared_ptr<PCProject>& project,
                                   const QString& directory, bool usingSwift,
                                   const ExportOptions& options) {
    PCProjectCodeGenerator generator;
    generator.setProject(project);
    generator.setGenerateForMac(options.generateForMac);
    generator.setClipsCanvas(options.clipsToBounds);
    if (usingSwift) {
        generator.setLanguageProvider(std::make_unique<PCSwiftCodeProvider>(options.stamp));
    } else {
        generator.setLanguageProvider(std::make_unique<PCObjCCodeProvider>(options.stamp));
    }
    generator.loadFileContentsByName();
    std::vector<std::shared_ptr<PCImageSet>> imageSets;
    if (options.includesImages) { imageSets = imageSetsInUse(*project); }

    ExportResult result;
    result.diagnostics = generator.diagnostics();
    if (!QDir().mkpath(directory)) {
        result.files.failures.push_back({u"."_s, u"the directory cannot be made"_s});
        return result;
    }
    for (const auto& [name, pieces] : generator.fileContentsByName()) {
        writeExportedFile(directory, name, viewsOf(pieces), result.files);
    }
    if (options.includesImages) {
        const WrittenFiles artwork =
            exportArtwork(imageSets, directory, options.cleansImageDirectory);
        result.files.paths += artwork.paths;
        result.files.failures.insert(result.files.failures.end(), artwork.failures.begin(),
                                     artwork.failures.end());
    }
    return result;
}

std::vector<ExportDiagnostic> diagnosticsOfExport(PCProject& project, bool usingSwift,
                                                  const ExportOptions& options) {
    const ExportPlan plan =
        planExport(project, {usingSwift ? TargetLanguage::Swift : TargetLanguage::ObjectiveC,
                             options.generateForMac, options.clipsToBounds, false});
    return exportDiagnostics(project, plan);
}

}  // namespace tweenery
