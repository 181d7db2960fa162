#pragma once

#include <string>
#include <vector>

#include "analysis/run_context.h"
#include "numerics/terminal_dialogs.h"

// Results for other programs, in UTF-8, with numbers from which the same doubles are read again.
namespace orv {

// By the ending of the name: .csv one row per cell, .json the run, .vtp the cells as quadrilaterals. Failure 52 for any
// other ending, the failures of ResultFile for a file that cannot be written; the old file then stays.
void ExportRun(RunContext& run, const std::vector<TerminalDialogs::Message>& messages, const std::string& name);

bool IsExportName(const std::string& name);

// The file without its name: for tests and for other sinks.
void WriteCsv(const RunContext& run, std::ostream& out);
void WriteJson(RunContext& run, const std::vector<TerminalDialogs::Message>& messages, std::ostream& out);
void WriteVtp(const RunContext& run, std::ostream& out);

}  // namespace orv
