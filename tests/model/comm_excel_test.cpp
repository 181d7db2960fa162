#include "model/comm_excel.h"

#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "model/memory_sheet.h"
#include "numerics/text.h"
#include "support/scripted_dialogs.h"

namespace orv {
namespace {

constexpr const char* kAbortQuestion = "Do you want to abort? See Hallam if the error cannot be solved ";
constexpr const char* kAbsent = "Keyword not found in the current Excel sheet: ";
constexpr const char* kStrange =
    "Stange behavior, please check that the right Execel sheet is currently selected and restart";
constexpr const char* kRedoOnce =
    "Comm Excel : Syncho with Excel malfunction. To re do once automatically with doevents added. ";
constexpr const char* kRedoLoop = "Comm Excel : Syncho with Excel malfunction. To re do loop ";
constexpr const char* kManyErrors = "Multiple errors occurs, do you want to continue or abort?";

// Answers by a part of the text, and tells each text while the box stands.
class Dialogs : public testing::ScriptedDialogs {
 public:
  Answer Ask(const std::string& text, const std::string& title, Buttons buttons, Icon icon) override {
    Answer answer = ScriptedDialogs::Ask(text, title, buttons, icon);
    for (const auto& [part, choice] : choices) {
      if (Contains(text, part)) answer = choice;
    }
    if (onAsk) onAsk(text);
    return answer;
  }
  std::map<std::string, Answer> choices;
  std::function<void(const std::string& text)> onAsk;
};

// A sheet in memory that keeps what is asked of it and can fail at any place.
class ProbeSheet : public MemorySheet {
 public:
  using MemorySheet::MemorySheet;

  std::string WorkbookPath() override { return Operation("WorkbookPath", {0, 0}), MemorySheet::WorkbookPath(); }
  std::string SheetName() override { return Operation("SheetName", {0, 0}), MemorySheet::SheetName(); }
  CellPosition ActiveCell() override { return Operation("ActiveCell", {0, 0}), MemorySheet::ActiveCell(); }
  void Activate(CellPosition cell) override { Operation("Activate", cell), MemorySheet::Activate(cell); }
  std::string Value(CellPosition cell) override { return Operation("Value", cell), MemorySheet::Value(cell); }
  std::string Formula(CellPosition cell) override {
    visited.push_back(cell);
    return Operation("Formula", cell), MemorySheet::Formula(cell);
  }
  void Find(const std::string& part) override {
    finds.push_back(part);
    Operation("Find", {0, 0});
    MemorySheet::Find(part);
  }
  std::string RangeText(const std::string& range) override {
    Operation("RangeText", {0, 0});
    const std::string text = MemorySheet::RangeText(range);
    if (!copied.empty()) {
      const std::string other = copied.front();
      copied.erase(copied.begin());
      return other;
    }
    return text;
  }
  bool PrintsDecimalComma(CellPosition cell) override {
    scratch = cell;
    Operation("PrintsDecimalComma", cell);
    return MemorySheet::PrintsDecimalComma(cell);
  }

  std::vector<CellPosition> visited;  // by Formula
  std::vector<std::string> finds;
  CellPosition scratch;
  std::vector<std::string> copied;  // what the next copies give instead
  std::function<void(const std::string& name, CellPosition cell)> onOperation;
  int operations = 0;

 private:
  void Operation(const std::string& name, CellPosition cell) {
    ++operations;
    if (onOperation) onOperation(name, cell);
  }
};

class StoppedClock : public Clock {
 public:
  CivilTime Local() const override { return {}; }
  double Seconds() const override { return 42; }
};

struct Desk {
  explicit Desk(const Locale& locale = {}) : sheet(locale), reader(prompt, locale) {}

  // A small model with its keyword in C5 and its database in C20.
  void Fill() {
    sheet.Set({4, 3}, " my model ");
    sheet.SetText({5, 3}, "Orvdata Sat A\tRecto 1\tremark\n");
    sheet.SetText({6, 3}, "Kapton\trect 1 2 3\nThruster1\tthr - 1 2\nGlass\tx\n");
    sheet.Set({19, 3}, "above");
    sheet.SetText({20, 3}, "DatabaseOrvValis v2\trev 3\n");
    sheet.SetText({22, 3}, "Table      1 thrusters\nNAME\tmass\nThruster1\t1.5\n");
    sheet.SetText({40, 3}, "Table      9\na\nb\n");
    Select({5, 3});
  }
  void Select(CellPosition cell) {
    sheet.Attach();
    sheet.Activate(cell);
    sheet.Release();
    sheet.attachCount = 0;
    sheet.releaseCount = 0;
    sheet.operations = 0;
  }
  CommExcel::Outcome Read() { return comm.Read(model, session); }
  // True when the keyword is absent at the end.
  bool ReadFails() {
    try {
      Read();
    } catch (const ModelNotFound&) {
      return true;
    }
    return false;
  }

