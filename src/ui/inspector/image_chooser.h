#pragma once

#include <QAbstractButton>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>

#include "editor/document_window_controller.h"
#include "editor/inspector/image_choices.h"

namespace tweenery {

class ImageGrid;

/// All image sets of a project, those in use above those that are not, for a popover. Changes no
/// element itself; it takes unused sets out of the project.
class ImageChooser : public QScrollArea {
    Q_OBJECT

 public:
    explicit ImageChooser(PCDocumentWindowController& controller);

    /// Shows what the project has now; cheap when that is what is shown.
    void reload();
    QSize sizeHint() const override;

 Q_SIGNALS:
    void chosen(const QString& imageName);
    void browseRequested();
    void sizeHintChanged();

 private:
    PCDocumentWindowController& m_controller;
    QWidget* m_document;
    QPushButton* m_browse;
    QLabel* m_usedLabel;
    ImageGrid* m_used;
    QLabel* m_unusedLabel;
    QPushButton* m_remove;
    ImageGrid* m_unused;
    ImageChoices m_choices;
    int64_t m_changeCount = -1;
    uint64_t m_revision = 0;

    void layOut();
    void removeUnused();
};

}  // namespace tweenery
