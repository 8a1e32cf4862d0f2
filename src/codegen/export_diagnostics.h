#pragma once

#include <QString>
#include <optional>
#include <vector>

#include "codegen/export_plan.h"

namespace tweenery {

/// Something that will not compile or run, is missing from an export, or surprises its reader.
struct ExportDiagnostic {
    enum class Severity {
        Note,     // works, but not as one may think
        Warning,  // does not compile or run, misses something, or looks otherwise than the preview
        Error,    // stops the export
    };
    enum class Kind {
        ReservedWord,
        LeadingDigit,
        UnusableCharacter,
        CollidingNames,
        DeletedElement,
        MissingImage,
        SlicedLeftOut,
        SlicedIsMobileCode,
        CannotSlice,
        LegacyTimeline,
        EmptyProject,
        DoesNotAnimate,
        RecordableNeedsImport,
        NoPicturesDrawn,
        CoarseKeyTimes,
        PuppetIsMobileCode,
        NoImageView,
        EmptyImage,
        ImageNotFoundOnDevice,
        OpacityOutOfRange,
        OrderEndsEarly,
        FirstSwift,
    };
    enum class Subject { Project, Element, Animation };

    Kind kind;
    Severity severity;
    Subject subject;
    QString name;        // of the element, the animation or the project
    QString identifier;  // of the element or the animation; empty for the project
    QString sentence;    // what is wrong and what to do about it
};

/// A stable word for each, for output that other programs read.
QString nameOf(ExportDiagnostic::Kind kind);
QString nameOf(ExportDiagnostic::Severity severity);

/// Why the plan cannot become source text at all; nothing for most.
std::optional<QString> obstacleToExport(const ExportPlan& plan);

/// What a designer should know of a planned export: the project's first, then the elements' in tree
/// order, then the animations' in their order.
std::vector<ExportDiagnostic> exportDiagnostics(PCProject& project, const ExportPlan& plan);

}  // namespace tweenery
