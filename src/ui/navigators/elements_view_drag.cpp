// Rows that are dragged out of the list of elements, and what is dragged over it.

#include <QDrag>
#include <QMimeData>
#include <QPainter>
#include <QTimer>

#include "editor/canvas/pasteboard_commands.h"
#include "editor/mime_pasteboard.h"
#include "ui/navigators/elements_view.h"
#include "ui/widgets/appearance.h"
#include "ui/widgets/row_painting.h"
#include "ui/widgets/sizes.h"

namespace tweenery {
namespace {

constexpr double kMarkRing = 4;  // radius
constexpr double kMarkLine = 2;
constexpr int kMarkLeft = 3;  // from where the level begins, to the left
constexpr int kMostRowsOfPicture = 8;
constexpr double kPictureOpacity = 0.7;

const QStringList& pasteboardTypes() {
    static const QStringList kTypes{PCElement::pasteboardType(), PCImage::pasteboardType};
    return kTypes;
}

// The selected elements, put into bytes when somebody else asks for them.
class DraggedElements : public QMimeData {
 public:
    explicit DraggedElements(DocumentContext& document) : m_document(document) {}

    QStringList formats() const override { return {PCElement::pasteboardType()}; }
    bool hasFormat(const QString& type) const override { return formats().contains(type); }

 protected:
    QVariant retrieveData(const QString& type, QMetaType) const override {
        if (m_bytes.formats().isEmpty()) {
            MimePasteboard pasteboard(m_bytes);
            copySelectedElements(*m_document.project(), m_document.selectionManager(), pasteboard);
        }
        return m_bytes.data(type);
    }

