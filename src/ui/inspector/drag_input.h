#pragma once

#include <QObject>
#include <QPointF>
#include <QPointer>
#include <functional>

class QWidget;

namespace tweenery {

/// A press on a widget and what follows until it is let go, which together are one edit. Escape
/// takes it back; a release that never comes ends it.
class DragInput : public QObject {
    Q_OBJECT

 public:
    struct Handlers {
        std::function<void(QPointF point)> began;
        std::function<void(QPointF from, QPointF to)> moved;
        /// `isCancelled`: by Escape.
        std::function<void(bool isCancelled)> ended;
    };

    /// Belongs to `widget`, in whose coordinates all points are.
    DragInput(QWidget& widget, Handlers handlers);
    ~DragInput() override;
    bool isDragging() const { return m_isDragging; }

 protected:
    bool eventFilter(QObject* object, QEvent* event) override;

 private:
    QWidget& m_widget;
    Handlers m_handlers;
    QPointF m_point;
    bool m_isDragging = false;

    bool takesKey(QEvent& event);
    void end(bool isCancelled);
};

}  // namespace tweenery
