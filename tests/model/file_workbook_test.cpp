#include "model/file_workbook.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "numerics/failure.h"
#include "support/workbook_writer.h"

namespace orv {
namespace {

using testing::CellKind;
using testing::OdsParts;
using testing::TemporaryFolder;
using testing::TestBook;
using testing::TestCell;
using testing::XlsxParts;
using testing::Zip;

std::string Complaint(const std::filesystem::path& path) {
  try {
    FileWorkbook(path, Locale{});
  } catch (const WorkbookError& error) {
    return error.what();
  }
  return "";
}

std::string Complaint(const TemporaryFolder& folder, const std::string& name, const std::string& bytes) {
  return Complaint(folder.Write(name, bytes));
}

TestBook TwoSheets() {
  TestBook book;
  book.sheets = {
      {"First", {{{1, 1}, CellKind::Text, "one", "", ""}}, {2, 2}},
      {"Second", {{{1, 1}, CellKind::Text, "two", "", ""}, {{7, 2}, CellKind::Number, "", "1+1", "1+1"}}, {3, 3}}};
  return book;
}

std::string Utf16(const std::string& text) {
  std::string out;
  for (const char c : text) out += std::string(1, c) + '\0';
  return out;
}

TEST(FileWorkbook, TellsWhatIsWrongWithAFile) {
  const TemporaryFolder folder;
  EXPECT_EQ(Complaint(folder.path() / "gone.xlsx"), "'gone.xlsx' does not exist.");
  EXPECT_EQ(Complaint(folder.path() / "no" / "gone.xlsx"), "'gone.xlsx' does not exist.");
  std::filesystem::create_directory(folder.path() / "sub.xlsx");
  EXPECT_EQ(Complaint(folder.path() / "sub.xlsx"), "'sub.xlsx' is a folder, not a workbook.");
  EXPECT_EQ(Complaint(folder.path() / "sub.xlsx" / ""), "'sub.xlsx' is a folder, not a workbook.");
  EXPECT_EQ(Complaint(folder, "e.xlsx", ""), "'e.xlsx' is empty.");
  EXPECT_EQ(Complaint(folder, "a.xlsx", "%PDF-1.7\n..."), "'a.xlsx' is a PDF document, not a workbook.");
  EXPECT_EQ(Complaint(folder, "a.xlsx", "\x89PNG\r\n\x1A\n"), "'a.xlsx' is a picture, not a workbook.");
  EXPECT_EQ(Complaint(folder, "a.xls", "<html><table>"), "'a.xls' is a page of the web, not a workbook.");
  EXPECT_EQ(Complaint(folder, "a.xls", "\xEF\xBB\xBF<?xml version=\"1.0\"?><Workbook/>"),
            "'a.xls' is an XML document, not a workbook.");
  EXPECT_EQ(Complaint(folder, "a.bin",
                      std::string("\x7F"
                                  "ELF\x02\x01\x01\0\0",
                                  9)),
            "'a.bin' is not a workbook: neither .xlsx nor .ods nor tab-separated text.");
  EXPECT_EQ(Complaint(folder, "a.zip", Zip({{"readme.txt", "x"}})),
            "'a.zip' is an archive of other files, not a workbook.");
}

TEST(FileWorkbook, TellsOldAndEncryptedCompoundFilesApart) {
  const TemporaryFolder folder;
  const std::string magic("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1", 8);
  const std::string filler(600, '\0');
  EXPECT_EQ(Complaint(folder, "old.xls", magic + filler + Utf16("Workbook") + filler),
            "'old.xls' is a workbook of the old binary format (.xls); save it as .xlsx or .ods first.");
  EXPECT_EQ(Complaint(folder, "e.xlsx", magic + filler + Utf16("EncryptedPackage") + filler),
            "'e.xlsx' is encrypted; save it without a password first.");
  EXPECT_EQ(Complaint(folder, "w.doc", magic + filler + Utf16("WordDocument")),
            "'w.doc' is a document of another kind, not a workbook.");
}

TEST(FileWorkbook, RefusesWhatIsNoRegularFile) {
  const TemporaryFolder folder;
  const std::filesystem::path pipe = folder.path() / "pipe.xlsx";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_EQ(Complaint(pipe), "'pipe.xlsx' is not a file that can be read.");
  EXPECT_EQ(Complaint("/dev/zero"), "'zero' is not a file that can be read.");
}

TEST(FileWorkbook, RefusesAFileThatMayNotBeRead) {
  const TemporaryFolder folder;
  const std::filesystem::path file = folder.Write("m.xlsx", "x");
  std::filesystem::permissions(file, std::filesystem::perms::none);
  std::filesystem::permissions(folder.path(), std::filesystem::perms(0755));
  // The superuser may read every file, so he becomes another user for a moment.
  constexpr uid_t kNobody = 65534;
  const bool superuser = geteuid() == 0;
  ASSERT_EQ(superuser ? seteuid(kNobody) : 0, 0);
  const std::string complaint = Complaint(file);
  ASSERT_EQ(superuser ? seteuid(0) : 0, 0);
  EXPECT_EQ(complaint, "'m.xlsx' cannot be opened; check that you may read it.");
}

TEST(FileWorkbook, RefusesAFileThatIsTooLarge) {
  const TemporaryFolder folder;
  const std::filesystem::path file = folder.Write("m.xlsx", "PK");
  std::filesystem::resize_file(file, std::uintmax_t{300} << 20U);
  EXPECT_EQ(Complaint(file), "'m.xlsx' is too large: it has more than 256 MB.");
}

TEST(FileWorkbook, KnowsTheFormatByContentNotByEnding) {
  const TemporaryFolder folder;
  for (const std::string& bytes : {Zip(XlsxParts(TwoSheets())), Zip(OdsParts(TwoSheets())), std::string("one\n")}) {
    FileWorkbook book(folder.Write("results.xls", bytes), Locale{});
    book.Attach();
    EXPECT_EQ(book.Value({1, 1}), "one");
    EXPECT_EQ(book.WindowCaption(1), "results.xls");
    EXPECT_EQ(book.WorkbookPath(), folder.path().string());
  }
}

TEST(FileWorkbook, GivesTheAbsoluteFolderOfARelativePath) {
  const TemporaryFolder folder;
  folder.Write("m.txt", "x");
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(folder.path());
  FileWorkbook book("./m.txt", Locale{});
  std::filesystem::current_path(before);
  book.Attach();
  EXPECT_EQ(book.WorkbookPath(), folder.path().string());
  EXPECT_EQ(book.WindowCount(), 1);
}

TEST(FileWorkbook, FollowsFoldersThatAreLinks) {
  const TemporaryFolder folder;
  std::filesystem::create_directories(folder.path() / "real" / "deep");
  std::filesystem::create_directory_symlink(folder.path() / "real" / "deep", folder.path() / "link");
  folder.Write("real/m.txt", "x");
  FileWorkbook book(folder.path() / "link" / ".." / "m.txt", Locale{});
  book.Attach();
  EXPECT_EQ(book.WorkbookPath(), (folder.path() / "real").string());
  EXPECT_EQ(Complaint("/"), "'/' is a folder, not a workbook.");
}

TEST(FileWorkbook, ChoosesSheetAndCell) {
  const TemporaryFolder folder;
  FileWorkbook book(folder.Write("m.xlsx", Zip(XlsxParts(TwoSheets()))), Locale{});
  book.Attach();
  EXPECT_EQ(book.SheetNames(), (std::vector<std::string>{"First", "Second"}));
  EXPECT_EQ(book.SheetName(), "First");
  book.ChooseSheet("second");
  EXPECT_EQ(book.SheetName(), "Second");
  EXPECT_EQ(book.Value({1, 1}), "two");
  EXPECT_EQ(book.ActiveCell(), (CellPosition{3, 3}));
  book.ChooseCell("$C$9");
  EXPECT_EQ(book.ActiveCell(), (CellPosition{9, 3}));
}

TEST(FileWorkbook, RefusesChoicesThatDoNotExist) {
  const TemporaryFolder folder;
  FileWorkbook book(folder.Write("m.ods", Zip(OdsParts(TwoSheets()))), Locale{});
  book.Attach();
  try {
    book.ChooseSheet("Third");
    FAIL();
  } catch (const WorkbookError& error) {
    EXPECT_STREQ(error.what(), "'m.ods' has no sheet 'Third'. Its sheets are 'First', 'Second'.");
  }
  try {
    book.ChooseCell("7B");
    FAIL();
  } catch (const WorkbookError& error) {
    EXPECT_STREQ(error.what(), "'m.ods' has no cell '7B'. Name a cell by its column letters and its row: B7.");
  }
  EXPECT_EQ(book.SheetName(), "First");
  EXPECT_EQ(book.ActiveCell(), (CellPosition{2, 2}));
}

TEST(FileWorkbook, WarnsOfItsActiveSheetOnly) {
  const TemporaryFolder folder;
  FileWorkbook book(folder.Write("m.xlsx", Zip(XlsxParts(TwoSheets()))), Locale{});
  EXPECT_TRUE(book.warnings().empty());
  book.ChooseSheet("Second");
  EXPECT_EQ(book.warnings(), std::vector<std::string>{
                                 "The formula in cell 'Second'!B7 has no stored result; it reads as empty. Open and "
                                 "save the workbook in a spreadsheet program once."});
}

TEST(FileWorkbook, ReadsTheFileAgainAfterARelease) {
  const TemporaryFolder folder;
  TestBook changed = TwoSheets();
  FileWorkbook book(folder.Write("m.xlsx", Zip(XlsxParts(changed))), Locale{});
  book.ChooseSheet("Second");
  book.ChooseCell("D4");
  book.Attach();
  changed.sheets[1].cells[0].value = "changed";
  folder.Write("m.xlsx", Zip(XlsxParts(changed)));
  book.Attach();
  EXPECT_EQ(book.Value({1, 1}), "two") << "a further Attach reads nothing";
  book.Activate({8, 8});
  book.Release();
  book.Attach();
  EXPECT_EQ(book.SheetName(), "Second");
  EXPECT_EQ(book.Value({1, 1}), "changed");
  EXPECT_EQ(book.ActiveCell(), (CellPosition{4, 4}));
}

TEST(FileWorkbook, CannotAttachToAFileThatWentBad) {
  const TemporaryFolder folder;
  FileWorkbook book(folder.Write("m.xlsx", Zip(XlsxParts(TwoSheets()))), Locale{});
  book.Attach();
  book.Release();
  folder.Write("m.xlsx", "");
  try {
    book.Attach();
    FAIL();
  } catch (const RuntimeFailure& failure) {
    EXPECT_EQ(failure.number(), FailureNumber::CannotCreateObject);
    EXPECT_EQ(failure.description(), "'m.xlsx' is empty.");
  }
  EXPECT_THROW(book.Value({1, 1}), RuntimeFailure);
  folder.Write("m.xlsx", Zip(XlsxParts(TwoSheets())));
  book.Attach();
  EXPECT_EQ(book.Value({1, 1}), "one");
}

TEST(FileWorkbook, ReadsTheTwoFormatsOfOneBookAlike) {
  TestBook book;
  std::vector<TestCell>& cells = book.sheets[0].cells;
  const std::vector<std::string> texts = {"a", " b", "c  d", "é\n\tx", "_x000D_ <&>", "Table      1"};
  for (int row = 1; row <= 40; ++row) {
    for (int column = 1; column <= 6; ++column) {
      const int kind = (row * 7 + column) % 5;
      const std::string digits = std::to_string(row * 0.37) + std::to_string(column) + "e-" + std::to_string(row % 9);
      if (kind == 0) cells.push_back({{row, column}, CellKind::Number, digits, "", ""});
      if (kind == 1) cells.push_back({{row, column}, CellKind::Text, texts[static_cast<std::size_t>(row) % 6], "", ""});
      if (kind == 2) cells.push_back({{row, column}, CellKind::Number, digits, "A$1*'B c'!D2", "[.A$1]*[$'B c'.D2]"});
      if (kind == 3) cells.push_back({{row, column}, CellKind::Logical, row % 2 == 0 ? "TRUE" : "FALSE", "", ""});
    }
  }
  // What is no escape is written as one.
  TestBook escaped = book;
  for (TestCell& cell : escaped.sheets[0].cells) cell.value = ReplaceAll(cell.value, "_x000D_", "_x005F_x000D_");
  const SheetGrid xlsx = ReadWorkbook(Zip(XlsxParts(escaped)), "m", Locale{",", ""}).sheets[0].grid;
  const SheetGrid ods = ReadWorkbook(Zip(OdsParts(book)), "m", Locale{",", ""}).sheets[0].grid;
  EXPECT_EQ(xlsx.CellCount(), cells.size());
  EXPECT_EQ(ods.CellCount(), cells.size());
  for (const TestCell& cell : cells) {
    EXPECT_EQ(xlsx.Value(cell.position), ods.Value(cell.position));
    EXPECT_EQ(xlsx.Formula(cell.position), ods.Formula(cell.position));
  }
  EXPECT_EQ(xlsx.RangeText("A1:F40"), ods.RangeText("A1:F40"));
}

}  // namespace
}  // namespace orv
