#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <functional>
#include <string>
#include <vector>

#include "storage/keyed_archiver.h"
#include "support/directory_snapshot.h"

namespace tweenery::test {

/// What a run of the program left behind.
struct Outcome {
    int code = -1;
    std::string out;
    std::string err;

    std::string firstErrorLine() const { return err.substr(0, err.find('\n')); }
};

/// Runs the program in-process. With an answer a person sits at the terminal and types it.
Outcome tweenc(const QStringList& arguments, const char* answer = nullptr);

/// The paths of entries that one has and the other has not, or with other contents.
std::vector<std::string> differences(const DirectorySnapshot& a, const DirectorySnapshot& b);

QByteArray contentsOf(const QString& path);
void replaceContents(const QString& path, const QByteArray& contents);

/// A place of its own for a test, with copies of packages to damage. In memory where the machine
/// has such a place: every save is flushed, and the tests save hundreds of packages.
class Workshop {
 public:
    Workshop();
    QString path(const QString& name) const { return m_directory.filePath(name); }
    /// The path of a copy of tests/packages/<package>.tweenery.
    QString copyOf(const QString& package, const QString& name = QStringLiteral("P.tweenery"));

 private:
    QTemporaryDir m_directory;
};

/// The archive of an object of any class, its keys written by a function.
QByteArray archiveOf(std::string_view className, const std::function<void(KeyedEncoder&)>& encode);
/// The `version` entry for a model version.
QByteArray versionArchive(int32_t version);

}  // namespace tweenery::test
