#pragma once

#include <QPointer>

#include "editor/document_window_controller.h"
#include "ui/widgets/text_field.h"

namespace tweenery {

/// A field over the playhead's time, into which another time is typed: in seconds, or with a unit.
/// Return moves the playhead there, Escape leaves it. What is no time stays, marked, and says so.
class PlayheadField : public TextField {
    Q_OBJECT

 public:
    /// Hidden. The controller outlives it.
    PlayheadField(PCDocumentWindowController& controller, QWidget* parent);

    /// Over `plate`, in points of the parent.
    void open(const QRectF& plate);

 protected:
    void focusOutEvent(QFocusEvent* event) override;

 private:
    PCDocumentWindowController& m_controller;
    QPointer<QWidget> m_focusBefore;

    void take(const QString& text);
    void leave();
};

}  // namespace tweenery
