#pragma once

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <QWidget>

#include "publish/export_session.h"
#include "ui/export/sheet_rows.h"
#include "ui/widgets/elided_label.h"
#include "ui/widgets/progress_panel.h"
#include "ui/widgets/toggle_icon_button.h"

class QScrollArea;

namespace tweenery {

class PreviewView;

/// The sheet over a document's window in which its project is exported. Lies over the whole window,
/// which it dims, and takes pointer and keys as long as it is there. It shows an ExportSession and
/// forwards.
class ExportSheet : public QWidget {
    Q_OBJECT

 public:
    /// Over `window`, which owns it, `top` points below its upper edge where there is room.
    ExportSheet(ExportSession::Subject subject, const ExportSession::Ports& ports,
                ExportHistory history, int top, QWidget& window);
    ~ExportSheet() override;

    ExportSession& session() { return m_session; }

 Q_SIGNALS:
    /// Cancelled, or done. Whoever hears it takes the sheet away.
    void closed();
    /// A note was pressed; the sheet closes.
    void noteChosen(const tweenery::ExportDiagnostic& note);
    void exported(const tweenery::ExportOutcome& outcome);

 protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    bool eventFilter(QObject* object, QEvent* event) override;

 private:
    ExportSession m_session;
    const int m_top;
    QWidget* m_panel;
    ElidedLabel* m_subtitle = nullptr;
    PreviewView* m_preview = nullptr;
    QVBoxLayout* m_rows = nullptr;
    std::vector<PCPreviewAnimationCellView*> m_animations;
    QLabel* m_notesCount = nullptr;
    QVBoxLayout* m_notes = nullptr;
    std::vector<ExportNoteRow*> m_noteRows;
    struct Toggle {
        const ExportToggle* choice;
        ToggleIconButton* button;
        QLabel* label;
    };
    std::vector<Toggle> m_toggles;
    ElidedLabel* m_deletion = nullptr;
    ElidedLabel* m_forecast = nullptr;
    QPushButton* m_cancel = nullptr;
    QPushButton* m_export = nullptr;
    ProgressPanel* m_progress = nullptr;

    QWidget* makeHead();
    QWidget* makeList();
    QWidget* makeMiddle();
    QWidget* makeNotes();
    QWidget* makeToggles();
    QWidget* makeToggleSection(std::span<const ExportToggle> choices);
    QWidget* makeToggle(const ExportToggle& choice);
    QWidget* makeFoot();
    ExportSession::Hooks hooks();
    void layOut();
    void refresh();
    void updateAnimations();
    void updateNotes();
    void updateToggles();
    void updateFoot();
    void cancel();
    void beginExport();
};

}  // namespace tweenery
