#pragma once

#include <QString>
#include <map>
#include <ostream>
#include <string>

namespace tweenery::test {

/// One entry of a directory tree as it is on disk, read without the code under test.
struct EntrySnapshot {
    char kind = '?';      // 'd', 'f', 'l' or '?'
    unsigned mode = 0;    // permission bits; 0 for links
    std::string content;  // of a file, or the target of a link
    bool operator==(const EntrySnapshot&) const = default;
};
std::ostream& operator<<(std::ostream& out, const EntrySnapshot& entry);

/// By relative path; the directory itself is ".". Empty when there is no directory at `path`.
using DirectorySnapshot = std::map<std::string, EntrySnapshot>;
DirectorySnapshot snapshotOf(const QString& path);

/// The names of the hidden entries in the directory `path`.
std::vector<std::string> hiddenEntriesIn(const QString& path);

}  // namespace tweenery::test
