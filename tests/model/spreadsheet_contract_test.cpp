#include "support/spreadsheet_contract.h"

#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <utility>

#include "model/excel_link.h"
#include "model/file_workbook.h"
#include "model/memory_sheet.h"
#include "model/workbook_contents.h"
#include "support/fake_excel.h"
#include "support/workbook_writer.h"

namespace orv::testing {
namespace {

std::unique_ptr<Spreadsheet> MakeMemory(const TestBook& book, const Locale& locale, const TemporaryFolder&) {
  auto store = std::make_unique<MemorySheet>(locale);
  store->RenameSheet(book.sheets[0].name);
  store->Attach();
  for (const TestSheet& sheet : book.sheets) {
    store->UseSheet(sheet.name);
    for (const TestCell& cell : sheet.cells) {
      const std::string value = ShownValue(cell, locale);
      if (cell.formula.empty()) {
        store->Set(cell.position, value);
      } else {
        store->SetFormula(cell.position, "=" + cell.formula, value);
      }
    }
    store->Activate(sheet.active);
  }
  store->UseSheet(book.sheets[book.active].name);
  store->Release();
  return store;
}

std::string AsText(const TestSheet& sheet, const Locale& locale) {
  std::string text;
  CellPosition at;
  for (const TestCell& cell : sheet.cells) {
    for (; at.row < cell.position.row; ++at.row, at.column = 1) text += "\r\n";
    for (; at.column < cell.position.column; ++at.column) text += "\t";
    const std::string value = ShownValue(cell, locale);
    const bool quoted = value.find_first_of("\t\r\n\"") != std::string::npos;
    text += quoted ? "\"" + ReplaceAll(value, "\"", "\"\"") + "\"" : value;
  }
  return text + "\r\n";
}

std::unique_ptr<Spreadsheet> MakeText(const TestBook& book, const Locale& locale, const TemporaryFolder& folder) {
  const TestSheet& sheet = book.sheets[book.active];
  auto store = std::make_unique<FileWorkbook>(folder.Write(sheet.name + ".txt", AsText(sheet, locale)), locale);
  store->ChooseCell(CellName(sheet.active));
  return store;
}

// The link to Excel with the stand-in for the program that it speaks to.
class LinkToFake : public ExcelLink {
 public:
  LinkToFake(const Locale& locale, std::unique_ptr<testing::FakeExcel> excel)
      : ExcelLink(locale, excel->Source()), excel_(std::move(excel)) {}

 private:
  std::unique_ptr<testing::FakeExcel> excel_;
};

AutomationValue TypedValue(const TestCell& cell) {
  if (cell.kind == CellKind::Logical) return cell.value == "TRUE";
  if (cell.kind == CellKind::Error) return AutomationError{cell.value == "#N/A" ? 2042 : 2007};
  double number = 0;
  if (cell.kind == CellKind::Number && ReadPlainNumber(cell.value, number)) return number;
  return cell.value;
}

std::unique_ptr<Spreadsheet> MakeExcel(const TestBook& book, const Locale& locale, const TemporaryFolder&) {
  auto excel = std::make_unique<testing::FakeExcel>();
  excel->separator = locale.decimalSeparator;
  excel->sheets.clear();
  for (const TestSheet& sheet : book.sheets) {
    excel->sheets.push_back({sheet.name, {}, sheet.active});
    for (const TestCell& cell : sheet.cells) {
      excel->sheets.back().cells[{cell.position.row, cell.position.column}] = {
          TypedValue(cell), cell.formula.empty() ? "" : "=" + cell.formula, false, false};
    }
  }
  excel->activeSheet = book.active;
  return std::make_unique<LinkToFake>(locale, std::move(excel));
}

Store Xlsx(const std::string& name, const XlsxStyle& style) {
  return {name, true, true, [style](const TestBook& book, const Locale& locale, const TemporaryFolder& folder) {
            return std::make_unique<FileWorkbook>(folder.Write("book.xlsx", Zip(XlsxParts(book, style))), locale);
          }};
}

Store Ods() {
  return {"Ods", true, true, [](const TestBook& book, const Locale& locale, const TemporaryFolder& folder) {
            return std::make_unique<FileWorkbook>(folder.Write("book.ods", Zip(OdsParts(book))), locale);
          }};
}

XlsxStyle Style(bool cellNames, bool sharedStrings, bool rootedTargets, bool prefixed) {
  return {cellNames, sharedStrings, rootedTargets, prefixed};
}

INSTANTIATE_TEST_SUITE_P(Stores, SpreadsheetContract,
                         ::testing::Values(Store{"Memory", true, true, MakeMemory},
                                           Store{"Excel", true, true, MakeExcel}, Store{"Text", false, false, MakeText},
                                           Ods(), Xlsx("XlsxPlain", {}),
                                           Xlsx("XlsxInlineStrings", Style(true, false, false, false)),
                                           Xlsx("XlsxWithoutNames", Style(false, true, true, false)),
                                           Xlsx("XlsxPrefixed", Style(true, false, true, true))),
                         [](const ::testing::TestParamInfo<Store>& store) { return store.param.name; });

}  // namespace
}  // namespace orv::testing
