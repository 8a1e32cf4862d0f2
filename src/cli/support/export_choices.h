#pragma once

#include "cli/support/verb.h"
#include "codegen/project_exporter.h"

namespace tweenery {

inline constexpr VerbOption kExactOption{
    "exact", nullptr, "numbers and key times with all their digits, not two or three decimals"};

/// What the options --platform and --exact say, and else the project's preferences.
ExportOptions exportOptionsFrom(const Invocation& invocation, PCProject& project);
/// The same of --lang.
bool usesSwift(const Invocation& invocation, PCProject& project);

}  // namespace tweenery
