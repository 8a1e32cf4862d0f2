#pragma once

#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <QString>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "codegen/language/source_text.h"

namespace tweenery {

/// The generated text (UTF-8) of a file, in pieces that follow each other: long ones are handed on,
/// not copied together.
using SourcePieces = std::vector<std::string>;
/// By file name.
using FileContents = std::map<QString, SourcePieces>;

/// Where a comma-separated list may be cut into parts: the offset behind the comma of every entry
/// that ends a part of kEntriesOfPart.
using ListCuts = std::vector<size_t>;
inline constexpr size_t kEntriesOfPart = 100;

/// What one generated keyframe animation holds. The texts are source text, but for the key and the
/// element's name, which the provider escapes.
struct KeyframeAnimationCode {
    std::string_view variableName;
    std::string_view keypath;
    std::string_view duration;          // an expression, in seconds
    std::string_view values;            // comma-separated
    std::string_view times;             // comma-separated, 0 to 1
    std::string_view timingFunctions;   // comma-separated, one fewer than values
    std::span<const size_t> valueCuts;  // of the three lists, as in ListCuts
    std::span<const size_t> timeCuts;
    std::span<const size_t> timingFunctionCuts;
    std::optional<bool> autoreverses;  // no statement when empty
    bool repeatForever = false;
    std::string_view animationKey;
    std::optional<std::string_view> animationKeySuffix;  // a variable's name
    std::string_view elementUserName;
};

/// A target language: each operation appends one fixed piece of text to the files under
/// construction, or (those beginning with codeFor) to the text that it is given. All text is UTF-8.
/// Names that a designer typed (of elements, animations, images) are passed as they stand; the
/// provider escapes them. Sizes and points are in scene points, rotations in radians. No operation
/// fails. The codeFor operations may be called from several threads at once.
class PCLanguageCodeProvider {
 public:
    using Text = std::string_view;

    virtual ~PCLanguageCodeProvider() = default;

    virtual TargetLanguage language() const = 0;

    /// Whether the target is the desktop platform, not the mobile one. False at first.
    virtual void setGenerateForMac(bool generateForMac) = 0;
    virtual void setGeneratedClassName(Text name) = 0;

    /// The comment block at the head of each file.
    virtual void addTopComments() = 0;
    virtual void beginImports() = 0;
    virtual void addFrameworkDependency(Text frameworkName) = 0;
    virtual void addClassDependency(Text className) = 0;
    virtual void endImports() = 0;
    /// Desktop: a coordinate system with y down.
    virtual void addFlippedViewMethod() = 0;
    virtual void beginClassDefinitionWithSuperName(Text superName,
                                                   bool useCompletionBlocksTable) = 0;
    virtual void addViewsByNameProperty() = 0;
    virtual void addLayersByNameProperty() = 0;
    virtual void addInitializersForViewWithCanvasSize(QSizeF size) = 0;
    /// A section mark with this title.
    virtual void addCodeMarkWithName(Text name) = 0;
    /// The method that scales the scene to the view.
    virtual void addLayoutSubelements() = 0;

