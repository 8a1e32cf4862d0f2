// tweenc certify: whether the layers of an export do what the preview shows.

#include "certify/certify.h"

#include "cli/support/diagnostic_text.h"
#include "cli/support/export_choices.h"
#include "cli/support/packages.h"
#include "cli/verbs.h"
#include "storage/output_folder.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

constexpr VerbOption kReportOption{"report", "FILE", "write the certificate as JSON into FILE"};

void writeDifference(const Difference& difference, JsonWriter& json) {
    json.beginObject(JsonWriter::Layout::OneLine);
    json.key("amount").real(difference.amount);
    json.key("cause").string(difference.cause ? nameOf(*difference.cause) : QString());
    json.key("element").string(difference.element.isEmpty() ? QString() : difference.element);
    json.key("exported").string(difference.exported);
    json.key("preview").string(difference.preview);
    json.key("property").string(difference.property);
    json.key("time").real(difference.timeInMS);
    json.endObject();
}

void writeLargest(const std::optional<Difference>& largest, JsonWriter& json) {
    json.key("largest");
    if (largest) {
        writeDifference(*largest, json);
    } else {
        json.null();
    }
}

void writePart(const CertifiedPart& part, JsonWriter& json) {
    json.beginObject();
    json.key("causes").beginArray();
    for (const auto& [cause, explained] : part.explained) {
        json.beginObject();
        json.key("cause").string(nameOf(cause));
        json.key("count").integer(explained.count);
        writeLargest(explained.largest, json);
        json.endObject();
    }
    json.endArray();
    json.key("comparisons").integer(part.comparisons);
    json.key("holds").boolean(part.holds());
    json.key("isCompared").boolean(part.isCompared);
    json.key("kind").string(nameOf(part.kind));
    writeLargest(part.largest, json);
    json.key("name").string(part.name.isEmpty() ? QString() : part.name);
    json.key("remarks").beginArray();
    for (const QString& remark : part.remarks) {
        json.string(remark);
    }
    json.endArray();
    json.key("unexplained").beginArray();
    for (const Difference& difference : part.unexplained) {
        writeDifference(difference, json);
    }
    json.endArray();
    json.key("unexplainedCount").integer(part.unexplainedCount);
    json.endObject();
}

void writeCertificate(const Certificate& certificate, JsonWriter& json) {
    json.beginObject();
    json.key("certified").boolean(certificate.holds());
    json.key("class").string(certificate.className);
    json.key("comparisons").integer(certificate.comparisons());
    writeDiagnostics(certificate.diagnostics, json);
    json.key("exact").boolean(certificate.isExact);
    writeLargest(certificate.largest(), json);
    json.key("obstacle").string(certificate.obstacle.isEmpty() ? QString() : certificate.obstacle);
    json.key("parts").beginArray();
    for (const CertifiedPart& part : certificate.parts) {
        writePart(part, json);
    }
    json.endArray();
    json.key("platform").string(certificate.forMac ? u"mac"_s : u"ios"_s);
    json.endObject();
}

QString titleOf(const CertifiedPart& part) {
    switch (part.kind) {
        case CertifiedPart::Kind::Scene:
            return u"the scene"_s;
        case CertifiedPart::Kind::Animation:
        case CertifiedPart::Kind::LeftOut:
            return u"animation '%1'"_s.arg(part.name);
        case CertifiedPart::Kind::FrameSlices:
            return u"frames of '%1'"_s.arg(part.name);
        case CertifiedPart::Kind::Swift:
            return u"the Swift, call by call"_s;
    }
    return {};
}

void printPart(const CertifiedPart& part, Report& report) {
    QString line = u"  %1: %2 compared"_s.arg(titleOf(part)).arg(part.comparisons);
    const bool differs = part.largest && part.largest->amount > kNoticeableDifference;
    if (part.comparisons > 0 && !differs) { line += u", all alike"_s; }
    report.printLine(line);
    for (const Difference& difference : part.unexplained) {
        report.printLine(u"    NO CAUSE: "_s + textOf(difference));
    }
    const auto unlisted = part.unexplainedCount - static_cast<int64_t>(part.unexplained.size());
    if (unlisted > 0) { report.printLine(u"    NO CAUSE: %1 more"_s.arg(unlisted)); }
    for (const auto& [cause, explained] : part.explained) {
        report.printLine(u"    %1; %2 like it, at most %3"_s.arg(
            sentenceOf(cause), QString::number(explained.count), textOf(explained.largest)));
    }
    for (const QString& remark : part.remarks) {
        report.printLine(u"    "_s + remark);
    }
}

void printText(const Certificate& certificate, Report& report) {
    report.printLine(report.attributed(certificate.summary()));
    for (const QString& line : certificate.obstacle.split(u'\n').mid(1)) {
        report.printLine(u"  "_s + line);
    }
    for (const CertifiedPart& part : certificate.parts) {
        printPart(part, report);
    }
}

void writeReport(const Certificate& certificate, const QString& path) {
    JsonWriter json(JsonWriter::Keys::Sorted);
    writeCertificate(certificate, json);
    FileInTheMaking file(path);
    file.write({QByteArray::fromStdString(json.take())});
    file.commit();
}

void certifyPackage(const Invocation& invocation, Report& report) {
    const QString path = invocation.value(kReportOption.name);
    if (invocation.has(kReportOption.name)) { requireOutsidePackage(path, report.packagePath()); }
    const PCProject::Ptr project = openForReading(report);
    CertifyOptions options;
    options.usingSwift = usesSwift(invocation, *project);
    options.exportOptions = exportOptionsFrom(invocation, *project);
    Certificate certificate;
    try {
        Workshop workshop;
        certificate = certify(project, options, workshop);
    } catch (const NoWorkshop& obstacle) {
        throw InputError(u"nothing is certified"_s, obstacle.reason);
    }
    if (report.isJson()) {
        report.setResult([&](JsonWriter& json) { writeCertificate(certificate, json); });
    } else {
        printText(certificate, report);
    }
    if (invocation.has(kReportOption.name)) { writeReport(certificate, path); }
    if (!certificate.holds()) { report.failOutside({report.packagePath(), certificate.summary()}); }
}

ExitCode run(const Invocation& invocation, Console& console) {
    if (invocation.has(kReportOption.name) && invocation.value(kReportOption.name).isEmpty()) {
        throw UsageError{u"--report takes a file"_s};
    }
    return runOnPackage(invocation, console,
                        [&](Report& report) { certifyPackage(invocation, report); });
}

}  // namespace

const Verb& certifyVerb() {
    static const Verb verb{
        "certify",
        "PKG",
        1,
        1,
        "Compiles the exported Objective-C with clang, plays it on a simulator of the platform's "
        "layers, and compares what they do with the preview; Swift is compared with it call by "
        "call. Ends with 1 when something differs without a known cause.",
        {kLanguageOption, kPlatformOption, kExactOption, kReportOption, kQuietOption, kJsonOption},
        run};
    return verb;
}

}  // namespace tweenery
