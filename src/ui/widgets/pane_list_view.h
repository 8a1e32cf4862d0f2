#pragma once

#include <QScrollArea>
#include <QScrollBar>
#include <functional>
#include <vector>

namespace tweenery {

/// Panes one below the other, 2 points apart, that scroll when they do not fit. The scroll bar lies
/// over them and takes no room.
class PaneListView : public QScrollArea {
    Q_OBJECT

 public:
    explicit PaneListView(QWidget* parent = nullptr);
    ~PaneListView() override;

    /// Who knows the panes, from the top down. They stay the property of whoever answers, keep
    /// their sizes, and must be gone from the answer before they are deleted.
    void setPanes(std::function<std::vector<QWidget*>()> panes);
    /// Asks for the panes again, and lays them out by the sizes that they have now.
    void reloadData();

 protected:
    void resizeEvent(QResizeEvent* event) override;

 private:
    void takePanesOut();
    void layOutDocument();

    std::function<std::vector<QWidget*>()> m_panes;
    QWidget* m_document;
    int m_documentHeight = 0;
    QScrollBar m_overlay;
};

}  // namespace tweenery
