#include "editor/documents/project_path.h"

#include <climits>
#include <cstdlib>

#include <QDir>
#include <QStandardPaths>

#include "base/path_name.h"
#include "storage/package_entries.h"
#include "storage/system_names.h"

namespace tweenery {

using namespace Qt::StringLiterals;

namespace {

QString parentOf(const QString& path) {
    const qsizetype slash = path.lastIndexOf(u'/');
    if (slash < 0) { return {}; }
    return path.first(std::max<qsizetype>(slash, 1));
}

QString withoutSlashesAtEnd(QString path) {
    while (path.size() > 1 && path.endsWith(u'/')) {
        path.chop(1);
    }
    return path;
}

QString resolved(const QString& path) {
    char buffer[PATH_MAX];
    const char* found = ::realpath(systemPath(path).constData(), buffer);
    return found ? textOfSystemName(found) : QString();
}

}  // namespace

QString packageMeantBy(const QString& path) {
    for (QString at = withoutSlashesAtEnd(path); at.size() > 1; at = parentOf(at)) {
        const bool isNamedSo = pathExtension(lastPathComponent(at)) == kPackageExtension;
        if (isNamedSo && kindOfPath(at) == PathKind::Directory) { return at; }
    }
    return {};
}

QString canonicalProjectPath(const QString& path) {
    if (const QString found = resolved(path); !found.isEmpty()) { return found; }
    const QString plain = withoutSlashesAtEnd(path);
    const QString parent = parentOf(plain);
    const QString folder = resolved(parent.isEmpty() ? u"."_s : parent);
    if (folder.isEmpty()) { return plain; }
    return (folder == u"/" ? folder : folder + u'/') + lastPathComponent(plain);
}

QString stateFolder() {
    if (QStandardPaths::isTestModeEnabled()) {
        return QDir::homePath() + u"/.qttest/state/tweenery"_s;
    }
    const QString given = qEnvironmentVariable("XDG_STATE_HOME");
    // The base directory rules have a relative path ignored.
    const QString base = given.startsWith(u'/') ? given : QDir::homePath() + u"/.local/state"_s;
    return base + u"/tweenery"_s;
}

}  // namespace tweenery
