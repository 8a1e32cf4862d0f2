#include <gtest/gtest.h>

#include "storage/bitmap.h"
#include "support/model_builder.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

/// A group with a child, both keyed in the selected animation.
struct Source {
    PCProject::Ptr project = PCProject::init();
    PCElement::Ptr outer = addGroup(project->canvas(), u"outer"_s, {{10, 20}, {2, 2}, 1, {8, 8}});
    PCElement::Ptr group = addGroup(outer, u"group"_s, {{1, 2}, {3, 1}, 0.5, {4, 4}, {0, 1}, 0.5});
    PCElement::Ptr child = addElement(group, u"child"_s, {{5, 6}, {1, 1}, 0, {7, 9}});
    PCAnimation::Ptr animation = selectNewAnimation(*project, u"Bounce"_s);

    Source() {
        group->setOpacity(0.25F, 100);
        child->setXScale(4, 200);
        child->setLocked(true);
    }
    QVariantList copied() const { return group->pasteboardPropertyList(); }
};

TEST(Pasteboard, CarriesAnElementWithItsDescendants) {
    const Source source;
    const auto target = PCProject::init();
    const auto animation = selectNewAnimation(*target, u"Slide"_s);
    const auto pasted =
        PCElement::elementWithPasteablePlist(source.copied().first().toMap(), target);
    target->undoManager().removeAllActions();
    target->insertPastedElements({pasted}, target->canvas(), 0);
    EXPECT_EQ(treeText(*target->canvas()), "group{child}");
    EXPECT_NE(pasted->identifier(), source.group->identifier());
    // Where and as big as it stood on its canvas.
    EXPECT_EQ(pasted->position().x(), source.group->canvasPosition().x());
    EXPECT_EQ(pasted->scale().x(), 6);
    EXPECT_EQ(pasted->zRotation(), 1.5);
    EXPECT_EQ(pasted->opacity(), 0.5);
    EXPECT_EQ(pasted->anchorPoint().y(), 1);
    const auto child = pasted->children()[0];
    EXPECT_EQ(child->position().x(), 5);
    EXPECT_EQ(child->size().height(), 9);
    EXPECT_TRUE(child->locked());
    EXPECT_EQ(keysText(*pasted->opacityTimeline()), "100:0.5");
    EXPECT_EQ(keysText(*child->scaleXTimeline()), "200:4");
    EXPECT_EQ(child->scaleXTimeline()->element(), child.get());

    // All of it belongs to the animation, the timelines that came empty too.
    child->setYScale(3, 50);
    target->animationsManager().setSelectedAnimation(nullptr);
    target->animationsManager().setSelectedAnimation(animation);
    EXPECT_EQ(keysText(*child->scaleXTimeline()) + keysText(*child->scaleYTimeline()), "200:450:3");
    target->undoManager().undo();  // the selections
    target->undoManager().undo();
    EXPECT_EQ(treeText(*target->canvas()), "");
}

TEST(Pasteboard, KnowsSetupMode) {
    const Source source;
    const auto setup = PCProject::init();
    const auto pasted =
        PCElement::elementWithPasteablePlist(source.copied().first().toMap(), setup);
    setup->insertPastedElements({pasted}, setup->canvas(), 0);
    EXPECT_EQ(pasted->opacityTimeline(), nullptr) << "timelines are dropped";
    const QVariantList copy = pasted->pasteboardPropertyList();
    EXPECT_FALSE(copy.first().toMap().contains(u"OpacityTimelineData"_s));

    // A copy without timelines, pasted into an animation, can be keyed at once.
    const auto again = PCElement::elementWithPasteablePlist(copy.first().toMap(), source.project);
    source.project->insertPastedElements({again}, source.project->canvas(), 0);
    EXPECT_EQ(again->name(), u"group 1"_s);
    again->setOpacity(0.5F, 10);
    source.project->animationsManager().setSelectedAnimation(nullptr);
    source.project->animationsManager().setSelectedAnimation(source.animation);
    EXPECT_EQ(keysText(*again->opacityTimeline()), "10:1");
}

TEST(Pasteboard, TakesTheHighestArtworkOnce) {
    const auto project = PCProject::init();
    const auto group = addGroup(project->canvas(), u"group"_s);
    QImage image(12, 12, QImage::Format_ARGB32);
    image.fill(Qt::red);
    const QByteArray png = encodeImage(image, ImageFormat::Png);
    for (const QString& file : {u"a@2x.png"_s, u"b.png"_s, u"keyed.png"_s, u"unused.png"_s}) {
        project->imageSetManager().addImageSetWithPCImage(PCImage::pcimageWithData(png, file));
    }
    for (const QString& name : {u"b.png"_s, u"a.png"_s, u"b.png"_s, u"gone.png"_s}) {
        addElement(group, u"leaf"_s)->setImageName(name);
    }
    const auto copied = [&] {
        QStringList names;
        for (const auto& copy : project->imagesForCopyingElements({group})) {
            names += copy->filename();
        }
        return names;
    };
    EXPECT_EQ(copied(), QStringList({u"a@2x.png"_s, u"b.png"_s}));
    // An animation's keyframes are copied, and so are the images that they show.
    selectNewAnimation(*project, u"Blink"_s);
    group->children()[1]->setImageContents(u"keyed.png"_s, 100);
    EXPECT_EQ(copied(), QStringList({u"a@2x.png"_s, u"b.png"_s, u"keyed.png"_s}));
    project->animationsManager().setSelectedAnimation(nullptr);
    EXPECT_EQ(copied(), QStringList({u"a@2x.png"_s, u"b.png"_s})) << "copied without keyframes";
}

}  // namespace
}  // namespace tweenery::test
