#pragma once

#include <fstream>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/run_context.h"

namespace orv {

// Raises the failure that an error number of the operating system means: 53, 76, 70, 75 or 52.
[[noreturn]] void RaiseFileFailure(int errorNumber);

// A file that is written under a temporary name beside its target and takes the target's place when it is complete, so
// that a failure leaves the old file whole.
class ResultFile {
 public:
  // Failure 76, 70 or 75 when the folder cannot be written. Without a temporary name one that no other run uses is
  // made.
  explicit ResultFile(const std::string& name, const std::string& temporary = {});
  ~ResultFile();
  ResultFile(const ResultFile&) = delete;
  ResultFile& operator=(const ResultFile&) = delete;

  const std::string& name() const { return name_; }
  std::ostream& stream() { return out_; }
  // Gives back what was written so far and begins the file anew.
  std::string TakeBack();
  // Puts the file in its place; failure 75 when not everything could be written (a full disk), 70 when the target is
  // held by another program.
  void Commit();

 private:
  void OpenTemporary();

  std::string name_;
  std::string temporary_;
  std::ofstream out_;
  bool committed_ = false;
};

// A result file of text lines: Windows-1252, CR LF. A line with a character outside that code page makes the whole file
// UTF-8 with byte order mark.
class ReportFile {
 public:
  explicit ReportFile(const std::string& name, const std::string& temporary = {}) : file_(name, temporary) {}
  const std::string& name() const { return file_.name(); }
  void Print(const std::string& line);
  void Commit() { file_.Commit(); }

 private:
  ResultFile file_;
  bool utf8_ = false;
};

// Opens a report for output. One that is open in a spreadsheet brings a question and a second try; when that fails too,
// or for any other cause, the result is empty and the file is noted as skipped.
std::unique_ptr<ReportFile> OpenReport(RunContext& run, const std::string& name, const std::string& temporary = {});

// Puts an opened report in its place and notes it as written, or as skipped. True when it was written.
bool CloseReport(RunContext& run, std::unique_ptr<ReportFile> report);

// One report from opening to closing. A run-time failure of `print` skips the file.
bool WriteReportFile(RunContext& run, const std::string& name, const std::function<void(ReportFile&)>& print,
                     const std::string& temporary = {});

// The lines of a result file, at most `limit` of them (0: all). Empty without a value when there is no such file;
// failure 75 for one that cannot be read.
std::optional<std::vector<std::string>> ReadReportLines(const std::string& name, std::size_t limit);

// Date and time of a file's last change in local time, and how to set them. A file that is not there has none; a system
// that refuses to set them leaves them as they are.
std::optional<CivilTime> FileTime(const std::string& name);
void SetFileTime(const std::string& name, const CivilTime& time);

// A text that stays in one cell: blanks and control characters become hard blanks.
std::string HardBlanks(std::string_view text);

// Columns of a table: a blank, then a text padded on the right, or a number of so many significant digits or an index
// padded on the left. An empty text gives one hard blank, so that the columns behind it stay in place.
std::string TextColumn(std::string_view text, std::size_t width);
std::string NumberColumn(double value, int digits, std::size_t width);
std::string IndexColumn(std::ptrdiff_t index, std::size_t width);

// The first characters of the trimmed model title.
std::string ShortTitle(const RunContext& run, std::size_t characters);

// Date and time of the run's clock as file names carry them: "20310405 060708".
std::string DateAndTimeStamp(const RunContext& run);

// Full name of a result file beside the workbook: what a file name cannot hold goes, the folder stays as it is.
std::string ResultName(const RunContext& run, const std::string& name);

// Name of the plot report without its folder: title, plot, date and time.
std::string PlotReportName(const RunContext& run);

}  // namespace orv
