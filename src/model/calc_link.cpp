#include "model/calc_link.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <system_error>

#include "model/formula_text.h"
#include "model/sheet_grid.h"
#include "model/workbook_contents.h"
#include "numerics/installation.h"
#include "numerics/paths.h"
#include "numerics/text.h"

namespace orv {
namespace {

constexpr std::size_t kLongestAnswer = std::size_t{256} << 20U;
constexpr int kCellsOfRequest = 65'536;
constexpr std::chrono::milliseconds kLeastPatience{50};
constexpr const char* kNonsense = "The helper program of the link to Calc answers nonsense.";

// The longest piece of a text that reads the same in every notation of a formula or number; empty when there is none.
std::string PlainPiece(std::string_view text) {
  std::string_view best;
  for (std::size_t k = 0; k < text.size();) {
    std::size_t end = k;
    bool letter = false;
    for (; end < text.size(); ++end) {
      const auto c = static_cast<unsigned char>(text[end]);
      const bool isLetter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c >= 0x80;
      if (!isLetter && c != ' ' && !(c >= '0' && c <= '9')) break;
      letter = letter || (isLetter && c != 'e' && c != 'E');
    }
    if (letter && end - k > best.size()) best = text.substr(k, end - k);
    k = end + 1;
  }
  return std::string(best);
}

}  // namespace

std::filesystem::path FindCalcHelper() {
  const std::string program = ProgramFile();
  return program.empty() ? std::filesystem::path() : FindCalcHelper(PathOf(program).parent_path());
}

std::filesystem::path FindCalcHelper(const std::filesystem::path& programFolder) {
  for (const char* folder : {".", "../libexec/orvvalis"}) {
    std::filesystem::path helper = (programFolder / folder / "orv_calc_helper").lexically_normal();
    std::error_code error;
    if (std::filesystem::is_regular_file(helper, error)) return helper;
  }
  return {};
}

CalcLink::CalcLink(CalcLinkSettings settings)
    : settings_(std::move(settings)),
      deadline_(settings_.runDeadline),
      patience_(settings_.runDeadline),
      helper_(kLongestAnswer) {}

CalcLink::~CalcLink() = default;

void CalcLink::StartHelper() {
  if (helper_.Running()) return;
  if (settings_.helper.empty()) {
    Raise(FailureNumber::CannotCreateObject, "This program was built without the link to LibreOffice Calc.");
  }
  const Clock::time_point now = Clock::now();
  if (silentHelpers_ > 0 && now < noStartBefore_) {
    Raise(FailureNumber::CannotCreateObject, "The helper program of the link to Calc does not work.");
  }
  answered_ = false;
  owedId_ = 0;
  if (!helper_.Start(settings_.helper, {settings_.door})) {
    HelperLost("The helper program of the link to Calc cannot be started: " + settings_.helper.string());
  }
}

void CalcLink::HelperLost(const std::string& reason) {
  helper_.Kill();
  attached_ = false;
  owedId_ = 0;
  silentHelpers_ = answered_ && reason != kNonsense ? 0 : std::min(silentHelpers_ + 1, 4);
  noStartBefore_ = Clock::now() + settings_.restartPause * (1 << std::max(0, silentHelpers_ - 1));
  Raise(FailureNumber::CannotCreateObject, reason);
}

void CalcLink::TimedOut() {
  patience_ = std::max(patience_ / 2, kLeastPatience);
  Raise(FailureNumber::SpreadsheetBusy);
}

bool CalcLink::AwaitAnswer(std::int64_t id, Clock::time_point until, Json& answer) {
  while (const std::optional<std::string> line = helper_.Receive(until)) {
    answer = Json::parse(*line, nullptr, false);
    const bool sound = answer.is_object() && answer.contains("id") && answer["id"].is_number_integer();
    const std::int64_t answered = sound ? answer["id"].get<std::int64_t>() : lastId_ + 1;
    if (answered > lastId_ || answered < 1) HelperLost(kNonsense);
    answered_ = true;
    silentHelpers_ = 0;
    if (answered == owedId_) owedId_ = 0;
    if (answered == id) return true;
  }
  if (!helper_.Running()) HelperLost("The helper program of the link to Calc has ended.");
  return false;
}

void CalcLink::AwaitOverdue(std::chrono::milliseconds wait) {
  if (owedId_ == 0) return;
  Json late;
  if (AwaitAnswer(owedId_, Clock::now() + wait, late)) return;
  if (Clock::now() - owedSince_ < settings_.hangLimit) TimedOut();
  helper_.Kill();
  owedId_ = 0;
  attached_ = false;
  Raise(FailureNumber::SpreadsheetBusy, "Calc does not answer.");
}

CalcLink::Json CalcLink::Call(Json request, std::chrono::milliseconds deadline, std::chrono::milliseconds overdueWait) {
  StartHelper();
  AwaitOverdue(overdueWait);
  const std::int64_t id = ++lastId_;
  request["id"] = id;
  const Clock::time_point until = Clock::now() + deadline;
  if (!helper_.Send(request.dump(-1, ' ', false, Json::error_handler_t::replace), until)) {
    HelperLost("The helper program of the link to Calc has ended.");
  }
  Json answer;
  if (!AwaitAnswer(id, until, answer)) {
    owedId_ = id;
    owedSince_ = Clock::now();
    TimedOut();
  }
  patience_ = deadline_;
  if (!answer.contains("failure")) return answer;
  const auto number = static_cast<FailureNumber>(Member<int>(answer, "failure"));
  if (number == FailureNumber::CannotCreateObject) attached_ = false;
  Raise(number, Member<std::string>(answer, "text"));
}

CalcLink::Json CalcLink::Ask(Json request) {
  const std::chrono::milliseconds patience = std::min(patience_, deadline_);
  return Call(std::move(request), patience, patience);
}

// A member of an answer; one that is missing or of another kind tells a helper that is not this program's.
template <typename T>
T CalcLink::Member(const Json& answer, const char* name) {
  try {
    return answer.at(name).get<T>();
  } catch (const Json::exception&) {
    HelperLost(kNonsense);
  }
}

void CalcLink::NeedAttached() const {
  if (!attached_) Raise(FailureNumber::ObjectVariableNotSet);
}

void CalcLink::NeedInside(CellPosition cell) const {
  NeedAttached();
  if (!InsideSheet(cell)) Raise(FailureNumber::ApplicationDefined);
}

void CalcLink::Attach() {
  attached_ = false;
  patience_ = deadline_;
  if (owedId_ != 0 && Clock::now() - owedSince_ >= settings_.hangLimit) helper_.Kill();
  const Json answer = Call({{"do", "attach"}}, deadline_, deadline_);
  const bool workbook = Member<bool>(answer, "workbook");
  active_ = {Member<int>(answer, "row"), Member<int>(answer, "column")};
  separator_ = Separator(answer);
  if (!InsideSheet(active_)) active_ = {};
  attached_ = workbook;
}

void CalcLink::Release() {
  attached_ = false;
  if (!helper_.Running() || owedId_ != 0) return;
  try {
    Call({{"do", "release"}}, settings_.watchDeadline, {});
  } catch (const RuntimeFailure&) {
    // What it held goes with the next Attach.
  }
}

std::string CalcLink::WorkbookPath() {
  NeedAttached();
  return Member<std::string>(Ask({{"do", "names"}}), "folder");
}

int CalcLink::WindowCount() {
  NeedAttached();
  return static_cast<int>(Member<std::vector<std::string>>(Ask({{"do", "names"}}), "captions").size());
}

std::string CalcLink::WindowCaption(int window) {
  NeedAttached();
  const auto captions = Member<std::vector<std::string>>(Ask({{"do", "names"}}), "captions");
  if (window < 1 || window > static_cast<int>(captions.size())) Raise(FailureNumber::SubscriptOutOfRange);
  return captions[static_cast<std::size_t>(window) - 1];
}

std::string CalcLink::SheetName() {
  NeedAttached();
  return Member<std::string>(Ask({{"do", "names"}}), "sheet");
}

CellPosition CalcLink::ActiveCell() {
  NeedAttached();
  return active_;
}

void CalcLink::Activate(CellPosition cell) {
  NeedInside(cell);
  active_ = cell;
}

std::string CalcLink::Formula(CellPosition cell) {
  NeedInside(cell);
  return FormulaText(Ask({{"do", "formula"}, {"row", cell.row}, {"column", cell.column}}), separator_);
}

std::string CalcLink::Value(CellPosition cell) {
  NeedInside(cell);
  const Json answer = Ask({{"do", "range"}, {"row", cell.row}, {"column", cell.column}, {"rows", 1}, {"columns", 1}});
  return CellText(Cells(answer, 1).front(), separator_);
}

bool CalcLink::PrintsDecimalComma(CellPosition) {
  NeedAttached();
  return separator_ == ",";
}

const CalcLink::Json& CalcLink::Cells(const Json& answer, std::size_t count) {
  const auto cells = answer.find("cells");
  if (cells == answer.end() || !cells->is_array() || cells->size() != count) HelperLost(kNonsense);
  return *cells;
}

std::string CalcLink::CellText(const Json& value, const std::string& separator) {
  if (value.is_null()) return {};
  if (value.is_string()) return value.get<std::string>();
  if (!value.is_number()) HelperLost(kNonsense);
  return LocalNumberText(value.get<double>(), separator);
}

std::string CalcLink::FormulaText(const Json& answer, const std::string& separator) {
  const Json& cell = Cells(answer, 1).front();
  const std::string text = CellText(cell, separator);
  // A text may begin with "=" as well; the answer tells.
  return answer.value("formula", false) ? FormulaFromXlsx(text) : text;
}

void CalcLink::Find(const std::string& part) {
  NeedAttached();
  if (part.empty()) Raise(FailureNumber::ObjectVariableNotSet);
  using Positions = std::vector<std::pair<int, int>>;
  Positions found = Member<Positions>(Ask({{"do", "find"}, {"text", PlainPiece(part)}}), "found");
  const std::pair<int, int> from = {active_.row, active_.column};
  std::rotate(found.begin(), std::upper_bound(found.begin(), found.end(), from), found.end());
  const std::string wanted = LowerCase(part);
  for (const auto& [row, column] : found) {
    const CellPosition cell{row, column};
    if (!InsideSheet(cell) || !Contains(LowerCase(Formula(cell)), wanted)) continue;
    active_ = cell;
    return;
  }
  Raise(FailureNumber::ObjectVariableNotSet);
}

std::string CalcLink::Separator(const Json& answer) {
  const auto printed = Member<std::string>(answer, "separator");
  return settings_.decimalSeparator.empty() ? printed : settings_.decimalSeparator;
}

CellPosition CalcLink::LastFilled() {
  const Json answer = Ask({{"do", "used"}});
  return {Member<int>(answer, "row"), Member<int>(answer, "column")};
}

std::string CalcLink::RangeText(const std::string& a1Range) {
  NeedAttached();
  CellRange range = ParseA1Range(a1Range);
  const auto size = [](const CellRange& part) {
    return std::int64_t{part.last.row - part.first.row + 1} * (part.last.column - part.first.column + 1);
  };
  CellRange filled = range;
  if (size(range) > kCellsOfRequest) {
    const CellPosition used = LastFilled();
    filled.last = {std::min(range.last.row, used.row), std::min(range.last.column, used.column)};
    if (size(range) > SheetGrid::kLargestCopy) {
      range.last = {std::max(range.first.row, filled.last.row), std::max(range.first.column, filled.last.column)};
      if (size(range) > SheetGrid::kLargestCopy) Raise(FailureNumber::ApplicationDefined);
    }
  }
  std::string text;
  const int columns = std::max(0, filled.last.column - filled.first.column + 1);
  const auto missing = static_cast<std::size_t>(range.last.column - range.first.column + 1 - std::max(columns, 1));
  const std::string rowEnd = std::string(missing, '\t') + "\r\n";
  int row = range.first.row;
  while (columns > 0 && row <= filled.last.row) {
    row += AppendRows(text, {row, range.first.column}, filled.last.row - row + 1, columns, rowEnd);
  }
  for (; row <= range.last.row; ++row) text += rowEnd;
  return text;
}

// The rows of one answer, as many as the helper gives at once.
int CalcLink::AppendRows(std::string& text, CellPosition first, int rows, int columns, const std::string& rowEnd) {
  const int most = std::min(rows, std::max(1, kCellsOfRequest / columns));
  const Json answer =
      Ask({{"do", "range"}, {"row", first.row}, {"column", first.column}, {"rows", most}, {"columns", columns}});
  const int given = Member<int>(answer, "rows");
  if (given < 1 || given > most) HelperLost(kNonsense);
  int column = 0;
  for (const Json& cell : Cells(answer, static_cast<std::size_t>(given) * static_cast<std::size_t>(columns))) {
    AppendAsOneLine(text, CellText(cell, separator_));
    if (++column < columns) {
      text += '\t';
    } else {
      text += rowEnd;
      column = 0;
    }
  }
  return given;
}

SheetSnapshot CalcLink::Snapshot() {
  const Json answer = Call({{"do", "snapshot"}}, settings_.watchDeadline, {});
  SheetSnapshot snapshot;
  snapshot.applicationName = Member<std::string>(answer, "application");
  snapshot.workbookName = Member<std::string>(answer, "workbook");
  snapshot.windowCount = Member<int>(answer, "windows");
  snapshot.windowCaption = Member<std::string>(answer, "caption");
  snapshot.sheetName = Member<std::string>(answer, "sheet");
  snapshot.activeCell = {Member<int>(answer, "row"), Member<int>(answer, "column")};
  snapshot.formula = FormulaText(answer, Separator(answer));
  return snapshot;
}

}  // namespace orv
