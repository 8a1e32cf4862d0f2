#include "editor/inspector/inspector_edits.h"

#include <gtest/gtest.h>

#include <cmath>

#include "editor/controller_scene.h"
#include "editor/inspector/image_choices.h"
#include "editor/inspector/inspector_values.h"
#include "storage/bitmap.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;
using enum InspectorField;
using Pane = InspectorPaneKind;

/// What fields, dial and slider show: "10 20 100 100 0 100", an underscore where values differ.
std::string shown(ControllerScene& scene) {
    const InspectorValues values = inspectorValues(
        *scene.project, scene.controller.selectionManager(), scene.controller.editTime());
    QStringList texts;
    for (const InspectorField field : {PositionX, PositionY, ScaleX, ScaleY, Rotation, Opacity}) {
        const QString text = textAtRest(field, values[field]);
        texts << (text.isEmpty() ? u"_"_s : text);
    }
    return texts.join(u' ').toStdString();
}

QString step(ControllerScene& scene) {
    return scene.controller.undoManager().undoActionName();
}

int undoSteps(ControllerScene& scene) {
    int count = 0;
    while (scene.controller.undoManager().undo()) {
        ++count;
    }
    return count;
}

TEST(InspectorPanes, FollowTheSelection) {
    struct Case {
        QStringList selected;
        bool isSetup;
        std::vector<Pane> panes;
        const char* title;
    };
    const std::vector<Pane> four{Pane::Position, Pane::Scale, Pane::Rotation, Pane::Opacity};
    const auto with = [&four](std::vector<Pane> more) {
        more.insert(more.begin(), four.begin(), four.end());
        return more;
    };
    const Case cases[] = {
        {{}, true, {Pane::CanvasSize}, "Canvas"},
        {{}, false, {Pane::ZPosition}, "Canvas"},
        {{u"A"_s}, true, with({Pane::Image}), "A"},
        {{u"A"_s}, false, with({Pane::Image}), "A"},
        {{u"G"_s}, true, four, "G"},
        {{u"G"_s}, false, with({Pane::ZPosition}), "G"},
        {{u"H"_s}, false, four, "H"},  // one child
        {{u"A"_s, u"G"_s}, false, four, "Multiple Values"},
    };
    for (const Case& c : cases) {
        ControllerScene scene("A G{B C} H{D}");
        if (!c.isSetup) { selectNewAnimation(*scene.project, u"Run"_s); }
        scene.select(c.selected);
        EXPECT_EQ(inspectorPanes(scene.controller.selectionManager(), c.isSetup), c.panes)
            << c.title << c.isSetup;
        EXPECT_EQ(inspectorHeader(scene.controller.selectionManager()).title.toStdString(),
                  c.title);
    }
}

TEST(InspectorValues, AreComparedByTheirWholeParts) {
    struct Case {
        Look a;
        Look b;
        const char* shown;
    };
    const double degree = M_PI / 180;
    const Case cases[] = {
        {{.position = {10.2, -0.7}}, {.position = {10.7, 0.7}}, "10 0 100 100 0 100"},
        {{.position = {10.7, 5}}, {.position = {11.2, 5}}, "_ 5 100 100 0 100"},
        {{.scale = {1.006, 1}}, {.scale = {1.009, 2}}, "0 0 100 _ 0 100"},
        {{.rotation = 45 * degree}, {.rotation = 30 * degree}, "0 0 100 100 45 100"},
        {{.rotation = 50 * degree}, {.rotation = 60 * degree}, "0 0 100 100 _ 100"},
        {{.rotation = 22.5 * degree, .opacity = 0.125}, {}, "0 0 100 100 22.5 _"},
        {{.opacity = 0.333}, {.opacity = 0.9}, "0 0 100 100 0 33.3"},
        {{.scale = {1.1499999, 1}}, {.scale = {1.15, 1}}, "0 0 115 100 0 100"},
    };
    for (const Case& c : cases) {
        ControllerScene scene;
        addElement(scene.project->canvas(), u"A"_s, c.a);
        addElement(scene.project->canvas(), u"B"_s, c.b);
        scene.select({u"A"_s, u"B"_s});
        EXPECT_EQ(shown(scene), c.shown);
    }
    EXPECT_EQ(textInUse(10.756), u"10.76"_s);
    EXPECT_EQ(textInUse({}), QString());
}

