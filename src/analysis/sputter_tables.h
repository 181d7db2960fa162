#pragma once

#include <memory>
#include <string>
#include <vector>

#include "analysis/result_file.h"

namespace orv {

// Writes "OrvSputtAutoTable..." beside the workbook: for each rotation step the angle, the weighted erosion of every
// cell of the rotating primitive and the cell's quantities at that step; then the model. `potentials`: the potential
// texts that were taken off the rows of the model, by primitive. True when it was written.
bool WriteSputterRotationTable(RunContext& run, const std::vector<std::string>& potentials = {});

// The table of the spectrum mode, "OrvSpectrum...": a line for each angular band of the plume. Nothing is written in
// silent mode. A table that is never closed leaves no file.
class SpectrumTable {
 public:
  // False when there will be no file; Line and Close then do nothing.
  bool Open(RunContext& run);

  // Band 1 .. 18, its angle in degrees, smallest and largest erosion of the rotating primitive (m/s), and the summary
  // text of the effect.
  void Line(int band, double angle, double smallest, double largest, const std::string& text);

  // True when the file was written.
  bool Close();

 private:
  RunContext* run_ = nullptr;
  std::unique_ptr<ReportFile> file_;
};

}  // namespace orv