  Dialogs dialogs;
  ErrorPrompt prompt{dialogs};
  ProbeSheet sheet;
  CellText reader;
  StoppedClock clock;
  CommExcel comm{sheet, reader, clock};
  ModelData model;
  CommExcel::Session session;
};

TEST(CommExcel, ReadsAModel) {
  Desk desk;
  desk.Fill();
  EXPECT_EQ(desk.Read(), CommExcel::Outcome::Model);
  const ModelData& model = desk.model;
  EXPECT_EQ(model.keyword, (CellPosition{5, 3}));
  EXPECT_EQ(model.databaseCell, (CellPosition{20, 3}));
  EXPECT_EQ(model.ModelId, "Orvdata Sat A");
  EXPECT_EQ(model.ModelTitle, "Sat A my model Recto 1 remark");
  EXPECT_EQ(model.DatabaseTitle, "v2 above rev 3");
  EXPECT_EQ(model.WorkbookName, "Model.xlsx");
  EXPECT_EQ(model.SheetName, "Sheet1");
  EXPECT_EQ(model.SheetTitle, "Model.xlsx\\Sheet1    Path:/models");
  EXPECT_EQ(model.WorkbookFolder, "/models/");
  EXPECT_EQ(model.StartTime, 42);
  EXPECT_EQ(model.DirectiveLine, "Recto 1");
  EXPECT_EQ(model.directives.RectoOnly, 1);
  EXPECT_EQ(model.NumberOfPrimitives, 3);
  EXPECT_EQ(model.ModelCells(1, 1), "Kapton");
  EXPECT_EQ(model.ModelCells(2, 2), "thr -1 2");
  EXPECT_EQ(model.ModelCells(3, 2), "x");
  EXPECT_EQ(model.Table1Row, 22);
  EXPECT_EQ(model.Table9Row, 40);
  EXPECT_EQ(model.LastDatabaseRow, 44);
  EXPECT_EQ(model.database.NumberOfDatabaseRows, 23);
  EXPECT_EQ(model.database.DatabaseCells(1, 1), "Table      1 thrusters");
  EXPECT_EQ(model.database.DatabaseCells(3, 1), "Thruster1");
  EXPECT_EQ(model.database.DatabaseCells(3, 2), "1.5");
  EXPECT_EQ(model.database.DatabaseCells(21, 1), "b");
  EXPECT_EQ(desk.sheet.copies, (std::vector<std::string>{"C41:C1040", "C22:W44"}));
  EXPECT_EQ(desk.sheet.ActiveCell(), (CellPosition{5, 3}));
  EXPECT_EQ(desk.reader.commaDecimal(), 0);
  EXPECT_TRUE(desk.dialogs.boxes.empty());
}

TEST(CommExcel, TouchesNoSpreadsheetForAPlotFile) {
  for (const int mode : {1, 2}) {
    Desk desk;
    desk.Fill();
    desk.session.SourceMode = mode;
    EXPECT_EQ(desk.Read(), CommExcel::Outcome::PlotFile);
    EXPECT_EQ(desk.sheet.attachCount, 0);
    EXPECT_EQ(desk.sheet.operations, 0);
  }
}

struct WalkRow {
  const char* name;
  CellPosition keyword;
  std::vector<CellPosition> occupied;
  CellPosition active;
  bool walked;  // otherwise the search of the whole sheet finds it
};

TEST(CommExcel, WalksFromTheActiveCell) {
  for (const WalkRow& row : {WalkRow{"the active cell", {5, 5}, {}, {5, 5}, true},
                             WalkRow{"left neighbour", {5, 4}, {}, {5, 5}, true},
                             WalkRow{"left over occupied cells", {5, 2}, {{5, 3}, {5, 4}}, {5, 5}, true},
                             WalkRow{"left over one blank cell", {5, 3}, {}, {5, 5}, true},
                             WalkRow{"left over one blank cell and more", {5, 2}, {{5, 3}}, {5, 5}, true},
                             WalkRow{"left over two blank cells apart", {5, 2}, {{5, 4}}, {5, 6}, true},
                             WalkRow{"left over two blank cells together", {5, 2}, {}, {5, 5}, false},
                             WalkRow{"row above to the left", {4, 4}, {}, {5, 5}, true},
                             WalkRow{"row above over a blank cell", {4, 3}, {}, {5, 5}, true},
                             WalkRow{"two rows above to the left", {3, 4}, {}, {5, 5}, false},
                             WalkRow{"above", {4, 5}, {}, {5, 5}, true},
                             WalkRow{"above over occupied cells", {2, 5}, {{3, 5}, {4, 5}}, {5, 5}, true},
                             WalkRow{"above over one blank cell", {3, 5}, {}, {5, 5}, false},
                             WalkRow{"above, one column left", {3, 4}, {{4, 4}}, {5, 5}, true},
                             WalkRow{"above, two columns left", {3, 3}, {{4, 3}}, {5, 5}, true},
                             WalkRow{"above, three columns left", {3, 2}, {{4, 2}}, {5, 5}, false},
                             WalkRow{"first column", {5, 1}, {}, {5, 2}, false},
                             WalkRow{"first column behind a blank cell", {5, 1}, {}, {5, 3}, false},
                             WalkRow{"first column behind an occupied cell", {5, 1}, {{5, 2}}, {5, 3}, false},
                             WalkRow{"first row", {1, 5}, {}, {2, 5}, false},
                             WalkRow{"first row to the left", {1, 4}, {}, {2, 5}, false},
                             WalkRow{"first row above an occupied cell", {1, 5}, {{2, 5}}, {3, 5}, false},
                             WalkRow{"right", {5, 6}, {}, {5, 5}, false},
                             WalkRow{"below", {6, 5}, {}, {5, 5}, false},
                             WalkRow{"first cell of all", {1, 1}, {}, {9, 9}, false}}) {
    SCOPED_TRACE(row.name);
    Desk desk;
    for (const CellPosition cell : row.occupied) desk.sheet.Set(cell, "text");
    desk.sheet.Set(row.keyword, "my Orvdata model");
    desk.Select(row.active);
    desk.Read();
    EXPECT_EQ(desk.model.keyword, row.keyword);
    ASSERT_FALSE(desk.sheet.finds.empty());
    EXPECT_EQ(desk.sheet.finds.front(), row.walked ? "DatabaseOrvValis" : "Orvdata");
    for (const CellPosition cell : desk.sheet.visited) {
      EXPECT_TRUE(cell == row.active || (cell.row > 1 && cell.column > 1)) << cell.row << ", " << cell.column;
    }
  }
}

TEST(CommExcel, WalksInOrder) {
  struct Row {
    const char* name;
    CellPosition first, second;
    std::vector<CellPosition> occupied;
  };
  for (const Row& row : {Row{"the row itself before the row above", {5, 3}, {4, 4}, {}},
                         Row{"the row above before the column", {4, 3}, {4, 5}, {}},
                         Row{"the column before the next one", {3, 5}, {3, 4}, {{4, 5}, {4, 4}}},
                         Row{"one column left before two", {3, 4}, {3, 3}, {{4, 4}, {4, 3}}},
                         Row{"near before far", {5, 4}, {5, 3}, {}}}) {
    SCOPED_TRACE(row.name);
    Desk desk;
    for (const CellPosition cell : row.occupied) desk.sheet.Set(cell, "text");
    desk.sheet.Set(row.first, "Orvdata");
    desk.sheet.Set(row.second, "Orvdata");
    desk.Select({5, 5});
    desk.Read();
    EXPECT_EQ(desk.model.keyword, row.first);
  }
}

TEST(CommExcel, FindsTheKeywordInAnotherCaseOnTheWholeSheetOnly) {
  Desk desk;
  desk.Fill();
  desk.sheet.Set({5, 3}, "ORVDATA Sat A");
  desk.Select({5, 4});
  desk.Read();
  EXPECT_EQ(desk.sheet.finds.front(), "Orvdata");
  EXPECT_EQ(desk.model.keyword, (CellPosition{5, 3}));
  EXPECT_EQ(desk.model.ModelTitle, "ORVDATA Sat A my model Recto 1 remark") << "only the exact spelling is cut";
}

TEST(CommExcel, SearchesOnFromTheActiveCell) {
  Desk desk;
  desk.sheet.Set({2, 20}, "Orvdata one");
  desk.sheet.Set({30, 2}, "Orvdata two");
  desk.Select({10, 10});
  desk.Read();
  EXPECT_EQ(desk.model.keyword, (CellPosition{30, 2}));
}

TEST(CommExcel, FindsTheKeywordInAFormula) {
  Desk desk;
  desk.Fill();
  desk.sheet.SetFormula({5, 3}, "=\"Orvdata \"&A1", "Orvdata Sat B");
  desk.Select({5, 5});
  desk.Read();
  EXPECT_EQ(desk.sheet.finds.front(), "DatabaseOrvValis");
  EXPECT_EQ(desk.model.ModelId, "Orvdata Sat B");
}

TEST(CommExcel, CutsAndJoinsTitles) {
  struct Row {
    const char* name;
    std::string cell, above, beside, expected;
  };
  const std::string hundred(100, 'x');
  for (const Row& row :
       {Row{"keyword alone", "Orvdata", "", "", ""}, Row{"text on both sides", "my Orvdata model", "", "", "my  model"},
        Row{"joined", "aOrvdatab", "", "", "ab"}, Row{"above and beside", " Orvdata a ", "  b ", " c  ", "a b c"},
        Row{"hard blanks",
            "Orvdata\xC2\xA0"
            "a",
            "\xC2\xA0", "c\xC2\xA0", "a c"},
        Row{"cut", "Orvdata " + hundred, "b", "", hundred.substr(0, 96)},
        Row{"cut behind a blank", "Orvdata " + hundred.substr(0, 95), "b", "c", hundred.substr(0, 95) + " "},
        Row{"accents", "Orvdata \xC3\xA9" + hundred, "", "", "\xC3\xA9" + hundred.substr(0, 95)}}) {
    SCOPED_TRACE(row.name);
    Desk desk;
    desk.Fill();
    desk.sheet.Set({5, 3}, row.cell);
    desk.sheet.Set({4, 3}, row.above);
    desk.sheet.Set({5, 4}, row.beside);
    desk.sheet.Set({5, 5}, "");
    desk.Read();
    // A blank that ends a cut title may stand or not.
    EXPECT_EQ(Trim(desk.model.ModelTitle), Trim(row.expected));
    EXPECT_LE(CharacterCount(desk.model.ModelTitle), 96U);
  }
}

TEST(CommExcel, TakesTheTitleFromTenCellsBeside) {
  Desk desk;
  desk.Fill();
  desk.sheet.SetText({5, 4}, "T 1 2 3\tb\tc\td\te\tf\tg\th\ti\tj\tk\n");
  desk.Read();
  EXPECT_EQ(desk.model.ModelTitle, "Sat A my model T 1 2 3 b c d e f g h i j");
  EXPECT_EQ(desk.model.DirectiveLine, "T 1 2 3");
}

TEST(CommExcel, LooksAboveNoFirstRow) {
  Desk desk;
  desk.sheet.SetText({1, 3}, "Orvdata A\tLog\n");
  desk.Select({1, 3});
  desk.Read();
  EXPECT_EQ(desk.model.ModelTitle, "A Log");
}

TEST(CommExcel, CutsTheFixedTexts) {
  Desk desk;
  desk.Fill();
  desk.sheet.Set({5, 3}, "Orvdata" + std::string(100, 'a'));
  desk.sheet.path = "/" + std::string(200, 'p');
  desk.sheet.Set({20, 3}, "DatabaseOrvValis" + std::string(100, 'd'));
  desk.Read();
  EXPECT_EQ(desk.model.ModelId, "Orvdata" + std::string(57, 'a'));
  EXPECT_EQ(desk.model.DatabaseTitle, std::string(96, 'd'));
  EXPECT_EQ(desk.model.SheetTitle, ("Model.xlsx\\Sheet1    Path:/" + std::string(200, 'p')).substr(0, 128));
  EXPECT_EQ(desk.model.WorkbookFolder, "/" + std::string(200, 'p') + "/");
}

TEST(CommExcel, TakesTheLastWindowsCaption) {
  Desk desk;
  desk.Fill();
  desk.sheet.windowCaptions = {"Other.xlsx", "Model.xlsx:2"};
  desk.sheet.path = "C:\\models\\";
  desk.sheet.RenameSheet("Sat");
  desk.Read();
  EXPECT_EQ(desk.model.WorkbookName, "Model.xlsx:2");
  EXPECT_EQ(desk.model.WorkbookFolder, "C:\\models\\");
  EXPECT_EQ(desk.model.SheetTitle, "Model.xlsx:2\\Sat    Path:C:\\models\\");
}

TEST(CommExcel, ReadsTheModelTableToTheFirstEmptyCell) {
  struct Row {
    const char* name;
    const char* rows;
    int count;
  };
  for (const Row& row : {Row{"no rows", "", 0}, Row{"one", "a\n", 1}, Row{"blank row inside", "a\nb\n\nd\n", 2},
                         Row{"cell of blanks", "a\n   \nc\n", 1}, Row{"hard blank", "a\nb\n\xC2\xA0\nd\n", 2},
                         Row{"empty first column", "a\n\tspec\nc\n", 1}, Row{"text beside only", "\tspec\n", 0}}) {
    SCOPED_TRACE(row.name);
    Desk desk;
    desk.sheet.Set({5, 3}, "Orvdata");
    desk.sheet.SetText({6, 3}, row.rows);
    desk.Select({5, 3});
    desk.Read();
    EXPECT_EQ(desk.model.NumberOfPrimitives, row.count);
    EXPECT_EQ(desk.model.ModelCells.bounds(0).lower, 0);
    EXPECT_EQ(desk.model.ModelCells.bounds(0).upper, row.count + 10);
    EXPECT_EQ(desk.model.ModelCells.bounds(1).lower, 1);
    EXPECT_EQ(desk.model.ModelCells.bounds(1).upper, 11);
    EXPECT_EQ(desk.sheet.scratch, (CellPosition{6 + row.count, 3}));
    for (int spare = row.count + 1; spare <= row.count + 10; ++spare) {
      EXPECT_EQ(desk.model.ModelCells(spare, 1), "") << spare;
    }
  }
}

TEST(CommExcel, ReadsElevenColumnsUntrimmed) {
  Desk desk;
  desk.sheet.Set({5, 3}, "Orvdata");
  desk.sheet.SetText({6, 3}, " a\t  rect -  5\xC2\xA0- .5 - b \t3\t4\t5\t6\t7\t8\t9\t10\t11\t12\n");
  desk.Select({5, 3});
  desk.Read();
  EXPECT_EQ(desk.model.ModelCells(1, 1), " a");
  EXPECT_EQ(desk.model.ModelCells(1, 2), "  rect -5 -.5 - b ");
  EXPECT_EQ(desk.model.ModelCells(1, 11), "11");
}

TEST(CommExcel, ReadsTheDirectiveCell) {
  Desk desk;
  desk.Fill();
  desk.sheet.Set({5, 4},
                 " Log\xC2\xA0"
                 "2 \xC2\xA0");
  desk.Read();
  EXPECT_EQ(desk.model.DirectiveLine, "Log 2");
  EXPECT_EQ(desk.model.directives.LogScale, 2);
  desk.sheet.Set({5, 4}, "Haccuracy 1");
  desk.Read();
  EXPECT_EQ(desk.model.directives.LogScale, 0) << "nothing is left of the reading before";
  EXPECT_EQ(desk.model.constants.AvogadroNumber, 6.02214e+23);
}

TEST(CommExcel, WarnsOfSpectrumComputations) {
  for (const Answer answer : {Answer::Ok, Answer::Cancel}) {
    Desk desk;
    desk.Fill();
    desk.sheet.Set({5, 4}, "spectrum 1");
    desk.dialogs.answers = {answer};
    EXPECT_EQ(desk.Read(), CommExcel::Outcome::Model);
    ASSERT_EQ(desk.dialogs.boxes.size(), 1U);
    EXPECT_EQ(desk.dialogs.boxes[0].text,
              "Warning for special case:  Spectrum computations only Do you want to continue?");
    EXPECT_EQ(desk.dialogs.boxes[0].title, "Warning for special case");
    EXPECT_EQ(desk.dialogs.boxes[0].buttons, Buttons::OkCancel);
    EXPECT_EQ(desk.model.directives.SpectrumMode, 1);
  }
  Desk desk;
  desk.Fill();
  desk.sheet.Set({5, 4}, "spectrum 2");
  desk.Read();
  EXPECT_TRUE(desk.dialogs.boxes.empty());
}

TEST(CommExcel, AsksTheSpreadsheetForItsDecimalSeparator) {
  Desk desk(Locale{",", "."});
  desk.Fill();
  desk.Read();
  EXPECT_EQ(desk.reader.commaDecimal(), 1);
  EXPECT_EQ(desk.sheet.scratch, (CellPosition{9, 3}));
}

TEST(CommExcel, LocatesTable1) {
  struct Row {
    const char* name;
    int table1;  // rows below the database cell, -1: none
    int name1;   // the same for NAME
    int found;   // -1: told, and the database row stands in
  };
  for (const Row& row :
       {Row{"in the row below", 1, -1, 1}, Row{"in the row itself", 0, -1, 0}, Row{"50 rows below", 50, -1, 50},
        Row{"51 rows below", 51, -1, -1}, Row{"behind NAME", 9, 3, 9}, Row{"NAME alone", -1, 7, 7},
        Row{"too far, but NAME", 51, 8, 8}, Row{"NAME 50 rows below", -1, 50, 50},
        Row{"NAME 51 rows below", -1, 51, -1}, Row{"neither", -1, -1, -1}}) {
    SCOPED_TRACE(row.name);
    Desk desk;
    desk.sheet.Set({5, 3}, "Orvdata");
    desk.sheet.Set({20, 4}, "DatabaseOrvValis");
    desk.sheet.Set({90, 4}, "Table      9");
    if (row.table1 == 0) desk.sheet.Set({20, 4}, "DatabaseOrvValis Table      1");
    if (row.table1 > 0) desk.sheet.Set({20 + row.table1, 4}, "x Table\xC2\xA0     1 y");
    if (row.name1 > 0) desk.sheet.Set({20 + row.name1, 4}, "the NAME of");
    desk.Select({5, 3});
    desk.Read();
    EXPECT_EQ(desk.model.Table1Row, 20 + std::max(row.found, 0));
    EXPECT_EQ(desk.dialogs.Count(kStrange), row.found < 0 ? 1 : 0);
    EXPECT_EQ(desk.dialogs.Count(kAbortQuestion), row.found < 0 ? 1 : 0);
  }
}

TEST(CommExcel, EndsOnAbortWithoutTable1) {
  Desk desk;
  desk.sheet.Set({5, 3}, "Orvdata");
  desk.sheet.Set({20, 4}, "DatabaseOrvValis");
  desk.Select({5, 3});
  desk.dialogs.choices[kAbortQuestion] = Answer::Abort;
  EXPECT_THROW(desk.Read(), ProgramEnd);
}

TEST(CommExcel, ASheetWithoutTable9GoesOn) {
  Desk desk;
  desk.Fill();
  desk.sheet.Set({40, 3}, "");
  desk.Read();
  EXPECT_EQ(desk.model.Table9Row, 20);
  EXPECT_EQ(desk.dialogs.Count(kAbsent), 0);
}

TEST(CommExcel, ASheetWithoutDatabaseGoesOn) {
  Desk desk;
  desk.sheet.Set({5, 3}, "Orvdata");
  desk.Select({5, 3});
  EXPECT_EQ(desk.Read(), CommExcel::Outcome::Model);
  EXPECT_EQ(desk.model.databaseCell, (CellPosition{5, 3}));
  EXPECT_EQ(desk.model.Table9Row, 5);
  EXPECT_EQ(desk.dialogs.Count(kStrange), 1);
}

TEST(CommExcel, Table9EndsWithTwoBlankCells) {
  struct Row {
    const char* name;
    std::string lines;
    int last;  // rows below the title
  };
  for (const Row& row : {Row{"at once", "", 2}, Row{"one line", "a\n", 3}, Row{"three lines", "a\nb\nc\n", 5},
                         Row{"single blank cells inside", "a\n\nb\n\nc\n", 7}, Row{"blank first", "\na\n", 4},
                         Row{"text behind the end", "a\n\n\nb\n", 3}}) {
    SCOPED_TRACE(row.name);
    Desk desk;
    desk.Fill();
    desk.sheet.SetText({41, 3}, "\n\n");
    for (int k = 41; k <= 42; ++k) desk.sheet.Set({k, 3}, "");
    desk.sheet.SetText({41, 3}, row.lines);
    desk.Read();
    EXPECT_EQ(desk.model.LastDatabaseRow, 40 + row.last);
    EXPECT_EQ(desk.model.database.NumberOfDatabaseRows, 40 + row.last - 22 + 1);
    EXPECT_TRUE(desk.dialogs.boxes.empty());
  }
}

TEST(CommExcel, Table9EndsWithTheText) {
  Desk desk;
  desk.Fill();
  desk.sheet.copied = {"a\r\nb\r\nc\r\n"};
  desk.Read();
  EXPECT_EQ(desk.model.LastDatabaseRow, 40 + 3 + 1);
}

TEST(CommExcel, Table9HasAtMost1000Lines) {
  const std::string told =
      "DATABASE Table 9 size shall be updated to support more than 1000 lines. Ask Maravo to Update";
  for (const int lines : {998, 999, 1000, 1200}) {
    SCOPED_TRACE(lines);
    Desk desk;
    desk.Fill();
    for (int k = 1; k <= lines; ++k) desk.sheet.Set({40 + k, 3}, "line");
    desk.Read();
    const bool tooLong = lines > 998;
    EXPECT_EQ(desk.dialogs.Count(told), tooLong ? 1 : 0);
    EXPECT_EQ(desk.dialogs.Count(kAbortQuestion), tooLong ? 1 : 0);
    EXPECT_EQ(desk.model.LastDatabaseRow, tooLong ? 1041 : 1040);
    if (!tooLong) continue;
    ASSERT_FALSE(desk.dialogs.boxes.empty());
    EXPECT_EQ(desk.dialogs.boxes[0].text, told);
    EXPECT_EQ(desk.dialogs.boxes[0].title, "Ask Maravo for how to Update");
    desk.dialogs.choices[kAbortQuestion] = Answer::Abort;
    EXPECT_THROW(desk.Read(), ProgramEnd);
  }
}

TEST(CommExcel, RepeatsAFailedCopyOnce) {
  Desk desk;
  desk.Fill();
  desk.sheet.emptyCopies = 1;
  desk.sheet.eventBreaks = 0;
  desk.Read();
  ASSERT_EQ(desk.dialogs.boxes.size(), 1U);
  EXPECT_EQ(desk.dialogs.boxes[0].text, kRedoOnce);
  EXPECT_EQ(desk.dialogs.boxes[0].title, "Warning");
  EXPECT_GE(desk.sheet.eventBreaks, 2);
  EXPECT_EQ(desk.sheet.copies, (std::vector<std::string>{"C41:C1040", "C41:C1040", "C22:W44"}));
  EXPECT_EQ(desk.model.LastDatabaseRow, 44);
  EXPECT_EQ(desk.model.database.DatabaseCells(1, 1), "Table      1 thrusters");
}

TEST(CommExcel, ReadsOnceMoreWhenTheDatabaseStaysEmpty) {
  Desk desk;
  desk.Fill();
  desk.sheet.emptyCopies = 3;  // both copies of Table 9 and that of the database
  desk.Read();
  EXPECT_EQ(desk.dialogs.Count(kRedoOnce), 1);
  EXPECT_EQ(desk.dialogs.Count(kRedoLoop), 1);
  EXPECT_FALSE(desk.model.DatabaseIsEmpty());
  EXPECT_EQ(desk.model.LastDatabaseRow, 44);
  EXPECT_EQ(desk.model.NumberOfPrimitives, 3);
  EXPECT_EQ(desk.model.ModelTitle, "Sat A my model Recto 1 remark");
  EXPECT_EQ(desk.sheet.ActiveCell(), (CellPosition{5, 3}));
}

TEST(CommExcel, ReadsNoThirdTime) {
  Desk desk;
  desk.Fill();
  desk.sheet.emptyCopies = 1000;
  EXPECT_EQ(desk.Read(), CommExcel::Outcome::Model);
  EXPECT_EQ(desk.dialogs.Count(kRedoLoop), 1);
  EXPECT_TRUE(desk.model.DatabaseIsEmpty());
}

// The second reading starts from the top: it tells when the keyword is gone by then.
TEST(CommExcel, TheSecondReadingLooksForTheKeywordAgain) {
  Desk desk;
  desk.Fill();
  desk.sheet.emptyCopies = 3;
  desk.dialogs.onAsk = [&](const std::string& text) {
    if (text == kRedoLoop) desk.sheet.Set({5, 3}, "nothing");
  };
  EXPECT_TRUE(desk.ReadFails());
  EXPECT_EQ(desk.dialogs.Count(kAbsent), 1);
}

TEST(CommExcel, SplitsTheDatabaseRows) {
  Desk desk;
  desk.Fill();
  std::string wide = "  c1 ";
  for (int k = 2; k <= 25; ++k) wide += "\tc" + std::to_string(k) + "\xC2\xA0";
  desk.sheet.SetText({25, 3}, wide + "\n");
  desk.sheet.Set({26, 23}, "last only");
  desk.Read();
  const Database& database = desk.model.database;
  EXPECT_EQ(database.DatabaseCells.bounds(0).upper, database.NumberOfDatabaseRows);
  EXPECT_EQ(database.DatabaseCells.bounds(0).lower, 0);
  EXPECT_EQ(database.DatabaseCells.bounds(1).lower, 0);
  EXPECT_EQ(database.DatabaseCells.bounds(1).upper, 21);
  EXPECT_EQ(database.DatabaseCells(4, 0), "");
  EXPECT_EQ(database.DatabaseCells(4, 1), "c1");
  EXPECT_EQ(database.DatabaseCells(4, 2), "c2");
  EXPECT_EQ(database.DatabaseCells(4, 21), "c21");
  EXPECT_EQ(database.DatabaseCells(5, 1), "");
  EXPECT_EQ(database.DatabaseCells(5, 21), "last only");
  EXPECT_EQ(database.DatabaseCells(6, 1), "");
  ASSERT_EQ(database.DatabaseLines.size(), static_cast<std::size_t>(database.NumberOfDatabaseRows) + 1);
  EXPECT_EQ(database.DatabaseLines[3], "Thruster1\t1.5" + std::string(19, '\t'));
  EXPECT_TRUE(StartsWith(database.DatabaseLines[4], "  c1 \tc2 \tc3 "));
  EXPECT_EQ(database.DatabaseLines[6], std::string(20, '\t'));
}

TEST(CommExcel, TellsADatabaseTooFarRight) {
  Desk desk;
  desk.Fill();
  desk.sheet.SetText({60, 250}, "DatabaseOrvValis\nTable      1\nr\t2\t3\t4\t5\t6\t7\t8\t9\t10\n");
  desk.sheet.Set({63, 250}, "Table      9");
  desk.sheet.Set({20, 3}, "");
  desk.sheet.Set({40, 3}, "");
  desk.Read();
  EXPECT_EQ(desk.model.Table1Row, 61);
  EXPECT_EQ(desk.dialogs.Count("ERROR: last column shall be less than 255 ie iv"), 1);
  EXPECT_EQ(desk.dialogs.Count(kAbortQuestion), 1);
  EXPECT_EQ(desk.model.database.DatabaseCells(2, 10), "10");
}

TEST(CommExcel, SurvivesATable9AboveTheDatabase) {
  Desk desk;
  desk.Fill();
  desk.sheet.Set({40, 3}, "");
  desk.sheet.Set({2, 3}, "Table      9");
  EXPECT_EQ(desk.Read(), CommExcel::Outcome::Model);
  EXPECT_EQ(desk.model.Table9Row, 2);
}

TEST(CommExcel, SurvivesAKeywordInTheLastCell) {
  Desk desk;
  desk.sheet.Set({kSheetRows, kSheetColumns}, "Orvdata");
  desk.Select({1, 1});
  EXPECT_EQ(desk.Read(), CommExcel::Outcome::Model);
  EXPECT_EQ(desk.model.NumberOfPrimitives, 0);
}

TEST(CommExcel, AsksOnceForARunningSpreadsheet) {
  Desk desk;
  desk.Fill();
  desk.sheet.applicationRunning = false;
  desk.dialogs.choices["Excel speadsheet"] = Answer::Cancel;
  EXPECT_EQ(desk.Read(), CommExcel::Outcome::PlotFile);
  ASSERT_EQ(desk.dialogs.boxes.size(), 1U);
  EXPECT_EQ(desk.dialogs.boxes[0].text,
            "You can open your Excel speadsheet now, and after click on OK.  \n"
            "Else, click on Cancel to show, if exist, the previous plot, or the original demo.");
  EXPECT_EQ(desk.dialogs.boxes[0].title, "Excel not running!");
  EXPECT_EQ(desk.dialogs.boxes[0].buttons, Buttons::OkCancel);
  EXPECT_EQ(desk.session.SourceMode, 2);
  EXPECT_EQ(desk.session.ExcelState, 2);
  EXPECT_EQ(desk.session.LinkReady, 0);
  EXPECT_EQ(desk.sheet.attachCount, 1);

  EXPECT_EQ(desk.Read(), CommExcel::Outcome::PlotFile);
  EXPECT_EQ(desk.sheet.attachCount, 1) << "the last plot is shown until the source is chosen anew";

  // Another run of the program's life, with the count but not the choice kept.
  desk.session.SourceMode = desk.session.ExcelState = 0;
  CommExcel next(desk.sheet, desk.reader, desk.clock);
  EXPECT_EQ(next.Read(desk.model, desk.session), CommExcel::Outcome::PlotFile);
  EXPECT_EQ(desk.dialogs.boxes.size(), 1U) << "the attempts are counted over the life of the program";
  EXPECT_EQ(desk.sheet.attachCount, 2);
  EXPECT_EQ(desk.session.SourceMode, 2);
}

TEST(CommExcel, TriesAgainWhenTheUserOpensTheSpreadsheet) {
  Desk desk;
  desk.Fill();
  desk.sheet.applicationRunning = false;
  desk.dialogs.choices["Excel speadsheet"] = Answer::Ok;
  desk.dialogs.onAsk = [&](const std::string&) { desk.sheet.applicationRunning = true; };
  EXPECT_EQ(desk.Read(), CommExcel::Outcome::Model);
  EXPECT_EQ(desk.dialogs.boxes.size(), 1U);
  EXPECT_EQ(desk.sheet.attachCount, 2);
  EXPECT_EQ(desk.session.SourceMode, 0);
  EXPECT_EQ(desk.session.LinkReady, 1);
}

TEST(CommExcel, TakesTheSpreadsheetForAbsentAtTheSecondFailure) {
  Desk desk;
  desk.sheet.applicationRunning = false;
  desk.dialogs.choices["Excel speadsheet"] = Answer::Ok;
  EXPECT_EQ(desk.Read(), CommExcel::Outcome::PlotFile);
  EXPECT_EQ(desk.dialogs.boxes.size(), 1U);
  EXPECT_EQ(desk.sheet.attachCount, 2);
  EXPECT_EQ(desk.session.ExcelState, 2);
}

// --- what is taken

TEST(CommExcel, TheWordDemoInTheKeywordBoxAsksForTheSample) {
  Desk desk;
  desk.Fill();
  desk.session.MainKeyword = " Demo ";
  EXPECT_EQ(desk.Read(), CommExcel::Outcome::PlotFile);
  EXPECT_EQ(desk.session.SourceMode, 1);
  EXPECT_EQ(desk.session.ExcelState, 1) << "the watch rests, as after the command for the sample";
  EXPECT_EQ(desk.sheet.attachCount, 0);
}

struct TakenRow {
  const char* name;
  const char* cell;   // in front
  const char* typed;  // nullptr: nothing was typed
  bool watch;
  CommExcel::Outcome outcome;
  const char* specification;
  bool typedStays;
};

TEST(CommExcel, TakesATypedSpecificationThenTheActiveCellThenTheModel) {
  using Outcome = CommExcel::Outcome;
  constexpr const char* kSpec = "=2*MAX(A2:C60)";
  constexpr const char* kTyped = "=MAX(E2:G9)";
  for (const TakenRow& row :
       {TakenRow{"a cell", kSpec, nullptr, false, Outcome::RangePlot, kSpec, false},
        TakenRow{"in any case", "=max(A2:C60)", nullptr, false, Outcome::RangePlot, "=max(A2:C60)", false},
        TakenRow{"a text cell", "=MAX(A2:C60) \"PENUP\"", nullptr, false, Outcome::RangePlot, "=MAX(A2:C60) \"PENUP\"",
                 false},
        TakenRow{"too narrow a range", "=MAX(A2:A60)", nullptr, false, Outcome::RangePlot, "=MAX(A2:A60)", false},
        TakenRow{"no range", "=MAX(A2)", nullptr, false, Outcome::Model, "", false},
        TakenRow{"another function", "=SUM(A2:C60)", nullptr, false, Outcome::Model, "", false},
        TakenRow{"an empty cell", "", nullptr, false, Outcome::Model, "", false},
        TakenRow{"a keyword cell counts as itself", "Orvdata =MAX(A2:C60)", nullptr, false, Outcome::Model, "", false},
        TakenRow{"typed", "", kTyped, false, Outcome::RangePlot, kTyped, true},
        TakenRow{"typed beside a cell", kSpec, kTyped, false, Outcome::RangePlot, kTyped, true},
        TakenRow{"typed on the keyword cell", "Orvdata", kTyped, false, Outcome::RangePlot, kTyped, true},
        TakenRow{"typed in vain beside a cell", kSpec, "E2:G9", false, Outcome::RangePlot, kSpec, false},
        TakenRow{"typed in vain", "", "=MAX(E2)", false, Outcome::Model, "", false},
        TakenRow{"nothing typed", "", "", false, Outcome::Model, "", false},
        TakenRow{"the watch sees a plain cell", "text", kTyped, true, Outcome::RangePlot, kTyped, true},
        TakenRow{"the watch sees a specification", kSpec, kTyped, true, Outcome::RangePlot, kSpec, false},
        TakenRow{"the watch sees the keyword", "Orvdata", kTyped, true, Outcome::Model, "", false}}) {
    SCOPED_TRACE(row.name);
    Desk desk;
    desk.Fill();
    desk.sheet.Set({50, 8}, row.cell);
    desk.Select({50, 8});
    desk.session.watchRun = row.watch;
    if (row.typed != nullptr) {
      desk.session.SpecEntered = 1;
      desk.session.SpecText = row.typed;
    }
    EXPECT_EQ(desk.Read(), row.outcome);
    EXPECT_EQ(desk.session.specification, row.specification);
    EXPECT_EQ(desk.session.SpecEntered, row.typedStays ? 1 : 0);
    EXPECT_EQ(desk.session.SpecText, row.typedStays ? row.typed : "");
    EXPECT_EQ(desk.session.LinkReady, 1);
    EXPECT_EQ(desk.model.SheetName, "Sheet1");
    EXPECT_EQ(desk.sheet.ActiveCell(), (CellPosition{50, 8}));
    EXPECT_TRUE(desk.dialogs.boxes.empty());
  }
}

TEST(CommExcel, AnotherKeywordMarksSpecifications) {
  struct Row {
    const char* keyword;
    const char* cell;
    bool taken;
  };
  for (const Row& row :
       {Row{"PLOT", "=PLOT(A2:C60)", true}, Row{"PLOT", "=MAX(A2:C60)", false}, Row{"", "=MAX(A2:C60)", false}}) {
    SCOPED_TRACE(row.cell);
    Desk desk;
    desk.Fill();
    desk.sheet.Set({50, 8}, row.cell);
    desk.Select({50, 8});
    desk.session.MainKeyword = row.keyword;
    EXPECT_EQ(desk.Read(), row.taken ? CommExcel::Outcome::RangePlot : CommExcel::Outcome::Model);
  }
}

TEST(CommExcel, AFileAtTheStartGoesBeforeTheSpreadsheet) {
  Desk desk;
  desk.Fill();
  desk.session.FileMode = 1;
  desk.session.SpecEntered = 1;
  desk.session.SpecText = "=MAX(A2:C60)";
  EXPECT_EQ(desk.Read(), CommExcel::Outcome::PlotFile);
  EXPECT_EQ(desk.sheet.attachCount, 0);
  EXPECT_EQ(desk.session.LinkReady, 0);
}

TEST(CommExcel, TheWatchAsksNothing) {
  Desk desk;
  desk.session.watchRun = true;
  desk.sheet.Set({5, 3}, "nothing");
  desk.Select({5, 3});
  EXPECT_EQ(desk.Read(), CommExcel::Outcome::Nothing);
  EXPECT_EQ(desk.session.LinkReady, 1);
  desk.sheet.applicationRunning = false;
  for (int k = 0; k < 3; ++k) EXPECT_EQ(desk.Read(), CommExcel::Outcome::Nothing);
  EXPECT_TRUE(desk.dialogs.boxes.empty());
  EXPECT_EQ(desk.session.attachFailures, 0);
  EXPECT_EQ(desk.session.SourceMode, 0);
  EXPECT_EQ(desk.session.ExcelState, 0);
}

TEST(CommExcel, ASpecificationOnAnotherSheetEndsTheSearchForAModel) {
  Desk desk;
  desk.sheet.Set({5, 3}, "nothing");
  desk.Select({5, 3});
  desk.dialogs.choices[kAbsent] = Answer::Retry;
  desk.dialogs.onAsk = [&](const std::string&) { desk.sheet.Set({5, 3}, "=MAX(A2:C60)"); };
  EXPECT_EQ(desk.Read(), CommExcel::Outcome::RangePlot);
  EXPECT_EQ(desk.session.specification, "=MAX(A2:C60)");
  EXPECT_EQ(desk.dialogs.boxes.size(), 1U);
}

TEST(CommExcel, TellsAnAbsentKeyword) {
  Desk desk;
  desk.sheet.Set({5, 3}, "nothing");
  desk.Select({5, 3});
  EXPECT_TRUE(desk.ReadFails());
  ASSERT_EQ(desk.dialogs.boxes.size(), 1U);
  const auto& box = desk.dialogs.boxes[0];
  EXPECT_TRUE(StartsWith(box.text, std::string(kAbsent) + "\r\"Model.xlsx")) << box.text;
  EXPECT_TRUE(Contains(box.text, "\\")) << box.text;
  EXPECT_TRUE(box.text.ends_with(
      "Sheet1\"\rPlease select an other sheet or other workbook, and click on OK, or End the program"))
      << box.text;
  EXPECT_EQ(box.buttons, Buttons::RetryCancel);
  EXPECT_EQ(desk.sheet.releaseCount, 1);
  EXPECT_EQ(desk.sheet.finds, (std::vector<std::string>{"Orvdata", "Orvdata"})) << "a second attempt follows";
}

TEST(CommExcel, StartsAgainOnRetry) {
  Desk desk;
  desk.Fill();
  desk.sheet.UseSheet("Other");
  desk.dialogs.choices[kAbsent] = Answer::Retry;
  desk.dialogs.onAsk = [&](const std::string&) { desk.sheet.UseSheet("Sheet1"); };
  EXPECT_EQ(desk.Read(), CommExcel::Outcome::Model);
  EXPECT_EQ(desk.model.SheetName, "Sheet1");
  EXPECT_EQ(desk.model.NumberOfPrimitives, 3);
  EXPECT_EQ(desk.sheet.attachCount, 2);
}

// Starting again asks first where the data come from, which the window may have changed meanwhile.
TEST(CommExcel, RetryMayLeadToThePlotFile) {
  Desk desk;
  desk.sheet.Set({5, 3}, "nothing");
  desk.dialogs.choices[kAbsent] = Answer::Retry;
  int absent = 0;
  desk.dialogs.onAsk = [&](const std::string& text) {
    if (!StartsWith(text, kAbsent)) return;
    desk.session.SourceMode = 1;
    if (++absent == 2) desk.dialogs.choices[kAbsent] = Answer::Cancel;
  };
  std::optional<CommExcel::Outcome> outcome;
  try {
    outcome = desk.Read();
  } catch (const ModelNotFound&) {
    outcome.reset();
  }
  EXPECT_EQ(outcome, CommExcel::Outcome::PlotFile);
  EXPECT_EQ(absent, 1);
}

TEST(CommExcel, TellsASpreadsheetWithoutWorkbook) {
  Desk desk;
  desk.sheet.windowCaptions.clear();
  EXPECT_TRUE(desk.ReadFails());
  EXPECT_EQ(desk.dialogs.Count(kAbsent), 1);
  EXPECT_EQ(desk.dialogs.Count(kAbortQuestion), 0);
}

// Makes the value of one model cell fail.
void FailAt(Desk& desk, CellPosition place, FailureNumber number) {
  desk.sheet.onOperation = [place, number](const std::string& name, CellPosition cell) {
    if (name == "Value" && cell == place) Raise(number);
  };
}

TEST(CommExcel, GoesOnSilentlyWithTheListedFailures) {
  for (const int number : {5, 52, 53, 75, 91, 448, 1004, 50290}) {
    SCOPED_TRACE(number);
    Desk desk;
    desk.Fill();
    desk.sheet.eventBreaks = 0;
    FailAt(desk, {7, 4}, static_cast<FailureNumber>(number));
    EXPECT_EQ(desk.Read(), CommExcel::Outcome::Model);
    EXPECT_TRUE(desk.dialogs.boxes.empty());
    EXPECT_EQ(desk.sheet.eventBreaks, 1);
    EXPECT_EQ(desk.model.ModelCells(1, 2), "rect 1 2 3");
    EXPECT_EQ(desk.model.ModelCells(2, 2), "");
    EXPECT_EQ(desk.model.ModelCells(3, 2), "x");
  }
}

TEST(CommExcel, AsksAfterAnyOtherFailure) {
  for (const int number : {6, 13, 55, 70, 76, 424}) {
    SCOPED_TRACE(number);
    Desk desk;
    desk.Fill();
    FailAt(desk, {7, 4}, static_cast<FailureNumber>(number));
    EXPECT_EQ(desk.Read(), CommExcel::Outcome::Model);
    ASSERT_EQ(desk.dialogs.boxes.size(), 1U);
    EXPECT_EQ(desk.dialogs.boxes[0].text, kAbortQuestion);
    EXPECT_EQ(desk.model.ModelCells(3, 2), "x");
    desk.dialogs.choices[kAbortQuestion] = Answer::Abort;
    EXPECT_THROW(desk.Read(), ProgramEnd);
  }
}

TEST(CommExcel, NamesASubscriptFailure) {
  Desk desk;
  desk.Fill();
  FailAt(desk, {7, 4}, FailureNumber::SubscriptOutOfRange);
  desk.Read();
  ASSERT_EQ(desk.dialogs.boxes.size(), 2U);
  EXPECT_EQ(desk.dialogs.boxes[0].text, "error CommExcel   ");
  EXPECT_EQ(desk.dialogs.boxes[0].buttons, Buttons::Ok);
  EXPECT_EQ(desk.dialogs.boxes[1].text, kAbortQuestion);
}

TEST(CommExcel, AsksAfterMoreThan100Failures) {
  struct Row {
    int failures;
    int asked;
  };
  for (const Row& row : {Row{99, 0}, Row{100, 0}, Row{101, 1}, Row{201, 1}, Row{202, 2}}) {
    SCOPED_TRACE(row.failures);
    Desk desk;
    desk.Fill();
    desk.sheet.busyOperations = row.failures;
    desk.dialogs.choices[kAbsent] = Answer::Retry;
    EXPECT_EQ(desk.Read(), CommExcel::Outcome::Model);
    EXPECT_EQ(desk.dialogs.Count(kManyErrors), row.asked);
    EXPECT_EQ(desk.sheet.busyOperations, 0);
    for (const auto& box : desk.dialogs.boxes) {
      if (box.text != kManyErrors) continue;
      EXPECT_EQ(box.title, "Errors");
      EXPECT_EQ(box.buttons, Buttons::AbortRetryIgnore);
    }
  }
}

TEST(CommExcel, EndsOnAbortAfterManyFailures) {
  Desk desk;
  desk.Fill();
  desk.sheet.busyOperations = 1000;
  desk.dialogs.choices[kAbsent] = Answer::Retry;
  desk.dialogs.choices[kManyErrors] = Answer::Abort;
  EXPECT_THROW(desk.Read(), ProgramEnd);
}

// One failed operation, whichever it is, never ends a reading otherwise than by the question for another sheet.
TEST(CommExcel, SurvivesAFailureAtAnyOperation) {
  Desk counting;
  counting.Fill();
  counting.Read();
  const int operations = counting.sheet.operations;
  ASSERT_GT(operations, 50);
  for (const FailureNumber number : {FailureNumber::SpreadsheetBusy, FailureNumber::ObjectVariableNotSet}) {
    for (int failing = 1; failing <= operations; ++failing) {
      SCOPED_TRACE(failing);
      Desk desk;
      desk.Fill();
      desk.sheet.onOperation = [&](const std::string&, CellPosition) {
        if (desk.sheet.operations == failing) Raise(number);
      };
      try {
        desk.Read();
        EXPECT_EQ(desk.dialogs.Count(kAbsent), 0);
      } catch (const ModelNotFound&) {
        EXPECT_EQ(desk.dialogs.Count(kAbsent), 1);
      }
    }
  }
}

TEST(CommExcel, SurvivesAbsurdCells) {
  Desk desk;
  desk.Fill();
  const std::string wild = std::string(30000, 'T') + " \xFF\xFE 1e999 " + std::string(5000, '-');
  for (int row = 4; row <= 45; ++row) {
    for (int column = 4; column <= 26; ++column) desk.sheet.Set({row, column}, wild);
  }
  EXPECT_EQ(desk.Read(), CommExcel::Outcome::Model);
  EXPECT_EQ(desk.model.NumberOfPrimitives, 3);
  EXPECT_EQ(CharacterCount(desk.model.ModelTitle), 96U);
}

// The directive cell may hold more numbers than any list.
TEST(CommExcel, SurvivesALongTableDirective) {
  Desk desk;
  desk.Fill();
  std::string line = "Table";
  for (int k = 0; k < 16000; ++k) line += " 7";
  desk.sheet.Set({5, 4}, line);
  EXPECT_NO_THROW(desk.Read());
}

TEST(RangeName, HasTheRightLetters) {
  testing::ScriptedDialogs dialogs;
  ErrorPrompt prompt(dialogs);
  struct Row {
    int row1, column1, row2, column2;
    const char* expected;
  };
  for (const Row& row : {Row{1, 1, 1, 1, "A1:A1"}, Row{2, 26, 10, 27, "Z2:AA10"}, Row{1, 51, 1, 52, "AY1:AZ1"},
                         Row{1, 53, 1, 78, "BA1:BZ1"}, Row{1, 79, 1000, 104, "CA1:CZ1000"},
                         Row{7, 255, 1048576, 256, "IU7:IV1048576"}}) {
    SCOPED_TRACE(row.expected);
    EXPECT_EQ(RangeName(row.row1, row.column1, row.row2, row.column2, prompt), row.expected);
  }
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST(RangeName, RefusesColumn257ButBuildsTheName) {
  struct Row {
    int column;
    const char* expected;
  };
  for (const Row& row : {Row{257, "A1:IW5"}, Row{702, "A1:ZZ5"}, Row{703, "A1:AAA5"}}) {
    SCOPED_TRACE(row.expected);
    testing::ScriptedDialogs dialogs;
    ErrorPrompt prompt(dialogs);
    dialogs.answers = {Answer::Retry};
    EXPECT_EQ(RangeName(1, 1, 5, row.column, prompt), row.expected);
    ASSERT_EQ(dialogs.boxes.size(), 2U);
    EXPECT_EQ(dialogs.boxes[0].text, "ERROR: last column shall be less than 255 ie iv");
    EXPECT_EQ(dialogs.boxes[0].title, "Retry   or    Voir Hallam");
    EXPECT_EQ(dialogs.boxes[1].text, kAbortQuestion);
    dialogs.answers = {Answer::Abort};
    EXPECT_THROW(RangeName(1, 1, 5, row.column, prompt), ProgramEnd);
  }
}

}  // namespace
}  // namespace orv
