#include "editor/canvas/pasteboard_commands.h"

#include <gtest/gtest.h>

#include <array>

#include "base/errors.h"
#include "editor/editor_scene.h"
#include "support/model_builder.h"
#include "support/scripted_ports.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

QByteArray png(QColor color) {
    QImage image(12, 12, QImage::Format_ARGB32);
    image.fill(color);
    return encodeImage(image, ImageFormat::Png);
}

void addImageSet(PCProject& project, const QString& file, QColor color) {
    project.imageSetManager().addOrReplaceImageSetWithPCImage(
        PCImage::pcimageWithData(png(color), file));
}

std::array<QPointF, 3> cornersOf(const PCElement& element) {
    const QSizeF size = element.size();
    return {element.convertToCanvas({0, 0}), element.convertToCanvas({size.width(), 0}),
            element.convertToCanvas({0, size.height()})};
}

class PasteboardCommands : public testing::Test {
 protected:
    PCProject::Ptr project = PCProject::init();
    PCElementSelectionManager selection{project};
    MemoryPasteboard pasteboard;

    PasteboardCommands() { buildTree(*project, "A G{B C} D"); }
    void copy(const QStringList& names) {
        selection.selectElements(allNamed(*project, names));
        copySelectedElements(*project, selection, pasteboard);
    }
    PCElement::Elements pasteAt(const QStringList& names) {
        selection.selectElements(allNamed(*project, names));
        return pasteElements(*project, selection, pasteboard);
    }
    std::string tree() { return treeText(*project->canvas()); }
};

TEST_F(PasteboardCommands, InsertInFrontOfTheSelectionAsOneStep) {
    struct Case {
        QStringList copied, selected;
        const char* after;
    };
    const std::vector<Case> cases = {
        {{u"D"_s, u"A"_s}, {}, "D_1 A_1 A G{B C} D"},
        {{u"D"_s, u"A"_s}, {u"B"_s, u"D"_s}, "A G{B D_1 A_1 C} D"},
        {{u"G"_s}, {u"G"_s}, "A G{B C} G_1{B_1 C_1} D"},
        {{}, {u"A"_s}, "A G{B C} D"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.after);
        UndoWalk walk(*project, [this] { return exactState(*project->canvas()); });
        copy(c.copied);
        walk.edit([&] { pasteAt(c.selected); });
        EXPECT_EQ(tree(), c.after);
        EXPECT_EQ(project->undoManager().undoActionName(),
                  c.copied.empty() ? QString() : u"Paste"_s);
        walk.check();
    }
    EXPECT_TRUE(pasteboard.items.empty()) << "copying nothing clears the pasteboard";
}

// From and into groups that turn, scale equally and mirror.
TEST_F(PasteboardCommands, PasteWhereItStood) {
    const auto canvas = project->canvas();
    const auto from = addGroup(canvas, u"from"_s, {{300, 20}, {1.7, 1.7}, 1.1, {9, 9}, {0, 1}});
    const auto into = addGroup(canvas, u"into"_s, {{-70, 90}, {0.3, -0.3}, 0.7, {5, 5}});
    const auto source =
        addGroup(from, u"source"_s, {{1000, -500}, {2, -3}, 2.3, {3000, 900}, {0.2, 0.9}});
    addElement(source, u"child"_s, {{500, 500}, {1, 1}, 0.4, {200, 100}});
    addElement(into, u"place"_s);
    for (const QStringList& place : {QStringList{}, {u"source"_s}, {u"place"_s}}) {
        copy({u"source"_s});
        const auto pasted = pasteAt(place);
        ASSERT_EQ(pasted.size(), 1U);
        const std::array pairs{std::pair{source, pasted[0]},
                               std::pair{source->children()[0], pasted[0]->children()[0]}};
        for (const auto& [original, made] : pairs) {
            const auto expected = cornersOf(*original);
            const auto corners = cornersOf(*made);
            for (size_t i = 0; i < corners.size(); ++i) {
                EXPECT_NEAR(corners[i].x(), expected[i].x(), 1e-6)
                    << place.join(u' ').toStdString();
                EXPECT_NEAR(corners[i].y(), expected[i].y(), 1e-6);
            }
        }
    }
}

