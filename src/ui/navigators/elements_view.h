#pragma once

#include <QPersistentModelIndex>
#include <QTreeView>
#include <memory>

#include "editor/outline_drop.h"
#include "ui/navigators/elements_model.h"

class QMenu;

namespace tweenery {

/// The list of elements. It and the document's selection are always the same; see ElementOutline
/// for what a press on a row, an eye or a lock does, and outline_drop.h for drags.
class ElementsView : public QTreeView, private PCElementSelectionManagerListener {
    Q_OBJECT

 public:
    /// Not owned; lives longer.
    explicit ElementsView(DocumentContext& document, QWidget* parent = nullptr);
    ~ElementsView() override;

    ElementsModel& elementsModel() { return m_model; }
    /// Opens the name of the topmost selected element for typing; nothing without one.
    void renameTopSelectedRow();
    /// Keeps what was typed into an open field, and closes it.
    void endEditing();
    /// For what is selected.
    std::unique_ptr<QMenu> makeContextMenu();

 protected:
    void drawRow(QPainter* painter, const QStyleOptionViewItem& option,
                 const QModelIndex& index) const override;
    void drawBranches(QPainter*, const QRect&, const QModelIndex&) const override {}
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void startDrag(Qt::DropActions actions) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void rowsInserted(const QModelIndex& parent, int first, int last) override;
    void selectionChanged(const QItemSelection& selected,
                          const QItemSelection& deselected) override;

 private:
    /// Where a drop would go, while something is dragged over the list.
    struct DropMark {
        OutlineGap gap;
        bool isOnRow = false;     // the row of gap.parent is meant
        bool isOnList = false;    // no row is meant
        QModelIndex row;          // that the pointer is over
        bool isAboveRow = false;  // the gap lies there
    };

    static constexpr int kIndent = 16;            // points, of each level
    static constexpr int kElementNameLeft = 44;   // from where the level begins
    static constexpr int kElementNameRight = 10;  // from the row's right

    DocumentContext& m_document;
    ElementOutline m_outline;
    ElementsModel m_model;
    Subscription m_selectionSubscription;
    Subscription m_additiveSubscription;
    bool m_isSyncing = false;  // what happens to the rows is not the user's doing
    PCElement::Elements m_toReveal;
    std::vector<QPersistentModelIndex> m_toExpand;
    QPersistentModelIndex m_hovered;
    std::unique_ptr<EyeDrag> m_eyeDrag;
    QPersistentModelIndex m_lastEye;
    PCElement::Elements m_dragged;
    std::optional<DropMark> m_dropMark;

    void elementSelectionManagerDidSelectElement(PCElementSelectionManager&,
                                                 const PCElement::Ptr&) override;
    void elementSelectionManagerDidDeselectElement(PCElementSelectionManager&,
                                                   const PCElement::Ptr&) override;
    void takeColors();
    void showWhatIs();
    void applyExpansion(const QModelIndex& index);
    void storeExpansion(const QModelIndex& index, bool isExpanded);
    void revealSelected();
    void showSelection();
    PCElement::Elements elementsOfSelection() const;
    QItemSelection rangesOf(const PCElement::Elements& elements) const;

    int depthOf(const QModelIndex& index) const;
    int indentOf(int depth) const;
    QRect rowRect(const QModelIndex& index) const;
    void paintRow(QPainter& painter, const QRect& row, const QModelIndex& index) const;
    void paintLock(QPainter& painter, QPointF centre, const PCElement& element, bool isSelected,
                   bool isHovered) const;
    void paintDropMark(QPainter& painter) const;
    void hover(const QModelIndex& index);
    bool showToolTip(const QHelpEvent& event);
    bool pressCell(const QMouseEvent& event);
    void dragOverEyes(int y);
    void endPress();

    OutlineDrag dragOf(const QDropEvent& event) const;
    DropMark markAt(QPoint position) const;
    Qt::DropAction actionOf(const QDropEvent& event, const DropMark& mark) const;
    void showDropMark(const std::optional<DropMark>& mark);
    QPixmap pictureOfSelectedRows() const;
    QModelIndex lastRow() const;
};

}  // namespace tweenery
