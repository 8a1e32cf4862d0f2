#include "storage/package_place.h"

#include <fcntl.h>

#include <cerrno>
#include <climits>
#include <cstdlib>

#include "base/errors.h"
#include "storage/system_names.h"

using namespace Qt::StringLiterals;

namespace tweenery {

void DirectoryPlace::enter(const std::shared_ptr<const DirectoryPlace>& directory,
                           const QString& filename) {
    parent = directory;
    name = filename;
    depth = directory->depth + 1;
    if (depth > maxDepth) {
        throw InputError(path(), u"is nested more than %1 directories deep"_s.arg(maxDepth));
    }
}

QString DirectoryPlace::path() const {
    return parent ? parent->pathOf(name) : name;
}

QString DirectoryPlace::pathOf(const QString& filename) const {
    const QString printable = printableName(filename);
    return parent ? path() + u'/' + printable : printable;
}

namespace {

// The path without symbolic links if it exists, else as it stands without slashes at its end.
std::string resolvedPath(const QString& path) {
    const QByteArray bytes = systemPath(path);
    char resolved[PATH_MAX];
    if (::realpath(bytes.constData(), resolved)) { return resolved; }
    if (errno != ENOENT) { throw InputError(path, failureText(u"could not be opened"_s, errno)); }
    std::string unresolved = bytes.toStdString();
    while (unresolved.size() > 1 && unresolved.ends_with('/')) {
        unresolved.pop_back();
    }
    return unresolved;
}

}  // namespace

PackagePlace::PackagePlace(const QString& givenPath) : path(givenPath) {
    const std::string resolved = resolvedPath(givenPath);
    const size_t slash = resolved.rfind('/');
    name = slash == std::string::npos ? resolved : resolved.substr(slash + 1);
    if (name.empty() || name == "." || name == "..") {
        throw InputError(path, u"is no place for a package"_s);
    }
    const std::string directory =
        slash == std::string::npos ? "." : resolved.substr(0, std::max<size_t>(slash, 1));
    parent = FileDescriptor(::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!parent) { fail(u"its directory could not be opened"_s, errno); }
}

void PackagePlace::fail(const QString& whatFailed, int error) const {
    throw InputError(path, failureText(whatFailed, error));
}

QString packageName(const QString& path) {
    const auto lastComponent = [](const QString& of) {
        return of.section(u'/', -1, -1, QString::SectionSkipEmpty);
    };
    QString name = lastComponent(path);
    if (name == u"."_s || name == u".."_s) {
        name = lastComponent(QString::fromStdString(resolvedPath(path)));
    }
    return name;
}

}  // namespace tweenery
