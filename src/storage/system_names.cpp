#include "storage/system_names.h"

#include <algorithm>

#include "storage/posix_files.h"

namespace tweenery {

QString textOfSystemName(const QByteArray& name) {
    QString text;
    for (qsizetype at = 0; at < name.size();) {
        // The longest piece that is UTF-8, found by trying: names are short.
        qsizetype length = std::min<qsizetype>(4, name.size() - at);
        while (length > 0 && !name.sliced(at, length).isValidUtf8()) {
            --length;
        }
        if (length == 0) {
            text += QChar(char16_t(kByteOfName + static_cast<unsigned char>(name[at++])));
        } else {
            text += QString::fromUtf8(name.sliced(at, length));
            at += length;
        }
    }
    return text;
}

PathKind kindOfPath(const QString& path) {
    const QByteArray bytes = systemPath(path);
    struct stat status;
    if (::stat(bytes.constData(), &status) != 0) {
        return ::lstat(bytes.constData(), &status) == 0 ? PathKind::Other : PathKind::Nothing;
    }
    if (S_ISDIR(status.st_mode)) { return PathKind::Directory; }
    return S_ISREG(status.st_mode) ? PathKind::File : PathKind::Other;
}

}  // namespace tweenery
