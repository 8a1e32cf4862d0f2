#include "base/path_name.h"

namespace tweenery {

QString lastPathComponent(const QString& path) {
    return path.section(u'/', -1, -1, QString::SectionSkipEmpty);
}

QString pathExtension(const QString& filename) {
    const qsizetype dot = filename.lastIndexOf(u'.');
    return dot > 0 ? filename.mid(dot + 1) : QString();
}

QString withoutPathExtension(const QString& filename) {
    const QString extension = pathExtension(filename);
    return extension.isEmpty() ? filename : filename.chopped(extension.size() + 1);
}

}  // namespace tweenery
