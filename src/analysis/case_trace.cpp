#include "analysis/case_trace.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <system_error>
#include <vector>

#include "analysis/result_file.h"
#include "numerics/number_format.h"
#include "numerics/paths.h"
#include "numerics/text.h"

namespace orv {

namespace fs = std::filesystem;

namespace {

// All lines of a file, each with its line end, also the last one of a file that was cut.
void CopyLines(const fs::path& from, std::ofstream& out) {
  std::ifstream in(from, std::ios::binary);
  if (!in) RaiseFileFailure(errno != 0 ? errno : EACCES);
  std::string line;
  while (std::getline(in, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    out << line << "\r\n";
  }
}

}  // namespace

WindowedFile::~WindowedFile() {
  // Left without CLOSE (an abort answer): the old lines wait in the "previous" file for the next OPEN.
  if (out_.is_open()) out_.close();
}

// Failures 5, 52, 53 and 55 go on at the next statement; 75 is asked about, and Retry runs the statement again.
// False when the user gave the statement up.
template <class Statement>
bool WindowedFile::Run(Statement&& statement) {
  for (;;) {
    try {
      statement();
      return true;
    } catch (const RuntimeFailure& failure) {
      switch (failure.number()) {
        case FailureNumber::InvalidProcedureCall:
        case FailureNumber::BadFileName:
        case FailureNumber::FileAlreadyOpen:
          return true;
        case FailureNumber::FileNotFound:
          noPrevious_ = true;
          return true;
        case FailureNumber::PathFileAccessError:
          break;
        default:
          throw;
      }
      const Answer answer = prompt_.dialogs().Ask("Error file " + name_ + " is maybe open, please close it and Retry",
                                                  "", Buttons::AbortRetryIgnore, Icon::Warning);
      if (answer == Answer::Abort) throw ProgramEnd{};
      if (answer != Answer::Retry) return false;
    }
  }
}

void WindowedFile::operator()(const std::string& command, const std::string& name, int lines) {
  const std::string word = UpperTrim(command);
  if (word == "OPEN") {
    if (!name.empty()) name_ = name;
    if (lines > 0 || !name.empty()) limit_ = std::max(0, lines);
    Open();
  } else if (word == "CLOSE") {
    if (lines > 0) limit_ = lines;
    Close();
  }
}

void WindowedFile::Open() {
  printed_ = 0;
  noPrevious_ = false;
  if (!Run([&] { KeepOldLines(); })) {
    // Opening it now would lose the old lines.
    prompt_("_" + name_ + " is left as it is: its lines could not be put aside");
    return;
  }
  Run([&] {
    errno = 0;
    out_.open(PathOf(name_), std::ios::binary | std::ios::trunc);
    if (!out_) RaiseFileFailure(errno);
  });
}

// Moves the file to its "previous" name. When a crash left such a file, its lines go behind those of the file.
void WindowedFile::KeepOldLines() {
  const fs::path file = PathOf(name_);
  const fs::path previous = PathOf(name_ + "previous");
  std::error_code error;
  if (!fs::exists(previous, error)) {
    fs::rename(file, previous, error);
    if (error) RaiseFileFailure(error.value());
    return;
  }
  if (!fs::exists(file, error)) return;
  const fs::path joined = PathOf(name_ + "previous.part");
  {
    std::ofstream out(joined, std::ios::binary | std::ios::trunc);
    if (!out) RaiseFileFailure(errno != 0 ? errno : EACCES);
    CopyLines(file, out);
    CopyLines(previous, out);
    out.close();
    if (!out) RaiseFileFailure(EACCES);
  }
  fs::rename(joined, previous, error);
  if (error) RaiseFileFailure(error.value());
  fs::remove(file, error);
}

void WindowedFile::Print(const std::string& line) {
  if (!out_.is_open() || (limit_ > 0 && printed_ >= limit_)) return;
  out_ << Windows1252FromUtf8(line) << "\r\n";
  ++printed_;
}

void WindowedFile::Close() {
  if (!out_.is_open()) return;
  const fs::path previous = PathOf(name_ + "previous");
  bool copied = noPrevious_;
  if (!noPrevious_) {
    Run([&] {
      std::ifstream old(previous, std::ios::binary);
      if (!old) RaiseFileFailure(errno != 0 ? errno : ENOENT);
      std::string line;
      while ((limit_ == 0 || printed_ < limit_) && std::getline(old, line)) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        out_ << line << "\r\n";
        ++printed_;
      }
      copied = true;
    });
  }
  out_.flush();
  const bool whole = static_cast<bool>(out_);
  out_.close();
  // The old lines are given up only when they stand in the new file.
  std::error_code error;
  if (copied && whole && !noPrevious_) fs::remove(previous, error);
  if (!whole) Raise(FailureNumber::PathFileAccessError);
}

std::string ReportText(const RunContext& run, double durationSeconds) {
  const std::string files = run.model.directives.SilentMode == 1
                                ? "NoBecauseSilentMode"
                                : ReplaceAll(run.record.PlotReportFile, " ", kHardBlank);
  return " OutputFiles: " + files + "  ProcessDuration:" + FormatNumber(durationSeconds, "#.### ");
}

void AskCaseText(RunContext& run) {
  if (!run.record.CaseText.empty()) return;
  const CivilTime now = run.clock.Local();
  run.record.CaseText = run.dialogs().Input("Computation case at " + DateText(now) + " " + TimeText(now),
                                            "Input string  LAST CHANCE for the TRACEABILITY", "Case ....");
}

std::string ComposeCaseLine(const RunContext& run, const std::string& reportText) {
  const CivilTime now = run.clock.Local();
  std::string line = DateText(now) + " " + TimeText(now) + " " + run.plot.PlotTitle + " " + run.record.CaseText +
                     " Model:" + Trim(run.model.ModelTitle) + " Database:" + Trim(run.model.DatabaseTitle) + reportText;
  if (run.plot.MaiOrigine != 0) line += " CHECK case (soft/MAI): " + FormatNumber(run.plot.MaiOrigine, "#");
  return line;
}

void PrintCaseLine(RunContext& run) {
  run.record.TraceFile = run.OutputFolder + "OrvTraceResults.txt";
  WindowedFile trace(run.prompt);
  trace("OPEN", run.record.TraceFile, kTraceLines);
  trace.Print(run.record.CaseLine);
  trace("CLOSE", "", 0);
}

}  // namespace orv
