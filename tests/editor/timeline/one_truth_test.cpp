// What the model answers, what the layers show while playing, and what the exported keyframe lists
// say, millisecond by millisecond.

#include <gtest/gtest.h>

#include <QDir>
#include <algorithm>
#include <array>
#include <cmath>
#include <map>

#include "editor/layers/editor_layer.h"
#include "editor/layers/timeline_animations.h"
#include "editor/timeline/exported_animations.h"
#include "editor/timeline/playback.h"
#include "model/properties/easing.h"
#include "storage/package_store.h"
#include "support/model_recorders.h"
#include "support/scripted_clock.h"
#include "support/test_paths.h"

using namespace Qt::StringLiterals;

namespace tweenery::test {
namespace {

/// Two periods, but no more than this many milliseconds.
constexpr int32_t kLongestRunInMS = 20000;

/// How far the model and the layer may be apart.
struct Tolerance {
    double ofRange;      // of the segment's range
    double ofMagnitude;  // of its greatest value: the rounding of 32-bit numbers
};
constexpr double kRounding = 1e-6;
constexpr Tolerance kInstant{0, kRounding};
constexpr Tolerance kLinear{0.0005, kRounding};  // the model ends a segment from 0.9995 on
constexpr Tolerance kEased{0.0015, kRounding};   // its tables have 1,000 steps

// Exported numbers have three decimals.
constexpr double kPrinted = 0.0005;
// An eased span may reach so far beyond its ends, and the printed ends differ by kPrinted each.
constexpr double kOverreach = 1.3;
// From here on, in ranges of a segment, an export tells what its key times cost.
constexpr double kNoticeableCost = 0.01;

/// The segment that a time lies in, and which of the tolerances holds there.
struct Segment {
    double start = 0;
    double end = 0;
    Tolerance tolerance = kInstant;
    std::string easing = "held";

    double range() const { return std::abs(end - start); }
    double allowed() const {
        return tolerance.ofRange * range() +
               tolerance.ofMagnitude * std::max({1.0, std::abs(start), std::abs(end)});
    }
};

/// Images are compared as numbers, one for each.
double numberOfImage(const QImage& image) {
    static std::map<qint64, double> numbers;
    if (image.isNull()) { return -1; }
    return numbers.try_emplace(image.cacheKey(), static_cast<double>(numbers.size())).first->second;
}

double valueAt(const KeyframeAnimation& animation, double seconds) {
    if (animation.property == LayerProperty::Contents) {
        return numberOfImage(animation.imageAt(seconds));
    }
    return animation.valueAt(seconds);
}

/// One property of one element, seen in three ways.
class Track {
 public:
    Track(PCProject& project, const PCElement::Ptr& element, PCPropertyType type,
          KeyframeAnimation animation)
        : m_project(project), m_element(element), m_type(type), m_animation(std::move(animation)) {}

    /// What is exported of it; nothing for an animation that becomes no keyframe animations.
    std::optional<KeyframeAnimation> exported;

    std::string property() const {
        const PCPropertyType type = isStacking() ? PCPropertyTypeZPosition : m_type;
        return TimelineAnimations::animationQualifierForPropertyType(type).toStdString();
    }
    std::string elementName() const { return m_element->name().toStdString(); }
    /// Whose timeline it is that is exported.
    const PCElement& owner() const {
        return isStacking() ? *m_element->parentElement() : *m_element;
    }
    /// The most that the exported key times have cost so far, in ranges of their segments.
    double costOfKeyTimes = 0;

    /// A loop shows its first value again where a pass ends; only at the end of the very first the
    /// model still shows its last.
    bool isEndOfFirstPass(int32_t timeInMS) const {
        return timeInMS == keys().durationInMS() && m_animation.repeatCount > 0 &&
               !m_animation.autoreverses;
    }

    double modelValue(int32_t timeInMS) const {
        if (isStacking()) { return placeIn(keys().arrayValueAtTimeInMS(timeInMS)); }
        if (m_type == PCPropertyTypeImageContents) {
            return image(keys().stringValueAtTimeInMS(timeInMS));
        }
        return static_cast<double>(keys().floatValueAtTimeInMS(timeInMS));
    }

    double layerValue() const {
        const LayerValues& seen = PCLayer::of(*m_element)->presented();
        switch (m_animation.property) {
            case LayerProperty::Contents:
                return numberOfImage(seen.contents);
            case LayerProperty::Opacity:
                return seen.opacity;
            case LayerProperty::ZPosition:
                return seen.zPosition;
            case LayerProperty::ScaleX:
                return seen.transform.scale.x();
            case LayerProperty::ScaleY:
                return seen.transform.scale.y();
            case LayerProperty::RotationZ:
                return seen.transform.rotation;
            case LayerProperty::TranslationX:
                return seen.transform.translation.x();
            case LayerProperty::TranslationY:
                return seen.transform.translation.y();
        }
        return NAN;
    }

