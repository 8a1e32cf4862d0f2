#pragma once

#include <vector>

#include "certify/player_script.h"
#include "codegen/export_plan.h"

namespace tweenery {

/// What the preview shows of a project, by the numbers of the elements: those of a plan, without
/// the canvas. Belongs to the project's thread.
class PreviewScene {
 public:
    /// Both are not owned, and outlive it.
    PreviewScene(PCProject& project, const ExportPlan& plan) : m_project(project), m_plan(plan) {}

    int elementCount() const { return static_cast<int>(m_plan.elements.size()) - 1; }
    const PlannedElement& planned(int element) const {
        return m_plan.elements[static_cast<size_t>(element) + 1];
    }
    const PCElement& element(int element) const { return *planned(element).element; }
    int numberOf(const PCElement& element) const {
        return static_cast<int>(m_plan.indexOfElement.at(&element)) - 1;
    }

    bool hasImage(const QString& name) const {
        return m_project.imageSetManager().imageSetExistsWithName(name);
    }

    /// Shows an animation from now on. Throws InputError when it cannot be read.
    void select(const PCAnimation::Ptr& animation);
    ElementLook setupLook(int element) const;
    ElementLook look(int element, int32_t timeInMS) const;
    /// The elements below one, or below the canvas (ElementPlace::kScene), back to front.
    std::vector<int> setupOrder(int parent) const;
    std::vector<int> order(int parent, int32_t timeInMS) const;
    /// The same if only views were animated, and layers stayed at height 0.
    std::vector<int> orderOfViewsAlone(int parent, int32_t timeInMS) const;

 private:
    PCProject& m_project;
    const ExportPlan& m_plan;

    std::vector<int> order(int parent, int32_t timeInMS, bool ofViewsAlone) const;
    const PCElement& parentElement(int parent) const {
        return *m_plan.elements[static_cast<size_t>(parent + 1)].element;
    }
};

}  // namespace tweenery
