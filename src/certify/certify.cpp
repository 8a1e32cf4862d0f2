#include "certify/certify.h"

#include <QFile>
#include <deque>

#include "base/errors.h"
#include "certify/animation_play.h"
#include "certify/child_process.h"
#include "certify/slices_play.h"
#include "certify/source_calls.h"
#include "codegen/export_error.h"

using namespace Qt::StringLiterals;

namespace tweenery {

namespace {

using Kind = CertifiedPart::Kind;

constexpr int kMostComplaints = 3;
const QString kSwiftFolder = u"/swift/"_s;

QByteArray contentsOf(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) { throw InputError(path, file.errorString()); }
    return file.readAll();
}

void writeContents(const QString& path, const QByteArray& contents) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(contents) != contents.size()) {
        throw InputError(path, file.errorString());
    }
}

// Each statement of the Swift against that of the Objective-C in the same place.
void compareCalls(const std::vector<MethodCalls>& objectiveC, const std::vector<MethodCalls>& swift,
                  CertifiedPart& part) {
    const auto add = [&](const std::string& method, size_t line, const std::string& first,
                         const std::string& second) {
        const auto text = [](const std::string& words) {
            return words.empty() ? u"nothing"_s : QString::fromStdString(words);
        };
        Difference difference{first == second ? 0.0 : 1.0,
                              u"statement %1"_s.arg(line + 1),
                              QString::fromStdString(method),
                              0,
                              text(first),
                              text(second),
                              {}};
        part.add(difference);
    };
    for (size_t i = 0; i < std::max(objectiveC.size(), swift.size()); ++i) {
        static const MethodCalls none;
        const MethodCalls& first = i < objectiveC.size() ? objectiveC[i] : none;
        const MethodCalls& second = i < swift.size() ? swift[i] : none;
        add(first.name, 0, first.name, second.name);
        const size_t count = std::max(first.statements.size(), second.statements.size());
        for (size_t line = 0; line < count; ++line) {
            const auto at = [line](const MethodCalls& method) {
                return line < method.statements.size() ? method.statements[line] : std::string();
            };
            add(first.name, line, at(first), at(second));
        }
    }
}

/// One certificate in the making.
class Certifier {
 public:
    Certifier(const PCProject::Ptr& project, const CertifyOptions& options, Workshop& workshop)
        : m_project(project), m_options(options), m_workshop(workshop) {}

    Certificate certify();

 private:
    const PCProject::Ptr& m_project;
    const CertifyOptions& m_options;
    Workshop& m_workshop;
    std::optional<ExportPlan> m_plan;
    std::optional<PreviewScene> m_preview;
    Certificate m_certificate;
    PlayerScript m_script;
    PlayerScript::Line m_view = 0;
    PlayerScript::Line m_places = 0;
    std::vector<PlayerScript::Line> m_setupLooks;
    std::vector<std::pair<int, PlayerScript::Line>> m_setupOrders;
    PlayerScript::Line m_fit = 0;
    std::deque<AnimationPlay> m_plays;
    std::deque<SlicesPlay> m_slices;

    bool exportTo(const QString& folder);
    BuiltProgram compile(const QString& folder);
    void writeScript();
    void writeScene();
    std::optional<PlayerAnswers> play(const QString& program, const QString& folder);
    void judgeScene(const PlayerAnswers& answers);
    void judgeAnimations(const PlayerAnswers& answers);
    void listLeftOut();
    void compareSwift(const QString& folder);
    bool playsSlices() const { return !m_options.exportOptions.generateForMac; }
    CertifiedPart& addPart(Kind kind, const QString& name);
};

CertifiedPart& Certifier::addPart(Kind kind, const QString& name) {
    CertifiedPart& part = m_certificate.parts.emplace_back();
    part.kind = kind;
    part.name = name;
    return part;
}

