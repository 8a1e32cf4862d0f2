#pragma once

#include <QString>
#include <memory>
#include <vector>

#include "codegen/project_code_generator.h"
#include "model/project.h"

namespace tweenery::test {

/// One keyframe as it is stored: relative to the element's setup state.
struct Key {
    int32_t timeInMS = 0;
    PropertyValue value;
    int64_t easing = 0;
    bool instant = false;
};

/// What a run is made for.
struct RunTarget {
    TargetLanguage language = TargetLanguage::ObjectiveC;
    bool mac = false;
    bool addAnimationSuffix = false;
    NumberDigits digits = NumberDigits::Fixed;
};

/// The text of a generated file in one piece.
std::string joined(const SourcePieces& pieces);

/// A small project in memory and the source that it gives.
class Scene {
 public:
    explicit Scene(const QString& projectName = QStringLiteral("Scene"));

    const PCProject::Ptr& project() const { return m_project; }
    /// A new element, in front of its siblings; `parent` null is the canvas.
    PCElement::Ptr add(const QString& name, const PCElement::Ptr& parent = {});
    /// A small image set with that file's artwork.
    void addImage(const QString& filename) const;
    /// Animations stand in the order of their names.
    PCAnimation::Ptr addAnimation(const QString& name);
    /// Stores a timeline in the animation's directory, under the file name of its type unless
    /// `fileName` says otherwise.
    void store(const PCAnimation::Ptr& animation, const QString& elementIdentifier,
               PCPropertyType type, const std::vector<Key>& keys,
               PCRepeatBehavior repeatBehavior = PCRepeatBehaviorNever,
               const QString& fileName = {});
    void store(const PCAnimation::Ptr& animation, const PCElement::Ptr& element,
               PCPropertyType type, const std::vector<Key>& keys,
               PCRepeatBehavior repeatBehavior = PCRepeatBehaviorNever,
               const QString& fileName = {}) {
        store(animation, element->identifier().toString(), type, keys, repeatBehavior, fileName);
    }

    ExportPlan plan(const RunTarget& target = {}) const;
    /// A generator for one run.
    PCProjectCodeGenerator generator(const RunTarget& target = {}) const;
    /// The text of the file with that extension.
    std::string source(const QString& extension, const RunTarget& target = {}) const;
    std::vector<ExportDiagnostic> diagnostics(const RunTarget& target = {}) const;

 private:
    PCProject::Ptr m_project;
};

}  // namespace tweenery::test
