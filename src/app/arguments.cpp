#include "app/arguments.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <ostream>

#include "analysis/cell_export.h"
#include "app/man_page.h"
#include "geometry/quantities.h"
#include "model/calc_door.h"
#include "numerics/failure.h"
#include "numerics/paths.h"
#include "numerics/text.h"
#include "view/view_state.h"
#include "window/level_lines.h"

namespace orv {
namespace {

const char* const kFooter = R"text(
Examples:
  orvvalis
      the window, with what is open in the running spreadsheet, the last plot or the sample
  orvvalis examples/telecom_satellite.xlsx
      the window, with the example satellite
  orvvalis run examples/telecom_satellite.xlsx --plot 13
      ion density on every cell of the example satellite
  orvvalis run model.ods --sheet Model --plot 20 --export cells.csv --export cells.vtp
      shadow flags, and the cells as a table and for ParaView
  orvvalis run examples/telecom_satellite.xlsx --plot 13 --log 1 --image density.png
      the same as a picture, no display needed
  orvvalis show examples/range_plots.xlsx --spec "=MAX(A5:C65)" --image curve.png
      three columns of the workbook as a curve
  orvvalis plots
      the list of all plot numbers

Exit codes: 0 done, 1 ended by an abort answer, 2 wrong usage, 3 the workbook cannot be read,
4 a result cannot be written.)text";

constexpr int kSmallestPicture = 16;
constexpr int kLargestPicture = 16384;
constexpr int kMostPixels = 1 << 27;

bool IsPlot(int number) {
  if (number >= Number(Quantity::Redeposition) && number <= kLastPlot) return true;
  for (const QuantityEntry& entry : kQuantityTable) {
    if (entry.number == number) return true;
  }
  return false;
}

std::string CheckFile(const std::string& text) {
  std::error_code error;
  if (std::filesystem::exists(PathOf(text), error)) return {};
  return "\"" + text + "\" is neither a command nor a file";
}

std::string CheckPlot(const std::string& text) {
  int number = 0;
  if (!CLI::detail::lexical_cast(text, number) || !IsPlot(number)) {
    return "there is no plot \"" + text + "\"; \"orvvalis plots\" lists the numbers";
  }
  return {};
}

std::string CheckExport(const std::string& text) {
  return IsExportName(text) ? std::string() : "the ending of \"" + text + "\" is none of .csv, .json, .vtp";
}

std::string CheckSeparator(const std::string& text) {
  return text == "." || text == "," ? std::string() : "the decimal separator is \".\" or \",\"";
}

std::string CheckDoor(const std::string& text) {
  try {
    CalcDoorOf(text);
    return {};
  } catch (const RuntimeFailure&) {
    return "\"" + text + "\" is neither a pipe's name nor a port such as 2002 or localhost:2002";
  }
}

std::string CheckDate(const std::string& text) {
  return ReadDate(text) ? std::string() : "\"" + text + "\" is no date such as 2026-03-31 or 2026-03-31T12:00:00";
}

std::string CheckImage(const std::string& text) {
  const std::string name = UpperCase(text);
  const bool known = name.ends_with(".PNG") || name.ends_with(".BMP");
  return known ? std::string() : "the ending of \"" + text + "\" is none of .png, .bmp";
}

std::string CheckLevelLines(const std::string& text) {
  return IsLevelLineFile(text) ? std::string() : "the ending of \"" + text + "\" is none of .png, .svg";
}

std::string CheckView(const std::string& text) {
  return ReadView(text)
             ? std::string()
             : "\"" + text + "\" is no view such as iso, isonew:3, isonewplus, realiso:3, proj:5 or projinverse:5";
}

std::string CheckBackground(const std::string& text) {
  return ReadBackground(text) ? std::string() : "\"" + text + "\" is neither white nor a colour such as 10,20,70";
}

// Reads WIDTHxHEIGHT.
bool ReadSize(const std::string& text, int& width, int& height) {
  int w = 0;
  int h = 0;
  char rest = 0;
  if (std::sscanf(text.c_str(), "%5dx%5d%c", &w, &h, &rest) != 2) return false;
  if (w < kSmallestPicture || h < kSmallestPicture || w > kLargestPicture || h > kLargestPicture) return false;
  if (static_cast<long long>(w) * h > kMostPixels) return false;
  width = w;
  height = h;
  return true;
}

void DescribePicture(CLI::App& command, PictureArguments& p, bool required) {
  const std::string group = "Picture";
  CLI::Option* image =
      command.add_option("--image", p.images, "Draw the plot into this file, .png or .bmp; may be given several times")
          ->check(CheckImage)
          ->allow_extra_args(false)
          ->group(group);
  if (required) image->required();
  const auto size = [&p](const std::string& text) {
    return ReadSize(text, p.width, p.height)
               ? std::string()
               : "\"" + text + "\" is no size such as 1280x960: 16 to 16384 a side, at most 134 million pixels";
  };
  command.add_option("--size", "Width and height of the picture in pixels (default: 1280x960)")
      ->check(size)
      ->type_name("WxH")
      ->group(group);
  command
      .add_option("--pixel-ratio", p.pixelRatio,
                  "Size of texts and lines, 0.5 to 8; 2 for pictures that are shown small")
      ->check(CLI::Range(0.5, 8.0))
      ->group(group);
  command
      .add_option("--view", p.view,
                  "iso; isonew:AXIS with that axis upright, 1 to 3; isonewplus; realiso:AXIS; proj:N or projinverse:N, "
                  "one of twelve straight views, 0 to 11")
      ->check(CheckView)
      ->group(group);
  command
      .add_option("--sides", p.sides,
                  "0 dots, 1 dots and borders, 2 recto sides, 3 verso sides, 4 both (default: 2, from plot 90 on 1)")
      ->check(CLI::Range(0, kSidesModes - 1))
      ->group(group);
  command.add_option("--color-style", p.colorStyle, "Colours of the scale, 0 to 6")
      ->check(CLI::Range(0, kColorStyles - 1))
      ->group(group);
  command
      .add_option("--scale-mode", p.scaleMode,
                  "The scale: 0 in the corner; 1 also as labels and dots on the axes; 2 labels alone; 3 dots alone; 4 "
                  "labels and dots; 5 none")
      ->check(CLI::Range(0, kScaleModes - 1))
      ->group(group);
  command
      .add_option("--frame-fraction", p.frameFraction, "Draw the plot up to this thousandth, 0 to 1000 (default: 1000)")
      ->check(CLI::Range(0, 1000))
      ->group(group);
  command
      .add_option("--start-fraction", p.startFraction,
                  "Leave out the plot up to this thousandth, 0 to 1000 (default: 0)")
      ->check(CLI::Range(0, 1000))
      ->group(group);
  command.add_option("--background", p.background, "white, or red,green,blue from 0 to 255 (default: as stored)")
      ->check(CheckBackground)
      ->group(group);
  command.add_flag("--vectors", p.vectors, "Show the vectors of the flow on the hottest cells")->group(group);
}

void DescribeShow(CLI::App& show, Arguments& a) {
  show.add_option("FILE", a.shown, "Plot file, or workbook with the ranges to plot: .xlsx, .ods or tab-separated text")
      ->required();
  show.add_option("--spec", a.spec,
                  "Which ranges of the workbook, such as \"=MAX(A2:C60)\" (default: the one in the active cell)");
  show.add_option("--sheet", a.sheet, "Sheet with the ranges (default: the sheet that was active when it was saved)");
  show.add_option("--cell", a.cell, "Cell that holds the specification, such as B4 (default: the active cell)");
  DescribePicture(show, a.picture, true);
  show.add_option("--settings", a.settingsFolder, "Folder of settings (default: the user's own)");
  show.add_option("--decimal", a.decimal, "Decimal separator of numbers in the file (default: the locale's)")
      ->check(CheckSeparator);
  show.add_option("--thousands", a.thousands,
                  "Thousands separator, one character, or the word none (default: the locale's)");
  show.add_flag("--quiet", a.quiet, "Print problems and questions only");
}

void DescribeRun(CLI::App& run, Arguments& a) {
  CLI::Option* workbook =
      run.add_option("WORKBOOK", a.workbook, "Workbook with the model: .xlsx, .ods or tab-separated text");
  CLI::Option* sheet =
      run.add_option("--sheet", a.sheet, "Sheet with the model (default: the sheet that was active when it was saved)");
  CLI::Option* cell = run.add_option("--cell", a.cell,
                                     "Cell from which the keyword is searched, such as B4 (default: the active cell)");
  CLI::Option* link =
      run.add_flag("--link", a.link, "Take the model from the workbook that is open in the running Calc")
          ->excludes(workbook, sheet, cell);
  run.add_option("--door", a.door,
                 "How the running Calc is reached: a pipe's name, a port or host:port (default: orvvalis)")
      ->needs(link)
      ->check(CheckDoor);
  run.add_option("--plot", a.plot, "Number of the quantity to compute and show, such as 13 for the ion density")
      ->required()
      ->check(CheckPlot);
  run.add_option(
      "--options", a.options,
      "Plot options: L n, list of one primitive, and level lines on it; C n, compatibility with earlier releases, "
      "above 39 heights of cylinders; G, full listing; F n, check case for the developers");
  run.add_option("--log", a.log, "Logarithmic scale: 0 none, 1 with margins for zero, 2 without margins")
      ->check(CLI::Range(0, 2));
  run.add_option("--case", a.caseName, "Name of the computation, for the trace file");
  run.add_option("--out", a.outFolder, "Folder of the result files (default: the folder of the workbook)");
  run.add_option("--export", a.exports,
                 "Write the results to this file as well, by its ending: .csv one row per cell, .json the whole run, "
                 ".vtp cells for ParaView; may be given several times")
      ->check(CheckExport)
      ->allow_extra_args(false);
  run.add_option(
         "--on-question", a.onQuestion,
         "Answers to questions: ask (at the terminal), ignore, or abort at the first problem (default: ask on a "
         "terminal, otherwise ignore)")
      ->check(CLI::IsMember({"ask", "ignore", "abort"}));
  run.add_option("--settings", a.settingsFolder, "Folder of settings and trace file (default: the user's own)");
  run.add_option("--decimal", a.decimal, "Decimal separator of numbers in the workbook's texts (default: the locale's)")
      ->check(CheckSeparator);
  run.add_option("--thousands", a.thousands,
                 "Thousands separator, one character, or the word none (default: the locale's)");
  run.add_option("--date", a.date, "Date of the run, yyyy-mm-dd or yyyy-mm-ddThh:mm:ss, in place of the clock's")
      ->check(CheckDate);
  run.add_flag("--summary", a.summary, "Print the tables of all effects: heat, forces, moments, erosion, redeposition");
  run.add_flag("--quiet", a.quiet, "Print problems and questions only");
  run.add_option(
         "--level-lines", a.levelLines,
         "Draw level lines over the primitive of --options \"L n\" into this file, .png or .svg; may be given several "
         "times")
      ->check(CheckLevelLines)
      ->allow_extra_args(false)
      ->group("Picture");
  DescribePicture(run, a.picture, false);
}

}  // namespace

