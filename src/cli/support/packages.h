#pragma once

#include <QStringList>
#include <functional>

#include "cli/support/report.h"
#include "model/project.h"

namespace tweenery {

/// What a verb does with one package. An InputError that it throws becomes the report's.
using PackageTask = std::function<void(Report&)>;

/// Does the task for each package, on all cores; the reports are printed in the order of the paths.
/// One package that fails does not stop the others. Tells the progress of a long run.
ExitCode runOnPackages(const QStringList& paths, Console& console, const PackageTask& task);

/// The same for one package, on this thread and without a word on the progress.
ExitCode runOnPackage(const QString& path, Console& console, const PackageTask& task);

/// Reads the package and checks its model version: a newer one throws InputError, of an older one
/// the report takes a note.
FileWrapper::Ptr readVersionedPackage(Report& report);

/// The project of the package, as it is stored: older packages are not updated. Its name is that
/// of the package. Nothing is written. Throws InputError.
PCProject::Ptr openForReading(Report& report);
/// The same from a package that has been read.
PCProject::Ptr projectOf(const FileWrapper::Ptr& root);

/// Checks that a package may be written to `path`: that the name is one for a package (UsageError)
/// and that nothing is there or, when `replaces`, at most a package (InputError).
void requirePlaceForPackage(const QString& path, bool replaces);

/// Throws InputError when what is to be written to `path` would change the package.
void requireOutsidePackage(const QString& path, const QString& package);

/// One line of an alert's texts.
QString textOfAlert(const Alert& alert);

}  // namespace tweenery
