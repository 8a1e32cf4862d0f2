#pragma once

#include "cli/support/verb.h"
#include "codegen/project_exporter.h"

namespace tweenery {

inline constexpr VerbOption kSwiftOption{
    "swift", "first|current", "export Swift: that of 2014 (first), or for Swift 5 and 6 (current)"};

/// Throws UsageError when a dialect of Swift is asked for and Objective-C as well.
void requireOneLanguage(const Invocation& invocation);

/// Whether the export is in Swift: as --lang and --swift say, and else the project's preferences.
/// The dialect that --swift names goes into `options`.
bool takeLanguage(const Invocation& invocation, PCProject& project, ExportOptions& options);

}  // namespace tweenery
