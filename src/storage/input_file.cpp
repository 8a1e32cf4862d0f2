#include "storage/input_file.h"

#include <fcntl.h>

#include <cerrno>

#include "base/errors.h"
#include "base/limits.h"
#include "storage/package_entries.h"
#include "storage/posix_files.h"
#include "storage/system_names.h"

using namespace Qt::StringLiterals;

namespace tweenery {

QByteArray readInputFile(const QString& path) {
    const auto fail = [&](const QString& what) {
        throw InputError(path, failureText(what, errno));
    };
    constexpr int flags = O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
    const FileDescriptor file(::open(systemPath(path).constData(), flags));
    struct stat status;
    if (!file || ::fstat(file.number(), &status) != 0) { fail(u"could not be opened"_s); }
    if (!S_ISREG(status.st_mode)) { throw InputError(path, kIsNoRegularFile); }
    if (status.st_size > limits::kBytesOfEntry) {
        throw InputError(path,
                         beyondLimit(u"bytes of a file"_s, status.st_size, limits::kBytesOfEntry));
    }
    QByteArray bytes(status.st_size, Qt::Uninitialized);
    for (qsizetype filled = 0; filled < bytes.size();) {
        const ssize_t got = ::read(file.number(), bytes.data() + filled,
                                   static_cast<size_t>(bytes.size() - filled));
        if (got < 0 && errno != EINTR) { fail(u"could not be read"_s); }
        if (got == 0) { throw InputError(path, u"was changed while it was read"_s); }
        if (got > 0) { filled += got; }
    }
    return bytes;
}

}  // namespace tweenery
