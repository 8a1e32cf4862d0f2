#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <numbers>

#include "base/errors.h"
#include "support/model_builder.h"
#include "support/model_recorders.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;

constexpr double pi = std::numbers::pi;

std::string namesOf(const PCElement::Elements& elements) {
    std::string text;
    for (const PCElement::Ptr& element : elements) {
        text += element->name().toStdString() + ' ';
    }
    return text;
}

TEST(ElementTree, StartsWithItsDefaults) {
    const auto element = PCElement::init();
    EXPECT_EQ(exactState(*element).substr(Identifier::UuidLength),
              " Untitled 0 0 1 1 0 1 0.5 0.5 0 0 00000");
    EXPECT_EQ(exactState(*PCElement::makeCanvas()).substr(Identifier::UuidLength),
              " Canvas 0 0 1 1 0 1 0.5 0.5 1136 768 00001");
    ASSERT_NE(element->opacityTimeline(), nullptr);
    EXPECT_EQ(element->opacityTimeline(), element->opacityTimeline()) << "made once";
}

TEST(ElementTree, ListsAndInserts) {
    const auto project = PCProject::init();
    buildTree(*project, "A G{B H{C} D} E");
    const auto canvas = project->canvas();
    EXPECT_EQ(namesOf(canvas->elementAndAllDescendants()), "Canvas A G B H C D E ");
    EXPECT_EQ(namesOf(canvas->reversedElementAndAllDescendants()), "Canvas E G D H C B A ");
    EXPECT_EQ(namesOf(project->heirarchyWithRoot(*canvas)), "E G D H C B A ");
    EXPECT_EQ(namesOf(project->visibleHeirarchyWithRoot(*canvas)), "E G A ");
    named(*project, u"G"_s)->setExpanded(true);
    EXPECT_EQ(namesOf(project->visibleHeirarchyWithRoot(*canvas)), "E G D H B A ");
    EXPECT_EQ(canvas->maxHierarchyDepth(), 4);
    EXPECT_EQ(canvas->EXPORT_elementAndDescendantsByIdentifier().size(), 8U);
    const auto c = named(*project, u"C"_s), g = named(*project, u"G"_s),
               a = named(*project, u"A"_s);
    EXPECT_TRUE(canvas->isAncestorOf(*c) && g->isAncestorOf(*c));
    EXPECT_FALSE(g->isAncestorOf(*a) || g->isAncestorOf(*g) || c->isAncestorOf(*g));
    EXPECT_EQ(project->elementForIdentifier(c->identifier()), c);
    EXPECT_EQ(project->elementForIdentifier(Identifier(u"nobody"_s)), nullptr);
    EXPECT_EQ(project->namesFromIdentifiers(PCProject::sortedSubelementIdentifiers(*g)),
              QStringList({u"B"_s, u"H"_s, u"D"_s}));
    RecordingLog log;
    project->logHeirarchy(log);
    EXPECT_THAT(log.lines, ElementsAre("*******************************", "Heirarchy",
                                       "*******************************", "- E", "- G", "- D",
                                       "- H", "- C", "- B", "- A"));

    const auto extra = PCElement::init();
    canvas->insertSubelement(extra, 99);
    EXPECT_EQ(extra->index(), 3);
    EXPECT_THROW(g->insertSubelement(extra, 0), AssertionFailure) << "it is in a tree";
    g->removeFromParentElement();
    EXPECT_EQ(g->parentElement(), nullptr);
    EXPECT_EQ(g->project(), project.get());
    EXPECT_EQ(extra->index(), 2);
    EXPECT_EQ(project->elementForIdentifier(c->identifier()), nullptr);
    canvas->insertSubelement(g, 0);
    EXPECT_EQ(project->elementForIdentifier(c->identifier()), c);
    EXPECT_EQ(treeText(*canvas), "G+{B H{C} D} A E Untitled");
}

TEST(ElementTree, TellsLayersAndListeners) {
    RecordingLayerFactory layers;
    const auto project = PCProject::init();
    buildTree(*project, "A G{B}");
    project->setViewLayerFactory(&layers);
    EXPECT_THAT(layers.calls, ElementsAre("Canvas: add A", "G: add B", "Canvas: add G"));
    layers.calls.clear();
    NotificationRecorder notifications(*project);
    const auto added = PCElement::init();
    project->canvas()->setModified(false);
    project->canvas()->insertSubelement(added, 1);
    EXPECT_TRUE(project->canvas()->modified());
    added->setOpacity(0.5);
    project->canvas()->removeSubelementAtIndex(1);
    EXPECT_THAT(layers.calls, ElementsAre("Canvas: insert Untitled at 1", "Untitled: opacity",
                                          "Untitled: remove"));
    EXPECT_THAT(notifications.posts, ElementsAre("Canvas: subelementschangednotification",
                                                 "Untitled: elementopacitychangenotification",
                                                 "Canvas: subelementschangednotification"));
    layers.calls.clear();
    project->setBackingScale(1);
    EXPECT_THAT(layers.calls,
                ElementsAre("Canvas: contents", "A: contents", "G: contents", "B: contents"));
    project->setViewLayerFactory(nullptr);
}

