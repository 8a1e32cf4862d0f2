#pragma once

#include <QWidget>

#include "editor/documents/open_document.h"

namespace tweenery {

class CanvasView;
class NoticeBar;
class StatusPlate;

/// The canvas with what lies over it: the bars of what needs an answer, at the top, and a line of
/// what went well, at the lower left.
class CanvasArea : public QWidget, private OpenDocumentObserver {
 public:
    /// Takes the canvas; the document outlives this.
    CanvasArea(CanvasView& canvas, OpenDocument& document, QWidget* parent = nullptr);

    void tellStatus(const QString& text);

 protected:
    void resizeEvent(QResizeEvent* event) override;

 private:
    CanvasView& m_canvas;
    OpenDocument& m_document;
    std::vector<NoticeBar*> m_bars;
    StatusPlate* m_status;
    Subscription m_subscription;

    void documentStateDidChange() override;
    void addBar(const Notice& notice);
    void layOut();
};

}  // namespace tweenery