// What is set is what is shown then, at setup and at a time, and it is one step of its name.
TEST(InspectorEdits, SetAndStepEveryField) {
    struct Case {
        InspectorField field;
        double set;
        double step;
        const char* afterSet;
        const char* afterStep;
        const char* name;
    };
    const Case cases[] = {
        {PositionX, 12.5, 10, "12 0 100 100 0 100", "22 0 100 100 0 100", "Move"},
        {PositionY, -4, -1, "0 -4 100 100 0 100", "0 -5 100 100 0 100", "Move"},
        {ScaleX, 115, 1, "0 0 115 100 0 100", "0 0 116 100 0 100", "Scale"},
        {ScaleY, 50, -10, "0 0 100 50 0 100", "0 0 100 40 0 100", "Scale"},
        {Rotation, 22.5, 1, "0 0 100 100 22.5 100", "0 0 100 100 23.5 100", "Rotate"},
        {Opacity, 50, 10, "0 0 100 100 0 50", "0 0 100 100 0 60", "Opacity"},
    };
    for (const bool isSetup : {true, false}) {
        for (const Case& c : cases) {
            ControllerScene scene("A B");
            if (!isSetup) { selectNewAnimation(*scene.project, u"Run"_s); }
            scene.controller.timeManager().setPlayheadPositionInMS(500);
            scene.select({u"A"_s, u"B"_s});
            const std::string before = shown(scene);
            InspectorEdits& edits = scene.controller.inspectorEdits();
            edits.set(c.field, c.set);
            EXPECT_EQ(shown(scene), c.afterSet);
            EXPECT_EQ(step(scene).toStdString(), c.name);
            edits.step(c.field, c.step);
            EXPECT_EQ(shown(scene), c.afterStep);
            EXPECT_EQ(undoSteps(scene), 2) << c.name;
            EXPECT_EQ(shown(scene), before) << c.name;
        }
    }
}

TEST(InspectorEdits, DragOfManyEventsIsOneStepOrNone) {
    ControllerScene scene("A B");
    scene.select({u"A"_s, u"B"_s});
    InspectorEdits& edits = scene.controller.inspectorEdits();
    const std::string before = scene.stored();
    for (const bool isCancelled : {true, false}) {
        edits.beginDrag();
        for (int i = 0; i < 40; ++i) {
            edits.step(PositionX, 1);
        }
        EXPECT_EQ(shown(scene), "40 0 100 100 0 100");
        EXPECT_FALSE(scene.controller.commands().isEnabled(u"delete"_s)) << "waits for the drag";
        isCancelled ? edits.cancelDrag() : edits.endDrag();
        EXPECT_EQ(scene.stored() == before, isCancelled);
    }
    EXPECT_EQ(step(scene), u"Move"_s);
    EXPECT_EQ(undoSteps(scene), 1);
    edits.beginDrag();
    edits.endDrag();
    EXPECT_EQ(undoSteps(scene), 0);
}

TEST(InspectorEdits, RunOfArrowKeysIsOneStepUntilSomethingComesBetween) {
    struct Case {
        const char* what;
        std::function<void(ControllerScene&)> between;
        int steps;
    };
    const Case cases[] = {
        {"nothing", [](ControllerScene&) {}, 1},
        {"a pause", [](ControllerScene& s) { s.clock.seconds += 1.5; }, 2},
        {"another selection", [](ControllerScene& s) { s.select({u"B"_s}); }, 2},
        {"another edit", [](ControllerScene& s) { s.perform("toggleHidden"); }, 3},
    };
    for (const Case& c : cases) {
        ControllerScene scene("A B");
        scene.select({u"A"_s});
        InspectorEdits& edits = scene.controller.inspectorEdits();
        edits.step(PositionX, 1);
        edits.step(PositionX, 10);
        c.between(scene);
        edits.step(PositionX, 1);
        EXPECT_EQ(undoSteps(scene), c.steps) << c.what;
    }
}

