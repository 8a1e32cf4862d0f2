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

/// An open package: reads it, checks its model version with the user, builds the project, and saves
/// it back. Talks to the user through the alert port.
class PCDocument {
 public:
    PCDocument(AlertPort& alerts, LogPort& log) : m_alerts(alerts), m_log(log) {}

    static bool autosavesInPlace() { return true; }
    /// False when the user was told by an alert (newer version) or declined the update. Throws
    /// InputError for a package that cannot be read, and for an update that cannot be saved. Then
    /// the document is as it was.
    bool readFromPath(const QString& path);
    /// The same without the save of an update.
    bool readFromFileWrapper(const FileWrapper::Ptr& root);
    /// The tree to write, with the canvas picture if there is one.
    FileWrapper::Ptr fileWrapperOfProject();
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
    void saveTo(const QString& path, OnDiskChange policy);
};

}  // namespace tweenery
