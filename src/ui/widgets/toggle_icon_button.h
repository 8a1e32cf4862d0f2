#pragma once

#include <QAbstractButton>

namespace tweenery {

/// A round button with a state, on or off. A press changes nothing by itself: whoever is told of
/// the click sets the state. The corners outside the circle do not react.
class ToggleIconButton : public QAbstractButton {
    Q_OBJECT

 public:
    explicit ToggleIconButton(QWidget* parent = nullptr);

    /// By the names of pictures. Without one for off, that for on stands for both.
    void setOnIcon(const QString& name);
    void setOffIcon(const QString& name);
    void setOnColor(const QColor& color);
    void setOffColor(const QColor& color);
    bool isOn() const { return isChecked(); }
    void setState(bool isOn) { setChecked(isOn); }

    QSize sizeHint() const override;

 protected:
    void paintEvent(QPaintEvent* event) override;
    bool hitButton(const QPoint& point) const override;
    void nextCheckState() override {}

 private:
    QRectF circle() const;

    QString m_onIcon;
    QString m_offIcon;
    QColor m_onColor;
    QColor m_offColor;
};

}  // namespace tweenery
