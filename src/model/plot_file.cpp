#include "model/plot_file.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <random>
#include <system_error>

#include "model/range_plot.h"
#include "model/workbook_contents.h"
#include "numerics/number_format.h"
#include "numerics/paths.h"
#include "numerics/text.h"

namespace orv {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kHeaderStart = "From:";
constexpr std::string_view kHeaderDate = "Date ";
constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view kUtf16LittleMark = "\xFF\xFE";
constexpr std::string_view kUtf16BigMark = "\xFE\xFF";
constexpr std::size_t kFirstBytes = 4096;
constexpr std::size_t kBlockBytes = std::size_t{1} << 16U;
constexpr char kEndOfText = '\x1A';

bool IsBlank(std::string_view field) {
  for (std::size_t k = 0; k < field.size();) {
    if (field[k] == ' ') {
      ++k;
    } else if (field.substr(k).starts_with(kHardBlank)) {
      k += kHardBlank.size();
    } else {
      return false;
    }
  }
  return true;
}

// Without the quotes that a spreadsheet puts round a text when it writes one with quotes in it.
std::string Unquoted(std::string_view field) {
  if (field.size() < 2 || field.front() != '"' || field.back() != '"') return std::string(field);
  return ReplaceAll(field.substr(1, field.size() - 2), "\"\"", "\"");
}

// Ten decimal places, or in full when these lose what single precision would show.
std::string ScaleText(double scale) {
  std::string text = FormatNumber(scale, "#0.0000000000");
  if (std::abs(LeadingNumber(text) - scale) > 1e-8 * std::abs(scale)) text = ExactText(scale);
  return text;
}

std::string TemporaryName(const std::string& name) {
  return name + "." + std::to_string(std::random_device()()) + ".part";
}

}  // namespace

bool IsEmptyField(std::string_view field) {
  if (field.empty()) return true;
  if (static_cast<signed char>(field.front()) > '#' && field.front() != 'E') return false;
  return field.front() == '#' || field == "\"\"" || field.starts_with("Err:") || IsBlank(field);
}

std::string FieldText(std::string_view text) {
  std::string out(text);
  for (char& c : out) {
    if (static_cast<unsigned char>(c) < 0x20) c = ' ';
  }
  return out;
}

std::string PlotDate(const CivilTime& time) {
  return DateText(time) + " " + TimeText(time);
}

std::string PlotHeaderText(const PlotHeader& header) {
  std::string text = "From: ";
  for (const std::string& field : {FieldText(header.workbook), FieldText(header.sheet), FieldText(header.specification),
                                   ScaleText(header.scale), FieldText(header.options)}) {
    text += "\t" + field;
  }
  return text + "\t" + std::string(kHeaderDate) + FieldText(header.date);
}

PlotHeader ReadPlotHeader(std::string_view line, CellText& reader) {
  PlotHeader header;
  std::array<std::string, 8> fields;
  std::size_t count = 0;
  for (std::string_view rest = line; count < 7;) {
    const std::size_t tab = rest.find('\t');
    fields[++count] = Unquoted(rest.substr(0, tab));
    if (tab == std::string_view::npos) break;
    rest.remove_prefix(tab + 1);
  }
  header.isHeader = Trim(fields[1]).starts_with(kHeaderStart);
  header.hasOptions = count >= 6;
  header.workbook = fields[2];
  header.sheet = fields[3];
  header.specification = fields[4];
  header.scale = reader.ReadPointNumber(fields[5]);
  if (header.scale == 0) header.scale = 1;
  header.options = fields[6];
  header.date = fields[7].starts_with(kHeaderDate) ? fields[7].substr(kHeaderDate.size()) : fields[7];
  return header;
}

bool IsPlotFile(std::string_view bytes) {
  if (bytes.starts_with(kUtf8Mark)) bytes.remove_prefix(kUtf8Mark.size());
  std::string start;
  if (bytes.starts_with(kUtf16LittleMark) || bytes.starts_with(kUtf16BigMark)) {
    for (std::size_t k = bytes.front() == kUtf16LittleMark.front() ? 2 : 3; k < bytes.size(); k += 2) {
      start.push_back(bytes[k]);
      if (start.size() == kHeaderStart.size() + 1) break;
    }
    bytes = start;
  }
  if (bytes.starts_with('"')) bytes.remove_prefix(1);
  return bytes.starts_with(kHeaderStart);
}

