// What copy and paste ask of the project.

#include <map>

#include "model/project.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

std::shared_ptr<PCImage> highestArtwork(PCImageSet& set) {
    const auto image = [](const QByteArray& data, const QString& name) {
        return data.isEmpty() ? nullptr : PCImage::pcimageWithData(data, name);
    };
    if (auto artwork = image(set.original3xData(), set.artwork3XName())) return artwork;
    if (auto artwork = image(set.original2xData(), set.artwork2XName())) return artwork;
    return image(set.originalData(), set.artworkName());
}

}  // namespace

std::vector<std::shared_ptr<PCImage>> PCProject::imagesForCopyingElements(
    const Elements& elements) {
    std::map<QString, std::shared_ptr<PCImageSet>> sets;
    for (const PCElement::Ptr& root : elements) {
        for (const PCElement::Ptr& element : root->elementAndAllDescendants()) {
            if (auto set = m_imageSetManager->imageSetWithName(element->imageName()))
                sets[set->name()] = set;
        }
    }
    std::vector<std::shared_ptr<PCImage>> images;
    for (const auto& [name, set] : sets) {
        if (auto image = highestArtwork(*set)) images.push_back(std::move(image));
    }
    return images;
}

void PCProject::insertPastedElements(const Elements& elements) {
    const UndoGroup undoGroup(m_undoManager);
    for (const PCElement::Ptr& element : elements) {
        m_canvas->insertSubelement(element, m_canvas->children().size());
        attachPastedTimelines(*element);
    }
}

// Timelines from a copy go to the selected animation, descendants included; where the copy had none
// the element gets empty ones. In setup mode they are dropped.
void PCProject::attachPastedTimelines(PCElement& root) {
    const PCAnimation::Ptr animation = m_animationsManager->selectedAnimation();
    for (const PCElement::Ptr& element : root.elementAndAllDescendants()) {
        if (!animation) {
            element->clearTimelines();
            continue;
        }
        for (const PCPropertyType type : timelineGroupOrder()) {
            const auto pasted = element->timeline(type);
            animation->applyTimeline(
                pasted ? pasted : PCKeyedPropertyTimeline::initForElement(element, type), *element);
        }
    }
}

}  // namespace tweenery