    virtual void setWantsLayer(bool wantsLayer, Text variableName) = 0;
    virtual void beginSetupAndUseCompletionBlocksTable(bool useCompletionBlocksTable) = 0;
    virtual void addLocalSetupVariablesIncludesLayer(bool includesLayers, bool andViews) = 0;
    /// Creates "__scaling__", which scales the scene. `canvasIsLayer` is not used.
    virtual void addScalingContainerWithSize(QSizeF size, bool canvasIsLayer,
                                             bool clippedToBounds) = 0;
    virtual void addNewline() = 0;
    virtual void addLayerWithVariableName(Text variableName, Text elementName) = 0;
    /// Creates an object of the class `type`.
    virtual void addVariableWithName(Text variableName, Text type) = 0;
    virtual void addCustomButtonVariableWithName(Text variableName) = 0;
    virtual void setFrameWithRect(QRectF rect, Text variableName) = 0;
    virtual void setBoundsWithSize(QSizeF size, Text variableName) = 0;
    virtual void setAnchor(QPointF anchor, Text variableName, bool isLayer) = 0;
    /// Loads an image into a local variable.
    virtual void addImageVariableWithName(Text variableName, Text imageFileName) = 0;
    virtual void setLayerContents(Text layerVariableName, Text imageVariableName) = 0;
    virtual void setImageFromVariableNameOnImageView(Text imageVariableName,
                                                     Text viewVariableName) = 0;
    virtual void setImageFromVariableNameOnButton(Text imageVariableName,
                                                  Text buttonVariableName) = 0;
    virtual void setCenterContentModeOnVariableNamed(Text variableName) = 0;
    virtual void setPosition(QPointF position, Text variableName, bool isLayer,
                             bool hasCustomAnchor) = 0;
    virtual void setOpacity(float opacity, Text variableName, bool isLayer) = 0;
    virtual void setTransformWithXScaleAndZRotation(float xScale, float yScale, float zRotation,
                                                    Text variableName, bool isLayer) = 0;
    virtual void setTransformWithXScale(float xScale, float yScale, Text variableName,
                                        bool isLayer) = 0;
    virtual void setTransformWithZRotation(float zRotation, Text variableName, bool isLayer) = 0;
    virtual void addElementWithName(Text variableName, bool isLayer, Text parentVariableName,
                                    bool parentIsLayer) = 0;
    /// Files the object under the element's name.
    virtual void addElementToByNameDictionaryWithVariableName(Text variableName, Text userName,
                                                              bool isLayer) = 0;
    virtual void endSetupIncludesLayers(bool includesLayers, bool includesViews) = 0;

    /// What readers of the next animation should know: how long it plays, or its longest part when
    /// it repeats without end.
    virtual void describeStandardAnimation(float seconds, bool repeats) = 0;
    /// Declares an animation's methods and opens its main method. `baseName` is the methods' stem,
    /// `userName` the animation's name.
    virtual void beginStandardAnimationWithBaseName(Text baseName, Text userName,
                                                    bool addCompletionBlock,
                                                    bool usesAnimationSuffix) = 0;
    virtual void addTimingFunctionDefinitionWithBuiltInFunctionName(Text variableName,
                                                                    Text functionName) = 0;
    virtual void addTimingFunctionDefinitionWithControlPoints(Text variableName,
                                                              QPointF controlPoint1,
                                                              QPointF controlPoint2) = 0;
    /// Fills and closes the main method, and writes the remove method.
    virtual void addStandardAnimationWithBaseName(Text baseName, std::string addCode,
                                                  Text removeCode, bool addCompletionBlock) = 0;
    /// A local floating-point constant.
    virtual void codeForFloatWithName(std::string& out, Text name, float value) const = 0;
    virtual void codeForAnimationWithVariableName(std::string& out,
                                                  const KeyframeAnimationCode& animation) const = 0;
    virtual void codeForRemovingAnimationWithKey(std::string& out, Text key, Text elementName,
                                                 bool isLayer) const = 0;
    /// The animation that reports completion; `duration` is in seconds.
    virtual void codeForAddingRepresentativeAnimationWithBaseName(std::string& out, Text baseName,
                                                                  float duration) const = 0;
    virtual void codeForRemovingRepresentativeAnimationWithBaseName(std::string& out,
                                                                    Text baseName) const = 0;
    /// One statement.
    virtual void codeForPropertySetterString(std::string& out, Text text) const = 0;
    /// A number as an array element.
    virtual void codeForBoxedNumber(std::string& out, float value) const = 0;
    /// An image as an array element; the name may be empty.
    virtual void codeForImageRefWithName(std::string& out, Text imageFileName) const = 0;
    /// An image as an expression, which has no value where there is none.
    virtual void codeForNamedImage(std::string& out, Text imageFileName) const = 0;
    virtual void codeForPropertySetterWithArrayString(std::string& out, Text name,
                                                      Text arrayText) const = 0;
    virtual void endClassDefinition() = 0;
    virtual void addAnimationDidStopMethod() = 0;
    virtual void addRemoveAllAnimationsMethodWithBaseMethodNames(
        const std::vector<std::string>& baseMethodNames) = 0;

    /// Hands over the finished files; the provider is empty afterwards.
    virtual FileContents fileContentsByName() = 0;
    virtual std::string topCommentsForFileName(Text fileName) const = 0;

    /// Where the declarations and the code of frame-sliced animations go; null when the language
    /// has none. Owned by the provider.
    virtual std::string* headerStringForFrameSlicedAnimations() = 0;
    virtual std::string* implementationStringForFrameSlicedAnimations() = 0;
};

}  // namespace tweenery
