#pragma once

#include <QAbstractListModel>
#include <QListView>

#include "app/project_folder.h"

namespace tweenery {

/// The contents of a folder as ProjectChooser shows them.
class FolderModel : public QAbstractListModel {
    Q_OBJECT

 public:
    using QAbstractListModel::QAbstractListModel;

    void setEntries(std::vector<FolderEntry> entries);
    void setPreview(int row, const QImage& preview);
    const FolderEntry& entry(const QModelIndex& index) const;
    /// Invalid when no entry has the path.
    QModelIndex indexOf(const QString& path) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

 private:
    std::vector<FolderEntry> m_entries;
};

/// Shows a FolderModel as a grid of pictures or as a list with dates. While there is nothing to
/// show it says why.
class FolderView : public QListView {
    Q_OBJECT

 public:
    explicit FolderView(QWidget* parent);

    void setIsGrid(bool isGrid);
    bool isGrid() const { return viewMode() == IconMode; }
    /// One line that says what is, one that says what to do.
    void setEmptyText(const QString& title, const QString& hint);

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    QString m_emptyTitle;
    QString m_emptyHint;
};

}  // namespace tweenery