    Segment segmentAt(int32_t timeInMS) const {
        const auto effective = static_cast<int32_t>(keys().effectiveTimeForTimeInMS(timeInMS));
        const size_t end = keys().firstKeyframeIndexAtOrAfterTimeInMS(effective);
        Segment segment;
        if (end == PCKeyedPropertyTimeline::kNotFound) {
            segment.start = segment.end = keyframeValue(keys().keyframesCount() - 1);
            return segment;
        }
        segment.start = end == 0 ? setupValue() : keyframeValue(end - 1);
        segment.end = keyframeValue(end);
        const PCEasingMode mode = keys().easingModeOfKeyframe(end);
        const bool isInstant = keys().keyframeIsInstant(end) || keys().isInstantTransition();
        segment.easing = isInstant ? "instant" : std::string(nameOfEasingMode(mode));
        segment.tolerance = isInstant ? kInstant : mode == 0 ? kLinear : kEased;
        return segment;
    }

    /// How far the exported value lies outside of what the layer shows within half a thousandth of
    /// the duration, which a printed key time can be off by.
    double excessOfExported(double seconds, double value) const {
        const double reach = kPrinted * exported->duration * (1 + 1e-9);
        double lowest = INFINITY;
        double highest = -INFINITY;
        for (const double time : timesWithin(seconds - reach, seconds + reach)) {
            const double shown = valueAt(m_animation, time);
            lowest = std::min(lowest, shown);
            highest = std::max(highest, shown);
        }
        return std::max({0.0, lowest - value, value - highest});
    }

 private:
    PCProject& m_project;
    PCElement::Ptr m_element;
    PCPropertyType m_type;
    KeyframeAnimation m_animation;

    bool isStacking() const { return m_type == PCPropertyTypeChildrenZPositions; }
    const PCKeyedPropertyTimeline& keys() const {
        return isStacking() ? *m_element->parentElement()->childrenZPositionsTimeline()
                            : *m_element->timeline(m_type);
    }
    double image(const QString& name) const {
        return numberOfImage(
            m_project.imageSetManager().imageWithName(name, m_project.backingScale()));
    }
    double placeIn(const QStringList& order) const {
        return static_cast<double>(order.indexOf(m_element->identifier().toString()));
    }
    double keyframeValue(size_t index) const {
        const PropertyValue value = keys().valueOfKeyframeAtIndex(index);
        if (isStacking()) { return placeIn(arrayOfValue(value)); }
        if (m_type == PCPropertyTypeImageContents) { return image(stringOfValue(value)); }
        return static_cast<double>(floatOfValue(value));
    }
    double setupValue() const {
        if (isStacking()) { return m_element->index(); }
        if (m_type == PCPropertyTypeImageContents) { return image(m_element->imageName()); }
        return static_cast<double>(floatOfValue(m_element->setupValueForPropertyType(m_type)));
    }
    /// Some times from `first` to `last`, and all keys between them: no extreme is missed but the
    /// tip of an eased span.
    std::vector<double> timesWithin(double first, double last) const {
        constexpr int kSteps = 8;
        std::vector<double> times;
        for (int i = 0; i <= kSteps; ++i) {
            times.push_back(first + (last - first) * i / kSteps);
        }
        const double pass = m_animation.duration;
        if (!(pass > 0)) { return times; }
        for (double n = std::floor(first / pass); n <= last / pass; ++n) {
            for (const double key : m_animation.keyTimes) {
                for (const double time : {(n + key) * pass, (n + 1 - key) * pass}) {
                    if (time >= first && time <= last) {
                        times.insert(times.end(), {time, std::nextafter(time, first)});
                    }
                }
            }
        }
        return times;
    }
};

class OneTruth : public testing::Test {
 protected:
    size_t comparisons = 0;

    void checkPackage(const QString& name);

 private:
    struct Stage;
    std::vector<Track> tracksOf(PCProject& project, const PCAnimation& animation,
                                const ExportedAnimations& exported) const;
    void compare(Track& track, int32_t timeInMS);
};

/// A project on layers, as a window has it, with a clock that the test moves.
struct OneTruth::Stage {
    PCProject::Ptr project;
    ProjectLayers::Ptr layers;
    ScriptedClock clock;
    RecordingLog log;
    PCEditorLayer editor;
    PCProjectTimeManager time{clock, log};
    PCElementSelectionManager selection{project};
    std::optional<Playback> playback;

