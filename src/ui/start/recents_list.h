#pragma once

#include <QListWidget>

#include "ui/start/start_contents.h"

namespace tweenery {

/// The list of recent projects: a picture, a name and a folder each; one that is gone says so and
/// can be taken off the list. Return or a double click opens, Delete takes off.
class RecentsList : public QListWidget {
    Q_OBJECT

 public:
    explicit RecentsList(QWidget* parent = nullptr);

    void setProjects(const std::vector<RecentProject>& projects);
    /// What the disk has answered by now; nothing for a project that is not listed.
    void update(const RecentProject& project);
    /// Takes the row of that path away.
    void removePath(const QString& path);

 Q_SIGNALS:
    void opened(const QString& path);
    /// The user wants it off the list.
    void removed(const QString& path);

 protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

 private:
    QListWidgetItem* itemOf(const QString& path) const;
};

}  // namespace tweenery
