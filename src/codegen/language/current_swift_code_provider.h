#pragma once

#include <atomic>

#include "codegen/language/cocoa_language_provider.h"

namespace tweenery {

/// Writes a class in Swift 5 and 6, for iOS 15 and macOS 12, in one file. Class dependencies leave
/// no text. Words that Swift reserves are escaped where they name a variable; long lists are cut
/// into parts, which compilers take in a time in proportion to their length.
class CurrentSwiftCodeProvider final : public PCCocoaLanguageProvider {
 public:
    explicit CurrentSwiftCodeProvider(GenerationStamp stamp)
        : PCCocoaLanguageProvider(TargetLanguage::CurrentSwift, std::move(stamp)) {}

    void addTopComments() override;
    void beginImports() override;
    void addFrameworkDependency(Text frameworkName) override;
    void addFlippedViewMethod() override;
    void beginClassDefinitionWithSuperName(Text superName, bool useCompletionBlocksTable) override;
    void addViewsByNameProperty() override;
    void addLayersByNameProperty() override;
    void addInitializersForViewWithCanvasSize(QSizeF size) override;
    void addCodeMarkWithName(Text name) override;
    void addLayoutSubelements() override;
    void setWantsLayer(bool wantsLayer, Text variableName) override;
    void beginSetupAndUseCompletionBlocksTable(bool useCompletionBlocksTable) override;
    void addLocalSetupVariablesIncludesLayer(bool includesLayers, bool andViews) override;
    void addScalingContainerWithSize(QSizeF size, bool canvasIsLayer,
                                     bool clippedToBounds) override;
    void addLayerWithVariableName(Text variableName, Text elementName) override;
    void addVariableWithName(Text variableName, Text type) override;
    void addCustomButtonVariableWithName(Text variableName) override;
    void setFrameWithRect(QRectF rect, Text variableName) override;
    void setBoundsWithSize(QSizeF size, Text variableName) override;
    void setAnchor(QPointF anchor, Text variableName, bool isLayer) override;
    void addImageVariableWithName(Text variableName, Text imageFileName) override;
    void setLayerContents(Text layerVariableName, Text imageVariableName) override;
    void setImageFromVariableNameOnImageView(Text imageVariableName,
                                             Text viewVariableName) override;
    void setImageFromVariableNameOnButton(Text imageVariableName, Text buttonVariableName) override;
    void setCenterContentModeOnVariableNamed(Text variableName) override;
    void setPosition(QPointF position, Text variableName, bool isLayer,
                     bool hasCustomAnchor) override;
    void setOpacity(float opacity, Text variableName, bool isLayer) override;
    void setTransformWithXScaleAndZRotation(float xScale, float yScale, float zRotation,
                                            Text variableName, bool isLayer) override;
    void setTransformWithXScale(float xScale, float yScale, Text variableName,
                                bool isLayer) override;
    void setTransformWithZRotation(float zRotation, Text variableName, bool isLayer) override;
    void addElementWithName(Text variableName, bool isLayer, Text parentVariableName,
                            bool parentIsLayer) override;
    void addElementToByNameDictionaryWithVariableName(Text variableName, Text userName,
                                                      bool isLayer) override;
    void endSetupIncludesLayers(bool includesLayers, bool includesViews) override;
    void describeStandardAnimation(float seconds, bool repeats) override;
    void beginStandardAnimationWithBaseName(Text baseName, Text userName, bool addCompletionBlock,
                                            bool usesAnimationSuffix) override;
    void addTimingFunctionDefinitionWithBuiltInFunctionName(Text variableName,
                                                            Text functionName) override;
    void addTimingFunctionDefinitionWithControlPoints(Text variableName, QPointF controlPoint1,
                                                      QPointF controlPoint2) override;
    void addStandardAnimationWithBaseName(Text baseName, std::string addCode, Text removeCode,
                                          bool addCompletionBlock) override;
    void codeForFloatWithName(std::string& out, Text name, float value) const override;
    void codeForAnimationWithVariableName(std::string& out,
                                          const KeyframeAnimationCode& animation) const override;
    void codeForRemovingAnimationWithKey(std::string& out, Text key, Text elementName,
                                         bool isLayer) const override;
    void codeForAddingRepresentativeAnimationWithBaseName(std::string& out, Text baseName,
                                                          float duration) const override;
    void codeForRemovingRepresentativeAnimationWithBaseName(std::string& out,
                                                            Text baseName) const override;
    void codeForPropertySetterString(std::string& out, Text text) const override;
    void codeForBoxedNumber(std::string& out, float value) const override;
    void codeForImageRefWithName(std::string& out, Text imageFileName) const override;
    void codeForNamedImage(std::string& out, Text imageFileName) const override;
    void codeForPropertySetterWithArrayString(std::string& out, Text name,
                                              Text arrayText) const override;
    void endClassDefinition() override;
    void addAnimationDidStopMethod() override;
    void addRemoveAllAnimationsMethodWithBaseMethodNames(
        const std::vector<std::string>& baseMethodNames) override;
    FileContents fileContentsByName() override;
    std::string* headerStringForFrameSlicedAnimations() override { return &code(); }
    std::string* implementationStringForFrameSlicedAnimations() override { return &code(); }

 private:
    Text viewClass() const { return generateForMac() ? "NSView" : "UIView"; }
    Text ownLayer() const { return generateForMac() ? "self.layer?" : "self.layer"; }
    void addImageMethods();
    void addConvenienceMethod(Text baseName, Text parameters, Text documentation, Text arguments);
    static void appendList(std::string& out, Text variableName, Text property, Text elementType,
                           Text list, std::span<const size_t> cuts);

    std::string m_playing;  // what the next animation's methods do, in a sentence
    mutable std::atomic<bool> m_usesImages = false;
};

}  // namespace tweenery
