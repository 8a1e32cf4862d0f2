#include "editor/canvas/cursor_choice.h"

#include <gtest/gtest.h>

#include <QtMath>

#include "editor/editor_scene.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

// "image @ degrees", with the hot spot if it is not the centre.
std::string text(const std::optional<CanvasCursor>& cursor) {
    if (!cursor) { return "none"; }
    std::string result = cursor->image.toStdString() + " @ " + shortestText(cursor->degrees);
    if (cursor->hotSpot) { result += " from " + std::to_string(cursor->hotSpot->x()); }
    return result;
}

TEST(CursorChoice, TellsWhatAPressWouldDo) {
    struct Case {
        int location;
        PCSelectionState tool;
        bool isAdditive, isInverted;
        const char* cursor;
    };
    constexpr auto kSelect = PCSelectionStateSelect;
    constexpr auto kDirect = PCSelectionStateDirect;
    // The layer is at 330 degrees, the pointer at 20 degrees around the anchor point.
    const Case cases[] = {
        {PCEditorLocationNone, kSelect, false, false, "cursor_select @ 0 from 5"},
        {PCEditorLocationDrag, kSelect, true, false, "cursor_select_additive @ 0 from 5"},
        {PCEditorLocationDrag, kDirect, false, false, "cursor_direct @ 0 from 5"},
        {PCEditorLocationNone, kDirect, true, false, "cursor_direct_additive @ 0 from 5"},
        {PCEditorLocationNone, PCSelectionStateHand, true, false, "cursor_hand @ 0 from 0"},
        {PCEditorLocationCanvasLeft, kSelect, false, false, "HorizontalCursor @ 0"},
        {PCEditorLocationCanvasRight, kSelect, true, true, "HorizontalCursor @ 0"},
        {PCEditorLocationCanvasTop, kSelect, false, false, "VerticalCursor @ 0"},
        {PCEditorLocationCanvasBottom, kSelect, false, false, "VerticalCursor @ 0"},
        {PCEditorLocationCanvasTopRight, kSelect, false, false, "UpwardDiagonalCursor @ 0"},
        {PCEditorLocationCanvasBottomLeft, kSelect, false, false, "UpwardDiagonalCursor @ 0"},
        {PCEditorLocationCanvasTopLeft, kSelect, false, false, "DownwardDiagonalCursor @ 0"},
        {PCEditorLocationCanvasBottomRight, kSelect, false, false, "DownwardDiagonalCursor @ 0"},
        {PCEditorLocationHandleTopLeft, kSelect, false, false, "cursor_transform @ 285"},
        {PCEditorLocationHandleBottomRight, kSelect, false, true, "cursor_transform @ 375"},
        {PCEditorLocationHandleTopCenter, kSelect, false, true, "cursor_transform @ 420"},
        {PCEditorLocationHandleBottomCenter, kDirect, false, false, "cursor_transform @ 420"},
        {PCEditorLocationHandleTopRight, kSelect, false, false, "cursor_transform @ 195"},
        {PCEditorLocationHandleBottomLeft, kSelect, false, true, "cursor_transform @ 465"},
        {PCEditorLocationHandleCenterLeft, kSelect, true, false, "cursor_transform_additive @ 330"},
        {PCEditorLocationHandleCenterRight, kSelect, false, true, "cursor_transform @ 330"},
        {PCEditorLocationRotate, kSelect, false, false, "cursor_rotate @ -25"},
        {PCEditorLocationRotate, kSelect, true, false, "cursor_rotate_additive @ -25"},
        {PCEditorLocationAnchorPoint, kSelect, true, false, "AnchorPointCursor @ 0"},
        {20, kSelect, false, false, "none"},
        {-1, kSelect, false, false, "none"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(text(cursorForEventLocation(static_cast<PCEditorLocation>(c.location), 330,
                                              c.isAdditive, c.isInverted, 20, c.tool)),
                  c.cursor)
            << c.location;
    }
}

TEST(CursorChoice, MeasuresTheAngleFromTheVertical) {
    const std::pair<QPointF, float> cases[] = {
        {{0, 10}, 0}, {{10, 10}, 45}, {{10, 0}, 90}, {{0, -10}, -180}, {{-10, 0}, -90}};
    for (const auto& [pointer, degrees] : cases) {
        EXPECT_EQ(std::fmod(rotationFromAnchorPoint({0, 0}, pointer) - degrees, 360), 0)
            << pointer.x() << ' ' << pointer.y();
    }
}

TEST(CursorChoice, FollowsThePointerOverTheCanvas) {
    EditorScene scene;
    scene.addPicture(
        scene.canvas, u"box"_s,
        {.position = {200, 200}, .rotation = qDegreesToRadians(30.0), .size = {100, 60}});
    const auto box = named(*scene.project, u"box"_s);
    const auto at = [&](QPointF point, PCSelectionState tool = PCSelectionStateSelect) {
        return text(cursorWhileHovering(
            scene.editor, *scene.project, scene.selection, tool, point,
            scene.project->isSetupMode() ? EditTime::setup() : EditTime::at(500)));
    };
    EXPECT_EQ(at({1, 500}), "HorizontalCursor @ 0");
    scene.select({u"box"_s});
    scene.editor.layoutIfNeeded();
    EXPECT_EQ(at({1, 500}), "cursor_select @ 0 from 5");  // edges rest while something is selected
    EXPECT_EQ(at({1, 500}, PCSelectionStateHand), "none");
    EXPECT_EQ(at(box->convertToCanvas({50, 45})), "cursor_select @ 0 from 5");
    const QPointF outsideSide = box->convertToCanvas({104, 30});
    EXPECT_EQ(at(outsideSide).substr(0, 22), "cursor_transform @ 330");
    box->setScale({-1, 1});
    scene.editor.layoutIfNeeded();
    EXPECT_EQ(at(box->convertToCanvas({-4, -4})).substr(0, 21), "cursor_transform @ 37");
    box->setScale({1, 1});

    // Straight below the event anchor point the rotate cursor stands upright.
    scene.project->setEventAnchorPoint(box->canvasPosition());
    scene.editor.layoutIfNeeded();
    box->setZRotation(0);
    scene.editor.layoutIfNeeded();
    EXPECT_EQ(at({200, 234}), "cursor_transform @ 450");
    EXPECT_EQ(at({200, 248}), "cursor_rotate @ -45");

    selectNewAnimation(*scene.project, u"Turn"_s);
    box->setZRotation(static_cast<float>(qDegreesToRadians(90.0)), 500);
    scene.select({u"box"_s});
    scene.layers->show(EditTime::at(500));
    scene.editor.layoutIfNeeded();
    // Where its side is now, turned by a quarter in 32 bits.
    EXPECT_EQ(at({200, 254}).substr(0, 25), "cursor_transform @ 269.99");
}

}  // namespace
}  // namespace tweenery::test