bool Certifier::exportTo(const QString& folder) {
    const ExportOptions& options = m_options.exportOptions;
    m_plan = planExport(*m_project, {TargetLanguage::ObjectiveC, options.generateForMac,
                                     options.clipsToBounds, false, options.digits});
    m_certificate.className = m_plan->generatedClassName;
    try {
        ExportOptions all = options;
        all.includesImages = true;
        all.isDryRun = false;
        const ExportResult result = exportCodeToDirectory(m_project, folder, false, all);
        m_certificate.diagnostics = result.diagnostics;
        if (m_options.usingSwift) {
            all.includesImages = false;
            m_certificate.diagnostics =
                exportCodeToDirectory(m_project, folder + kSwiftFolder, true, all).diagnostics;
        }
        if (!result.files.failures.empty()) {
            const ExportFailure& failure = result.files.failures.front();
            throw InputError(failure.path, failure.reason);
        }
    } catch (const ExportError& error) {
        m_certificate.obstacle = u"the project cannot be exported: "_s + error.message();
        return false;
    }
    return true;
}

// Names that the export warns of are the designer's to mend; the compiler's words come first.
BuiltProgram Certifier::compile(const QString& folder) {
    BuiltProgram built =
        m_workshop.build(folder, m_certificate.className, m_options.exportOptions.generateForMac);
    if (!built.path.isEmpty()) { return built; }
    m_certificate.obstacle = u"the export does not compile: "_s +
                             built.complaints.section(u'\n', 0, kMostComplaints - 1);
    for (const ExportDiagnostic& diagnostic : m_certificate.diagnostics) {
        using enum ExportDiagnostic::Kind;
        if (diagnostic.kind == ReservedWord || diagnostic.kind == LeadingDigit ||
            diagnostic.kind == UnusableCharacter || diagnostic.kind == CollidingNames ||
            diagnostic.kind == NoImageView || diagnostic.kind == PuppetIsMobileCode) {
            m_certificate.obstacle +=
                u"\nthe export warns: '%1': %2"_s.arg(diagnostic.name, diagnostic.sentence);
        }
    }
    return built;
}

void Certifier::writeScene() {
    for (int i = 0; i < m_preview->elementCount(); ++i) {
        const PlannedElement& planned = m_preview->planned(i);
        m_script.addElement(planned.name, planned.isLayer());
    }
    m_view = m_script.makeView(m_plan->generatedClassName);
    m_places = m_script.scene();
    for (int i = 0; i < m_preview->elementCount(); ++i) {
        m_setupLooks.push_back(m_script.look(0, i));
    }
    for (int i = ElementPlace::kScene; i < m_preview->elementCount(); ++i) {
        if (m_preview->setupOrder(i).size() > 1) {
            m_setupOrders.emplace_back(i, m_script.order(0, i));
        }
    }
    const QSizeF canvas = m_plan->canvasSize();
    m_fit = m_script.resize(2 * canvas.width(), 2 * canvas.height());
}

void Certifier::writeScript() {
    writeScene();
    for (const PCAnimationExportBundle& bundle : m_plan->standardAnimationExportBundles) {
        m_plays.emplace_back(*m_preview, *m_plan, bundle).write(m_script);
    }
    if (!playsSlices()) { return; }
    for (const PCAnimationExportBundle& bundle : m_plan->frameSlicedAnimationExportBundles) {
        m_slices.emplace_back(*m_preview, *m_plan, bundle).write(m_script);
    }
}

std::optional<PlayerAnswers> Certifier::play(const QString& program, const QString& folder) {
    const QString script = folder + u"/script"_s;
    const QString answers = folder + u"/answers"_s;
    writeContents(script, m_script.text());
    const ChildResult result = runChild({program, {}, folder, script, answers});
    if (result.hasStarted && result.wasInTime && result.exitCode == 0) {
        return PlayerAnswers(contentsOf(answers));
    }
    m_certificate.obstacle = !result.hasStarted  ? u"the export could not be started"_s
                             : !result.wasInTime ? u"the export did not come to its end in time"_s
                                                 : u"the export ended amid its run: "_s +
                                                       QString::fromUtf8(result.output).trimmed();
    return {};
}

