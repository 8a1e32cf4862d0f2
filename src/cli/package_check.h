#pragma once

#include <QString>
#include <vector>

#include "cli/package_inventory.h"
#include "model/project.h"
#include "platform/errors.h"

namespace tweenery {

/// What a look at every entry of a package has found.
struct PackageCheck {
    struct Note {
        QString entry;
        QString text;
    };

    size_t entriesCount = 0;
    std::vector<InputError> errors;  // what cannot be read, in the order of the entries
    std::vector<Note> notes;         // what can, but may surprise
};

/// Reads every entry of the package completely, on all cores.
PackageCheck checkPackage(const FileWrapper& root);

/// Adds notes on what is odd in a project whose entries can all be read.
void noteOddities(PCProject& project, PackageCheck& check);

}  // namespace tweenery
