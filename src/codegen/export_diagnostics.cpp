#include "codegen/export_diagnostics.h"

#include <QSet>

#include "base/number_text.h"
#include "base/parallel_for.h"
#include "codegen/frame_sliced_animation_code.h"
#include "codegen/language/platform_classes.h"
#include "codegen/preview_likeness.h"
#include "codegen/printed_key_times.h"

using namespace Qt::StringLiterals;

namespace tweenery {

namespace {

using Diagnostic = ExportDiagnostic;
using Kind = Diagnostic::Kind;
using Severity = Diagnostic::Severity;
using Subject = Diagnostic::Subject;

const char* const kKindNames[] = {
    "reserved-word",
    "leading-digit",
    "unusable-character",
    "colliding-names",
    "deleted-element",
    "missing-image",
    "sliced-left-out",
    "sliced-is-mobile-code",
    "cannot-slice",
    "legacy-timeline",
    "empty-project",
    "does-not-animate",
    "recordable-needs-import",
    "no-pictures-drawn",
    "coarse-key-times",
    "puppet-is-mobile-code",
    "no-image-view",
    "empty-image",
    "image-not-found-on-device",
    "opacity-out-of-range",
    "order-ends-early",
    "first-swift",
};

// An element whose animation loses by printed key times.
struct CoarseElement {
    PCElement::Ptr element;
    KeyTimeLoss loss;
    int32_t durationInMS = 0;
};
using CoarseElements = std::vector<CoarseElement>;

CoarseElements elementsWithCoarseKeyTimes(const PCAnimationExportBundle& bundle) {
    constexpr double noticeableShare = 0.01;
    CoarseElements found;
    for (const PCAnimationExportElementTimelines& record : bundle.timelinesByElement) {
        CoarseElement worst{record.element, {noticeableShare, 0}};
        for (const auto* timeline : record.allNonNilTimelines()) {
            const auto loss = largestKeyTimeLoss(*timeline, worst.loss.shareOfRange);
            if (loss) { worst = {record.element, *loss, timeline->durationInMS()}; }
        }
        if (worst.durationInMS > 0) { found.push_back(worst); }
    }
    return found;
}

bool hasNoElement(const ExportPlan& plan) {
    return plan.elements.size() == 1;
}

class Collector {
 public:
    Collector(PCProject& project, const ExportPlan& plan)
        : m_project(project), m_plan(plan), m_language(plan.target.language) {}

    std::vector<Diagnostic> collect() {
        checkProject();
        for (size_t i = 1; i < m_plan.elements.size(); ++i) {
            checkElement(m_plan.elements[i]);
        }
        checkStoredTimelines();
        checkStandardAnimations();
        for (const auto& bundle : m_plan.frameSlicedAnimationExportBundles) {
            checkSlicedAnimation(bundle);
        }
        for (const auto& bundle : m_plan.pngGeneratorAnimationExportBundles) {
            checkPngAnimation(bundle);
        }
        return std::move(m_diagnostics);
    }

 private:
    void addForProject(Kind kind, Severity severity, const QString& sentence) {
        m_diagnostics.push_back(
            {kind, severity, Subject::Project, m_project.projectName(), {}, sentence});
    }
    void add(Kind kind, Severity severity, const PCElement& element, const QString& sentence) {
        m_diagnostics.push_back({kind, severity, Subject::Element, element.name(),
                                 element.identifier().toString(), sentence});
    }
    void add(Kind kind, Severity severity, const PCAnimation& animation, const QString& sentence) {
        m_diagnostics.push_back({kind, severity, Subject::Animation, animation.name(),
                                 animation.identifier(), sentence});
    }

    void checkProject();
    void checkElement(const PlannedElement& planned);
    void checkVariable(const PlannedElement& planned);
    void checkStoredTimelines();
    void checkStandardAnimations();
    void checkStandardAnimation(const PCAnimationExportBundle& bundle);
    void checkPartsAnimated(const PCAnimationExportBundle& bundle);
    void checkSlicedAnimation(const PCAnimationExportBundle& bundle);
    void checkPngAnimation(const PCAnimationExportBundle& bundle);
    void checkStem(const PCAnimationExportBundle& bundle);
    void checkMethodNames(const PCAnimationExportBundle& bundle);
    void checkImages(const PCAnimationExportBundle& bundle);
    void checkImagesAskedFor(const PCAnimationExportBundle& bundle);
    void checkSlicedImages(const PCAnimationExportBundle& bundle);
    void noteSlicedImage(const PCAnimationExportBundle& bundle, const PlannedElement& planned);
    void checkLikeness(const PCAnimationExportBundle& bundle);
    void noteKeyTimes(const PCAnimation& animation, const CoarseElements& elements);

