#include "ui/widgets/popover.h"

#include <gtest/gtest.h>

#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QWindow>
#include <functional>

#include "ui/widgets/appearance.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

class Content : public QWidget {
 public:
    explicit Content(QSize size) : m_size(size), first(u"First"_s, this), second(u"Last"_s, this) {
        second.move(0, 40);
    }
    QSize sizeHint() const override { return m_size; }

 private:
    QSize m_size;

 public:
    QPushButton first;
    QPushButton second;
};

/// A window with a button in the middle of its top, where a popover opens.
struct PopoverScene {
    QWidget window;
    QWidget pane{&window};
    QPushButton anchor{u"Anchor"_s, &pane};
    QPushButton other{u"Other"_s, &window};
    QPointer<Popover> popover;
    Content* content = nullptr;
    int closings = 0;

    explicit PopoverScene(QSize size = {200, 120}) {
        Appearance::current().setReducesMotion(true);
        window.resize(600, 400);
        pane.setGeometry(0, 0, 600, 200);
        anchor.setGeometry(250, 20, 100, 30);
        other.setGeometry(10, 350, 100, 30);
        window.show();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
        anchor.setFocus();
        content = new Content(size);
        popover = new Popover(content, &window);
        QObject::connect(popover, &Popover::closed, &window, [this] { ++closings; });
        popover->popUp(anchor, anchor.rect(), Popover::Side::Below);
        QCoreApplication::processEvents();
    }
    QRect panel() const { return popover->panelRect().translated(popover->pos()); }
    void click(QPoint point) {
        QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, point);
    }
    void key(Qt::Key key) { QTest::keyClick(window.windowHandle(), key); }
};

TEST(Popover, ClosesOnceByWhateverMakesItPointless) {
    struct Case {
        const char* what;
        std::function<void(PopoverScene&)> act;
        bool closes;
    };
    const Case cases[] = {
        {"Escape", [](PopoverScene& s) { s.key(Qt::Key_Escape); }, true},
        {"another key", [](PopoverScene& s) { s.key(Qt::Key_V); }, false},
        {"Tab", [](PopoverScene& s) { s.key(Qt::Key_Tab); }, false},
        {"press inside", [](PopoverScene& s) { s.click(s.panel().bottomRight() - QPoint(9, 9)); },
         false},
        {"press outside",
         [](PopoverScene& s) {
             s.click({500, 380});
         },
         true},
        {"press on its shadow",
         [](PopoverScene& s) { s.click(s.panel().bottomRight() + QPoint(5, 5)); }, true},
        {"press on the anchor",
         [](PopoverScene& s) {
             s.click({300, 35});
         },
         true},
        {"keyboard elsewhere", [](PopoverScene& s) { s.other.setFocus(); }, true},
        {"anchor moves", [](PopoverScene& s) { s.anchor.move(200, 20); }, true},
        {"what holds the anchor moves", [](PopoverScene& s) { s.pane.move(0, 20); }, true},
        {"anchor goes", [](PopoverScene& s) { s.anchor.hide(); }, true},
        {"window gets narrower", [](PopoverScene& s) { s.window.resize(500, 400); }, true},
        {"something else moves", [](PopoverScene& s) { s.other.move(20, 350); }, false},
    };
    for (const Case& c : cases) {
        PopoverScene scene;
        c.act(scene);
        EXPECT_EQ(scene.closings, c.closes ? 1 : 0) << c.what;
        if (!scene.popover) { continue; }
        EXPECT_EQ(scene.popover->isVisible(), !c.closes) << c.what;
        scene.popover->dismiss();
        scene.popover->dismiss();
        EXPECT_EQ(scene.closings, 1) << c.what;
    }
}