TEST_F(PasteboardCommands, BringTheImagesAlong) {
    addImageSet(*project, u"a.png"_s, Qt::red);
    addImageSet(*project, u"b.png"_s, Qt::red);
    named(*project, u"A"_s)->setImageName(u"a.png"_s);
    named(*project, u"C"_s)->setImageName(u"b.png"_s);
    copy({u"A"_s, u"G"_s});
    ASSERT_EQ(pasteboard.items.size(), 4U);
    EXPECT_EQ(pasteboard.items[1].type, PCImage::pasteboardType);
    EXPECT_EQ(pasteboard.items[2].type, PCElement::pasteboardType());

    const auto other = PCProject::init();
    addImageSet(*other, u"a.png"_s, Qt::blue);
    PCElementSelectionManager otherSelection(other);
    const auto pasted = pasteElements(*other, otherSelection, pasteboard);
    EXPECT_EQ(treeText(*other->canvas()), "A G{B C}");
    EXPECT_EQ(pasted[0]->imageName(), u"a.png"_s);
    for (const QString& name : {u"a.png"_s, u"b.png"_s}) {
        const QImage image = other->imageSetManager().imageWithName(name, 1);
        ASSERT_FALSE(image.isNull());
        EXPECT_EQ(image.pixelColor(3, 3), QColor(Qt::red));
    }
}

// The timelines of the children too; those that the copy had none of can be keyed at once.
TEST_F(PasteboardCommands, BringTheTimelinesAlong) {
    const auto animation = selectNewAnimation(*project, u"Bounce"_s);
    const auto canvas = project->canvas();
    canvas->setChildrenZPositions(PCProject::sortedSubelementIdentifiers(*canvas), 50);
    const auto group = named(*project, u"G"_s);
    group->setChildrenZPositions(PCProject::sortedSubelementIdentifiers(*group), 60);
    named(*project, u"C"_s)->setOpacity(0.25F, 100);
    copy({u"G"_s});
    auto plist = pasteboard.items[0].propertyList.toList()[0].toMap();
    plist.remove(u"OpacityTimelineData"_s);
    pasteboard.items[0].propertyList = QVariantList{plist};

    UndoWalk walk(*project, [&] {
        return exactState(*canvas) + keysText(*canvas->childrenZPositionsTimeline());
    });
    PCElement::Elements pasted;
    walk.edit([&] { pasted = pasteAt({u"A"_s}); });
    EXPECT_EQ(tree(), "A G_1{B_1 C_1} G{B C} D");
    const auto names = [this](const PCElement& element, int32_t time) {
        return project->namesFromIdentifiers(element.childrenZPositionsAtTimeInMS(time));
    };
    EXPECT_EQ(names(*canvas, 50), QStringList({u"A"_s, u"G 1"_s, u"G"_s, u"D"_s}));
    EXPECT_EQ(names(*pasted[0], 60), QStringList({u"B 1"_s, u"C 1"_s}));
    walk.check();
    project->undoManager().redo();
    pasted[0]->setOpacity(0.5F, 10);
    project->animationsManager().setSelectedAnimation(nullptr);
    project->animationsManager().setSelectedAnimation(animation);
    EXPECT_EQ(keysText(*pasted[0]->opacityTimeline()), "10:0.5");
    EXPECT_EQ(keysText(*pasted[0]->children()[1]->opacityTimeline()), "100:0.25");
}

