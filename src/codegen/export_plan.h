#pragma once

#include <QString>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "codegen/animation_export_bundle.h"
#include "codegen/language/identifiers.h"
#include "model/project.h"

namespace tweenery {

/// What a run writes for.
struct ExportTarget {
    TargetLanguage language = TargetLanguage::CurrentSwift;
    bool generateForMac = false;      // the desktop platform, not the mobile one
    bool clipsCanvas = false;         // the scene is clipped to its bounds
    bool addAnimationSuffix = false;  // methods take a suffix for animation keys
};

/// What an element becomes in the generated class.
enum class PCCodeGeneratorType { Layer = 0, View = 1, RecordableView = 2, Button = 3 };

/// One element of the scene, with the names that generated code has for it.
struct PlannedElement {
    PCElement::Ptr element;
    size_t parent = 0;     // index of the parent; the canvas is its own
    QString name;          // without its tag
    std::string userName;  // the same in UTF-8
    std::string variable;
    PCCodeGeneratorType type = PCCodeGeneratorType::Layer;

    bool isLayer() const { return type == PCCodeGeneratorType::Layer; }
};

/// Stored timelines that a run leaves out: those of an element that was deleted.
struct LeftOutTimelines {
    PCAnimation::Ptr animation;
    QString elementIdentifier;
};

/// A timeline that an older version stored of a combined property: exported as the property that
/// its file's name says.
struct OlderTimeline {
    PCAnimation::Ptr animation;
    PCElement::Ptr element;
    PCPropertyType propertyType = PCPropertyTypeImageContents;
};

/// Everything that a run decides before it writes: names, what each element becomes, what each
/// animation becomes. Made from what is stored; nothing of the project is changed.
struct ExportPlan {
    ExportTarget target;
    bool isLFTPuppetView = false;
    bool hasAtLeastOneLayer = false;
    bool hasAtLeastOneView = true;
    QString generatedClassName;

    std::vector<PlannedElement> elements;  // in tree order, back to front; the canvas is the first
    std::unordered_map<const PCElement*, size_t> indexOfElement;
    TakenNames elementVariables;

    // In the order of the project's animations.
    std::unordered_map<QString, QString> baseMethodNameByAnimationName;
    std::vector<PCAnimationExportBundle> standardAnimationExportBundles;
    std::vector<PCAnimationExportBundle> frameSlicedAnimationExportBundles;
    std::vector<PCAnimationExportBundle> pngGeneratorAnimationExportBundles;
    std::vector<std::string> animationBaseMethodNamesUsingCompletionBlock;  // each once

    std::vector<LeftOutTimelines> leftOutTimelines;
    std::vector<OlderTimeline> olderTimelines;

    const PlannedElement& planned(const PCElement& element) const {
        return elements[indexOfElement.at(&element)];
    }
    QSizeF canvasSize() const { return elements.front().element->size(); }
    bool usesCompletionBlocksTable() const {
        return !animationBaseMethodNamesUsingCompletionBlock.empty();
    }
};

/// Plans a run. `isLFTPuppetView` forces what the project's name otherwise says. Throws InputError
/// when a stored timeline cannot be read.
ExportPlan planExport(PCProject& project, const ExportTarget& target, bool isLFTPuppetView = false);

/// The stem of a standard animation's methods: its base name, ending in "Animation".
std::string methodStem(const std::string& baseMethodName);

}  // namespace tweenery
