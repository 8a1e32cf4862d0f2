#include "editor/layers/element_layer.h"

#include <gtest/gtest.h>

#include "base/errors.h"
#include "editor/editor_scene.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

QImage filled(QSize size, const QColor& color) {
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(color);
    return image;
}

// The names of the element layers in a layer, in their order.
std::string layerNames(const Layer& layer) {
    std::string names;
    for (const Layer* sublayer : layer.sublayers()) {
        const auto* elementLayer = dynamic_cast<const PCLayer*>(sublayer);
        if (!elementLayer) {
            names += '*';
            continue;
        }
        names += elementLayer->element()->name().toStdString();
        if (elementLayer->element()->isGroup()) { names += '{' + layerNames(*elementLayer) + '}'; }
    }
    return names;
}

TEST(ElementLayer, CarriesItsTimelinesAsAnimations) {
    EditorScene scene;
    const auto element = addElement(scene.canvas, u"A"_s);
    selectNewAnimation(*scene.project, u"Move"_s);
    element->setTranslation({100, 0}, 1000);
    element->setOpacity(0.5F, 1000);
    scene.canvas->setChildrenZPositions({element->identifier().toString()}, 0);
    PCLayer& layer = scene.layer(element);
    const auto keys = [&layer] {
        QStringList all;
        for (const QString& key : layer.animationKeys()) {
            all << key;
        }
        all.sort();
        return all.join(u' ').toStdString();
    };
    layer.addAllPropertyAnimationsExceptZIndex();
    EXPECT_EQ(keys(), "opacity transform.translation.x");
    layer.addAllPropertyAnimations();
    EXPECT_EQ(keys(), "opacity transform.translation.x zPosition");
    element->timeline(PCPropertyTypeOpacity)->removeAllKeyframes();
    layer.addAnimationForProperty(PCPropertyTypeOpacity);
    EXPECT_EQ(keys(), "transform.translation.x zPosition");
    EXPECT_THROW(layer.addAnimationForProperty(PCPropertyTypeScale), AssertionFailure);
}

TEST(ElementLayer, ShowsTheArtworkOfTheScreen) {
    EditorScene scene;
    scene.addImage(u"plain.png"_s, filled({10, 10}, Qt::red));
    scene.addImage(u"dense@2x.png"_s, filled({20, 20}, Qt::blue));
    const auto plain = addElement(scene.canvas, u"Plain"_s);
    const auto dense = addElement(scene.canvas, u"Dense"_s);
    plain->setImageName(u"plain.png"_s);
    dense->setImageName(u"dense.png"_s);
    struct Shown {
        QSize pixels;
        double scale;
    };
    const auto expectShown = [&](const PCElement::Ptr& element, Shown shown) {
        EXPECT_EQ(scene.layer(element).contents().size(), shown.pixels);
        EXPECT_EQ(scene.layer(element).contentsScale(), shown.scale);
    };
    expectShown(plain, {{10, 10}, 1});
    expectShown(dense, {{10, 10}, 1});
    scene.project->setBackingScale(2);
    expectShown(plain, {{10, 10}, 1});
    expectShown(dense, {{20, 20}, 2});

    // Both show the one decoded bitmap.
    const auto twin = addElement(scene.canvas, u"Twin"_s);
    twin->setImageName(u"plain.png"_s);
    EXPECT_EQ(scene.layer(twin).contents().constBits(), scene.layer(plain).contents().constBits());

    scene.addImage(u"plain.png"_s, filled({30, 30}, Qt::green));
    scene.project->updateContentScales();
    expectShown(plain, {{30, 30}, 1});
    scene.project->imageSetManager().deleteImageSetWithName(u"plain.png"_s);
    scene.project->updateContentScales();
    EXPECT_TRUE(scene.layer(plain).contents().isNull());
}

