#pragma once

#include <optional>

#include "storage/package_place.h"
#include "storage/save_mark.h"
#include "storage/temporaries.h"

namespace tweenery {

/// A directory that is filled beside the place that it is meant for, and then takes that place in
/// one step. It has a hidden name; leftovers of programs that died are recognised by their mark.
class StagedDirectory {
 public:
    /// Locks what stands at `place` (when `replace`) against other saves and makes an empty
    /// directory beside it. Throws InputError.
    StagedDirectory(const PackagePlace& place, bool replace);
    /// Removes the staged directory, or what it has replaced.
    ~StagedDirectory();
    StagedDirectory(const StagedDirectory&) = delete;
    StagedDirectory& operator=(const StagedDirectory&) = delete;

    /// The package that is to be replaced; none when there is nothing yet.
    const FileDescriptor& current() const { return m_current; }
    const FileDescriptor& descriptor() const { return m_descriptor; }

    /// Puts the directory into its place. Throws InputError, also when something else has come
    /// there since; then nothing has changed there.
    void commit();
    /// After commit(): leaves the removal of what was replaced to a thread, which the next such
    /// removal and the end of the program wait for.
    void removeReplacedInBackground();

 private:
    // What of ours stands under the hidden name.
    enum class Leftover { None, Staged, Replaced };

    void lockCurrent();
    void create();
    bool tryCreate();
    void takePlace();
    bool hasReplacedCurrent() const;
    void leavePlace();
    FileDescriptor takeLeftover();

    const std::shared_ptr<const Temporary> m_temporary = std::make_shared<Temporary>();
    const PackagePlace& m_place;
    std::optional<SaveMark> m_mark;
    FileDescriptor m_current;
    FileDescriptor m_descriptor;
    std::string m_name;
    Leftover m_leftover = Leftover::None;
};

/// Opens the package that a save has set aside and then not replaced because it was cut off. None
/// when there is no such package.
FileDescriptor openSetAside(const PackagePlace& place);

/// A name beside `name` for a file or directory in the making.
std::string stagingName(const std::string& name);

}  // namespace tweenery
