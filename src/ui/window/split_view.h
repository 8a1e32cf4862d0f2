#pragma once

#include <QVariantAnimation>
#include <QWidget>
#include <array>

#include "ui/window/pane_sizes.h"

namespace tweenery {

/// The four panes of a document window and the dividers between them: left, right and bottom round
/// the main one. Knows nothing of what the panes show.
class SplitView : public QWidget {
    Q_OBJECT

 public:
    explicit SplitView(QWidget* parent = nullptr);

    // Each pane becomes a child and takes the place of the one before, which is left without
    // parent.
    void setLeftPane(QWidget* pane);
    void setMainPane(QWidget* pane);
    void setRightPane(QWidget* pane);
    void setBottomPane(QWidget* pane);

    const PaneSizes& panes() const { return m_panes; }
    int leftPaneWidth() const { return m_panes.leftWidth; }
    int bottomPaneHeight() const { return m_panes.bottomHeight; }

    // By the rules of PaneSizes, at once.
    void setLeftPaneWidth(double width);
    void setRightPaneWidth(double width);
    void setBottomPaneHeight(double height);
    // With a motion.
    void setLeftPaneVisible(bool visible);
    void setRightPaneVisible(bool visible);
    void setBottomPaneVisible(bool visible);

 Q_SIGNALS:
    /// After every change of the layout, also when nothing collapsed.
    void panesDidChangeCollapseState();
    /// After a drag of a divider.
    void panesDidChangeSizes();

 protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    bool event(QEvent* event) override;

 private:
    enum Place { Bottom, Left, Right, Main, PlaceCount };
    using Frames = std::array<QRect, PlaceCount>;

    void setPane(Place place, QWidget* pane);
    void updateFrames(bool isAnimated);
    void moveTowards(double share);
    void showFrames(const Frames& frames);
    void showCursor(Divider divider);
    void endDrag(QPointF point);

    PaneSizes m_panes;
    std::array<QWidget*, PlaceCount> m_views = {};
    Frames m_from;
    Frames m_to;
    QVariantAnimation m_motion;
    bool m_isDragging = false;
    Divider m_dragged = Divider::None;
};

}  // namespace tweenery
