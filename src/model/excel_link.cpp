#include "model/excel_link.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <functional>
#include <thread>

#include "model/excel_values.h"
#include "model/sheet_grid.h"
#include "numerics/failure.h"

namespace orv {
namespace {

const char* const kProgram = "Excel.Application";

// Excel's own numbers.
constexpr double kDecimalSeparator = 3;  // of International
constexpr double kInFormulas = -4123;
constexpr double kPartOfCell = 2;
constexpr double kByRows = 1;
constexpr double kForward = 1;

constexpr std::int64_t kCellsOfOneCall = std::int64_t{1} << 20;  // bounds the memory that a call takes

AutomationReference Child(AutomationObject& object, const std::string& member) {
  return AnswerObject(object.Get(member));
}

// A user who begins to type in a cell makes Excel refuse calls for a while. What must not be left undone is tried for
// about a second.
void Insist(const std::function<void()>& statement) {
  constexpr int kAttempts = 40;
  constexpr std::chrono::milliseconds kPause{25};
  for (int attempt = 1;; ++attempt) {
    try {
      statement();
      return;
    } catch (const RuntimeFailure& failure) {
      if (failure.number() != FailureNumber::SpreadsheetBusy || attempt == kAttempts) throw;
    }
    std::this_thread::sleep_for(kPause);
  }
}

// What a cell held, to be put back. A text constant may read as a number or a formula when it is written again; it is
// then given the prefix that makes it a text.
class KeptCell {
 public:
  explicit KeptCell(AutomationReference cell)
      : cell_(std::move(cell)),
        formula_(AnswerText(cell_->Get("Formula"))),
        isFormula_(cell_->Get("HasFormula") == AutomationValue(true)),
        value_(cell_->Get("Value2")),
        hasPrefix_(cell_->Get("PrefixCharacter") == AutomationValue(std::string("'"))) {}

  void Write(const std::string& formulaR1C1) {
    cell_->Put("FormulaR1C1", formulaR1C1);
    changed_ = true;
  }

  AutomationValue Result() { return cell_->Get("Value2"); }
  bool changed() const { return changed_; }

  void PutBack() {
    if (!changed_) return;
    if (isFormula_) {
      Insist([&] { cell_->Put("Formula", formula_); });
    } else if (std::holds_alternative<std::string>(value_)) {
      PutBackText();
    } else if (std::holds_alternative<std::monostate>(value_)) {
      Insist([&] { cell_->Call("ClearContents"); });
    } else if (std::holds_alternative<AutomationError>(value_)) {
      Insist([&] { cell_->Put("Formula", formula_); });
    } else {
      Insist([&] { cell_->Put("Value2", value_); });
    }
  }

 private:
  void PutBackText() {
    const std::string& text = std::get<std::string>(value_);
    if (!hasPrefix_) {
      Insist([&] { cell_->Put("Value2", value_); });
      bool same = false;
      Insist([&] { same = cell_->Get("Value2") == value_ && cell_->Get("HasFormula") == AutomationValue(false); });
      if (same) return;
    }
    Insist([&] { cell_->Put("Value2", "'" + text); });
  }

  AutomationReference cell_;
  std::string formula_;
  bool isFormula_;
  AutomationValue value_;
  bool hasPrefix_;
  bool changed_ = false;
};

// The two cells of the decimal test. They and the workbook's mark of being saved are put back when the test is over,
// however it ends. What cannot be put back because Excel went away or stays busy is left.
class ScratchCells {
 public:
  ScratchCells(AutomationReference workbook, AutomationReference upper, AutomationReference lower)
      : workbook_(std::move(workbook)),
        wasSaved_(workbook_->Get("Saved") == AutomationValue(true)),
        upper_(std::move(upper)),
        lower_(std::move(lower)) {}
  ~ScratchCells() {
    const bool changed = upper_.changed() || lower_.changed();
    Quietly([&] { lower_.PutBack(); });
    Quietly([&] { upper_.PutBack(); });
    if (wasSaved_ && changed) Quietly([&] { Insist([&] { workbook_->Put("Saved", true); }); });
  }
  ScratchCells(const ScratchCells&) = delete;
  ScratchCells& operator=(const ScratchCells&) = delete;

  // Failure 13 when the cells do not compute, as those that hold texts whatever is written.
  bool PrintComma() {
    upper_.Write("=1/10");
    lower_.Write("=ISERR(SEARCH(\",\",+R[-1]C))");
    AnswerNumber(upper_.Result());
    const AutomationValue withoutComma = lower_.Result();
    if (!std::holds_alternative<bool>(withoutComma)) Raise(FailureNumber::TypeMismatch);
    return !std::get<bool>(withoutComma);
  }

 private:
  static void Quietly(const std::function<void()>& statement) {
    try {
      statement();
    } catch (const RuntimeFailure&) {
      return;
    }
  }

