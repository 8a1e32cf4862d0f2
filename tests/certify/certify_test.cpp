#include "certify/certify.h"

#include <gtest/gtest.h>

#include <QDir>
#include <algorithm>

#include "certified.h"
#include "codegen/project_exporter.h"

using namespace Qt::StringLiterals;

namespace tweenery::test {
namespace {

struct PackageCase {
    QString path;
    bool mac = false;
};

std::vector<PackageCase> packageCases() {
    std::vector<PackageCase> cases;
    for (const QString& folder : {u"samples"_s, u"tests/packages"_s}) {
        const QDir packages(sourcePath(folder));
        for (const QString& name : packages.entryList({u"*.tweenery"_s}, QDir::Dirs, QDir::Name)) {
            for (const bool mac : {false, true}) {
                cases.push_back({packages.filePath(name), mac});
            }
        }
    }
    return cases;
}

/// Follows the advice of every diagnostic about a name that a compiler would refuse.
void renameWhatDoesNotCompile(PCProject& project, const ExportOptions& options) {
    int number = 0;
    for (const ExportDiagnostic& diagnostic : diagnosticsOfExport(project, false, options)) {
        using enum ExportDiagnostic::Kind;
        const bool isName = diagnostic.kind == ReservedWord || diagnostic.kind == LeadingDigit ||
                            diagnostic.kind == CollidingNames;
        if (!isName || diagnostic.subject != ExportDiagnostic::Subject::Element) { continue; }
        const auto element = project.elementForIdentifier(Identifier(diagnostic.identifier));
        if (element) { element->setName(u"renamed %1"_s.arg(++number)); }
    }
}

int64_t countOf(const Certificate& certificate, DifferenceCause cause) {
    int64_t count = 0;
    for (const CertifiedPart& part : certificate.parts) {
        const auto found = part.explained.find(cause);
        if (found != part.explained.end()) { count += found->second.count; }
    }
    return count;
}

TEST(Certificates, HoldForAllPackagesOnBothPlatforms) {
    if (!hasWorkshop()) { GTEST_SKIP() << "there is no clang"; }
    for (const PackageCase& c : packageCases()) {
        for (const NumberDigits digits : {NumberDigits::Fixed, NumberDigits::AllNeeded}) {
            SCOPED_TRACE(c.path.toStdString() + (c.mac ? ", mac" : ", ios"));
            const auto project = openProject(c.path);
            CertifyOptions options;
            options.exportOptions.generateForMac = c.mac;
            options.exportOptions.digits = digits;
            options.usingSwift = true;
            renameWhatDoesNotCompile(*project, options.exportOptions);
            const Certificate certificate = certify(project, options, sharedWorkshop());
            EXPECT_TRUE(certificate.holds()) << wordsOf(certificate);
            EXPECT_GT(certificate.comparisons(), 10);
            if (digits == NumberDigits::Fixed) { continue; }
            // What printing costs is gone, as far as anybody notices it.
            EXPECT_EQ(countOf(certificate, DifferenceCause::PrintedNumbers), 0);
            EXPECT_EQ(countOf(certificate, DifferenceCause::KeyTimes), 0);
        }
    }
}

TEST(Certificates, NameTheCausesOfDifferences) {
    if (!hasWorkshop()) { GTEST_SKIP() << "there is no clang"; }
    struct Case {
        const char* package;
        bool mac;
        std::vector<DifferenceCause> causes;
    };
    using enum DifferenceCause;
    const std::vector<Case> cases = {
        {"Bounce", false, {KeyTimes, EasingSteps}},
        {"Gallery", false, {PrintedNumbers, EasingSteps, KeyTimes, LoopTurn, LayersOnMobile}},
        {"Gallery", true, {PrintedNumbers, EasingSteps, LoopTurn}},
        // A JPEG that a device does not find by its name alone.
        {"Card", false, {EasingSteps, LoopTurn, Warning}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.package);
        CertifyOptions options;
        options.exportOptions.generateForMac = c.mac;
        const auto project = openProject(packagePath(QString::fromLatin1(c.package)));
        const Certificate certificate = certify(project, options, sharedWorkshop());
        for (int cause = 0; cause <= static_cast<int>(Warning); ++cause) {
            const auto each = static_cast<DifferenceCause>(cause);
            const bool isExpected =
                std::find(c.causes.begin(), c.causes.end(), each) != c.causes.end();
            EXPECT_EQ(countOf(certificate, each) > 0, isExpected) << nameOf(each).toStdString();
        }
    }
}

TEST(Certificates, TellWhatKeepsAnExportFromCompiling) {
    if (!hasWorkshop()) { GTEST_SKIP() << "there is no clang"; }
    const Certificate certificate =
        certify(openProject(packagePath(u"Tags"_s)), {}, sharedWorkshop());
    EXPECT_FALSE(certificate.holds());
    EXPECT_TRUE(certificate.parts.empty());
    EXPECT_TRUE(certificate.obstacle.contains(u"TagsView.m:")) << wordsOf(certificate);
    EXPECT_TRUE(certificate.obstacle.contains(u"'default'")) << wordsOf(certificate);
    EXPECT_FALSE(certificate.obstacle.contains(u"/tmp/")) << wordsOf(certificate);
}

TEST(Certificates, AreRefusedWithoutACompiler) {
    try {
        Workshop workshop(u"/nowhere/clang"_s);
        FAIL();
    } catch (const NoWorkshop& obstacle) {
        EXPECT_TRUE(obstacle.reason.contains(u"apt install clang libobjc-12-dev"));
    }
}

}  // namespace
}  // namespace tweenery::test
