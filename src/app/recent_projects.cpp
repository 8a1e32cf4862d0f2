#include "app/recent_projects.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include "app/bookmark_file.h"
#include "base/errors.h"
#include "base/user_defaults.h"
#include "storage/input_file.h"
#include "storage/package_store.h"
#include "storage/system_names.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

constexpr qsizetype kMostProjects = 20;
constexpr qint64 kMostBytes = qint64{16} << 20;
// Projects that the desktop's list could not take, the newest first.
const QString kOwnList = u"recentProjects"_s;

QString listFile() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           u"/recently-used.xbel"_s;
}

// Settings hold text, names any bytes.
QStringList ownList() {
    QStringList paths;
    for (const QString& encoded : UserDefaults::standard().value(kOwnList).toStringList()) {
        paths << textOfSystemName(QByteArray::fromPercentEncoding(encoded.toLatin1()));
    }
    return paths;
}

void setOwnList(const QStringList& paths) {
    if (paths.isEmpty()) { return UserDefaults::standard().removeValue(kOwnList); }
    QStringList encoded;
    for (const QString& path : paths.first(std::min(paths.size(), kMostProjects))) {
        encoded << QString::fromLatin1(systemPath(path).toPercentEncoding("/"));
    }
    UserDefaults::standard().setValue(kOwnList, encoded);
}

BookmarkFile readList() {
    const QString path = listFile();
    const QFileInfo file(path);
    if (!file.exists() || file.size() == 0) { return {}; }
    if (file.size() > kMostBytes) { throw InputError(path, u"is too large"_s); }
    return {readInputFile(path), path};
}

void writeList(const BookmarkFile& list) {
    const QString path = listFile();
    const bool isNew = !QFile::exists(path);
    QDir().mkpath(QFileInfo(path).path());
    writeFileAtomically(path, list.text());
    // What somebody works on is nobody else's business.
    if (isNew) { QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner); }
}

}  // namespace

QStringList recentProjects() {
    QStringList paths = ownList();
    try {
        paths << readList().paths();
    } catch (const InputError&) {}
    paths.removeDuplicates();
    return paths.first(std::min(paths.size(), kMostProjects));
}

void addRecentProject(const QString& path) {
    const QString absolute = path.startsWith(u'/') ? path : QDir::currentPath() + u'/' + path;
    QStringList waiting = ownList();
    waiting.removeAll(absolute);
    waiting.prepend(absolute);
    try {
        BookmarkFile list = readList();
        for (qsizetype i = waiting.size() - 1; i >= 0; --i) {
            list.add(waiting[i], QDateTime::currentDateTimeUtc().addMSecs(-i));
        }
        for (const QString& old : list.paths().mid(kMostProjects)) {
            list.remove(old);
        }
        writeList(list);
        setOwnList({});
    } catch (const InputError&) { setOwnList(waiting); }
}

void removeRecentProject(const QString& path) {
    QStringList own = ownList();
    if (own.removeAll(path) > 0) { setOwnList(own); }
    try {
        BookmarkFile list = readList();
        if (!list.paths().contains(path)) { return; }
        list.remove(path);
        writeList(list);
    } catch (const InputError&) {}
}

void clearRecentProjects() {
    setOwnList({});
    try {
        BookmarkFile list = readList();
        const QStringList paths = list.paths();
        if (paths.isEmpty()) { return; }
        for (const QString& path : paths) {
            list.remove(path);
        }
        writeList(list);
    } catch (const InputError&) {}
}

}  // namespace tweenery
