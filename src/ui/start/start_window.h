#pragma once

#include <QCheckBox>
#include <QWidget>

#include "ui/start/recents_list.h"
#include "ui/start/title_view.h"

namespace tweenery {

/// The window that greets: recent projects, samples with videos, a new project. What is chosen is
/// told; the window stays until whoever made it takes it away.
class StartWindow : public QWidget {
    Q_OBJECT

 public:
    /// `recents` as recentProjectsAt() gives them; what the disk knows comes by update().
    StartWindow(const std::vector<RecentProject>& recents, const QString& samplesFolder);

    RecentsList& recents() { return m_recents; }
    TitleView& title() { return m_title; }

 Q_SIGNALS:
    void newProjectWanted();
    void openPanelWanted();
    void projectChosen(const QString& path);
    void sampleChosen(const QString& path);
    void recentRemoved(const QString& path);
    void closed();

 protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

 private:
    TitleView m_title;
    RecentsList m_recents;
    QCheckBox m_showsAtLaunch;

    void addHeading();
    void addSamples(const std::vector<Sample>& samples);
    void addFoot();
};

}  // namespace tweenery