 private:
    DocumentContext& m_document;
    mutable QMimeData m_bytes;
};

}  // namespace

void ElementsView::startDrag(Qt::DropActions) {
    m_dragged = m_outline.selectedRows();
    if (m_dragged.empty()) { return; }
    auto* drag = new QDrag(this);
    drag->setMimeData(new DraggedElements(m_document));
    drag->setPixmap(pictureOfSelectedRows());
    drag->exec(Qt::CopyAction | Qt::MoveAction, Qt::MoveAction);
    m_dragged.clear();
}

QPixmap ElementsView::pictureOfSelectedRows() const {
    const int count = static_cast<int>(m_dragged.size());
    const QSize size(viewport()->width(), std::min(count, kMostRowsOfPicture) * sizes::elementRow);
    QPixmap picture(size * devicePixelRatioF());
    picture.setDevicePixelRatio(devicePixelRatioF());
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(kPictureOpacity);
    QRect row(0, 0, size.width(), sizes::elementRow);
    for (const PCElement::Ptr& element : inListOrder(*m_document.project(), m_dragged)) {
        if (row.top() >= size.height()) { break; }
        paintRow(painter, row, m_model.indexOf(*element));
        row.translate(0, sizes::elementRow);
    }
    return picture;
}

OutlineDrag ElementsView::dragOf(const QDropEvent& event) const {
    OutlineDrag drag;
    const auto* source = qobject_cast<const QWidget*>(event.source());
    if (source == this) {
        drag.source = OutlineDrag::Source::ThisList;
        drag.elements = m_dragged;
    } else if (source && source->window() == window()) {
        drag.source = OutlineDrag::Source::ThisWindow;
    }
    const QMimeData& mime = *event.mimeData();
    drag.hasElements = mime.hasFormat(PCElement::pasteboardType());
    drag.hasFiles = mime.hasUrls();
    drag.hasPictures = drag.hasFiles && hasPictures(filesOf(mime.urls()));
    return drag;
}

ElementsView::DropMark ElementsView::markAt(QPoint position) const {
    DropMark mark;
    mark.row = indexAt(position).siblingAtColumn(0);
    if (!mark.row.isValid()) {
        const PCElement::Ptr& canvas = m_document.project()->canvas();
        mark.gap = {canvas, canvas->children().size()};
        return mark;
    }
    const QRect row = rowRect(mark.row);
    const PCElement::Ptr element = m_model.element(mark.row);
    const bool showsChildren = isExpanded(mark.row) && !element->children().empty();
    const int y = position.y() - row.top();
    const int edge = element->isGroup() ? row.height() / 4 : row.height() / 2;
    const RowPart part = y < edge                  ? RowPart::Upper
                         : y < row.height() - edge ? RowPart::Middle
                                                   : RowPart::Lower;
    mark.gap = gapAt(element, part, showsChildren);
    mark.isOnRow = mark.gap.parent == element && part == RowPart::Middle;
    mark.isAboveRow = part == RowPart::Upper;
    return mark;
}

Qt::DropAction ElementsView::actionOf(const QDropEvent& event, const DropMark& mark) const {
    return actionOfDrop(dragOf(event), *mark.gap.parent);
}

void ElementsView::showDropMark(const std::optional<DropMark>& mark) {
    m_dropMark = mark;
    viewport()->update();
}

void ElementsView::dragEnterEvent(QDragEnterEvent* event) {
    m_model.refresh();
    const OutlineDrag drag = dragOf(*event);
    const bool isWanted = actionOfDrop(drag, *m_document.project()->canvas()) != Qt::IgnoreAction;
    if (!isWanted) {
        event->ignore();
        return;
    }
    setState(DraggingState);
    event->accept();
}

void ElementsView::dragMoveEvent(QDragMoveEvent* event) {
    m_model.refresh();
    QTreeView::dragMoveEvent(event);  // scrolls at the edges, opens the row under the pointer
    DropMark mark = markAt(event->position().toPoint());
    const Qt::DropAction action = actionOf(*event, mark);
    if (action == Qt::IgnoreAction) {
        event->ignore();
        showDropMark(std::nullopt);
        return;
    }
    event->setDropAction(action);
    event->accept();
    const bool isPasted =
        dragOf(*event).source == OutlineDrag::Source::Elsewhere && !event->mimeData()->hasUrls();
    mark.isOnList = isPasted;
    showDropMark(mark);
}

void ElementsView::dragLeaveEvent(QDragLeaveEvent* event) {
    showDropMark(std::nullopt);
    QTreeView::dragLeaveEvent(event);
}

void ElementsView::dropEvent(QDropEvent* event) {
    m_model.refresh();
    stopAutoScroll();
    setState(NoState);
    showDropMark(std::nullopt);
    const DropMark mark = markAt(event->position().toPoint());
    const Qt::DropAction action = actionOf(*event, mark);
    if (action == Qt::IgnoreAction) {
        event->ignore();
        return;
    }
    // Rows that are moved are moved here: whoever dragged them has nothing to take away.
    event->setDropAction(Qt::CopyAction);
    event->accept();
    const QMimeData& mime = *event->mimeData();
    // What may ask the user something waits until the drag's source is free again.
    if (action == Qt::MoveAction) {
        moveToGap(m_document, m_dragged, mark.gap);
    } else if (mime.hasUrls()) {
        QTimer::singleShot(0, this, [this, paths = filesOf(mime.urls()), gap = mark.gap] {
            importToGap(m_document, paths, gap);
        });
    } else {
        const auto received = std::make_shared<QMimeData>();
        for (const QString& type : pasteboardTypes()) {
            received->setData(type, mime.data(type));
        }
        QTimer::singleShot(
            0, this, [this, received] { m_document.pasteFrom(ReceivedPasteboard(*received)); });
    }
}

void ElementsView::paintDropMark(QPainter& painter) const {
    const WorkbenchColors& colors = Appearance::current().workbench();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colors.accent, kMarkLine));
    painter.setBrush(Qt::NoBrush);
    const double half = kMarkLine / 2;
    if (m_dropMark->isOnList || m_dropMark->isOnRow) {
        const QRect whole = m_dropMark->isOnList ? viewport()->rect()
                                                 : rows::withoutLowerEdge(rowRect(m_dropMark->row));
        painter.drawRect(QRectF(whole).adjusted(half, half, -half, -half));
        return;
    }
    double y = half;
    if (m_dropMark->row.isValid()) {
        const QRect row = rowRect(m_dropMark->row);
        y = m_dropMark->isAboveRow ? row.top() : row.bottom() + 1;
    } else if (const QModelIndex last = lastRow(); last.isValid()) {
        y = rowRect(last).bottom() + 1;
    }
    y = std::clamp(y, half, viewport()->height() - half);
    const int depth = m_dropMark->gap.parent->depth() - 1;
    const QPointF ring(indentOf(depth) - kMarkLeft, y);
    painter.drawLine(ring + QPointF(kMarkRing, 0), QPointF(viewport()->width(), y));
    painter.drawEllipse(ring, kMarkRing - half, kMarkRing - half);
}

// Of those that are shown.
QModelIndex ElementsView::lastRow() const {
    QModelIndex last;
    for (int rows = m_model.rowCount(); rows > 0;
         rows = isExpanded(last) ? m_model.rowCount(last) : 0) {
        last = m_model.index(rows - 1, 0, last);
    }
    return last;
}

}  // namespace tweenery
