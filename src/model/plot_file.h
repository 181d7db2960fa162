#pragma once

#include <array>
#include <cstddef>
#include <fstream>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "model/cell_text.h"
#include "numerics/environment.h"

// The plot file: a text of tab-separated fields that carries a range plot to the view. Line 1 is the header; every
// other line has up to 15 fields: x, y, z, value, event time, event state, five numbers of the trace, and time and
// angle of two panels.
namespace orv {

inline constexpr int kPlotFields = 15;
inline constexpr const char* kPlotProgress = "plot file";  // the phase that is shown

struct PlotHeader {
  std::string workbook;
  std::string sheet;
  std::string specification;
  double scale = 1;
  std::string options;
  std::string date;        // "2031/04/05 06:07:08"
  bool isHeader = true;    // the line begins as a header does
  bool hasOptions = true;  // the line is long enough to hold options

  std::string Title() const { return workbook.empty() && sheet.empty() ? "" : workbook + "/" + sheet; }
};

// "yyyy/MM/dd hh:mm:ss".
std::string PlotDate(const CivilTime& time);

std::string PlotHeaderText(const PlotHeader& header);
PlotHeader ReadPlotHeader(std::string_view line, CellText& reader);
// Whether the first bytes of a file are those of a plot file, whatever its encoding.
bool IsPlotFile(std::string_view bytes);
// Whether a file begins as a plot file does; false when it cannot be read.
bool HoldsPlot(const std::string& file);

// A field without meaning: blank, a pair of quotes, or an error of a spreadsheet (#N/A).
bool IsEmptyField(std::string_view field);

// A text that stays in its field: control characters become blanks.
std::string FieldText(std::string_view text);

// The fields of a line, numbered from 1; views into the line.
using PlotFields = std::array<std::string_view, kPlotFields + 1>;

// Splits a line. `count` is the number of its fields, also of those behind the last that is used; the switches tell
// whether the fields that decide about an entry hold nothing. An error of the spreadsheet (#N/A) holds nothing.
void ReadPlotLine(std::string_view line, PlotFields& fields, int& count, bool& empty1, bool& empty5, bool& empty7,
                  bool& empty12, bool& empty14);

// What was amiss with the bytes of a file: how many lines, and the first of them.
struct LineNote {
  long long lines = 0;
  long long first = 0;
  void Add(long long line) {
    if (lines++ == 0) first = line;
  }
};

// The lines of a text file, one after the other, with little memory whatever the file holds. Lines end with CR LF, LF
// or CR. Texts come out as UTF-8 from UTF-8, Windows-1252 and UTF-16 with its mark; a NUL byte becomes a blank. A line
// is cut at kMaxLineBytes.
class PlotFileLines {
 public:
  static constexpr std::size_t kMaxLineBytes = std::size_t{1} << 20U;

  // Failure 53 when there is no such file, 75 when it cannot be read.
  explicit PlotFileLines(const std::string& name);

  // The next line, valid until the call after; false at the end of the file.
  bool Next(std::string_view& line);
  long long lineNumber() const { return lineNumber_; }

  const LineNote& cut() const { return cut_; }
  const LineNote& nul() const { return nul_; }

 private:
  enum class Encoding { Bytes, Utf16Little, Utf16Big };

  bool Fill();
  void FindEncoding();
  void DecodeUtf16();
  void Collect(std::string_view piece);
  std::string_view Clean(std::string_view line);

  std::ifstream in_;
  std::string block_;
  std::string raw_;  // bytes of UTF-16 not decoded yet
  std::size_t position_ = 0;
  bool started_ = false;
  bool skipLineFeed_ = false;
  Encoding encoding_ = Encoding::Bytes;
  std::string line_;
  std::string cleaned_;
  bool lineCut_ = false;
  long long lineNumber_ = 0;
  LineNote cut_;
  LineNote nul_;
};

// Writes a plot file beside its name and puts it in its place when it is complete. Windows-1252 with CR LF, or UTF-8
// with its mark when the header needs other characters. Failure 76 without the folder, 75 when it cannot be written.
class PlotFileWriter {
 public:
  PlotFileWriter(const std::string& name, const PlotHeader& header);
  ~PlotFileWriter();
  PlotFileWriter(const PlotFileWriter&) = delete;
  PlotFileWriter& operator=(const PlotFileWriter&) = delete;

  void WriteLine(std::span<const std::string> fields);
  // A line of fields that hold no control characters.
  void WriteLine(const std::string& line) { Put(line); }
  void Commit();

 private:
  void Put(std::string text);

  std::string name_;
  std::string temporary_;
  std::ofstream out_;
  bool utf8_ = false;
  bool committed_ = false;
};

void WritePlotFile(const std::string& name, const PlotHeader& header, std::span<const std::vector<std::string>> lines);

}  // namespace orv
