#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <optional>
#include <string>
#include <vector>

#include "codegen/export_diagnostics.h"
#include "model/project.h"
#include "scene/keyframe_animation.h"

namespace tweenery::test {

/// The keyframe animations of an exported Objective-C class, read back from its text.
class ExportedAnimations {
 public:
    /// Exports the project for the desktop, where every element is a layer under its own name.
    explicit ExportedAnimations(const PCProject::Ptr& project);

    /// True for an animation that became methods which add keyframe animations.
    bool has(const QString& animationName) const { return m_standard.contains(animationName); }
    /// The animation of one property of an element; nothing when the text has none.
    std::optional<KeyframeAnimation> find(const QString& animationName, const PCElement& element,
                                          PCPropertyType propertyType) const;
    /// Whether the run has told that the key times of the element's animations cost something.
    bool saysKeyTimesAreCoarse(const QString& animationName, const PCElement& element) const;

 private:
    PCProject::Ptr m_project;
    std::vector<ExportDiagnostic> m_diagnostics;
    QStringList m_standard;
    QHash<QString, KeyframeAnimation> m_animations;  // by "element/key"

    void read(const QString& text);
    QImage imageWithStem(const QString& stem) const;
};

}  // namespace tweenery::test
