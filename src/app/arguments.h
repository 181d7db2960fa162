#pragma once

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

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
  bool quiet = false;
};

// Reads the arguments. Without a value the program ends with `exitCode`: help and version were printed to `out`, or a
// fault of usage was explained on `err`.
std::optional<Arguments> ParseArguments(int argc, const char* const* argv, std::ostream& out, std::ostream& err,
                                        int& exitCode);

}  // namespace orv
