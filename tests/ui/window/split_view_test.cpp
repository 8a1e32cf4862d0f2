#include "ui/window/split_view.h"

#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QTest>

#include "base/user_defaults.h"
#include "ui/widgets/appearance.h"

namespace tweenery::test {
namespace {

PaneSizes panesOf(int width, int height) {
    PaneSizes panes;
    panes.width = width;
    panes.height = height;
    return panes;
}

TEST(PaneSizes, LeftWidth) {
    struct Case {
        double asked;
        int viewWidth;
        bool wasVisible;
        int width;
        bool isVisible;
    };
    const Case cases[] = {
        {300.9, 1000, true, 300, true},  {200, 1000, true, 250, true},
        {100, 1000, true, 250, false},   {125, 1000, true, 250, true},
        {125, 1000, false, 250, false},  {125.5, 1000, false, 250, true},
        {124.5, 1000, true, 250, false}, {700, 1000, true, 644, true},
        {643.5, 1000, true, 643, true},  {300, 500, true, 250, true},
        {400, 0, true, 400, true},  // before the view has its size
    };
    for (const Case& c : cases) {
        PaneSizes panes = panesOf(c.viewWidth, 600);
        panes.leftVisible = c.wasVisible;
        panes.setLeftWidth(c.asked);
        EXPECT_EQ(panes.leftWidth, c.width) << c.asked << " of " << c.viewWidth;
        EXPECT_EQ(panes.leftVisible, c.isVisible) << c.asked << " of " << c.viewWidth;
    }
}

TEST(PaneSizes, RightWidthAndBottomHeight) {
    struct Right {
        double asked;
        bool wasVisible;
        bool isVisible;
    };
    for (const Right& c : {Right{300, true, true}, Right{100, true, false}, Right{175, true, true},
                           Right{175, false, false}, Right{176, false, true}}) {
        PaneSizes panes = panesOf(1000, 600);
        panes.rightVisible = c.wasVisible;
        panes.setRightWidth(c.asked);
        EXPECT_EQ(panes.rightWidth, 350);
        EXPECT_EQ(panes.rightVisible, c.isVisible) << c.asked;
    }
    struct Bottom {
        double asked;
        int height;
    };
    for (const Bottom& c :
         {Bottom{44.9, 44}, Bottom{10, 44}, Bottom{45, 45}, Bottom{250.7, 250}, Bottom{800, 500}}) {
        PaneSizes panes = panesOf(1000, 600);
        panes.setBottomHeight(c.asked);
        EXPECT_EQ(panes.bottomHeight, c.height) << c.asked;
    }
}

TEST(PaneSizes, FramesFillTheViewAndHiddenOnesLieBeyondIt) {
    PaneSizes panes = panesOf(1000, 600);
    panes.leftWidth = 260;
    panes.bottomHeight = 200;
    panes.bottomVisible = true;
    PaneFrames frames = paneFrames(panes);
    EXPECT_EQ(frames.bottom, QRect(0, 400, 1000, 200));
    EXPECT_EQ(frames.left, QRect(0, 0, 260, 397));
    EXPECT_EQ(frames.right, QRect(650, 0, 350, 397));
    EXPECT_EQ(frames.main, QRect(263, 0, 384, 397));
    EXPECT_EQ(frames.leftDivider, QRect(260, 0, 3, 397));
    EXPECT_EQ(frames.rightDivider, QRect(647, 0, 3, 397));
    EXPECT_EQ(frames.bottomDivider, QRect(0, 397, 1000, 3));

    panes.leftVisible = panes.rightVisible = panes.bottomVisible = false;
    frames = paneFrames(panes);
    EXPECT_EQ(frames.bottom, QRect(0, 600, 1000, 200));
    EXPECT_EQ(frames.left, QRect(-260, 0, 260, 597));
    EXPECT_EQ(frames.right, QRect(1000, 0, 350, 597));
    EXPECT_EQ(frames.main, QRect(3, 0, 994, 597));
}

class SplitViewTest : public testing::Test {
 protected:
    SplitViewTest() {
        UserDefaults::useMemory();
        Appearance::current().reload();
        split.resize(1000, 600);
        split.setLeftPane(&left);
        split.setMainPane(&main);
        split.setRightPane(&right);
        split.setBottomPane(&bottom);
        split.setBottomPaneVisible(true);
        split.show();
    }

    ~SplitViewTest() override {
        for (QWidget* pane : {&left, &main, &right, &bottom}) {
            pane->setParent(nullptr);
        }
    }

    void drag(QPoint from, std::initializer_list<QPoint> points) {
        QWindow* window = split.windowHandle();
        QTest::mousePress(window, Qt::LeftButton, {}, from);
        QPoint last = from;
        for (const QPoint& point : points) {
            QTest::mouseMove(window, point);
            last = point;
        }
        QTest::mouseRelease(window, Qt::LeftButton, {}, last);
    }

    SplitView split;
    QWidget left;
    QWidget main;
    QWidget right;
    QWidget bottom;
};

TEST_F(SplitViewTest, DragsOfDividers) {
    QSignalSpy sizes(&split, &SplitView::panesDidChangeSizes);
    EXPECT_EQ(split.cursor().shape(), Qt::ArrowCursor);
    drag({351, 100}, {{300, 100}});
    EXPECT_EQ(left.width(), 298);  // 300 less half a divider, cut
    EXPECT_EQ(split.cursor().shape(), Qt::SizeHorCursor);
    drag({299, 100}, {{200, 100}, {100, 100}});
    EXPECT_FALSE(split.panes().leftVisible);
    EXPECT_EQ(split.leftPaneWidth(), 250);
    EXPECT_FALSE(left.isVisible());
    drag({1, 100}, {{60, 100}, {400, 100}});
    EXPECT_TRUE(left.isVisible()) << "comes back within the same drag";
    EXPECT_EQ(split.leftPaneWidth(), 398);
    drag({500, 554}, {{500, 300}});
    EXPECT_EQ(bottom.height(), 298);
    EXPECT_EQ(split.cursor().shape(), Qt::SizeVerCursor);
    EXPECT_EQ(sizes.count(), 4);
    drag({700, 100}, {{500, 100}});
    EXPECT_EQ(split.leftPaneWidth(), 398) << "a press beside the dividers drags nothing";
}

TEST_F(SplitViewTest, HiddenPanesSlideOutAndKeepTheirSize) {
    QSignalSpy collapses(&split, &SplitView::panesDidChangeCollapseState);
    split.setLeftPaneVisible(false);
    EXPECT_EQ(collapses.count(), 1);
    EXPECT_EQ(left.x(), 0) << "a motion, not a jump";
    ASSERT_TRUE(QTest::qWaitFor([&] { return left.x() == -350; }, 3000));
    EXPECT_EQ(main.x(), 3);
    Appearance::current().setReducesMotion(true);
    split.setLeftPaneVisible(true);
    EXPECT_EQ(left.geometry(), QRect(0, 0, 350, 553)) << "no motion";
    Appearance::current().setReducesMotion(false);
}

TEST_F(SplitViewTest, AShrinkingWindowTakesFromTheLeftPane) {
    split.setLeftPaneWidth(600);
    split.resize(900, 600);
    EXPECT_EQ(split.leftPaneWidth(), 900 - 350 - 6);
    split.resize(1200, 600);
    EXPECT_EQ(split.leftPaneWidth(), 544);
    EXPECT_EQ(main.geometry().right() + 3 + 1, right.x());
}

}  // namespace
}  // namespace tweenery::test
