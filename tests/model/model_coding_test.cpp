#include <gtest/gtest.h>

#include <numbers>

#include "base/errors.h"
#include "model/element_placement.h"
#include "model/properties/easing.h"
#include "storage/package_store.h"
#include "support/archived.h"
#include "support/model_builder.h"
#include "support/model_recorders.h"
#include "support/test_paths.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

PCKeyedPropertyTimeline::Ptr reread(const PCKeyedPropertyTimeline& timeline) {
    return PCKeyedPropertyTimeline::unarchive(KeyedArchiver::archivedDataWithRootObject(timeline),
                                              u"opacity.data"_s);
}

PCElement::Ptr reread(const PCElement& element) {
    return PCElement::initWithArchive(
        KeyedUnarchiver(KeyedArchiver::archivedDataWithRootObject(element), u"canvas"_s));
}

TEST(TimelineCoding, KeepsEveryField) {
    const std::vector<std::pair<PCPropertyType, std::vector<PropertyValue>>> cases = {
        {PCPropertyTypeOpacity, {1.1F, -2.0F, {}}},
        {PCPropertyTypeImageContents, {u"a.png"_s, {}, 3.5F}},
        {PCPropertyTypeChildrenZPositions, {QStringList{u"a"_s, u"b"_s}, QStringList()}},
        {PCPropertyTypeScale, {QPointF(1.25, 1.0 / 3)}},
    };
    // Every stored field of the keyframes, the flags that keysText() does not show included.
    const auto fields = [](const PCKeyedPropertyTimeline& timeline) {
        std::string text = keysText(timeline);
        for (size_t i = 0; i < timeline.keyframesCount(); ++i) {
            const KeyframeRecord record = timeline.recordOfKeyframe(i);
            text += '\n' + record.identifier.toString().toStdString();
            text += record.liveRecorded ? 'r' : ' ';
            text += record.liveRecordedStart ? 's' : ' ';
            text += record.liveRecordedEnd ? 'e' : ' ';
        }
        return text;
    };
    for (const auto& [type, values] : cases) {
        const auto timeline = PCKeyedPropertyTimeline::initForElement(PCElement::init(), type);
        int32_t time = 0;
        for (const PropertyValue& value : values) {
            const auto keyframe = timeline->setStoredPropertyValue(value, time += 10);
            keyframe->setEasingMode(easingModes()[static_cast<size_t>(time % 7)].mode);
            keyframe->setKeyall(true);
            keyframe->setInstantTransition(time == 10);
            keyframe->setLiveRecorded(time == 20);
            keyframe->setLiveRecordedStart(time != 20);
            keyframe->setLiveRecordedEnd(time == 10);
        }
        timeline->setRepeatBehavior(PCRepeatBehaviorForeverAutoreverse);
        const auto copy = reread(*timeline);
        EXPECT_EQ(copy->propertyType(), type);
        EXPECT_EQ(copy->repeatBehavior(), PCRepeatBehaviorForeverAutoreverse);
        EXPECT_TRUE(copy->hasUnsavedChanges());
        EXPECT_EQ(fields(*copy), fields(*timeline));
    }
    const auto odd = PCKeyedPropertyTimeline::initForElement(nullptr, PCPropertyTypeOpacity);
    odd->setFloatPropertyValue(1, 0)->setEasingMode(PCEasingMode{7});
    EXPECT_EQ(reread(*odd)->keyframesSortedByTime()[0]->easingMode(), PCEasingModeLinear);
    const auto z = PCKeyedPropertyTimeline::initForElement(nullptr, PCPropertyTypeZPosition);
    z->setStoredPropertyValue(1.0F, 0);
    EXPECT_THROW(reread(*z), AssertionFailure);
}