  AutomationReference workbook_;
  bool wasSaved_;
  KeptCell upper_;
  KeptCell lower_;
};

}  // namespace

AutomationObject& ExcelLink::Application() {
  if (application_ == nullptr) Raise(FailureNumber::ObjectVariableNotSet);
  return *application_;
}

AutomationReference ExcelLink::Workbook() {
  return Child(Application(), "ActiveWorkbook");
}

AutomationReference ExcelLink::Sheet() {
  return Child(Application(), "ActiveSheet");
}

AutomationReference ExcelLink::Window(int window) {
  return AnswerObject(Child(Application(), "Windows")->Get("Item", {static_cast<double>(window)}));
}

AutomationReference ExcelLink::Cell(CellPosition cell) {
  const AutomationReference sheet = Sheet();
  if (!InsideSheet(cell)) Raise(FailureNumber::ApplicationDefined);
  return AnswerObject(
      Child(*sheet, "Cells")->Get("Item", {static_cast<double>(cell.row), static_cast<double>(cell.column)}));
}

void ExcelLink::Attach() {
  application_ = nullptr;
  application_ = source_(kProgram);
  decimalSeparator_ = locale_.decimalSeparator;
  try {
    const std::string separator = AnswerText(application_->Get("International", {kDecimalSeparator}));
    if (!separator.empty()) decimalSeparator_ = separator;
  } catch (const RuntimeFailure&) {
    return;  // attached all the same: a busy Excel, or one without a workbook, does not tell
  }
}

void ExcelLink::Release() {
  application_ = nullptr;
}

std::string ExcelLink::WorkbookPath() {
  std::string path = AnswerText(Workbook()->Get("Path"));
  if (path.ends_with('\\') || path.ends_with('/')) path.pop_back();
  return path;
}

int ExcelLink::WindowCount() {
  Workbook();
  return AnswerCount(Child(Application(), "Windows")->Get("Count"));
}

std::string ExcelLink::WindowCaption(int window) {
  if (window < 1 || window > WindowCount()) Raise(FailureNumber::SubscriptOutOfRange);
  return AnswerText(Window(window)->Get("Caption"));
}

std::string ExcelLink::SheetName() {
  return AnswerText(Sheet()->Get("Name"));
}

CellPosition ExcelLink::ActiveCell() {
  const AutomationReference cell = Child(*Window(1), "ActiveCell");
  return {AnswerCount(cell->Get("Row")), AnswerCount(cell->Get("Column"))};
}

void ExcelLink::Activate(CellPosition cell) {
  Cell(cell)->Call("Activate");
}

std::string ExcelLink::Formula(CellPosition position) {
  const AutomationReference cell = Cell(position);
  std::string formula = AnswerText(cell->Get("Formula"));
  // Of a constant Excel gives the text with a point whatever its separator.
  if (formula.empty() || formula.starts_with('=')) return formula;
  return ValueText(cell->Get("Value2"), decimalSeparator_);
}

std::string ExcelLink::Value(CellPosition cell) {
  return ValueText(Cell(cell)->Get("Value2"), decimalSeparator_);
}

void ExcelLink::Find(const std::string& part) {
  const AutomationReference sheet = Sheet();
  if (part.empty()) Raise(FailureNumber::ObjectVariableNotSet);
  const AutomationReference active = Child(*Window(1), "ActiveCell");
  const AutomationValue found =
      Child(*sheet, "Cells")
          ->Call("Find", {SearchPattern(part), active, kInFormulas, kPartOfCell, kByRows, kForward, false});
  AnswerObject(found)->Call("Activate");
}

void ExcelLink::CutToUsedPart(CellPosition first, CellPosition& last) {
  const AutomationReference used = Child(*Sheet(), "UsedRange");
  const int lastRow = AnswerCount(used->Get("Row")) + AnswerCount(Child(*used, "Rows")->Get("Count")) - 1;
  const int lastColumn = AnswerCount(used->Get("Column")) + AnswerCount(Child(*used, "Columns")->Get("Count")) - 1;
  last.row = std::max(first.row, std::min(last.row, lastRow));
  last.column = std::max(first.column, std::min(last.column, lastColumn));
}

std::string ExcelLink::RangeText(const std::string& a1Range) {
  const AutomationReference sheet = Sheet();
  CellRange range = ParseA1Range(a1Range);
  const auto width = [&] { return std::int64_t{range.last.column - range.first.column + 1}; };
  const auto size = [&] { return width() * (range.last.row - range.first.row + 1); };
  if (size() > SheetGrid::kLargestCopy) CutToUsedPart(range.first, range.last);
  if (size() > SheetGrid::kLargestCopy) Raise(FailureNumber::ApplicationDefined);
  const int rows = static_cast<int>(std::max<std::int64_t>(1, kCellsOfOneCall / width()));
  std::string text;
  for (int row = range.first.row; row <= range.last.row; row += rows) {
    const CellPosition end{std::min(row + rows - 1, range.last.row), range.last.column};
    const std::string part = CellName({row, range.first.column}) + ":" + CellName(end);
    AppendRangeText(text, AnswerObject(sheet->Get("Range", {part}))->Get("Value2"), decimalSeparator_);
  }
  return text;
}

bool ExcelLink::PrintsDecimalComma(CellPosition scratch) {
  const AutomationReference workbook = Workbook();
  try {
    ScratchCells cells(workbook, Cell(scratch), Cell({scratch.row + 1, scratch.column}));
    return cells.PrintComma();
  } catch (const RuntimeFailure& failure) {
    const bool refused =
        failure.number() == FailureNumber::ApplicationDefined || failure.number() == FailureNumber::TypeMismatch;
    if (!refused) throw;
  }
  return decimalSeparator_ == ",";
}

SheetSnapshot ExcelLink::Snapshot() {
  SheetSnapshot snapshot = Spreadsheet::Snapshot();
  snapshot.applicationName = AnswerText(Application().Get("Name"));
  snapshot.workbookName = AnswerText(Workbook()->Get("Name"));
  return snapshot;
}

bool ExcelLink::Visible() {
  return Application().Get("Visible") == AutomationValue(true);
}

void ExcelLink::SetVisible(bool visible) {
  Application().Put("Visible", visible);
}

void ExcelLink::Quit() {
  const AutomationReference application = application_;
  Application().Call("Quit");
  Release();
}

}  // namespace orv
