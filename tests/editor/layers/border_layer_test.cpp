#include "editor/layers/border_layer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "editor/editor_scene.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

constexpr double pi = std::numbers::pi;

// The upright box around a part of a border, in points of the screen.
QRectF onScreen(const EditorScene& scene, const Layer& part, const QRectF& rect) {
    return part.convertRectTo(rect, &scene.editor);
}

// How far the rotation band reaches beyond the outline, left and above, in points of the screen.
QSizeF bandWidth(const EditorScene& scene, const PCBorderLayer& border) {
    const Layer& band = border.rotationBand();
    const QRectF outer = onScreen(scene, band, band.shape()->path.boundingRect());
    const QRectF inner = onScreen(scene, band, border.outline().shape()->path.boundingRect());
    return {inner.left() - outer.left(), inner.top() - outer.top()};
}

TEST(BorderLayer, KeepsItsSizeOnTheScreen) {
    for (const float zoom : {0.25F, 1.0F, 4.0F}) {
        for (const QPointF scale : {QPointF(1, 1), QPointF(2, 0.5), QPointF(-3, 1)}) {
            SCOPED_TRACE(testing::Message() << "zoom " << zoom << ", scale " << scale.x());
            EditorScene scene;
            scene.magnify(zoom);
            const auto group =
                addGroup(scene.canvas, u"G"_s, {.scale = {0.5, 1}, .size = {300, 300}});
            addElement(group, u"A"_s, {.position = {200, 200}, .scale = scale, .size = {100, 100}});
            scene.select({u"A"_s});
            const PCBorderLayer& border = scene.border(u"A"_s);
            const Layer& handle = border.handle(PCBorderLocationTopLeft);
            EXPECT_NEAR(onScreen(scene, handle, handle.bounds()).width(), 13, 1e-9);
            const Layer& mark = border.anchorPointLayer();
            EXPECT_NEAR(onScreen(scene, mark, mark.bounds()).height(), 19, 1e-9);
            EXPECT_NEAR(border.outline().shape()->lineWidth * static_cast<double>(zoom), 2, 1e-9);
            EXPECT_NEAR(bandWidth(scene, border).width(), 20, 1e-4);
            EXPECT_NEAR(bandWidth(scene, border).height(), 20, 1e-4);
        }
    }
}

TEST(BorderLayer, TakesAZoomOfZeroForNone) {
    EditorScene scene;
    addElement(scene.canvas, u"A"_s, {.size = {100, 100}});
    scene.project->preferences().setCanvasZoomLevel(0);
    scene.select({u"A"_s});
    EXPECT_EQ(scene.border(u"A"_s).outline().shape()->lineWidth, 2);
}

TEST(BorderLayer, AFlatElementHasNoBandBesideIt) {
    EditorScene scene;
    addElement(scene.canvas, u"A"_s, {.position = {50, 50}, .scale = {0, 1}, .size = {100, 100}});
    scene.select({u"A"_s});
    EXPECT_EQ(bandWidth(scene, scene.border(u"A"_s)), QSizeF(0, 20));
    EXPECT_EQ(scene.border(u"A"_s).netXScaleOfBoundedLayer(), 0);
}

TEST(BorderLayer, StandsOnTheTurnedCorners) {
    EditorScene scene;
    scene.magnify(2);
    const auto element = addElement(scene.canvas, u"A"_s,
                                    {.position = {400, 300},
                                     .scale = {2, 1},
                                     .rotation = pi / 4,
                                     .size = {100, 60},
                                     .anchor = {0.2, 0.7}});
    scene.select({u"A"_s});
    const PCBorderLayer& border = scene.border(u"A"_s);
    const auto expectAt = [&](PCBorderLocation location, QPointF point) {
        const QPointF handle = border.toSuperlayer().map(border.handle(location).position());
        const QPointF expected = element->convertToCanvas(point);
        EXPECT_NEAR(handle.x(), expected.x(), 1e-9) << location;
        EXPECT_NEAR(handle.y(), expected.y(), 1e-9) << location;
    };
    expectAt(PCBorderLocationTopLeft, {0, 0});
    expectAt(PCBorderLocationTopCenter, {50, 0});
    expectAt(PCBorderLocationTopRight, {100, 0});
    expectAt(PCBorderLocationCenterLeft, {0, 30});
    expectAt(PCBorderLocationCenterRight, {100, 30});
    expectAt(PCBorderLocationBottomLeft, {0, 60});
    expectAt(PCBorderLocationBottomCenter, {50, 60});
    expectAt(PCBorderLocationBottomRight, {100, 60});
    const QPointF mark = border.toSuperlayer().map(border.anchorPointLayer().position());
    EXPECT_NEAR(mark.x(), 400, 1e-9);
    EXPECT_NEAR(mark.y(), 300, 1e-9);
}

TEST(BorderLayer, TellsItsPartsApart) {
    EditorScene scene;
    addElement(scene.canvas, u"A"_s,
               {.position = {300, 300}, .size = {200, 100}, .anchor = {0.5, 0.5}});
    scene.select({u"A"_s});
    struct Case {
        QPointF point;  // on the canvas; the element lies at (200, 250, 200, 100)
        PCBorderLocation location;
    };
    for (const Case& c : {Case{{200, 250}, PCBorderLocationTopLeft},
                          {{206, 256}, PCBorderLocationTopLeft},
                          {{194, 244}, PCBorderLocationTopLeft},
                          {{193, 243}, PCBorderLocationRotate},
                          {{300, 250}, PCBorderLocationTopCenter},
                          {{400, 250}, PCBorderLocationTopRight},
                          {{200, 300}, PCBorderLocationCenterLeft},
                          {{400, 300}, PCBorderLocationCenterRight},
                          {{200, 350}, PCBorderLocationBottomLeft},
                          {{300, 350}, PCBorderLocationBottomCenter},
                          {{400, 350}, PCBorderLocationBottomRight},
                          {{300, 300}, PCBorderLocationNone},  // the anchor point's mark
                          {{308, 308}, PCBorderLocationNone},
                          {{311, 311}, PCBorderLocationDrag},
                          {{250, 235}, PCBorderLocationRotate},
                          {{250, 229}, PCBorderLocationNone},
                          {{421, 320}, PCBorderLocationNone}}) {
        const PCBorderLayer& border = scene.border(u"A"_s);
        EXPECT_EQ(border.borderLocationForPoint(*border.fromSuperlayer(c.point)), c.location)
            << c.point.x() << ", " << c.point.y();
    }
}

// A small element's handles overlap its anchor mark.
TEST(BorderLayer, AHandleGoesBeforeTheAnchorMark) {
    EditorScene scene;
    addElement(scene.canvas, u"A"_s, {.position = {300, 300}, .size = {10, 10}});
    scene.select({u"A"_s});
    const PCBorderLayer& border = scene.border(u"A"_s);
    EXPECT_EQ(border.borderLocationForPoint(*border.fromSuperlayer({300, 300})),
              PCBorderLocationTopLeft);
}

TEST(BorderLayer, IsHitInItsBandAlone) {
    EditorScene scene;
    const auto element =
        addElement(scene.canvas, u"A"_s, {.position = {300, 300}, .size = {200, 100}});
    scene.select({u"A"_s});
    PCBorderLayer& border = scene.border(u"A"_s);
    EXPECT_EQ(border.hitTest({250, 235}), &scene.layer(element));
    EXPECT_EQ(border.hitTest({250, 300}), nullptr);
    EXPECT_EQ(border.hitTest({250, 200}), nullptr);
}

}  // namespace
}  // namespace tweenery::test
