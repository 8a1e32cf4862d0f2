#include "bench/peers/timeline_peer.h"

#include <QGraphicsPathItem>
#include <QPainter>
#include <QScrollBar>
#include <QStyledItemDelegate>

using namespace Qt::StringLiterals;

namespace tweenery::bench {
namespace {

constexpr QSize kPane(1820, 400);
constexpr int kOutlineWidth = 350;
constexpr int kRowHeight = 28;
constexpr double kPointsPerMillisecond = 0.2;

class RowDelegate : public QStyledItemDelegate {
 public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        painter->fillRect(option.rect, QColor(0xF3, 0xF3, 0xF3));
        painter->setPen(Qt::black);
        painter->drawText(option.rect, Qt::AlignVCenter, index.data().toString());
        painter->setBrush(QColor(0xAA, 0xAA, 0xAA));
        painter->setPen(Qt::NoPen);
        painter->drawEllipse(option.rect.right() - kRowHeight, option.rect.top(), 25, 25);
    }
    QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override {
        return {kOutlineWidth, kRowHeight};
    }
};

QPainterPath diamond() {
    QPainterPath path;
    path.addPolygon(QPolygonF({{0, 0.5}, {9.5, 14}, {0, 27.5}, {-9.5, 14}, {0, 0.5}}));
    return path;
}

QPainterPath curve(double width) {
    QPainterPath path({0, 27});
    path.cubicTo(width / 4, 28, width * 3 / 4, 0, width, 1);
    return path;
}

}  // namespace

TimelinePeer::TimelinePeer()
    : QSplitter(Qt::Horizontal), m_tree(new QTreeView(this)), m_view(new QGraphicsView(this)) {
    m_tree->setModel(&m_model);
    m_tree->setItemDelegate(new RowDelegate(m_tree));
    m_tree->setHeaderHidden(true);
    m_tree->setUniformRowHeights(true);
    m_tree->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    m_view->setScene(&m_scene);
    m_view->setRenderHint(QPainter::Antialiasing);
    m_view->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    setSizes({kOutlineWidth, kPane.width() - kOutlineWidth});
    resize(kPane);
}

void TimelinePeer::load(const Size& size) {
    m_keyframes.clear();
    m_scene.clear();
    m_model.clear();
    int row = 0;
    for (int element = 0; element < size.elements; ++element) {
        auto* item = new QStandardItem(u"element %1"_s.arg(element));
        for (int i = 0; i < size.rowsOfElement; ++i) {
            item->appendRow(new QStandardItem(u"X Translation:"_s));
        }
        m_model.appendRow(item);
        ++row;
        for (int i = 0; i < size.rowsOfElement; ++i) {
            addRow(row++, size);
        }
    }
    m_tree->expandAll();
}

void TimelinePeer::addRow(int row, const Size& size) {
    static const QPainterPath shape = diamond();
    const double width = size.distanceInMS * kPointsPerMillisecond;
    const QPainterPath tween = curve(width);
    const QPen line(QColor(0xFC, 0x87, 0x3A), 1);
    const QPen thickLine(QColor(0xFC, 0x87, 0x3A), 2);
    for (int i = 0; i < size.keyframesOfRow; ++i) {
        const QPointF place(i * width, row * kRowHeight);
        if (i + 1 < size.keyframesOfRow) { m_scene.addPath(tween, line)->setPos(place); }
        auto* keyframe = m_scene.addPath(shape, thickLine, Qt::white);
        keyframe->setPos(place);
        keyframe->setZValue(1);
        keyframe->setFlag(QGraphicsItem::ItemIsSelectable);
        m_keyframes.push_back(keyframe);
    }
}

void TimelinePeer::scrollTo(int x, int y) {
    m_view->horizontalScrollBar()->setValue(x);
    m_view->verticalScrollBar()->setValue(y);
    m_tree->verticalScrollBar()->setValue(y);
}

void TimelinePeer::selectKeyframes(int count) {
    m_scene.clearSelection();
    for (int i = 0; i < count; ++i) {
        m_keyframes[static_cast<size_t>(i)]->setSelected(true);
    }
}

void TimelinePeer::moveSelected(double dx) {
    for (QGraphicsItem* item : m_scene.selectedItems()) {
        item->moveBy(dx, 0);
    }
}

}  // namespace tweenery::bench