TEST(InspectorEdits, StepsBackFromABoundBeginThere) {
    ControllerScene scene("A");
    scene.select({u"A"_s});
    InspectorEdits& edits = scene.controller.inspectorEdits();
    for (const double delta : {1, 1, 10, -1, 1, 1, -1, -1}) {
        edits.step(Opacity, delta);
    }
    EXPECT_EQ(shown(scene), "0 0 100 100 0 98");
    EXPECT_EQ(undoSteps(scene), 1);
}

TEST(InspectorEdits, AdditiveModeAndScaleLockGoThroughTheCalculators) {
    ControllerScene scene("A B C");
    scene.select({u"A"_s, u"B"_s, u"C"_s});
    scene.controller.setAdditiveMode(true);
    InspectorEdits& edits = scene.controller.inspectorEdits();
    const auto xs = [&scene] {
        QStringList texts;
        for (const char* name : {"A", "B", "C"}) {
            texts << typedNumberText(
                named(*scene.project, QString::fromLatin1(name))->position().x());
        }
        return texts.join(u' ').toStdString();
    };
    edits.step(PositionX, 10);
    EXPECT_EQ(xs(), "30 20 10") << "the last selected moves least";
    edits.step(PositionX, 10);
    EXPECT_EQ(xs(), "60 40 20");
    edits.setOpacity(0.9);
    EXPECT_NEAR(named(*scene.project, u"A"_s)->opacity(), 0.7, 1e-9);

    scene.controller.setAdditiveMode(false);
    scene.select({u"A"_s});
    edits.setScalesLocked(true);
    EXPECT_EQ(step(scene), u"Lock Scales"_s);
    edits.step(ScaleX, 50);
    const QPointF scale = named(*scene.project, u"A"_s)->scale();
    EXPECT_EQ(scale, QPointF(1.5, 1.5));
}

TEST(InspectorEdits, CanvasAndItsSwap) {
    ControllerScene scene;
    const QSizeF before = scene.project->canvas()->size();
    InspectorEdits& edits = scene.controller.inspectorEdits();
    edits.set(CanvasWidth, 640);
    edits.step(CanvasHeight, 10);
    edits.swapCanvasSize();
    EXPECT_EQ(scene.project->canvas()->size(), QSizeF(before.height() + 10, 640));
    EXPECT_EQ(step(scene), u"Swap Width and Height"_s);
    EXPECT_EQ(undoSteps(scene), 3);
    EXPECT_EQ(scene.project->canvas()->size(), before);
}

TEST(InspectorEdits, KeyButtonsTellThreeStates) {
    ControllerScene scene("A G{B C}");
    selectNewAnimation(*scene.project, u"Run"_s);
    InspectorEdits& edits = scene.controller.inspectorEdits();
    PCProjectTimeManager& time = scene.controller.timeManager();
    const auto state = [&scene](Pane pane) {
        return inspectorValues(*scene.project, scene.controller.selectionManager(),
                               scene.controller.editTime())
            .key(pane);
    };
    const std::pair<Pane, QStringList> cases[] = {
        {Pane::Position, {u"A"_s, u"G"_s}},
        {Pane::Scale, {u"A"_s}},
        {Pane::Rotation, {u"A"_s}},
        {Pane::Opacity, {u"A"_s}},
        {Pane::Image, {u"A"_s}},
        {Pane::ZPosition, {u"G"_s}},
        {Pane::ZPosition, {}},
    };
    for (const auto& [pane, selected] : cases) {
        scene.select(selected);
        time.setPlayheadPositionInMS(100);
        EXPECT_EQ(state(pane), KeyState::NotAnimated);
        edits.createKeyframes(pane);
        EXPECT_EQ(state(pane), KeyState::KeyframeHere);
        time.setPlayheadPositionInMS(101);
        EXPECT_EQ(state(pane), KeyState::Animated);
        EXPECT_EQ(step(scene), u"Create Keyframe"_s);
        EXPECT_TRUE(scene.controller.undoManager().undo());
        EXPECT_EQ(state(pane), KeyState::NotAnimated);
    }
}

