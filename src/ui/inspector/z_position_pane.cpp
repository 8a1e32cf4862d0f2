#include "ui/inspector/z_position_pane.h"

#include <QAbstractListModel>
#include <QApplication>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QStyledItemDelegate>
#include <cmath>

#include "ui/widgets/appearance.h"
#include "ui/widgets/focus_ring.h"
#include "ui/widgets/fonts.h"
#include "ui/widgets/icons.h"
#include "ui/widgets/sizes.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

constexpr int kTextLeft = 12;
constexpr int kGrip = 16;
constexpr int kGripFromRight = 24;
constexpr int kInsertionLine = 2;
constexpr int kLabelLeft = 60;
constexpr int kFocusLine = 2;

}  // namespace

class ZPositionList::Model : public QAbstractListModel {
 public:
    using QAbstractListModel::QAbstractListModel;

    bool set(const PCElement::Elements& elements) {
        const bool isSame = std::equal(
            elements.begin(), elements.end(), m_rows.begin(), m_rows.end(),
            [](const PCElement::Ptr& element, const Row& row) {
                return element->identifier() == row.identifier && element->name() == row.name;
            });
        if (isSame) { return false; }
        beginResetModel();
        m_rows.clear();
        for (const PCElement::Ptr& element : elements) {
            m_rows.push_back({element->identifier(), element->name()});
        }
        endResetModel();
        return true;
    }
    int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
    }
    QVariant data(const QModelIndex& index, int role) const override {
        if (!index.isValid()) { return {}; }
        const Row& row = m_rows[static_cast<size_t>(index.row())];
        if (role == Qt::DisplayRole) { return row.name; }
        if (role == Qt::ToolTipRole) {
            return u"%1 – drag to reorder (Alt+Up, Alt+Down)"_s.arg(row.name);
        }
        return {};
    }
    const Identifier& identifier(int row) const {
        return m_rows[static_cast<size_t>(row)].identifier;
    }
    int rowOf(const Identifier& identifier) const {
        for (size_t i = 0; i < m_rows.size(); ++i) {
            if (m_rows[i].identifier == identifier) { return static_cast<int>(i); }
        }
        return -1;
    }

 private:
    struct Row {
        Identifier identifier;
        QString name;
    };
    std::vector<Row> m_rows;
};

class ZPositionList::Delegate : public QStyledItemDelegate {
 public:
    explicit Delegate(ZPositionList& list) : QStyledItemDelegate(&list), m_list(list) {}

    QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override {
        return {0, sizes::zPositionRow};
    }
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        const WorkbenchColors& colors = Appearance::current().workbench();
        const QRect row = option.rect;
        painter->fillRect(row, colors.paneRow);
        if (option.state & QStyle::State_MouseOver) { painter->fillRect(row, colors.rowHover); }
        painter->fillRect(QRect(row.left(), row.bottom(), row.width(), 1), colors.paneRowLine);
        const QRect text = row.adjusted(kTextLeft, 0, -kGripFromRight - kTextLeft, -1);
        painter->setFont(regularFont(sizes::paneLabelSize));
        painter->setPen(colors.paneInk);
        painter->drawText(text, Qt::AlignLeft | Qt::AlignVCenter,
                          painter->fontMetrics().elidedText(index.data().toString(), Qt::ElideRight,
                                                            text.width()));
        const QRectF grip(row.right() - kGripFromRight, row.top() + (row.height() - kGrip) / 2.0,
                          kGrip, kGrip);
        paintIcon(*painter, grip, u"grip"_s, colors.paneIcon);
        const bool isCurrent =
            m_list.hasFocus() && FocusRing::keyboardIsInUse() && index == m_list.currentIndex();
        if (!isCurrent) { return; }
        painter->setPen(QPen(colors.accent, kFocusLine));
        painter->drawRect(row.adjusted(1, 1, -1, -2));
    }

 private:
    ZPositionList& m_list;
};

// The list.