// In setup, keyed, and as an animation plays it.
TEST(ElementLayer, AnImageHasTheSizeOfItsSetOnEveryScreen) {
    const QSizeF points(10, 10);
    for (const double screen : {1.0, 1.25, 1.5, 2.0, 3.0}) {
        EditorScene scene;
        scene.addImage(u"plain.png"_s, filled({10, 10}, Qt::red));
        scene.addImage(u"dense@2x.png"_s, filled({20, 20}, Qt::blue));
        scene.project->setBackingScale(screen);
        for (const auto& [setup, keyed] :
             {std::pair{u"plain.png"_s, u"dense.png"_s}, {u"dense.png"_s, u"plain.png"_s}}) {
            SCOPED_TRACE(testing::Message() << setup.toStdString() << " on " << screen);
            scene.project->animationsManager().setSelectedAnimation(nullptr);
            const auto element = addElement(scene.canvas, u"A"_s);
            element->setImageName(setup);
            const auto drawn = [&] {
                const LayerValues& shown = scene.layer(element).presented();
                return QSizeF(shown.contents.size()) / shown.contentsScale;
            };
            EXPECT_EQ(drawn(), points);
            selectNewAnimation(*scene.project, u"Change"_s);
            element->setImageContents(keyed, 500);
            scene.layers->show(EditTime::at(500));
            EXPECT_EQ(drawn(), points);
            scene.layers->show(EditTime::setup());
            scene.layer(element).addAnimationForProperty(PCPropertyTypeImageContents);
            for (const double seconds : {0.0, 0.5}) {
                scene.layer(scene.canvas).setTimeOffset(seconds);
                EXPECT_EQ(drawn(), points) << "played at " << seconds;
            }
        }
    }
}

TEST(ElementLayer, AGroupShowsItsImageKeys) {
    EditorScene scene;
    scene.addImage(u"red.png"_s, filled({10, 10}, Qt::red));
    const auto group = addGroup(scene.canvas, u"G"_s);
    selectNewAnimation(*scene.project, u"Change"_s);
    group->setImageContents(u"red.png"_s, 0);
    scene.layers->show(EditTime::at(100));
    EXPECT_EQ(scene.layer(group).contents().size(), QSize(10, 10));
}

TEST(ElementLayer, TheCanvasStandsWhereTheEditorPutsIt) {
    EditorScene scene;
    const QPointF place = scene.layer(scene.canvas).position();
    const LayerTransform transform = scene.layer(scene.canvas).transform();
    const auto expectInPlace = [&] {
        EXPECT_EQ(scene.layer(scene.canvas).position(), place);
        EXPECT_EQ(scene.layer(scene.canvas).transform().scale, transform.scale);
        EXPECT_EQ(scene.layer(scene.canvas).transform().rotation, 0);
        EXPECT_EQ(scene.layer(scene.canvas).opacity(), 1);
    };
    scene.canvas->setPosition({70, 70});
    scene.canvas->setScale({3, 3});
    scene.canvas->setZRotation(1);
    scene.canvas->setAnchorPoint({0, 0});
    scene.canvas->setOpacity(0.5);
    expectInPlace();
    selectNewAnimation(*scene.project, u"Move"_s);
    scene.canvas->setTranslation({5, 5}, 0);
    expectInPlace();
}

TEST(ElementLayer, LosesItsBorderWithItsPlace) {
    EditorScene scene;
    const auto a = addElement(scene.canvas, u"A"_s);
    scene.select({u"A"_s});
    EXPECT_EQ(layerNames(scene.layer(scene.canvas)), "A****");
    EXPECT_EQ(scene.border(u"A"_s).colorOfBorder(), QColor::fromRgbF(0, 0.75F, 0.98F));
    selectNewAnimation(*scene.project, u"Move"_s);
    scene.select({u"A"_s});
    EXPECT_EQ(scene.border(u"A"_s).colorOfBorder(), QColor::fromRgbF(1, 0, 0));
    a->removeFromParentElement();
    EXPECT_EQ(layerNames(scene.layer(scene.canvas)), "***");
}

