#pragma once

#include <optional>
#include <string>

#include "storage/posix_files.h"

namespace tweenery {

/// A small file beside the directories of a save, locked while the save runs. It names them by
/// their inodes, so that a later save removes what a dead one has left, and nothing else that only
/// has such a name: a folder that somebody put there, or one of the user's own.
class SaveMark {
 public:
    /// Makes and locks the file in `directory`, which has to outlive the mark. Nothing, with errno,
    /// when that fails; EEXIST when the name is taken.
    static std::optional<SaveMark> make(int directory, const std::string& name);
    /// The file that a save has left which no longer runs; nothing when there is none of this user.
    static std::optional<SaveMark> abandoned(int directory, const std::string& name);
    /// The same, whether or not the save still runs, and only to look at.
    static bool names(int directory, const std::string& name, const struct stat& entry);

    SaveMark(SaveMark&& other) noexcept;
    SaveMark& operator=(SaveMark&& other) = delete;
    /// Removes the file, unless it is kept for the next save.
    ~SaveMark();
    /// Something that it names could not be removed.
    void keep() { m_name.clear(); }

    /// Notes the directory in the making and, unless null, the package that it replaces. False,
    /// with errno, when that fails.
    bool note(const struct stat& staged, const struct stat* replaced) const;
    /// True for a directory of this user that has been noted.
    bool names(const struct stat& entry) const;
    /// For a removal that goes on when its save has ended: `directory` stands for the same folder.
    void setDirectory(int directory) { m_directory = directory; }

 private:
    SaveMark(int directory, std::string name, FileDescriptor file)
        : m_directory(directory), m_name(std::move(name)), m_file(std::move(file)) {}

    int m_directory;
    std::string m_name;  // empty: moved from
    FileDescriptor m_file;
};

}  // namespace tweenery
