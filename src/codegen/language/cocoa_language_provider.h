#pragma once

#include "codegen/language/language_code_provider.h"
#include "codegen/language/source_text.h"

namespace tweenery {

/// What the comment block says about the making of a file. Both texts come from outside, so that
/// a run is a function of its input.
struct GenerationStamp {
    std::string version;  // of this program
    std::string date;     // as it is to be printed
};

/// What the two providers share: the main file's text, an empty default for every operation, and
/// the comment block.
class PCCocoaLanguageProvider : public PCLanguageCodeProvider {
 public:
    TargetLanguage language() const final { return m_language; }
    void setGenerateForMac(bool generateForMac) override { m_generateForMac = generateForMac; }
    void setGeneratedClassName(Text name) override { m_generatedClassName = name; }

    void addTopComments() override {}
    void beginImports() override {}
    void addFrameworkDependency(Text) override {}
    void addClassDependency(Text) override {}
    void endImports() override {}
    void addFlippedViewMethod() override {}
    void beginClassDefinitionWithSuperName(Text, bool) override {}
    void addViewsByNameProperty() override {}
    void addLayersByNameProperty() override {}
    void addInitializersForViewWithCanvasSize(QSizeF) override {}
    void addCodeMarkWithName(Text) override {}
    void addLayoutSubelements() override {}
    void setWantsLayer(bool, Text) override {}
    void beginSetupAndUseCompletionBlocksTable(bool) override {}
    void addLocalSetupVariablesIncludesLayer(bool, bool) override {}
    void addScalingContainerWithSize(QSizeF, bool, bool) override {}
    void addNewline() final { m_codeStr += '\n'; }
    void addLayerWithVariableName(Text, Text) override {}
    void addVariableWithName(Text, Text) override {}
    void addCustomButtonVariableWithName(Text) override {}
    void setFrameWithRect(QRectF, Text) override {}
    void setBoundsWithSize(QSizeF, Text) override {}
    void setAnchor(QPointF, Text, bool) override {}
    void addImageVariableWithName(Text, Text) override {}
    void setLayerContents(Text, Text) override {}
    void setImageFromVariableNameOnImageView(Text, Text) override {}
    void setImageFromVariableNameOnButton(Text, Text) override {}
    void setCenterContentModeOnVariableNamed(Text) override {}
    void setPosition(QPointF, Text, bool, bool) override {}
    void setOpacity(float, Text, bool) override {}
    void setTransformWithXScaleAndZRotation(float, float, float, Text, bool) override {}
    void setTransformWithXScale(float, float, Text, bool) override {}
    void setTransformWithZRotation(float, Text, bool) override {}
    void addElementWithName(Text, bool, Text, bool) override {}
    void addElementToByNameDictionaryWithVariableName(Text, Text, bool) override {}
    void endSetupIncludesLayers(bool, bool) override {}
    void describeStandardAnimation(float, bool) override {}
    void beginStandardAnimationWithBaseName(Text, Text, bool, bool) override {}
    void addTimingFunctionDefinitionWithBuiltInFunctionName(Text, Text) override {}
    void addTimingFunctionDefinitionWithControlPoints(Text, QPointF, QPointF) override {}
    void addStandardAnimationWithBaseName(Text, std::string, Text, bool) override {}
    void codeForFloatWithName(std::string&, Text, float) const override {}
    void codeForAnimationWithVariableName(std::string&,
                                          const KeyframeAnimationCode&) const override {}
    void codeForRemovingAnimationWithKey(std::string&, Text, Text, bool) const override {}
    void codeForAddingRepresentativeAnimationWithBaseName(std::string&, Text,
                                                          float) const override {}
    void codeForRemovingRepresentativeAnimationWithBaseName(std::string&, Text) const override {}
    void codeForPropertySetterString(std::string&, Text) const override {}
    void codeForBoxedNumber(std::string&, float) const override {}
    void codeForImageRefWithName(std::string&, Text) const override {}
    void codeForNamedImage(std::string&, Text) const override {}
    void codeForPropertySetterWithArrayString(std::string&, Text, Text) const override {}
    void endClassDefinition() override {}
    void addAnimationDidStopMethod() override {}
    void addRemoveAllAnimationsMethodWithBaseMethodNames(const std::vector<std::string>&) override {
    }
    FileContents fileContentsByName() override { return {}; }
    std::string topCommentsForFileName(Text fileName) const final;
    std::string* headerStringForFrameSlicedAnimations() override { return nullptr; }
    std::string* implementationStringForFrameSlicedAnimations() override { return nullptr; }

 protected:
    PCCocoaLanguageProvider(TargetLanguage language, GenerationStamp stamp)
        : m_language(language), m_stamp(std::move(stamp)) {}

    bool generateForMac() const { return m_generateForMac; }
    const std::string& version() const { return m_stamp.version; }
    const std::string& generatedClassName() const { return m_generatedClassName; }
    /// The end of the main file, under construction.
    std::string& code() { return m_codeStr; }
    /// Appends a long text to the main file without copying it.
    void addPiece(std::string piece);
    /// The main file as it stands, which is empty afterwards.
    SourcePieces takeCode();

    std::string literal(Text name) const { return literalText(m_language, name); }
    std::string literalWithoutExtension(Text fileName) const;
    std::string comment(Text name) const { return commentText(m_language, name); }

 private:
    TargetLanguage m_language;
    GenerationStamp m_stamp;
    bool m_generateForMac = false;
    SourcePieces m_codePieces;  // before what follows
    std::string m_codeStr;
    std::string m_generatedClassName;
};

}  // namespace tweenery
