#include "editor/canvas/element_selection_manager.h"

#include <gtest/gtest.h>

#include <set>

#include "base/errors.h"
#include "support/model_builder.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

/// Writes each change down as "+name" or "-name".
class SelectionRecorder : public PCElementSelectionManagerListener {
 public:
    std::string changes;
    std::function<void()> onNextChange = [] {};

    void elementSelectionManagerDidSelectElement(PCElementSelectionManager& manager,
                                                 const PCElement::Ptr& element) override {
        EXPECT_TRUE(manager.elementIsSelected(*element) && element->selected());
        record('+', *element);
    }
    void elementSelectionManagerDidDeselectElement(PCElementSelectionManager& manager,
                                                   const PCElement::Ptr& element) override {
        EXPECT_FALSE(manager.elementIsSelected(*element) || element->selected());
        record('-', *element);
    }

 private:
    void record(char sign, const PCElement& element) {
        changes += sign + element.name().toStdString() + ' ';
        std::exchange(onNextChange, [] {})();
    }
};

std::string names(const PCElement::Elements& elements) {
    std::string text;
    for (const PCElement::Ptr& element : elements) {
        text += element->name().toStdString() + ' ';
    }
    return text;
}

std::string sortedNames(const PCElementSelectionManager::ElementSet& elements) {
    std::set<std::string> sorted;
    for (const PCElement::Ptr& element : elements) {
        sorted.insert(element->name().toStdString());
    }
    std::string text;
    for (const std::string& name : sorted) {
        text += name + ' ';
    }
    return text;
}

class ElementSelection : public testing::Test {
 protected:
    PCProject::Ptr project = PCProject::init();
    PCElementSelectionManager selection{project};
    SelectionRecorder recorder;
    Subscription subscription;

    ElementSelection() {
        buildTree(*project, "A B G{C D} H{E} L");
        named(*project, u"L"_s)->setLocked(true);
        subscription = selection.addSelectionListener(&recorder);
    }
    PCElement::Ptr the(const char* name) { return named(*project, QString::fromLatin1(name)); }
    PCElement::Elements all(const char* list) {
        return allNamed(*project, QString::fromLatin1(list).split(u' ', Qt::SkipEmptyParts));
    }
    std::string takeChanges() { return std::exchange(recorder.changes, {}); }
};

TEST_F(ElementSelection, KeepsTheOrderAndTellsEachChange) {
    struct Case {
        const char *elements, *selected, *changes;
    };
    for (const Case& c : {Case{"A B A", "A B ", "+A +B "}, Case{"A B", "A B ", "-A -B +A +B "},
                          Case{"D L A G", "D A G ", "-A -B +D +A +G "}, Case{"L", "", "-D -A -G "},
                          Case{"H B", "H B ", "+H +B "}, Case{"", "", "-H -B "}}) {
        SCOPED_TRACE(c.elements);
        selection.selectElements(all(c.elements));
        EXPECT_EQ(names(selection.selectedElements()), c.selected);
        EXPECT_EQ(selection.selectedElementsCount(), selection.selectedElements().size());
        EXPECT_EQ(takeChanges(), c.changes);
    }
    selection.selectElement(the("L"));
    EXPECT_FALSE(the("L")->selected());
    EXPECT_EQ(selection.firstSelectedElement(), nullptr);
    EXPECT_EQ(takeChanges(), "");

    selection.selectElements(all("A B D"));
    selection.deselectElement(the("B"));
    selection.selectElement(the("B"));
    EXPECT_EQ(names(selection.selectedElements()), "A D B ");
    EXPECT_EQ(names({selection.firstSelectedElement(), selection.lastSelectedElement()}), "A B ");
}

TEST_F(ElementSelection, EndsWithEveryChangeOfTheTree) {
    const std::vector<std::function<void()>> edits = {
        [this] { addElement(the("G"), u"new"_s); },
        [this] { the("C")->removeFromParentElement(); },
        [this] { project->moveItems(all("A"), the("H"), 0); },
        [this] { project->undoManager().undo(); },
    };
    for (size_t i = 0; i < edits.size(); ++i) {
        project->undoManager().endEvent();
        selection.selectElements(all("B A H"));
        takeChanges();
        edits[i]();
        EXPECT_EQ(takeChanges(), "-B -A -H ") << i;
    }
    selection.selectElements(all("A"));
    project.reset();
    EXPECT_EQ(names(selection.selectedElements()), "A ") << "what is selected stays alive";
}

