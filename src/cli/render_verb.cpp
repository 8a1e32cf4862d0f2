// tweenc render: pictures of a project at given times.

#include <QRegularExpression>
#include <atomic>
#include <chrono>
#include <cmath>
#include <mutex>

#include "cli/pictures/frame_names.h"
#include "cli/pictures/frame_times.h"
#include "cli/pictures/movie_format.h"
#include "cli/pictures/picture_run.h"
#include "cli/pictures/scene_pictures.h"
#include "cli/support/animation_choice.h"
#include "cli/support/packages.h"
#include "codegen/export_error.h"
#include "codegen/export_plan.h"
#include "editor/layers/tweenery_style.h"
#include "storage/package_entries.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

constexpr VerbOption kAtOption{"at", "MS[,MS...]", "times in whole milliseconds, 0 or later"};
constexpr VerbOption kFromOption{"from", "MS", "the first time of a range, 0 otherwise"};
constexpr VerbOption kToOption{"to", "MS",
                               "its last time; otherwise that of the last keyframe, and of what "
                               "repeats one full period"};
constexpr VerbOption kFpsOption{"fps", "N",
                                "frames a second of the range, 60 otherwise, of a GIF 50"};
constexpr VerbOption kScaleOption{"scale", "S", "pixels a point, 1 otherwise"};
constexpr VerbOption kBackgroundOption{"background", "COLOR",
                                       "transparent (as without it), checkerboard or #rrggbb"};
constexpr VerbOption kClipOption{"clip", nullptr,
                                 "cut at the canvas; otherwise the pictures grow to hold what "
                                 "sticks out of it, by up to 600 points"};
constexpr VerbOption kOutOption{"out", "PATTERN",
                                "where the pictures go, as PNG files: %d (or %04d) is the frame's "
                                "number, %t its time, %a its animation; a name that ends in .apng "
                                "or .gif makes one animated picture"};
constexpr VerbOption kSheetOption{"sheet", "FILE.png",
                                  "one picture of all frames, and FILE.json with their places"};
constexpr VerbOption kColumnsOption{"columns", "N", "frames in a row of the sheet"};
constexpr VerbOption kPngsOption{"pngs", nullptr,
                                 "the animations whose names carry the tag \"pngs\", at their own "
                                 "times"};
constexpr VerbOption kReplaceOption{"force", nullptr, "replace files that are there"};

double numberFrom(const Invocation& invocation, const VerbOption& option, double otherwise,
                  double most) {
    if (!invocation.has(option.name)) { return otherwise; }
    const QString text = invocation.value(option.name);
    bool isNumber = false;
    const double number = text.toDouble(&isNumber);
    if (!isNumber || !(number > 0 && number <= most)) {
        throw UsageError{u"--%1 takes a number above 0, at most %2, not '%3'"_s.arg(
            QLatin1StringView(option.name), QString::number(most), text)};
    }
    return number;
}

std::optional<int32_t> timeFrom(const Invocation& invocation, const VerbOption& option) {
    if (!invocation.has(option.name)) { return std::nullopt; }
    bool isNumber = false;
    const int32_t time = invocation.value(option.name).toInt(&isNumber);
    if (!isNumber || time < 0) {
        throw UsageError{u"--%1 takes whole milliseconds, 0 or later, not '%2'"_s.arg(
            QLatin1StringView(option.name), invocation.value(option.name))};
    }
    return time;
}

QBrush backgroundFrom(const Invocation& invocation) {
    const QString text = invocation.value(kBackgroundOption.name);
    if (!invocation.has(kBackgroundOption.name) || text == u"transparent") { return Qt::NoBrush; }
    if (text == u"checkerboard") {
        QBrush pattern;
        pattern.setTextureImage(TweeneryStyle::canvasPattern());
        return pattern;
    }
    static const QRegularExpression color(u"^#[0-9a-fA-F]{6}$"_s);
    if (!color.match(text).hasMatch()) {
        throw UsageError{
            u"--background takes transparent, checkerboard or #rrggbb, not '%1'"_s.arg(text)};
    }
    return QColor(text);
}

