#include "base/program_files.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

namespace tweenery {

namespace {

// A build lies so deep in its source, its tests one level deeper.
constexpr int kLevelsAboveProgram = 3;

}  // namespace

QString programFile(const QString& installedPath, const QString& sourcePath) {
    QString folder = QCoreApplication::applicationDirPath();
    const QString installed = folder + u"/../share/"_s + installedPath;
    if (QFile::exists(installed)) { return QDir::cleanPath(installed); }
    for (int level = 0; level < kLevelsAboveProgram; ++level) {
        folder += u"/.."_s;
        const QString inSource = folder + u'/' + sourcePath;
        if (QFile::exists(inSource)) { return QDir::cleanPath(inSource); }
    }
    return {};
}

}  // namespace tweenery
