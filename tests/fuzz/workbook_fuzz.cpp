#include <filesystem>
#include <functional>

#include "fuzz/workbook_checks.h"
#include "model/range_plot.h"
#include "support/workbook_writer.h"

// A whole file of any format, read as bytes and as the spreadsheet behind the program.
namespace orv::testing {
namespace {

// Runs an operation, which may fail as a spreadsheet does.
bool Works(const std::function<void()>& operation) {
  try {
    operation();
    return true;
  } catch (const RuntimeFailure& failure) {
    RequireText(failure.description(), "a failure is described by a text");
    return false;
  }
}

void Search(FileWorkbook& book, const std::string& part) {
  const CellPosition before = book.ActiveCell();
  if (Works([&] { book.Find(part); })) {
    Require(Contains(LowerCase(book.Formula(book.ActiveCell())), LowerCase(part)), "a cell found holds the part");
  } else {
    Require(book.ActiveCell() == before, "a search in vain moves nothing");
  }
}

void Use(FileWorkbook& book, const std::string& word) {
  book.Attach();
  Require(book.WindowCount() == 1 && book.WindowCaption(1) == "book", "the window is the file");
  Require(!Works([&] { book.WindowCaption(2); }), "there is one window");
  const std::string sheet = book.SheetName();
  for (const std::string& name : book.SheetNames()) book.ChooseSheet(name);
  book.ChooseSheet(sheet);
  for (const char* part : {"orvdata", "Table      1", "=", ""}) Search(book, part);
  Search(book, word);
  const std::string value = book.Value(book.ActiveCell());
  Search(book, value.substr(0, value.size() / 2));
  for (const CellPosition cell : {CellPosition{0, 1}, {1, kSheetColumns + 1}, {-1, -1}, {kSheetRows + 1, 1}}) {
    Require(!Works([&] { book.Activate(cell); }), "no cell outside of a sheet");
    Require(!Works([&] { book.Value(cell); }), "no value outside of a sheet");
  }
  Works([&] { book.RangeText(word); });
  Works([&] { book.RangeText("B2:AZ9"); });
  try {
    book.ChooseCell(word);
  } catch (const WorkbookError& error) {
    RequireText(error.what(), "a complaint is a text");
  }
  const CellPosition active = book.ActiveCell();
  book.Release();
  Require(!Works([&] { book.Value(active); }), "nothing is read before the attachment");
  book.Attach();
  Require(book.SheetName() == sheet && InsideSheet(book.ActiveCell()), "a book is the same when it is read again");
  for (const std::string& warning : book.warnings()) RequireText(warning, "a warning is a text");
}

}  // namespace
}  // namespace orv::testing

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace orv;
  using namespace orv::testing;
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  const Locale& locale = FuzzLocales()[size % 2];
  if (!ReadAndCheck(bytes, locale)) return 0;
  const TemporaryFolder folder;
  FileWorkbook book(folder.Write("book", bytes), locale);
  FuzzInput words(data, size);
  Use(book, ReplaceAll(CleanUtf8(words.Line().substr(0, 40)), std::string_view("\0", 1), " "));
  return 0;
}
