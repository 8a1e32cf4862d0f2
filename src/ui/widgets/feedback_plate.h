#pragma once

#include <QWidget>

namespace tweenery {

/// A small plate beside the pointer that tells what a drag has changed so far.
class FeedbackPlate : public QWidget {
 public:
    explicit FeedbackPlate(QWidget* parent);
    /// An empty text hides it. `pointer`, in points of the parent, within which it stays.
    void show(const QString& text, QPointF pointer);

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    QString m_text;
};

}  // namespace tweenery
