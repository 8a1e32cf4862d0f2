#include "editor/inspector/image_choices.h"

#include <set>

#include "base/errors.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

using Names = std::set<QString>;

void collectKeyed(const PCKeyedPropertyTimeline* timeline, Names& names) {
    if (!timeline) { return; }
    for (size_t i = 0; i < timeline->keyframesCount(); ++i) {
        names.insert(stringOfValue(timeline->storedValueOfKeyframe(i)));
    }
}

// Throws InputError for an animation that cannot be read.
Names usedNames(PCProject& project) {
    Names names;
    for (const PCElement::Ptr& element : project.canvas()->elementAndAllDescendants()) {
        names.insert(element->imageName());
        // Of an element that is younger than the selection of its animation.
        collectKeyed(element->imageContentsTimeline().get(), names);
    }
    for (const PCAnimation::Ptr& animation : project.animationsManager().animations()) {
        for (const auto& [identifier, group] : animation->timelineGroups()) {
            collectKeyed(group->storedTimeline(PCPropertyTypeImageContents).get(), names);
        }
    }
    return names;
}

void takeOut(PCProject& project, const ImageChoices::ImageSets& sets);

void putBack(PCProject& project, const ImageChoices::ImageSets& sets) {
    project.undoManager().registerUndo([&project, sets] { takeOut(project, sets); });
    for (const auto& set : sets) {
        project.imageSetManager().putImageSet(set);
    }
    project.updateContentScales();
}

void takeOut(PCProject& project, const ImageChoices::ImageSets& sets) {
    project.undoManager().registerUndo([&project, sets] { putBack(project, sets); });
    for (const auto& set : sets) {
        project.imageSetManager().deleteImageSetWithName(set->name());
    }
}

}  // namespace

ImageChoices imageChoices(PCProject& project) {
    ImageChoices choices;
    Names used;
    try {
        used = usedNames(project);
    } catch (const InputError& error) {
        choices.used = project.imageSetManager().allImageSets();
        choices.failure = u"“%1” %2."_s.arg(error.entry(), error.reason());
        return choices;
    }
    for (const auto& set : project.imageSetManager().allImageSets()) {
        (used.contains(set->name()) ? choices.used : choices.unused).push_back(set);
    }
    return choices;
}

void removeImageSets(PCProject& project, const ImageChoices::ImageSets& sets) {
    if (sets.empty()) { return; }
    UndoManager& undoManager = project.undoManager();
    undoManager.endEvent();
    const UndoGesture gesture(undoManager);
    takeOut(project, sets);
    undoManager.setActionName(u"Remove Unused Images"_s);
}

QString shownImageName(const PCElementSelectionManager& selection, EditTime when) {
    if (selection.selectedElementsCount() != 1) { return {}; }
    const PCElement& element = *selection.firstSelectedElement();
    if (element.isGroup()) { return {}; }
    return when.isSetup() ? element.imageName() : element.imageContentsAtTimeInMS(when.timeInMS());
}

QString densityName(const PCImageSet& set) {
    if (set.has3XArtwork()) { return u"3x"_s; }
    return set.has2XArtwork() ? u"2x"_s : u"1x"_s;
}

}  // namespace tweenery