TEST(ElementTree, KeepsNamesUnique) {
    const auto project = PCProject::init();
    buildTree(*project, "Box Box-1 G{C}");
    const auto canvas = project->canvas();
    const auto unique = [&](const char* base, const PCElement* ignored = nullptr) {
        return project->uniqueElementNameWithBase(QString::fromLatin1(base), ignored).toStdString();
    };
    named(*project, u"Box-1"_s)->setName(u"Box 2"_s);
    EXPECT_EQ(unique("Box"), "Box 1");
    EXPECT_EQ(unique("Box "), "Box  1") << "numbered as it stands";
    EXPECT_EQ(unique(" Lid\n"), "Lid");
    EXPECT_EQ(unique("Canvas"), "Canvas 1");
    const auto second = named(*project, u"Box 2"_s);
    EXPECT_EQ(unique("Box 2", second.get()), "Box 2");
    EXPECT_EQ(unique("Box 2"), "Box 2 1");
    for (const char* name : {"Box 1", "Box 3", "Box 4"}) {
        addElement(canvas, QString::fromLatin1(name));
    }
    EXPECT_EQ(unique("Box"), "Box 5");
    named(*project, u"Box 3"_s)->setName(u"Lid"_s);
    EXPECT_EQ(unique("Box"), "Box 3");
    project->undoManager().endEvent();
    canvas->removeSubelementAtIndex(static_cast<size_t>(second->index()));
    EXPECT_EQ(unique("Box"), "Box 2");
    EXPECT_EQ(unique("Box", named(*project, u"Box 1"_s).get()), "Box 1");
    project->undoManager().undo();
    EXPECT_EQ(unique("Box"), "Box 3");

    // A whole subtree comes in renamed, without a step of its own.
    const auto group = PCElement::makeGroup();
    group->setName(u"G"_s);
    addElement(group, u"C"_s);
    addElement(group, u"C"_s);
    addElement(group, u" D "_s);
    canvas->insertSubelement(group, 0);
    EXPECT_EQ(treeText(*group), "C_1 C_2 D");
    EXPECT_EQ(group->name(), u"G 1"_s);
}

// The look-up by name and identifier is kept up to date: it must agree with a walk.
TEST(ElementTree, RemembersTwoElementsWithOneIdentifier) {
    const auto project = PCProject::init();
    buildTree(*project, "A B");
    const auto a = named(*project, u"A"_s);
    const auto twin = PCElement::elementWithPasteablePlist(
        {{u"layerName"_s, u"twin"_s}, {u"layerIdentifier"_s, a->identifier().toString()}}, project);
    project->elementForIdentifier(a->identifier());
    project->canvas()->insertSubelement(twin, 0);
    EXPECT_EQ(project->elementForIdentifier(a->identifier()), twin) << "the first in the tree";
    twin->removeFromParentElement();
    EXPECT_EQ(project->elementForIdentifier(a->identifier()), a);
}

TEST(ElementGeometry, ScalesThenRotatesAboutTheAnchor) {
    const auto project = PCProject::init();
    const auto canvas = project->canvas();
    canvas->setZRotation(1);
    canvas->setPosition({500, 500});
    const auto group = addGroup(canvas, u"group"_s, {{100, 50}, {2, 3}, pi / 2, {20, 10}, {0, 0}});
    const auto child = addElement(group, u"child"_s, {{10, 5}, {2, 1}, pi / 2, {4, 2}, {0.5, 0.5}});
    const auto near = [](QPointF a, double x, double y) {
        EXPECT_NEAR(a.x(), x, 1e-9);
        EXPECT_NEAR(a.y(), y, 1e-9);
    };
    // In the group (10, 5) is scaled to (20, 15) and turned to (-15, 20).
    near(child->canvasPosition(), 85, 70);
    near(child->convertToCanvas(child->anchorPointInPts()), 85, 70);
    near(child->convertToElement({85, 70}), 2, 1);
    near(child->origin(), 8, 4);
    near(child->scaleOnCanvas(), 4, 3);
    EXPECT_NEAR(child->canvasRotation(), pi, 1e-6);
    EXPECT_EQ(child->canvasRotation(),
              static_cast<double>(
                  static_cast<float>(pi / 2 + static_cast<double>(static_cast<float>(pi / 2)))));
    EXPECT_EQ(canvas->canvasRotation(), 0);
    // 4 by 2 about its middle, scaled to 8 by 2, turned to 2 by 8.
    const QRectF frame = child->frame();
    near(frame.topLeft(), 10 - 1, 5 - 4);
    near(frame.bottomRight(), 10 + 1, 5 + 4);

    child->setZRotation(0.7);
    const QRectF before = child->frame();
    child->setAnchorPoint({1, 0});
    near(child->frame().topLeft(), before.left(), before.top());
    near(child->frame().bottomRight(), before.right(), before.bottom());

    // Very small on the canvas, but not nothing.
    group->setScale({1e-8, 1e-8});
    near(group->convertToElement(group->convertToCanvas({3, 4})), 3, 4);
}

// Without its timelines an element is described in the goldens of the tool.
TEST(ElementDescription, ListsTimelinesOrSaysThatAllAreEmpty) {
    const auto project = PCProject::init();
    const auto group = addGroup(project->canvas(), u"G"_s);
    const auto leaf = addElement(group, u"leaf"_s, {.opacity = 0.125});
    leaf->setLocked(true);
    leaf->timeline(PCPropertyTypeOpacity)->setFloatPropertyValue(0.5F, 0);
    const std::string text = group->debugDescriptionWithTimelines().toStdString();
    for (const char* part :
         {"  opacity:1.00 \n  * All Timelines Empty *\n", "  |     <PCMElement  (LOCKED)  \n",
          "  |       opacity:0.12 \n  |       * Timelines *\n  |       [timeline (leaf) opacity "
          "(count:1): <0|4-->0.5>] repeatBehavior:never\n"}) {
        EXPECT_THAT(text, testing::HasSubstr(part));
    }
}

}  // namespace
}  // namespace tweenery::test
