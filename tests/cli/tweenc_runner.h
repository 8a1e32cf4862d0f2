#pragma once

#include <QByteArray>
#include <QDir>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <string>
#include <vector>

#include "support/directory_snapshot.h"
#include "support/files.h"

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

/// A place of its own for a test, with copies of packages to damage.
class Workshop {
 public:
    Workshop();
    QString path(const QString& name) const { return m_directory.filePath(name); }
    /// The path of a copy of tests/packages/<package>.tweenery.
    QString copyOf(const QString& package, const QString& name = QStringLiteral("P.tweenery"));

 private:
    QTemporaryDir m_directory;
};

/// The verbs that read a package, on this one; export goes to "out", copy to "Copy.tweenery".
/// `moreOfValues` goes behind the verb of values.
std::vector<QStringList> readingCommands(const Workshop& shop, const QString& package,
                                         const QStringList& moreOfValues = {});

/// A workshop that is the user's home folder for its life, where backups go.
class Home : public Workshop {
 public:
    Home() { ::qputenv("HOME", path({}).toUtf8()); }
    ~Home() { ::qputenv("HOME", m_before); }
    QString backups() const { return path(QStringLiteral("Documents/Backups")); }
    QStringList backupNames() const {
        return QDir(backups()).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    }

 private:
    const QByteArray m_before = ::qgetenv("HOME");
};

}  // namespace tweenery::test
