#include "editor/canvas/pasteboard_commands.h"

#include <unordered_set>

#include "base/errors.h"
#include "model/project.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

struct Target {
    PCElement::Ptr parent;
    size_t index = 0;
};

Target targetOfPaste(const PCProject& project, const PCElementSelectionManager& selection) {
    const PCElement::Ptr first = selection.firstSelectedElement();
    PCElement* parent = first ? first->parentElement() : nullptr;
    if (!parent) { return {project.canvas(), 0}; }
    return {parent->shared_from_this(), static_cast<size_t>(first->index()) + 1};
}

std::vector<std::shared_ptr<PCImage>> imagesOn(const PasteboardPort& pasteboard) {
    std::vector<std::shared_ptr<PCImage>> images;
    for (const QVariant& list : pasteboard.read(PCImage::pasteboardType)) {
        images.push_back(
            PCImage::imageWithPasteboardPropertyList(list.toMap(), PCImage::pasteboardType));
    }
    return images;
}

PCElement::Elements elementsOn(const PasteboardPort& pasteboard, PCProject& project) {
    PCElement::Elements elements;
    for (const QVariant& list : pasteboard.read(PCElement::pasteboardType())) {
        elements.push_back(PCElement::elementWithPasteablePlist(list.toList().value(0).toMap(),
                                                                project.shared_from_this()));
    }
    return elements;
}

// What could not be saved, or not be read again.
void refuseUnlessTheyFit(const PCElement::Elements& elements, PCProject& project,
                         const PCElement& parent) {
    const auto refuse = [](const QString& reason) { throw InputError(u"pasteboard"_s, reason); };
    std::unordered_set<Identifier> identifiers;
    for (const PCElement::Ptr& root : elements) {
        if (parent.depth() + root->maxHierarchyDepth() > PCElement::kMaximumDepth) {
            refuse(u"would nest elements more than %1 levels deep"_s.arg(PCElement::kMaximumDepth));
        }
        for (const PCElement::Ptr& element : root->elementAndAllDescendants()) {
            const Identifier& identifier = element->identifier();
            if (!isSafeFilename(identifier.toString())) {
                refuse(u"holds an element whose identifier cannot name a directory"_s);
            }
            if (!identifiers.insert(identifier).second ||
                project.elementForIdentifier(identifier)) {
                refuse(u"holds an element whose identifier another one has"_s);
            }
        }
    }
}

}  // namespace

void copySelectedElements(PCProject& project, const PCElementSelectionManager& selection,
                          PasteboardPort& pasteboard) {
    const PCElement::Elements elements = selection.selectedElements();
    std::vector<PasteboardItem> items;
    for (const auto& image : project.imagesForCopyingElements(elements)) {
        const QString& type = PCImage::pasteboardType;
        items.push_back({type, image->pasteboardPropertyListForType(type)});
    }
    for (const PCElement::Ptr& element : elements) {
        items.push_back({PCElement::pasteboardType(), element->pasteboardPropertyList()});
    }
    pasteboard.write(items);
}

PCElement::Elements pasteElements(PCProject& project, const PCElementSelectionManager& selection,
                                  const PasteboardPort& pasteboard) {
    const Target target = targetOfPaste(project, selection);
    const auto images = imagesOn(pasteboard);
    const PCElement::Elements elements = elementsOn(pasteboard, project);
    refuseUnlessTheyFit(elements, project, *target.parent);

    project.imageSetManager().addOrReplaceImageSetsWithPCImages(images);
    if (!elements.empty()) {
        const UndoGroup group(project.undoManager());
        project.insertPastedElements(elements, target.parent, target.index);
        project.undoManager().setActionName(u"Paste"_s);
    }
    project.updateContentScales();  // also where elements show a set that was replaced
    return elements;
}

}  // namespace tweenery
