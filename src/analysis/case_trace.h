#pragma once

#include <cstddef>
#include <fstream>
#include <string>

#include "analysis/run_context.h"

namespace orv {

inline constexpr int kTraceLines = 15000;

// A text file that keeps only its newest lines, newest first: between OPEN and CLOSE new lines are printed, CLOSE puts
// the old ones behind them. The limit counts old and new lines together; 0 means none. Texts are written as
// Windows-1252 with CR LF.
class WindowedFile {
 public:
  explicit WindowedFile(ErrorPrompt& prompt) : prompt_(prompt) {}
  ~WindowedFile();
  WindowedFile(const WindowedFile&) = delete;
  WindowedFile& operator=(const WindowedFile&) = delete;

  // The commands "OPEN" and "CLOSE", in any case. A positive `lines` sets the limit.
  void operator()(const std::string& command, const std::string& name, int lines);

  void Print(const std::string& line);

 private:
  template <class Statement>
  bool Run(Statement&& statement);
  void Open();
  void Close();
  void KeepOldLines();

  ErrorPrompt& prompt_;
  std::string name_;
  int limit_ = 0;
  int printed_ = 0;
  bool noPrevious_ = false;
  std::ofstream out_;
};

// "OutputFiles" and duration of a run, as the case line ends.
std::string ReportText(const RunContext& run, double durationSeconds);

// Asks for the name of the computation unless one is known.
void AskCaseText(RunContext& run);

// The one-line record of what was computed: date, time, title, case, model, database.
std::string ComposeCaseLine(const RunContext& run, const std::string& reportText);

// Puts the case line at the head of the trace file.
void PrintCaseLine(RunContext& run);

}  // namespace orv
