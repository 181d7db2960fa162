#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "model/workbook_contents.h"
#include "model/worksheet.h"
#include "numerics/environment.h"

namespace orv {

// Reads a workbook from the bytes of a file: xlsx, ods or tab-separated text, told apart by content. Throws
// WorkbookError, and nothing else, for bytes that are no such workbook.
WorkbookContents ReadWorkbook(std::string bytes, const std::string& fileName, const Locale& locale,
                              const WorkbookLimits& limits = {});

// A workbook file as a spreadsheet: opened once, read-only, with the sheet and cell that were active when it was saved.
// Operations before Attach raise failure 91. An Attach that follows a Release reads the file again, so that a user can
// mend it in between; when it cannot be read any more that is failure 429 with the reason as its description.
class FileWorkbook : public Spreadsheet {
 public:
  // Throws WorkbookError.
  FileWorkbook(const std::filesystem::path& path, const Locale& locale);

  // Choices that stand in place of those in the file, also after it is read again. Throw WorkbookError for a sheet that
  // does not exist (names compared without regard to case) and for a text that is no cell.
  void ChooseSheet(const std::string& name);
  void ChooseCell(const std::string& a1Cell);

  std::vector<std::string> SheetNames() const;
  // What the user should know of the book and its active sheet, one sentence each.
  std::vector<std::string> warnings() const;

  void Attach() override;
  void Release() override;
  std::string WorkbookPath() override;
  int WindowCount() override;
  std::string WindowCaption(int window) override;
  std::string SheetName() override;
  CellPosition ActiveCell() override;
  void Activate(CellPosition cell) override;
  std::string Formula(CellPosition cell) override;
  std::string Value(CellPosition cell) override;
  void Find(const std::string& part) override;
  std::string RangeText(const std::string& a1Range) override;
  bool PrintsDecimalComma(CellPosition scratch) override;

 private:
  void Load();
  WorkbookSheet& Sheet();

  std::filesystem::path path_;
  std::string fileName_;
  Locale locale_;
  std::string chosenSheet_;
  std::string chosenCell_;
  WorkbookContents contents_;
  bool attached_ = false;
  bool released_ = false;
};

}  // namespace orv