TEST(InspectorEdits, ZPositionsMoveByIdentity) {
    struct Case {
        int from;  // row
        size_t to;
        const char* rows;  // foremost first
    };
    const Case cases[] = {
        {0, 4, "Same B Same A"},  // to the back
        {3, 0, "Same A Same B"}, {2, 1, "A B Same Same"}, {1, 1, nullptr},
        {1, 2, nullptr},         {2, 9, "A Same Same B"},
    };
    for (const Case& c : cases) {
        ControllerScene scene("S B T A");  // front: A T B S
        named(*scene.project, u"S"_s)->setName(u"Same"_s);
        const PCElement::Ptr last = named(*scene.project, u"T"_s);
        last->setName(u"Same"_s);
        selectNewAnimation(*scene.project, u"Run"_s);
        const PCElement::Ptr canvas = scene.project->canvas();
        const auto rows = [&] {
            return zPositionRows(*scene.project, *canvas, scene.controller.editTime());
        };
        const auto before = rows();
        const auto moved = before[static_cast<size_t>(c.from)];
        const bool hasMoved =
            scene.controller.inspectorEdits().moveZPosition(canvas, moved->identifier(), c.to);
        EXPECT_EQ(hasMoved, c.rows != nullptr);
        if (!hasMoved) {
            EXPECT_EQ(rows(), before);
            continue;
        }
        QStringList names;
        for (const PCElement::Ptr& element : rows()) {
            names << element->name().section(u' ', 0, 0);
        }
        EXPECT_EQ(names.join(u' ').toStdString(), c.rows) << c.from << " to " << c.to;
        EXPECT_EQ(step(scene), u"Z-Position"_s);
        scene.controller.undoManager().undo();
        EXPECT_EQ(rows(), before);
    }
}

TEST(ImageChoices, AreUsedByElementsAndByKeyframesOfAnyAnimation) {
    ControllerScene scene("A B");
    PCProject& project = *scene.project;
    QImage picture(4, 4, QImage::Format_ARGB32);
    picture.fill(Qt::red);
    for (const char* name : {"d", "b", "c", "a", "e"}) {
        const QString file = QString::fromLatin1(name) + u".png"_s;
        project.imageSetManager().addOrReplaceImageSetWithPCImage(
            PCImage::pcimageWithData(encodeImage(picture, ImageFormat::Png), file));
    }
    const auto names = [](const ImageChoices::ImageSets& sets) {
        QString text;
        for (const auto& set : sets) {
            text += set->name().section(u'.', 0, 0);
        }
        return text.toStdString();
    };
    scene.select({u"A"_s});
    scene.controller.inspectorEdits().setImage(u"d.png"_s);
    EXPECT_EQ(step(scene), u"Image"_s);
    EXPECT_EQ(named(project, u"A"_s)->size(), QSizeF(4, 4));
    selectNewAnimation(project, u"Run"_s);
    scene.select({u"A"_s});
    scene.controller.inspectorEdits().setImage(u"b.png"_s);
    EXPECT_EQ(named(project, u"A"_s)->imageName(), u"d.png"_s) << "keyed";
    EXPECT_EQ(shownImageName(scene.controller.selectionManager(), scene.controller.editTime()),
              u"b.png"_s);
    scene.controller.selectAnimation(nullptr);

    const ImageChoices choices = imageChoices(project);
    EXPECT_EQ(names(choices.used), "bd");
    EXPECT_EQ(names(choices.unused), "ace");
    removeImageSets(project, choices.unused);
    EXPECT_EQ(step(scene), u"Remove Unused Images"_s);
    EXPECT_EQ(names(imageChoices(project).unused), "");
    for (int i = 0; i < 2; ++i) {
        EXPECT_TRUE(scene.controller.undoManager().undo());
        EXPECT_EQ(names(imageChoices(project).unused), "ace");
        EXPECT_TRUE(scene.controller.undoManager().redo());
        EXPECT_EQ(names(imageChoices(project).used), "bd");
        EXPECT_EQ(names(imageChoices(project).unused), "");
    }
}

}  // namespace
}  // namespace tweenery::test
