// What copy and paste ask of the project.

#include <QSet>
#include <map>

#include "model/element_placement.h"
#include "model/project.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

std::shared_ptr<PCImage> highestArtwork(PCImageSet& set) {
    const auto image = [](const QByteArray& data, const QString& name) {
        return data.isEmpty() ? nullptr : PCImage::pcimageWithData(data, name);
    };
    if (auto artwork = image(set.original3xData(), set.artwork3XName())) { return artwork; }
    if (auto artwork = image(set.original2xData(), set.artwork2XName())) { return artwork; }
    return image(set.originalData(), set.artworkName());
}

// Its own image, and those of its keyframes in the selected animation, which go with a copy.
QSet<QString> imagesShownBy(const PCElement& element) {
    QSet<QString> names{element.imageName()};
    const EditContext* project = element.project();
    const auto timeline =
        project && !project->isSetupMode() ? element.imageContentsTimeline() : nullptr;
    for (size_t i = 0; timeline && i < timeline->keyframesCount(); ++i) {
        names += stringOfValue(timeline->storedValueOfKeyframe(i));
    }
    return names;
}

}  // namespace

std::vector<std::shared_ptr<PCImage>> PCProject::imagesForCopyingElements(
    const Elements& elements) {
    std::map<QString, std::shared_ptr<PCImageSet>> sets;
    for (const PCElement::Ptr& root : elements) {
        for (const PCElement::Ptr& element : root->elementAndAllDescendants()) {
            for (const QString& name : imagesShownBy(*element)) {
                if (auto set = m_imageSetManager->imageSetWithName(name)) {
                    sets[set->name()] = set;
                }
            }
        }
    }
    std::vector<std::shared_ptr<PCImage>> images;
    for (const auto& [name, set] : sets) {
        if (auto image = highestArtwork(*set)) { images.push_back(std::move(image)); }
    }
    return images;
}

void PCProject::insertPastedElements(const Elements& elements, const PCElement::Ptr& parent,
                                     size_t index) {
    for (const PCElement::Ptr& element : elements) {
        PCElement::requireRoomFor(*element, parent->depth());
    }
    const UndoGroup undoGroup(m_undoManager);
    const PCAnimation::Ptr animation = m_animationsManager->selectedAnimation();
    // From the last to the first at one index keeps their order.
    for (auto element = elements.rbegin(); element != elements.rend(); ++element) {
        {
            const UndoRegistrationPause pause(m_undoManager);
            (*element)->setPlacement(placementUnder(**element, *parent));
        }
        parent->insertSubelement(*element, index);
        for (const PCElement::Ptr& pasted : (*element)->elementAndAllDescendants()) {
            if (animation) {
                attachPastedTimelines(*pasted, *animation);
            } else {
                pasted->clearTimelines();
            }
        }
    }
    if (animation) { updateChildrenZPositionsForElement(*parent); }
}

// A timeline that the copy had none of is left to the animation, which gives an empty one.
void PCProject::attachPastedTimelines(PCElement& element, PCAnimation& animation) {
    for (const PCPropertyType type : timelineGroupOrder()) {
        if (const auto pasted = element.timeline(type)) {
            animation.applyTimeline(pasted, element);
        }
    }
    animation.applyToElement(element);
    // The copy names the children by the identifiers that they had.
    updateChildrenZPositionsForElement(element);
}

}  // namespace tweenery
