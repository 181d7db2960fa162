#include <cmath>

#include "fuzz/fuzz_support.h"
#include "model/formula_text.h"
#include "model/sheet_grid.h"
#include "model/xlsx_file.h"

// Formulas and references, and the values that files spell: a line each.
namespace orv::testing {
namespace {

void CheckFormula(const std::string& text) {
  RequireText(DecodeEscapes(text), "a text with escapes is a text");
  for (const std::string& formula : {FormulaFromXlsx(text), FormulaFromOds(text)}) {
    RequireText(formula, "a formula is a text");
    Require(formula.starts_with('='), "a formula begins as one", text);
    Require(formula.size() <= 8 * text.size() + 16, "a formula stays short", text);
  }
  RequireText(QuotedSheetName(text), "a sheet's name is a text");
}

// A formula moved away and back is the formula, unless a reference left the sheet.
void CheckShared(const std::string& text) {
  const CellPosition from{20, 20};
  const std::string home = SharedFormula(text, from).At(from);
  RequireText(home, "a shared formula is a text");
  Require(SharedFormula(home, from).At(from) == home, "a shared formula at home is itself", text);
  for (const CellPosition to : {CellPosition{1, 1}, {20, 21}, {500, 3}, {kSheetRows, kSheetColumns}}) {
    const std::string moved = SharedFormula(home, from).At(to);
    RequireText(moved, "a shared formula is a text");
    Require(moved.size() <= 6 * home.size() + 16, "a moved formula stays short", text);
    if (Contains(moved, "#REF!")) continue;
    Require(SharedFormula(moved, to).At(from) == home, "a formula moves back", text);
  }
}

void CheckReferences(const std::string& text) {
  if (const std::optional<CellPosition> cell = ParseA1Cell(text)) {
    Require(InsideSheet(*cell) && ParseA1Cell(CellName(*cell)) == cell, "a cell is named as it is read", text);
  }
  try {
    const CellRange range = ParseA1Range(text);
    Require(InsideSheet(range.first) && InsideSheet(range.last), "a range is inside of the sheet", text);
    Require(range.first.row <= range.last.row && range.first.column <= range.last.column, "corners in order", text);
    Require(ParseA1Range(CellName(range.first) + ":" + CellName(range.last)) == range, "a range is read again", text);
  } catch (const RuntimeFailure& failure) {
    Require(failure.number() == FailureNumber::ApplicationDefined, "no range is failure 1004", text);
  }
}

void CheckValues(const std::string& text) {
  double number = 0;
  const bool read = ReadPlainNumber(text, number) || ReadIsoDate(text, number) || ReadIsoDuration(text, number);
  Require(!read || std::isfinite(number), "a value is a number", text);
  RequireText(CutForCell(text), "a cut text is a text");
  const std::string_view trimmed = TrimWhiteSpace(text);
  Require(TrimWhiteSpace(trimmed) == trimmed, "white space is trimmed at once", text);
}

}  // namespace
}  // namespace orv::testing

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace orv::testing;
  FuzzInput input(data, size);
  for (int line = 0; line < 8 && !input.Empty(); ++line) {
    const std::string text = input.TextLine();
    CheckFormula(text);
    CheckShared(text);
    CheckReferences(text);
    CheckValues(text);
  }
  return 0;
}
