#include "editor/canvas/canvas_picture.h"

#include <gtest/gtest.h>

#include <future>

#include "editor/canvas/event_anchor_point.h"
#include "editor/editor_scene.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

class SelectionCounter : public PCElementSelectionManagerListener {
 public:
    int count = 0;
    void elementSelectionManagerDidSelectElement(PCElementSelectionManager&,
                                                 const PCElement::Ptr&) override {
        ++count;
    }
    void elementSelectionManagerDidDeselectElement(PCElementSelectionManager&,
                                                   const PCElement::Ptr&) override {
        ++count;
    }
};

TEST(CanvasPicture, IsThatOfTheCanvasUnselectedAtActualSize) {
    EditorScene scene({120, 90});
    EventAnchorPoint anchor(scene.project, scene.selection, scene.editor);
    scene.addPicture(scene.canvas, u"a"_s,
                     {.position = {30, 40}, .rotation = 0.4, .size = {30, 20}});
    scene.addPicture(scene.canvas, u"b"_s, {.position = {80, 40}, .size = {30, 20}});
    const QImage expected = scene.editor.imageRepresentation();
    for (const QStringList& selected : {QStringList(), {u"a"_s}, {u"a"_s, u"b"_s}}) {
        for (const float zoom : {1.0F, 0.5F, 3.0F}) {
            scene.magnify(zoom);
            scene.select(selected);
            anchor.updateAnchorPointIcons();
            const QImage screen = scene.editor.imageRepresentation();
            SelectionCounter counter;
            const auto subscription = scene.selection.addSelectionListener(&counter);
            EXPECT_EQ(CanvasPicture(scene.editor, {}).paint(), expected) << zoom;
            EXPECT_EQ(counter.count, 0);
            EXPECT_EQ(scene.editor.imageRepresentation(), screen) << zoom;
        }
    }
    const QSizeF view(2000, 700);
    EXPECT_EQ(CanvasPicture(scene.editor, view).paint().size(), QSize(2000, 1290));
}

// It is a picture of the moment at which it was taken.
TEST(CanvasPicture, IsPaintedByAnotherThreadWhileTheProjectIsEdited) {
    EditorScene scene({120, 90});
    scene.addPicture(scene.canvas, u"a"_s, {.position = {30, 40}, .size = {30, 20}});
    const QImage expected = scene.editor.imageRepresentation();
    const CanvasPicture picture(scene.editor, {});
    std::future<QImage> painting = std::async(std::launch::async, [&] { return picture.paint(); });
    const auto element = named(*scene.project, u"a"_s);
    for (int i = 0; i < 50; ++i) {
        element->setPosition({30.0 + i, 40});
        scene.editor.imageRepresentation();
    }
    scene.project->canvas()->removeSubelementAtIndex(0);
    EXPECT_EQ(painting.get(), expected);
}

}  // namespace
}  // namespace tweenery::test
