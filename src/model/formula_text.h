#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "model/worksheet.h"

namespace orv {

// Formulas as texts. Nothing here computes; a text that cannot be understood is passed on as it stands.

// One end of a reference.
struct FormulaReference {
  int row = 0;     // 0: a whole column ("$B")
  int column = 0;  // 0: a whole row ("3")
  bool fixedRow = false;
  bool fixedColumn = false;
};

// A formula that several cells share, taken apart once. For another cell every relative reference moves by the distance
// of the two cells; one that leaves the sheet becomes #REF!.
class SharedFormula {
 public:
  SharedFormula() = default;
  SharedFormula(std::string_view formula, CellPosition from);
  std::string At(CellPosition to) const;

 private:
  struct Part {
    std::string before;
    FormulaReference reference;
  };
  CellPosition from_;
  std::vector<Part> parts_;
  std::string rest_;
};

// A formula as xlsx files store it (without "=", newer functions with a prefix), as the spreadsheet prints it.
std::string FormulaFromXlsx(std::string_view stored);

// A formula as ods files store it, in A1 notation: "of:=SUM([.A1:.B2];[$'My Sheet'.C3])" is
// "=SUM(A1:B2,'My Sheet'!C3)".
std::string FormulaFromOds(std::string_view stored);

// The name of a sheet as it stands before the "!", in quotes where it needs them.
std::string QuotedSheetName(std::string_view name);

}  // namespace orv