void requireSense(const Invocation& invocation) {
    invocation.requireNotBoth(kPngsOption,
                              {kAnimationOption, kAtOption, kFromOption, kToOption, kFpsOption});
    invocation.requireNotBoth(kAtOption, {kFromOption, kToOption, kFpsOption});
    for (const VerbOption& option : {kAtOption, kFromOption, kToOption, kFpsOption}) {
        if (invocation.has(option.name) && !invocation.has(kAnimationOption.name)) {
            throw UsageError{u"--%1 needs --animation: the setup state has no time"_s.arg(
                QLatin1StringView(option.name))};
        }
    }
    if (!invocation.has(kOutOption.name) && !invocation.has(kSheetOption.name)) {
        throw UsageError{u"needs --out PATTERN or --sheet FILE.png"_s};
    }
    if (invocation.has(kColumnsOption.name) && !invocation.has(kSheetOption.name)) {
        throw UsageError{u"--columns needs --sheet"_s};
    }
}

void requireSenseOfMovie(const Invocation& invocation, const FrameNames& names) {
    invocation.requireNotBoth(kOutOption, {kSheetOption, kPngsOption});
    if (names.tellsFramesApart()) {
        throw UsageError{u"--out names one animated picture: %d and %t have no meaning there"_s};
    }
    if (!invocation.has(kAnimationOption.name)) {
        throw UsageError{u"an animated picture needs --animation"_s};
    }
}

// What the command line asks for, checked as far as that goes without the project.
struct Request {
    std::optional<QString> animation;
    bool wantsTaggedAnimations = false;
    std::vector<int32_t> at;
    FrameRange range;
    PictureLook look;
    PictureTargets targets;
    std::optional<FrameNames> names;
    bool wantsMovie = false;
    bool replaces = false;
};

Request requestFrom(const Invocation& invocation) {
    requireSense(invocation);
    Request request;
    if (invocation.has(kAnimationOption.name)) {
        request.animation = invocation.value(kAnimationOption.name);
    }
    request.wantsTaggedAnimations = invocation.has(kPngsOption.name);
    if (invocation.has(kAtOption.name)) {
        request.at = timesFrom(invocation.value(kAtOption.name));
    }
    request.range.from = timeFrom(invocation, kFromOption).value_or(0);
    request.range.to = timeFrom(invocation, kToOption);
    const QString out = invocation.value(kOutOption.name);
    // Delays of a GIF are steps of 10 ms: 50 frames a second need no rounding.
    request.range.framesPerSecond =
        numberFrom(invocation, kFpsOption, isGifPath(out) ? 50 : 60, 1000);
    if (request.range.to && *request.range.to < request.range.from) {
        throw UsageError{u"--to lies before --from"_s};
    }
    request.look.scale = numberFrom(invocation, kScaleOption, 1, 100);
    request.look.background = backgroundFrom(invocation);
    request.look.clips = invocation.has(kClipOption.name);
    if (invocation.has(kOutOption.name)) { request.names.emplace(out); }
    request.wantsMovie = isMoviePath(out);
    if (request.wantsMovie) { requireSenseOfMovie(invocation, *request.names); }
    if (invocation.has(kSheetOption.name)) {
        request.targets.takeSheet(invocation.value(kSheetOption.name));
    }
    const double columns = numberFrom(invocation, kColumnsOption, 0, 10000);
    if (columns != std::floor(columns)) { throw UsageError{u"--columns takes a whole number"_s}; }
    request.targets.columns = static_cast<int>(columns);
    request.replaces = invocation.has(kReplaceOption.name);
    return request;
}

QString fileNameOf(const PCAnimation::Ptr& animation) {
    return animation ? nameForFile(animation->name()) : u"setup"_s;
}

class FramePlanner {
 public:
    FramePlanner(const Request& request, const PCProject::Ptr& project)
        : m_request(request), m_project(project) {}

    std::vector<PictureFrame> frames() {
        if (m_request.wantsTaggedAnimations) {
            addTaggedAnimations();
        } else {
            addChosenAnimation();
        }
        return std::move(m_frames);
    }

 private:
    void add(const PCAnimation::Ptr& animation, const QString& name, int32_t timeInMS) {
        const bool hasOwnFile = m_request.names && !m_request.wantsMovie;
        const QString path =
            hasOwnFile ? m_request.names->pathOf(m_frames.size(), timeInMS, name) : QString();
        m_frames.push_back({animation, timeInMS, path});
    }

