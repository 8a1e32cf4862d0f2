#pragma once

#include <functional>

namespace tweenery {

/// The moments at which another program could put something else in the place of what was checked.
enum class Moment {
    PackageIsBuilt,  // a save is about to exchange the package for the new one
    FolderIsOpen,    // a folder for files is open, and nothing has been written into it
    FileIsWritten,   // a file is written under its temporary name
    PackageIsOpen,   // a package that is to be replaced is open and locked
};

/// Has tests act in the place of that program: `action` is called at each moment. Null for nothing,
/// which is what every program but a test has.
void setInterference(const std::function<void(Moment)>& action);
void interfereAt(Moment moment);

}  // namespace tweenery
