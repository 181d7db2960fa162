#pragma once

#include <cstddef>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "model/sheet_grid.h"
#include "numerics/environment.h"

namespace orv {

// A workbook file that cannot be used. The message is plain English for the user and begins with the file's name in
// quotes: "'model.xlsx' is encrypted; save it without a password first."
class WorkbookError : public std::runtime_error {
 public:
  WorkbookError(const std::string& fileName, const std::string& complaint)
      : std::runtime_error("'" + fileName + "' " + complaint) {}
};

struct WorkbookSheet {
  std::string name;
  SheetGrid grid;
  CellPosition activeCell;
  std::vector<std::string> warnings;
};

// What a workbook file holds, whatever its format.
struct WorkbookContents {
  std::vector<WorkbookSheet> sheets;
  std::size_t activeSheet = 0;
  std::vector<std::string> warnings;
};

inline constexpr std::size_t kMaxCellCharacters = 32'767;  // of one cell, as in the spreadsheets
inline constexpr std::size_t kMaxWarningsOfAKind = 10;     // of one sheet

// Bounds that no workbook of this system's users comes near, and that keep a crafted file from filling the memory.
struct WorkbookLimits {
  std::size_t filledCells = 5'000'000;
  std::size_t textBytes = std::size_t{256} << 20U;  // of all formula texts and values together
  std::size_t sheets = 10'000;
};

// Collects the cells that a reader finds, sheet by sheet, and watches the bounds. A violation throws WorkbookError.
class WorkbookBuilder {
 public:
  WorkbookBuilder(std::string fileName, Locale locale, const WorkbookLimits& limits = {});

  const std::string& fileName() const { return fileName_; }
  [[noreturn]] void Fail(const std::string& complaint) const;

  void BeginSheet(const std::string& name);
  std::size_t SheetCount() const { return contents_.sheets.size(); }
  WorkbookSheet& sheet() { return contents_.sheets.back(); }
  WorkbookContents& contents() { return contents_; }

  // A position that a file claims, in the sheet begun last.
  CellPosition At(long long row, long long column) const;
  // One cell of the sheet begun last; nothing happens when both texts are empty. A text above kMaxCellCharacters is cut
  // with a warning.
  void Put(CellPosition cell, std::string formula, std::string value);
  // The cell of the sheet begun last has a formula whose result is not in the file.
  void WarnOfMissingResult(CellPosition cell);

  // A number as this store gives it: 15 digits, with the separator of the locale.
  std::string NumberText(double value) const;

  // Closes the book. Without a sheet it is no workbook.
  WorkbookContents Finish();

 private:
  std::string CellLabel(CellPosition cell) const;
  void FinishSheet();
  std::string Cut(CellPosition cell, std::string text);

  std::string fileName_;
  Locale locale_;
  WorkbookLimits limits_;
  WorkbookContents contents_;
  std::size_t cellCount_ = 0;
  std::size_t byteCount_ = 0;
  std::size_t missingResults_ = 0;
  std::size_t cutTexts_ = 0;
};

// A number as every store gives it: up to 15 digits, with the separator.
std::string LocalNumberText(double value, const std::string& decimalSeparator);

// The name of a part of the file, which may be any bytes, as complaints tell it: in quotes.
std::string QuotedPart(std::string_view part);

// A text without the white space of XML around it.
std::string_view TrimWhiteSpace(std::string_view text);

// The number that a text spells in full (blanks around it aside), with "." as separator; false when it is none or too
// large.
bool ReadPlainNumber(std::string_view text, double& value);

// The number of days from 1899-12-30 to an ISO date, "2024-01-31" or "2024-01-31T12:30:00.5"; false when it is none.
bool ReadIsoDate(std::string_view text, double& days);

// The days of an ISO duration, "PT12H30M00S" = 0.5208...; false when it is none.
bool ReadIsoDuration(std::string_view text, double& days);

// The text as UTF-8: stray bytes are taken for Windows-1252.
std::string CleanUtf8(std::string_view text);

// The text, or the part of it that is enough for Put to see it is too long: one text may stand in very many cells.
std::string CutForCell(std::string text);

// Appends a code point; half of a surrogate pair becomes the replacement character, and 0 nothing.
void AppendUtf8(std::string& out, char32_t character);

}  // namespace orv
