#pragma once

#include <vector>

#include "cli/support/json_writer.h"
#include "codegen/export_diagnostics.h"

namespace tweenery {

/// "warning: element 'Ball': <sentence>"
QString textOf(const ExportDiagnostic& diagnostic);

/// The key "diagnostics" with a list of objects.
void writeDiagnostics(const std::vector<ExportDiagnostic>& diagnostics, JsonWriter& json);

}  // namespace tweenery
