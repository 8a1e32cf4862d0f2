// Exports projects in both languages for both platforms: hostile names, any tree, any timelines.
// The same project gives the same text twice, and is not changed by it.

#include <cstdint>
#include <cstdlib>

#include "base/errors.h"
#include "codegen/export_error.h"
#include "codegen/language/objc_code_provider.h"
#include "codegen/language/swift_code_provider.h"
#include "codegen/project_code_generator.h"
#include "model/project.h"
#include "structured_package.h"

using namespace tweenery;
using namespace Qt::StringLiterals;

namespace {

const GenerationStamp kStamp{"1", "1/1/26"};

void require(bool holds) {
    if (!holds) { std::abort(); }
}

void addElements(fuzz::FuzzInput& input, PCElement& parent, int depth) {
    for (uint32_t left = input.below(4); left > 0; --left) {
        const bool isGroup = depth < 5 && input.chance(40);
        const PCElement::Ptr child = isGroup ? PCElement::makeGroup() : PCElement::init();
        child->setName(fuzz::structuredName(input, 30));
        child->setOpacity(input.below(101) / 100.0);
        child->setScale({input.below(5) / 2.0, 1});
        child->setZRotation(input.below(7));
        if (input.chance(30)) { child->setAnchorPoint({0.1, 0.9}); }
        if (!isGroup && input.chance(50)) { child->setImageName(fuzz::structuredName(input, 20)); }
        parent.insertSubelement(child, parent.children().size());
        if (isGroup) { addElements(input, *child, depth + 1); }
    }
}

PropertyValue keyframeValue(fuzz::FuzzInput& input, const PCElement& element, PCPropertyType type) {
    if (type == PCPropertyTypeImageContents) { return fuzz::structuredName(input, 12); }
    if (type != PCPropertyTypeChildrenZPositions) {
        return static_cast<float>(input.below(4000)) / 7 - 200;
    }
    QStringList order = PCProject::sortedSubelementIdentifiers(element);
    if (!order.isEmpty() && input.chance(30)) { order.removeFirst(); }
    if (input.chance(30)) { order += fuzz::structuredName(input, 8); }
    return order;
}

void addKeyframes(fuzz::FuzzInput& input, const PCElement& element,
                  PCKeyedPropertyTimeline& timeline) {
    int32_t time = static_cast<int32_t>(input.below(2)) * 100;
    for (uint32_t left = input.below(5); left > 0; --left) {
        const auto keyframe = timeline.setStoredPropertyValue(
            keyframeValue(input, element, timeline.propertyType()), time);
        keyframe->setEasingMode(PCEasingMode{input.below(8)});
        keyframe->setInstantTransition(input.chance(20));
        time += static_cast<int32_t>(1 + input.below(3000));
    }
    timeline.setRepeatBehavior(PCRepeatBehavior{input.below(4)});
}

PCProject::Ptr structuredProject(fuzz::FuzzInput& input) {
    const PCProject::Ptr project = PCProject::init();
    const UndoRegistrationPause pause(project->undoManager());
    project->setProjectName(fuzz::structuredName(input, 20));
    addElements(input, *project->canvas(), 0);
    PCAnimationsManager& manager = project->animationsManager();
    for (uint32_t left = input.below(4); left > 0; --left) {
        const PCAnimation::Ptr animation = manager.addNewEmptyAnimation();
        manager.renameAnimation(animation, fuzz::structuredName(input, 30));
        manager.setSelectedAnimation(animation);
        for (const PCElement::Ptr& element : project->canvas()->elementAndAllDescendants()) {
            if (input.chance(60)) { continue; }
            const PCPropertyType type = elementTimelineTypes()[input.below(kElementTimelineCount)];
            addKeyframes(input, *element, *element->timeline(type));
        }
    }
    return project;
}

FileContents generate(const PCProject::Ptr& project, bool usesSwift, bool isMac) {
    PCProjectCodeGenerator generator;
    generator.setProject(project);
    generator.setGenerateForMac(isMac);
    generator.setClipsCanvas(true);
    if (usesSwift) {
        generator.setLanguageProvider(std::make_unique<PCSwiftCodeProvider>(kStamp));
    } else {
        generator.setLanguageProvider(std::make_unique<PCObjCCodeProvider>(kStamp));
    }
    try {
        generator.loadFileContentsByName();
    } catch (const ExportError&) { require(generator.fileContentsByName().empty()); }
    generator.diagnostics();
    return generator.fileContentsByName();
}

void exercise(const PCProject::Ptr& project) {
    project->fileWrapper();
    const QString before = project->canvas()->debugDescription();
    for (const bool usesSwift : {false, true}) {
        for (const bool isMac : {false, true}) {
            require(generate(project, usesSwift, isMac) == generate(project, usesSwift, isMac));
        }
    }
    require(project->canvas()->debugDescription() == before);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzz::FuzzInput input({data, size});
    try {
        // Half of the projects come through the decoders, half through the model's own edits.
        if (input.chance(50)) {
            exercise(PCProject::projectForReadingWithFileWrapper(fuzz::structuredPackage(input)));
        } else {
            exercise(structuredProject(input));
        }
    } catch (const InputError&) {
        // What a package with faults deserves.
    }
    return 0;
}
