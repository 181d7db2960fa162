#pragma once

#include <array>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "numerics/environment.h"

namespace orv {

// Exit codes of the program.
inline constexpr int kExitDone = 0;
inline constexpr int kExitAborted = 1;
inline constexpr int kExitUsage = 2;
inline constexpr int kExitWorkbook = 3;
inline constexpr int kExitOutput = 4;

// How a picture of the view is drawn and where it goes.
struct PictureArguments {
  std::vector<std::string> images;  // .png or .bmp
  int width = 1280;                 // device pixels
  int height = 960;
  double pixelRatio = 1;  // device pixels in a logical one: texts and lines grow with it
  std::string view;       // empty: the first view of the window
  std::optional<int> sides;
  int colorStyle = 0;
  int scaleMode = 0;
  int frameFraction = 1000;  // thousandths of the plot that are drawn
  int startFraction = 0;     // thousandths left out at its start
  std::string background;    // empty: as stored
  bool vectors = false;
};

// A view as --view takes it.
struct ViewChoice {
  std::string form;  // iso, isonew, isonewplus, proj, projinverse, realiso
  int number = 0;    // axis 1 .. 3 or view 0 .. 11
};
std::optional<ViewChoice> ReadView(const std::string& text);

// "white", or red, green and blue from 0 to 255 with commas between.
std::optional<std::array<double, 3>> ReadBackground(const std::string& text);

// What the user typed behind the program's name.
struct Arguments {
  enum class Command { Window, Run, Plots, Show };
  Command command = Command::Window;
  std::string workbook;
  bool link = false;  // run: the model that is open in the running Calc
  std::string door;   // by which it is reached; empty for the usual one
  std::string shown;  // show: plot file or workbook
  std::string spec;
  PictureArguments picture;
  std::vector<std::string> levelLines;  // .png or .svg
  std::string sheet;
  std::string cell;
  int plot = 0;
  std::string options;
  std::optional<int> log;
  std::string caseName;
  std::string outFolder;
  std::vector<std::string> exports;
  std::optional<std::string> onQuestion;
  std::string settingsFolder;
  std::optional<std::string> decimal;
  std::optional<std::string> thousands;
  std::optional<std::string> date;
  bool summary = false;
  bool quiet = false;
};

// A date, or a date with its time, as --date takes it.
std::optional<CivilTime> ReadDate(const std::string& text);

// Reads the arguments. Without a value the program ends with `exitCode`: help and version were printed to `out`, or a
// fault of usage was explained on `err`.
std::optional<Arguments> ParseArguments(int argc, const char* const* argv, std::ostream& out, std::ostream& err,
                                        int& exitCode);

}  // namespace orv
