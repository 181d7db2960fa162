#include "analysis/result_file.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <ctime>
#include <filesystem>
#include <random>
#include <sstream>
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

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

// Two runs at a time may write the same target; each has a temporary file of its own.
std::string TemporaryName(const std::string& name) {
  return name + "." + std::to_string(std::random_device()()) + ".part";
}

std::string BytesOf(const fs::path& path) {
  errno = 0;
  std::ifstream in(path, std::ios::binary);
  if (!in) RaiseFileFailure(errno != 0 ? errno : EACCES);
  std::ostringstream bytes;
  if (in.peek() != std::ifstream::traits_type::eof()) bytes << in.rdbuf();
  if (in.bad()) Raise(FailureNumber::PathFileAccessError);
  return bytes.str();
}

}  // namespace

ResultFile::ResultFile(const std::string& name, const std::string& temporary)
    : name_(name), temporary_(temporary.empty() ? TemporaryName(name) : temporary) {
  const fs::path folder = PathOf(name).parent_path();
  std::error_code error;
  if (!folder.empty() && !fs::is_directory(folder, error)) {
    Raise(FailureNumber::PathNotFound, "Path not found: " + TextOf(folder));
  }
  OpenTemporary();
}

ResultFile::~ResultFile() {
  if (committed_) return;
  out_.close();
  std::error_code error;
  fs::remove(PathOf(temporary_), error);
}

void ResultFile::OpenTemporary() {
  errno = 0;
  out_.open(PathOf(temporary_), std::ios::binary | std::ios::trunc);
  if (!out_) RaiseFileFailure(errno != 0 ? errno : EACCES);
}

