#pragma once

#include <functional>

#include "certify/certificate.h"
#include "certify/workshop.h"
#include "codegen/project_exporter.h"

namespace tweenery {

/// What is to be certified.
struct CertifyOptions {
    bool usingSwift = false;  // the Swift is compared with the Objective-C, call by call
    ExportOptions exportOptions;
    /// Called with the folder of the export before it is compiled; lets tests change it there.
    std::function<void(const QString& folder)> beforeCompiling;
};

/// Exports the project, compiles and plays the export, and compares what its layers do with what
/// the preview shows. The project's animations are selected one after the other; otherwise nothing
/// changes. Throws NoWorkshop when that cannot be done here, InputError for what cannot be read.
Certificate certify(const PCProject::Ptr& project, const CertifyOptions& options,
                    Workshop& workshop);

}  // namespace tweenery
