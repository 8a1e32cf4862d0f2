#pragma once

#include <QWidget>

#include "editor/documents/open_document.h"

namespace tweenery {

class CanvasView;
class NoticeBar;
class ProgressPanel;
class StatusPlate;

/// The canvas with what lies over it: the bars of what needs an answer, at the top, and a line of
/// what went well, at the lower left.
class CanvasArea : public QWidget, private OpenDocumentObserver {
 public:
    /// Takes the canvas; the document outlives this.
    CanvasArea(CanvasView& canvas, OpenDocument& document, QWidget* parent = nullptr);

    void tellStatus(const QString& text);
    /// The outcome of long work, with a button for what is next. Stays until the next press
    /// elsewhere, or Escape.
    void tellResult(const QString& title, const QString& detail, const QString& buttonText,
                    std::function<void()> action);

 protected:
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* object, QEvent* event) override;

 private:
    CanvasView& m_canvas;
    OpenDocument& m_document;
    std::vector<NoticeBar*> m_bars;
    StatusPlate* m_status;
    ProgressPanel* m_result;
    Subscription m_subscription;

    void documentStateDidChange() override;
    void addBar(const Notice& notice);
    void layOut();
};

}  // namespace tweenery