void Certifier::judgeScene(const PlayerAnswers& answers) {
    CertifiedPart& part = addPart(Kind::Scene, {});
    const QString stopped = answers.whyStopped(m_view);
    if (!stopped.isEmpty()) {
        part.add({1, u"making the view"_s, {}, 0, u"goes on"_s, u"stops: "_s + stopped, {}});
        return;
    }
    m_preview->select(nullptr);
    DifferenceJudge judge(*m_preview, *m_plan, nullptr, part);
    const auto places = answers.places(m_places);
    for (int i = 0; i < m_preview->elementCount(); ++i) {
        const auto index = static_cast<size_t>(i);
        judge.comparePlace(i, index < places.size() ? places[index] : std::nullopt);
        judge.compareSetupLook(i, 0, answers.look(m_setupLooks[index]));
    }
    for (const auto& [parent, line] : m_setupOrders) {
        judge.compareSetupOrder(parent, 0, answers.order(line));
    }
    const PlayerAnswers::Fit fit = answers.fit(m_fit);
    const QSizeF canvas = m_plan->canvasSize();
    // The canvas's size is printed in whole points, unless all digits are wanted.
    judge.compareScene(u"scale of the fitted scene"_s, 2, fit.scaleX,
                       2 / std::max(1.0, std::min(canvas.width(), canvas.height())));
    judge.compareScene(u"centre x of the fitted scene"_s, canvas.width(), fit.x, 0);
    judge.compareScene(u"centre y of the fitted scene"_s, canvas.height(), fit.y, 0);
}

void Certifier::judgeAnimations(const PlayerAnswers& answers) {
    const auto& bundles = m_plan->standardAnimationExportBundles;
    for (size_t i = 0; i < bundles.size(); ++i) {
        m_preview->select(bundles[i].animation);
        m_plays[i].judge(answers, addPart(Kind::Animation, bundles[i].animation->name()));
    }
    for (size_t i = 0; i < m_slices.size(); ++i) {
        const PCAnimation::Ptr& animation = m_plan->frameSlicedAnimationExportBundles[i].animation;
        m_preview->select(animation);
        m_slices[i].judge(answers, addPart(Kind::FrameSlices, animation->name()));
    }
}

void Certifier::listLeftOut() {
    if (!playsSlices()) {
        for (const auto& bundle : m_plan->frameSlicedAnimationExportBundles) {
            addPart(Kind::LeftOut, bundle.animation->name()).remarks
                << u"frame-sliced animations are mobile code, as the export warns"_s;
        }
    }
    for (const auto& bundle : m_plan->pngGeneratorAnimationExportBundles) {
        addPart(Kind::LeftOut, bundle.animation->name()).remarks
            << u"its tag \"pngs\" leaves it without code"_s;
    }
}

void Certifier::compareSwift(const QString& folder) {
    CertifiedPart& part = addPart(Kind::Swift, {});
    const QString& className = m_certificate.className;
    compareCalls(
        callsOfObjectiveC(contentsOf(folder + u'/' + className + u".m"_s).toStdString()),
        callsOfSwift(contentsOf(folder + kSwiftFolder + className + u".swift"_s).toStdString()),
        part);
    for (const auto& bundle : m_plan->frameSlicedAnimationExportBundles) {
        part.remarks << u"it leaves out '%1', which is frame-sliced, as the export warns"_s.arg(
            bundle.animation->name());
    }
}

Certificate Certifier::certify() {
    m_certificate.forMac = m_options.exportOptions.generateForMac;
    m_certificate.isExact = m_options.exportOptions.digits == NumberDigits::AllNeeded;
    const QString folder = m_workshop.makeFolder();
    if (!exportTo(folder)) { return std::move(m_certificate); }
    if (m_options.beforeCompiling) { m_options.beforeCompiling(folder); }
    const BuiltProgram built = compile(folder);
    if (built.path.isEmpty()) { return std::move(m_certificate); }
    m_preview.emplace(*m_project, *m_plan);
    writeScript();
    const auto answers = play(built.path, folder);
    if (!answers) { return std::move(m_certificate); }
    judgeScene(*answers);
    judgeAnimations(*answers);
    listLeftOut();
    if (m_options.usingSwift) { compareSwift(folder); }
    return std::move(m_certificate);
}

}  // namespace

Certificate certify(const PCProject::Ptr& project, const CertifyOptions& options,
                    Workshop& workshop) {
    return Certifier(project, options, workshop).certify();
}

}  // namespace tweenery
