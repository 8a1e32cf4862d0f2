#pragma once

#include <QGraphicsScene>
#include <QGraphicsView>
#include <QSplitter>
#include <QStandardItemModel>
#include <QTreeView>
#include <vector>

namespace tweenery::bench {

/// A timeline as it is built from Qt's own parts: a tree of rows with a delegate that paints them,
/// and a graphics view with an item for each keyframe and each tween.
class TimelinePeer : public QSplitter {
 public:
    struct Size {
        int elements = 0;
        int rowsOfElement = 0;
        int keyframesOfRow = 0;
        int distanceInMS = 0;  // between two keyframes
    };

    /// Empty, of the size of a pane.
    TimelinePeer();

    /// All rows and items anew.
    void load(const Size& size);
    QWidget& painted() { return *m_view->viewport(); }
    void scrollTo(int x, int y);
    /// Selects the first of them.
    void selectKeyframes(int count);
    void moveSelected(double dx);

 private:
    QStandardItemModel m_model;
    QGraphicsScene m_scene;
    QTreeView* m_tree;
    QGraphicsView* m_view;
    std::vector<QGraphicsItem*> m_keyframes;

    void addRow(int row, const Size& size);
};

}  // namespace tweenery::bench
