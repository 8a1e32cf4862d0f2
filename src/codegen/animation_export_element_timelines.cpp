#include "codegen/animation_export_element_timelines.h"

#include <algorithm>
#include <functional>

#include "model/property_timeline_group.h"

using namespace Qt::StringLiterals;

namespace tweenery {

namespace {

using Record = PCAnimationExportElementTimelines;

Record::PresentTimelines present(
    std::initializer_list<std::reference_wrapper<const Record::Timeline>> timelines) {
    Record::PresentTimelines found;
    for (const Record::Timeline& timeline : timelines) {
        if (timeline) { found.push_back(timeline.get()); }
    }
    return found;
}

}  // namespace

void PCAnimationExportElementTimelines::setElement(const PCElement::Ptr& newElement) {
    element = newElement;
    for (auto* timeline : allNonNilTimelines()) {
        timeline->setElement(element);
    }
}

int32_t PCAnimationExportElementTimelines::maxDurationInMS() const {
    int32_t longest = -1;
    for (const auto* timeline : allNonNilTimelines()) {
        longest = std::max(longest, timeline->durationInMS());
    }
    return longest;
}

bool PCAnimationExportElementTimelines::hasLooping() const {
    const auto timelines = allNonNilTimelines();
    return std::any_of(timelines.begin(), timelines.end(), [](const auto* timeline) {
        return timeline->repeatBehavior() != PCRepeatBehaviorNever;
    });
}

Record::PresentTimelines PCAnimationExportElementTimelines::allNonNilTimelines() const {
    return present({zRotation, opacity, zPosition, contents, xScale, yScale, xPosition, yPosition});
}

Record::PresentTimelines PCAnimationExportElementTimelines::slicingOrder() const {
    return present({zRotation, opacity, xScale, yScale, xPosition, yPosition, contents, zPosition});
}

QString PCAnimationExportElementTimelines::description() const {
    QString text = u"<PCElementTimelines (maxDuration:%1)"_s.arg(maxDurationInMS());
    for (const auto* timeline : allNonNilTimelines()) {
        text += u"\n\t"_s + timeline->debugDescription();
    }
    return text;
}

const ElementTimelineFile* elementTimelineFileNamed(const QString& fileName) {
    static const std::array<ElementTimelineFile, kElementTimelineCount> files{{
        {filenameOfTimelineType(PCPropertyTypeZRotation), PCPropertyTypeZRotation,
         &Record::zRotation},
        {filenameOfTimelineType(PCPropertyTypeOpacity), PCPropertyTypeOpacity, &Record::opacity},
        {filenameOfTimelineType(PCPropertyTypeScaleX), PCPropertyTypeScaleX, &Record::xScale},
        {filenameOfTimelineType(PCPropertyTypeScaleY), PCPropertyTypeScaleY, &Record::yScale},
        {filenameOfTimelineType(PCPropertyTypeTranslationX), PCPropertyTypeTranslationX,
         &Record::xPosition},
        {filenameOfTimelineType(PCPropertyTypeTranslationY), PCPropertyTypeTranslationY,
         &Record::yPosition},
        {filenameOfTimelineType(PCPropertyTypeImageContents), PCPropertyTypeImageContents,
         &Record::contents},
        {filenameOfTimelineType(PCPropertyTypeChildrenZPositions), PCPropertyTypeChildrenZPositions,
         &Record::zPosition},
    }};
    const auto file = std::find_if(files.begin(), files.end(), [&](const auto& candidate) {
        return candidate.fileName == fileName;
    });
    return file == files.end() ? nullptr : &*file;
}

}  // namespace tweenery
