#include "scene/display_list.h"

#include <gtest/gtest.h>

#include <QPainterPath>
#include <QRegion>

#include "scene/layer_renderer.h"
#include "scene/layer_scene.h"

namespace tweenery::test {
namespace {

// One letter an item: Image, Fill, Shape and its Line, Border, ( and ) around an opacity group, [
// and ] around what is cut.
std::string partsOf(const DisplayList& list) {
    std::string parts;
    for (const DisplayItem& item : list.items()) {
        parts += "IFSLB()[]{}"[item.drawing.index()];
    }
    return parts;
}

class DisplayListTest : public testing::Test {
 protected:
    DisplayListTest() { LayerScene::place(root, {0, 0, 100, 100}); }

    const DisplayList& build(const Affine& toDevice = {}) {
        list.build(root, toDevice, {100, 100});
        return list;
    }

    LayerScene scene;
    Layer root;
    DisplayList list;
};

const QRect kEverywhere(0, 0, 100, 100);
const QImage kImage = imageFilled(10, 10, Qt::red);

TEST_F(DisplayListTest, LeavesOutWhatDoesNotShow) {
    struct Case {
        const char* what;
        void (*change)(Layer&);
        const char* parts;
    };
    const Case cases[] = {
        {"as it is", [](Layer&) {}, "I"},
        {"right of the picture", [](Layer& l) { l.setPosition(QPointF(102, 0)); }, ""},
        {"above it", [](Layer& l) { l.setPosition(QPointF(0, -12)); }, ""},
        {"partly in it", [](Layer& l) { l.setPosition(QPointF(-9, -9)); }, "I"},
        {"hidden", [](Layer& l) { l.setHidden(true); }, ""},
        {"transparent", [](Layer& l) { l.setOpacity(0); }, ""},
        {"empty", [](Layer& l) { l.setBounds({}); }, ""},
        {"flat", [](Layer& l) { l.setTransform(turned(0, QPointF(1, 0))); }, ""},
        {"with a transparent background",
         [](Layer& l) { l.setStyle({.background = QColor(1, 2, 3, 0), .borderColor = {}}); }, "I"},
        {"with a border of no width",
         [](Layer& l) { l.setStyle({.background = QColor(Qt::red), .borderColor = Qt::red}); },
         "FI"},
        {"with a border and a mask",
         [](Layer& l) {
             l.setStyle({.background = QColor(Qt::red), .borderColor = Qt::red, .borderWidth = 1});
             l.setMasksToBounds(true);
         },
         "F[I]B"},
        {"with a mask that is turned",
         [](Layer& l) {
             l.setTransform(turned(1));
             l.setMasksToBounds(true);
         },
         "{I}"},
    };
    for (const Case& row : cases) {
        Layer& layer = scene.addImage(root, {0, 0}, kImage);
        row.change(layer);
        EXPECT_EQ(partsOf(build()), row.parts) << row.what;
        layer.removeFromSuperlayer();
    }
}

TEST_F(DisplayListTest, MakesGroupsOnlyWhereSeveralThingsFadeTogether) {
    Layer& group = scene.add(root, {0, 0, 50, 50});
    group.setOpacity(0.5);
    EXPECT_EQ(partsOf(build()), "");
    Layer& leaf = scene.addImage(group, {0, 0}, kImage);
    leaf.setOpacity(0.5);
    EXPECT_EQ(partsOf(build()), "I");
    EXPECT_EQ(list.items()[0].opacity, 0.25);
    Layer& other = scene.addImage(group, {20, 0}, kImage);
    EXPECT_EQ(partsOf(build()), "(II)");
    EXPECT_EQ(list.items()[0].pixels, list.items()[1].pixels | list.items()[2].pixels);
    EXPECT_EQ(std::get<OpacityBegin>(list.items()[0].drawing).end, 3U);
    other.setPosition(QPointF(500, 0));
    EXPECT_EQ(partsOf(build()), "I") << "the other one lies outside";
}

TEST_F(DisplayListTest, CutsOnlyWhereTheMaskTakesSomethingAway) {
    root.setMasksToBounds(true);
    Layer& layer = scene.addImage(root, {0, 0}, kImage);
    EXPECT_EQ(partsOf(build()), "I") << "the picture ends where the mask does";
    EXPECT_EQ(partsOf(build(Affine::scaling(0.5, 0.5))), "[I]");
    layer.setPosition(QPointF(60, 0));
    root.setBounds({0, 0, 50, 50});
    EXPECT_EQ(partsOf(build()), "") << "outside of the mask";
}

TEST_F(DisplayListTest, SharesThePixelsOfImages) {
    scene.addImage(root, {0, 0}, kImage);
    scene.addImage(root, {20, 20}, kImage);
    for (const DisplayItem& item : build().items()) {
        EXPECT_EQ(std::get<ImageDrawing>(item.drawing).image.constBits(), kImage.constBits());
    }
}

// Draws the layer turned to many angles, each in a picture of its own, and looks at all pixels.
TEST_F(DisplayListTest, TurnedItemsTouchOnlyTheirPartOfEachRow) {
    struct Case {
        const char* what;
        void (*make)(ShapeLayer&);
        double mostOfBoxes;  // share of the pixels of all boxes
    };
    const Case cases[] = {
        {"image", [](ShapeLayer& l) { l.setContents(kImage); }, 0.8},
        {"background and border with round corners",
         [](ShapeLayer& l) {
             l.setStyle({.background = QColor(Qt::red),
                         .borderColor = Qt::green,
                         .borderWidth = 3,
                         .cornerRadius = 4});
         },
         0.8},
        {"shape larger than its layer",
         [](ShapeLayer& l) {
             l.editShape().path.addEllipse(-10, -20, 60, 40);
             l.editShape().fillColor = Qt::red;
             l.editShape().strokeColor = Qt::blue;
             l.editShape().lineWidth = 5;
         },
         0.9},
        {"group",
         [](ShapeLayer& l) {
             l.setStyle({.background = QColor(Qt::red), .borderColor = {}});
             l.setContents(kImage);
             l.setOpacity(0.5);
         },
         1},
    };
    for (const Case& row : cases) {
        ShapeLayer& layer = scene.addShape(root, {50, 50, 40, 16});
        row.make(layer);
        double ofRows = 0;
        double ofBoxes = 0;
        for (int step = 0; step < 17; ++step) {
            const double angle = 0.01 + 0.37 * step;
            layer.setTransform(turned(angle, QPointF(1.3, 0.7)));
            build();
            QImage picture;
            LayerRenderer(1).paint(list, picture);
            for (int y = 0; y < picture.height(); ++y) {
                QRegion allowed;
                for (const DisplayItem& item : list.items()) {
                    allowed |= item.pixelsIn({0, y, 100, 1});
                    ofRows += item.pixelsIn({0, y, 100, 1}).width();
                    ofBoxes += (item.pixels & QRect(0, y, 100, 1)).width();
                }
                for (int x = 0; x < picture.width(); ++x) {
                    const bool isPainted = qAlpha(picture.pixel(x, y)) > 0;
                    ASSERT_TRUE(!isPainted || allowed.contains({x, y}))
                        << row.what << " turned by " << angle << ", at " << x << ", " << y;
                }
            }
        }
        EXPECT_LE(ofRows, ofBoxes * row.mostOfBoxes) << row.what;
        layer.removeFromSuperlayer();
    }
}

TEST_F(DisplayListTest, LaysOutAndPresentsBeforeItLists) {
    struct LaidOut : Layer {
        void layoutSublayers() override { setPosition(QPointF(30, 0)); }
    } layer;
    layer.setAnchorPoint(QPointF(0, 0));
    layer.setBounds({0, 0, 10, 10});
    layer.setContents(kImage);
    layer.setNeedsLayout();
    root.addSublayer(layer);
    KeyframeAnimation fade;
    fade.property = LayerProperty::Opacity;
    fade.keyTimes = {0, 1};
    fade.values = {0, 1};
    fade.timingFunctions = {{}};
    fade.duration = 2;
    layer.addAnimation(fade, QStringLiteral("fade"));
    root.setSpeed(0);
    root.setTimeOffset(0.5);
    ASSERT_EQ(partsOf(build()), "I");
    EXPECT_EQ(list.items()[0].opacity, 0.25);
    EXPECT_EQ(list.items()[0].toDevice.offset.x(), 30);
}

TEST_F(DisplayListTest, TellsPicturesApart) {
    ShapeLayer& layer = scene.addShape(root, {10, 10, 10, 10});
    layer.setContents(kImage);
    layer.editShape().path.addRect(0, 0, 10, 10);
    layer.editShape().fillColor = Qt::red;
    layer.editShape().strokeColor = Qt::red;
    const auto expectChange = [&](const char* what, size_t index, const auto& change) {
        const DisplayItem before = build().items()[index];
        change();
        EXPECT_FALSE(before.looksLike(build().items()[index], kEverywhere, 0)) << what;
        EXPECT_TRUE(before.isSamePartAs(build().items()[index])) << what;
    };
    const DisplayItem image = build().items()[0];
    EXPECT_TRUE(image.looksLike(build().items()[0], kEverywhere, 0));
    EXPECT_FALSE(image.looksLike(build().items()[1], kEverywhere, 0));
    expectChange("place", 0, [&] { layer.setPosition({10 + 1e-9, 10}); });
    expectChange("opacity of parts", 0,
                 [&] { root.setTransform({}), layer.setContents(kImage.copy()); });
    expectChange("path", 1, [&] { layer.editShape().path.addRect(2, 2, 2, 2); });
    expectChange("fill", 1, [&] { layer.editShape().fillColor = Qt::blue; });
    expectChange("stroke", 2, [&] { layer.editShape().strokeColor = Qt::blue; });
    expectChange("dashes", 2, [&] { layer.editShape().lineDashPattern = {1, 2}; });
    expectChange("phase", 2, [&] { layer.editShape().lineDashPhase = 1; });
}

}  // namespace
}  // namespace tweenery::test
