#include "ui/navigators/animations_view.h"

#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QScopedValueRollback>
#include <algorithm>

#include "ui/navigators/animation_rows.h"
#include "ui/navigators/list_keys.h"
#include "ui/navigators/name_editing.h"
#include "ui/widgets/appearance.h"
#include "ui/widgets/row_painting.h"
#include "ui/widgets/sizes.h"

using namespace Qt::StringLiterals;

namespace tweenery {

AnimationsView::AnimationsView(DocumentContext& document, QWidget* parent)
    : QListView(parent), m_document(document), m_model(document) {
    setAccessibleName(u"Animations"_s);
    setModel(&m_model);
    setItemDelegate(new AnimationRowDelegate(*this));
    setFrameShape(QFrame::NoFrame);
    setSelectionMode(SingleSelection);
    setEditTriggers(NoEditTriggers);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setResizeMode(Adjust);
    viewport()->setAttribute(Qt::WA_Hover);
    takeColors();
    connect(&Appearance::current(), &Appearance::changed, this, &AnimationsView::takeColors);
    connect(&m_model, &AnimationsModel::selectionChanged, this, &AnimationsView::showSelection);
    connect(&m_model, &QAbstractItemModel::rowsInserted, this, &AnimationsView::showSelection);
    connect(&m_model, &QAbstractItemModel::rowsRemoved, this, &AnimationsView::showSelection);
    showSelection();
}

// An open field would write to a model that has gone.
AnimationsView::~AnimationsView() {
    m_isSyncing = true;
    setModel(nullptr);
}

void AnimationsView::takeColors() {
    QPalette colors = palette();
    colors.setColor(QPalette::Base, Appearance::current().frame().surround);
    setPalette(colors);
    viewport()->update();
}

void AnimationsView::showSelection() {
    const QScopedValueRollback syncing(m_isSyncing, true);
    const auto selected = m_document.project()->animationsManager().selectedAnimation();
    const QModelIndex index = m_model.indexOf(selected);
    if (!index.isValid()) { return; }  // its row is still to come
    setAutoScroll(false);              // the list stays where it was scrolled
    selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
    setAutoScroll(true);
}

void AnimationsView::selectionChanged(const QItemSelection& selected,
                                      const QItemSelection& deselected) {
    QListView::selectionChanged(selected, deselected);
    viewport()->update();
    if (m_isSyncing) { return; }
    if (!selected.isEmpty()) {
        m_document.selectAnimation(m_model.animation(selected.indexes().first()));
    }
    showSelection();  // also where nothing is selected, or the animation could not be read
}

void AnimationsView::paintEvent(QPaintEvent* event) {
    QListView::paintEvent(event);
    if (m_model.rowCount() > 1) { return; }
    QPainter painter(viewport());
    rows::paintEmptyPlace(painter, viewport()->rect().adjusted(0, sizes::setupRow, 0, 0),
                          u"No animations yet"_s, u"Press + to add the first."_s);
}

// Commands.

void AnimationsView::endEditing() {
    if (NameEditor* editor = openNameEditor(*this)) {
        commitData(editor);
        closeEditor(editor, QAbstractItemDelegate::NoHint);
    }
}

void AnimationsView::addAnimation() {
    endEditing();
    const auto animation = m_document.project()->animationsManager().addNewEmptyAnimation();
    m_document.selectAnimation(animation);
    const QModelIndex index = m_model.indexOf(animation);
    scrollTo(index, PositionAtCenter);
    startRenaming(index);
}

void AnimationsView::startRenaming(const QModelIndex& index) {
    if (m_model.animation(index)) { edit(index); }
}

void AnimationsView::deleteAnimation(const QModelIndex& index) {
    endEditing();
    if (const auto animation = m_model.animation(index)) {
        UndoManager& undo = m_document.project()->undoManager();
        const UndoGroup step(undo);
        m_document.project()->animationsManager().deleteAnimation(animation);
        undo.setActionName(u"Delete Animation"_s);
    }
}

void AnimationsView::duplicateAnimation(const QModelIndex& index) {
    endEditing();
    if (const auto animation = m_model.animation(index)) {
        UndoManager& undo = m_document.project()->undoManager();
        const UndoGroup step(undo);
        m_document.project()->animationsManager().duplicateAnimation(animation);
        undo.setActionName(u"Duplicate Animation"_s);
    }
}

std::unique_ptr<QMenu> AnimationsView::makeContextMenu(const QModelIndex& index) {
    using Command = void (AnimationsView::*)(const QModelIndex&);
    auto menu = std::make_unique<QMenu>(u"Contextual Menu"_s, this);
    const auto add = [&](const QString& title, const QKeySequence& shortcut, Command command) {
        QAction* action = menu->addAction(
            title, this,
            [this, command, row = QPersistentModelIndex(index)] { (this->*command)(row); });
        action->setShortcut(shortcut);
        action->setEnabled(m_model.animation(index) != nullptr);
    };
    add(u"Delete"_s, Qt::Key_Delete, &AnimationsView::deleteAnimation);
    add(u"Rename"_s, Qt::Key_F2, &AnimationsView::startRenaming);
    add(u"Duplicate"_s, {}, &AnimationsView::duplicateAnimation);
    return menu;
}

// Input.

bool AnimationsView::event(QEvent* event) {
    return keepsListKey(*event, {Qt::Key_F2, Qt::Key_Delete, Qt::Key_Backspace}) ||
           QListView::event(event);
}

// A menu is about the row under the pointer, which stays as it is.
void AnimationsView::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) { QListView::mousePressEvent(event); }
}

void AnimationsView::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) { startRenaming(indexAt(event->position().toPoint())); }
}

void AnimationsView::keyPressEvent(QKeyEvent* event) {
    const bool isPlain = event->modifiers() == Qt::NoModifier;
    if (isListKey(*event)) {
        QListView::keyPressEvent(event);
        event->accept();  // also at either end
    } else if (isPlain && event->key() == Qt::Key_F2) {
        startRenaming(currentIndex());
    } else if (isPlain && (event->key() == Qt::Key_Delete || event->key() == Qt::Key_Backspace)) {
        deleteAnimation(currentIndex());
    } else {
        event->ignore();  // all other keys are the window's
    }
}

void AnimationsView::contextMenuEvent(QContextMenuEvent* event) {
    const bool isByMouse = event->reason() == QContextMenuEvent::Mouse;
    const QModelIndex index = isByMouse ? indexAt(event->pos()) : currentIndex();
    QMenu* menu = makeContextMenu(index).release();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(isByMouse ? event->globalPos()
                          : viewport()->mapToGlobal(visualRect(index).bottomLeft()));
}

}  // namespace tweenery
