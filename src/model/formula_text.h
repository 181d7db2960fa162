#pragma once

#include <string>
#include <string_view>

#include "model/worksheet.h"

namespace orv {

// Formulas as texts. Nothing here computes; a text that cannot be understood is passed on as it stands.

// The formula of `to` that shares the formula of `from`: every relative reference moves by the distance of the two
// cells, and one that leaves the sheet becomes #REF!.
std::string ShiftFormula(std::string_view formula, CellPosition from, CellPosition to);

// A formula as xlsx files store it (without "=", newer functions with a prefix), as the spreadsheet prints it.
std::string FormulaFromXlsx(std::string_view stored);

// A formula as ods files store it, in A1 notation: "of:=SUM([.A1:.B2];[$'My Sheet'.C3])" is
// "=SUM(A1:B2,'My Sheet'!C3)".
std::string FormulaFromOds(std::string_view stored);

// The name of a sheet as it stands before the "!", in quotes where it needs them.
std::string QuotedSheetName(std::string_view name);

}  // namespace orv