TEST(ElementLayer, GoesBeforeTheEditorOrAfterIt) {
    auto scene = std::make_unique<EditorScene>();
    buildTree(*scene->project, "A G{B}");
    scene->select({u"A"_s});
    scene->selection.deselectAllElements();
    scene->canvas->rebuildViewLayerHeirarchy();
    EXPECT_EQ(scene->editor.canvasLayer(), nullptr);
    EXPECT_EQ(scene->editor.layerAtLocationOnEditor({1, 1}, true), nullptr);
    scene->editor.setCanvasLayer(scene->layer(scene->canvas));
    EXPECT_EQ(layerNames(scene->layer(scene->canvas)), "AG{B}***");
    const PCProject::Ptr project = scene->project;
    scene.reset();
    EXPECT_EQ(PCLayer::of(*project->canvas()), nullptr) << "without a screen again";
}

// Artwork of 4 by 1 points with the alphas 0, 50, 51 and 255.
QImage alphaSteps() {
    QImage image(4, 1, QImage::Format_ARGB32_Premultiplied);
    const std::array alphas{0, 50, 51, 255};
    for (int x = 0; x < 4; ++x) {
        image.setPixelColor(x, 0, QColor(0, 0, 0, alphas[static_cast<size_t>(x)]));
    }
    return image;
}

TEST(ElementLayer, IsHitWhereItsArtworkShows) {
    EditorScene scene;
    scene.addImage(u"steps.png"_s, alphaSteps());
    const auto steps = addElement(scene.canvas, u"Steps"_s);
    steps->setImageName(u"steps.png"_s);
    steps->setAnchorPoint({0, 0});
    steps->setPosition({100, 100});
    steps->setScale({10, 10});
    for (const auto& [x, hit] : {std::pair{95.0, "-"},
                                 {105.0, "-"},
                                 {115.0, "-"},
                                 {125.0, "Steps"},
                                 {135.0, "Steps"},
                                 {145.0, "-"}}) {
        EXPECT_EQ(scene.pressed({x, 105}, true).toStdString(), hit) << x;
    }
    steps->setSize({1e90, 1e90});
    EXPECT_FALSE(scene.layer(steps).containsPoint({1e80, 1e80})) << "beyond the artwork";
    steps->setSize({4, 1});
    steps->setLocked(true);
    EXPECT_EQ(scene.pressed({135, 105}, true), u"-"_s);
    steps->setLocked(false);
    steps->setHidden(true);
    EXPECT_EQ(scene.pressed({135, 105}, true), u"Steps"_s) << "hidden elements are hit like others";
    steps->setScale({0, 10});
    EXPECT_EQ(scene.pressed({100, 105}, true), u"-"_s);
}

TEST(ElementLayer, AGroupCoversWhatItsChildrenCoverWithinItsBounds) {
    EditorScene scene;
    const auto group = addGroup(scene.canvas, u"G"_s,
                                {.position = {100, 100}, .size = {100, 100}, .anchor = {0, 0}});
    scene.addPicture(group, u"In"_s, {.position = {10, 10}, .size = {20, 20}, .anchor = {0, 0}});
    scene.addPicture(group, u"Out"_s, {.position = {90, 10}, .size = {20, 20}, .anchor = {0, 0}});
    const PCLayer& layer = scene.layer(group);
    EXPECT_TRUE(layer.containsPoint({15, 15}));
    EXPECT_FALSE(layer.containsPoint({50, 50}));
    EXPECT_TRUE(layer.containsPoint({95, 15}));
    EXPECT_FALSE(layer.containsPoint({105, 15})) << "the group's bounds end at 100";
    EXPECT_FALSE(scene.layer(scene.canvas).containsPoint({115, 115}));
    EXPECT_EQ(scene.pressed({205, 115}, true), u"Out"_s) << "the child itself is hit";
}

}  // namespace
}  // namespace tweenery::test