bool HoldsPlot(const std::string& file) {
  std::ifstream in(PathOf(file), std::ios::binary);
  std::string bytes(kFirstBytes, '\0');
  in.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  bytes.resize(static_cast<std::size_t>(in.gcount()));
  return IsPlotFile(bytes);
}

void ReadPlotLine(std::string_view line, PlotFields& fields, int& count, bool& empty1, bool& empty5, bool& empty7,
                  bool& empty12, bool& empty14) {
  fields.fill({});
  count = 0;
  std::size_t position = 0;
  for (;;) {
    const std::size_t tab = line.find('\t', position);
    ++count;
    if (count <= kPlotFields) fields[static_cast<std::size_t>(count)] = line.substr(position, tab - position);
    if (tab == std::string_view::npos) break;
    position = tab + 1;
  }
  for (std::string_view& field : fields) {
    if (IsEmptyField(field)) field = {};
  }
  empty1 = fields[1].empty();
  empty5 = fields[5].empty();
  empty7 = fields[7].empty();
  empty12 = fields[12].empty();
  empty14 = fields[14].empty();
}

PlotFileLines::PlotFileLines(const std::string& name) {
  const fs::path path = PathOf(name);
  std::error_code error;
  if (name.empty() || !fs::exists(path, error)) Raise(FailureNumber::FileNotFound);
  if (fs::is_directory(path, error)) Raise(FailureNumber::PathFileAccessError);
  in_.open(path, std::ios::binary);
  if (!in_) Raise(FailureNumber::PathFileAccessError);
}

void PlotFileLines::FindEncoding() {
  started_ = true;
  std::size_t mark = 0;
  if (block_.starts_with(kUtf8Mark)) {
    mark = kUtf8Mark.size();
  } else if (block_.starts_with(kUtf16LittleMark)) {
    encoding_ = Encoding::Utf16Little;
    mark = kUtf16LittleMark.size();
  } else if (block_.starts_with(kUtf16BigMark)) {
    encoding_ = Encoding::Utf16Big;
    mark = kUtf16BigMark.size();
  }
  block_.erase(0, mark);
}

bool PlotFileLines::Fill() {
  position_ = 0;
  do {
    block_.resize(kBlockBytes);
    in_.read(block_.data(), static_cast<std::streamsize>(block_.size()));
    block_.resize(static_cast<std::size_t>(in_.gcount()));
    if (in_.bad()) Raise(FailureNumber::PathFileAccessError);
    if (block_.empty()) return false;
    if (!started_) FindEncoding();
    if (encoding_ != Encoding::Bytes) DecodeUtf16();
  } while (block_.empty());
  return true;
}

// Bytes of a character that the block cuts in two wait for the next block.
void PlotFileLines::DecodeUtf16() {
  raw_ += block_;
  block_.clear();
  const auto unitAt = [&](std::size_t k) -> char32_t {
    const auto first = static_cast<unsigned char>(raw_[k]);
    const auto second = static_cast<unsigned char>(raw_[k + 1]);
    return static_cast<char32_t>(encoding_ == Encoding::Utf16Big ? first << 8U | second : second << 8U | first);
  };
  std::size_t k = 0;
  for (; k + 1 < raw_.size(); k += 2) {
    char32_t unit = unitAt(k);
    if (unit >= 0xD800 && unit < 0xDC00) {
      if (k + 3 >= raw_.size()) break;
      const char32_t low = unitAt(k + 2);
      if (low >= 0xDC00 && low < 0xE000) {
        unit = 0x10000 + ((unit - 0xD800) << 10U) + (low - 0xDC00);
        k += 2;
      }
    }
    if (unit == 0) {
      block_.push_back('\0');
    } else {
      AppendUtf8(block_, unit);
    }
  }
  raw_.erase(0, k);
}

