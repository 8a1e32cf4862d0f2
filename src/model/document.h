#pragma once

#include <QString>
#include <memory>

#include "base/ports.h"
#include "model/project.h"
#include "storage/package_store.h"

namespace tweenery {

/// What the user is told when a package, shown by `name`, cannot be opened because a newer version
/// of the program wrote it.
Alert alertForNewerProject(const QString& name);

/// A document as it stood at one moment, to be written or exported while its project is edited.
/// Costs no copy of what did not change since the snapshot before it. Any thread may use it.
struct DocumentSnapshot {
    FileWrapper::Snapshot package;
    QString projectName;
    std::weak_ptr<PCProject> project;  // that it was taken of, for the document to compare
    int64_t changeCount = 0;           // of its undo manager

    /// A project of its own that belongs to the calling thread, for an export. What is done to it
    /// reaches neither the snapshot nor the document. Throws InputError for what cannot be read.
    PCProject::Ptr projectForReading() const;
};

/// An open package: reads it, checks its model version with the user, builds the project, and saves
/// it back. Talks to the user through the alert port.
class PCDocument {
 public:
    PCDocument(AlertPort& alerts, LogPort& log) : m_alerts(alerts), m_log(log) {}

    static bool autosavesInPlace() { return true; }
    /// Where an older package is backed up before its update; PCProject::backupDirectory() unless
    /// told otherwise.
    void setBackupDirectory(const QString& path) { m_backupDirectory = path; }
    /// False when the user was told by an alert (newer version) or declined the update. Throws
    /// InputError for a package that cannot be read, and for an update that cannot be saved. Then
    /// the document is as it was.
    bool readFromPath(const QString& path);
    /// The same without the save of an update.
    bool readFromFileWrapper(const FileWrapper::Ptr& root);
    /// The tree to write, with the canvas picture if there is one.
    FileWrapper::Ptr fileWrapperOfProject();

    // A save: a snapshot, its writing, and didWrite(). save() and saveAs() do the three at once.

    /// Encodes what changed. Allowed in the middle of a gesture, between two of its events: the
    /// rest of it counts as edited. See UndoManager::isWhole().
    DocumentSnapshot snapshot();
    /// Call when writeSnapshot() of the snapshot's package has come to an end: the document is now
    /// unedited up to the snapshot, and at `path`. One snapshot after the other, as they were
    /// taken; a failed one is left out. A project that was reverted meanwhile keeps its own state.
    void didWrite(const DocumentSnapshot& snapshot, const WrittenPackage& written,
                  const QString& path);
    /// Writes to where it was read from (AssertionFailure when it was not). Throws InputError, also
    /// when the package changed on disk.
    void save(OnDiskChange policy = OnDiskChange::Refuse);
    /// Writes to a new place, which becomes the document's own.
    void saveAs(const QString& path);
    /// Reads the document anew. False without a path, and when it could not be read, which the user
    /// was told by an alert; then the document is as it was.
    bool revert();

    /// Makes a new empty project when there is none yet.
    const PCProject::Ptr& project();
    void setProject(const PCProject::Ptr& project);
    const QString& path() const { return m_path; }
    /// The name shown for the document, stored without its extension and the path before it; the
    /// project's name as well.
    void setDisplayName(const QString& name);
    const QString& displayName() const { return m_displayName; }
    /// True when edits were made since it was opened, or since what was saved was taken from it.
    bool isEdited() const;

 private:
    AlertPort& m_alerts;
    LogPort& m_log;
    QString m_backupDirectory = PCProject::backupDirectory();
    QString m_path;
    QString m_displayName;
    PCProject::Ptr m_project;
    int64_t m_savedChangeCount = 0;

    struct Opened {
        PCProject::Ptr project;  // null when the user was told, or declined
        bool isUpdated = false;
    };
    Opened open(const FileWrapper::Ptr& root);
    bool userAgreesToUpdate(const QString& name);
    void write(const QString& path, OnDiskChange policy);
};

}  // namespace tweenery
