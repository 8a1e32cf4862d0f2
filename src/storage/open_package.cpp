#include "storage/open_package.h"

#include <fcntl.h>

#include <cerrno>

#include "base/errors.h"
#include "storage/package_place.h"
#include "storage/staged_directory.h"
#include "storage/system_names.h"

using namespace Qt::StringLiterals;

namespace tweenery {

FileDescriptor openPackage(const QString& path) {
    const QByteArray bytes = systemPath(path);
    constexpr int flags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
    FileDescriptor package(::open(bytes.constData(), flags));
    if (!package && errno == ENOENT) {
        package = openSetAside(PackagePlace(path));
        if (!package) { throw InputError(path, u"does not exist"_s); }
    }
    if (package) { return package; }
    if (errno == ENOTDIR) { throw InputError(path, u"is not a directory"_s); }
    throw InputError(path, failureText(u"could not be opened"_s, errno));
}

}  // namespace tweenery
