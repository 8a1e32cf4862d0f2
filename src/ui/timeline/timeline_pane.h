#pragma once

#include <QPointer>
#include <QTimer>
#include <QWidget>

#include "editor/document_window_controller.h"
#include "editor/timeline/timeline_mark.h"
#include "ui/widgets/popover.h"

namespace tweenery {

class EasingChooser;
class RowsView;
class TimelineHeader;
class TracksScroller;
class TracksView;

/// The pane below the canvas while an animation is selected: the list of rows and its head, the
/// ruler and the tracks. Has the keyboard while the pointer is over it, but never takes it from a
/// text that is being edited, and gives it back.
class TimelinePane : public QWidget, private PCProjectTimeManagerPlayheadListener {
    Q_OBJECT

 public:
    /// The controller outlives it.
    explicit TimelinePane(PCDocumentWindowController& controller, QWidget* parent = nullptr);
    ~TimelinePane() override;

    RowsView& rows() { return *m_rows; }
    TracksView& tracks() { return *m_tracks; }
    /// The easings to choose from; null while they do not show.
    Popover* popover() { return m_popover; }
    /// The controller says that playhead, skim bar, marquee or popover look different.
    void overlayDidChange();
    /// The easing of new keyframes may be another one.
    void showDefaultEasing();

 Q_SIGNALS:
    /// Of those commands, at a place of the screen.
    void contextMenuRequested(const QStringList& commands, QPoint globalPosition);

 protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    /// Tab stays inside the pane.
    bool focusNextPrevChild(bool next) override;

 private:
    PCDocumentWindowController& m_controller;
    TimelineMark m_mark;
    TimelineHeader* m_header;
    RowsView* m_rows;
    TracksView* m_tracks;
    TracksScroller* m_across;
    TracksScroller* m_down;
    QWidget* m_divider;
    QPointer<Popover> m_popover;        // a child of the window
    QPointer<EasingChooser> m_easings;  // in it
    QPointer<QWidget> m_easingsOwner;
    int m_outlineWidth;
    QPoint m_pointer;  // on the screen
    bool m_isRestored = false;
    bool m_tookFocus = false;
    QPointer<QWidget> m_focusBefore;
    QTimer m_refreshTimer;
    std::vector<Subscription> m_subscriptions;

    void connectParts();
    void refreshLater();
    void refresh();
    void layOut();
    void viewportDidChange();
    void setOutlineWidth(int width);
    bool hasKeyboard() const;
    void takeFocus();
    void giveFocusBack();
    void focusDidChange(QWidget* focus);
    void showFill();
    void openEasings(EasingChooser* easings, QWidget& owner, const QRect& anchor,
                     Popover::Side side);
    void closeEasings();
    void easingsDidClose();
    bool easingsBelongTo(const QWidget* owner) const;
    void toggleDefaultEasing();
    void updateTweenPopover();
    bool moveMark(const QKeyEvent& event);
    void markDidChange();
    void timeManagerDidUpdatePlayhead(PCProjectTimeManager&) override { refreshLater(); }
};

}  // namespace tweenery