    explicit Stage(const PCProject::Ptr& shown)
        : project(shown), layers(ProjectLayers::forProject(shown)) {
        PCLayer& canvas = *PCLayer::of(*project->canvas());
        editor.setCanvasLayer(canvas);
        time.prepareToAnimateLayer(canvas);
        playback.emplace(project, time, selection, layers);
    }
    /// In the middle of the millisecond, so that seconds that are no whole binary numbers do not
    /// fall into the one before.
    void showFrameAt(int32_t timeInMS) {
        clock.seconds = (timeInMS + 0.5) / 1000;
        time.displaylinkAdapter()->tick();
    }
};

PCProject::Ptr openPackage(const QString& name) {
    auto project = PCProject::projectForReadingWithFileWrapper(readPackage(packagePath(name)));
    project->setProjectName(name);
    return project;
}

std::vector<Track> OneTruth::tracksOf(PCProject& project, const PCAnimation& animation,
                                      const ExportedAnimations& exported) const {
    std::vector<Track> tracks;
    TimelineAnimations animations(project);
    for (const auto& [identifier, group] : animation.timelineGroups()) {
        const auto element = project.elementForIdentifier(identifier);
        if (!element) { continue; }
        for (const auto& timeline : group->allTimelines()) {
            auto made = animations.animation(*timeline);
            if (!made) { continue; }
            const PCPropertyType type = timeline->propertyType();
            Track& track = tracks.emplace_back(project, element, type, std::move(*made));
            if (!exported.has(animation.name())) { continue; }
            track.exported = exported.find(animation.name(), *element, type);
            EXPECT_TRUE(track.exported)
                << animation.name().toStdString() << ", " << track.elementName() << ", "
                << track.property() << " is not in the exported text";
        }
    }
    return tracks;
}

void OneTruth::compare(Track& track, int32_t timeInMS) {
    const Segment segment = track.segmentAt(timeInMS);
    const double shown = track.layerValue();
    ++comparisons;
    if (!track.isEndOfFirstPass(timeInMS)) {
        const double difference = std::abs(track.modelValue(timeInMS) - shown);
        EXPECT_LE(difference, segment.allowed())
            << track.elementName() << ", " << track.property() << " at " << timeInMS
            << " ms: the model says " << track.modelValue(timeInMS) << ", the layer " << shown
            << " on a segment " << segment.easing << " from " << segment.start << " to "
            << segment.end;
    }
    if (!track.exported) { return; }
    const double seconds = static_cast<double>(static_cast<float>(timeInMS) / 1000.0F);
    const double printed = valueAt(*track.exported, seconds);
    const double difference = std::abs(printed - shown);
    if (difference <= kPrinted) { return; }
    const double costOfValues = kPrinted * kOverreach;
    if (segment.range() > 0) {
        track.costOfKeyTimes =
            std::max(track.costOfKeyTimes, (difference - costOfValues) / segment.range());
    }
    EXPECT_LE(track.excessOfExported(seconds, printed), costOfValues)
        << track.elementName() << ", " << track.property() << " at " << timeInMS << " ms: exported "
        << printed << ", the layer shows " << shown;
}

void OneTruth::checkPackage(const QString& name) {
    const auto project = openPackage(name);
    const ExportedAnimations exported(project);
    Stage stage(project);
    PCAnimationsManager& manager = stage.project->animationsManager();
    for (const PCAnimation::Ptr& animation : manager.animations()) {
        SCOPED_TRACE((name + u", "_s + animation->name()).toStdString());
        manager.setSelectedAnimation(animation);
        const int32_t period = animation->storedSummary().durationInMS;
        stage.clock.seconds = 0;
        stage.playback->togglePlayPause();
        auto tracks = tracksOf(*stage.project, *animation, exported);
        for (int32_t time = 0; time <= std::min(2 * period, kLongestRunInMS); ++time) {
            stage.showFrameAt(time);
            for (Track& track : tracks) {
                compare(track, time);
            }
            if (HasFailure()) {
                break;  // one is enough to read
            }
        }
        for (const Track& track : tracks) {
            if (track.costOfKeyTimes <= kNoticeableCost) { continue; }
            EXPECT_TRUE(exported.saysKeyTimesAreCoarse(animation->name(), track.owner()))
                << track.elementName() << ", " << track.property() << ": the printed key times "
                << "cost " << track.costOfKeyTimes << " of a segment's range";
        }
        stage.playback->togglePlayPause();
    }
}

TEST_F(OneTruth, ModelLayersAndExportAgreeInEveryMillisecond) {
    const QDir packages(sourcePath(u"tests/packages"_s));
    for (const QString& entry : packages.entryList({u"*.tweenery"_s}, QDir::Dirs, QDir::Name)) {
        checkPackage(entry.chopped(9));
    }
    EXPECT_GT(comparisons, 100000U);
}

}  // namespace
}  // namespace tweenery::test
