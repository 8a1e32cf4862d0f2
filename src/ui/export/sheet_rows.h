#pragma once

#include <QAbstractButton>
#include <QTextLayout>

#include "codegen/export_diagnostics.h"
#include "publish/export_preview.h"

namespace tweenery {

/// One animation in the sheet's list: its name and length, and whether it plays. A press changes
/// nothing by itself.
class PCPreviewAnimationCellView : public QAbstractButton {
    Q_OBJECT

 public:
    explicit PCPreviewAnimationCellView(QWidget* parent = nullptr);

    void show(const ExportPreview::Animation& animation);

    QSize sizeHint() const override;

 protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;
    void nextCheckState() override {}

 private:
    ExportPreview::Animation m_animation;
};

/// What a designer should know before an export, in at most two lines; a press leads there.
class ExportNoteRow : public QAbstractButton {
    Q_OBJECT

 public:
    explicit ExportNoteRow(ExportDiagnostic note, QWidget* parent = nullptr);

    const ExportDiagnostic& note() const { return m_note; }
    QSize sizeHint() const override;

 protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;

 private:
    ExportDiagnostic m_note;

    QString text() const;
};

}  // namespace tweenery
