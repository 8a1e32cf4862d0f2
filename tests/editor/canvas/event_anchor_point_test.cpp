#include "editor/canvas/event_anchor_point.h"

#include <gtest/gtest.h>

#include "editor/editor_scene.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

struct AnchorScene : EditorScene {
    PCElement::Ptr a = addElement(canvas, u"a"_s, {.position = {100, 200}, .size = {20, 40}});
    PCElement::Ptr b = addElement(canvas, u"b"_s, {.position = {300, 400}});
    EventAnchorPoint anchor{project, selection, editor};

    QPointF point() const { return project->eventAnchorPoint(); }
    bool showsRing() const { return editor.showsAnchorPoint(); }
    bool hasAxis(const QString& name) const {
        return !border(name).anchorPointLayer().contents().isNull();
    }
};

TEST(EventAnchorPoint, StandsAtTheElementSelectedLast) {
    AnchorScene scene;
    EXPECT_EQ(scene.point(), QPointF());
    EXPECT_FALSE(scene.showsRing());
    scene.select({u"b"_s, u"a"_s});
    EXPECT_EQ(scene.point(), QPointF(100, 200));
    EXPECT_FALSE(scene.showsRing());
    EXPECT_TRUE(scene.hasAxis(u"a"_s) && scene.hasAxis(u"b"_s));
    scene.select({u"a"_s});
    EXPECT_TRUE(scene.showsRing());
    EXPECT_TRUE(scene.hasAxis(u"a"_s));

    // It follows its element, and the anchor point in it.
    scene.a->setPosition({150, 220});
    EXPECT_EQ(scene.point(), QPointF(150, 220));
    scene.a->setAnchorPoint({0, 0});
    EXPECT_EQ(scene.point(), QPointF(140, 200));
    EXPECT_EQ(scene.editor.anchorPointLayer().position(), QPointF(140, 200));
    scene.magnify(4);
    scene.anchor.updateAnchorPointIcons();
    EXPECT_EQ(scene.editor.anchorPointLayer().bounds(), QRectF(0, 0, 4.75, 4.75));
    scene.selection.deselectAllElements();
    EXPECT_FALSE(scene.showsRing());
}

TEST(EventAnchorPoint, GoesByWhatIsShownInAnAnimation) {
    AnchorScene scene;
    selectNewAnimation(*scene.project, u"Move"_s);
    scene.a->setTranslation({50, -20}, 300);
    scene.layers->show(EditTime::at(300));
    scene.select({u"a"_s});
    EXPECT_FALSE(scene.showsRing());
    EXPECT_TRUE(scene.hasAxis(u"a"_s));
    scene.layers->show(EditTime::at(300));
    scene.anchor.updateAdditiveAnchorPointLocation();
    EXPECT_EQ(scene.point(), QPointF(150, 180));
}

TEST(EventAnchorPoint, StaysDuringARotationAndWhereItIsDraggedTo) {
    AnchorScene scene;
    scene.select({u"a"_s});
    scene.anchor.setInEventLoop(true);
    scene.a->setPosition({1, 1});
    EXPECT_EQ(scene.point(), QPointF(100, 200));
    scene.anchor.setInEventLoop(false);
    scene.anchor.setMovedEventAnchorPoint({7, 8});
    EXPECT_EQ(scene.point(), QPointF(7, 8));
    EXPECT_EQ(scene.editor.anchorPointLayer().position(), QPointF(7, 8));
    scene.b->setScale({2, 2});  // anything that moves has it worked out anew
    EXPECT_EQ(scene.point(), QPointF(1, 1));
}

}  // namespace
}  // namespace tweenery::test
