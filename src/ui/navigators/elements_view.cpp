#include "ui/navigators/elements_view.h"

#include <QHeaderView>
#include <QHelpEvent>
#include <QMenu>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QToolTip>
#include <algorithm>
#include <unordered_set>

#include "editor/commands.h"
#include "ui/navigators/list_keys.h"
#include "ui/navigators/name_editing.h"
#include "ui/widgets/appearance.h"
#include "ui/widgets/row_painting.h"
#include "ui/widgets/sizes.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

class ElementDelegate : public NameDelegate {
 public:
    using NameDelegate::NameDelegate;
    QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override {
        return {0, sizes::elementRow};
    }
};

}  // namespace

ElementsView::ElementsView(DocumentContext& document, QWidget* parent)
    : QTreeView(parent),
      m_document(document),
      m_outline(document),
      m_model(document, m_outline),
      m_selectionSubscription(document.selectionManager().addSelectionListener(this)),
      m_additiveSubscription(document.project()->notificationCentre().subscribe(
          DocumentNotification::additiveMode, nullptr,
          [this](const void*) { viewport()->update(); })) {
    setAccessibleName(u"Elements"_s);
    setModel(&m_model);
    setItemDelegate(new ElementDelegate(
        [this](const QModelIndex& index) { return indentOf(depthOf(index)) + kElementNameLeft; },
        this));
    setFrameShape(QFrame::NoFrame);
    setSelectionMode(ExtendedSelection);
    setSelectionBehavior(SelectRows);
    setEditTriggers(NoEditTriggers);
    setExpandsOnDoubleClick(false);
    setUniformRowHeights(true);
    setAnimated(false);
    setIndentation(kIndent);
    setTreePosition(ElementsModel::Name);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setDragDropMode(DragDrop);
    setDropIndicatorShown(false);
    setAutoExpandDelay(700);
    viewport()->setMouseTracking(true);
    viewport()->setAttribute(Qt::WA_Hover);
    header()->hide();
    header()->setMinimumSectionSize(sizes::lockColumn);
    header()->setStretchLastSection(true);
    header()->resizeSection(ElementsModel::Visibility, sizes::visibilityColumn);
    header()->resizeSection(ElementsModel::Lock, sizes::lockColumn);

    takeColors();
    connect(&Appearance::current(), &Appearance::changed, this, &ElementsView::takeColors);
    connect(&m_model, &ElementsModel::refreshed, this, &ElementsView::showWhatIs);
    connect(&m_model, &ElementsModel::expansionChanged, this, &ElementsView::applyExpansion);
    connect(this, &QTreeView::expanded, this,
            [this](const QModelIndex& index) { storeExpansion(index, true); });
    connect(this, &QTreeView::collapsed, this,
            [this](const QModelIndex& index) { storeExpansion(index, false); });
    rowsInserted({}, 0, m_model.rowCount() - 1);
    m_toReveal = document.selectionManager().selectedElements();
    showWhatIs();
}

// An open field would write to a model that has gone.
ElementsView::~ElementsView() {
    m_isSyncing = true;
    setModel(nullptr);
}

void ElementsView::takeColors() {
    QPalette colors = palette();
    colors.setColor(QPalette::Base, Appearance::current().frame().surround);
    setPalette(colors);
    viewport()->update();
}

// Keeping up with the document.

void ElementsView::elementSelectionManagerDidSelectElement(PCElementSelectionManager&,
                                                           const PCElement::Ptr& element) {
    m_toReveal.push_back(element);
    m_model.refreshLater();
}

void ElementsView::elementSelectionManagerDidDeselectElement(PCElementSelectionManager&,
                                                             const PCElement::Ptr&) {
    m_model.refreshLater();
}

void ElementsView::rowsInserted(const QModelIndex& parent, int first, int last) {
    QTreeView::rowsInserted(parent, first, last);
    for (int row = first; row <= last; ++row) {
        const QModelIndex index = m_model.index(row, 0, parent);
        if (!m_model.element(index)->children().empty()) { m_toExpand.emplace_back(index); }
        const int children = m_model.rowCount(index);
        if (children > 0) { rowsInserted(index, 0, children - 1); }
    }
}

void ElementsView::showWhatIs() {
    const QScopedValueRollback syncing(m_isSyncing, true);
    for (const QPersistentModelIndex& index : std::exchange(m_toExpand, {})) {
        applyExpansion(index);
    }
    revealSelected();
    showSelection();
    viewport()->update();
}

void ElementsView::applyExpansion(const QModelIndex& index) {
    const PCElement::Ptr element = m_model.element(index);
    const QScopedValueRollback syncing(m_isSyncing, true);
    if (element) { setExpanded(index, element->expanded()); }
}

// What opens to show a selected element, or under a drag, is open in this list only.
void ElementsView::storeExpansion(const QModelIndex& index, bool isExpanded) {
    const PCElement::Ptr element = m_model.element(index);
    if (m_isSyncing || state() == DraggingState || element->expanded() == isExpanded) { return; }
    UndoManager& undo = m_document.project()->undoManager();
    const UndoGroup step(undo);
    element->setExpanded(isExpanded);
    undo.setActionName(isExpanded ? u"Expand"_s : u"Collapse"_s);
}

