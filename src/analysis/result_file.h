#pragma once

#include <fstream>
#include <string>

#include "analysis/run_context.h"

namespace orv {

// Raises the failure that an error number of the operating system means: 53, 76, 70, 75 or 52.
[[noreturn]] void RaiseFileFailure(int errorNumber);

// A file that is written under a temporary name beside its target and takes the target's place when it is complete, so
// that a failure leaves the old file whole.
class ResultFile {
 public:
  // Failure 76, 70 or 75 when the folder cannot be written.
  explicit ResultFile(const std::string& name);
  ~ResultFile();
  ResultFile(const ResultFile&) = delete;
  ResultFile& operator=(const ResultFile&) = delete;

  std::ostream& stream() { return out_; }
  // Puts the file in its place; failure 75 when not everything could be written (a full disk), 70 when the target is
  // held by another program.
  void Commit();

 private:
  std::string name_;
  std::string temporary_;
  std::ofstream out_;
  bool committed_ = false;
};

// Name of the plot report beside the workbook: title, plot, date and time, without characters that a name cannot hold.
std::string PlotReportName(const RunContext& run);

}  // namespace orv
