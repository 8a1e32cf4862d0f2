#pragma once

#include <QString>
#include <vector>

#include "base/errors.h"
#include "cli/package_inventory.h"
#include "model/project.h"

namespace tweenery {

/// What a look at every entry of a package has found.
struct PackageCheck {
    struct Note {
        QString entry;
        QString text;
    };

    PCProject::Ptr project;  // null when it cannot be opened; its timelines have been decoded
    size_t entriesCount = 0;
    std::vector<InputError> errors;  // what cannot be read, in the order of the entries
    std::vector<Note> notes;         // what can, but may surprise
};

/// Reads every entry of the package completely, on all cores.
PackageCheck checkPackage(const FileWrapper::Ptr& root);

/// Adds notes on what is odd in `check.project` (not null), whose entries can all be read.
void noteOddities(PackageCheck& check);

}  // namespace tweenery
