#include "app/project_folder.h"

#include <dirent.h>
#include <fcntl.h>

#include <QCollator>
#include <QDir>
#include <QStorageInfo>
#include <algorithm>

#include "base/errors.h"
#include "base/path_name.h"
#include "editor/documents/project_path.h"
#include "storage/package_entries.h"
#include "storage/posix_files.h"
#include "storage/system_names.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

FileDescriptor openFolder(const QString& path) {
    return FileDescriptor(::open(systemPath(path).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

QString parentOf(const QString& path) {
    return path.first(std::max<qsizetype>(path.lastIndexOf(u'/'), 1));
}

bool mayBeFolder(const ListedEntry& entry) {
    const bool hasSuchType =
        entry.type == DT_DIR || entry.type == DT_LNK || entry.type == DT_UNKNOWN;
    return hasSuchType && !entry.name.starts_with('.');
}

void sortByName(std::vector<FolderEntry>& entries) {
    // That of C, which many programs run with, knows neither numbers nor case.
    QCollator collator{QLocale(QLocale::English)};
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    std::sort(entries.begin(), entries.end(),
              [&collator](const FolderEntry& a, const FolderEntry& b) {
                  if (a.isProject != b.isProject) { return b.isProject; }
                  const int order = collator.compare(a.name, b.name);
                  return order != 0 ? order < 0 : a.name < b.name;
              });
}

}  // namespace

std::vector<FolderEntry> listProjectFolder(const QString& path) {
    const FileDescriptor folder = openFolder(path);
    std::vector<ListedEntry> listed;
    if (!folder || !listDirectory(folder.number(), listed)) {
        throw InputError(path, failureText(u"could not be read"_s, errno));
    }
    std::vector<FolderEntry> entries;
    for (const ListedEntry& each : listed) {
        struct stat status;
        if (!mayBeFolder(each) || ::fstatat(folder.number(), each.name.c_str(), &status, 0) != 0 ||
            !S_ISDIR(status.st_mode)) {
            continue;
        }
        const QString name = textOfSystemName(QByteArray::fromStdString(each.name));
        entries.push_back({QDir::cleanPath(path + u'/' + name), name,
                           pathExtension(name) == kPackageExtension,
                           QDateTime::fromSecsSinceEpoch(status.st_mtime)});
    }
    sortByName(entries);
    return entries;
}

QString typedPath(const QString& text, const QString& folder) {
    QString path = text.trimmed();
    if (path == u"~" || path.startsWith(u"~/")) {
        path.replace(0, 1, QDir::homePath());
    } else if (!path.startsWith(u'/')) {
        path.prepend(folder + u'/');
    }
    return QDir::cleanPath(path);
}

FoundPlace findPlace(const QString& path) {
    using Kind = FoundPlace::Kind;
    try {
        if (const QString project = packageMeantBy(path); !project.isNull()) {
            return {Kind::Project, project};
        }
        switch (kindOfPath(path)) {
            case PathKind::Directory:
                return {Kind::Folder, path};
            case PathKind::Nothing:
                return {Kind::Refused, path, u"does not exist"_s};
            default:
                return {Kind::Refused, path, u"is no project"_s};
        }
    } catch (const InputError& error) { return {Kind::Refused, path, error.reason()}; }
}

SavePlace checkSavePlace(const QString& path) {
    using Kind = SavePlace::Kind;
    const auto refuse = [](const QString& reason) { return SavePlace{Kind::Refused, reason}; };
    try {
        if (!isSafeFilename(lastPathComponent(path))) { return refuse(u"is no name for a file"_s); }
        const QString parent = parentOf(path);
        if (!packageMeantBy(parent).isNull()) { return refuse(u"lies inside a project"_s); }
        if (kindOfPath(parent) != PathKind::Directory) {
            return refuse(u"lies in a folder that does not exist"_s);
        }
        if (kindOfPath(path) == PathKind::Nothing) {
            const bool canWrite = ::access(systemPath(parent).constData(), W_OK | X_OK) == 0;
            return canWrite ? SavePlace{Kind::Free}
                            : refuse(u"lies in a folder that you may not change"_s);
        }
        const FileDescriptor present = openFolder(path);
        if (present && isPackage(present)) { return {Kind::ReplacesProject}; }
        return refuse(u"is there already and is no project, so it is not replaced"_s);
    } catch (const InputError& error) { return refuse(error.reason()); }
}

QString makeFolder(const QString& parent, const QString& name) {
    try {
        if (!isSafeFilename(name)) { return u"is no name for a folder"_s; }
        const QByteArray path = systemPath(parent + u'/' + name);
        if (::mkdir(path.constData(), ACCESSPERMS) == 0) { return {}; }
        return failureText(u"could not be made"_s, errno);
    } catch (const InputError& error) { return error.reason(); }
}

QStringList mountedVolumes() {
    QStringList volumes;
    for (const QStorageInfo& volume : QStorageInfo::mountedVolumes()) {
        const QString path = volume.rootPath();
        const bool isForUsers = path.startsWith(u"/media/") || path.startsWith(u"/run/media/") ||
                                path.startsWith(u"/mnt/");
        if (isForUsers && volume.isReady()) { volumes << path; }
    }
    return volumes;
}

}  // namespace tweenery