TEST_F(ElementSelection, FailsForCallersThatDoNotLook) {
    const auto messageOf = [](const std::function<void()>& call) {
        try {
            call();
        } catch (const AssertionFailure& failure) { return failure.message(); }
        return u"none"_s;
    };
    selection.selectElement(the("A"));
    EXPECT_EQ(messageOf([this] { selection.selectElement(the("A")); }),
              u"element is already selected"_s);
    EXPECT_EQ(messageOf([this] { selection.deselectElement(the("B")); }),
              u"element was not already selected"_s);
    EXPECT_EQ(messageOf([this] { const auto again = selection.addSelectionListener(&recorder); }),
              u"listener was already added"_s);
    selection.removeSelectionListener(&recorder);
    EXPECT_EQ(messageOf([this] { selection.removeSelectionListener(&recorder); }),
              u"listener was not already added"_s);
    EXPECT_EQ(names(selection.selectedElements()), "A ");
}

TEST_F(ElementSelection, ListenersMayChangeListenersAndSelection) {
    SelectionRecorder second;
    const Subscription other = selection.addSelectionListener(&second);
    recorder.onNextChange = [&] { selection.removeSelectionListener(&second); };
    selection.selectElements(all("A B"));
    EXPECT_EQ(second.changes, "");
    recorder.onNextChange = [&] { selection.deselectAllElements(); };
    takeChanges();
    selection.deselectAllElements();
    EXPECT_EQ(takeChanges(), "-A -B ");
}

TEST_F(ElementSelection, GivesTheTargetsOfAnEdit) {
    struct Case {
        const char *selected, *targets, *nonManaged, *partiallyManaged;
    };
    for (const Case& c :
         {Case{"", "", "", "A B G H L "}, Case{"A", "A ", "A ", ""},
          Case{"G", "C D ", "G ", "C D "}, Case{"A G B", "B G A ", "A B G ", "C D "},
          Case{"H G", "G H ", "G H ", "C D E "}}) {
        SCOPED_TRACE(c.selected);
        selection.selectElements(all(c.selected));
        EXPECT_EQ(names(selection.elementsToUpdate(true)), c.targets);
        EXPECT_EQ(selection.additiveSelectedElementsCount(),
                  selection.additiveSelectedElements().size());
        EXPECT_EQ(names(selection.elementsToUpdate(false)), names(selection.selectedElements()));
        EXPECT_EQ(sortedNames(selection.nonManagedElements()), c.nonManaged);
        EXPECT_EQ(sortedNames(selection.partiallyManagedElements()), c.partiallyManaged);
    }
    selection.deselectAllElements();
    EXPECT_EQ(sortedNames(selection.partiallyManagedElements()), "A B G H L ");
    addElement(project->canvas(), u"new"_s);
    EXPECT_EQ(sortedNames(selection.partiallyManagedElements()), "A B G H L new ");
}

TEST_F(ElementSelection, AnchorsAtTheElementSelectedLast) {
    EXPECT_TRUE(selection.additiveAnchorPointOnCanvas().isNull());
    const auto outer = addGroup(project->canvas(), u"outer"_s, {{100, 50}, {2, 2}, 0, {0, 0}});
    const auto inner = addGroup(outer, u"inner"_s, {{10, 5}, {1, 1}, 1, {8, 4}, {1, 0}});
    addElement(inner, u"leaf"_s, {{3, 3}});
    selection.selectElements({the("A"), inner});
    EXPECT_NEAR(selection.additiveAnchorPointOnCanvas().x(), 120, 1e-9);
    EXPECT_NEAR(selection.additiveAnchorPointOnCanvas().y(), 60, 1e-9);
    // The one group itself, though its children are the targets.
    selection.selectElements({inner});
    EXPECT_NEAR(selection.additiveAnchorPointOnCanvas().x(), 120, 1e-9);
}

}  // namespace
}  // namespace tweenery::test
