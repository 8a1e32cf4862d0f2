#pragma once

#include <QAbstractButton>
#include <functional>

#include "ui/widgets/colors.h"

namespace tweenery {

/// A button that is nothing but a picture.
class IconButton : public QAbstractButton {
    Q_OBJECT

 public:
    /// `name` is the picture's, `pictureSize` its side in points.
    IconButton(const QString& name, int pictureSize, QWidget* parent);

    QString picture() const { return m_picture; }
    void setPicture(const QString& name);
    /// Shown instead while the button is held down, or checked.
    void setAlternatePicture(const QString& name);
    /// The picture's colour; asked at each painting. Without, that of the frame's pictures.
    void setInk(std::function<QColor()> ink);
    /// A plate of the hover colour under the picture; on by default.
    void setHoverPlate(bool has);

    QSize sizeHint() const override;

 protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;

 private:
    QColor ink() const;

    QString m_picture;
    QString m_alternatePicture;
    int m_pictureSize;
    std::function<QColor()> m_ink;
    bool m_hasHoverPlate = true;
};

}  // namespace tweenery
