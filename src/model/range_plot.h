#pragma once

#include <array>
#include <string>
#include <string_view>

#include "model/cell_text.h"

namespace orv {

// What a specification names: up to six ranges of a sheet whose columns become points, values, events, traces and panel
// angles, a scale, and option words. "=0.001*MAX(A2:C60)+MAX(D2:D60)" & "PENUP" is one.
inline constexpr std::size_t kPlotRanges = 6;
inline constexpr std::string_view kMainKeyword = "MAX";
inline constexpr std::string_view kDefaultPlotOptions = "ValisExcelPro";
inline constexpr std::array<int, kPlotRanges> kColumnsTaken = {3, 1, 2, 5, 2, 2};  // of R1 to R6

using RangeTexts = std::array<std::string, kPlotRanges>;

// A rectangle of a sheet, counted from 1; all 0 for none.
struct RangeBounds {
  int firstColumn = 0;
  int lastColumn = 0;
  int firstRow = 0;
  int lastRow = 0;
  bool present() const { return firstColumn > 0 && firstRow > 0; }
  int columns() const { return present() ? lastColumn - firstColumn + 1 : 0; }
  int rows() const { return present() ? lastRow - firstRow + 1 : 0; }
  friend bool operator==(const RangeBounds&, const RangeBounds&) = default;
};

// R1 to R6 at 0 to 5, split and clamped.
struct PlotRanges {
  std::array<RangeBounds, kPlotRanges> range;

  // The part of a range whose columns go to the plot file.
  RangeBounds Taken(std::size_t place) const;
  bool FirstAlone() const;
  // Rows of the longest range: the lines of the plot file.
  int LineCount() const;
};

// What the option words switch on.
struct PlotSwitches {
  bool PenUpMode = false;
  int ValueColumn = 0;  // 1, 2, 3: "valx", "valy", "valz"
  double MaravoFactor = 0;
  bool TraceOrderWFirst = false;  // the trace holds x, y, z, w and is to be turned
  bool MoonView = false;
};

// Takes a specification apart: the number in front of the first keyword (1 when absent or 0), the options between
// double quotes, and the texts in the parentheses behind each keyword, empty for those that are absent. True when a
// range holds ":", so that there is something to plot.
bool ParseSpecification(std::string_view spec, double& scale, std::string& options, RangeTexts& ranges,
                        CellText& reader, std::string_view MainKeyword = kMainKeyword);

// The bounds of "A2:C60", columns of one or two letters; "$" is dropped. All 0 for any other text and for one of more
// than 100 characters.
RangeBounds ParseRange(std::string_view text);

// The text of a range: "A2:C60"; empty for none.
std::string RangeText(const RangeBounds& bounds);

// Parses the ranges, splits a wide first one over the places behind it and clamps all. False when the first is narrower
// than 3 columns: there is nothing to plot.
bool FindPlotRanges(const RangeTexts& texts, PlotRanges& ranges);

// Takes a word out of a text, in any case: the parts before and behind it are joined with a blank, or the first part
// stands alone when nothing follows. False when the text does not hold it.
bool RemoveWord(std::string_view word, std::string& text);

// Reads the option words and removes those that are read once.
PlotSwitches ReadPlotOptions(std::string& options);

// What the user is told when an open sheet offers no range of 3 columns, with its title.
std::string WrongSpecificationText(std::string_view spec);
inline constexpr const char* kWrongSpecificationTitle = "Information";

}  // namespace orv