void ElementsView::revealSelected() {
    std::unordered_set<const PCElement*> seen;
    for (const PCElement::Ptr& element : std::exchange(m_toReveal, {})) {
        if (!m_outline.showsAsSelected(*element)) { continue; }
        const PCElement* above = element->parentElement();
        while (above && seen.insert(above).second) {
            const QModelIndex index = m_model.indexOf(*above);
            if (index.isValid() && !isExpanded(index)) { expand(index); }
            above = above->parentElement();
        }
    }
}

// From the top.
PCElement::Elements ElementsView::elementsOfSelection() const {
    PCElement::Elements elements;
    for (const QItemSelectionRange& range : selectionModel()->selection()) {
        for (int row = range.top(); row <= range.bottom(); ++row) {
            elements.push_back(m_model.element(m_model.index(row, 0, range.parent())));
        }
    }
    return inListOrder(*m_document.project(), elements);
}

// Neighbours in one range.
QItemSelection ElementsView::rangesOf(const PCElement::Elements& elements) const {
    QItemSelection ranges;
    QModelIndex first;
    QModelIndex last;
    const auto endRange = [&] {
        if (first.isValid()) { ranges.append({first, last}); }
    };
    for (const PCElement::Ptr& element : elements) {
        const QModelIndex index = m_model.indexOf(*element);
        const bool goesOn =
            first.isValid() && last.parent() == index.parent() && last.row() + 1 == index.row();
        if (!goesOn) {
            endRange();
            first = index;
        }
        last = index.siblingAtColumn(ElementsModel::Name);
    }
    endRange();
    return ranges;
}

void ElementsView::showSelection() {
    PCElement::Elements shown = elementsOfSelection();
    std::erase_if(shown, [](const PCElement::Ptr& element) { return element->locked(); });
    const PCElement::Elements wanted = inListOrder(*m_document.project(), m_outline.selectedRows());
    if (shown == wanted) { return; }
    selectionModel()->select(rangesOf(wanted), QItemSelectionModel::ClearAndSelect);
    const bool isCurrentSelected =
        selectionModel()->isRowSelected(currentIndex().row(), currentIndex().parent());
    if (wanted.empty() || isCurrentSelected) { return; }
    setAutoScroll(false);  // the list stays where it was scrolled
    selectionModel()->setCurrentIndex(m_model.indexOf(*wanted.front(), ElementsModel::Name),
                                      QItemSelectionModel::NoUpdate);
    setAutoScroll(true);
}

void ElementsView::selectionChanged(const QItemSelection& selected,
                                    const QItemSelection& deselected) {
    QTreeView::selectionChanged(selected, deselected);
    if (m_isSyncing) { return; }
    m_outline.select(elementsOfSelection());
    m_model.refreshLater();
}

// The pointer.

bool ElementsView::viewportEvent(QEvent* event) {
    switch (event->type()) {
        case QEvent::HoverMove:
        case QEvent::HoverEnter:
            hover(indexAt(static_cast<QHoverEvent*>(event)->position().toPoint()));
            break;
        case QEvent::HoverLeave:
        case QEvent::Leave:
            hover({});
            break;
        case QEvent::UngrabMouse:
            endPress();
            break;
        case QEvent::ToolTip:
            if (showToolTip(*static_cast<QHelpEvent*>(event))) { return true; }
            break;
        default:
            break;
    }
    return QTreeView::viewportEvent(event);
}

void ElementsView::hover(const QModelIndex& index) {
    if (m_hovered == index) { return; }
    for (const QModelIndex& row : {QModelIndex(m_hovered), index}) {
        if (row.isValid()) { viewport()->update(rowRect(row)); }
    }
    m_hovered = index;
}

// Names that are cut are whole there.
bool ElementsView::showToolTip(const QHelpEvent& event) {
    const QModelIndex index = indexAt(event.pos());
    if (!index.isValid() || index.column() != ElementsModel::Name) { return false; }
    const int left = indentOf(depthOf(index)) + kElementNameLeft;
    const int width = viewport()->width() - kElementNameRight - left + 1;
    const QString name = m_model.element(index)->name();
    if (!rows::isCut(name, width, devicePixelRatioF())) { return false; }
    QToolTip::showText(event.globalPos(), name, viewport(), rowRect(index));
    return true;
}

void ElementsView::mousePressEvent(QMouseEvent* event) {
    m_model.refresh();
    if (pressCell(*event)) { return; }
    QTreeView::mousePressEvent(event);
}

