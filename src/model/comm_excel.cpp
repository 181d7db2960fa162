#include "model/comm_excel.h"

#include <algorithm>

#include "model/sheet_grid.h"
#include "numerics/text.h"

namespace orv {
namespace {

const char* const kKeyword = "Orvdata";
const char* const kDatabaseKeyword = "DatabaseOrvValis";
const char* const kTable1 = "Table      1";
const char* const kTable9 = "Table      9";

const char* const kDemoWord = "DEMO";

constexpr int kSilentFailures[] = {5, 52, 53, 75, 91, 448, 1004, 50290};
constexpr int kManyFailures = 100;
constexpr int kRowsToTable1 = 50;
constexpr int kLastColumn = 256;

// One line of a text whose lines end with CR LF; `position` moves behind it. False at the end of the text.
bool NextLine(const std::string& text, std::size_t& position, std::string& line) {
  if (position >= text.size()) return false;
  const std::size_t end = text.find("\r\n", position);
  line = text.substr(position, end == std::string::npos ? end : end - position);
  position = end == std::string::npos ? text.size() : end + 2;
  return true;
}

}  // namespace

bool ModelData::DatabaseHasTables() const {
  for (int row = 1; row <= database.NumberOfDatabaseRows; ++row) {
    if (Contains(database.DatabaseCells(row, 1), "Table ")) return true;
  }
  return false;
}

std::string RangeName(int row1, int column1, int row2, int column2, ErrorPrompt& prompt) {
  if (std::max(column1, column2) > kLastColumn) {
    prompt.dialogs().Tell("ERROR: last column shall be less than 255 ie iv", "Retry   or    Voir Hallam",
                          Icon::Critical);
    prompt.AbortQuestion();
  }
  const auto name = [](int row, int column) {
    return CellName({std::clamp(row, 1, kSheetRows), std::clamp(column, 1, kSheetColumns)});
  };
  return name(row1, column1) + ":" + name(row2, column2);
}

bool CommExcel::Try(const std::function<void()>& statement) {
  try {
    statement();
    return true;
  } catch (const RuntimeFailure& failure) {
    lastFailure_ = static_cast<int>(failure.number());
    sheet_.LetEventsThrough();
    if (++session_->failures > kManyFailures) {
      session_->failures = 0;
      const Answer answer = prompt().dialogs().Ask("Multiple errors occurs, do you want to continue or abort?",
                                                   "Errors", Buttons::AbortRetryIgnore, Icon::Warning);
      if (answer == Answer::Abort) throw ProgramEnd{};
    }
    const bool silent =
        std::find(std::begin(kSilentFailures), std::end(kSilentFailures), lastFailure_) != std::end(kSilentFailures);
    if (!silent) {
      if (Contains(LowerCase(failure.description()), "ubsc")) prompt().dialogs().Tell("error CommExcel   ", "");
      prompt().AbortQuestion();
    }
    return false;
  }
}

std::string CommExcel::ValueAt(int row, int column) {
  std::string value;
  Try([&] { value = SoftBlanks(sheet_.Value({row, column})); });
  return value;
}

CommExcel::Outcome CommExcel::Read(ModelData& model, Session& session) {
  session_ = &session;
  session.specification.clear();
  if (UpperTrim(session.MainKeyword) == kDemoWord) session.SourceMode = session.ExcelState = 1;
  ForgetTitles(model);
  for (int reading = 1;; ++reading) {
    const Outcome source = FindSource(model, session);
    if (source != Outcome::Model) return source;
    FindDatabase(model);
    CountPrimitives(model);
    FindTable1(model);
    FindEndOfTable9(model);
    ReadModelCells(model);
    ReadDirectives(model);
    ReadDatabase(model);
    if (!model.DatabaseIsEmpty() || reading == 2) return Outcome::Model;
    prompt().dialogs().Tell("Comm Excel : Syncho with Excel malfunction. To re do loop ", "");
  }
}

// Attaches and looks for a specification, then for the keyword of a model, with another try as often as the user names
// another sheet.
CommExcel::Outcome CommExcel::FindSource(ModelData& model, Session& session) {
  while (session.SourceMode < 1 && session.FileMode != 1) {
    if (!Attach(session)) return session.watchRun ? Outcome::Nothing : Outcome::PlotFile;
    model.StartTime = clock_.Seconds();
    ReadNames(model);
    session.LinkReady = 1;
    if (TakeSpecification(session)) return Outcome::RangePlot;
    if (FindKeyword(model)) {
      session.ForgetSpecification();
      return Outcome::Model;
    }
    if (session.watchRun) return Outcome::Nothing;
    if (!AskForAnotherSheet(model)) {
      throw ModelNotFound{"The keyword " + std::string(kKeyword) + " is not on the sheet \"" + model.SheetName +
                          "\" of the workbook \"" + model.WorkbookName + "\"."};
    }
  }
  return Outcome::PlotFile;
}

bool CommExcel::IsSpecification(const std::string& text, const Session& session) {
  double scale = 1;
  std::string options;
  RangeTexts ranges;
  return ParseSpecification(text, scale, options, ranges, reader_, session.MainKeyword);
}

// A typed specification goes before that of the active cell, except when the watch saw the user go to a cell that means
// something by itself.
bool CommExcel::TakeSpecification(Session& session) {
  const bool cellIsModel = Contains(startFormula_, kKeyword);
  const bool cellIsSpec = !cellIsModel && IsSpecification(startFormula_, session);
  const bool typed = session.SpecEntered != 0 && IsSpecification(session.SpecText, session);
  if (typed && !(session.watchRun && (cellIsModel || cellIsSpec))) {
    session.specification = session.SpecText;
    return true;
  }
  if (!cellIsSpec) return false;
  session.specification = startFormula_;
  session.ForgetSpecification();
  return true;
}

void CommExcel::ForgetTitles(ModelData& model) {
  model.ModelTitle.clear();
  model.DatabaseTitle.clear();
  model.SheetName.clear();
  model.WorkbookName.clear();
}

bool CommExcel::Attach(Session& session) {
  for (;;) {
    try {
      sheet_.Attach();
      return true;
    } catch (const RuntimeFailure& failure) {
      lastFailure_ = static_cast<int>(failure.number());
      if (session.watchRun) return false;
      const bool again = ++session.attachFailures == 1 &&
                         prompt().dialogs().Ask(
                             "You can open your Excel speadsheet now, and after click on OK.  \n"
                             "Else, click on Cancel to show, if exist, the previous plot, or the original demo.",
                             "Excel not running!", Buttons::OkCancel, Icon::Question) == Answer::Ok;
      if (again) continue;
      session.SourceMode = session.ExcelState = 2;
      return false;
    }
  }
}

void CommExcel::ReadNames(ModelData& model) {
  std::string path;
  Try([&] { model.WorkbookName = sheet_.WindowCaption(sheet_.WindowCount()); });
  Try([&] { model.SheetName = sheet_.SheetName(); });
  Try([&] { path = sheet_.WorkbookPath(); });
  model.WorkbookFolder = path;
  if (!path.empty() && path.back() != '/' && path.back() != '\\') model.WorkbookFolder += '/';
  model.SheetTitle = LeftCharacters(model.WorkbookName + "\\" + model.SheetName + "    Path:" + path, 128);
  Try([&] { start_ = sheet_.ActiveCell(); });
  startFormula_.clear();
  Try([&] { startFormula_ = sheet_.Formula(start_); });
}

bool CommExcel::HoldsKeyword(CellPosition cell, bool& empty) {
  std::string formula;
  Try([&] { formula = sheet_.Formula(cell); });
  empty = formula.empty();
  return Contains(formula, kKeyword);
}

bool CommExcel::WalkLeft(CellPosition start) {
  for (const int rowOffset : {0, -1}) {
    const int row = start.row + rowOffset;
    for (int column = start.column - 1; row > 1 && column > 1; --column) {
      CellPosition cell{row, column};
      bool empty = false;
      bool found = HoldsKeyword(cell, empty);
      if (empty && column - 1 > 1) {
        cell.column = column - 1;
        found = HoldsKeyword(cell, empty);
      }
      if (found) return Try([&] { sheet_.Activate(cell); });
      if (empty) break;
    }
  }
  return false;
}

bool CommExcel::WalkUp(CellPosition start) {
  for (const int columnOffset : {0, -1, -2}) {
    const int column = start.column + columnOffset;
    for (int row = start.row - 1; row > 1 && column > 1; --row) {
      bool empty = false;
      const CellPosition cell{row, column};
      if (HoldsKeyword(cell, empty)) return Try([&] { sheet_.Activate(cell); });
      if (empty) break;
    }
  }
  return false;
}

// A second attempt on the whole sheet follows when the first fails for want of an object.
bool CommExcel::FindText(const std::string& text) {
  lastFailure_ = 0;
  if (Try([&] { sheet_.Find(text); })) return true;
  if (lastFailure_ != 91) return false;
  lastFailure_ = 0;
  return Try([&] { sheet_.Find(text); });
}

bool CommExcel::FindKeyword(ModelData& model) {
  const bool found = Contains(startFormula_, kKeyword) || WalkLeft(start_) || WalkUp(start_) || FindText(kKeyword);
  if (!found) return false;
  Try([&] { model.keyword = sheet_.ActiveCell(); });
  model.ModelId = LeftCharacters(ValueAt(model.keyword.row, model.keyword.column), 64);
  return true;
}

bool CommExcel::AskForAnotherSheet(const ModelData& model) {
  sheet_.Release();
  const Answer answer = prompt().dialogs().Ask(
      "Keyword not found in the current Excel sheet: \r\"" + model.WorkbookName + "\\" + model.SheetName +
          "\"\rPlease select an other sheet or other workbook, and click on OK, or End the program",
      "", Buttons::RetryCancel, Icon::Warning);
  return answer == Answer::Retry;
}

void CommExcel::FindDatabase(ModelData& model) {
  FindText(kDatabaseKeyword);
  Try([&] { model.databaseCell = sheet_.ActiveCell(); });
  FindText(kTable9);
  CellPosition table9 = model.databaseCell;
  Try([&] { table9 = sheet_.ActiveCell(); });
  model.Table9Row = table9.row;
  model.ModelTitle = TitleAt(model.keyword, kKeyword);
  model.DatabaseTitle = TitleAt(model.databaseCell, kDatabaseKeyword);
  Try([&] { sheet_.Activate(start_); });
}

std::string CommExcel::TitleAt(CellPosition cell, const std::string& keyword) {
  const auto fix = [](const std::string& text) { return LeftCharacters(Trim(text), 96); };
  std::string title = ValueAt(cell.row, cell.column);
  const std::size_t position = title.find(keyword);
  if (position != std::string::npos) title.erase(position, keyword.size());
  title = fix(title);
  if (cell.row > 1) title = fix(title + " " + Trim(ValueAt(cell.row - 1, cell.column)));
  for (int k = 1; k <= 10; ++k) {
    title.append(" ").append(Trim(ValueAt(cell.row, cell.column + k)));
    title = fix(title);
  }
  return title;
}

void CommExcel::CountPrimitives(ModelData& model) {
  int row = model.keyword.row + 1;
  while (!Trim(ValueAt(row, model.keyword.column)).empty()) ++row;
  model.NumberOfPrimitives = row - model.keyword.row - 1;
  const CellPosition scratch{row, model.keyword.column};
  Try([&] { reader_.setCommaDecimal(sheet_.PrintsDecimalComma(scratch) ? 1 : 0); });
}

void CommExcel::FindTable1(ModelData& model) {
  std::string wanted = kTable1;
  const int top = model.databaseCell.row;
  for (int row = top;; ++row) {
    if (Contains(ValueAt(row, model.databaseCell.column), wanted)) {
      model.Table1Row = row;
      return;
    }
    if (row - top < kRowsToTable1) continue;
    if (wanted == kTable1) {
      wanted = "NAME";
      row = top - 1;
      continue;
    }
    prompt().dialogs().Tell(
        "Stange behavior, please check that the right Execel sheet is currently selected and restart", "",
        Icon::Critical);
    prompt().AbortQuestion();
    model.Table1Row = top;
    return;
  }
}

void CommExcel::FindEndOfTable9(ModelData& model) {
  const int column = model.databaseCell.column;
  const int last = model.Table9Row + kTable9Lines;
  const std::string range = RangeName(model.Table9Row + 1, column, last, column, prompt());
  std::string text;
  Try([&] { text = sheet_.RangeText(range); });
  if (text.empty()) {
    prompt().dialogs().Tell(
        "Comm Excel : Syncho with Excel malfunction. To re do once automatically with doevents added. ", "Warning",
        Icon::Warning);
    sheet_.LetEventsThrough();
    Try([&] { text = sheet_.RangeText(range); });
    sheet_.LetEventsThrough();
  }
  Try([&] { sheet_.Activate(start_); });

  int row = model.Table9Row;
  std::size_t position = 0;
  std::string line;
  bool previousEmpty = false;
  for (;;) {
    ++row;
    if (!NextLine(text, position, line)) break;
    const bool empty = Trim(SoftBlanks(line)).empty();
    if (empty && previousEmpty) break;
    previousEmpty = empty;
  }
  if (row > last) {
    prompt().dialogs().Tell("DATABASE Table 9 size shall be updated to support more than " +
                                std::to_string(kTable9Lines) + " lines. Ask Maravo to Update",
                            "Ask Maravo for how to Update", Icon::Critical);
    prompt().AbortQuestion();
  }
  model.LastDatabaseRow = row;
  model.database.NumberOfDatabaseRows = std::max(0, model.LastDatabaseRow - model.Table1Row + 1);
}

void CommExcel::ReadModelCells(ModelData& model) {
  model.ModelCells.Size({Bounds{0, model.NumberOfPrimitives + kSpareModelRows}, Bounds{1, kModelColumns}});
  for (int column = 1; column <= kModelColumns; ++column) {
    for (int row = 1; row <= model.NumberOfPrimitives; ++row) {
      model.ModelCells(row, column) = RepairMinus(ValueAt(model.keyword.row + row, model.keyword.column + column - 1));
    }
  }
}

void CommExcel::ReadDirectives(ModelData& model) {
  model.DirectiveLine = Trim(ValueAt(model.keyword.row, model.keyword.column + 1));
  std::vector<std::string> captured;
  model.directives = ParseDirectives(model.DirectiveLine, reader_, captured);
  for (const std::string& text : captured) prompt()(text);
  if (model.directives.SpectrumMode == 1) {
    prompt().dialogs().Ask("Warning for special case:  Spectrum computations only Do you want to continue?",
                           "Warning for special case", Buttons::OkCancel, Icon::Warning);
  }
  model.constants = ConstantsOf(model.directives);
}

void CommExcel::ReadDatabase(ModelData& model) {
  Database& database = model.database;
  const int rows = database.NumberOfDatabaseRows;
  database.DatabaseCells.Size({Bounds{0, rows}, Bounds{0, kDatabaseColumns}});
  database.DatabaseLines.assign(static_cast<std::size_t>(rows) + 1, "");
  const int column = model.databaseCell.column;
  database.firstRow = model.Table1Row;
  database.firstColumn = column;
  std::string text;
  if (rows > 0) {
    const std::string range =
        RangeName(model.Table1Row, column, model.LastDatabaseRow, column + kDatabaseColumns - 1, prompt());
    Try([&] { text = SoftBlanks(sheet_.RangeText(range)); });
  }
  std::size_t position = 0;
  std::string line;
  for (int row = 1; row <= rows && NextLine(text, position, line); ++row) {
    database.DatabaseLines[static_cast<std::size_t>(row)] = line;
    std::size_t begin = 0;
    for (int k = 1; k <= kDatabaseColumns && begin <= line.size(); ++k) {
      const std::size_t tab = line.find('\t', begin);
      const std::size_t end = tab == std::string::npos ? line.size() : tab;
      database.DatabaseCells(row, k) = Trim(std::string_view(line).substr(begin, end - begin));
      begin = end + 1;
    }
  }
  Try([&] { sheet_.Activate(start_); });
}

}  // namespace orv
