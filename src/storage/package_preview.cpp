#include "storage/package_preview.h"

#include <fcntl.h>

#include <QFile>
#include <algorithm>

#include "base/errors.h"
#include "storage/bitmap.h"
#include "storage/open_package.h"
#include "storage/package_entries.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

// Ours are of 200 pixels and a few kilobytes.
constexpr qint64 kMostBytes = qint64{1} << 20;
constexpr int kLongestSide = 1024;

// Empty when there is no regular file of that name, or a larger one.
QByteArray readSmallFile(int directory, const QString& name) {
    constexpr int flags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
    const FileDescriptor descriptor(::openat(directory, name.toUtf8().constData(), flags));
    struct stat status;
    if (!descriptor || ::fstat(descriptor.number(), &status) != 0) { return {}; }
    if (!S_ISREG(status.st_mode) || status.st_size > kMostBytes) { return {}; }
    QFile file;
    if (!file.open(descriptor.number(), QIODevice::ReadOnly)) { return {}; }
    return file.read(kMostBytes);
}

}  // namespace

QImage packagePreview(const QString& path) {
    const QString entry = kQuickLookEntry + u"/Preview_Thumbnail@2x.jpg"_s;
    try {
        const FileDescriptor package = openPackage(path);
        const FileDescriptor folder =
            openDirectoryAt(package.number(), kQuickLookEntry.toUtf8().constData());
        if (!folder) { return {}; }
        const QByteArray data = readSmallFile(folder.number(), entry.section(u'/', 1));
        if (data.isEmpty()) { return {}; }
        const QSize size = encodedImageSize(data, entry);
        if (std::max(size.width(), size.height()) > kLongestSide) { return {}; }
        return decodeImage(data, entry);
    } catch (const InputError&) { return {}; }
}

}  // namespace tweenery
