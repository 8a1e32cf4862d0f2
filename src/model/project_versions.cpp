// Model versions, updates and the backups taken before them.

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include "base/errors.h"
#include "model/project.h"
#include "storage/package_store.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

QString& backupDirectoryOverride() {
    static QString path;
    return path;
}

QString nameOf(const FileWrapper& root) {
    return root.preferredFilename().isEmpty() ? root.filename() : root.preferredFilename();
}

}  // namespace

int32_t PCProject::modelVersionOfProjectFileWrapper(const FileWrapper& root) {
    const QString entry = u"version"_s;
    const FileWrapper::Ptr file = root.child(entry);
    if (!file || !file->isRegularFile()) { return 0; }
    try {
        return PCProjectVersion::decode(KeyedUnarchiver(file->contents(), entry).root())
            ->modelVersion();
    } catch (const InputError&) { return 0; }
}

FileWrapper::Ptr PCProject::updateProjectFileWrapperToLastestModelVersion(FileWrapper::Ptr root,
                                                                          LogPort& log) {
    backUpIfOlder(*root, log);
    return root;
}

QString PCProject::backUpIfOlder(const FileWrapper& root, LogPort& log) {
    const int32_t version = modelVersionOfProjectFileWrapper(root);
    if (version >= currentModelVersion()) { return {}; }
    QString backupPath = backupProjectFileWrapper(root);
    log.writeLine(u"Updating Model of %1 (From v%2 to v%3)"_s.arg(
        nameOf(root), QString::number(version), QString::number(currentModelVersion())));
    return backupPath;
}

QString PCProject::backupDirectory() {
    if (!backupDirectoryOverride().isEmpty()) { return backupDirectoryOverride(); }
    return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation) + u"/Backups"_s;
}

void PCProject::setBackupDirectory(const QString& path) {
    backupDirectoryOverride() = path;
}

QString PCProject::backupProjectFileWrapper(const FileWrapper& root) {
    const QString date = QDateTime::currentDateTime().toString(u"yyyy.MM.dd_HH.mm.ss"_s);
    const QString stem = QFileInfo(nameOf(root)).completeBaseName();
    const QString path = u"%1/%2_%3.tweenery"_s.arg(backupDirectory(), date, stem);
    QDir().mkpath(backupDirectory());
    try {
        writePackageCopy(root, path, true);
    } catch (const InputError&) {
        return {};  // a failed backup does not stop the update
    }
    return path;
}

void PCProject::clearProjectBackups() {
    QDir(backupDirectory()).removeRecursively();
}

}  // namespace tweenery
