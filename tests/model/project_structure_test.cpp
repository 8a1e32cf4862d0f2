#include <gtest/gtest.h>

#include <numbers>
#include <random>

#include "support/model_builder.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

constexpr double pi = std::numbers::pi;

using Edit = std::function<void(PCProject&, const PCElement::Elements&)>;

Edit moveTo(const char* parent, int32_t index) {
    return [=](PCProject& project, const PCElement::Elements& items) {
        const auto target = parent ? named(project, QString::fromLatin1(parent)) : nullptr;
        project.moveItems(items, target, index);
    };
}

const Edit toBack = [](auto& project, const auto& items) { project.moveElementsToBack(items); };
const Edit toFront = [](auto& project, const auto& items) { project.moveElementsToFront(items); };
const Edit forward = [](auto& project, const auto& items) { project.moveElementsForward(items); };
const Edit backward = [](auto& project, const auto& items) { project.moveElementsBackward(items); };
const Edit group = [](auto& project, const auto& items) { project.groupElements(items); };
const Edit ungroup = [](auto& project, const auto& items) { project.ungroupElements(items); };
const Edit duplicate = [](auto& project, const auto& items) { project.duplicateItems(items, 50); };

// Trees back to front, a group's children in braces, expanded groups with a plus. The navigator
// lists them from right to left.
TEST(StructureEdits, RearrangeTheTree) {
    struct Case {
        const char* what;
        const char* before;
        QStringList items;
        Edit edit;
        const char* after;
    };
    const std::vector<Case> cases = {
        {"into a group", "A G{B}", {u"A"_s}, moveTo("G", 0), "G{A B}"},
        {"into a group, an index too great", "A G{B}", {u"A"_s}, moveTo("G", 9), "G{B A}"},
        {"no parent is the back of the canvas",
         "A G{B C}",
         {u"C"_s},
         moveTo(nullptr, 5),
         "C A G{B}"},
        {"several keep their order", "A B C D", {u"C"_s, u"B"_s}, moveTo("Canvas", 0), "B C A D"},
        {"from below, the last comes first",
         "A B C D",
         {u"B"_s, u"A"_s},
         moveTo("Canvas", 3),
         "C D A B"},
        {"the only child takes its group away", "A G{H{B}}", {u"B"_s}, moveTo("Canvas", 0), "B A"},
        {"a group does not go into itself", "G{A H{B}}", {u"G"_s}, moveTo("H", 0), "G{A H{B}}"},
        {"out of its group to the back", "A G{B C}", {u"C"_s}, toBack, "C A G{B}"},
        {"out of its group to the front", "G{B C} A", {u"B"_s}, toFront, "G{C} A B"},

        {"forward past the next", "A B C", {u"A"_s}, forward, "B A C"},
        {"the frontmost stays", "A B", {u"B"_s}, forward, "A B"},
        {"past a collapsed group", "A G{B}", {u"A"_s}, forward, "G{B} A"},
        {"into an expanded group, at its back", "A G+{B C}", {u"A"_s}, forward, "G+{A B C}"},
        {"into the innermost", "A G+{H+{B} C}", {u"A"_s}, forward, "G+{H+{A B} C}"},
        {"out of the group, in front of it", "G+{A B} C", {u"B"_s}, forward, "G+{A} B C"},
        {"and the group goes when it is empty", "G{A} C", {u"A"_s}, forward, "A C"},
        {"two neighbours", "A B C", {u"A"_s, u"B"_s}, forward, "C A B"},
        {"a group and its only child", "A G+{B} C", {u"G"_s, u"B"_s}, forward, "A C B"},

        {"backward past the next", "A B C", {u"C"_s}, backward, "A C B"},
        {"the backmost stays", "A B", {u"A"_s}, backward, "A B"},
        {"past a collapsed group backward", "G{A} B", {u"B"_s}, backward, "B G{A}"},
        {"into an expanded group, at its front", "G+{A} B", {u"B"_s}, backward, "G+{A B}"},
        {"out of the group, behind it", "A G+{B C}", {u"B"_s}, backward, "A B G+{C}"},
        {"the last row leaves its group", "G+{A B} C", {u"A"_s}, backward, "A G+{B} C"},
        {"an expanded group passes its own children", "A G+{B C}", {u"G"_s}, backward, "G+{B C} A"},
        {"a group and its child", "A G+{B C}", {u"C"_s, u"G"_s}, backward, "G+{C B} A"},
        {"a group and its only child backward", "A G+{B}", {u"B"_s, u"G"_s}, backward, "A B"},

        {"a group around two", "A B C", {u"A"_s, u"B"_s}, group, "Untitled{A B} C"},
        {"of different parents, under that of the frontmost",
         "A G+{B C}",
         {u"A"_s, u"B"_s},
         group,
         "G+{Untitled{A B} C}"},
        {"a group with its child", "G+{A B}", {u"G"_s, u"A"_s}, group, "Untitled{A G+{B}}"},
        {"nothing", "A", {}, group, "A"},
        {"the children keep their order", "X Y G{A B} Z", {u"G"_s}, ungroup, "X Y A B Z"},
        {"a group in a group", "G{H{A B} C} D", {u"G"_s, u"H"_s}, ungroup, "A B C D"},
        {"the inner one first", "G{H{A B} C} D", {u"H"_s, u"G"_s}, ungroup, "A B C D"},
        {"empty ones inside go", "G{A H{}} B", {u"G"_s}, ungroup, "A B"},
        {"not all are groups", "G{A} B", {u"G"_s, u"B"_s}, ungroup, "G{A} B"},

        {"a copy in front", "A B", {u"A"_s}, duplicate, "A A_2 B"},
        {"copies of both", "A G{B C}", {u"A"_s, u"G"_s}, duplicate, "A A_2 G{B C} G_2{B_1 C_1}"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        const auto project = PCProject::init();
        buildTree(*project, c.before);
        const auto items = allNamed(*project, c.items);
        UndoWalk walk(*project, [&] { return exactState(*project->canvas()); });
        walk.edit([&] { c.edit(*project, items); });
        EXPECT_EQ(treeText(*project->canvas()), c.after);
        walk.check();
        EXPECT_EQ(treeText(*project->canvas()), c.before);
    }
}

TEST(StructureEdits, NameTheirSteps) {
    const auto project = PCProject::init();
    buildTree(*project, "A B G{C D}");
    UndoManager& undo = project->undoManager();
    project->moveItems(allNamed(*project, {u"A"_s}), nullptr, 0);
    EXPECT_EQ(undo.undoActionName(), u"Move"_s);
    undo.endEvent();
    project->groupElements(allNamed(*project, {u"A"_s, u"B"_s}));
    EXPECT_EQ(undo.undoActionName(), u"Group"_s);
    undo.endEvent();
    project->ungroupElements(allNamed(*project, {u"G"_s}));
    EXPECT_EQ(undo.undoActionName(), u"Ungroup"_s);
    EXPECT_TRUE(project->elementsAreAllGroups({}));
}

// The lists that the tree itself keeps may be given as they are.
TEST(StructureEdits, TakeTheTreesOwnLists) {
    const auto project = PCProject::init();
    buildTree(*project, "A B");
    const auto& children = project->canvas()->children();
    EXPECT_EQ(project->duplicateItems(children, 0).size(), 2U);
    project->groupElements(children);
    EXPECT_EQ(treeText(*project->canvas()), "Untitled{A A_2 B B_2}");
    project->ungroupElements(children);
    EXPECT_EQ(treeText(*project->canvas()), "A A_2 B B_2");
}

TEST(StructureEdits, DuplicatesGetNumbersAndIdentifiers) {
    const auto project = PCProject::init();
    for (const QString& name : {u"Box"_s, u"Box 1"_s, u"Box 2"_s, u"Box 3"_s, u"A b c7"_s}) {
        addElement(project->canvas(), name, {{5, 6}, {2, 3}, 1, {10, 10}, {0, 1}, 0.5});
    }
    const auto source = named(*project, u"Box 3"_s);
    source->setLocked(true);
    source->setHidden(true);
    const auto copies = project->duplicateItems({source, named(*project, u"A b c7"_s)}, 0.1F);
    EXPECT_EQ(copies[0]->name(), u"Box 4"_s);
    EXPECT_EQ(copies[1]->name(), u"A b c7 2"_s);
    EXPECT_NE(copies[0]->identifier(), source->identifier());
    EXPECT_TRUE(copies[0]->hidden());
    EXPECT_FALSE(copies[0]->locked());
    EXPECT_EQ(copies[0]->position().x(), 5 + static_cast<double>(0.1F));
    copies[0]->setPosition(source->position());
    const auto fields = [](const PCElement& element) {
        const std::string state = exactState(element);
        return state.substr(state.find(" 5 6"), std::string("5 6 2 3 1 0.5 0 1 10 10").size());
    };
    EXPECT_EQ(fields(*copies[0]), fields(*source));
}

TEST(StructureEdits, CompensateTheNewParent) {
    const auto project = PCProject::init();
    const auto canvas = project->canvas();
    const auto outer = addGroup(canvas, u"outer"_s, {{100, 50}, {2, 2}, 1, {20, 10}, {0, 0}});
    const auto child = addElement(outer, u"child"_s, {{10, 5}, {3, 1}, 0.5, {4, 2}, {1, 0}});
    addElement(outer, u"other"_s);
    const QPointF place = child->canvasPosition();
    project->moveItems({child}, canvas, 0);
    EXPECT_NEAR(child->zRotation(), 1.5, 1e-6);
    EXPECT_EQ(child->scale().x(), 6);
    EXPECT_EQ(child->scale().y(), 2);
    EXPECT_EQ(child->position().x(), place.x());
    // Within one parent not a bit changes, whatever the parent's transform.
    project->moveItems({child}, outer, 0);
    const std::string before = exactState(*child);
    project->moveItems({child}, outer, 1);
    EXPECT_EQ(exactState(*child), before);
    // Into a group that shows nothing: what cannot be made up for stays finite.
    const auto flat = addGroup(canvas, u"flat"_s, {{0, 0}, {0, 2}, 0, {20, 10}, {0, 0}});
    project->moveItems({child}, flat, 0);
    EXPECT_NO_THROW(KeyedArchiver::archivedDataWithRootObject(*canvas));
    EXPECT_NEAR(child->scale().y(), 1, 1e-12);
}

TEST(StructureEdits, GroupsFitTheirChildren) {
    const auto project = PCProject::init();
    const auto outer = addGroup(project->canvas(), u"outer"_s, {{7, 9}, {2, 2}, 0, {0, 0}, {0, 0}});
    addElement(outer, u"A"_s, {{0, 0}, {1, 1}, 0, {10, 10}, {0, 0}});
    addElement(outer, u"B"_s, {{30, 5}, {1, 1}, pi / 2, {10, 4}, {0, 0}});  // x 26 to 30, y 5 to 15
    outer->setExpanded(true);
    project->groupElements(outer->children());
    const auto made = named(*project, u"Untitled"_s);
    const QRectF frame = made->elementToCanvasTransform().mapRect(QRectF(QPointF(), made->size()));
    EXPECT_NEAR(made->size().width(), 60, 1e-9);  // on the canvas, where the group is not scaled
    EXPECT_NEAR(made->size().height(), 30, 1e-9);
    EXPECT_NEAR(frame.center().x(), 7 + 30, 1e-9);
    EXPECT_NEAR(frame.center().y(), 9 + 15, 1e-9);
}

TEST(ChildrenOrders, ComeIntoLineWithTheTree) {
    const auto l = [](const char* text) {
        return QString::fromLatin1(text).split(u' ', Qt::SkipEmptyParts);
    };
    struct Case {
        const char *stored, *present, *order;
    };
    for (const Case& c :
         {Case{"B A", "A B", "B A"}, Case{"B A", "A N B", "B N A"}, Case{"A X B", "A B", "A B"},
          Case{"", "A B C", "A B C"}, Case{"A", "B C D A", "B C D A"},
          Case{"C B A", "N C B A", "N C B A"}, Case{"X Y", "A B", "A B"}, Case{"A B", "", ""}}) {
        EXPECT_EQ(childrenOrderInLine(l(c.stored), l(c.present)), l(c.order)) << c.stored;
    }
    const auto project = PCProject::init();
    project->animationsManager().addChangeListener(project.get());
    buildTree(*project, "A B");
    const auto canvas = project->canvas();
    const auto animation = selectNewAnimation(*project, u"Bounce"_s);
    canvas->setChildrenZPositions(PCProject::sortedSubelementIdentifiers(*canvas), 100);
    canvas->removeSubelementAtIndex(0);
    addElement(canvas, u"C"_s);
    project->animationsManager().setSelectedAnimation(animation);
    EXPECT_EQ(project->namesFromIdentifiers(canvas->childrenZPositionsAtTimeInMS(100)),
              QStringList({u"C"_s, u"B"_s}));
}

/// A random tree with uniform scales, which every parent can make up for, and random structure
/// edits. Rotations are whole degrees, so that no sum falls between 359.5 and 360, which become 0.
class RandomTree {
 public:
    explicit RandomTree(unsigned seed) : m_random(seed) {
        grow(m_project->canvas(), 3);
        addElement(m_project->canvas(), u"last"_s, look());
    }
    PCProject& project() { return *m_project; }

    /// Does one edit; returns the elements that have to stay where they are.
    PCElement::Elements edit() {
        PCElement::Elements all = m_project->canvas()->elementAndAllDescendants();
        const PCElement::Elements stay = all;
        all.erase(all.begin());
        PCElement::Elements picked;
        for (int i = below(3); i >= 0; --i) {
            const auto& element = all[static_cast<size_t>(below(static_cast<int>(all.size())))];
            if (std::find(picked.begin(), picked.end(), element) == picked.end()) {
                picked.push_back(element);
            }
        }
        const PCElement::Ptr& target =
            stay[static_cast<size_t>(below(static_cast<int>(stay.size())))];
        switch (below(9)) {
            case 0:
                m_project->moveElementsForward(picked);
                break;
            case 1:
                m_project->moveElementsBackward(picked);
                break;
            case 2:
                m_project->moveElementsToBack(picked);
                break;
            case 3:
                m_project->moveElementsToFront(picked);
                break;
            case 4:
                m_project->groupElements(picked);
                break;
            case 5:
                ungroupOne(all);
                break;
            case 6:
                m_project->duplicateItems(picked, 3);
                break;
            default:
                m_project->moveItems(picked, target->isGroup() ? target : nullptr, below(4));
        }
        return stay;
    }

 private:
    std::mt19937 m_random;
    PCProject::Ptr m_project = PCProject::init();

    int below(int count) { return std::uniform_int_distribution(0, count - 1)(m_random); }
    double between(double low, double high) {
        return std::uniform_real_distribution(low, high)(m_random);
    }
    Look look() {
        const double scale = between(0.5, 2);
        return {{between(-100, 100), between(-100, 100)},
                {scale, scale},
                below(360) * pi / 180,
                {between(0, 50), between(0, 50)},
                {between(0, 1), between(0, 1)}};
    }
    void grow(const PCElement::Ptr& parent, int depth) {
        for (int i = 0; i < 3; ++i) {
            const bool isGroup = depth > 0 && below(2) == 0;
            const auto made = isGroup ? addGroup(parent, u"group"_s, look())
                                      : addElement(parent, u"leaf"_s, look());
            made->setExpanded(below(2) == 0);
            if (isGroup) grow(made, depth - 1);
        }
    }
    void ungroupOne(const PCElement::Elements& all) {
        for (const PCElement::Ptr& element : all) {
            if (element->isGroup() && below(3) == 0) return m_project->ungroupElements({element});
        }
    }
};

/// Where an element's corners are on the canvas.
std::array<QPointF, 3> cornersOf(const PCElement& element) {
    const QTransform transform = element.elementToCanvasTransform();
    return {transform.map(QPointF(0, 0)), transform.map(QPointF(element.size().width(), 0)),
            transform.map(QPointF(0, element.size().height()))};
}

TEST(StructureEdits, MoveNothingOnTheCanvas) {
    for (unsigned seed = 1; seed <= 60; ++seed) {
        SCOPED_TRACE(seed);
        RandomTree tree(seed);
        PCProject& project = tree.project();
        const PCElement::Ptr canvas = project.canvas();
        UndoWalk walk(project, [&canvas] { return exactState(*canvas); });
        for (int i = 0; i < 12 && canvas->children().size() > 1; ++i) {
            std::vector<std::pair<PCElement::Ptr, std::array<QPointF, 3>>> places;
            for (const PCElement::Ptr& element : canvas->elementAndAllDescendants()) {
                places.emplace_back(element, cornersOf(*element));
            }
            walk.edit([&tree] { tree.edit(); });
            for (const auto& [element, corners] : places) {
                const bool isGone = element != canvas && !element->parentElement();
                if (isGone) continue;  // a group that was emptied or ungrouped
                const auto now = cornersOf(*element);
                for (size_t corner = 0; corner < now.size(); ++corner) {
                    // A rotation on the canvas is rounded to 32 bits at each of up to ten levels,
                    // by up to 2.4e-7 radians, over distances of up to a thousand points.
                    EXPECT_NEAR(now[corner].x(), corners[corner].x(), 0.0025) << i;
                    EXPECT_NEAR(now[corner].y(), corners[corner].y(), 0.0025) << i;
                }
            }
        }
        walk.check();
    }
}

}  // namespace
}  // namespace tweenery::test