// Other writers leave keys out, and leave keyframes in disorder.
TEST(TimelineCoding, ReadsWhatOthersWrote) {
    const auto timelineOf = [](const char* type, const Archived::Encode& more, size_t count,
                               const std::function<void(size_t, KeyedEncoder&)>& keyframe) {
        const Archived archived("PCKeyedPropertyTimeline", [&](KeyedEncoder& coder) {
            coder.encodeString("property_type", QString::fromLatin1(type));
            coder.encodeRecords("keyframes", {"PCPropertyKeyframe"}, count, keyframe);
            more(coder);
        });
        return archived.bytes();
    };
    const auto nothing = [](KeyedEncoder&) {};
    const auto read = [](const QByteArray& bytes) {
        return PCKeyedPropertyTimeline::unarchive(bytes, u"x.data"_s);
    };

    const auto empty = read(timelineOf("opacity", nothing, 0, {}));
    EXPECT_TRUE(empty->isEmpty());
    EXPECT_EQ(empty->repeatBehavior(), PCRepeatBehaviorNever);
    EXPECT_EQ(read(timelineOf("xScale", nothing, 0, {}))->propertyType(), PCPropertyTypeScale);
    EXPECT_EQ(read(timelineOf("zPosition", nothing, 0, {}))->propertyType(),
              PCPropertyTypeChildrenZPositions);

    const auto bare = read(timelineOf("opacity", nothing, 1, [](size_t, KeyedEncoder& coder) {
        coder.encodeFloat("float", 0.5F);
        coder.encodePoint("point", {7, 7});
        coder.encodeString("identifier", u""_s);
    }));
    EXPECT_EQ(keysText(*bare), "0:0.5");
    EXPECT_FALSE(bare->keyframesSortedByTime()[0]->identifier().isNull());

    constexpr std::array<int32_t, 6> disorder{300, 100, 200, 100, 300, 300};
    const auto mended =
        read(timelineOf("opacity", nothing, disorder.size(), [&](size_t i, KeyedEncoder& coder) {
            coder.encodeInt("time", disorder[i]);
            coder.encodeFloat("float", static_cast<float>(i));
        }));
    EXPECT_EQ(keysText(*mended), "100:1 100:3 200:2 300:0 300:4 300:5");

    // What is stored of an older version: the file's name says which property it is.
    const auto directory = FileWrapper::directory(u"E"_s);
    for (const char* type : {"xScale", "opacity"}) {
        directory->pc_replaceSubFileWrapperNamed(
            type == std::string_view("opacity") ? u"yScale.data"_s : u"xScale.data"_s,
            timelineOf(type, nothing, 1, [](size_t, KeyedEncoder& item) {
                item.encodeInt("time", 100);
                item.encodeFloat("float", 3);
            }));
    }
    const auto group = PCPropertyTimelineGroup::fromFileWrapper(directory, u"animations/A"_s);
    const auto old = group->timeline(PCPropertyTypeScaleX);
    EXPECT_EQ(old->propertyType(), PCPropertyTypeScaleX);
    EXPECT_TRUE(old->isOfOlderVersion());
    EXPECT_FALSE(old->isAsStored());
    const auto element = PCElement::init();
    old->setElement(element);
    EXPECT_EQ(old->floatValueAtTimeInMS(100), 3);
    const auto misfiled = group->timeline(PCPropertyTypeScaleY);
    EXPECT_EQ(misfiled->propertyType(), PCPropertyTypeOpacity) << "what is stored today stands";
    EXPECT_FALSE(misfiled->isOfOlderVersion());

    const QByteArray unknown = timelineOf("skew", nothing, 0, {});
    const QByteArray foreign = Archived("PCElement", nothing).bytes();
    for (const QByteArray& bytes : {unknown, foreign, QByteArray("bplist00")}) {
        EXPECT_THROW(read(bytes), InputError);
    }
}

TEST(ElementCoding, KeepsTheTreeAndRoundsTo32Bits) {
    const auto root = PCElement::makeGroup();
    const auto child =
        addElement(root, u"child"_s, {{1.0 / 3, -2e-7}, {0.1, -3}, 1.1, {5, 6}, {0.2, 0.8}, 0.7});
    const auto group = addGroup(root, u"group"_s);
    addElement(group, u"inner"_s);
    child->setHidden(true);
    child->setLocked(true);
    group->setExpanded(true);
    child->setScalesLocked(true);
    child->setScaleTimelineSplit(true);
    const auto copy = reread(*root);
    EXPECT_EQ(treeText(*copy), "child group+{inner}");
    const auto childCopy = copy->children()[0];
    EXPECT_EQ(childCopy->parentElement(), copy.get());
    EXPECT_EQ(childCopy->identifier(), child->identifier());
    EXPECT_EQ(childCopy->scale().x(), static_cast<double>(0.1F));
    EXPECT_EQ(childCopy->opacity(), static_cast<double>(0.7F));
    EXPECT_EQ(childCopy->zRotation(), static_cast<double>(1.1F));
    EXPECT_EQ(childCopy->position().x(), child->position().x());
    EXPECT_EQ(childCopy->position().y(), child->position().y());
    EXPECT_TRUE(childCopy->scaleTimelineSplit() && !childCopy->translationTimelineSplit());
    // A rotation just below a full turn is stored as its negative angle, and is not lost.
    child->setPlacement({{}, -0.001});
    EXPECT_EQ(reread(*root)->children()[0]->zRotation(), static_cast<double>(-0.001F));
    // Rounded once, it stays.
    EXPECT_EQ(exactState(*reread(*copy)), exactState(*copy));
    EXPECT_NE(exactState(*copy), exactState(*root));
}

TEST(ElementCoding, BringsStoredValuesIntoRange) {
    const Archived archived("PCElement", [](KeyedEncoder& coder) {
        coder.encodeFloat("opacity", 4);
        coder.encodeFloat("zRotation", -static_cast<float>(std::numbers::pi / 2));
        coder.encodePoint("position", {3, 4});
        coder.encodePoint("anchorPoint", {1, 1});
        coder.encodeSize("size", {10, 10});
        coder.encodeObject("parentElement", nullptr);
    });
    const auto element = PCElement::initWithArchive(KeyedUnarchiver(archived.bytes(), u"canvas"_s));
    EXPECT_EQ(element->opacity(), 1);
    EXPECT_NEAR(element->zRotation(), 1.5 * std::numbers::pi, 1e-6);
    EXPECT_EQ(element->position().x(), 3);
    EXPECT_FALSE(element->identifier().isNull());
    EXPECT_EQ(element->name(), u""_s);
    EXPECT_TRUE(element->modified());
}

