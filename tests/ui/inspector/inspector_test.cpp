#include <gtest/gtest.h>

#include <QAccessible>
#include <QAccessibleInterface>
#include <QCursor>
#include <QListView>

#include "editor/inspector/image_choices.h"
#include "ui/inspector/image_chooser.h"
#include "ui/inspector/inspector_pane.h"
#include "ui/widgets/popover.h"
#include "ui/window/split_view.h"
#include "ui/window/window_scene.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

/// A window whose inspector shows, with widgets found by the names that assistive tools see.
class InspectorScene : public WindowScene {
 public:
    explicit InspectorScene(std::string_view tree = "A B C", const QStringList& selected = {u"A"_s},
                            bool isSetup = true)
        : WindowScene(tree) {
        window->resize(1000, 800);
        window->splitView().setRightPaneVisible(true);
        if (!isSetup) { selectNewAnimation(project(), u"Run"_s); }
        controller().selectionManager().selectElements(allNamed(project(), selected));
        const auto hasSlidIn = [this] {
            return inWindow(inspector(), {inspector()->width(), 0}).x() == window->width();
        };
        EXPECT_TRUE(QTest::qWaitFor(hasSlidIn));
        QTest::qWait(1);
        window->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(window.get()));
    }

    QWidget* control(const QString& name) {
        for (QWidget* widget : inspector()->findChildren<QWidget*>()) {
            if (widget->accessibleName() == name && widget->isVisible()) { return widget; }
        }
        ADD_FAILURE() << "no control " << qPrintable(name);
        return nullptr;
    }
    NumberField* field(const QString& name) { return qobject_cast<NumberField*>(control(name)); }
    InspectorPane* inspector() { return window->findChild<InspectorPane*>(); }
    QPoint inWindow(QWidget* widget, QPoint point) { return widget->mapTo(window.get(), point); }
    QPoint middle(QWidget* widget) { return inWindow(widget, widget->rect().center()); }
    QPoint label(const QString& name) { return middle(control(name)) - QPoint(90, 0); }
    void type(const QString& text) {
        for (const QChar c : text) {
            QTest::keyClick(window->windowHandle(), c.toLatin1());
        }
        QCoreApplication::processEvents();
    }
    void focus(const QString& name) {
        click(middle(control(name)));
        QCoreApplication::processEvents();
    }
    QString focused() {
        return window->focusWidget() ? window->focusWidget()->accessibleName() : QString();
    }
    int undoSteps() {
        int count = 0;
        while (controller().undoManager().undo()) {
            ++count;
        }
        QCoreApplication::processEvents();
        return count;
    }
};

