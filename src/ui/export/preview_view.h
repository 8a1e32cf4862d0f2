#pragma once

#include <QTimer>
#include <QWidget>

#include "publish/export_session.h"
#include "scene/layer_renderer.h"

namespace tweenery {

/// The scene that plays in the export sheet, drawn as the canvas draws.
class PreviewView : public QWidget {
    Q_OBJECT

 public:
    /// The session outlives it.
    explicit PreviewView(ExportSession& session, QWidget* parent = nullptr);

    /// Something of the preview is another one, or plays, or does not any more.
    void refresh();

 protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

 private:
    ExportSession& m_session;
    LayerRenderer m_renderer;
    QTimer m_timer;  // of the display, while something plays
};

}  // namespace tweenery