TEST(PasteOnAScreen, LayersShowThePlayheadsTime) {
    EditorScene scene;
    MemoryPasteboard pasteboard;
    addImageSet(*scene.project, u"setup.png"_s, Qt::red);
    addImageSet(*scene.project, u"keyed.png"_s, Qt::blue);
    const auto source = addElement(scene.canvas, u"A"_s, {.position = {30, 40}});
    source->setImageName(u"setup.png"_s);
    selectNewAnimation(*scene.project, u"Move"_s);
    source->setTranslation({100, 0}, 500);
    source->setImageContents(u"keyed.png"_s, 500);
    scene.layers->show(EditTime::at(500));
    scene.select({u"A"_s});
    copySelectedElements(*scene.project, scene.selection, pasteboard);
    const auto pasted = pasteElements(*scene.project, scene.selection, pasteboard);
    ASSERT_EQ(pasted.size(), 1U);
    for (const auto& element : {source, pasted[0]}) {
        EXPECT_EQ(scene.layer(element).position(), QPointF(130, 40));
        EXPECT_EQ(scene.layer(element).contents().pixelColor(3, 3), QColor(Qt::blue));
    }
}

TEST_F(PasteboardCommands, RefuseHostileContentWhole) {
    copy({u"G"_s});
    const PasteboardItem good = pasteboard.items[0];
    const auto with = [&good](const QString& key, const QVariant& value) {
        QVariantMap plist = good.propertyList.toList()[0].toMap();
        plist.insert(key, value);
        return PasteboardItem{good.type, QVariantList{plist}};
    };
    const auto image = [](const QVariant& data, const QVariant& name) {
        return PasteboardItem{PCImage::pasteboardType, QVariantMap{{u"PCImage_Data"_s, data},
                                                                   {u"PCImage_Filename"_s, name}}};
    };
    QVariantMap deep{{u"layerName"_s, u"deep"_s}};
    for (int i = 1; i < PCElement::kMaximumDepth; ++i) {
        deep = {{u"layerName"_s, u"deep"_s}, {u"layerSublayers"_s, QVariantList{deep}}};
    }
    const QString taken = named(*project, u"A"_s)->identifier().toString();
    const auto xScale = KeyedArchiver::archivedDataWithRootObject(
        *PCKeyedPropertyTimeline::initForElement(nullptr, PCPropertyTypeScaleX));
    const auto twins = with(u"layerIdentifier"_s, u"twin"_s);
    const std::vector<std::vector<PasteboardItem>> cases = {
        {{good.type, 7}},
        {{good.type, QVariantList{}}},
        {with(u"layerPosition"_s, QVariantMap{{u"X"_s, u"left"_s}})},
        {with(u"layerOpacity"_s, std::numeric_limits<double>::quiet_NaN())},
        {with(u"layerScale"_s, QVariantMap{{u"X"_s, 1e300}, {u"Y"_s, 1}})},
        {with(u"layerSublayers"_s, QVariantList{u"text"_s})},
        {with(u"OpacityTimelineData"_s, QByteArray("noise"))},
        {with(u"OpacityTimelineData"_s, xScale)},
        {with(u"layerIdentifier"_s, u"../../etc"_s)},
        {with(u"layerIdentifier"_s, taken)},
        {twins, twins},
        {{good.type, QVariantList{deep}}},
        {image(QByteArray("noise"), u"new.png"_s)},
        {image(png(Qt::red), u".png"_s)},
        {image(png(Qt::red), u"new.svg"_s)},
        {image(png(Qt::red), 7)},
    };
    addImageSet(*project, u"old.png"_s, Qt::blue);
    project->undoManager().removeAllActions();
    const std::string before = exactState(*project->canvas());
    for (size_t i = 0; i < cases.size(); ++i) {
        SCOPED_TRACE(i);
        pasteboard.items = {image(png(Qt::red), u"old.png"_s), good};
        pasteboard.items.insert(pasteboard.items.end(), cases[i].begin(), cases[i].end());
        EXPECT_THROW(pasteAt({}), InputError);
        EXPECT_EQ(exactState(*project->canvas()), before);
        EXPECT_FALSE(project->undoManager().canUndo());
        EXPECT_EQ(project->imageSetManager().imageWithName(u"old.png"_s, 1).pixelColor(0, 0),
                  QColor(Qt::blue));
        EXPECT_EQ(project->imageSetManager().allImageSets().size(), 1U);
    }
}

}  // namespace
}  // namespace tweenery::test
