#include <cmath>
#include <vector>

#include "fuzz/fuzz_support.h"
#include "model/primitive_spec.h"
#include "model/rotation_table.h"

// Rows of a model: cells separated by tabs, the second of them a specification of a primitive.
namespace orv::testing {
namespace {

constexpr int kMostRows = 12;
constexpr int kColumns = 11;

int FillCells(FuzzInput& input, TextTable& cells) {
  cells.Size({Bounds{0, kMostRows + 10}, Bounds{1, kColumns}});
  int row = 0;
  while (!input.Empty() && row < kMostRows) {
    const std::string line = input.TextLine();
    std::string_view rest = line;
    ++row;
    for (int column = 1; column <= kColumns; ++column) {
      const std::size_t tab = std::min(rest.find('\t'), rest.size());
      cells(row, column) = RepairMinus(SoftBlanks(rest.substr(0, tab)));
      rest.remove_prefix(std::min(tab + 1, rest.size()));
    }
  }
  return row;
}

void CheckTail(PrimitiveSpec spec, const std::string& name, ErrorPrompt& prompt) {
  if (spec.Tail.empty()) return;
  AutomaticRotation rotation;
  std::string tail = spec.Tail.substr(spec.Tail.front() == 'a' ? 1 : 0);
  tail = Trim(tail);
  ReadAutomaticRotation(tail, rotation);
  RequireText(tail, "the rest of a tail is a text");
  RequireText(rotation.RotationAxisLetter, "an axis is a text");
  Require(rotation.RotationTailLength >= 0 && rotation.RotationTailLength <= static_cast<double>(spec.Tail.size()),
          "the rest of a tail is counted", spec.Tail);
  rotation.RotationAngle = 12.345;
  RequireText(RewriteTailForRotation(spec.Tail, rotation, spec.Type, name, prompt, Locale{}),
              "a tail for a turn is a text");
}

void CheckPrimitive(const TextTable& cells, int row, CellText& reader) {
  std::vector<std::string> names(kMostRows + 11);
  PrimitiveSpec spec;
  spec.Type = "BEFORE";
  RequireText(PrimitiveType(cells, row, kSpecColumn), "a type is a text");
  try {
    ParsePrimitive(cells, row, kSpecColumn, names, reader, spec);
  } catch (const RuntimeFailure&) {
    Require(spec.Type == "BEFORE" && names[static_cast<std::size_t>(row)].empty(), "a line in vain changes nothing");
    return;
  }
  const std::string& name = names[static_cast<std::size_t>(row)];
  RequireText(name, "a name is a text");
  Require(!name.empty(), "a primitive has a name", cells(row, kSpecColumn));
  RequireText(spec.Type, "a type is a text");
  RequireText(spec.Tail, "a tail is a text");
  for (const double number :
       {spec.Size1, spec.Size2, spec.Size3, spec.Free1, spec.Free2, spec.Free3, spec.Free4, spec.Nx, spec.Ny}) {
    Require(std::isfinite(number), "a primitive is of numbers", cells(row, kSpecColumn));
  }
  for (const double number : spec.ExtraNumbers.values()) Require(std::isfinite(number), "numbers behind", spec.Tail);
  CheckTail(spec, name, reader.prompt());
}

void CheckRotation(TextTable cells, int rows, int rotating, CellText& reader) {
  Array<double, 2> table;
  int column = 3;
  try {
    ReadRotPercentTable(cells, rows, rotating, column, table, reader);
  } catch (const RuntimeFailure&) {
    return;  // more rows than the table holds
  }
  Require(column >= 1 && column <= kColumns, "the text of the turn has a column");
  Require(table(-1, 2) >= 1 && table(-1, 2) <= 360, "a turn has its steps");
  for (const double number : table.values()) Require(!std::isnan(number), "a turn is of numbers");
  for (const std::string& cell : cells.values()) RequireText(cell, "a cell is a text");
}

}  // namespace
}  // namespace orv::testing

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace orv;
  using namespace orv::testing;
  FuzzInput input(data, size);
  FuzzDialogs dialogs(size % 5 == 0 ? Answer::Abort : Answer::Ignore);
  ErrorPrompt prompt(dialogs);
  CellText reader(prompt, FuzzLocales()[size % 3]);
  TextTable cells;
  const int rows = FillCells(input, cells);
  try {
    for (int row = 1; row <= rows; ++row) CheckPrimitive(cells, row, reader);
    for (int rotating = 0; rotating <= rows; ++rotating) CheckRotation(cells, rows, rotating, reader);
  } catch (const ProgramEnd&) {
  }
  return 0;
}
