#pragma once

#include <QWidget>
#include <optional>

#include "editor/document_window_controller.h"
#include "editor/timeline/timeline_mark.h"

namespace tweenery {

/// The rows of the timeline left of its tracks: elements, and below each its timelines with a
/// button for the loop mode and one that creates a keyframe. Paints what is in sight; presses go to
/// the outline and the commands.
class RowsView : public QWidget {
    Q_OBJECT

 public:
    /// Both outlive it. `mark` tells where the keyboard is.
    RowsView(PCDocumentWindowController& controller, const TimelineMark& mark,
             QWidget* parent = nullptr);

    PCDocumentWindowController& controller() const { return m_controller; }
    const TimelineMark& mark() const { return m_mark; }
    /// Of what no row covers.
    void setFill(const QColor& fill);

    /// What of a row is under the pointer.
    enum class Part { None, Name, Chevron, Loop, Keyframe };

    // Places, in points of this; rows may lie out of sight.

    QRect rowRect(int row) const;
    QRect partRect(int row, Part part) const;
    int rowAt(double y) const;

    /// What a click on that part of the row does.
    void activate(int row, Part part);

 Q_SIGNALS:
    /// Of those commands, at a place of the screen.
    void contextMenuRequested(const QStringList& commands, QPoint globalPosition);
    /// A press, which takes the keyboard.
    void pressed();
    void scrolled(QPointF distance);

 protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

 private:
    struct Place {
        int row = -1;
        Part part = Part::None;

        bool operator==(const Place&) const = default;
    };

    PCDocumentWindowController& m_controller;
    const TimelineMark& m_mark;
    QColor m_fill;
    Place m_hovered;
    Place m_pressed;
    std::vector<Subscription> m_subscriptions;

    TimelineViewport& viewport() const { return m_controller.timelineViewport(); }
    TimelineOutline& outline() const { return m_controller.timelineOutline(); }
    Place placeAt(QPointF point) const;
    void setHovered(Place place);
    QString toolTipOf(const Place& place) const;
    void paintRow(QPainter& painter, int row) const;
    void paintElementRow(QPainter& painter, const QRect& rect, const PCElement& element,
                         bool isSelected) const;
    void paintTimelineRow(QPainter& painter, int row, const PCKeyedPropertyTimeline& timeline,
                          const QColor& fill) const;
    QColor keyframeButtonFill(int row, const PCKeyedPropertyTimeline& timeline) const;
};

}  // namespace tweenery
