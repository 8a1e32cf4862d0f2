// tweenc info: what a project holds, at a glance.

#include "base/parallel_for.h"
#include "cli/support/json_writer.h"
#include "cli/support/number_words.h"
#include "cli/support/packages.h"
#include "cli/verbs.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

struct AnimationInfo {
    PCAnimation::Ptr animation;
    PCAnimation::Summary summary;
};

struct ProjectInfo {
    PCProject::Ptr project;
    size_t elementsCount = 0;  // without the canvas
    size_t groupsCount = 0;
    std::vector<AnimationInfo> animations;
};

void countElements(const PCElement& parent, ProjectInfo& info) {
    for (const PCElement::Ptr& child : parent.children()) {
        info.elementsCount += 1;
        info.groupsCount += child->isGroup() ? 1 : 0;
        countElements(*child, info);
    }
}

ProjectInfo infoOf(const PCProject::Ptr& project) {
    ProjectInfo info;
    info.project = project;
    countElements(*project->canvas(), info);
    for (const PCAnimation::Ptr& animation : project->animationsManager().animations()) {
        info.animations.push_back({animation, {}});
    }
    parallelFor(info.animations.size(), [&info](size_t i) {
        info.animations[i].summary = info.animations[i].animation->storedSummary();
    });
    return info;
}

QString densities(const PCImageSet& set) {
    return (set.has2XArtwork() ? u" @2x"_s : QString()) +
           (set.has3XArtwork() ? u" @3x"_s : QString());
}

QString textOf(const AnimationInfo& item) {
    const PCAnimation::Summary& summary = item.summary;
    const QString period = QString::number(summary.course.wholePeriodInMS());
    return u"    %1  %2 ms%3, %4, %5"_s.arg(
        item.animation->name(), QString::number(summary.durationInMS),
        summary.hasLooping ? u" looping, all together every %1 ms"_s.arg(period) : QString(),
        counted(summary.timelinesCount, u"timeline"), counted(summary.keyframesCount, u"keyframe"));
}

void printText(const ProjectInfo& info, Report& report) {
    PCProject& project = *info.project;
    const QSizeF canvas = project.canvas()->size();
    const auto sets = project.imageSetManager().allImageSets();
    report.printLine((project.projectName()));
    report.printLine(u"  model version %1"_s.arg(project.version().modelVersion()));
    report.printLine(
        u"  canvas %1 x %2"_s.arg(numberText(canvas.width()), numberText(canvas.height())));
    report.printLine(u"  %1 (%2)"_s.arg(counted(info.elementsCount, u"element"),
                                        counted(info.groupsCount, u"group")));
    report.printLine(u"  "_s + counted(info.animations.size(), u"animation"));
    for (const AnimationInfo& item : info.animations) {
        report.printLine(textOf(item));
    }
    report.printLine(u"  "_s + counted(sets.size(), u"image set"));
    for (const auto& set : sets) {
        const QSize size = set->size();
        report.printLine(u"    %1  %2 x %3%4"_s.arg((set->name()), numberText(size.width()),
                                                    numberText(size.height()), densities(*set)));
    }
}

void writeAnimations(const ProjectInfo& info, JsonWriter& json) {
    json.key("animations").beginArray();
    for (const auto& [animation, summary] : info.animations) {
        json.beginObject(JsonWriter::Layout::OneLine);
        json.key("durationInMS").integer(summary.durationInMS);
        json.key("identifier").string(animation->identifier());
        json.key("keyframes").integer(static_cast<int64_t>(summary.keyframesCount));
        json.key("looping").boolean(summary.hasLooping);
        json.key("name").string(animation->name());
        json.key("periodInMS");
        const int64_t period = summary.course.wholePeriodInMS();
        period > 0 ? json.integer(period) : json.null();
        json.key("timelines").integer(static_cast<int64_t>(summary.timelinesCount));
        json.endObject();
    }
    json.endArray();
}

void writeImageSets(PCProject& project, JsonWriter& json) {
    json.key("imageSets").beginArray();
    for (const auto& set : project.imageSetManager().allImageSets()) {
        json.beginObject(JsonWriter::Layout::OneLine);
        json.key("has2x").boolean(set->has2XArtwork());
        json.key("has3x").boolean(set->has3XArtwork());
        json.key("height").integer(set->size().height());
        json.key("name").string(set->name());
        json.key("width").integer(set->size().width());
        json.endObject();
    }
    json.endArray();
}

void writeJson(const ProjectInfo& info, JsonWriter& json) {
    PCProject& project = *info.project;
    const QSizeF canvas = project.canvas()->size();
    json.beginObject();
    writeAnimations(info, json);
    json.key("canvas").beginObject(JsonWriter::Layout::OneLine);
    json.key("height").real(canvas.height()).key("width").real(canvas.width()).endObject();
    json.key("elements").integer(static_cast<int64_t>(info.elementsCount));
    json.key("groups").integer(static_cast<int64_t>(info.groupsCount));
    writeImageSets(project, json);
    json.key("modelVersion").integer(project.version().modelVersion());
    json.key("name").string(project.projectName());
    json.endObject();
}

ExitCode run(const Invocation& invocation, Console& console) {
    return runOnPackages(invocation, console, [](Report& report) {
        const ProjectInfo info = infoOf(openForReading(report));
        if (report.isJson()) {
            report.setResult([&](JsonWriter& json) { writeJson(info, json); });
        } else {
            printText(info, report);
        }
    });
}

}  // namespace

const Verb& infoVerb() {
    static const Verb verb{
        "info", "PKG...", 1, Verb::kMany, "Prints what each project holds.", {kJsonOption}, run};
    return verb;
}

}  // namespace tweenery
