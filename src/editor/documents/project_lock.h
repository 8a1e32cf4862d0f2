#pragma once

#include <QLockFile>
#include <QString>
#include <memory>
#include <optional>

namespace tweenery {

/// Says that this process has the project at a path open. It stands in a folder of the user's and
/// not beside the project, whose inode changes with every save; what a dead process left is no
/// obstacle.
class ProjectLock {
 public:
    /// Who has it.
    struct Holder {
        qint64 processId = 0;
        QString hostName;
        /// "process 4711", with the host if it is another one.
        QString description() const;
    };

    ProjectLock() = default;
    /// The lock of the project at `path` among those in `folder`, which is made if need be.
    ProjectLock(const QString& folder, const QString& path);

    /// False when another process, or another document of this one, has it. Where no lock can be
    /// made at all, as in a home folder that is full, true: that must keep nobody from their work.
    bool tryLock();
    /// Of a project that tryLock() was refused; nullopt when it was given back meanwhile.
    std::optional<Holder> holder() const;
    void unlock() { m_lock.reset(); }

 private:
    QString m_file;
    std::unique_ptr<QLockFile> m_lock;
};

}  // namespace tweenery
