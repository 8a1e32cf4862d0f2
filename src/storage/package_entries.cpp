#include "storage/package_entries.h"

#include <fcntl.h>

#include "base/errors.h"
#include "storage/keyed_unarchiver.h"

using namespace Qt::StringLiterals;

namespace tweenery {

const FileWrapper& requireRegularFile(const FileWrapper& node, const QString& entry) {
    if (!node.isRegularFile()) { throw InputError(entry, kIsNoRegularFile); }
    return node;
}

bool looksLikePackage(const FileDescriptor& directory) {
    for (const QString& entry : {kVersionEntry, kCanvasEntry, kPreferencesEntry}) {
        struct stat status;
        if (::fstatat(directory.number(), entry.toUtf8(), &status, AT_SYMLINK_NOFOLLOW) == 0) {
            return true;
        }
    }
    return false;
}

bool isPackage(const FileDescriptor& directory) {
    constexpr int flags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
    constexpr qsizetype longestVersion = 64 * 1024;
    const FileDescriptor file(::openat(directory.number(), kVersionEntry.toUtf8(), flags));
    QByteArray bytes(longestVersion, Qt::Uninitialized);
    const ssize_t length = file ? ::read(file.number(), bytes.data(), longestVersion) : -1;
    if (length < 0) { return false; }
    bytes.resize(length);
    try {
        const KeyedUnarchiver archive(bytes, kVersionEntry);
        const KeyedDecoder version = archive.root();
        return version.className() == u"PCProjectVersion" &&
               version.kindOfKey("modelVersion") == ArchivedKind::Number;
    } catch (const InputError&) { return false; }
}

}  // namespace tweenery
