#pragma once

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

// What the user typed behind the program's name.
struct Arguments {
  enum class Command { Run, Plots };
  Command command = Command::Run;
  std::string workbook;
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
