#pragma once

#include <functional>
#include <string>
#include <vector>

#include "analysis/run_context.h"

namespace orv {

// All result files of a run: plot report, sputter rotation table, forces and moments, full listing, running table, each
// when the run asks for it. Nothing in silent mode. A file that cannot be written is logged and noted in
// record.filesSkipped; the others follow in record.files. `potentials`: the potential texts that were taken off the
// rows of the model, by primitive from 1; the report puts them back.
void WriteReports(RunContext& run, const std::vector<std::string>& potentials = {});

using PrintLine = std::function<void(const std::string&)>;

// The lines at the head of a report: case line, program, plot.
void PrintHeading(const RunContext& run, const PrintLine& print);

// Where the model stands again. Only that of a plot report can be loaded as a model sheet.
enum class SummaryPlace { PlotReport, SputterTable };

// The end of a report: its own name, and the model with the rows of the database that were used.
void PrintModelSummary(const RunContext& run, const std::string& outputName, SummaryPlace place,
                       const std::vector<std::string>& potentials, const PrintLine& print);

}  // namespace orv