void PlotFileLines::Collect(std::string_view piece) {
  const std::size_t room = kMaxLineBytes - std::min(line_.size(), kMaxLineBytes);
  if (piece.size() > room) {
    if (!lineCut_) cut_.Add(lineNumber_);
    lineCut_ = true;
    piece = piece.substr(0, room);
  }
  line_ += piece;
}

std::string_view PlotFileLines::Clean(std::string_view line) {
  if (std::none_of(line.begin(), line.end(), [](char c) { return static_cast<signed char>(c) <= 0; })) return line;
  cleaned_ = CleanUtf8(line);
  if (Contains(cleaned_, std::string_view("\0", 1))) {
    nul_.Add(lineNumber_);
    std::replace(cleaned_.begin(), cleaned_.end(), '\0', ' ');
  }
  return cleaned_;
}

bool PlotFileLines::Next(std::string_view& line) {
  line_.clear();
  lineCut_ = false;
  ++lineNumber_;
  bool any = false;
  for (;;) {
    if (position_ >= block_.size() && !Fill()) break;
    if (skipLineFeed_ && block_[position_] == '\n') ++position_;
    skipLineFeed_ = false;
    if (position_ == block_.size()) continue;
    any = true;
    const std::string_view rest = std::string_view(block_).substr(position_);
    const std::size_t end = rest.find_first_of("\r\n");
    if (end == std::string_view::npos) {
      Collect(rest);
      position_ = block_.size();
      continue;
    }
    skipLineFeed_ = rest[end] == '\r';
    position_ += end + 1;
    if (line_.empty()) {
      line = Clean(rest.substr(0, end));
    } else {
      Collect(rest.substr(0, end));
      line = Clean(line_);
    }
    return true;
  }
  if (!line_.empty() && line_.back() == kEndOfText) {
    line_.pop_back();
    any = !line_.empty();
  }
  line = Clean(line_);
  if (!any) --lineNumber_;
  return any;
}

PlotFileWriter::PlotFileWriter(const std::string& name, const PlotHeader& header)
    : name_(name), temporary_(TemporaryName(name)) {
  const fs::path folder = PathOf(name).parent_path();
  std::error_code error;
  if (!folder.empty() && !fs::is_directory(folder, error)) {
    Raise(FailureNumber::PathNotFound, "Path not found: " + TextOf(folder));
  }
  out_.open(PathOf(temporary_), std::ios::binary | std::ios::trunc);
  if (!out_) Raise(FailureNumber::PathFileAccessError, "Path/File access error: " + name_);
  const std::string text = PlotHeaderText(header);
  utf8_ = Utf8FromWindows1252(Windows1252FromUtf8(text)) != text;
  if (utf8_) out_ << kUtf8Mark;
  Put(text);
}

PlotFileWriter::~PlotFileWriter() {
  if (committed_) return;
  out_.close();
  std::error_code error;
  fs::remove(PathOf(temporary_), error);
}

void PlotFileWriter::Put(std::string text) {
  if (!utf8_) {
    const bool ascii =
        std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
    if (!ascii) text = Windows1252FromUtf8(text);
  }
  out_ << text << "\r\n";
}

void PlotFileWriter::WriteLine(std::span<const std::string> fields) {
  std::string line;
  for (std::size_t k = 0; k < fields.size(); ++k) {
    if (k > 0) line.push_back('\t');
    line += FieldText(fields[k]);
  }
  Put(std::move(line));
}

void PlotFileWriter::Commit() {
  out_.flush();
  const bool whole = static_cast<bool>(out_);
  out_.close();
  if (!whole) Raise(FailureNumber::PathFileAccessError, "Path/File access error: " + name_ + " could not be written");
  std::error_code error;
  fs::rename(PathOf(temporary_), PathOf(name_), error);
  if (error) Raise(FailureNumber::PermissionDenied, "Permission denied: " + name_);
  committed_ = true;
}

void WritePlotFile(const std::string& name, const PlotHeader& header, std::span<const std::vector<std::string>> lines) {
  PlotFileWriter writer(name, header);
  for (const std::vector<std::string>& line : lines) writer.WriteLine(line);
  writer.Commit();
}

}  // namespace orv
