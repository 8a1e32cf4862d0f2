#pragma once

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace tweenery::test {

/// Folders for settings, data, state and sockets of one test program, so that several can run at
/// once and none comes near the user's. Made before the application object.
class OwnHome {
 public:
    OwnHome() {
        for (const char* variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME",
                                     "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"}) {
            const QString path = m_folder.filePath(QString::fromLatin1(variable));
            QDir().mkdir(path);
            QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
            qputenv(variable, QFile::encodeName(path));
        }
    }

 private:
    QTemporaryDir m_folder;
};

}  // namespace tweenery::test