ZPositionList::ZPositionList(QWidget* parent) : QListView(parent), m_model(new Model(this)) {
    setAccessibleName(u"Z-Position"_s);
    setModel(m_model);
    setItemDelegate(new Delegate(*this));
    setUniformItemSizes(true);
    setFrameShape(NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setSelectionMode(NoSelection);
    setEditTriggers(NoEditTriggers);
    setTabKeyNavigation(false);
    setFocusPolicy(Qt::TabFocus);
    viewport()->setAttribute(Qt::WA_Hover);
    new DragInput(*viewport(), {[this](QPointF point) { beginDrag(point); },
                                [this](QPointF, QPointF to) { dragTo(to); },
                                [this](bool isCancelled) { endDrag(isCancelled); }});
}

void ZPositionList::setElements(const PCElement::Elements& elements) {
    const QModelIndex current = currentIndex();
    const Identifier identifier =
        current.isValid() ? m_model->identifier(current.row()) : Identifier();
    if (!m_model->set(elements)) { return; }
    endDrag(true);
    const int row = std::max(0, m_model->rowOf(identifier));
    if (row < m_model->rowCount()) { setCurrentIndex(m_model->index(row)); }
}

int ZPositionList::contentHeight() const {
    return m_model->rowCount() * sizes::zPositionRow;
}

void ZPositionList::moveRow(int row, int step) {
    const int target = step < 0 ? row - 1 : row + 2;
    if (row < 0 || target < 0 || target > m_model->rowCount()) { return; }
    Q_EMIT moveRequested(m_model->identifier(row), static_cast<size_t>(target));
}

void ZPositionList::beginDrag(QPointF point) {
    m_press = point;
    m_draggedRow = indexAt(point.toPoint()).row();
    if (m_draggedRow >= 0) { setCurrentIndex(m_model->index(m_draggedRow)); }
}

void ZPositionList::dragTo(QPointF point) {
    const bool isDrag = (point - m_press).manhattanLength() >= QApplication::startDragDistance();
    if (m_draggedRow < 0 || (m_dropRow < 0 && !isDrag)) { return; }
    m_dropRow = std::clamp(static_cast<int>(std::round(point.y() / sizes::zPositionRow)), 0,
                           m_model->rowCount());
    viewport()->update();
}

void ZPositionList::endDrag(bool isCancelled) {
    const int dragged = std::exchange(m_draggedRow, -1);
    const int drop = std::exchange(m_dropRow, -1);
    viewport()->update();
    if (isCancelled || dragged < 0 || drop < 0) { return; }
    Q_EMIT moveRequested(m_model->identifier(dragged), static_cast<size_t>(drop));
}

void ZPositionList::keyPressEvent(QKeyEvent* event) {
    const bool isMove = event->modifiers().testFlag(Qt::AltModifier);
    if (isMove && event->key() == Qt::Key_Up) { return moveRow(currentIndex().row(), -1); }
    if (isMove && event->key() == Qt::Key_Down) { return moveRow(currentIndex().row(), 1); }
    const QList<int> own{Qt::Key_Up, Qt::Key_Down, Qt::Key_Home, Qt::Key_End};
    if (own.contains(event->key())) { return QListView::keyPressEvent(event); }
    event->ignore();  // letters are commands
}

void ZPositionList::contextMenuEvent(QContextMenuEvent* event) {
    if (event->reason() == QContextMenuEvent::Mouse) { setCurrentIndex(indexAt(event->pos())); }
    const int row = currentIndex().row();
    if (row < 0) { return; }
    QMenu menu(this);
    QAction* up = menu.addAction(u"Move Up"_s, this, [this, row] { moveRow(row, -1); });
    QAction* down = menu.addAction(u"Move Down"_s, this, [this, row] { moveRow(row, 1); });
    up->setEnabled(row > 0);
    down->setEnabled(row + 1 < m_model->rowCount());
    menu.exec(event->globalPos());
}

void ZPositionList::wheelEvent(QWheelEvent* event) {
    event->ignore();  // scrolls the panes
}

void ZPositionList::paintEvent(QPaintEvent* event) {
    QListView::paintEvent(event);
    if (m_dropRow < 0) { return; }
    QPainter painter(viewport());
    const int y = std::clamp(m_dropRow * sizes::zPositionRow - kInsertionLine / 2, 0,
                             viewport()->height() - kInsertionLine);
    painter.fillRect(QRect(0, y, viewport()->width(), kInsertionLine),
                     Appearance::current().workbench().accent);
}

// The pane.

ZPositionPane::ZPositionPane(PCDocumentWindowController& controller)
    : PropertyPane(InspectorPaneKind::ZPosition, sizes::zPositionHead + sizes::zPositionFoot,
                   controller),
      m_list(this) {
    connect(&m_list, &ZPositionList::moveRequested, this,
            [this](const Identifier& element, size_t row) {
                const PCElement::Ptr parent = shownParent();
                if (parent) { edits().moveZPosition(parent, element, row); }
                Q_EMIT edited();
            });
}

PCElement::Ptr ZPositionPane::shownParent() {
    const PCElementSelectionManager& selection = controller().selectionManager();
    if (selection.selectedElementsCount() > 1) { return nullptr; }
    const PCElement::Ptr element = selection.firstSelectedElement();
    return element ? element : controller().project()->canvas();
}

void ZPositionPane::showValues(const InspectorValues& values, EditTime when) {
    PropertyPane::showValues(values, when);
    const PCElement::Ptr parent = shownParent();
    if (!parent) { return; }
    m_list.setElements(zPositionRows(*controller().project(), *parent, when));
    const int rows = m_list.contentHeight();
    m_list.setGeometry(sizes::paneMargin, sizes::zPositionHead,
                       sizes::paneWidth - 2 * sizes::paneMargin, rows);
    resize(sizes::paneWidth, rows + sizes::zPositionHead + sizes::zPositionFoot);
}

void ZPositionPane::paintEvent(QPaintEvent* event) {
    PropertyPane::paintEvent(event);
    QPainter painter(this);
    const WorkbenchColors& colors = Appearance::current().workbench();
    painter.setPen(colors.paneInk);
    const QRect head(kLabelLeft, 0, sizes::paneWidth - kLabelLeft - sizes::paneMargin,
                     sizes::zPositionHead);
    painter.setFont(lightFont(sizes::paneLabelSize));
    painter.drawText(head, Qt::AlignLeft | Qt::AlignVCenter, u"Z-Position:"_s);
    painter.setFont(lightFont(sizes::paneUnitSize));
    painter.setPen(colors.paneSecondInk);
    painter.drawText(head, Qt::AlignRight | Qt::AlignVCenter, u"front"_s);
}

}  // namespace tweenery
