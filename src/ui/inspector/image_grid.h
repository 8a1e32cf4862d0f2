#pragma once

#include <QListView>

#include "editor/inspector/image_choices.h"

namespace tweenery {

/// Thumbnails of image sets, three in a row, as high as it has rows. A click, Return or Space
/// chooses one.
class ImageGrid : public QListView {
    Q_OBJECT

 public:
    explicit ImageGrid(const QString& name, QWidget* parent);

    /// `inUse` is marked with a tick.
    void setImageSets(const ImageChoices::ImageSets& sets, const QString& inUse);
    /// In points; 0 without sets.
    int contentHeight() const;

 Q_SIGNALS:
    void chosen(const QString& imageName);

 protected:
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;

 private:
    class Model;
    class Delegate;

    Model* m_model;
};

}  // namespace tweenery
