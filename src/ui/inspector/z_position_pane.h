#pragma once

#include <QListView>

#include "ui/inspector/drag_input.h"
#include "ui/inspector/property_pane.h"

namespace tweenery {

/// The children of an element, foremost first. Rows move by drag and by Alt+Up and Alt+Down.
class ZPositionList : public QListView {
    Q_OBJECT

 public:
    explicit ZPositionList(QWidget* parent);

    /// Keeps the current row at its element.
    void setElements(const PCElement::Elements& elements);
    int contentHeight() const;
    /// Asks for the row's place one up (-1) or one down (1); nothing at the end.
    void moveRow(int row, int step);

 Q_SIGNALS:
    /// To where now the row `row` is; the number of rows: behind all.
    void moveRequested(const Identifier& element, size_t row);

 protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

 private:
    class Model;
    class Delegate;

    Model* m_model;
    QPointF m_press;
    int m_draggedRow = -1;
    int m_dropRow = -1;  // before which the row would land; -1: no drag

    void beginDrag(QPointF point);
    void dragTo(QPointF point);
    void endDrag(bool isCancelled);
};

/// The pane of the order among the children of the selected element, or of the canvas.
class ZPositionPane : public PropertyPane {
    Q_OBJECT

 public:
    explicit ZPositionPane(PCDocumentWindowController& controller);

    void showValues(const InspectorValues& values, EditTime when) override;

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    ZPositionList m_list;
    PCElement::Ptr m_parent;

    PCElement::Ptr shownParent();
};

}  // namespace tweenery
