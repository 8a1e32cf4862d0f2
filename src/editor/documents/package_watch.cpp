#include "editor/documents/package_watch.h"

#include <QDir>
#include <QFileInfo>
#include <QFileSystemWatcher>

#include "editor/documents/project_path.h"
#include "storage/package_entries.h"

namespace tweenery {

using namespace Qt::StringLiterals;

namespace {

// The system grants each user some thousand watches.
constexpr qsizetype kPathsAtMost = 300;

// The package's folder, the package, its entries, and the folders of its images and animations.
QStringList pathsToWatch(const QString& package) {
    QStringList paths{QFileInfo(package).path(), package};
    const auto addEntriesOf = [&paths](const QDir& folder, QDir::Filters kinds) {
        for (const QString& name : folder.entryList(kinds | QDir::NoDotAndDotDot | QDir::Hidden)) {
            if (paths.size() < kPathsAtMost) { paths << folder.filePath(name); }
        }
    };
    const QDir root(package);
    addEntriesOf(root, QDir::Files | QDir::Dirs | QDir::NoSymLinks);
    addEntriesOf(root.filePath(kImagesEntry), QDir::Dirs | QDir::NoSymLinks);
    addEntriesOf(root.filePath(kAnimationsEntry), QDir::Dirs | QDir::NoSymLinks);
    return paths;
}

}  // namespace

struct PackageWatch::OnDisk {
    QFileSystemWatcher* watcher = nullptr;
};

PackageWatch::PackageWatch(DiskThread& disk, std::function<void()> mayHaveChanged)
    : m_disk(disk),
      m_mayHaveChanged(std::make_shared<std::function<void()>>(std::move(mayHaveChanged))),
      m_onDisk(std::make_shared<OnDisk>()) {
    const auto tell = [channel = disk.channel(), listener = std::weak_ptr(m_mayHaveChanged)] {
        channel->deliver([listener] {
            if (const auto call = listener.lock()) { (*call)(); }
        });
    };
    m_disk.post([onDisk = m_onDisk, tell, parent = &disk.context()] {
        onDisk->watcher = new QFileSystemWatcher(parent);
        QObject::connect(onDisk->watcher, &QFileSystemWatcher::directoryChanged, parent, tell);
        QObject::connect(onDisk->watcher, &QFileSystemWatcher::fileChanged, parent, tell);
    });
}

PackageWatch::~PackageWatch() {
    m_disk.post([onDisk = m_onDisk] { delete onDisk->watcher; });
}

void PackageWatch::watch(const QString& path) {
    m_disk.post([onDisk = m_onDisk, path] {
        QFileSystemWatcher& watcher = *onDisk->watcher;
        const QStringList before = watcher.files() + watcher.directories();
        if (!before.isEmpty()) { watcher.removePaths(before); }
        if (!path.isEmpty()) { watcher.addPaths(pathsToWatch(canonicalProjectPath(path))); }
    });
}

}  // namespace tweenery
