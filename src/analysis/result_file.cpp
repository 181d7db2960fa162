#include "analysis/result_file.h"

#include <cerrno>
#include <filesystem>
#include <random>
#include <system_error>

#include "numerics/number_format.h"
#include "numerics/paths.h"
#include "numerics/text.h"

namespace orv {

namespace fs = std::filesystem;

void RaiseFileFailure(int errorNumber) {
  switch (errorNumber) {
    case ENOENT:
      Raise(FailureNumber::FileNotFound);
    case ENOTDIR:
      Raise(FailureNumber::PathNotFound);
    case ETXTBSY:
    case EBUSY:
      Raise(FailureNumber::PermissionDenied);
    case EINVAL:
    case ENAMETOOLONG:
    case EILSEQ:
      Raise(FailureNumber::BadFileName);
    default:
      Raise(FailureNumber::PathFileAccessError);
  }
}

namespace {

// Two runs at a time may write the same target; each has a temporary file of its own.
std::string TemporaryName(const std::string& name) {
  return name + "." + std::to_string(std::random_device()()) + ".part";
}

}  // namespace

ResultFile::ResultFile(const std::string& name) : name_(name), temporary_(TemporaryName(name)) {
  const fs::path folder = PathOf(name).parent_path();
  std::error_code error;
  if (!folder.empty() && !fs::is_directory(folder, error)) {
    Raise(FailureNumber::PathNotFound, "Path not found: " + TextOf(folder));
  }
  errno = 0;
  out_.open(PathOf(temporary_), std::ios::binary | std::ios::trunc);
  if (!out_) RaiseFileFailure(errno != 0 ? errno : EACCES);
}

ResultFile::~ResultFile() {
  if (committed_) return;
  out_.close();
  std::error_code error;
  fs::remove(PathOf(temporary_), error);
}

void ResultFile::Commit() {
  out_.flush();
  const bool whole = static_cast<bool>(out_);
  out_.close();
  if (!whole) Raise(FailureNumber::PathFileAccessError, "Path/File access error: " + name_ + " could not be written");
  std::error_code error;
  fs::rename(PathOf(temporary_), PathOf(name_), error);
  if (error) RaiseFileFailure(error.value());
  committed_ = true;
}

std::string PlotReportName(const RunContext& run) {
  const CivilTime now = run.clock.Local();
  const std::string date = FormatNumber(now.year, "0000") + FormatNumber(now.month, "00") + FormatNumber(now.day, "00");
  const std::string time =
      FormatNumber(now.hour, "00") + FormatNumber(now.minute, "00") + FormatNumber(now.second, "00");
  const std::string title = LeftCharacters(Trim(run.model.ModelTitle), 44);
  return CleanFileName("Orv" + title + "plot" + FormatNumber(run.plot.IndexPlot, "#") + " " + date + " " + time +
                       "_.xls");
}

}  // namespace orv
