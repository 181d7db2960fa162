#include "app/arguments.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ostream>

#include "analysis/cell_export.h"
#include "geometry/quantities.h"

namespace orv {
namespace {

const char* const kFooter = R"(
Examples:
  orvvalis run examples/telecom_satellite.xlsx --plot 13
      ion density on every cell of the example satellite
  orvvalis run model.ods --sheet Model --plot 20 --export cells.csv --export cells.vtp
      shadow flags, and the cells as a table and for ParaView
  orvvalis plots
      the list of all plot numbers

Exit codes: 0 done, 1 ended by an abort answer, 2 wrong usage, 3 the workbook cannot be read,
4 a result cannot be written.)";

bool IsPlot(int number) {
  if (number >= Number(Quantity::Redeposition) && number <= kLastPlot) return true;
  for (const QuantityEntry& entry : kQuantityTable) {
    if (entry.number == number) return true;
  }
  return false;
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

std::string CheckDate(const std::string& text) {
  return ReadDate(text) ? std::string() : "\"" + text + "\" is no date such as 2026-03-31 or 2026-03-31T12:00:00";
}

void DescribeRun(CLI::App& run, Arguments& a) {
  run.add_option("WORKBOOK", a.workbook, "Workbook with the model: .xlsx, .ods or tab-separated text")->required();
  run.add_option("--sheet", a.sheet, "Sheet with the model (default: the sheet that was active when it was saved)");
  run.add_option("--cell", a.cell, "Cell from which the keyword is searched, such as B4 (default: the active cell)");
  run.add_option("--plot", a.plot, "Number of the quantity to compute and show, such as 13 for the ion density")
      ->required()
      ->check(CheckPlot);
  run.add_option("--options", a.options,
                 "Plot options: L n, list of one primitive; C n, compatibility with earlier releases; G, full listing; "
                 "F n, check case");
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

std::optional<Arguments> ParseArguments(int argc, const char* const* argv, std::ostream& out, std::ostream& err,
                                        int& exitCode) {
  Arguments a;
  CLI::App app("OrvValis: what an electric thruster's plume does to a satellite, from a spreadsheet.", "orvvalis");
  app.footer(kFooter);
  app.set_version_flag("--version", std::string("OrvValis ") + ORV_VERSION, "Print the version and end");
  app.require_subcommand(1);
  app.get_formatter()->column_width(28);
  CLI::App* run = app.add_subcommand("run", "Compute a model and report the results");
  run->footer("");
  DescribeRun(*run, a);
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
  a.command = plots->parsed() ? Arguments::Command::Plots : Arguments::Command::Run;
  exitCode = kExitDone;
  return a;
}

}  // namespace orv
