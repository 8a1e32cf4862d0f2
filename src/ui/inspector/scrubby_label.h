#pragma once

#include <QLabel>

#include "ui/inspector/drag_input.h"

namespace tweenery {

/// The label of a field. Dragged to the right or the left it adds or takes away one unit for each
/// event of the drag, however far the pointer went.
class ScrubbyLabel : public QLabel {
    Q_OBJECT

 public:
    explicit ScrubbyLabel(QWidget* parent);

    /// Without a colon, which is drawn behind it.
    void setLabel(const QString& text);

 Q_SIGNALS:
    void dragBegan();
    void scrubbed(double delta);
    void dragEnded(bool isCancelled);

 protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;
};

}  // namespace tweenery
