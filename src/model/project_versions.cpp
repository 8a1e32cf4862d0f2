// Model versions, updates and the backups taken before them.

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include "base/errors.h"
#include "model/project.h"
#include "storage/output_folder.h"
#include "storage/package_entries.h"
#include "storage/package_store.h"
#include "storage/system_names.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

QString nameOf(const FileWrapper& root) {
    return root.preferredFilename().isEmpty() ? root.filename() : root.preferredFilename();
}

bool isThere(const QString& path) {
    return kindOfPath(path) != PathKind::Nothing;
}

}  // namespace

int32_t PCProject::modelVersionOfProjectFileWrapper(const FileWrapper& root) {
    const FileWrapper::Ptr file = root.child(kVersionEntry);
    if (!file || !file->isRegularFile()) { return 0; }
    try {
        return PCProjectVersion::decode(KeyedUnarchiver(file->contents(), kVersionEntry).root())
            ->modelVersion();
    } catch (const InputError&) { return 0; }
}

FileWrapper::Ptr PCProject::updateProjectFileWrapperToLastestModelVersion(FileWrapper::Ptr root,
                                                                          LogPort& log,
                                                                          const QString& backups) {
    backUpIfOlder(*root, log, backups);
    return root;
}

QString PCProject::backUpIfOlder(const FileWrapper& root, LogPort& log, const QString& backups) {
    const int32_t version = modelVersionOfProjectFileWrapper(root);
    if (version >= currentModelVersion()) { return {}; }
    QString backupPath;
    try {
        backupPath = writeBackup(root, backups);
    } catch (const InputError& error) {
        // A failed backup does not stop the update.
        log.writeLine(
            u"The backup %1 could not be written (%2). The project is updated without one."_s.arg(
                error.entry(), error.reason()));
    }
    log.writeLine(u"Updating Model of %1 (From v%2 to v%3)"_s.arg(
        nameOf(root), QString::number(version), QString::number(currentModelVersion())));
    return backupPath;
}

QString PCProject::backupDirectory() {
    if (qEnvironmentVariableIsEmpty("HOME")) { return {}; }
    return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation) + u"/Backups"_s;
}

QString PCProject::writeBackup(const FileWrapper& root, const QString& backups) {
    const QString name = QDateTime::currentDateTime().toString(u"yyyy.MM.dd_HH.mm.ss"_s) + u'_' +
                         QFileInfo(nameOf(root)).completeBaseName();
    if (backups.isEmpty()) {
        throw InputError(name, u"there is no home folder, as the variable HOME is not set"_s);
    }
    OutputFolder::make(backups);
    // Another update within the same second has the same name.
    for (int number = 1;; ++number) {
        const QString suffix = number == 1 ? QString() : u" %1"_s.arg(number);
        const QString path = u"%1/%2%3.tweenery"_s.arg(backups, name, suffix);
        if (isThere(path)) { continue; }
        try {
            writePackageCopy(root, path);
            return path;
        } catch (const InputError& error) {
            if (!isThere(path)) { throw InputError(path, error.reason()); }
        }
    }
}

QString PCProject::backupProjectFileWrapper(const FileWrapper& root, const QString& backups) {
    try {
        return writeBackup(root, backups);
    } catch (const InputError&) { return {}; }
}

void PCProject::clearProjectBackups(const QString& backups) {
    if (!backups.isEmpty()) { QDir(backups).removeRecursively(); }
}

}  // namespace tweenery
