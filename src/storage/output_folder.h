#pragma once

#include <QByteArrayList>
#include <QString>

#include "storage/posix_files.h"
#include "storage/temporaries.h"

namespace tweenery {

/// A folder that files are written into. It is opened once, so that the files go there whatever its
/// path has come to mean since.
class OutputFolder {
 public:
    /// Opens the folder at `path`, which may be a link to it, and makes it with its parents if it
    /// is not there. Throws InputError.
    static OutputFolder make(const QString& path);

    /// A folder in which nothing comes to be, to try what would be written.
    static OutputFolder pretended(const QString& path) { return {path, FileDescriptor()}; }

    /// Opens the folder `name` in this one, and makes it if it is not there. Throws InputError,
    /// also when it is a link.
    OutputFolder subfolder(const QString& name) const;
    /// Removes the entry `name` of this folder with everything in it, and returns how many files
    /// that were. What cannot be removed stays.
    size_t remove(const QString& name) const;
    /// How many files remove() would take away with the entry `name` of the folder at `path`. Looks
    /// through no link below that.
    static size_t countFiles(const QString& path, const QString& name);
    /// Writes the file `name`, made of `pieces`, atomically; a link of that name is replaced.
    /// Throws InputError, also for a name that no file can have.
    void write(const QString& name, const QByteArrayList& pieces) const;

 private:
    OutputFolder(QString path, FileDescriptor folder);

    QString m_path;  // for messages
    FileDescriptor m_folder;
};

/// A file that comes to be piece by piece: a temporary beside its place, which takes that place in
/// commit() and is removed if it comes to none. All throw InputError, naming the file's path.
class FileInTheMaking {
 public:
    /// Opens the folder of `path`, which exists.
    explicit FileInTheMaking(const QString& path);
    /// For the file `name` in the open directory `folder`, which stays open; `path` is for
    /// messages.
    FileInTheMaking(const FileDescriptor& folder, const std::string& name, const QString& path);
    ~FileInTheMaking();
    FileInTheMaking(const FileInTheMaking&) = delete;
    FileInTheMaking& operator=(const FileInTheMaking&) = delete;

    void write(const QByteArrayList& pieces);
    /// Flushes the file and puts it into its place, where a link is replaced.
    void commit();

 private:
    void open();
    [[noreturn]] void fail(int error) const;

    const Temporary m_temporary;
    QString m_path;
    FileDescriptor m_ownFolder;
    int m_folder = -1;
    std::string m_name;
    std::string m_staging;
    FileDescriptor m_file;
    bool m_isInPlace = false;
};

}  // namespace tweenery
