#pragma once

#include <QListView>
#include <memory>

#include "ui/navigators/animations_model.h"

class QMenu;

namespace tweenery {

/// The list of animations below the setup row. The selected row is always that of the project's
/// selected animation.
class AnimationsView : public QListView {
    Q_OBJECT

 public:
    /// Not owned; lives longer.
    explicit AnimationsView(DocumentContext& document, QWidget* parent = nullptr);
    ~AnimationsView() override;

    AnimationsModel& animationsModel() { return m_model; }
    /// Selects a new animation, brings it to the middle, and opens its name for typing.
    void addAnimation();
    /// Nothing for the setup row; so do the two that follow.
    void startRenaming(const QModelIndex& index);
    void deleteAnimation(const QModelIndex& index);
    void duplicateAnimation(const QModelIndex& index);
    /// Keeps what was typed into an open field, and closes it.
    void endEditing();
    /// For a row.
    std::unique_ptr<QMenu> makeContextMenu(const QModelIndex& index);

 protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void selectionChanged(const QItemSelection& selected,
                          const QItemSelection& deselected) override;

 private:
    DocumentContext& m_document;
    AnimationsModel m_model;
    bool m_isSyncing = false;  // what happens to the rows is not the user's doing

    void takeColors();
    void showSelection();
};

}  // namespace tweenery
