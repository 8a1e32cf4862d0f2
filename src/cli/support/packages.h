#pragma once

#include <QStringList>
#include <functional>

#include "cli/support/report.h"
#include "cli/support/verb.h"
#include "model/project.h"

namespace tweenery {

/// What a verb does with one package. An InputError that it throws becomes the report's.
using PackageTask = std::function<void(Report&)>;

/// What --json and --quiet say of the results.
struct ResultStyle {
    ResultForm form = ResultForm::Text;
    bool isQuiet = false;

    static ResultStyle of(const Invocation& invocation);
};

/// Does the task for each package that is an operand, on all cores; the reports are printed in
/// their order. One package that fails does not stop the others. Tells the progress of a long run.
ExitCode runOnPackages(const Invocation& invocation, Console& console, const PackageTask& task);

/// The same for the first operand alone, on this thread and without a word on the progress.
ExitCode runOnPackage(const Invocation& invocation, Console& console, const PackageTask& task);

/// Reads the package and checks its model version: a newer one throws InputError, of an older one
/// the report takes a note. With `unread`, entries that cannot be read are listed there and left
/// out.
FileWrapper::Ptr readVersionedPackage(Report& report, std::vector<InputError>* unread = nullptr);

/// The project of the package, as it is stored: older packages are not updated. Its name is that
/// of the package. Nothing is written. Throws InputError.
PCProject::Ptr openForReading(Report& report);
/// The same from a package that has been read.
PCProject::Ptr projectOf(const FileWrapper::Ptr& root);

/// Checks that a package may be written to `path`: that the name is one for a package (UsageError)
/// and that nothing is there unless `replaces` (InputError). Whether what is there is a package is
/// for the writing to see.
void requirePlaceForPackage(const QString& path, bool replaces);

/// Throws InputError when what is to be written to `path` would change the package.
void requireOutsidePackage(const QString& path, const QString& package);

/// One line of an alert's texts.
QString textOfAlert(const Alert& alert);

}  // namespace tweenery
