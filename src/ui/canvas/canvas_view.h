#pragma once

#include <QAbstractScrollArea>
#include <QTimer>

#include "editor/document_window_controller.h"
#include "scene/layer_renderer.h"

class QNativeGestureEvent;

namespace tweenery {

class FeedbackPlate;

/// The pane of the canvas: draws the editor's layers at the resolution of the screen and forwards
/// what pointer, wheel and touchpad do. Paints only what has changed.
class CanvasView : public QAbstractScrollArea, private PCProjectTimeManagerPlaybackStateListener {
    Q_OBJECT

 public:
    /// The controller outlives it.
    explicit CanvasView(PCDocumentWindowController& controller, QWidget* parent = nullptr);
    ~CanvasView() override;

    PCDocumentWindowController& controller() { return m_controller; }
    /// Something may look different: draws a frame when the event loop comes round.
    void scheduleFrame();
    /// The cursor of tool and place, after a key or a change of the tool.
    void updateCursor();

 Q_SIGNALS:
    /// At a place of the screen, after what lies there was selected.
    void contextMenuRequested(QPoint globalPosition);
    /// The magnification or what part of the canvas shows.
    void viewportChanged();

 protected:
    bool viewportEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override { mousePressEvent(event); }
    void wheelEvent(QWheelEvent* event) override;
    // Keys are the window's.
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    /// Tab goes on to the next element.
    bool focusNextPrevChild(bool next) override;
    void focusOutEvent(QFocusEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

 private:
    PCDocumentWindowController& m_controller;
    LayerRenderer m_renderer;
    const QImage* m_frame = nullptr;  // the renderer's
    QTimer m_frameTimer;
    QTimer m_refreshTimer;  // of the display, while playing
    FeedbackPlate* m_feedback;
    QPointF m_wheelDistance;  // of high-resolution wheels, not yet scrolled
    QPointF m_pointer;
    bool m_isSettingScrollBars = false;
    Subscription m_playbackSubscription;

    void drawFrame();
    void drawTick();
    void viewportDidChange();
    void updateScrollBars();
    void updateFeedback();
    PointerEvent pointerEvent(const QMouseEvent& event) const;
    bool zoomByGesture(const QNativeGestureEvent& event);
    void timeManagerDidChangePlaybackState(PCProjectTimeManager& manager) override;
};

}  // namespace tweenery
