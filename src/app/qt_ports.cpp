#include "app/qt_ports.h"

#include <QApplication>
#include <QClipboard>
#include <QDesktopServices>
#include <QDir>
#include <QFileDialog>
#include <QMimeData>
#include <QSettings>
#include <QUrl>

#include "editor/mime_pasteboard.h"
#include "editor/outline_drop.h"

using namespace Qt::StringLiterals;

namespace tweenery {

void QtClipboard::write(const std::vector<PasteboardItem>& items) {
    auto data = std::make_unique<QMimeData>();
    MimePasteboard(*data).write(items);
    if (!m_picture.isNull()) { data->setImageData(std::exchange(m_picture, {})); }
    QGuiApplication::clipboard()->setMimeData(data.release());
}

QVariantList QtClipboard::read(const QString& type) const {
    const QMimeData* data = QGuiApplication::clipboard()->mimeData();
    return data ? MimePasteboard::read(*data, type) : QVariantList();
}

QImage QtClipboard::picture() const {
    return QGuiApplication::clipboard()->image();
}

QStringList QtClipboard::files() const {
    const QMimeData* data = QGuiApplication::clipboard()->mimeData();
    return data ? filesOf(data->urls()) : QStringList();
}

QStringList QtOpenPanel::chooseFiles(const OpenPanel& panel) {
    QStringList patterns;
    for (const QString& type : panel.fileTypes) {
        patterns << u"*."_s + type << u"*."_s + type.toUpper();
    }
    const QString key = u"folders/"_s + panel.fileTypes.join(u'-');
    QSettings settings;
    QFileDialog dialog(QApplication::activeWindow(), panel.message, settings.value(key).toString(),
                       u"Pictures (%1)"_s.arg(patterns.join(u' ')));
    dialog.setFileMode(panel.allowsSeveral ? QFileDialog::ExistingFiles
                                           : QFileDialog::ExistingFile);
    if (dialog.exec() != QDialog::Accepted) { return {}; }
    settings.setValue(key, dialog.directory().absolutePath());
    return dialog.selectedFiles();
}

QString QtOpenPanel::chooseFolder(const FolderPanel& panel) {
    QFileDialog dialog(QApplication::activeWindow(), panel.message,
                       panel.folder.isEmpty() ? QDir::homePath() : panel.folder);
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly);
    dialog.setLabelText(QFileDialog::Accept, panel.prompt);
    if (dialog.exec() != QDialog::Accepted) { return {}; }
    return dialog.selectedFiles().value(0);
}

bool QtWorkspace::openUrl(const QString& url) {
    return QDesktopServices::openUrl(QUrl(url, QUrl::StrictMode));
}

}  // namespace tweenery
