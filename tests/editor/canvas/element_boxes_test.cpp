#include "editor/canvas/element_boxes.h"

#include <gtest/gtest.h>

#include <QtMath>
#include <random>

#include "editor/editor_scene.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

void expectNear(const std::optional<QRectF>& actual, const QRectF& expected) {
    ASSERT_TRUE(actual);
    EXPECT_NEAR(actual->left(), expected.left(), 1e-3);
    EXPECT_NEAR(actual->top(), expected.top(), 1e-3);
    EXPECT_NEAR(actual->right(), expected.right(), 1e-3);
    EXPECT_NEAR(actual->bottom(), expected.bottom(), 1e-3);
}

TEST(ElementBoxes, EncloseTheFrames) {
    EditorScene scene;
    const double quarter = qDegreesToRadians(90.0);
    addElement(scene.canvas, u"plain"_s, {.position = {100, 50}, .size = {40, 20}});
    addElement(scene.canvas, u"turned"_s,
               {.position = {300, 200}, .rotation = quarter, .size = {40, 20}});
    addElement(scene.canvas, u"mirrored"_s,
               {.position = {100, 100}, .scale = {-2, 1}, .size = {10, 10}, .anchor = {0, 0}});
    addElement(scene.canvas, u"flat"_s, {.position = {500, 400}, .size = {0, 0}});
    const auto group =
        addGroup(scene.canvas, u"group"_s,
                 {.position = {600, 600}, .scale = {2, 2}, .rotation = quarter, .anchor = {0, 0}});
    addElement(group, u"child"_s, {.position = {10, 0}, .size = {4, 4}});
    struct Case {
        QStringList names;
        QRectF box;
    };
    const Case cases[] = {
        {{u"plain"_s}, {80, 40, 40, 20}},
        {{u"turned"_s}, {290, 180, 20, 40}},
        {{u"mirrored"_s}, {80, 100, 20, 10}},
        {{u"child"_s}, {596, 616, 8, 8}},
        {{u"plain"_s, u"turned"_s}, {80, 40, 230, 180}},
        {{u"plain"_s, u"flat"_s}, {80, 40, 420, 360}},  // a point counts
    };
    for (const auto& [names, box] : cases) {
        SCOPED_TRACE(names.join(u' ').toStdString());
        const auto elements = allNamed(*scene.project, names);
        expectNear(boxOfElements(elements, EditTime::setup()), box);
        expectNear(boxOfElementsOnScreen(elements), box);
    }
    EXPECT_FALSE(boxOfElements({}, EditTime::setup()));
    EXPECT_FALSE(boxOfElementsOnScreen({PCElement::init()}));
}

// The model's boxes and those of the layers are worked out in different ways.
TEST(ElementBoxes, AreWhatIsShownAtEachTime) {
    std::mt19937 random(7);
    const auto number = [&random](double from, double to) {
        return std::uniform_real_distribution<double>(from, to)(random);
    };
    const auto look = [&] {
        return Look{.position = {number(0, 800), number(0, 600)},
                    .scale = {number(-2, 2), number(0.2, 2)},
                    .rotation = number(0, 6),
                    .size = {number(5, 90), number(5, 90)},
                    .anchor = {number(-1, 2), number(0, 1)}};
    };
    EditorScene scene;
    PCElement::Elements all;
    PCElement::Ptr parent = scene.canvas;
    for (int depth = 0; depth < 4; ++depth) {
        all.push_back(addElement(parent, u"leaf %1"_s.arg(depth), look()));
        parent = addGroup(parent, u"group %1"_s.arg(depth), look());
        all.push_back(parent);
    }
    const auto check = [&](EditTime when) {
        scene.editor.layoutIfNeeded();
        for (const PCElement::Ptr& element : all) {
            const auto shown = boxOfElementsOnScreen({element});
            ASSERT_TRUE(shown);
            expectNear(boxOfElements({element}, when), *shown);
        }
        expectNear(boxOfElements(all, when), *boxOfElementsOnScreen(all));
    };
    check(EditTime::setup());
    selectNewAnimation(*scene.project, u"Move"_s);
    for (const PCElement::Ptr& element : all) {
        for (const int time : {0, 700}) {
            element->setTranslation({number(-99, 99), number(-99, 99)}, time);
            element->setScale({number(0.3, 2), number(0.3, 2)}, time);
            element->setZRotation(static_cast<float>(number(0, 6)), time);
        }
    }
    for (const int time : {0, 130, 700, 5000}) {
        scene.layers->show(EditTime::at(time));
        check(EditTime::at(time));
    }
}

}  // namespace
}  // namespace tweenery::test
