#pragma once

#include <QDir>
#include <QFileInfo>
#include <QString>

namespace tweenery::test {

/// Set by the flag --update-goldens of every test program: goldens are rewritten, not compared.
inline bool updateGoldens = false;

inline QString sourcePath(const QString& relative) {
    return QStringLiteral(TWEENERY_SOURCE_DIR "/") + relative;
}

/// A package of tests/packages by its name without the extension.
inline QString packagePath(const QString& name) {
    return sourcePath(QStringLiteral("tests/packages/%1.tweenery").arg(name));
}

/// For a QTemporaryDir of its own: in memory where the machine has such a place, since every save
/// is flushed.
inline QString templateOfFastPlaces() {
    const QString memory = QStringLiteral("/dev/shm");
    return (QFileInfo(memory).isWritable() ? memory : QDir::tempPath()) +
           QStringLiteral("/tweenery-XXXXXX");
}

}  // namespace tweenery::test
