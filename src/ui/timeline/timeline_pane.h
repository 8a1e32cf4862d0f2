#pragma once

#include <QWidget>

#include "editor/document_window_controller.h"

class QSlider;

namespace tweenery {

/// The pane below the canvas while an animation is selected: the playhead, its time, and where the
/// animation ends.
class TimelinePane : public QWidget, private PCProjectTimeManagerPlayheadListener {
 public:
    /// Outlives this.
    explicit TimelinePane(PCDocumentWindowController& controller, QWidget* parent = nullptr);

 protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

 private:
    PCDocumentWindowController& m_controller;
    QSlider* m_playhead;
    Subscription m_subscription;

    void timeManagerDidUpdatePlayhead(PCProjectTimeManager& manager) override;
    void movePlayhead(int timeInMS);
};

}  // namespace tweenery