TEST(Popover, PressOutsideGoesOnButOneOnTheAnchorDoesNot) {
    PopoverScene first;
    QSignalSpy others(&first.other, &QPushButton::clicked);
    first.click({60, 365});
    EXPECT_EQ(others.size(), 1);
    PopoverScene second;
    QSignalSpy anchors(&second.anchor, &QPushButton::clicked);
    second.click({300, 35});
    EXPECT_EQ(anchors.size(), 0);
    second.click({300, 35});
    EXPECT_EQ(anchors.size(), 1);
}

TEST(Popover, KeepsTheKeyboardWhileItShows) {
    PopoverScene scene;
    QWidget& window = scene.window;
    EXPECT_EQ(window.focusWidget(), &scene.content->first);
    for (QWidget* next : {&scene.content->second, &scene.content->first}) {
        scene.key(Qt::Key_Tab);
        EXPECT_EQ(window.focusWidget(), next);
    }
    QTest::keyClick(window.windowHandle(), Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(window.focusWidget(), &scene.content->second);
    scene.key(Qt::Key_Escape);
    EXPECT_EQ(window.focusWidget(), &scene.anchor);
}

TEST(Popover, MayLeaveTheKeyboardWhereItIs) {
    PopoverScene scene;
    scene.popover->dismiss();
    scene.popover = new Popover(new Content({200, 120}), &scene.window);
    scene.popover->setTakesKeyboard(false);
    QSignalSpy closings(scene.popover, &Popover::closed);
    scene.popover->popUp(scene.anchor, scene.anchor.rect(), Popover::Side::Below);
    EXPECT_EQ(scene.window.focusWidget(), &scene.anchor);
    scene.other.setFocus();
    EXPECT_EQ(closings.size(), 0);
    scene.key(Qt::Key_Escape);
    EXPECT_EQ(closings.size(), 1);
}

TEST(Popover, NothingWaitsWhileItFades) {
    PopoverScene scene;
    scene.popover->dismiss();
    Appearance::current().setReducesMotion(false);
    scene.popover = new Popover(new Content({200, 120}), &scene.window);
    QSignalSpy closings(scene.popover, &Popover::closed);
    scene.popover->popUp(scene.pane, QRect(60, 10, 10, 10), Popover::Side::Below);
    EXPECT_TRUE(scene.popover->graphicsEffect());
    scene.popover->dismiss();
    EXPECT_EQ(closings.size(), 1);
    EXPECT_EQ(scene.window.focusWidget(), &scene.anchor);
    QSignalSpy clicks(&scene.anchor, &QPushButton::clicked);
    scene.click({300, 35});
    EXPECT_EQ(clicks.size(), 1);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !scene.popover; }));
}

TEST(Popover, StaysInTheWindow) {
    struct Case {
        QSize size;
        QPoint anchor;
        bool isBelow;
        int height;  // of the panel
    };
    const Case cases[] = {
        {{200, 120}, {250, 20}, true, 120},
        {{200, 120}, {0, 20}, true, 120},
        {{200, 120}, {500, 20}, true, 120},
        {{200, 120}, {250, 350}, false, 120},
        {{200, 900}, {250, 20}, true, 400 - 50 - 9 - 4},
    };
    for (const Case& c : cases) {
        PopoverScene scene(c.size);
        scene.popover->dismiss();
        scene.pane.resize(600, 400);
        scene.anchor.move(c.anchor);
        auto* popover = new Popover(new Content(c.size), &scene.window);
        scene.popover = popover;
        popover->popUp(scene.anchor, scene.anchor.rect(), Popover::Side::Below);
        const QRect panel = scene.panel();
        EXPECT_TRUE(scene.window.rect().contains(panel)) << c.anchor.x() << ' ' << c.anchor.y();
        EXPECT_EQ(panel.top() > scene.anchor.geometry().bottom(), c.isBelow) << c.anchor.y();
        EXPECT_FALSE(panel.intersects(scene.anchor.geometry()));
        EXPECT_EQ(panel.height(), c.height);
    }
}

}  // namespace
}  // namespace tweenery::test