    void addChosenAnimation() {
        if (!m_request.animation) { return add(nullptr, fileNameOf(nullptr), 0); }
        const PCAnimation::Ptr animation = animationNamed(*m_request.animation, m_project);
        m_project->animationsManager().setSelectedAnimation(animation);
        const std::vector<int32_t> times =
            m_request.at.empty() ? frameTimes(m_request.range, *m_project) : m_request.at;
        for (const int32_t time : times) {
            add(animation, fileNameOf(animation), time);
        }
    }

    void addTaggedAnimations() {
        const ExportPlan plan = planExport(*m_project, {});
        for (const PCAnimationExportBundle& bundle : plan.pngGeneratorAnimationExportBundles) {
            const QString name = nameForFile(QString::fromStdString(bundle.baseMethodName));
            forEachPNGTime(bundle, [&](int32_t time) {
                if (m_frames.size() == kMostFrames) {
                    throw InputError(kAnimationsEntry,
                                     u"have more than %1 frames"_s.arg(kMostFrames));
                }
                add(bundle.animation, name, time);
            });
        }
        if (m_frames.empty()) {
            throw InputError(kAnimationsEntry,
                             u"there is none whose name ends in \"pngs\" and a number of "
                             u"milliseconds, such as walk_pngs_40"_s);
        }
    }

    const Request& m_request;
    PCProject::Ptr m_project;
    std::vector<PictureFrame> m_frames;
};

void planMovie(const Request& request, const PCProject& project, PictureTargets& targets) {
    const std::vector<PictureFrame>& frames = targets.frames;
    const FrameRange& range = request.range;
    targets.moviePath = request.names->pathOf(0, 0, fileNameOf(frames.front().animation));
    targets.timing.loops = loopPeriodInMS(project) > 0;
    targets.timing.delays = request.at.empty() ? steadyDelays(frames.size(), range.framesPerSecond,
                                                              lengthOfLoopInMS(range, project))
                                               : delaysBetween(request.at);
}

void tellRounding(const PictureTargets& targets, Report& report) {
    if (isGifPath(targets.moviePath) && !areWholeHundredths(targets.timing.delays)) {
        report.note(targets.moviePath,
                    u"its delays are rounded to steps of 10 ms, as a GIF has them"_s);
    }
}

void writeJson(const PictureTargets& targets, JsonWriter& json) {
    json.beginObject().key("movie").string(targets.moviePath).key("pictures").beginArray();
    for (const PictureFrame& frame : targets.frames) {
        if (frame.path.isNull()) { continue; }
        json.beginObject(JsonWriter::Layout::OneLine);
        json.key("animation").string(frame.animation ? frame.animation->name() : QString());
        json.key("path").string(frame.path);
        json.key("time").integer(frame.timeInMS).endObject();
    }
    json.endArray().key("sheet").string(targets.sheetPath).endObject();
}

void renderPackage(const Request& request, Console& console, Report& report) {
    const PCProject::Ptr project = openForReading(report);
    PictureTargets targets = request.targets;
    targets.hasTimesOfUser = !request.at.empty() || request.range.to;
    try {
        targets.frames = FramePlanner(request, project).frames();
        if (request.wantsMovie) { planMovie(request, *project, targets); }
    } catch (const ExportError& error) { throw InputError(report.packagePath(), error.message()); }
    for (const QString& path : targets.paths()) {
        requireOutsidePackage(path, report.packagePath());
    }
    targets.requireFree(request.replaces);
    ScenePictures scene(project, request.look);
    PictureRun(scene, targets, console).run();
    tellRounding(targets, report);
    if (report.isJson()) {
        report.setResult([&](JsonWriter& json) { writeJson(targets, json); });
    }
    for (const QString& path : targets.paths()) {
        report.printLine(path);
    }
}

ExitCode run(const Invocation& invocation, Console& console) {
    const Request request = requestFrom(invocation);
    return runOnPackage(invocation, console,
                        [&](Report& report) { renderPackage(request, console, report); });
}

}  // namespace

const Verb& renderVerb() {
    static const Verb verb{
        "render",
        "PKG",
        1,
        1,
        "Draws the scene at given times into PNG files, one sprite sheet or one animated "
        "picture.",
        {kAnimationOption, kAtOption, kFromOption, kToOption, kFpsOption, kScaleOption,
         kBackgroundOption, kClipOption, kOutOption, kSheetOption, kColumnsOption, kPngsOption,
         kReplaceOption, kQuietOption, kJsonOption},
        run};
    return verb;
}

}  // namespace tweenery
