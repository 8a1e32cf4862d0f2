#pragma once

#include <QString>
#include <vector>

#include "editor/canvas/element_selection_manager.h"
#include "model/edit_time.h"
#include "model/project.h"

namespace tweenery {

/// The image sets of a project in the order of their names, in two lists.
struct ImageChoices {
    using ImageSets = std::vector<PCImageSetManager::ImageSet>;

    ImageSets used;    // by an element, or by an image keyframe of any animation
    ImageSets unused;  // by neither
    /// Why not all animations could be looked at, in words for people; empty when they could. Then
    /// nothing counts as unused.
    QString failure;
};
ImageChoices imageChoices(PCProject& project);

/// Takes these sets out of the project, as one step of undo. Their files leave the disk with the
/// next save.
void removeImageSets(PCProject& project, const ImageChoices::ImageSets& sets);

/// The name of the image that one selected element shows; null for none, several, or a group.
QString shownImageName(const PCElementSelectionManager& selection, EditTime when);

/// "1x", "2x" or "3x": the highest density that there is artwork for.
QString densityName(const PCImageSet& set);

}  // namespace tweenery
