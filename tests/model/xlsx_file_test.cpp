#include "model/xlsx_file.h"

#include <gtest/gtest.h>

#include "model/file_workbook.h"
#include "support/workbook_writer.h"

namespace orv {
namespace {

using testing::TestBook;
using testing::WithPart;
using testing::XlsxParts;
using testing::XlsxWithRows;
using testing::Zip;
using testing::ZipPart;

WorkbookContents Read(const std::string& bytes) {
  return ReadWorkbook(bytes, "m.xlsx", Locale{});
}

SheetGrid Rows(const std::string& rows, const std::string& items = {}) {
  return Read(XlsxWithRows(rows, items)).sheets[0].grid;
}

std::string Complaint(const std::string& bytes) {
  try {
    Read(bytes);
  } catch (const WorkbookError& error) {
    return error.what();
  }
  return "";
}

std::vector<ZipPart> Parts() {
  return XlsxParts(TestBook{});
}

constexpr const char* kMain = "xl/worksheets/sheet1.xml";

TEST(XlsxFile, ReadsEveryTypeOfCell) {
  const SheetGrid grid = Rows(
      R"(<row r="1"><c r="A1" t="s"><v>1</v></c><c r="B1" t="inlineStr"><is><t>inline</t></is></c>)"
      R"(<c r="C1" t="str"><f>A1</f><v>text</v></c><c r="D1" t="b"><v>1</v></c><c r="E1" t="b"><v>false</v></c>)"
      R"(<c r="F1" t="e"><v>#REF!</v></c><c r="G1" t="n"><v>1.50</v></c><c r="H1"><v> 2e3 </v></c><c r="I1" s="3"/>)"
      R"(<c r="J1" t="d"><v>2024-01-31T12:00:00</v></c><c r="K1"><v>12 apples</v></c></row>)",
      "<si><t>zero</t></si><si><t>one</t></si>");
  EXPECT_EQ(grid.RangeText("A1:K1"), "one\tinline\ttext\tTRUE\tFALSE\t#REF!\t1.5\t2000\t\t45322.5\t12 apples\r\n");
  EXPECT_EQ(grid.CellCount(), 10U);
}

TEST(XlsxFile, PlacesRowsAndCellsWithoutNamesBehindTheOthers) {
  const SheetGrid grid =
      Rows(R"(<row><c><v>1</v></c><c/><c><v>3</v></c></row><row r="5"><c r="C5"><v>4</v></c><c><v>5</v></c></row>)"
           R"(<row><c><v>6</v></c></row>)");
  EXPECT_EQ(grid.Value({1, 1}), "1");
  EXPECT_EQ(grid.Value({1, 3}), "3");
  EXPECT_EQ(grid.Value({5, 3}), "4");
  EXPECT_EQ(grid.Value({5, 4}), "5");
  EXPECT_EQ(grid.Value({6, 1}), "6");
  EXPECT_EQ(grid.CellCount(), 5U);
}

TEST(XlsxFile, BearsPrettyPrintedParts) {
  const SheetGrid grid =
      Rows("\n <row>\n  <c t=\"s\">\n <v>\n 0 </v>\n</c>\n <c t=\"b\"><v> 1\n</v></c><c>\n<v>\n2.5\n</v>\n</c></row>\n",
           "\n<si>\n  <t>text</t>\n</si>\n");
  EXPECT_EQ(grid.RangeText("A1:C1"), "text\tTRUE\t2.5\r\n");
}

TEST(XlsxFile, ReadsCellsInAnyOrder) {
  const SheetGrid grid =
      Rows(R"(<row r="9"><c r="C9"><v>1</v></c><c r="A9"><v>2</v></c></row><row r="2"><c r="B2"><v>3</v></c></row>)"
           R"(<row r="9"><c r="B9"><v>4</v></c></row>)");
  EXPECT_EQ(grid.RangeText("A9:C9"), "2\t4\t1\r\n");
  EXPECT_EQ(grid.Value({2, 2}), "3");
}

TEST(XlsxFile, JoinsRunsAndSkipsThePhoneticGuide) {
  const SheetGrid grid = Rows(
      R"(<row r="1"><c r="A1" t="s"><v>0</v></c><c r="B1" t="inlineStr"><is><r><t>x</t></r><r><t>y</t></r></is></c></row>)",
      R"(<si><r><rPr><b/></rPr><t>ab</t></r><r><t xml:space="preserve"> cd</t></r><rPh sb="0" eb="1"><t>guide</t></rPh>)"
      R"(<phoneticPr fontId="1"/></si>)");
  EXPECT_EQ(grid.Value({1, 1}), "ab cd");
  EXPECT_EQ(grid.Value({1, 2}), "xy");
}

TEST(XlsxFile, KeepsOuterBlanksOnlyWhereTheFileSaysSo) {
  const std::string items =
      "<si><t xml:space=\"preserve\"> a  b </t></si><si><t> a  b\n</t></si><si xml:space=\"preserve\"><t>  </t></si>"
      "<si><t>   </t></si>";
  const SheetGrid grid =
      Rows(R"(<row r="1"><c r="A1" t="s"><v>0</v></c><c r="B1" t="s"><v>1</v></c><c r="C1" t="s"><v>2</v></c>)"
           R"(<c r="D1" t="s"><v>3</v></c></row>)",
           items);
  EXPECT_EQ(grid.Value({1, 1}), " a  b ");
  EXPECT_EQ(grid.Value({1, 2}), "a  b");
  EXPECT_EQ(grid.Value({1, 3}), "  ");
  EXPECT_EQ(grid.Value({1, 4}), "");
}

TEST(XlsxFile, DecodesEscapedCharacters) {
  EXPECT_EQ(DecodeEscapes("a_x000D__x000A_b"), "a\r\nb");
  EXPECT_EQ(DecodeEscapes("_x005F_x000D_"), "_x000D_");
  EXPECT_EQ(DecodeEscapes("_xD83D__xDE00_"), "😀");
  EXPECT_EQ(DecodeEscapes("_xD83D_x"), "\xEF\xBF\xBDx");
  EXPECT_EQ(DecodeEscapes("_x00e9_"), "é");
  EXPECT_EQ(DecodeEscapes("_x0000_"), "");
  for (const char* text : {"", "_", "_x", "_x000", "_x000D", "_x00ZZ_", "_xlfn.", "__x_", "_x-001_"}) {
    EXPECT_EQ(DecodeEscapes(text), text);
  }
  EXPECT_EQ(
      Rows(R"(<row r="1"><c r="A1" t="s"><v>0</v></c></row>)", "<si><t>two_x000D_\nlines</t></si>").RangeText("A1"),
      "two lines\r\n");
}

TEST(XlsxFile, ShiftsSharedFormulas) {
  const SheetGrid grid = Rows(
      R"(<row r="1"><c r="A1"><f t="shared" si="0"/><v>1</v></c><c r="B1"><f t="shared" ref="A1:C1" si="0">A5*$B$2</f><v>2</v></c>)"
      R"(<c r="C1"><f t="shared" si="0"/><v>3</v></c></row>)"
      R"(<row r="2"><c r="C2"><f t="shared" si="0"/><v>4</v></c><c r="D2"><f t="shared" si="7"/><v>5</v></c></row>)");
  EXPECT_EQ(grid.Formula({1, 2}), "=A5*$B$2");
  EXPECT_EQ(grid.Formula({1, 3}), "=B5*$B$2");
  EXPECT_EQ(grid.Formula({2, 3}), "=B6*$B$2");
  EXPECT_EQ(grid.Formula({1, 1}), "=#REF!*$B$2");
  EXPECT_EQ(grid.Value({1, 1}), "1");
  EXPECT_EQ(grid.Formula({2, 4}), "5") << "shares a formula that the file does not have";
}

TEST(XlsxFile, KnowsTheFormulaOfAnArrayAndNoneOfADataTable) {
  const SheetGrid grid =
      Rows(R"(<row r="1"><c r="A1"><f t="array" ref="A1:B1">C1:D1*2</f><v>1</v></c><c r="B1"><v>2</v></c>)"
           R"(<c r="C1"><f t="dataTable" ref="C1:C2" r1="A1"/><v>3</v></c></row>)");
  EXPECT_EQ(grid.Formula({1, 1}), "=C1:D1*2");
  EXPECT_EQ(grid.Formula({1, 2}), "2");
  EXPECT_EQ(grid.Formula({1, 3}), "3");
}

TEST(XlsxFile, ReportsFormulasWithoutAResult) {
  const WorkbookContents contents = Read(XlsxWithRows(
      R"(<row r="7"><c r="A7"><f>1+1</f><v></v></c><c r="B7"><f>1+1</f></c><c r="C7" t="str"><f>""</f><v></v></c>)"
      R"(<c r="D7"><f>1+1</f><v>2</v></c></row>)"));
  ASSERT_EQ(contents.sheets[0].warnings.size(), 2U);
  EXPECT_EQ(contents.sheets[0].warnings[1],
            "The formula in cell 'Sheet1'!B7 has no stored result; it reads as empty. Open and save the workbook in a "
            "spreadsheet program once.");
  EXPECT_EQ(contents.sheets[0].grid.Formula({7, 2}), "=1+1");
  EXPECT_EQ(contents.sheets[0].grid.Value({7, 2}), "");
}

TEST(XlsxFile, CountsFurtherFormulasWithoutAResult) {
  std::string cells;
  for (int k = 0; k < 25; ++k) cells += "<c><f>1</f></c>";
  const WorkbookContents contents = Read(XlsxWithRows("<row>" + cells + "</row>"));
  ASSERT_EQ(contents.sheets[0].warnings.size(), kMaxWarningsOfAKind + 1);
  EXPECT_EQ(contents.sheets[0].warnings.back(),
            "The same holds for 15 more formulas without a stored result in sheet 'Sheet1'.");
}

TEST(XlsxFile, CutsATextThatIsTooLong) {
  const std::string text(40000, 'x');
  const WorkbookContents contents =
      Read(XlsxWithRows(R"(<row r="1"><c r="A1" t="s"><v>0</v></c></row>)", "<si><t>" + text + "</t></si>"));
  EXPECT_EQ(contents.sheets[0].grid.Value({1, 1}).size(), kMaxCellCharacters);
  ASSERT_EQ(contents.sheets[0].warnings.size(), 1U);
  EXPECT_EQ(contents.sheets[0].warnings[0], "The text in cell 'Sheet1'!A1 was cut to 32767 characters.");
}

TEST(XlsxFile, ReadsNumbersInALogicalFormatAsLogicalValues) {
  const std::string styles =
      R"(<styleSheet><numFmts><numFmt numFmtId="167" formatCode="&quot;TRUE&quot;;&quot;TRUE&quot;;&quot;FALSE&quot;"/>)"
      R"(<numFmt numFmtId="168" formatCode="0.00"/></numFmts><cellXfs><xf numFmtId="168"/><xf numFmtId="167"/></cellXfs>)"
      R"(</styleSheet>)";
  std::vector<ZipPart> parts = WithPart(
      Parts(), kMain,
      R"(<worksheet><sheetData><row><c s="1"><v>1</v></c><c s="1"><v>0</v></c><c s="0"><v>1</v></c><c><v>1</v></c>)"
      R"(<c s="9"><v>1</v></c></row></sheetData></worksheet>)");
  parts = WithPart(parts, "xl/styles.xml", styles);
  parts = WithPart(parts, "xl/_rels/workbook.xml.rels",
                   R"(<Relationships><Relationship Id="rId1" Type="x/worksheet" Target="worksheets/sheet1.xml"/>)"
                   R"(<Relationship Id="rId2" Type="x/styles" Target="styles.xml"/></Relationships>)");
  EXPECT_EQ(Read(Zip(parts)).sheets[0].grid.RangeText("A1:E1"), "TRUE\tFALSE\t1\t1\t1\r\n");
}

TEST(XlsxFile, CountsDatesFrom1904WhereTheWorkbookDoes) {
  std::vector<ZipPart> parts = WithPart(
      Parts(), kMain,
      R"(<worksheet><sheetData><row><c t="d"><v>1904-01-02</v></c><c><v>7</v></c></row></sheetData></worksheet>)");
  for (ZipPart& part : parts) {
    if (part.name == "xl/workbook.xml")
      part.content = ReplaceAll(part.content, "<bookViews>", "<workbookPr date1904=\"1\"/><bookViews>");
  }
  EXPECT_EQ(Read(Zip(parts)).sheets[0].grid.RangeText("A1:B1"), "1\t7\r\n");
}

TEST(XlsxFile, TakesTheSelectionOfTheActivePane) {
  const auto active = [](const std::string& view) {
    return Read(Zip(WithPart(Parts(), kMain,
                             "<worksheet><sheetViews>" + view + "</sheetViews><sheetData/></worksheet>")))
        .sheets[0]
        .activeCell;
  };
  EXPECT_EQ(active(R"(<sheetView><pane activePane="bottomRight"/><selection pane="topRight" activeCell="B1"/>)"
                   R"(<selection pane="bottomRight" activeCell="C9"/></sheetView>)"),
            (CellPosition{9, 3}));
  EXPECT_EQ(active(R"(<sheetView><selection activeCell="D4" sqref="D4:E9"/></sheetView>)"), (CellPosition{4, 4}));
  EXPECT_EQ(active(R"(<sheetView/>)"), (CellPosition{1, 1}));
  EXPECT_EQ(active(R"(<sheetView><selection activeCell="nonsense"/></sheetView>)"), (CellPosition{1, 1}));
}

TEST(XlsxFile, SkipsSheetsThatAreCharts) {
  TestBook book;
  book.sheets = {
      {"Data", {{{1, 1}, testing::CellKind::Text, "x", "", ""}}, {1, 1}}, {"Chart", {}, {}}, {"Last", {}, {}}};
  book.active = 1;
  std::vector<ZipPart> parts = XlsxParts(book);
  for (ZipPart& part : parts) {
    if (part.name != "xl/_rels/workbook.xml.rels") continue;
    const std::size_t second = part.content.find("/worksheet\" Target=\"worksheets/sheet2");
    part.content.replace(second, 10, "/chartsheet");
  }
  const WorkbookContents contents = Read(Zip(parts));
  ASSERT_EQ(contents.sheets.size(), 2U);
  EXPECT_EQ(contents.sheets[contents.activeSheet].name, "Last");
  EXPECT_EQ(contents.warnings,
            std::vector<std::string>{"The active sheet 'Chart' holds no cells; another sheet is used."});
}

TEST(XlsxFile, FollowsTargetsThroughFolders) {
  std::vector<ZipPart> parts = {
      {"_rels/.rels",
       R"(<Relationships><Relationship Id="a" Type="x/officeDocument" Target="/deep/./book/main.xml"/></Relationships>)"},
      {"deep/book/main.xml", R"(<workbook><sheets><sheet name="S" rel:id="s" xmlns:rel="u"/></sheets></workbook>)"},
      {"deep/book/_rels/main.xml.rels",
       R"(<Relationships><Relationship Id="s" Type="x/worksheet" Target="../../other/One.XML"/></Relationships>)"},
      {"other\\one.xml", "<worksheet><sheetData><row><c><v>5</v></c></row></sheetData></worksheet>"}};
  EXPECT_EQ(Read(Zip(parts)).sheets[0].grid.Value({1, 1}), "5");
}

TEST(XlsxFile, NamesThePartThatIsDamaged) {
  EXPECT_EQ(Complaint(Zip(WithPart(Parts(), kMain, "<worksheet><sheetData></worksheet>")))
                .find("'m.xlsx' is damaged: its part 'xl/worksheets/sheet1.xml' is not well-formed XML ("),
            0U);
  EXPECT_EQ(
      Complaint(Zip(WithPart(Parts(), "xl/workbook.xml", ""))).find("'m.xlsx' is damaged: its part 'xl/workbook.xml'"),
      0U);
  std::vector<ZipPart> parts = Parts();
  std::erase_if(parts, [](const ZipPart& part) { return part.name == kMain; });
  EXPECT_EQ(Complaint(Zip(parts)), "'m.xlsx' is damaged: its part 'xl/worksheets/sheet1.xml' is missing.");
}

TEST(XlsxFile, TellsOfPartsWhoseNamesAreNoTextsInWholeCharacters) {
  const std::string relations = "<Relationships><Relationship Id=\"a\" Type=\"x/officeDocument\" Target=\"";
  const std::vector<ZipPart> parts = {{"_rels/.rels", relations + "b\xE9/\xFF.xml\"/></Relationships>"}};
  EXPECT_EQ(Complaint(Zip(parts)), "'m.xlsx' is not a workbook: it holds no 'b\u00E9/\u00FF.xml'.");
  EXPECT_EQ(Complaint(Zip({{"_rels/.rels", relations + std::string(5000, 'b') + "\"/></Relationships>"}})),
            "'m.xlsx' is not a workbook: it holds no '" + std::string(200, 'b') + "'.");
  const std::vector<ZipPart> sheet =
      WithPart(Parts(), "xl/_rels/workbook.xml.rels",
               "<Relationships><Relationship Id=\"rId1\" Type=\"x/worksheet\" Target=\"\xE9.xml\"/></Relationships>");
  EXPECT_EQ(Complaint(Zip(sheet)), "'m.xlsx' is damaged: its part 'xl/\u00E9.xml' is missing.");
}

TEST(XlsxFile, RefusesWhatIsNoWorkbook) {
  EXPECT_EQ(Complaint(Zip({{"[Content_Types].xml", "<Types/>"}})),
            "'m.xlsx' is not a workbook: it holds no 'xl/workbook.xml'.");
  EXPECT_EQ(
      Complaint(Zip(
          {{"_rels/.rels",
            R"(<Relationships><Relationship Id="a" Type="x/officeDocument" Target="word/document.xml"/></Relationships>)"},
           {"word/document.xml", "<w:document xmlns:w=\"u\"/>"}})),
      "'m.xlsx' is a document of another kind, not a workbook.");
  EXPECT_EQ(
      Complaint(Zip(
          {{"_rels/.rels",
            R"(<Relationships><Relationship Id="a" Type="x/officeDocument" Target="xl/workbook.bin"/></Relationships>)"},
           {"xl/workbook.bin", "\x01"}})),
      "'m.xlsx' is a binary workbook (.xlsb); save it as .xlsx or .ods first.");
  EXPECT_EQ(Complaint(Zip(WithPart(Parts(), "xl/workbook.xml", "<workbook/>"))), "'m.xlsx' holds no sheet of cells.");
  EXPECT_EQ(Complaint(Zip(WithPart(Parts(), "xl/_rels/workbook.xml.rels", "<Relationships/>"))),
            "'m.xlsx' is damaged: the part of its sheet 'Sheet1' is not named.");
}

TEST(XlsxFile, RefusesCellsOutsideOfASheet) {
  for (const char* name : {"ZZZ1", "A1048577", "A0", "1A", "A1:B2", "A99999999999999999999"}) {
    const std::string complaint = Complaint(XlsxWithRows("<row><c r=\"" + std::string(name) + "\"><v>1</v></c></row>"));
    EXPECT_EQ(complaint, "'m.xlsx' is damaged: sheet 'Sheet1' has a cell named '" + std::string(name) +
                             "', which is no cell of a sheet.");
  }
  for (const char* row : {"0", "-5", "1048577", "9223372036854775807", "99999999999999999999"}) {
    const std::string complaint = Complaint(
        XlsxWithRows("<row r=\"" + std::string(row) + "\"/><row r=\"" + row + "\"><c><v>1</v></c></row><row/>"));
    EXPECT_NE(complaint.find(", column 1, outside of any sheet."), std::string::npos) << complaint;
  }
}

TEST(XlsxFile, RefusesATextNumberThatDoesNotExist) {
  for (const char* index : {"2", "-1", "18446744073709551616", "x"}) {
    EXPECT_EQ(Complaint(XlsxWithRows(R"(<row><c t="s"><v>)" + std::string(index) + "</v></c></row>",
                                     "<si><t>a</t></si><si><t>b</t></si>")),
              "'m.xlsx' is damaged: sheet 'Sheet1' uses its text number " + std::string(index) +
                  ", but the file has 2 texts.");
  }
}

TEST(XlsxFile, TakesStrayBytesForWindows1252) {
  EXPECT_EQ(Rows("<row><c t=\"inlineStr\"><is><t>caf\xE9</t></is></c></row>").Value({1, 1}), "café");
}

}  // namespace
}  // namespace orv