std::optional<CivilTime> ReadDate(const std::string& text) {
  CivilTime time;
  char rest = 0;
  const int fields = std::sscanf(text.c_str(), "%4d-%2d-%2dT%2d:%2d:%2d%c", &time.year, &time.month, &time.day,
                                 &time.hour, &time.minute, &time.second, &rest);
  const bool dateOnly = fields == 3 && text.size() == 10;
  const bool whole = fields == 6 && text.size() == 19;
  const std::chrono::year_month_day day(std::chrono::year(time.year),
                                        std::chrono::month(static_cast<unsigned>(std::max(0, time.month))),
                                        std::chrono::day(static_cast<unsigned>(std::max(0, time.day))));
  const bool clock =
      time.hour >= 0 && time.hour < 24 && time.minute >= 0 && time.minute < 60 && time.second >= 0 && time.second < 60;
  if (!(dateOnly || whole) || !day.ok() || time.year < 1900 || !clock) return std::nullopt;
  return time;
}

std::optional<ViewChoice> ReadView(const std::string& text) {
  const std::size_t colon = text.find(':');
  ViewChoice view;
  view.form = text.substr(0, colon);
  const bool straight = view.form == "proj" || view.form == "projinverse";
  const bool axis = view.form == "isonew" || view.form == "realiso";
  if (!straight && !axis && view.form != "iso" && view.form != "isonewplus") return std::nullopt;
  if (colon == std::string::npos) {
    if (axis) view.number = 3;
    return view;
  }
  if (!straight && !axis) return std::nullopt;
  const std::string number = text.substr(colon + 1);
  if (number.empty() || number.size() > 2 || number.find_first_not_of("0123456789") != std::string::npos) {
    return std::nullopt;
  }
  view.number = std::stoi(number);
  const bool inside = straight ? view.number <= 11 : view.number >= 1 && view.number <= 3;
  return inside ? std::optional(view) : std::nullopt;
}

