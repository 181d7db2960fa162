#include <chrono>
#include <gtest/gtest.h>
#include <random>

#include "model/file_workbook.h"
#include "support/workbook_writer.h"

// Files made to break a reader. Whatever they hold, the answer is contents or a WorkbookError, soon and in little
// memory.
namespace orv {
namespace {

using testing::CellKind;
using testing::OdsContent;
using testing::OdsParts;
using testing::TestBook;
using testing::WithPart;
using testing::XlsxParts;
using testing::Zip;
using testing::ZipPart;

// What the reader says; empty when it reads the file. Anything but a WorkbookError fails the test.
std::string Outcome(const std::string& bytes) {
  try {
    ReadWorkbook(bytes, "m", Locale{});
  } catch (const WorkbookError& error) {
    EXPECT_EQ(std::string(error.what()).find("'m' "), 0U);
    return error.what();
  }
  return "";
}

void ExpectRefused(const std::string& bytes, const std::string& part) {
  const auto start = std::chrono::steady_clock::now();
  const std::string outcome = Outcome(bytes);
  EXPECT_NE(outcome.find(part), std::string::npos) << "said: " << outcome;
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

void ExpectRead(const std::string& bytes) {
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(Outcome(bytes), "");
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

std::string Repeated(const std::string& text, int count) {
  std::string out;
  out.reserve(text.size() * static_cast<std::size_t>(count));
  for (int k = 0; k < count; ++k) out += text;
  return out;
}

TestBook SmallBook() {
  TestBook book;
  book.sheets = {{"First", {}, {2, 2}}, {"Second & é", {}, {1, 1}}};
  for (int row = 1; row <= 6; ++row) {
    book.sheets[0].cells.push_back({{row, 1}, CellKind::Text, "text  " + std::to_string(row), "", ""});
    book.sheets[0].cells.push_back({{row, 3}, CellKind::Number, "0.1", "SUM($A$1:B2)", "SUM([.$A$1:.B2])"});
    book.sheets[1].cells.push_back({{row, 2}, CellKind::Logical, "TRUE", "'First'!A1", "[$First.A1]"});
  }
  return book;
}

std::vector<ZipPart> Stored(std::vector<ZipPart> parts) {
  for (ZipPart& part : parts) part.method = ZIP_CM_STORE;
  return parts;
}

// Packed not at all, so that no bound on the packing steps in.
std::string PlainXlsx(const std::string& rows, const std::string& items = {}) {
  const std::string sheet = "<worksheet><sheetData>" + rows + "</sheetData></worksheet>";
  return Zip(Stored(WithPart(WithPart(XlsxParts({}), "xl/worksheets/sheet1.xml", sheet), "xl/sharedStrings.xml",
                             "<sst>" + items + "</sst>")));
}

std::string PlainOds(const std::string& rows) {
  return Zip(Stored(WithPart(OdsParts({}), "content.xml",
                             OdsContent("<table:table table:name=\"Sheet1\">" + rows + "</table:table>"))));
}

TEST(HostileWorkbook, PackedAThousandToOne) {
  const std::string blanks(std::size_t{100} << 20U, ' ');
  const std::string bytes = Zip(WithPart(XlsxParts({}), "xl/worksheets/sheet1.xml", blanks));
  ASSERT_LT(bytes.size(), 200'000U);
  ExpectRefused(bytes, "unpacks to more than 250 times its size");
}

TEST(HostileWorkbook, PackedAMillionToOne) {
  const std::string blanks(std::size_t{100} << 20U, ' ');
  std::vector<ZipPart> parts = WithPart(OdsParts({}), "content.xml", blanks);
  for (ZipPart& part : parts) {
    if (part.name == "content.xml") part.method = ZIP_CM_BZIP2;
  }
  const std::string bytes = Zip(parts);
  ASSERT_LT(bytes.size(), 5'000U);
  ExpectRefused(bytes, "packed by a method that workbooks do not use");
}

TEST(HostileWorkbook, ManySheetsInOnePart) {
  std::string sheets;
  for (int k = 0; k < 3000; ++k) sheets += "<sheet name=\"S" + std::to_string(k) + "\" r:id=\"rId1\"/>";
  std::vector<ZipPart> parts =
      WithPart(XlsxParts({}), "xl/workbook.xml", "<workbook xmlns:r=\"u\"><sheets>" + sheets + "</sheets></workbook>");
  parts = WithPart(parts, "xl/worksheets/sheet1.xml",
                   "<worksheet><sheetData/><!--" + std::string(1'000'000, 'x') + "--></worksheet>");
  ExpectRefused(Zip(parts), "is too large");
}

TEST(HostileWorkbook, WithSeventyThousandEntries) {
  std::vector<ZipPart> parts = XlsxParts({});
  for (int k = 0; k < 70'000; ++k) parts.push_back({"x/" + std::to_string(k), "", ZIP_CM_STORE});
  ExpectRefused(Zip(parts), "more than 10000 entries");
}

TEST(HostileWorkbook, CutOffAnywhere) {
  for (const std::string& whole : {Zip(XlsxParts(SmallBook())), Zip(OdsParts(SmallBook()))}) {
    ASSERT_EQ(Outcome(whole), "");
    for (std::size_t k = 0; k < 20; ++k) EXPECT_NE(Outcome(whole.substr(0, whole.size() * k / 20)), "") << k;
    EXPECT_NE(Outcome(whole.substr(0, whole.size() - 1)), "");
  }
}

TEST(HostileWorkbook, OfNestedEntities) {
  std::string entities = "<!DOCTYPE bomb [<!ENTITY a0 \"ha\">";
  for (int k = 1; k < 40; ++k) {
    const std::string before = "&a" + std::to_string(k - 1) + ";";
    entities.append("<!ENTITY a").append(std::to_string(k)).append(" \"").append(before).append(before).append("\">");
  }
  entities += "<!ENTITY file SYSTEM \"file:///secret.txt\">]>";
  const std::string sheet =
      entities + "<worksheet><sheetData><row><c t=\"str\"><v>&a39;&file;</v></c></row></sheetData></worksheet>";
  const WorkbookContents contents =
      ReadWorkbook(Zip(WithPart(XlsxParts({}), "xl/worksheets/sheet1.xml", sheet)), "m", Locale{});
  EXPECT_EQ(contents.sheets[0].grid.Value({1, 1}), "&a39;&file;");
}

TEST(HostileWorkbook, NestedAMillionDeep) {
  const int depth = 1'000'000;
  ExpectRefused(PlainXlsx(Repeated("<row>", depth)), "not well-formed XML");
  EXPECT_EQ(Outcome(PlainXlsx(Repeated("<row>", depth) + Repeated("</row>", depth))), "");
  ExpectRefused(PlainOds("<table:table-row><table:table-cell><text:p>" + Repeated("<text:span>", depth) +
                         Repeated("</text:span>", depth) + "</text:p></table:table-cell></table:table-row>"),
                "nested too deeply");
  ExpectRefused(PlainOds(Repeated("<table:table-row-group>", depth) + Repeated("</table:table-row-group>", depth)),
                "nested too deeply");
}

TEST(HostileWorkbook, OfTooManyElements) {
  ExpectRefused(PlainXlsx(Repeated("<a/>", 14'000'000)), "too many elements");
}

TEST(HostileWorkbook, WithOneLongTextInEveryCell) {
  const std::string items = "<si><t>" + Repeated("x", 20'000'000) + "</t></si>";
  ExpectRefused(PlainXlsx("<row>" + Repeated("<c t=\"s\"><v>0</v></c>", 16'000) + "</row>", items),
                "the texts of its cells have more than 268435456 bytes");
  ExpectRefused(PlainOds("<table:table-row table:number-rows-repeated=\"1000000\"><table:table-cell "
                         "table:number-columns-repeated=\"16000\" office:value-type=\"string\" office:string-value=\"" +
                         Repeated("x", 1'000'000) + "\"/></table:table-row>"),
                "the texts of its cells have more than 268435456 bytes");
}

TEST(HostileWorkbook, WithOneCellRepeatedAllOverTheSheet) {
  const std::string bytes = PlainOds(
      "<table:table-row table:number-rows-repeated=\"1048576\"><table:table-cell "
      "table:number-columns-repeated=\"16384\"><text:p>x</text:p></table:table-cell></table:table-row>");
  ExpectRefused(bytes, "fills more than 5000000 cells");
}

TEST(HostileWorkbook, WithTooMuchForTheBoundsGiven) {
  WorkbookLimits limits;
  const auto outcome = [&](const std::string& bytes) -> std::string {
    try {
      ReadWorkbook(bytes, "m", Locale{}, limits);
    } catch (const WorkbookError& error) {
      return error.what();
    }
    return "";
  };
  limits.sheets = 2;
  EXPECT_EQ(outcome(Zip(XlsxParts(SmallBook()))), "");
  limits.sheets = 1;
  EXPECT_EQ(outcome(Zip(XlsxParts(SmallBook()))), "'m' is too large: it has more than 1 sheets.");
  EXPECT_EQ(outcome(Zip(OdsParts(SmallBook()))), "'m' is too large: it has more than 1 sheets.");
  limits.filledCells = 3;
  EXPECT_EQ(outcome("a\tb\nc"), "");
  EXPECT_EQ(outcome("a\tb\nc\td"), "'m' is too large: it fills more than 3 cells.");
  limits.textBytes = 4;
  EXPECT_EQ(outcome("ab\tcd"), "");
  EXPECT_EQ(outcome("ab\tcd\te"), "'m' is too large: the texts of its cells have more than 4 bytes.");
}

TEST(HostileWorkbook, SharingOneLongFormula) {
  std::string formula = "A1";
  while (formula.size() < 40'000) formula += "+A1";
  ExpectRead(PlainXlsx("<row><c><f t=\"shared\" si=\"0\">" + formula + "</f><v>1</v></c></row><row>" +
                       Repeated("<c><f t=\"shared\" si=\"0\"/></c>", 500) + "</row>"));
}

TEST(HostileWorkbook, OfRowsInDescendingOrder) {
  std::string rows;
  for (int row = 60'000; row > 0; --row) rows += "<row r=\"" + std::to_string(row) + "\"><c><v>1</v></c></row>";
  std::string cells;
  for (int column = 16'000; column > 0; --column) cells += "<c r=\"" + CellName({1, column}) + "\"><v>2</v></c>";
  ExpectRead(PlainXlsx(rows + "<row>" + cells + "</row>"));
}

TEST(HostileWorkbook, WithBytesChangedAnywhere) {
  std::mt19937 random(20240131);
  const auto next = [&](std::size_t count) { return static_cast<std::size_t>(random()) % count; };
  int refused = 0;
  int read = 0;
  for (const std::string& whole : {Zip(XlsxParts(SmallBook())), Zip(OdsParts(SmallBook())),
                                   Zip(Stored(XlsxParts(SmallBook()))), std::string("a\tb\n\"c\"\td\r\n=1\t\n")}) {
    for (int round = 0; round < 1'500; ++round) {
      std::string bytes = whole;
      for (std::size_t flips = 1 + next(8); flips > 0; --flips) bytes[next(bytes.size())] = static_cast<char>(random());
      (Outcome(bytes).empty() ? read : refused)++;
    }
  }
  EXPECT_GT(refused, 1'000);
  EXPECT_GT(read, 100);
}

// Behind an intact archive, where no checksum guards the parts.
TEST(HostileWorkbook, WithPartsChangedAnywhere) {
  std::mt19937 random(7);
  const auto next = [&](std::size_t count) { return static_cast<std::size_t>(random()) % count; };
  const std::vector<std::string> pieces = {"<",          ">",        "</c>", "\"", "&",  "&#x110000;",
                                           "<row>",      "r=\"A1\"", "0",    "-1", "]]", "<![CDATA[",
                                           "9999999999", "'",        "$",    "[",  "s",  "\xC3"};
  int read = 0;
  int refused = 0;
  for (const std::vector<ZipPart>& parts : {Stored(XlsxParts(SmallBook())), Stored(OdsParts(SmallBook())),
                                            Stored(XlsxParts(SmallBook(), {false, false, true, true}))}) {
    for (int round = 0; round < 2'000; ++round) {
      std::vector<ZipPart> changed = parts;
      std::string& content = changed[next(changed.size())].content;
      for (std::size_t changes = 1 + next(4); changes > 0 && !content.empty(); --changes) {
        const std::size_t at = next(content.size());
        if (next(3) == 0) {
          content[at] = static_cast<char>(random());
        } else if (next(2) == 0) {
          content.insert(at, pieces[next(pieces.size())]);
        } else {
          content.erase(at, 1 + next(12));
        }
      }
      (Outcome(Zip(changed)).empty() ? read : refused)++;
    }
  }
  EXPECT_GT(refused, 1'000);
  EXPECT_GT(read, 500);
}

}  // namespace
}  // namespace orv
