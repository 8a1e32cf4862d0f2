// The export of a document's window: its sheet, and what is told afterwards.

#include <QUrl>

#include "editor/documents/project_path.h"
#include "publish/export_words.h"
#include "ui/canvas/canvas_view.h"
#include "ui/export/export_sheet.h"
#include "ui/window/canvas_area.h"
#include "ui/window/document_window.h"
#include "ui/window/toolbar.h"

using namespace Qt::StringLiterals;

namespace tweenery {

// What is exported is what is stored, and nothing can be edited while the sheet is there.
void DocumentWindow::openExportSheet() {
    if (m_exportSheet) { return; }
    if (m_controller->isPlayingBack()) { m_controller->togglePlayPause(); }
    const ExportHistory history(stateFolder() + u"/exports"_s);
    const int top = m_toolbar->mapTo(this, QPoint(0, m_toolbar->height())).y();
    m_exportSheet = new ExportSheet(
        {m_controller->project(), m_document->document().snapshot(), m_document->path()},
        {m_ports.alerts, m_ports.openPanel, m_ports.clock}, history, top, *this);
    connect(m_exportSheet, &ExportSheet::closed, this, &DocumentWindow::closeExportSheet);
    connect(m_exportSheet, &ExportSheet::exported, this, &DocumentWindow::tellExport);
    connect(m_exportSheet, &ExportSheet::noteChosen, this, [this](const ExportDiagnostic& note) {
        closeExportSheet();
        m_controller->reveal(note.identifier);
    });
    m_controller->commands().setAreHeld(true);
    updateLater();
}

void DocumentWindow::closeExportSheet() {
    ExportSheet* sheet = std::exchange(m_exportSheet, nullptr);
    if (!sheet) { return; }
    sheet->hide();
    sheet->deleteLater();
    m_controller->commands().setAreHeld(false);
    m_canvas->setFocus();
    updateLater();
}

void DocumentWindow::tellExport(const ExportOutcome& outcome) {
    closeExportSheet();
    const QString url = QUrl::fromLocalFile(outcome.directory).toString(QUrl::FullyEncoded);
    m_area->tellResult(wordsOfResult(outcome), detailOfResult(outcome), u"Show in Files"_s,
                       [this, url] { m_ports.workspace.openUrl(url); });
}

}  // namespace tweenery
