#include "model/ods_file.h"

#include <gtest/gtest.h>

#include "model/file_workbook.h"
#include "support/workbook_writer.h"

namespace orv {
namespace {

using testing::OdsContent;
using testing::OdsParts;
using testing::OdsWithRows;
using testing::TestBook;
using testing::WithPart;
using testing::Zip;
using testing::ZipPart;

WorkbookContents Read(const std::string& bytes) {
  return ReadWorkbook(bytes, "m.ods", Locale{});
}

SheetGrid Rows(const std::string& rows) {
  return Read(OdsWithRows(rows)).sheets[0].grid;
}

std::string Complaint(const std::string& bytes) {
  try {
    Read(bytes);
  } catch (const WorkbookError& error) {
    return error.what();
  }
  return "";
}

std::string Cell(const std::string& inside, const std::string& attributes = {}) {
  return "<table:table-cell " + attributes + ">" + inside + "</table:table-cell>";
}

std::string Row(const std::string& cells, const std::string& attributes = {}) {
  return "<table:table-row " + attributes + ">" + cells + "</table:table-row>";
}

std::string TextOf(const std::string& inside) {
  return Rows(Row(Cell(inside))).Value({1, 1});
}

TEST(OdsFile, ReadsStoredValuesNotShownTexts) {
  const SheetGrid grid =
      Rows(Row(Cell("<text:p>0.33</text:p>", R"(office:value-type="float" office:value="0.333333333333333")") +
               Cell("<text:p>15%</text:p>", R"(office:value-type="percentage" office:value="0.15")") +
               Cell("<text:p>$5</text:p>", R"(office:value-type="currency" office:currency="USD" office:value="5")") +
               Cell("<text:p>31/1</text:p>", R"(office:value-type="date" office:date-value="2024-01-31")") +
               Cell("<text:p>31/1</text:p>", R"(office:value-type="date" office:date-value="2024-01-31T12:30:00.5")") +
               Cell("<text:p>12:30</text:p>", R"(office:value-type="time" office:time-value="PT12H30M00S")") +
               Cell("<text:p>30</text:p>", R"(office:value-type="time" office:time-value="-PT30H00M00,5S")") +
               Cell("<text:p>WAHR</text:p>", R"(office:value-type="boolean" office:boolean-value="true")") +
               Cell("<text:p>-</text:p>", R"(office:value-type="boolean" office:boolean-value="false")") +
               Cell("<text:p>shown</text:p>", R"(office:value-type="string" office:string-value="stored")") +
               Cell("<text:p>text only</text:p>", R"(office:value-type="float")")));
  EXPECT_EQ(
      grid.RangeText("A1:K1"),
      "0.333333333333333\t0.15\t5\t45322\t45322.5208391204\t0.520833333333333\t30\tTRUE\tFALSE\tstored\ttext only\r\n");
}

TEST(OdsFile, RegainsTheDigitsThatAreLostInSmallNumbers) {
  const auto value = [](const std::string& stored, const std::string& shown) {
    return Rows(Row(Cell("<text:p>" + shown + "</text:p>",
                         "office:value-type=\"float\" office:value=\"" + stored + "\"")))
        .Value({1, 1});
  };
  EXPECT_EQ(value("0.00000000000012345679", "1.23456789012345E-13"), "1.23456789012345E-13");
  EXPECT_EQ(value("-0.00000003333333333333", "-3,33333333333333E-08"), "-3.33333333333333E-08");
  EXPECT_EQ(value("0.00000000000012", "1.20000000000491E-13"), "1.20000000000491E-13");
  // Not from a text that shows less, another number or none.
  EXPECT_EQ(value("0.00000000000012345679", "1.2E-13"), "1.2345679E-13");
  EXPECT_EQ(value("0.00000000000012345679", "0.00"), "1.2345679E-13");
  EXPECT_EQ(value("0.00000000000012345679", "small"), "1.2345679E-13");
  EXPECT_EQ(value("1.60218E-019", "1.60E-19"), "1.60218E-19");
  EXPECT_EQ(value("0.1", "0.10000000001"), "0.1");
}

TEST(OdsFile, ReadsIsoDatesAndDurations) {
  double days = 0;
  EXPECT_TRUE(ReadIsoDate("1899-12-30", days));
  EXPECT_EQ(days, 0);
  EXPECT_TRUE(ReadIsoDate("1899-12-29", days));
  EXPECT_EQ(days, -1);
  EXPECT_TRUE(ReadIsoDate("2000-02-29T06:00:00Z", days));
  EXPECT_EQ(days, 36585.25);
  for (const char* text : {"", "2024", "2024-13-01", "2023-02-29", "2024-1-1", "2024-01-01T9", "2024-01-01 09:00",
                           "2024-01-01T25:00:00", "x"}) {
    EXPECT_FALSE(ReadIsoDate(text, days)) << text;
  }
  EXPECT_TRUE(ReadIsoDuration("P1DT06H00M00S", days));
  EXPECT_EQ(days, 1.25);
  EXPECT_TRUE(ReadIsoDuration("-PT12H", days));
  EXPECT_EQ(days, -0.5);
  for (const char* text : {"", "P", "PT", "12H", "PT12", "PTH", "P12H", "PT1D", "PT-1H"}) {
    EXPECT_FALSE(ReadIsoDuration(text, days)) << text;
  }
}

TEST(OdsFile, CountsDaysFromTheDateThatTheDocumentNames) {
  const std::string table = "<table:table table:name=\"S\">" +
                            Row(Cell("", R"(office:value-type="date" office:date-value="1904-01-02")")) +
                            "</table:table>";
  const std::string settings =
      R"(<table:calculation-settings><table:null-date table:date-value="1904-01-01"/></table:calculation-settings>)";
  EXPECT_EQ(Read(Zip(WithPart(OdsParts({}), "content.xml", OdsContent(settings + table)))).sheets[0].grid.Value({1, 1}),
            "1");
}

TEST(OdsFile, ExpandsBlanksTabsAndParagraphs) {
  EXPECT_EQ(TextOf("<text:p>Table <text:s text:c=\"5\"/>1</text:p>"), "Table      1");
  EXPECT_EQ(TextOf("<text:p><text:s/>a<text:tab/>b<text:line-break/>c</text:p>"), " a\tb\nc");
  EXPECT_EQ(TextOf("<text:p>one</text:p><text:p>two</text:p><text:p/><text:p>four</text:p>"), "one\ntwo\n\nfour");
  EXPECT_EQ(TextOf("<text:p><text:span>a</text:span> <text:span>b</text:span></text:p>"), "a b");
  EXPECT_EQ(TextOf("<text:p>  a \n\t b </text:p>"), "a b ");
  EXPECT_EQ(TextOf("<text:p>a<text:span> <text:span>b</text:span></text:span><text:a> c</text:a></text:p>"), "a b c");
  EXPECT_EQ(TextOf("<text:p><text:s text:c=\"-4\"/>x</text:p>"), " x");
  EXPECT_EQ(TextOf("<text:p>a<!-- no -->b<![CDATA[<c>]]></text:p>"), "ab<c>");
}

TEST(OdsFile, LeavesCommentsDrawingsAndGuidesOut) {
  EXPECT_EQ(
      TextOf("<office:annotation><dc:date>x</dc:date><text:p>note</text:p></office:annotation><text:p>cell</text:p>"
             "<draw:frame><text:p>box</text:p></draw:frame>"),
      "cell");
  EXPECT_EQ(TextOf("<text:p><text:ruby><text:ruby-base>base</text:ruby-base><text:ruby-text>guide</text:ruby-text></"
                   "text:ruby></text:p>"),
            "base");
}

TEST(OdsFile, RepeatsCellsAndRows) {
  const SheetGrid grid =
      Rows(Row(Cell("", R"(table:number-columns-repeated="2")") +
               Cell("<text:p>a</text:p>", R"(table:number-columns-repeated="3")") + Cell("<text:p>b</text:p>")) +
           Row(Cell(""), R"(table:number-rows-repeated="3")") +
           Row(Cell("<text:p>c</text:p>"), R"(table:number-rows-repeated="2")") + Row(Cell("<text:p>d</text:p>")));
  EXPECT_EQ(grid.RangeText("A1:F1"), "\t\ta\ta\ta\tb\r\n");
  EXPECT_EQ(grid.RangeText("A4:A8"), "\r\nc\r\nc\r\nd\r\n\r\n");
}

TEST(OdsFile, GivesCoveredCellsTheirPlace) {
  const SheetGrid grid =
      Rows(Row(Cell("<text:p>wide</text:p>", R"(table:number-columns-spanned="3")") +
               R"(<table:covered-table-cell table:number-columns-repeated="2"/>)" + Cell("<text:p>next</text:p>")));
  EXPECT_EQ(grid.RangeText("A1:D1"), "wide\t\t\tnext\r\n");
}

TEST(OdsFile, ReadsRowsInGroupsAndHeaders) {
  const SheetGrid grid =
      Rows("<table:table-header-rows>" + Row(Cell("<text:p>1</text:p>")) +
           "</table:table-header-rows><table:table-row-group>" + Row(Cell("<text:p>2</text:p>")) +
           "<table:table-row-group><table:table-rows>" + Row(Cell("<text:p>3</text:p>")) +
           "</table:table-rows></table:table-row-group></table:table-row-group>" + Row(Cell("<text:p>4</text:p>")));
  EXPECT_EQ(grid.RangeText("A1:A4"), "1\r\n2\r\n3\r\n4\r\n");
}

TEST(OdsFile, NamesErrorsAsEverySpreadsheetDoes) {
  const auto name = [](const std::string& shown) {
    return Rows(
               Row(Cell(
                   "<text:p>" + shown + "</text:p>",
                   R"(table:formula="of:=1" office:value-type="string" office:string-value="" calcext:value-type="error")")))
        .Value({1, 1});
  };
  EXPECT_EQ(name("#DIV/0!"), "#DIV/0!");
  EXPECT_EQ(name("Err:502"), "#VALUE!");
  EXPECT_EQ(name("Err:503"), "#NUM!");
  EXPECT_EQ(name("Err:508"), "#VALUE!");
  EXPECT_EQ(name("Err:525"), "#NAME?");
}

TEST(OdsFile, ReportsFormulasWithoutAResult) {
  const WorkbookContents contents = Read(OdsWithRows(
      Row(Cell("", R"(table:formula="of:=1+1")") + Cell("<text:p/>", R"(table:formula="of:=&quot;&quot;")") +
          Cell("", R"(table:formula="of:=&quot;&quot;" office:value-type="string" office:string-value="")") +
          Cell("", R"(table:formula="of:=2" office:value-type="float" office:value="2")"))));
  ASSERT_EQ(contents.sheets[0].warnings.size(), 1U);
  EXPECT_EQ(contents.sheets[0].warnings[0],
            "The formula in cell 'Sheet1'!A1 has no stored result; it reads as empty. Open and save the workbook in a "
            "spreadsheet program once.");
  EXPECT_EQ(contents.sheets[0].grid.Formula({1, 1}), "=1+1");
}

TEST(OdsFile, SkipsTheKeptCopyOfAnotherBook) {
  const std::string tables = "<table:table table:name=\"'file:///x.ods'#S\"><table:table-source/>" +
                             Row(Cell("<text:p>x</text:p>")) + "</table:table><table:table table:name=\"Own\"/>";
  const WorkbookContents contents = Read(Zip(WithPart(OdsParts({}), "content.xml", OdsContent(tables))));
  ASSERT_EQ(contents.sheets.size(), 1U);
  EXPECT_EQ(contents.sheets[0].name, "Own");
}

TEST(OdsFile, DoesWithoutSettings) {
  std::vector<ZipPart> parts = OdsParts(TestBook{{{"A", {}, {5, 5}}, {"B", {}, {6, 6}}}, 1});
  EXPECT_EQ(Read(Zip(parts)).activeSheet, 1U);
  EXPECT_EQ(Read(Zip(parts)).sheets[1].activeCell, (CellPosition{6, 6}));
  std::erase_if(parts, [](const ZipPart& part) { return part.name == "settings.xml"; });
  EXPECT_EQ(Read(Zip(parts)).activeSheet, 0U);
  EXPECT_EQ(Read(Zip(parts)).sheets[1].activeCell, (CellPosition{1, 1}));
}

TEST(OdsFile, TakesNoActiveCellOutsideOfTheSheet) {
  std::vector<ZipPart> parts = OdsParts({});
  for (ZipPart& part : parts) {
    if (part.name != "settings.xml") continue;
    part.content = ReplaceAll(part.content, "\"CursorPositionX\">0<", "\"CursorPositionX\">99999999999<");
  }
  EXPECT_EQ(Read(Zip(parts)).sheets[0].activeCell, (CellPosition{1, 1}));
}

TEST(OdsFile, RefusesEncryptedAndOtherDocuments) {
  const std::string manifest =
      R"(<manifest:manifest><manifest:file-entry><manifest:encryption-data/></manifest:file-entry></manifest:manifest>)";
  EXPECT_EQ(Complaint(Zip(WithPart(OdsParts({}), "META-INF/manifest.xml", manifest))),
            "'m.ods' is encrypted; save it without a password first.");
  EXPECT_EQ(Complaint(Zip(WithPart(OdsParts({}), "encrypted-package", "x"))),
            "'m.ods' is encrypted; save it without a password first.");
  EXPECT_EQ(Complaint(Zip(WithPart(OdsParts({}), "mimetype", "application/vnd.oasis.opendocument.text"))),
            "'m.ods' is a document of another kind, not a workbook.");
  EXPECT_EQ(Complaint(Zip({{"content.xml", "<office:document-content/>"}})),
            "'m.ods' is a document of another kind, not a workbook.");
  EXPECT_EQ(Complaint(Zip({{"mimetype", "application/vnd.oasis.opendocument.spreadsheet"}})),
            "'m.ods' is damaged: its part 'content.xml' is missing.");
  EXPECT_EQ(Complaint(Zip(WithPart(OdsParts({}), "content.xml", OdsContent("")))), "'m.ods' holds no sheet of cells.");
}

TEST(OdsFile, BearsAbsurdRepeatsOfNothing) {
  const SheetGrid grid =
      Rows(Row(Cell("<text:p>a</text:p>") + Cell("", R"(table:number-columns-repeated="9223372036854775807")")) +
           Row(Cell(""), R"(table:number-rows-repeated="1000000000")") +
           Row(Cell(""), R"(table:number-rows-repeated="99999999999999999999")"));
  EXPECT_EQ(grid.CellCount(), 1U);
}

TEST(OdsFile, RefusesFilledCellsOutsideOfASheet) {
  const std::string outside = "'m.ods' is damaged: sheet 'Sheet1' has a cell in row ";
  EXPECT_EQ(Complaint(OdsWithRows(Row(Cell(""), R"(table:number-rows-repeated="1000000000")") +
                                  Row(Cell("<text:p>x</text:p>")))),
            outside + "1048577, column 1, outside of any sheet.");
  EXPECT_EQ(Complaint(OdsWithRows(Row(Cell("<text:p>x</text:p>"), R"(table:number-rows-repeated="1000000000")"))),
            outside + "1048577, column 1, outside of any sheet.");
  EXPECT_EQ(Complaint(OdsWithRows(Row(Cell("<text:p>x</text:p>", R"(table:number-columns-repeated="1000000000")")))),
            outside + "1, column 16385, outside of any sheet.");
  EXPECT_EQ(
      Complaint(OdsWithRows(Row(Cell("", R"(table:number-columns-repeated="16384")") + Cell("<text:p>x</text:p>")))),
      outside + "1, column 16385, outside of any sheet.");
}

}  // namespace
}  // namespace orv