TEST(Inspector, FieldsTakeWhatIsTyped) {
    struct Case {
        const char* field;
        const char* text;
        Qt::Key end;
        const char* shown;
        int steps;
        const char* focus;
    };
    const Case cases[] = {
        {"Position X", "12.75", Qt::Key_Return, "12", 1, "Canvas"},
        {"Position X", "100+20", Qt::Key_Tab, "120", 1, "Position Y"},
        {"Rotation", "22.5", Qt::Key_Enter, "22.5", 1, "Canvas"},
        {"Opacity", "50%", Qt::Key_Return, "50", 1, "Canvas"},
        {"Scale Y", "33", Qt::Key_Escape, "100", 0, "Canvas"},
        {"Position X", "", Qt::Key_Tab, "160", 0, "Position Y"},
        {"Position X", "", Qt::Key_Return, "160", 0, "Canvas"},
        {"Position X", "160", Qt::Key_Return, "160", 0, "Canvas"},
        {"Opacity", "150", Qt::Key_Return, "100", 0, "Canvas"},
        {"Position X", "v", Qt::Key_Escape, "160", 0, "Canvas"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        InspectorScene scene;
        const QString name = QString::fromLatin1(c.field);
        scene.focus(name);
        scene.type(QString::fromLatin1(c.text));
        scene.key(c.end);
        EXPECT_EQ(scene.field(name)->text(), QString::fromLatin1(c.shown));
        EXPECT_FALSE(scene.field(name)->isRefused());
        EXPECT_EQ(scene.focused(), QString::fromLatin1(c.focus));
        EXPECT_EQ(scene.controller().interaction().tool(), PCSelectionStateSelect);
        EXPECT_EQ(scene.undoSteps(), c.steps);
    }
}

TEST(Inspector, FieldInUseShowsDecimalsAndIsSelected) {
    InspectorScene scene;
    scene.element("A")->setPosition({10.756, 20});
    QCoreApplication::processEvents();
    NumberField* field = scene.field(u"Position X"_s);
    EXPECT_EQ(field->text(), u"10"_s);
    scene.focus(u"Position X"_s);
    EXPECT_EQ(field->text(), u"10.76"_s);
    EXPECT_EQ(field->selectedText(), u"10.76"_s);
    scene.key(Qt::Key_Tab);
    EXPECT_EQ(field->text(), u"10"_s);
    EXPECT_EQ(scene.element("A")->position().x(), 10.756) << "only visited";
}

TEST(Inspector, RefusedTextStaysMarkedUntilItIsMended) {
    InspectorScene scene;
    NumberField* field = scene.field(u"Position X"_s);
    scene.focus(u"Position X"_s);
    scene.type(u"abc"_s);
    scene.key(Qt::Key_Return);
    EXPECT_TRUE(field->isRefused());
    EXPECT_EQ(field->toolTip(), u"“abc” is not a number."_s);
    EXPECT_EQ(scene.focused(), u"Position X"_s) << "to be mended";
    EXPECT_EQ(scene.element("A")->position().x(), 160);
    scene.key(Qt::Key_Tab);
    EXPECT_EQ(field->text(), u"abc"_s);
    EXPECT_TRUE(field->isRefused());
    scene.focus(u"Position X"_s);
    EXPECT_EQ(field->text(), u"160"_s);
    scene.type(u"7"_s);
    scene.key(Qt::Key_Return);
    EXPECT_FALSE(field->isRefused());
    EXPECT_TRUE(field->toolTip().isEmpty());
    EXPECT_EQ(scene.element("A")->position().x(), 7);
}

TEST(Inspector, UndoBelongsToTheProjectUntilTheTextWasChanged) {
    InspectorScene scene;
    scene.focus(u"Position X"_s);
    scene.type(u"5"_s);
    scene.key(Qt::Key_Tab);
    scene.focus(u"Scale X"_s);
    scene.type(u"9"_s);
    scene.key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(scene.element("A")->position().x(), 5) << "the text's own";
    scene.key(Qt::Key_Escape);
    scene.focus(u"Scale X"_s);
    scene.key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(scene.element("A")->position().x(), 160);
}

TEST(Inspector, ArrowKeysStepWhatIsTyped) {
    InspectorScene scene;
    scene.focus(u"Position X"_s);
    scene.type(u"50"_s);
    scene.key(Qt::Key_Up);
    scene.key(Qt::Key_Up, Qt::ShiftModifier);
    scene.key(Qt::Key_Down);
    EXPECT_EQ(scene.element("A")->position().x(), 60);
    EXPECT_EQ(scene.field(u"Position X"_s)->text(), u"60"_s);
    EXPECT_EQ(scene.field(u"Position X"_s)->selectedText(), u"60"_s);
    scene.key(Qt::Key_Return);
    EXPECT_EQ(scene.undoSteps(), 2) << "the typed value, the run of keys";
}

TEST(Inspector, ScrubCountsEventsAndIsOneStep) {
    struct Case {
        int distance;
        int events;
        bool isCancelled;
        double x;
        int steps;
    };
    const Case cases[] = {
        {1, 40, false, 200, 1}, {3, 40, false, 200, 1}, {-2, 10, false, 150, 1},
        {0, 5, false, 160, 0},  {1, 10, true, 160, 0},
    };
    for (const Case& c : cases) {
        InspectorScene scene;
        QPoint point = scene.label(u"Position X"_s);
        scene.press(point);
        for (int i = 0; i < c.events; ++i) {
            point += QPoint(c.distance, c.distance == 0 ? 1 : 0);
            scene.move(point);
        }
        if (c.isCancelled) { scene.key(Qt::Key_Escape); }
        scene.move(point + QPoint(0, 1));
        scene.release(point);
        EXPECT_EQ(scene.element("A")->position().x(), c.x) << c.distance;
        EXPECT_FALSE(scene.controller().inspectorEdits().isDragging());
        EXPECT_EQ(scene.undoSteps(), c.steps) << c.distance;
    }
}

TEST(Inspector, DialAndSliderDragAsOneStepAndAnswerKeys) {
    InspectorScene scene("A B", {u"A"_s});
    QWidget* dial = scene.control(u"Rotation Dial"_s);
    const QPoint centre = scene.middle(dial);
    scene.press(centre + QPoint(15, 0));
    for (const QPoint point : {QPoint(15, 15), QPoint(0, 15), QPoint(-15, 0)}) {
        scene.move(centre + point);
    }
    scene.release(centre + QPoint(-15, 0));
    EXPECT_NEAR(scene.element("A")->zRotation(), M_PI, 0.2);
    EXPECT_EQ(scene.undoSteps(), 1);
    EXPECT_EQ(scene.element("A")->zRotation(), 0);
    dial->setFocus();
    scene.key(Qt::Key_Up);
    scene.key(Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_NEAR(scene.element("A")->zRotation(), 11 * M_PI / 180, 1e-6);
    EXPECT_EQ(scene.undoSteps(), 1);

    QWidget* slider = scene.control(u"Opacity Slider"_s);
    const QPoint left = scene.inWindow(slider, {8, slider->height() / 2});
    scene.press(left + QPoint(40, 0));
    scene.move(left + QPoint(30, 0));
    scene.move(left + QPoint(25, 0));
    scene.release(left + QPoint(25, 0));
    EXPECT_NEAR(scene.element("A")->opacity(), 0.5, 0.011);
    EXPECT_EQ(scene.undoSteps(), 1);
    slider->setFocus();
    scene.key(Qt::Key_Left);
    EXPECT_NEAR(scene.element("A")->opacity(), 0.99, 1e-9);
    scene.key(Qt::Key_Home);
    EXPECT_EQ(scene.element("A")->opacity(), 0);
}

TEST(Inspector, KeyButtonReactsInItsCircleAlone) {
    InspectorScene scene("A B", {u"A"_s}, false);
    QWidget* button = scene.control(u"Rotation Keyframe"_s);
    const auto timeline = scene.element("A")->zRotationTimeline();
    EXPECT_EQ(button->accessibleDescription(), u"Not animated"_s);
    EXPECT_EQ(button->toolTip(), u"Create Keyframe"_s);
    for (const QPoint corner : {QPoint(14, 14), QPoint(-14, 14), QPoint(19, 0)}) {
        scene.click(scene.middle(button) + corner);
        EXPECT_TRUE(timeline->isEmpty()) << corner.x();
    }
    scene.click(scene.middle(button) + QPoint(12, 12));
    EXPECT_EQ(timeline->keyframesCount(), 1U);
    QCoreApplication::processEvents();
    EXPECT_EQ(button->accessibleDescription(), u"Keyframe here"_s);
    scene.controller().timeManager().setPlayheadPositionInMS(100);
    QCoreApplication::processEvents();
    EXPECT_EQ(button->accessibleDescription(), u"Animated"_s);
    scene.controller().selectAnimation(nullptr);
    scene.controller().selectionManager().selectElements({scene.element("A")});
    QCoreApplication::processEvents();
    EXPECT_FALSE(scene.control(u"Rotation Keyframe"_s)->isEnabled());
}

TEST(Inspector, TabGoesRoundFieldsThenControls) {
    InspectorScene scene;
    scene.focus(u"Position X"_s);
    QStringList names;
    do {
        names << scene.focused();
        scene.key(Qt::Key_Tab);
    } while (scene.focused() != u"Position X"_s && names.size() < 20);
    EXPECT_EQ(names, (QStringList{u"Position X"_s, u"Position Y"_s, u"Scale X"_s, u"Scale Y"_s,
                                  u"Rotation"_s, u"Opacity"_s, u"Lock Scales"_s, u"Rotation Dial"_s,
                                  u"Opacity Slider"_s, u"Image Source"_s}));
    scene.key(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(scene.focused(), u"Image Source"_s);
}

TEST(Inspector, CanvasSizeIsTypedAndSwapped) {
    InspectorScene scene("A", {});
    scene.focus(u"Width"_s);
    scene.type(u"300"_s);
    scene.key(Qt::Key_Tab);
    EXPECT_EQ(scene.focused(), u"Height"_s);
    scene.type(u"200"_s);
    scene.key(Qt::Key_Return);
    scene.click(scene.middle(scene.control(u"Swap Width and Height"_s)));
    QCoreApplication::processEvents();
    EXPECT_EQ(scene.project().canvas()->size(), QSizeF(200, 300));
    EXPECT_EQ(scene.field(u"Width"_s)->text(), u"200"_s);
    EXPECT_EQ(scene.undoSteps(), 3);
}

TEST(Inspector, ZPositionRowsMoveByDragAndKeys) {
    InspectorScene scene("A B C D", {}, false);
    auto* list = qobject_cast<QListView*>(scene.control(u"Z-Position"_s));
    ASSERT_TRUE(list);
    const auto rows = [list] {
        QString names;
        for (int i = 0; i < list->model()->rowCount(); ++i) {
            names += list->model()->index(i, 0).data().toString();
        }
        return names.toStdString();
    };
    const auto row = [&](int i) {
        return scene.inWindow(list->viewport(),
                              list->visualRect(list->model()->index(i, 0)).center());
    };
    EXPECT_EQ(rows(), "DCBA");
    scene.drag(row(0), row(3) + QPoint(0, 15) - row(0));  // to the back
    QCoreApplication::processEvents();
    EXPECT_EQ(rows(), "CBAD");
    scene.press(row(0));
    scene.move(row(2));
    scene.key(Qt::Key_Escape);
    scene.release(row(2));
    EXPECT_EQ(rows(), "CBAD");
    scene.click(row(1));
    list->setFocus();
    scene.key(Qt::Key_Up, Qt::AltModifier);
    EXPECT_EQ(rows(), "BCAD");
    scene.key(Qt::Key_Down, Qt::AltModifier);
    scene.key(Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(rows(), "CABD") << "the current row stays with its element";
    EXPECT_EQ(scene.undoSteps(), 4);
    EXPECT_EQ(rows(), "DCBA");
}

TEST(Inspector, RefreshesOnceForManyChangesAndFollowsThePlayhead) {
    InspectorScene scene("A B", {u"A"_s, u"B"_s}, false);
    for (const char* name : {"A", "B"}) {
        scene.element(name)->setXTranslation(0, 0);
        scene.element(name)->setXTranslation(100, 1000);
    }
    NumberField* field = scene.field(u"Translate X"_s);
    QStringList shown;
    QObject::connect(field, &QLineEdit::textChanged, field,
                     [&shown](const QString& text) { shown << text; });
    for (const int time : {100, 250, 500}) {
        scene.controller().timeManager().setPlayheadPositionInMS(time);
    }
    QCoreApplication::processEvents();
    EXPECT_EQ(shown.size(), 1);
    EXPECT_EQ(field->text(), u"50"_s);
    scene.element("B")->setXTranslation(70, 500);
    QCoreApplication::processEvents();
    EXPECT_EQ(field->text(), QString()) << "they differ";
}

// The chooser.

struct ChooserScene : InspectorScene {
    ChooserScene() {
        QImage picture(8, 8, QImage::Format_ARGB32);
        picture.fill(Qt::blue);
        for (const QString& file : {u"blue.png"_s, u"azure@2x.png"_s}) {
            project().imageSetManager().addOrReplaceImageSetWithPCImage(
                PCImage::pcimageWithData(encodeImage(picture, ImageFormat::Png), file));
        }
        click(middle(control(u"Image Source"_s)));
        QCoreApplication::processEvents();
    }
    ImageChooser* chooser() { return window->findChild<ImageChooser*>(); }
    QListView* grid(const QString& name) {
        for (QListView* list : chooser()->findChildren<QListView*>()) {
            if (list->accessibleName() == name) { return list; }
        }
        return nullptr;
    }
    QString names(const QString& grid) {
        QStringList texts;
        QAbstractItemModel* model = this->grid(grid)->model();
        for (int i = 0; i < model->rowCount(); ++i) {
            texts << model->index(i, 0).data().toString();
        }
        return texts.join(u' ');
    }
    QPoint item(const QString& grid, int row) {
        QListView* list = this->grid(grid);
        return inWindow(list->viewport(),
                        list->visualRect(list->model()->index(row, 0)).topLeft() + QPoint(40, 40));
    }
};

TEST(ImageChooser, PickAppliesAndLeavesItOpen) {
    ChooserScene scene;
    ASSERT_TRUE(scene.chooser());
    EXPECT_EQ(scene.names(u"Used in this project"_s), u"square"_s);
    EXPECT_EQ(scene.names(u"Not used"_s), u"azure blue"_s);
    scene.click(scene.item(u"Not used"_s, 1));
    QCoreApplication::processEvents();
    EXPECT_EQ(scene.element("A")->imageName(), u"blue.png"_s);
    ASSERT_TRUE(scene.chooser()) << "stays open";
    EXPECT_EQ(scene.names(u"Used in this project"_s), u"blue square"_s);
    EXPECT_EQ(scene.names(u"Not used"_s), u"azure"_s);
    scene.key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(scene.element("A")->imageName(), u"square.png"_s);
}

TEST(ImageChooser, IsOperatedByKeysAndClosedByEscape) {
    ChooserScene scene;
    EXPECT_EQ(scene.focused(), u"Browse"_s);
    scene.key(Qt::Key_Tab);
    EXPECT_EQ(scene.focused(), u"Used in this project"_s);
    while (scene.focused() != u"Not used"_s) {
        scene.key(Qt::Key_Tab);
    }
    scene.key(Qt::Key_Right);
    scene.key(Qt::Key_Return);
    EXPECT_EQ(scene.element("A")->imageName(), u"blue.png"_s);
    scene.key(Qt::Key_Escape);
    EXPECT_FALSE(scene.chooser());
    EXPECT_EQ(scene.focused(), u"Canvas"_s) << "had the keyboard before";
}

TEST(ImageChooser, RemoveTakesUnusedSetsAndIsUndone) {
    ChooserScene scene;
    QPushButton* remove = nullptr;
    for (QPushButton* button : scene.chooser()->findChildren<QPushButton*>()) {
        if (button->text() == u"Remove"_s) { remove = button; }
    }
    scene.click(scene.middle(remove));
    QCoreApplication::processEvents();
    EXPECT_EQ(scene.names(u"Not used"_s), QString());
    EXPECT_FALSE(remove->isEnabled());
    EXPECT_EQ(scene.project().imageSetManager().allImageSets().size(), 1U);
    scene.controller().undoManager().undo();
    QCoreApplication::processEvents();
    EXPECT_EQ(scene.names(u"Not used"_s), u"azure blue"_s);
}

TEST(ImageChooser, BrowseOffersPngAndJpegAndAppliesTheFile) {
    for (const bool isCancelled : {true, false}) {
        ChooserScene scene;
        const QString file = scene.folder.filePath(u"new@2x.png"_s);
        QImage picture(6, 6, QImage::Format_ARGB32);
        picture.fill(Qt::green);
        ASSERT_TRUE(picture.save(file));
        if (!isCancelled) { scene.panel.files = {file}; }
        scene.click(scene.middle(scene.window->focusWidget()));
        QCoreApplication::processEvents();
        ASSERT_EQ(scene.panel.shown.size(), 1U);
        for (const QString& type : {u"png"_s, u"jpg"_s, u"jpeg"_s}) {
            EXPECT_TRUE(scene.panel.shown[0].fileTypes.contains(type)) << qPrintable(type);
        }
        EXPECT_EQ(scene.element("A")->imageName(), isCancelled ? u"square.png"_s : u"new.png"_s);
        if (isCancelled) { continue; }
        scene.project().undo();
        EXPECT_EQ(scene.element("A")->imageName(), u"square.png"_s);
        EXPECT_FALSE(scene.project().imageSetManager().imageSetExistsWithName(u"new.png"_s));
    }
}

}  // namespace
}  // namespace tweenery::test
