#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>

#include "editor/document_window_controller.h"
#include "editor/timeline/timeline_mark.h"

class QNativeGestureEvent;

namespace tweenery {

class FeedbackPlate;
class PlayheadField;

/// The ruler and the tracks of the timeline, with the playhead, the skim bar, the master keyframes
/// and the marquee over both. Forwards pointer and wheel; paints what is in sight, and of that what
/// has changed.
class TracksView : public QWidget,
                   private PCProjectTimeManagerPlayheadListener,
                   private PCProjectTimeManagerPlaybackStateListener,
                   private PCKeyframeManagerSelectionListener {
    Q_OBJECT

 public:
    /// Both outlive it. `mark` tells where the keyboard is.
    TracksView(PCDocumentWindowController& controller, const TimelineMark& mark,
               QWidget* parent = nullptr);

    PCDocumentWindowController& controller() const { return m_controller; }
    /// Of the ruler while nothing plays, and of what no track covers.
    void setFill(const QColor& fill);
    /// The interaction says that something over the tracks looks different.
    void overlayDidChange();
    /// The keyboard is in use here, so that its mark shows.
    void setShowsMark(bool shows);
    /// A field over the playhead's time to type it into.
    void editPlayheadTime();

    // Places, in points of this.

    QRect rowRect(int row) const;
    QRectF keyframeRect(int row, int32_t timeInMS) const;
    QRectF masterKeyframeRect(int32_t timeInMS) const;
    QRectF playheadRect() const;
    /// What of it shows, on the screen.
    QRect onScreen(const QRectF& rect) const;

 Q_SIGNALS:
    void keyframeSelectionChanged(const TimelineKeyframe& keyframe);
    /// Of those commands, at a place of the screen.
    void contextMenuRequested(const QStringList& commands, QPoint globalPosition);
    /// A press, which takes the keyboard.
    void pressed();

 protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override { mousePressEvent(event); }
    void wheelEvent(QWheelEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void hideEvent(QHideEvent* event) override;

 private:
    /// What lay over the tracks when they were painted last.
    struct Overlay {
        double playhead = 0;
        QString label;
        std::optional<double> skim;
        std::optional<QRectF> marquee;

        bool operator==(const Overlay&) const = default;
    };

    PCDocumentWindowController& m_controller;
    const TimelineMark& m_mark;
    QColor m_fill;
    bool m_showsMark = false;
    Overlay m_shown;
    FeedbackPlate* m_feedback;
    PlayheadField* m_field;
    std::optional<PointerEvent> m_platePress;  // on the playhead's time, not yet a drag
    QPointF m_pointer;
    QTimer m_tickTimer;
    QElapsedTimer m_sinceTick;
    std::vector<Subscription> m_subscriptions;

    TimelineViewport& viewport() const { return m_controller.timelineViewport(); }
    TimelineInteraction& interaction() const { return m_controller.timelineInteraction(); }
    Overlay overlay() const;
    QRect stripOf(double x) const;
    QRegion regionOf(const Overlay& overlay) const;
    QColor rulerFill() const;
    void paintPart(QPainter& painter, const QRect& part);
    void paintRows(QPainter& painter, const QRect& part);
    void paintEmptyPlace(QPainter& painter, double top);
    void paintOverlay(QPainter& painter, const QRect& part);
    void paintMark(QPainter& painter);
    void paintMasterKeyframes(QPainter& painter, const QRect& part);
    PointerEvent pointerEvent(const QMouseEvent& event) const;
    void afterPointer();
    void tick();
    bool zoomByGesture(const QNativeGestureEvent& event);
    QString toolTipAt(QPointF point) const;
    void selectionDidChange(const Keyframe& keyframe);

    void timeManagerDidUpdatePlayhead(PCProjectTimeManager& manager) override;
    void timeManagerDidUpdateSkimPlayhead(PCProjectTimeManager&) override { overlayDidChange(); }
    void timeManagerDidChangePlaybackState(PCProjectTimeManager&) override { update(); }
    void keyframeSelectionManagerDidSelectKeyframe(PCKeyframeManager&,
                                                   const Keyframe& keyframe) override {
        selectionDidChange(keyframe);
    }
    void keyframeSelectionManagerDidDeselectKeyframe(PCKeyframeManager&,
                                                     const Keyframe& keyframe) override {
        selectionDidChange(keyframe);
    }
    void keyframeManagerDidSelectTween(PCKeyframeManager&, const Keyframe&) override { update(); }
    void keyframeManagerDidDeselectTween(PCKeyframeManager&, const Keyframe&) override { update(); }
};

}  // namespace tweenery
