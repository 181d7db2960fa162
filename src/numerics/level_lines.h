#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "numerics/array.h"
#include "numerics/failure.h"

// Level lines of a quantity over a grid: the table of levels, the axes around them and the tracer. Drawing is left to
// the view.
namespace orv {

using LevelAxis = Array<double, 1>;  // coordinates 1 ..
using LevelGrid = Array<double, 2>;  // values (1 .., 1 ..), first index along X
using Colour32 = std::uint32_t;      // red + 256 green + 65536 blue

inline constexpr int kPaletteEntries = 1280;
inline constexpr int kLevelFont = 7;            // points, of the labels
inline constexpr double kFirstAxisDay = 21097;  // 4 October 1957: axes behind it may show dates
inline constexpr double kLastAxisDay = 401769;
inline constexpr FailureNumber kContourFailure = static_cast<FailureNumber>(1001);
inline constexpr const char* kContourSource = "CONREC";

// What is plotted, and how.
struct LevelLineInput {
  LevelAxis X;
  LevelAxis Y;
  LevelGrid Z;
  int LevelCount = 10;
  double LowFactor = 1;
  double HighFactor = 1;
  std::string XLabel = " X ";
  std::string YLabel = " Y ";
  std::string Title;
  int Swap = 0;                       // not 0: X and Y change places
  std::string LabelFormat = " #.# ";  // mask of the numbers; what stands behind its last "#" is printed as it is
  std::string AxisText = "#0.0##";    // mask of the axes; any other lets the axis choose
  double LogScale = 0;                // 1 or more: Z holds logarithms, labels show the values themselves
  bool Labels = true;
};

struct LevelRecord {
  double Level = 0;
  Colour32 LineColour = 0;
  std::int32_t Active = 1;
  std::string Label;
  Colour32 LabelColour = 0;
  std::int32_t LabelFont = kLevelFont;
};
using LevelRecords = Array<LevelRecord, 1>;

// Runs a statement whose failure goes unnoticed: its target keeps what it held.
template <class Statement>
void PassOverFailure(Statement&& statement) {
  try {
    std::forward<Statement>(statement)();
  } catch (const RuntimeFailure&) {
    return;
  }
}

// Entries 0 .. 1279 from violet over blue, cyan, green and yellow to red.
Array<Colour32, 1> BuildPalette();

// Lets X and Y change places when the swap is asked for: arrays, grid and labels. Failure 9 for a grid smaller than its
// axes.
void Arrange(LevelLineInput& input);

// Smallest and largest value of the grid, without those that are no numbers; 0 and 0 for a grid without values.
void FindExtremes(const LevelGrid& Z, double& lo, double& hi);

// Multiplies the bounds by their factors, as far as their order stays.
void ApplyFactors(double lowFactor, double highFactor, double& lo, double& hi);

// Equal steps from lo to hi, each rounded to three significant digits: close levels can become equal.
LevelRecords MakeLevels(const LevelLineInput& input, double lo, double hi, const Array<Colour32, 1>& palette);

// The text of a level; one on a logarithmic scale shows its antilogarithm. Failure 6 when that is too large.
std::string LevelLabel(double level, double LogScale, const std::string& format);

// An axis with round numbers.
struct AxisScale {
  double low = 0;
  double high = 1;
  double step = 0.25;
  int steps = 4;
  bool dates = false;
  std::string mask = "#0.0##";

  double Tick(int k) const;  // 0 .. steps
  std::string TextOf(double value) const;
};

// The axis that holds two limits, in any order: 5 to 12 steps of a power of ten or a half, quarter or eighth of one.
// Limits are day numbers when both lie in the age of spaceflight and the mask leaves the choice. Failures 5 and 6 for
// limits that are no numbers or too close together.
AxisScale ScaleAxis(double p, double q, const std::string& axisText);

// A straight piece of a level line.
struct LevelPiece {
  double x1 = 0;
  double y1 = 0;
  double x2 = 0;
  double y2 = 0;
};

// Failure 1001 "Error in Input Parameters" for axes of fewer than two points and for no level, "Error in Contour
// Levels" for levels that do not rise.
void CheckContourInput(const LevelAxis& X, const LevelAxis& Y, const LevelRecords& levels);

// The pieces of one level in the manner of CONREC, by the signs of each rectangle's corners, rows outer, columns inner.
// A level through two or more corners of a rectangle draws nothing there; in a saddle the lines run around the corners
// below the level. Failure 9 for a grid smaller than its axes.
std::vector<LevelPiece> TraceLevel(const LevelAxis& X, const LevelAxis& Y, const LevelGrid& Z, double level);

}  // namespace orv
