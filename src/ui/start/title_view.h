#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>

#include "publish/scene_preview.h"
#include "scene/layer_renderer.h"
#include "ui/widgets/icon_button.h"

class QMovie;

namespace tweenery {

/// The title of the start window: a project of this program, played as the canvas plays. Its logo
/// drops once it is shown, and springs up and drops again when it is pressed. A video can be shown
/// in its place.
class TitleView : public QWidget {
    Q_OBJECT

 public:
    /// `package` is the path of the title's project; without one that can be read a plain ground
    /// shows.
    explicit TitleView(const QString& package, QWidget* parent = nullptr);
    ~TitleView() override;

    /// What plays, by the animation's name; null: nothing.
    QString playing() const { return m_playing; }
    bool showsVideo() const { return m_movie != nullptr; }
    /// Plays a loop until endVideo() or a press.
    void showVideo(const QString& path, const QString& title);
    void endVideo();

 Q_SIGNALS:
    void videoDidEnd();

 protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

 private:
    std::unique_ptr<ScenePreview> m_scene;
    LayerRenderer m_renderer;
    QElapsedTimer m_clock;
    QTimer m_frames;
    QTimer m_popUp;  // ends when the logo is up
    QString m_playing;
    QAbstractButton* m_logo;
    std::unique_ptr<QMovie> m_movie;
    QString m_videoTitle;
    IconButton m_close;

    void play(const QString& animation);
    void popUp();
    void tick();
    bool hasEnded() const;
    void paintVideo(QPainter& painter);
};

}  // namespace tweenery