    bool imageIsMissing(const QString& name) const {
        return !name.isEmpty() && !m_project.imageSetManager().imageSetExistsWithName(name);
    }

    PCProject& m_project;
    const ExportPlan& m_plan;
    TargetLanguage m_language;
    std::vector<Diagnostic> m_diagnostics;
    QSet<QString> m_elementNames{u"__scaling__"_s};
    QSet<QString> m_methodStems;
    int64_t m_slicedValues = 0;
};

void Collector::checkProject() {
    const QString className = m_plan.generatedClassName;
    switch (faultOfIdentifier(m_language, className)) {
        case IdentifierFault::LeadingDigit:
            addForProject(
                Kind::LeadingDigit, Severity::Warning,
                u"The class name %1 does not begin with a letter; rename the project."_s.arg(
                    className));
            break;
        case IdentifierFault::UnusableCharacter:
            addForProject(Kind::UnusableCharacter, Severity::Warning,
                          u"The class name %1 holds a character that the compiler refuses; rename "
                          "the project."_s.arg(className));
            break;
        default:
            break;
    }
    if (isPlatformClass(className)) {
        addForProject(Kind::CollidingNames, Severity::Warning,
                      u"The generated class would be called %1, as a class of the platform; rename "
                      "the project."_s.arg(className));
    }
    if (m_language == TargetLanguage::FirstSwift) {
        addForProject(Kind::FirstSwift, Severity::Note,
                      u"The first dialect of Swift is for compilers of 2014, of Swift 1.0 and 1.1; "
                      "for those of today export the current one."_s);
    }
    const bool isCurrentSwift = m_language == TargetLanguage::CurrentSwift;
    if (m_plan.isLFTPuppetView && m_plan.target.generateForMac && !isCurrentSwift) {
        addForProject(Kind::PuppetIsMobileCode, Severity::Warning,
                      u"Puppets are mobile code, and the class does not compile on the desktop; "
                      "export for the mobile platform, or take the tag \"_LFT_\" away."_s);
    }
    if (const auto obstacle = obstacleToExport(m_plan)) {
        addForProject(Kind::EmptyProject, Severity::Error,
                      u"The export stops: %1; add an element."_s.arg(*obstacle));
    } else if (hasNoElement(m_plan)) {
        addForProject(Kind::EmptyProject, Severity::Warning,
                      u"The project has no element, and the generated class shows nothing; add an "
                      "element."_s);
    }
}

void Collector::checkVariable(const PlannedElement& planned) {
    const QString variable = QString::fromStdString(planned.variable);
    switch (faultOfIdentifier(m_language, variable)) {
        case IdentifierFault::ReservedWord:
            add(Kind::ReservedWord, Severity::Warning, *planned.element,
                u"Its variable would be %1, which the generated code cannot use as a name; rename "
                "the element."_s.arg(variable));
            break;
        case IdentifierFault::LeadingDigit:
            add(Kind::LeadingDigit, Severity::Warning, *planned.element,
                u"Its variable would be %1, which does not begin with a letter; rename the element."_s
                    .arg(variable));
            break;
        case IdentifierFault::UnusableCharacter:
            add(Kind::UnusableCharacter, Severity::Warning, *planned.element,
                u"Its variable would be %1, which holds a character that the compiler refuses; "
                "rename the element."_s.arg(variable));
            break;
        case IdentifierFault::None:
            break;
    }
}

void Collector::checkElement(const PlannedElement& planned) {
    const PCElement& element = *planned.element;
    checkVariable(planned);
    if (m_elementNames.contains(planned.name)) {
        add(Kind::CollidingNames, Severity::Warning, element,
            u"Another part of the generated class is called '%1' as well (tags do not count); "
            "rename the element."_s.arg(planned.name));
    }
    m_elementNames.insert(planned.name);
    if (imageIsMissing(element.imageName())) {
        add(Kind::MissingImage, Severity::Warning, element,
            u"No image set is called '%1'; import the image, or choose another."_s.arg(
                element.imageName()));
    }
    const bool isImageView = planned.type == PCCodeGeneratorType::View ||
                             planned.type == PCCodeGeneratorType::RecordableView;
    const bool isCurrentSwift = m_language == TargetLanguage::CurrentSwift;
    if (isImageView && element.isGroup() && !element.imageName().isEmpty() && !isCurrentSwift) {
        add(Kind::NoImageView, Severity::Warning, element,
            u"It is a group and has an image, which a plain view cannot show, and does not "
            "compile; take the image away, or ungroup it."_s);
    }
    if (planned.type == PCCodeGeneratorType::RecordableView) {
        add(Kind::RecordableNeedsImport, Severity::Note, element,
            u"It becomes a recordable view, whose header the generated files do not import; import "
            "it where all files see it."_s);
    }
}

void Collector::checkStoredTimelines() {
    for (const OlderTimeline& older : m_plan.olderTimelines) {
        add(Kind::LegacyTimeline, Severity::Warning, *older.animation,
            u"An older version stored a timeline of the element '%1' under another name; by its "
            "file's name it is exported as '%2'. Select the animation and save, to store it so."_s
                .arg(older.element->name(), stringFromPropertyType(older.propertyType)));
    }
    for (const LeftOutTimelines& leftOut : m_plan.leftOutTimelines) {
        add(Kind::DeletedElement, Severity::Note, *leftOut.animation,
            u"It animates an element that is no longer there (%1), which is left out; nothing "
            "needs to be done."_s.arg(leftOut.elementIdentifier));
    }
}

void Collector::checkStandardAnimations() {
    const auto& bundles = m_plan.standardAnimationExportBundles;
    std::vector<CoarseElements> coarse(bundles.size());
    parallelFor(bundles.size(),
                [&](size_t i) { coarse[i] = elementsWithCoarseKeyTimes(bundles[i]); });
    for (size_t i = 0; i < bundles.size(); ++i) {
        checkStandardAnimation(bundles[i]);
        noteKeyTimes(*bundles[i].animation, coarse[i]);
    }
}

void Collector::checkStandardAnimation(const PCAnimationExportBundle& bundle) {
    checkMethodNames(bundle);
    checkImages(bundle);
    // Current Swift asks for all images by their full names, and goes on without one.
    if (m_language != TargetLanguage::CurrentSwift) { checkImagesAskedFor(bundle); }
    checkPartsAnimated(bundle);
    checkLikeness(bundle);
}

// The words before the stem keep it from all other faults of a name.
void Collector::checkStem(const PCAnimationExportBundle& bundle) {
    const QString stem = QString::fromStdString(bundle.baseMethodName);
    if (faultOfIdentifier(m_language, u"add"_s + stem) == IdentifierFault::None) { return; }
    add(Kind::UnusableCharacter, Severity::Warning, *bundle.animation,
        u"Its methods would be called after %1, which holds a character that the compiler refuses; "
        "rename the animation."_s.arg(stem));
}

void Collector::checkMethodNames(const PCAnimationExportBundle& bundle) {
    checkStem(bundle);
    const QString stem = QString::fromStdString(methodStem(bundle.baseMethodName));
    if (m_methodStems.contains(stem)) {
        add(Kind::CollidingNames, Severity::Warning, *bundle.animation,
            u"Another animation has methods called add%1 as well; rename one of them."_s.arg(stem));
    }
    m_methodStems.insert(stem);
}

// Animations reach the parts that have a name in the dictionary which the code looks into: not the
// canvas, and on the mobile platform no layers.
void Collector::checkPartsAnimated(const PCAnimationExportBundle& bundle) {
    const auto report = [&](const PCElement& element) {
        const PlannedElement& planned = m_plan.planned(element);
        if (&planned == &m_plan.elements.front()) {
            add(Kind::DoesNotAnimate, Severity::Warning, *bundle.animation,
                u"It animates the canvas itself, which stands still in the generated class; "
                u"animate "
                "a group instead."_s);
        } else if (planned.isLayer() && !m_plan.target.generateForMac) {
            add(Kind::DoesNotAnimate, Severity::Warning, *bundle.animation,
                u"It does not move the layer '%1': on the mobile platform only views are animated; "
                "take the tag \"_layer\" away."_s.arg(planned.name));
        }
    };
    for (const PCAnimationExportElementTimelines& record : bundle.timelinesByElement) {
        const bool hasOwn = record.allNonNilTimelines().size() > (record.zPosition ? 1 : 0);
        if (hasOwn) { report(*record.element); }
        if (!record.zPosition) { continue; }
        for (const PCElement::Ptr& child : record.element->children()) {
            report(*child);
        }
    }
}

void Collector::checkSlicedAnimation(const PCAnimationExportBundle& bundle) {
    if (m_language == TargetLanguage::FirstSwift) {
        add(Kind::SlicedLeftOut, Severity::Warning, *bundle.animation,
            u"Frame-sliced animations are left out in Swift; export in Objective-C, or take the "
            "tag \"sliced\" away."_s);
        return;
    }
    if (const auto obstacle = obstacleToSlicing(bundle, m_slicedValues)) {
        add(Kind::CannotSlice, Severity::Error, *bundle.animation,
            u"The export stops: %1; take the tag \"sliced\" away, or these keyframes."_s.arg(
                *obstacle));
        return;
    }
    const bool isCurrentSwift = m_language == TargetLanguage::CurrentSwift;
    if (m_plan.target.generateForMac && !isCurrentSwift) {
        add(Kind::SlicedIsMobileCode, Severity::Warning, *bundle.animation,
            u"Frame-sliced animations are mobile code and do not compile on the desktop; export "
            u"for "
            "the mobile platform, or take the tag \"sliced\" away."_s);
    }
    checkStem(bundle);
    checkImages(bundle);
    if (m_plan.target.generateForMac) { return; }
    checkSlicedImages(bundle);
    checkPartsAnimated(bundle);
}

void Collector::checkPngAnimation(const PCAnimationExportBundle& bundle) {
    // Beyond 2^24 ms the steps, which are 32-bit numbers, no longer advance evenly.
    constexpr int64_t lastEvenTime = 1 << 24;
    const auto step = static_cast<int64_t>(bundle.generatePNGsDeltaTimeInMS);
    const int64_t pictures = std::min<int64_t>(bundle.durationInMS, lastEvenTime) / step + 1;
    add(Kind::NoPicturesDrawn, Severity::Note, *bundle.animation,
        u"Its %1 pictures are not drawn, and it has no methods; take the tag \"pngs\" away to "
        "export it as code."_s.arg(pictures));
}

void Collector::checkImages(const PCAnimationExportBundle& bundle) {
    QSet<QString> reported;
    for (const PCAnimationExportElementTimelines& record : bundle.timelinesByElement) {
        for (const auto* timeline : record.allNonNilTimelines()) {
            if (!isStringProperty(timeline->propertyType())) { continue; }
            for (size_t i = 0; i < timeline->keyframesCount(); ++i) {
                const QString name = stringOfValue(timeline->storedValueOfKeyframe(i));
                if (!imageIsMissing(name) || reported.contains(name)) { continue; }
                reported.insert(name);
                add(Kind::MissingImage, Severity::Warning, *bundle.animation,
                    u"It shows the image '%1' on the element '%2', which no image set has; import "
                    "the image, or choose another."_s.arg(name, record.element->name()));
            }
        }
    }
}

// Every image that a standard animation shows is loaded by name when it is added, and the code
// stops where there is none.
void Collector::checkImagesAskedFor(const PCAnimationExportBundle& bundle) {
    for (const PCAnimationExportElementTimelines& record : bundle.timelinesByElement) {
        if (!record.contents) { continue; }
        for (const QString& name : imagesShown(*record.contents)) {
            if (name.isEmpty()) {
                add(Kind::EmptyImage, Severity::Warning, *bundle.animation,
                    u"The element '%1' shows no image at some time, and the generated code stops "
                    "when it is run; choose an image for the element and for each keyframe."_s.arg(
                        record.element->name()));
            } else if (!m_plan.target.generateForMac && !name.endsWith(u".png")) {
                add(Kind::ImageNotFoundOnDevice, Severity::Warning, *bundle.animation,
                    u"It asks for the image '%1' on the element '%2' without its extension, by "
                    "which a device finds PNG only, and the generated code stops when it is run; "
                    "import the image as PNG."_s.arg(name, record.element->name()));
            }
        }
    }
}

void Collector::noteSlicedImage(const PCAnimationExportBundle& bundle,
                                const PlannedElement& planned) {
    const PCElement& element = *planned.element;
    if (planned.type == PCCodeGeneratorType::Button || !element.isGroup()) { return; }
    if (!element.imageName().isEmpty()) { return; }
    add(Kind::NoImageView, Severity::Warning, *bundle.animation,
        u"It gives an image to the group '%1', which has none of its own and no view for it; "
        u"delete "
        "these keyframes, or take the tag \"sliced\" away."_s.arg(element.name()));
}

// The state of a frame-sliced animation takes each element with an image for an image view.
void Collector::checkSlicedImages(const PCAnimationExportBundle& bundle) {
    for (const PCAnimationExportElementTimelines& record : bundle.timelinesByElement) {
        const PlannedElement& planned = m_plan.planned(*record.element);
        if (!record.contents || planned.isLayer()) { continue; }
        if (m_language == TargetLanguage::CurrentSwift) {
            noteSlicedImage(bundle, planned);
            continue;
        }
        if (planned.type != PCCodeGeneratorType::Button && !record.element->isGroup()) { continue; }
        add(Kind::NoImageView, Severity::Warning, *bundle.animation,
            u"It gives an image to the element '%1', which is a group or a button and no image "
            "view, and the generated code stops when it is run; delete these keyframes, or take "
            "the tag \"sliced\" away."_s.arg(record.element->name()));
    }
}

// Where a device shows something else than the preview.
void Collector::checkLikeness(const PCAnimationExportBundle& bundle) {
    for (const PCAnimationExportElementTimelines& record : bundle.timelinesByElement) {
        const QString name = record.element->name();
        if (record.opacity && tweensBeyondOpacities(*record.opacity)) {
            add(Kind::OpacityOutOfRange, Severity::Warning, *bundle.animation,
                u"The opacity of the element '%1' goes beyond 0 to 1, where a device fades at "
                "another pace than the preview; key its opacity anew."_s.arg(name));
        }
        const bool endsEarly = record.zPosition &&
                               record.zPosition->repeatBehavior() == PCRepeatBehaviorNever &&
                               record.zPosition->durationInMS() < bundle.durationInMS;
        if (endsEarly) {
            add(Kind::OrderEndsEarly, Severity::Warning, *bundle.animation,
                u"The order of the children of '%1' is keyed for the last time at %2 ms of %3 ms, "
                "and a device that removes the animation on completion drops it there; key the "
                "order at the end as well."_s.arg(name)
                    .arg(record.zPosition->durationInMS())
                    .arg(bundle.durationInMS));
        }
    }
}

// One note for an element, of the timeline that loses most.
void Collector::noteKeyTimes(const PCAnimation& animation, const CoarseElements& elements) {
    const auto number = [](const std::string& text) { return QString::fromStdString(text); };
    for (const CoarseElement& coarse : elements) {
        add(Kind::CoarseKeyTimes, Severity::Note, animation,
            u"Key times have three decimals, which moves a keyframe of the element '%1' by %2 ms "
            "and costs up to %3 % of a change; put keyframes on multiples of %4 ms, or farther "
            "apart."_s.arg(coarse.element->name(), number(fixedText(coarse.loss.shiftInMS, 2)),
                           number(fixedText(100 * coarse.loss.shareOfRange, 0)),
                           number(shortestText(coarse.durationInMS / 1000.0))));
    }
}

}  // namespace

QString nameOf(ExportDiagnostic::Kind kind) {
    return QString::fromLatin1(kKindNames[static_cast<size_t>(kind)]);
}

QString nameOf(ExportDiagnostic::Severity severity) {
    switch (severity) {
        case Severity::Note:
            return u"note"_s;
        case Severity::Warning:
            return u"warning"_s;
        case Severity::Error:
            return u"error"_s;
    }
    return {};
}

std::optional<QString> obstacleToExport(const ExportPlan& plan) {
    if (!plan.target.generateForMac || !hasNoElement(plan)) { return {}; }
    return u"the project has no element, without which the class does not compile on the desktop"_s;
}

std::vector<ExportDiagnostic> exportDiagnostics(PCProject& project, const ExportPlan& plan) {
    return Collector(project, plan).collect();
}

}  // namespace tweenery