// Eyes and locks: selection and focus stay as they are.
bool ElementsView::pressCell(const QMouseEvent& event) {
    const QModelIndex index = indexAt(event.position().toPoint());
    const PCElement::Ptr element = m_model.element(index);
    if (event.button() != Qt::LeftButton || !element) { return false; }
    if (index.column() == ElementsModel::Visibility) {
        endPress();
        m_eyeDrag = std::make_unique<EyeDrag>(*m_document.project(), *element);
        m_lastEye = index;
        return true;
    }
    if (index.column() == ElementsModel::Lock) {
        m_outline.setLocked(*element, !element->locked());
        return true;
    }
    return false;
}

void ElementsView::mouseMoveEvent(QMouseEvent* event) {
    if (!m_eyeDrag) {
        QTreeView::mouseMoveEvent(event);
    } else if (event->buttons() & Qt::LeftButton) {
        dragOverEyes(static_cast<int>(event->position().y()));
    } else {
        endPress();
    }
}

// A fast pointer leaves rows out; they are meant too.
void ElementsView::dragOverEyes(int y) {
    const QModelIndex index = indexAt({0, std::clamp(y, 0, viewport()->height() - 1)});
    if (!index.isValid() || !m_lastEye.isValid()) { return; }
    const bool isDownward = visualRect(index).top() > visualRect(m_lastEye).top();
    for (QModelIndex row = m_lastEye; row.isValid();
         row = isDownward ? indexBelow(row) : indexAbove(row)) {
        m_eyeDrag->reach(*m_model.element(row));
        if (row == index) { break; }
    }
    m_lastEye = index;
}

void ElementsView::mouseReleaseEvent(QMouseEvent* event) {
    if (m_eyeDrag && event->button() == Qt::LeftButton) {
        endPress();
        return;
    }
    QTreeView::mouseReleaseEvent(event);
}

void ElementsView::endPress() {
    m_eyeDrag.reset();
    m_lastEye = QModelIndex();
}

void ElementsView::mouseDoubleClickEvent(QMouseEvent* event) {
    if (pressCell(*event)) { return; }
    const QModelIndex index = indexAt(event->position().toPoint());
    const bool isOnName = index.isValid() && event->button() == Qt::LeftButton &&
                          event->position().x() >= indentOf(depthOf(index)) + kIndent;
    if (isOnName) {
        edit(index);
    } else {
        QTreeView::mousePressEvent(event);
    }
}

// The keyboard.

bool ElementsView::event(QEvent* event) {
    return keepsListKey(*event) || QTreeView::event(event);
}

void ElementsView::keyPressEvent(QKeyEvent* event) {
    m_model.refresh();
    if (m_eyeDrag) {
        if (event->key() != Qt::Key_Escape) { return; }
        m_eyeDrag->cancel();
        endPress();
        return;
    }
    if (isListKey(*event)) {
        QTreeView::keyPressEvent(event);
        event->accept();  // also at either end
        viewport()->update();
    } else {
        event->ignore();  // all other keys are the window's
    }
}

void ElementsView::focusOutEvent(QFocusEvent* event) {
    endPress();
    QTreeView::focusOutEvent(event);
    viewport()->update();
}

void ElementsView::hideEvent(QHideEvent* event) {
    endPress();
    QTreeView::hideEvent(event);
}

void ElementsView::renameTopSelectedRow() {
    m_model.refresh();
    const PCElement::Elements rows = inListOrder(*m_document.project(), m_outline.selectedRows());
    if (rows.empty()) { return; }
    const QModelIndex index = m_model.indexOf(*rows.front(), ElementsModel::Name);
    scrollTo(index);
    edit(index);
}

void ElementsView::endEditing() {
    if (NameEditor* editor = openNameEditor(*this)) {
        commitData(editor);
        closeEditor(editor, QAbstractItemDelegate::NoHint);
    }
}

void ElementsView::contextMenuEvent(QContextMenuEvent* event) {
    m_model.refresh();
    const bool isByMouse = event->reason() == QContextMenuEvent::Mouse;
    const QModelIndex index = isByMouse ? indexAt(event->pos()) : currentIndex();
    const PCElement::Ptr element = m_model.element(index);
    if (element && !m_outline.showsAsSelected(*element)) { m_outline.select({element}); }
    QMenu* menu = makeContextMenu().release();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(isByMouse ? event->globalPos()
                          : viewport()->mapToGlobal(rowRect(index).bottomLeft()));
}

std::unique_ptr<QMenu> ElementsView::makeContextMenu() {
    CommandSet& commands = m_document.commands();
    auto menu = std::make_unique<QMenu>(u"Contextual Menu"_s, this);
    for (const QString& name : {u"duplicateElements"_s, u"duplicateElementsInPlace"_s, u"delete"_s,
                                u"groupElements"_s, u"ungroupElements"_s, u"renameElement"_s}) {
        const Command& command = *commandNamed(name);
        QAction* action =
            menu->addAction(command.title, this, [&commands, name] { commands.perform(name); });
        // Only shown: the window's menu bar has the shortcut itself.
        action->setShortcut(QKeySequence(command.shortcuts.section(u"; "_s, 0, 0)));
        action->setEnabled(commands.isEnabled(name));
    }
    return menu;
}

}  // namespace tweenery