TEST(ElementCoding, RefusesWhatIsNoTree) {
    // An element that holds itself, one that stands in two places, and one that is nested too deep.
    std::vector<const Archivable*> own;
    const Archived cyclic("PCElement",
                          [&own](KeyedEncoder& coder) { coder.encodeObjects("subelements", own); });
    own = {&cyclic};
    const Archived leaf("PCElement", [](KeyedEncoder&) {});
    const std::vector<const Archivable*> twice{&leaf, &leaf};
    const Archived doubled(
        "PCElement", [&twice](KeyedEncoder& coder) { coder.encodeObjects("subelements", twice); });
    const Archived foreign("PCPropertyKeyframe", [](KeyedEncoder&) {});
    PCElement::Ptr deep = PCElement::makeGroup();
    for (int i = 0; i < PCElement::kMaximumDepth; ++i) {
        const auto above = PCElement::makeGroup();
        above->insertSubelement(deep, 0);
        deep = above;
    }
    const std::vector<std::pair<QByteArray, const char*>> cases = {
        {cyclic.bytes(), "two places"},
        {doubled.bytes(), "two places"},
        {foreign.bytes(), "PCPropertyKeyframe"},
        {KeyedArchiver::archivedDataWithRootObject(*deep), "levels deep"},
    };
    for (const auto& [bytes, reason] : cases) {
        try {
            PCElement::initWithArchive(KeyedUnarchiver(bytes, u"canvas"_s));
            ADD_FAILURE() << "accepted, should speak of " << reason;
        } catch (const InputError& error) {
            EXPECT_EQ(error.entry(), u"canvas"_s);
            EXPECT_TRUE(error.reason().contains(QString::fromLatin1(reason)))
                << error.reason().toStdString();
        }
    }
    EXPECT_NO_THROW(reread(*deep->children()[0]));
}

std::string entriesOf(const FileWrapper& directory, const QString& path = {}) {
    std::string text;
    for (const auto& [name, node] : directory.fileWrappers()) {
        text += (path + name).toStdString() + '\n';
        text += entriesOf(*node, path + name + u'/');
    }
    return text;
}

// Everything of an element's timelines, with identifiers and what only jumps.
std::string keyframesOf(const PCElement& element) {
    std::string text;
    for (const PCPropertyType type : timelineGroupOrder()) {
        const auto timeline = element.timeline(type);
        text += '\n' + std::to_string(timeline->propertyType()) + ' ' + keysText(*timeline);
        text += ' ' + std::to_string(timeline->repeatBehavior());
        for (size_t i = 0; i < timeline->keyframesCount(); ++i) {
            text += ' ' + timeline->recordOfKeyframe(i).identifier.toString().toStdString();
        }
    }
    return text;
}

// What is stored of a project, timelines of every animation included.
std::string everythingOf(PCProject& project) {
    std::string text = project.debugDescription().toStdString();
    for (const auto& set : project.imageSetManager().allImageSets()) {
        text += set->name().toStdString();
        for (const QByteArray& data :
             {set->originalData(), set->original2xData(), set->original3xData()}) {
            text += ' ' + data.toBase64().toStdString();
        }
    }
    const auto animations = project.animationsManager().animations();
    for (const PCAnimation::Ptr& animation : animations) {
        project.animationsManager().setSelectedAnimation(animation);
        text += '\n' + animation->identifier().toStdString() + ' ' +
                animation->description().toStdString() +
                keysText(*animation->masterKeyframesTimeline());
        for (const PCElement::Ptr& element : project.canvas()->elementAndAllDescendants()) {
            text += keyframesOf(*element);
        }
    }
    return text;
}

// Saving everything that was opened, and opening it once more, shows the same and keeps every
// entry.
TEST(Packages, SaveAndLoadEqual) {
    RecordingLog log;
    for (const QString& name : {u"Bounce"_s, u"Card"_s, u"Minimal"_s, u"Tags"_s}) {
        SCOPED_TRACE(name.toStdString());
        const auto root = readPackage(packagePath(name));
        const std::string entries = entriesOf(*root);
        const auto project = PCProject::projectWithFileWrapper(root, log);
        const std::string canvas = exactState(*project->canvas());
        const std::string everything = everythingOf(*project);
        const auto saved = FileWrapper::directory();
        project->fileWrapper()->pc_copySubFileWrappersToFileWrapper(*saved);
        for (const auto& line : QString::fromStdString(entries).split(u'\n')) {
            EXPECT_TRUE(QString::fromStdString(entriesOf(*saved)).contains(line + u'\n'))
                << "lost: " << line.toStdString();
        }
        const auto again = PCProject::projectWithFileWrapper(saved, log);
        EXPECT_EQ(exactState(*again->canvas()), canvas);
        EXPECT_EQ(everythingOf(*again), everything);
    }
    EXPECT_TRUE(log.lines.empty());
}

}  // namespace
}  // namespace tweenery::test
