#pragma once

#include <QWidget>

namespace tweenery {

class EasingButton;
class KeyAllButton;
class ZoomSlider;

/// The strip above the rows of the timeline: the button Key All, the easing of new keyframes, and
/// the zoom.
class TimelineHeader : public QWidget {
    Q_OBJECT

 public:
    /// `zoomStops` is the number of stops of the zoom.
    TimelineHeader(int zoomStops, QWidget* parent);

    /// The easing of new keyframes, by its picture and its name.
    void showEasing(const QString& picture, const QString& name);
    /// The stop at or above the zoom.
    void showZoom(int stop);
    /// What it is painted with; tells whether the timeline has the keyboard.
    void setFill(const QColor& fill);
    QWidget* easingButton() const;

 Q_SIGNALS:
    void keyAllPressed();
    void easingPressed();
    /// By the slider.
    void zoomChosen(int stop);
    void zoomInPressed();
    void zoomOutPressed();

 protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

 private:
    KeyAllButton* m_keyAll;
    EasingButton* m_easing;
    ZoomSlider* m_zoom;
    QWidget* m_zoomOut;
    QWidget* m_zoomIn;
    QString m_easingName;
    QColor m_fill;

    QWidget* magnifier(const QString& picture, const QString& command,
                       void (TimelineHeader::*pressed)());
};

}  // namespace tweenery
