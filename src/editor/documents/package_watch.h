#pragma once

#include <functional>
#include <memory>

#include "editor/documents/disk_thread.h"

namespace tweenery {

/// Notices that something may have changed in a package, or that it may have gone: watches the
/// folder it lies in, since a save puts another one in its place, its entries and, of bigger
/// packages, the first few hundred folders. Whoever needs to be sure compares, and does so too when
/// the user comes back to the window.
class PackageWatch {
 public:
    /// The file system is asked on `disk` only. `mayHaveChanged` is called on the thread that made
    /// `disk`, often several times for one change, and for changes of our own too.
    PackageWatch(DiskThread& disk, std::function<void()> mayHaveChanged);
    ~PackageWatch();
    PackageWatch(const PackageWatch&) = delete;
    PackageWatch& operator=(const PackageWatch&) = delete;

    /// The package that is at `path` now, in place of what was watched before. Again after each
    /// save.
    void watch(const QString& path);

 private:
    struct OnDisk;
    DiskThread& m_disk;
    std::shared_ptr<std::function<void()>> m_mayHaveChanged;
    std::shared_ptr<OnDisk> m_onDisk;  // of the disk's thread
};

}  // namespace tweenery
