#include <gtest/gtest.h>

#include <numbers>
#include <random>

#include "base/errors.h"
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
        const char* items;
        Edit edit;
        const char* after;
    };
    const std::vector<Case> cases = {
        {"into a group", "A G{B}", "A", moveTo("G", 0), "G{A B}"},
        {"into a group, an index too great", "A G{B}", "A", moveTo("G", 9), "G{B A}"},
        {"no parent is the back", "A G{B C}", "C", moveTo(nullptr, 5), "C A G{B}"},
        {"several keep their order", "A B C D", "C B", moveTo("Canvas", 0), "B C A D"},
        {"from below, last first", "A B C D", "B A", moveTo("Canvas", 3), "C D A B"},
        {"the only child takes its group away", "A G{H{B}}", "B", moveTo("Canvas", 0), "B A"},
        {"a group does not go into itself", "G{A H{B}}", "G", moveTo("H", 0), "G{A H{B}}"},
        {"out of its group to the back", "A G{B C}", "C", toBack, "C A G{B}"},
        {"out of its group to the front", "G{B C} A", "B", toFront, "G{C} A B"},

        {"forward past the next", "A B C", "A", forward, "B A C"},
        {"the frontmost stays", "A B", "B", forward, "A B"},
        {"past a collapsed group", "A G{B}", "A", forward, "G{B} A"},
        {"into an expanded group, at its back", "A G+{B C}", "A", forward, "G+{A B C}"},
        {"into the innermost", "A G+{H+{B} C}", "A", forward, "G+{H+{A B} C}"},
        {"out of the group, in front of it", "G+{A B} C", "B", forward, "G+{A} B C"},
        {"and the group goes when it is empty", "G{A} C", "A", forward, "A C"},
        {"two neighbours", "A B C", "A B", forward, "C A B"},
        {"a group and its only child", "A G+{B} C", "G B", forward, "A C B"},

        {"backward past the next", "A B C", "C", backward, "A C B"},
        {"the backmost stays", "A B", "A", backward, "A B"},
        {"past a collapsed group backward", "G{A} B", "B", backward, "B G{A}"},
        {"into an expanded group, at its front", "G+{A} B", "B", backward, "G+{A B}"},
        {"out of the group, behind it", "A G+{B C}", "B", backward, "A B G+{C}"},
        {"the last row leaves its group", "G+{A B} C", "A", backward, "A G+{B} C"},
        {"an expanded group passes its own children", "A G+{B C}", "G", backward, "G+{B C} A"},
        {"a group and its child", "A G+{B C}", "C G", backward, "G+{C B} A"},
        {"a group and its only child backward", "A G+{B}", "B G", backward, "A B"},

        {"a group around two", "A B C", "A B", group, "Untitled{A B} C"},
        {"under the parent of the first", "A G+{B C}", "A B", group, "G+{Untitled{A B} C}"},
        {"a group with its child", "G+{A B}", "G A", group, "Untitled{A G+{B}}"},
        {"nothing", "A", "", group, "A"},
        {"the children keep their order", "X Y G{A B} Z", "G", ungroup, "X Y A B Z"},
        {"a group in a group", "G{H{A B} C} D", "G H", ungroup, "A B C D"},
        {"the inner one first", "G{H{A B} C} D", "H G", ungroup, "A B C D"},
        {"empty ones inside go", "G{A H{}} B", "G", ungroup, "A B"},
        {"not all are groups", "G{A} B", "G B", ungroup, "G{A} B"},

        {"a copy in front", "A B", "A", duplicate, "A A_2 B"},
        {"copies of both", "A G{B C}", "A G", duplicate, "A A_2 G{B C} G_2{B_1 C_1}"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        const auto project = PCProject::init();
        buildTree(*project, c.before);
        const auto names = QString::fromLatin1(c.items).split(u' ', Qt::SkipEmptyParts);
        const auto items = allNamed(*project, names);
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

TEST(StructureEdits, DuplicatesGetNumbersAndIdentifiers) {
    const auto project = PCProject::init();
    for (const QString& name : {u"Box"_s, u"Box 1"_s, u"Box 2"_s, u"Box 3"_s, u"A b c7"_s}) {
        addElement(project->canvas(), name, {{5, 6}, {2, 3}, 1, {10, 10}, {0, 1}, 0.5});
    }
    const auto source = named(*project, u"Box 3"_s);
    source->setLocked(true);
    source->setHidden(true);
    const auto copies = project->duplicateItems({source, named(*project, u"A b c7"_s)}, 0.1F);
    const double moved = 5 + static_cast<double>(0.1F);
    EXPECT_EQ(exactState(*copies[0]).substr(Identifier::UuidLength),
              " Box 4 " + shortestText(moved) + ' ' + shortestText(moved + 1) +
                  " 2 3 1 0.5 0 1 10 10 10000");
    EXPECT_EQ(copies[1]->name(), u"A b c7 2"_s);
    EXPECT_NE(copies[0]->identifier(), source->identifier());
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

// The rotation and the scale of an element that goes into a group at the origin.
TEST(StructureEdits, FollowTheParentAsFarAsAnElementCan) {
    struct Case {
        const char* what;
        Look parent, before, after;
    };
    const std::vector<Case> cases = {
        {"mirrored", {{}, {2, -2}, 1}, {{}, {4, 6}, 1.5}, {{}, {2, -3}, 2 * pi - 0.5}},
        {"mirrored on both axes", {{}, {-2, -2}, 1}, {{}, {4, 6}, 1.5}, {{}, {-2, -3}, 0.5}},
        {"unequal, as turned as the parent", {{}, {2, 5}, 1}, {{}, {4, 5}, 1}, {{}, {2, 1}, 0}},
        {"unequal, a quarter turn", {{}, {2, 5}, 0}, {{}, {5, 2}, pi / 2}, {{}, {1, 1}, pi / 2}},
        {"just below a full turn", {{}, {1, 1}, 0.003}, {{}, {1, 1}, 0.001}, {{}, {1, 1}, -0.002}},
        {"sheared: as if it were not", {{}, {2, 5}, 1}, {{}, {4, 5}, 1.5}, {{}, {2, 1}, 0.5}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        const auto project = PCProject::init();
        const auto parent = addGroup(project->canvas(), u"parent"_s, c.parent);
        const auto item = addElement(project->canvas(), u"item"_s, c.before);
        item->setPosition({30, 40});
        project->moveItems({item}, parent, 0);
        EXPECT_NEAR(item->zRotation(), c.after.rotation, 1e-12);
        EXPECT_NEAR(item->scale().x(), c.after.scale.x(), 1e-12);
        EXPECT_NEAR(item->scale().y(), c.after.scale.y(), 1e-12);
        EXPECT_NEAR(item->canvasPosition().x(), 30, 1e-9);
        EXPECT_NEAR(item->canvasPosition().y(), 40, 1e-9);
    }
}

// What a package could not be read back with.
TEST(StructureEdits, NestNoDeeperThanAPackageMayBe) {
    const auto project = PCProject::init();
    buildTree(*project, "A{A2{A1}} G{} B C Two{H{D}} One{E}");
    PCElement::Ptr innermost = named(*project, u"G"_s);
    while (innermost->depth() < PCElement::kMaximumDepth - 2) {
        innermost->setExpanded(true);
        innermost = addGroup(innermost, u"g"_s);
    }
    innermost->setExpanded(true);
    addElement(innermost, u"leaf"_s);
    const auto leafGroup = addGroup(innermost, u"deepest"_s);
    const auto leaf = addElement(leafGroup, u"last"_s);
    leaf->setOpacity(0.5);
    project->undoManager().endEvent();
    leaf->setOpacity(1);
    project->undoManager().undo();

    const auto paste = [&](PCProject& p, const PCElement::Elements&) {
        const auto pasted = PCElement::makeGroup();
        addElement(pasted, u"pasted"_s);
        p.insertPastedElements({pasted}, leafGroup, 0);
    };
    const auto drop = [&](PCProject&, const PCElement::Elements&) {
        leaf->insertSubelement(PCElement::init(), 0);
    };
    struct Case {
        const char* what;
        QStringList items;
        Edit edit;
    };
    const std::vector<Case> cases = {
        {"moved",
         {u"One"_s, u"Two"_s},
         [&](auto& p, const auto& items) { p.moveItems(items, innermost, 0); }},
        {"grouped", {u"last"_s}, group},
        {"pasted", {}, paste},
        {"dropped", {}, drop},
        {"forward", {u"B"_s, u"Two"_s, u"A"_s}, forward},
    };
    const std::string before = exactState(*project->canvas());
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        try {
            c.edit(*project, allNamed(*project, c.items));
            ADD_FAILURE() << "accepted";
        } catch (const InputError& error) {
            EXPECT_EQ(error.reason(), u"would nest elements more than 1000 levels deep"_s);
        }
        EXPECT_TRUE(exactState(*project->canvas()) == before);
        EXPECT_TRUE(project->undoManager().canRedo());
    }
    project->moveItems(allNamed(*project, {u"One"_s}), innermost, 0);
    EXPECT_EQ(project->canvas()->maxHierarchyDepth(), PCElement::kMaximumDepth);
    EXPECT_NO_THROW(PCElement::initWithArchive(KeyedUnarchiver(
        KeyedArchiver::archivedDataWithRootObject(*project->canvas()), u"canvas"_s)));
}

TEST(StructureEdits, GroupsFitTheirChildren) {
    const auto project = PCProject::init();
    const auto outer = addGroup(project->canvas(), u"outer"_s, {{7, 9}, {2, 2}, 0, {0, 0}, {0, 0}});
    addElement(outer, u"A"_s, {{0, 0}, {1, 1}, 0, {10, 10}, {0, 0}});
    addElement(outer, u"B"_s, {{30, 5}, {1, 1}, pi / 2, {10, 4}, {0, 0}});  // x 26 to 30, y 5 to 15
    addElement(outer, u"C"_s, {{-20, -8}, {1, 1}, 0, {4, 4}, {0, 0}});
    const QPointF place = outer->children()[1]->canvasPosition();
    outer->setExpanded(true);
    project->groupElements(outer->subelements());
    const auto made = named(*project, u"Untitled"_s);
    const QRectF frame = made->elementToCanvasTransform().mapRect(QRectF(QPointF(), made->size()));
    // From (-33, -7) to (67, 39) on the canvas, where the group's own size is not scaled.
    EXPECT_NEAR(made->size().width(), 100, 1e-9);
    EXPECT_NEAR(made->size().height(), 46, 1e-9);
    EXPECT_NEAR(frame.center().x(), 17, 1e-9);
    EXPECT_NEAR(frame.center().y(), 16, 1e-9);
    EXPECT_EQ(treeText(*outer), "Untitled{A B C}");
    EXPECT_NEAR(made->children()[1]->canvasPosition().x(), place.x(), 1e-9);
    EXPECT_NEAR(made->children()[1]->canvasPosition().y(), place.y(), 1e-9);
}

// The frame of a square turned by 45 degrees is upright in its parent; turned with the parent by 45
// degrees it reaches beyond the square, which is upright again.
TEST(StructureEdits, GroupsSpanTheFramesOfTurnedChildren) {
    const auto project = PCProject::init();
    const auto outer =
        addGroup(project->canvas(), u"outer"_s, {{0, 0}, {1, 1}, pi / 4, {0, 0}, {0, 0}});
    addElement(outer, u"A"_s, {{0, 0}, {1, 1}, pi / 4, {10, 10}, {0.5, 0.5}});
    project->groupElements(outer->subelements());
    const auto made = named(*project, u"Untitled"_s);
    EXPECT_NEAR(made->size().width(), 20, 1e-9);
    EXPECT_NEAR(made->size().height(), 20, 1e-9);
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
    // As of a project that was opened; a new one does not listen.
    const auto listening = project->animationsManager().addChangeListener(project.get());
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

/// A random tree with scales that are equal but for the sign, which every parent can make up for,
/// and random structure edits. Many rotations add up to nearly a full turn.
class RandomTree {
 public:
    explicit RandomTree(unsigned seed) : m_random(seed) { grow(m_project->canvas(), 3); }
    PCProject& project() { return *m_project; }

    void edit() {
        PCElement::Elements all = m_project->canvas()->elementAndAllDescendants();
        const PCElement::Ptr target = anyOf(all);
        all.erase(all.begin());
        PCElement::Elements picked{anyOf(all)};
        if (const auto other = anyOf(all); other != picked[0]) { picked.push_back(other); }
        if (below(4) == 0) {
            m_project->moveItems(picked, target->isGroup() ? target : nullptr, below(4));
            return;
        }
        std::erase_if(all, [](const auto& element) { return !element->isGroup(); });
        const std::array edits{forward, backward, toBack, toFront, group, duplicate, ungroup};
        const size_t kind = static_cast<size_t>(below(7));
        const bool ungroups = kind == 6;
        edits[kind](*m_project,
                    ungroups && !all.empty() ? PCElement::Elements{anyOf(all)} : picked);
    }

 private:
    std::mt19937 m_random;
    PCProject::Ptr m_project = PCProject::init();

    int below(int count) { return std::uniform_int_distribution(0, count - 1)(m_random); }
    PCElement::Ptr anyOf(const PCElement::Elements& all) {
        return all[static_cast<size_t>(below(static_cast<int>(all.size())))];
    }
    double between(double low, double high) {
        return std::uniform_real_distribution(low, high)(m_random);
    }
    Look look() {
        const double scale = between(0.5, 2) * (below(2) == 0 ? 1 : -1);
        return {{between(-1000, 1000), between(-1000, 1000)},
                {scale, below(3) == 0 ? -scale : scale},
                below(2) == 0 ? between(0, 2 * pi) : between(-0.01, 0.01),
                {between(0, 3000), between(0, 3000)},
                {between(-1, 2), between(-1, 2)}};
    }
    void grow(const PCElement::Ptr& parent, int depth) {
        for (int i = 0; i < 3; ++i) {
            const bool isGroup = depth > 0 && below(2) == 0;
            const auto made = isGroup ? addGroup(parent, u"group"_s, look())
                                      : addElement(parent, u"leaf"_s, look());
            made->setExpanded(below(2) == 0);
            made->setHidden(below(4) == 0);
            made->setLocked(below(4) == 0);
            if (isGroup) { grow(made, depth - 1); }
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
        const PCElement::Ptr canvas = tree.project().canvas();
        UndoWalk walk(tree.project(), [&canvas] { return exactState(*canvas); });
        for (int i = 0; i < 12; ++i) {
            std::vector<std::pair<PCElement::Ptr, std::array<QPointF, 3>>> places;
            for (const PCElement::Ptr& element : canvas->elementAndAllDescendants()) {
                places.emplace_back(element, cornersOf(*element));
            }
            walk.edit([&tree] { tree.edit(); });
            for (const auto& [element, corners] : places) {
                const bool isGone = element != canvas && !element->parentElement();
                if (isGone) {
                    continue;  // a group that was emptied or ungrouped
                }
                const auto now = cornersOf(*element);
                for (size_t corner = 0; corner < now.size(); ++corner) {
                    EXPECT_NEAR(now[corner].x(), corners[corner].x(), 1e-6) << i;
                    EXPECT_NEAR(now[corner].y(), corners[corner].y(), 1e-6) << i;
                }
            }
        }
        walk.check();
    }
}

}  // namespace
}  // namespace tweenery::test
