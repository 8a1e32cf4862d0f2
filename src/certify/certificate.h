#pragma once

#include <QString>
#include <QStringList>
#include <cstdint>
#include <map>
#include <optional>
#include <vector>

#include "codegen/export_diagnostics.h"

namespace tweenery {

/// Up to here nobody sees a difference; in points, radians, shares.
inline constexpr double kNoticeableDifference = 1e-3;

/// Why an export may show something else than the preview.
enum class DifferenceCause {
    SingleNumbers,   // the model computes with 32-bit numbers
    PrintedNumbers,  // numbers are printed with one to three decimals
    KeyTimes,        // key times are printed with three decimals
    EasingSteps,     // the model's easing curves have steps of a thousandth
    LoopTurn,        // where a loop turns, the preview still shows its end
    Transform,       // the platform takes mirrored and vanished transforms apart in its own way
    FrameTransform,  // a frame of a table sets all of a transform
    LayersOnMobile,  // on the mobile platform layers are not animated
    Warning,         // the export warns of it
};
/// A stable word for each, for output that other programs read.
QString nameOf(DifferenceCause cause);
/// The same for people.
QString sentenceOf(DifferenceCause cause);

/// One thing that an export does not show as the preview does.
struct Difference {
    /// In points, radians, shares; 1 for what is no number.
    double amount = 0;
    QString property;
    QString element;                       // empty for the scene as a whole
    double timeInMS = 0;                   // of the animation
    QString preview;                       // what it shows
    QString exported;                      // what the export shows
    std::optional<DifferenceCause> cause;  // nothing: nobody can tell
};

/// What was compared of the scene, of one animation, or of the export in another language.
struct CertifiedPart {
    enum class Kind { Scene, Animation, FrameSlices, LeftOut, Swift };
    static constexpr size_t kMostListed = 5;

    struct Explained {
        int64_t count = 0;
        Difference largest;
    };

    Kind kind = Kind::Scene;
    QString name;  // of the animation; empty for the others
    int64_t comparisons = 0;
    std::optional<Difference> largest;  // of all, those below notice too
    std::map<DifferenceCause, Explained> explained;
    int64_t unexplainedCount = 0;
    std::vector<Difference> unexplained;  // the first few
    QStringList remarks;
    bool isCompared = true;  // false where the export stops, as it warns

    bool holds() const { return unexplainedCount == 0; }
    /// Counts a comparison, and what differed.
    void add(const Difference& difference);
};
QString nameOf(CertifiedPart::Kind kind);

/// What is certified of an export: that its layers do what the preview shows.
struct Certificate {
    QString className;
    bool forMac = false;
    bool isExact = false;
    /// Why nothing could be compared, such as that the export does not compile; mostly empty.
    QString obstacle;
    std::vector<CertifiedPart> parts;
    std::vector<ExportDiagnostic> diagnostics;

    bool holds() const;
    int64_t comparisons() const;
    /// The largest of all parts, with a cause or without.
    std::optional<Difference> largest() const;
    /// One line: "certified: ..." or "not certified: ...".
    QString summary() const;
};

/// "x of 'Ball' at 350 ms: 0.013 (120.513, not 120.500)"
QString textOf(const Difference& difference);

}  // namespace tweenery
