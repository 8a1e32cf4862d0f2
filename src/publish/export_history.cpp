#include "publish/export_history.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>

#include "base/errors.h"
#include "editor/documents/project_path.h"
#include "storage/input_file.h"
#include "storage/output_folder.h"
#include "storage/system_names.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

constexpr int kMostFolders = 50;  // of one project
const QString kLast = u"last"_s;
const QString kFolders = u"folders"_s;

// A path can have bytes that are no text.
QString encoded(const QString& path) {
    return QString::fromLatin1(systemPath(path).toPercentEncoding("/ "));
}

QString decoded(const QString& text) {
    return textOfSystemName(QByteArray::fromPercentEncoding(text.toLatin1()));
}

QString canonical(const QString& directory) {
    const QString path = QFileInfo(directory).canonicalFilePath();
    return path.isEmpty() ? QDir::cleanPath(directory) : path;
}

QJsonObject readObject(const QString& path) {
    try {
        return QJsonDocument::fromJson(readInputFile(path)).object();
    } catch (const InputError&) { return {}; }
}

QStringList sorted(const QSet<QString>& names) {
    QStringList list(names.begin(), names.end());
    list.sort();
    return list;
}

}  // namespace

QString ExportHistory::fileOf(const QString& project) const {
    if (project.isEmpty()) { return m_folder + u"/untitled.json"_s; }
    const QByteArray digest = QCryptographicHash::hash(systemPath(canonicalProjectPath(project)),
                                                       QCryptographicHash::Sha256);
    return m_folder + u'/' + QString::fromLatin1(digest.toHex()) + u".json"_s;
}

QString ExportHistory::lastDirectory(const QString& project) const {
    const QString last = decoded(readObject(fileOf(project)).value(kLast).toString());
    return QFileInfo(last).isDir() ? last : QString();
}

QStringList ExportHistory::filesIn(const QString& directory, const QString& project) const {
    if (project.isEmpty()) { return {}; }
    const QJsonObject folders = readObject(fileOf(project)).value(kFolders).toObject();
    QSet<QString> files;
    for (const QJsonValue& name : folders.value(encoded(canonical(directory))).toArray()) {
        files.insert(decoded(name.toString()));
    }
    return sorted(files);
}

QStringList ExportHistory::leftBehind(const QString& directory, const QString& project,
                                      const QStringList& written) const {
    QStringList left = filesIn(directory, project);
    const QSet<QString> now(written.begin(), written.end());
    left.removeIf([&](const QString& name) {
        return now.contains(name) || !QFileInfo(directory + u'/' + name).isFile();
    });
    return left;
}

void ExportHistory::note(const QString& directory, const QString& project,
                         const QStringList& written) {
    const QString file = fileOf(project);
    QJsonObject history = readObject(file);
    const QString key = encoded(canonical(directory));
    history[kLast] = key;
    if (!project.isEmpty()) {
        QSet<QString> files(written.begin(), written.end());
        for (const QString& name : leftBehind(directory, project, written)) {
            files.insert(name);
        }
        QJsonArray names;
        for (const QString& name : sorted(files)) {
            names << encoded(name);
        }
        QJsonObject folders = history.value(kFolders).toObject();
        if (folders.size() >= kMostFolders) { folders = {}; }
        folders[key] = names;
        history[kFolders] = folders;
    }
    try {
        OutputFolder::make(m_folder).write(QFileInfo(file).fileName(),
                                           {QJsonDocument(history).toJson()});
    } catch (const InputError&) {
        return;  // the export stands, and is only forgotten
    }
}

}  // namespace tweenery
