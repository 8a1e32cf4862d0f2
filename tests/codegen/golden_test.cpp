// Whole exports of the packages in tests/packages, compared with the files under goldens/.
// --update-goldens rewrites them.

#include <gtest/gtest.h>

#include <QDir>
#include <QDirIterator>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include "codegen/project_exporter.h"
#include "storage/package_store.h"
#include "support/files.h"
#include "support/test_paths.h"

using namespace Qt::StringLiterals;

namespace tweenery::test {
namespace {

enum class Language { ObjectiveC, FirstSwift, CurrentSwift };

struct GoldenCase {
    QString package;
    Language language = Language::ObjectiveC;
    bool mac = false;

    bool isSwift() const { return language != Language::ObjectiveC; }
    QString folder() const {
        static const QString folders[] = {u"objc"_s, u"swift"_s, u"swift-current"_s};
        return package + u'/' + folders[static_cast<size_t>(language)] +
               (mac ? u"-mac"_s : u"-ios"_s);
    }
};

QString goldensPath() {
    return sourcePath(u"tests/codegen/goldens"_s);
}

std::vector<GoldenCase> goldenCases() {
    std::vector<GoldenCase> cases;
    QDir packages(sourcePath(u"tests/packages"_s));
    for (const QString& name : packages.entryList({u"*.tweenery"_s}, QDir::Dirs, QDir::Name)) {
        using enum Language;
        for (const Language language : {ObjectiveC, FirstSwift, CurrentSwift}) {
            for (const bool mac : {false, true}) {
                cases.push_back({name.chopped(9), language, mac});
            }
        }
    }
    return cases;
}

std::string caseName(const testing::TestParamInfo<GoldenCase>& info) {
    return info.param.folder().replace(u'/', u'_').replace(u'-', u'_').toStdString();
}

/// Paths of all files below a folder, relative to it.
QStringList filesBelow(const QString& folder) {
    QStringList files;
    QDirIterator paths(folder, QDir::Files, QDirIterator::Subdirectories);
    while (paths.hasNext()) {
        files << QDir(folder).relativeFilePath(paths.next());
    }
    files.sort();
    return files;
}

PCProject::Ptr openPackage(const QString& name) {
    auto project = PCProject::projectForReadingWithFileWrapper(readPackage(packagePath(name)));
    project->setProjectName(name);
    return project;
}

ExportOptions goldenOptions(PCProject& project, const GoldenCase& c) {
    ExportOptions options = ExportOptions::fromPreferences(project);
    options.generateForMac = c.mac;
    options.includesImages = true;
    options.stamp = {"1.0", "1/2/20"};
    const bool isFirst = c.language == Language::FirstSwift;
    options.swiftDialect = isFirst ? SwiftDialect::First : SwiftDialect::Current;
    return options;
}

/// The artwork and the diagnostics of an export as one readable text.
QByteArray reportOf(const ExportResult& result) {
    QByteArray report;
    for (const QString& path : result.files.paths) {
        report += "file " + path.toUtf8() + '\n';
    }
    for (const ExportDiagnostic& diagnostic : result.diagnostics) {
        // The same for every project, and tested where the diagnostics are.
        if (diagnostic.kind == ExportDiagnostic::Kind::FirstSwift) { continue; }
        report += nameOf(diagnostic.severity).toUtf8() + ' ' + nameOf(diagnostic.kind).toUtf8() +
                  " (" + diagnostic.name.toUtf8() + "): " + diagnostic.sentence.toUtf8() + '\n';
    }
    return report;
}

void compareWithGoldens(const QString& exported, const QString& goldens) {
    const QStringList files = filesBelow(exported);
    EXPECT_EQ(files, filesBelow(goldens)) << "an orphan or a missing golden";
    for (const QString& file : files) {
        if (!QFile::exists(goldens + u'/' + file)) { continue; }
        EXPECT_EQ(contentsOf(exported + u'/' + file).toStdString(),
                  contentsOf(goldens + u'/' + file).toStdString())
            << qPrintable(file);
    }
}

void replaceGoldens(const QString& exported, const QString& goldens) {
    QDir(goldens).removeRecursively();
    for (const QString& file : filesBelow(exported)) {
        const QString target = goldens + u'/' + file;
        ASSERT_TRUE(QDir().mkpath(QFileInfo(target).path()));
        ASSERT_TRUE(QFile::copy(exported + u'/' + file, target));
    }
}

class Goldens : public testing::TestWithParam<GoldenCase> {};

TEST_P(Goldens, AreWhatIsExported) {
    const GoldenCase& c = GetParam();
    const auto project = openPackage(c.package);
    QTemporaryDir directory;
    const ExportResult result =
        exportCodeToDirectory(project, directory.path(), c.isSwift(), goldenOptions(*project, c));
    EXPECT_TRUE(result.files.failures.empty());

    // The artwork is the package's own; only its names are kept as goldens.
    for (const QString& path : result.files.paths) {
        if (!path.startsWith(u"images/")) { continue; }
        QString set = path.section(u'/', 1);
        const QString suffix = set.contains(u"@2x")   ? u"@2x"_s
                               : set.contains(u"@3x") ? u"@3x"_s
                                                      : QString();
        set.remove(suffix);
        EXPECT_EQ(contentsOf(directory.filePath(path)),
                  contentsOf(packagePath(c.package) + u"/images/"_s + set + u"/Original"_s +
                             suffix + u'.' + set.section(u'.', -1)))
            << qPrintable(path);
    }
    QDir(directory.filePath(u"images"_s)).removeRecursively();
    replaceContents(directory.filePath(u"report.txt"_s), reportOf(result));

    const QString goldens = goldensPath() + u'/' + c.folder();
    if (updateGoldens) { replaceGoldens(directory.path(), goldens); }
    compareWithGoldens(directory.path(), goldens);
}

INSTANTIATE_TEST_SUITE_P(Packages, Goldens, testing::ValuesIn(goldenCases()), caseName);

TEST(GoldenFolders, BelongToAPackage) {
    QStringList expected;
    for (const GoldenCase& c : goldenCases()) {
        expected << c.folder();
    }
    QStringList found;
    const QDir root(goldensPath());
    for (const QString& package : root.entryList(QDir::AllEntries | QDir::NoDotAndDotDot)) {
        for (const QString& folder :
             QDir(root.filePath(package)).entryList(QDir::AllEntries | QDir::NoDotAndDotDot)) {
            found << package + u'/' + folder;
        }
    }
    expected.sort();
    found.sort();
    EXPECT_EQ(expected, found);
}

/// The compiler's arguments for a golden, with what its exact text makes unavoidable.
QStringList compilerArguments(const GoldenCase& c, const QByteArray& code) {
    const QString standIns = sourcePath(u"tests/codegen/standin"_s);
    QStringList arguments = {
        u"-fsyntax-only"_s, u"-fobjc-arc"_s, u"-fblocks"_s,          u"-Wall"_s,
        u"-Wextra"_s,       u"-Werror"_s,    u"-nostdinc"_s,         u"-x"_s,
        u"objective-c"_s,   u"-isystem"_s,   standIns + u"/common"_s};
    if (c.mac) {
        arguments << u"-target"_s << u"x86_64-apple-macos12"_s << u"-isystem"_s
                  << standIns + u"/mac"_s;
    } else {
        arguments << u"-target"_s << u"arm64-apple-ios15"_s << u"-isystem"_s << standIns + u"/ios"_s
                  << u"-isystem"_s << standIns + u"/ios/project"_s;
    }
    // The local `bundle` stands in every class, also where no image is loaded from it, and a
    // frame's values are taken from the table also where nothing changes.
    const bool leavesLocalsUnused = !code.contains("[bundle path") || code.contains("\t{}\n");
    if (leavesLocalsUnused) { arguments << u"-Wno-unused-variable"_s; }
    // Recordable views come from the application, which imports them for all files.
    if (code.contains("LFTRecordable")) { arguments << u"-include"_s << u"LFTRecordableView.h"_s; }
    if (code.contains("#pragma mark - FrameSlicedAnimations")) {
        // Their playback counts an array's items with an int.
        arguments << u"-Wno-sign-compare"_s;
        if (c.mac) { arguments << u"-include"_s << u"mobile_names.h"_s; }
    }
    return arguments;
}

/// Follows the advice of every diagnostic about a name that the compiler would refuse.
void renameWhatDoesNotCompile(PCProject& project, const ExportOptions& options) {
    int number = 0;
    for (const ExportDiagnostic& diagnostic : diagnosticsOfExport(project, false, options)) {
        using enum ExportDiagnostic::Kind;
        if (diagnostic.subject != ExportDiagnostic::Subject::Element) { continue; }
        if (diagnostic.kind != ReservedWord && diagnostic.kind != LeadingDigit &&
            diagnostic.kind != CollidingNames) {
            continue;
        }
        const auto element = project.elementForIdentifier(Identifier(diagnostic.identifier));
        ASSERT_TRUE(element);
        element->setName(u"renamed %1"_s.arg(++number));
    }
}

class ObjectiveCExports : public testing::TestWithParam<GoldenCase> {};

// The goldens themselves, but for names that a diagnostic asks the designer to change.
TEST_P(ObjectiveCExports, Compile) {
    const QString clang = QStandardPaths::findExecutable(u"clang"_s);
    if (clang.isEmpty()) { GTEST_SKIP() << "there is no clang"; }
    const auto project = openPackage(GetParam().package);
    QTemporaryDir directory;
    ExportOptions options = goldenOptions(*project, GetParam());
    options.includesImages = false;
    renameWhatDoesNotCompile(*project, options);
    exportCodeToDirectory(project, directory.path(), false, options);
    const QString source = directory.filePath(GetParam().package + u"View.m"_s);
    QProcess compiler;
    compiler.setProcessChannelMode(QProcess::MergedChannels);
    compiler.start(clang, compilerArguments(GetParam(), contentsOf(source)) << source);
    ASSERT_TRUE(compiler.waitForFinished());
    EXPECT_EQ(compiler.exitCode(), 0) << compiler.readAll().toStdString();
}

std::vector<GoldenCase> objectiveCCases() {
    std::vector<GoldenCase> cases = goldenCases();
    std::erase_if(cases, [](const GoldenCase& c) { return c.isSwift(); });
    return cases;
}

// The lines that the language's page gives for each platform, in a view that shows the class.
TEST(ObjectiveCPage, ItsExamplesCompile) {
    const QString clang = QStandardPaths::findExecutable(u"clang"_s);
    if (clang.isEmpty()) { GTEST_SKIP() << "there is no clang"; }
    const QStringList blocks =
        QString::fromUtf8(contentsOf(sourcePath(u"docs/languages/objective-c.md"_s)))
            .split(u"```"_s);
    ASSERT_EQ(blocks.size(), 5);
    for (const bool mac : {false, true}) {
        const GoldenCase c{u"Bounce"_s, Language::ObjectiveC, mac};
        const QString example = blocks[mac ? 3 : 1].section(u'\n', 1);
        const QString code =
            u"#import \"%1/%2/BounceView.h\"\n@interface Screen : %3\n@end\n"
            "@implementation Screen\n- (void)show {\n%4}\n@end\n"_s.arg(
                goldensPath(), c.folder(), mac ? u"NSView"_s : u"UIView"_s, example);
        QProcess compiler;
        compiler.setProcessChannelMode(QProcess::MergedChannels);
        compiler.start(clang, compilerArguments(c, "[bundle path") << u"-"_s);
        compiler.write(code.toUtf8());
        compiler.closeWriteChannel();
        ASSERT_TRUE(compiler.waitForFinished());
        EXPECT_EQ(compiler.exitCode(), 0) << compiler.readAll().toStdString();
    }
}

INSTANTIATE_TEST_SUITE_P(Packages, ObjectiveCExports, testing::ValuesIn(objectiveCCases()),
                         caseName);

}  // namespace
}  // namespace tweenery::test