std::optional<std::array<double, 3>> ReadBackground(const std::string& text) {
  if (text == "white") return std::array<double, 3>{255, 255, 255};
  int colour[3] = {};
  char rest = 0;
  if (std::sscanf(text.c_str(), "%3d,%3d,%3d%c", &colour[0], &colour[1], &colour[2], &rest) != 3) return std::nullopt;
  std::array<double, 3> result{};
  for (std::size_t i = 0; i < 3; ++i) {
    if (colour[i] < 0 || colour[i] > 255) return std::nullopt;
    result[i] = colour[i];
  }
  return result;
}

std::optional<Arguments> ParseArguments(int argc, const char* const* argv, std::ostream& out, std::ostream& err,
                                        int& exitCode) {
  Arguments a;
  CLI::App app("OrvValis: what an electric thruster's plume does to a satellite, from a spreadsheet.", "orvvalis");
  app.footer(kFooter);
  app.set_version_flag("--version", std::string("OrvValis ") + ORV_VERSION, "Print the version and end");
  app.require_subcommand(0, 1);
  app.add_option("FILE", a.workbook,
                 "Workbook or plot file to open in the window (without one: the running spreadsheet's, the last plot "
                 "or the sample)")
      ->check(CheckFile);
  app.add_option("--settings", a.settingsFolder, "Folder of settings and trace file (default: the user's own)");
  app.add_option("--door", a.door,
                 "How a running Calc is reached: a pipe's name, a port or host:port (default: orvvalis)")
      ->check(CheckDoor);
  bool manPage = false;
  app.add_flag("--man-page", manPage, "Print the manual page and end")->group("");
  app.get_formatter()->column_width(28);
  CLI::App* run = app.add_subcommand("run", "Compute a model and report the results");
  run->footer("");
  DescribeRun(*run, a);
  CLI::App* show = app.add_subcommand("show", "Draw a plot file or ranges of a workbook into a picture");
  show->footer("");
  DescribeShow(*show, a);
  CLI::App* plots = app.add_subcommand("plots", "List the plot numbers with their labels");
  try {
    app.parse(argc, argv);
  } catch (const CLI::Success& success) {
    exitCode = app.exit(success, out, err);
    return std::nullopt;
  } catch (const CLI::ParseError& error) {
    err << "orvvalis: " << error.what() << "\nTry \"orvvalis --help\" or \"orvvalis run --help\".\n";
    exitCode = kExitUsage;
    return std::nullopt;
  }
  if (manPage) {
    out << ManPage(app, ORV_VERSION);
    exitCode = kExitDone;
    return std::nullopt;
  }
  if (run->parsed()) a.command = Arguments::Command::Run;
  if (run->parsed() && a.workbook.empty() && !a.link) {
    err << "orvvalis: WORKBOOK is required, or --link\nTry \"orvvalis --help\" or \"orvvalis run --help\".\n";
    exitCode = kExitUsage;
    return std::nullopt;
  }
  if (plots->parsed()) a.command = Arguments::Command::Plots;
  if (show->parsed()) a.command = Arguments::Command::Show;
  exitCode = kExitDone;
  return a;
}

}  // namespace orv
