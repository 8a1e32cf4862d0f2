#pragma once

#include <QAbstractButton>

namespace tweenery {

/// The button that makes a master keyframe, with its picture and its name.
class KeyAllButton : public QAbstractButton {
    Q_OBJECT

 public:
    explicit KeyAllButton(QWidget* parent);

 protected:
    void paintEvent(QPaintEvent* event) override;
};

/// The button of the easing that new keyframes get: the picture of its curve, and an arrow.
class EasingButton : public QAbstractButton {
    Q_OBJECT

 public:
    explicit EasingButton(QWidget* parent);

    /// `name` is that of the easing's picture.
    void setPicture(const QString& name);

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    QString m_picture;
};

}  // namespace tweenery