std::string ResultFile::TakeBack() {
  out_.flush();
  const bool whole = static_cast<bool>(out_);
  out_.close();
  if (!whole) Raise(FailureNumber::PathFileAccessError, "Path/File access error: " + name_ + " could not be written");
  std::string written = BytesOf(PathOf(temporary_));
  OpenTemporary();
  return written;
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

void ReportFile::Print(const std::string& line) {
  if (!utf8_) {
    const std::string bytes = Windows1252FromUtf8(line);
    // Each character outside the code page has become one more question mark.
    if (std::count(bytes.begin(), bytes.end(), '?') == std::count(line.begin(), line.end(), '?')) {
      file_.stream() << bytes << "\r\n";
      return;
    }
    const std::string before = file_.TakeBack();
    file_.stream() << kUtf8Mark << Utf8FromWindows1252(before);
    utf8_ = true;
  }
  file_.stream() << line << "\r\n";
}

namespace {

// A spreadsheet leaves such a file beside the one that it has open.
bool IsOpenElsewhere(const std::string& name) {
  const fs::path path = PathOf(name);
  fs::path lock = path.parent_path() / ".~lock.";
  lock += path.filename();
  lock += "#";
  std::error_code error;
  if (fs::exists(lock, error)) return true;
#ifdef _WIN32
  // Excel leaves no file beside its own, which nobody else may write meanwhile.
  return fs::exists(path, error) && !std::ofstream(path, std::ios::binary | std::ios::app);
#else
  return false;
#endif
}

void NoteSkipped(RunContext& run, const std::string& name, const std::string& cause) {
  const std::string line = name + " was not written: " + cause;
  run.record.filesSkipped.push_back(line);
  run.dialogs().Log(line);
}

}  // namespace

std::unique_ptr<ReportFile> OpenReport(RunContext& run, const std::string& name, const std::string& temporary) {
  for (bool first = true;; first = false) {
    std::string cause = "it is open in another program";
    bool closable = true;
    try {
      if (!IsOpenElsewhere(name)) return std::make_unique<ReportFile>(name, temporary);
    } catch (const RuntimeFailure& failure) {
      cause = failure.description();
      closable = failure.number() == FailureNumber::PermissionDenied;
    }
    const auto ask = [&] {
      return run.dialogs().Ask("The file " + name + " seems to be open. It should be closed now. Then you click on OK.",
                               "File open", Buttons::OkCancel, Icon::Warning);
    };
    if (closable && first && ask() == Answer::Ok) continue;
    NoteSkipped(run, name, cause);
    return nullptr;
  }
}

bool CloseReport(RunContext& run, std::unique_ptr<ReportFile> report) {
  if (report == nullptr) return false;
  try {
    report->Commit();
  } catch (const RuntimeFailure& failure) {
    NoteSkipped(run, report->name(), failure.description());
    return false;
  }
  run.record.files.push_back(report->name());
  return true;
}

bool WriteReportFile(RunContext& run, const std::string& name, const std::function<void(ReportFile&)>& print,
                     const std::string& temporary) {
  std::unique_ptr<ReportFile> report = OpenReport(run, name, temporary);
  if (report == nullptr) return false;
  try {
    print(*report);
  } catch (const RuntimeFailure& failure) {
    NoteSkipped(run, name, failure.description());
    return false;
  }
  return CloseReport(run, std::move(report));
}

std::optional<std::vector<std::string>> ReadReportLines(const std::string& name, std::size_t limit) {
  const fs::path path = PathOf(name);
  std::error_code error;
  if (!fs::exists(path, error)) return std::nullopt;
  const std::string bytes = BytesOf(path);
  std::string_view rest = bytes;
  const bool utf8 = rest.starts_with(kUtf8Mark);
  if (utf8) rest.remove_prefix(kUtf8Mark.size());
  std::vector<std::string> lines;
  while (!rest.empty() && (limit == 0 || lines.size() < limit)) {
    const std::size_t end = std::min(rest.find('\n'), rest.size());
    std::string_view line = rest.substr(0, end);
    if (line.ends_with('\r')) line.remove_suffix(1);
    lines.push_back(utf8 && IsValidUtf8(line) ? std::string(line) : Utf8FromWindows1252(line));
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  return lines;
}

namespace {

using System = std::chrono::system_clock;

CivilTime LocalTimeOf(std::time_t moment) {
  std::tm parts{};
#ifdef _WIN32
  localtime_s(&parts, &moment);
#else
  localtime_r(&moment, &parts);
#endif
  return {parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday, parts.tm_hour, parts.tm_min, parts.tm_sec};
}

}  // namespace

// The clock of the file system and the calendar meet in "so long ago", as both count the same seconds.
std::optional<CivilTime> FileTime(const std::string& name) {
  std::error_code error;
  const fs::file_time_type changed = fs::last_write_time(PathOf(name), error);
  if (error) return std::nullopt;
  const auto ago = std::chrono::duration_cast<System::duration>(fs::file_time_type::clock::now() - changed);
  return LocalTimeOf(System::to_time_t(std::chrono::round<std::chrono::seconds>(System::now() - ago)));
}

void SetFileTime(const std::string& name, const CivilTime& time) {
  if (time.year < 1900 || time.year > 2200) return;  // beyond what the clocks can count
  std::tm parts{};
  parts.tm_year = time.year - 1900;
  parts.tm_mon = time.month - 1;
  parts.tm_mday = time.day;
  parts.tm_hour = time.hour;
  parts.tm_min = time.minute;
  parts.tm_sec = time.second;
  parts.tm_isdst = -1;
  const std::time_t moment = std::mktime(&parts);
  if (moment == std::time_t{-1}) return;
  const auto ahead =
      std::chrono::duration_cast<fs::file_time_type::duration>(System::from_time_t(moment) - System::now());
  std::error_code error;
  fs::last_write_time(PathOf(name), fs::file_time_type::clock::now() + ahead, error);
}

std::string HardBlanks(std::string_view text) {
  std::string out;
  for (const char c : text) {
    if (c == ' ' || static_cast<unsigned char>(c) < 0x20 || c == 0x7F) {
      out += kHardBlank;
    } else {
      out.push_back(c);
    }
  }
  return out;
}

std::string TextColumn(std::string_view text, std::size_t width) {
  const std::string cell = text.empty() ? std::string(kHardBlank) : HardBlanks(text);
  const std::size_t length = CharacterCount(cell);
  return " " + cell + std::string(length < width ? width - length : 0, ' ');
}

std::string NumberColumn(double value, int digits, std::size_t width) {
  const std::string cell = std::isfinite(value) ? Trim(SignificantText(value, digits)) : NumberText(value);
  return std::string(cell.size() < width ? width - cell.size() + 1 : 1, ' ') + cell;
}

std::string IndexColumn(std::ptrdiff_t index, std::size_t width) {
  const std::string cell = std::to_string(index);
  return std::string(cell.size() < width ? width - cell.size() + 1 : 1, ' ') + cell;
}

std::string ShortTitle(const RunContext& run, std::size_t characters) {
  return LeftCharacters(Trim(run.model.ModelTitle), characters);
}

std::string DateAndTimeStamp(const RunContext& run) {
  const CivilTime now = run.clock.Local();
  return FormatNumber(now.year, "0000") + FormatNumber(now.month, "00") + FormatNumber(now.day, "00") + " " +
         FormatNumber(now.hour, "00") + FormatNumber(now.minute, "00") + FormatNumber(now.second, "00");
}

namespace {

// A name that every file system takes.
std::string FileNameOf(const std::string& text) {
  std::string name = CleanFileName(text);
  std::erase_if(name, [](char c) {
    return static_cast<unsigned char>(c) < 0x20 || c == 0x7F || std::string_view("*?\"<>").find(c) != std::string::npos;
  });
  return name;
}

}  // namespace

std::string ResultName(const RunContext& run, const std::string& name) {
  return run.model.WorkbookFolder + FileNameOf(name);
}

std::string PlotReportName(const RunContext& run) {
  return FileNameOf("Orv" + ShortTitle(run, 44) + "plot" + FormatNumber(run.plot.IndexPlot, "#") + " " +
                    DateAndTimeStamp(run) + "_.xls");
}

}  // namespace orv
