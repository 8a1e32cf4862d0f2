#pragma once

#include <vector>

#include "cli/support/json_writer.h"
#include "cli/support/verb.h"
#include "codegen/export_diagnostics.h"

namespace tweenery {

/// "warning: element 'Ball': <sentence>"
QString textOf(const ExportDiagnostic& diagnostic);

/// Whether each diagnostic is told, or one for all of a kind that an element or animation has.
enum class DiagnosticDetail { Grouped, All };
DiagnosticDetail detailFrom(const Invocation& invocation);
QStringList linesOf(const std::vector<ExportDiagnostic>& diagnostics, DiagnosticDetail detail);

/// The key "diagnostics" with a list of objects.
void writeDiagnostics(const std::vector<ExportDiagnostic>& diagnostics, JsonWriter& json);

}  // namespace tweenery
