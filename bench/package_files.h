#pragma once

#include <QByteArray>
#include <QString>
#include <vector>

namespace tweenery::bench {

/// A package's files with the plainest system calls: what every measurement compares with.
struct PackageFiles {
    struct File {
        std::string path;  // relative
        QByteArray data;
    };
    std::vector<std::string> directories;  // relative, parents first
    std::vector<File> files;
};

/// Walks the directory and reads every file with read().
PackageFiles readBytes(const QString& path);
size_t byteCount(const PackageFiles& package);
/// Makes the directories and writes each file, unflushed.
void writeBytes(const PackageFiles& package, const QString& path);
/// Makes the directories, hard-links all files but the first from `from`, writes and flushes that
/// one.
void linkFiles(const PackageFiles& package, const QString& from, const QString& path);
void exchange(const QString& a, const QString& b);
void removeTree(const QString& path);

}  // namespace tweenery::bench
