#include "window/excel_watch.h"

#include <algorithm>
#include <array>
#include <functional>

#include "numerics/text.h"

namespace orv {
namespace {

const char* const kModelKeyword = "Orvdata";

constexpr double kAbsentPause = 0.75;  // seconds
constexpr double kFirstBusyPause = 0.125;
constexpr double kLongestBusyPause = 1;
constexpr int kRepeats = 2;  // of a look that failed in the automation itself

constexpr int kNoAnswer = 91;
constexpr int kAbsent = 429;
constexpr int kCallRejected = -2147418111;
constexpr std::array<int, 2> kBusy = {50290, kCallRejected};
constexpr std::array<int, 3> kDisconnected = {424, -2147417848, -2147023170};
constexpr std::array<int, 2> kGoOn = {53, 52};
constexpr std::array<int, 3> kAutomation = {430, 432, 440};

int NumberOf(const RuntimeFailure& failure) {
  return static_cast<int>(failure.number());
}

template <std::size_t size>
bool IsOneOf(int number, const std::array<int, size>& numbers) {
  return std::find(numbers.begin(), numbers.end(), number) != numbers.end();
}

// A failure of the connection that has no meaning of its own: those are negative, or one of a few.
bool IsAutomation(int number) {
  if (IsOneOf(number, kBusy) || IsOneOf(number, kDisconnected)) return false;
  return number < 0 || IsOneOf(number, kAutomation);
}

// The spreadsheet was not there, or did not take the call.
bool IsOfLink(int number) {
  return number == kAbsent || number == kNoAnswer || IsOneOf(number, kBusy) || IsOneOf(number, kDisconnected) ||
         IsAutomation(number);
}

// Sets a value while it lives.
template <class Value>
class Held {
 public:
  Held(Value& place, Value value, Value after) : place_(place), after_(after) { place_ = value; }
  ~Held() { place_ = after_; }
  Held(const Held&) = delete;
  Held& operator=(const Held&) = delete;

 private:
  Value& place_;
  Value after_;
};

}  // namespace

bool ExcelWatch::HasKeyword(std::string_view formula) const {
  return !session_.MainKeyword.empty() && Contains(UpperTrim(formula), UpperTrim(session_.MainKeyword));
}

// What a cell without a specification stands for: the typed one. The keyword cell of a model stands for itself.
std::string ExcelWatch::Mapped(const std::string& formula) const {
  const bool itself = HasKeyword(formula) || Contains(formula, kModelKeyword);
  return itself ? formula : session_.SpecText;
}

void ExcelWatch::Rearm() {
  WatchFormula_ = kWatchFormulaStart;
  WatchCandidate_ = kWatchCandidateStart;
  WatchArmed_ = 1;
}

WatchPass ExcelWatch::Tick() {
  if (inPass_ || clock_.Seconds() < notBefore_) return WatchPass::Waiting;
  return Pass();
}

WatchPass ExcelWatch::Pass() {
  if (inPass_) return WatchPass::Inactive;
  ExcelWatchBusy_ = 0;
  const bool ready = session_.LinkReady == 1 || wanted_;
  if (!ready || RunBusy_ == 1 || session_.ExcelState >= 1 || session_.FileMode == 1 || fileChosen_) {
    return WatchPass::Inactive;
  }
  const Held<bool> inside(inPass_, true, false);
  const Held<int> notBusyAtTheEnd(ExcelWatchBusy_, 0, 0);
  try {
    const SheetSnapshot cell = Look();
    toldNumber_ = 0;
    busyPause_ = 0;
    NoteSheet(cell);
    return Follow(cell.formula);
  } catch (const RuntimeFailure& failure) {
    return Fail(failure);
  }
}

// Attaches and looks at the active cell. A look that fails in the automation itself is repeated; then there is no
// spreadsheet.
SheetSnapshot ExcelWatch::Look() {
  for (int repeats = 0;; ++repeats) {
    try {
      return sheet_.Snapshot();
    } catch (const RuntimeFailure& failure) {
      if (!IsAutomation(NumberOf(failure))) throw;
      if (repeats == kRepeats) Raise(FailureNumber::CannotCreateObject);
    }
  }
}

// Another sheet or window begins anew.
void ExcelWatch::NoteSheet(const SheetSnapshot& cell) {
  const bool moved = cell.sheetName != ExcelSheetName_ || cell.windowCaption != ExcelWindowCaption_;
  if (moved) {
    ExcelSheetName_ = cell.sheetName;
    ExcelWindowCaption_ = cell.windowCaption;
    Rearm();
  }
  if (state_ != LinkState::Following) {
    Enter(LinkState::Following);
  } else if (moved) {
    host_.LinkChanged();
  }
}

WatchPass ExcelWatch::Follow(const std::string& formula) {
  if (WatchFormula_ == formula) {
    WatchArmed_ = 0;
    return WatchPass::Unchanged;
  }
  if (HasKeyword(formula)) return RunNow(formula);
  const bool begins = WatchArmed_ == 1 && WatchCandidate_ == kWatchCandidateStart;
  if (begins) return RunNow(Mapped(formula));
  if (WatchArmed_ == 0 || WatchCandidate_ != formula) {
    // Cells that are only passed over are let go by.
    WatchCandidate_ = formula;
    WatchArmed_ = 1;
    return WatchPass::Armed;
  }
  const std::string mapped = Mapped(formula);
  if (mapped == WatchFormula_) {
    WatchArmed_ = 0;
    return WatchPass::Unchanged;
  }
  return RunNow(mapped);
}

WatchPass ExcelWatch::RunNow(const std::string& formula) {
  const auto actedOn = [&] {
    WatchFormula_ = formula;
    WatchArmed_ = 0;
    wanted_ = false;
  };
  const std::array<int, 2> shown = {lists_.PlotLoaded, lists_.PlotNormalised};
  const auto stays = [&] {
    lists_.PlotLoaded = shown[0];
    lists_.PlotNormalised = shown[1];
  };
  lists_.PlotLoaded = 0;
  lists_.PlotNormalised = 0;
  session_.ExcelState = 0;
  try {
    if (!CallCommExcel(!byMenu_)) {
      stays();
      PauseBusy();
      Enter(LinkState::Busy);
      return WatchPass::Failed;
    }
  } catch (const RuntimeFailure& failure) {
    const int number = NumberOf(failure);
    if (IsOfLink(number)) {
      stays();
      throw;
    }
    actedOn();  // a run that failed by itself would fail at each pass
    if (!IsOneOf(number, kGoOn)) throw;
  }
  actedOn();
  return WatchPass::Ran;
}

bool ExcelWatch::CallCommExcel(bool byWatch) {
  const Held<bool> watchRun(session_.watchRun, byWatch, false);
  const Run run(*this);
  return host_.RunCommExcel();
}

WatchPass ExcelWatch::Fail(const RuntimeFailure& failure) {
  const int number = NumberOf(failure);
  if (IsOneOf(number, kGoOn)) return WatchPass::Unchanged;
  if (IsOneOf(number, kBusy)) {
    PauseBusy();
    Enter(LinkState::Busy);
    return WatchPass::Failed;
  }
  notBefore_ = clock_.Seconds() + kAbsentPause;
  if (!host_.InteractiveOn()) wanted_ = false;
  if (number == kNoAnswer) {
    Enter(LinkState::NoWorkbook);
    if (excel_ != nullptr) TellNoAnswer();
  } else if (number == kAbsent || IsAutomation(number)) {
    Enter(LinkState::Absent);
  } else if (IsOneOf(number, kDisconnected)) {
    sheet_.Release();
    Enter(LinkState::Absent);
  } else {
    Enter(LinkState::Faulty);
    TellOther(failure);
  }
  return WatchPass::Failed;
}

// Excel runs and has no workbook to show: it may be a rest of a session that hangs unseen.
void ExcelWatch::TellNoAnswer() {
  ExcelWatchBusy_ = 1;
  try {
    if (!excel_->Visible()) {
      excel_->SetVisible(true);
      return;
    }
    if (toldNumber_ == kNoAnswer) return;
    toldNumber_ = kNoAnswer;
    switch (prompt_.dialogs().Ask("The Excel Worksheet do not answer. Do you want to quit Excel (recommended) ?",
                                  "Excel Still running in the memory", Buttons::OkCancel, Icon::Warning)) {
      case Answer::Ok:
        excel_->Quit();
        lists_.PlotLoaded = 0;
        lists_.PlotNormalised = 0;
        session_.ExcelState = 0;
        CallCommExcel(false);
        break;
      case Answer::Cancel:
        prompt_.dialogs().Tell(
            "Close Excel or use  the keys \"Control+Alt+Supp\" and in the task window, terminate the process Excel",
            "Help");
        break;
      default:
        prompt_.AbortQuestion();
    }
  } catch (const RuntimeFailure& failure) {
    const int number = NumberOf(failure);
    if (!IsOfLink(number) && !IsOneOf(number, kGoOn)) TellOther(failure);
  }
}

void ExcelWatch::TellOther(const RuntimeFailure& failure) {
  if (toldNumber_ == NumberOf(failure)) return;
  toldNumber_ = NumberOf(failure);
  ExcelWatchBusy_ = 1;
  prompt_.dialogs().Tell(failure.description(), "Error W D", Icon::Critical);
  prompt_.AbortQuestion();
}

void ExcelWatch::PauseBusy() {
  busyPause_ = busyPause_ == 0 ? kFirstBusyPause : std::min(2 * busyPause_, kLongestBusyPause);
  notBefore_ = clock_.Seconds() + busyPause_;
}

void ExcelWatch::Enter(LinkState state) {
  if (state_ == state) return;
  state_ = state;
  host_.LinkChanged();
}

void ExcelWatch::mnuUpdateExcel() {
  if (inPass_ || RunBusy_ == 1) return;
  host_.ForgetPlot();
  host_.EnableInteractiveMenus(false);
  Rearm();
  lists_.VectorCount = 0;
  lists_.rotation.present = false;  // the turn of the plot before ends
  lists_.rotation.main.start = 0;
  if (host_.InteractiveOn()) host_.ClearInteractive();
  session_.SourceMode = 0;
  session_.ExcelState = 0;
  session_.FileMode = 0;
  session_.ForgetSpecification();
  session_.attachFailures = 0;
  fileChosen_ = false;
  notBefore_ = 0;
  busyPause_ = 0;
  toldNumber_ = 0;

  // However the reading ends, the camera is free again.
  const Held<double> plotAwaited(lists_.FirstDraw, 1, 0);
  const bool ready = session_.LinkReady == 1;
  if (ready) {
    const Held<bool> asked(byMenu_, true, false);
    Pass();
  }
  wanted_ = ready && state_ == LinkState::Busy;
  const bool gone = state_ == LinkState::Absent || state_ == LinkState::NoWorkbook;
  if (!ready || gone) {
    CallCommExcel(false);
    TakeAsActedOn();
  }
}

void ExcelWatch::InteractiveChanged(bool on) {
  host_.EnableInteractiveMenus(true);
  wanted_ = false;
  if (!on) return;
  const bool showsOther = session_.SourceMode >= 1 || session_.ExcelState >= 1 || session_.FileMode == 1 || fileChosen_;
  wanted_ = showsOther || session_.LinkReady != 1;
  if (wanted_) Rearm();
  session_.SourceMode = 0;
  session_.ExcelState = 0;
  session_.FileMode = 0;
  fileChosen_ = false;
  notBefore_ = 0;
  busyPause_ = 0;
}

void ExcelWatch::ChooseFile() {
  fileChosen_ = true;
  wanted_ = false;
  session_.SourceMode = session_.ExcelState = 0;
}

void ExcelWatch::ChooseDemo() {
  fileChosen_ = false;
  wanted_ = false;
  session_.SourceMode = session_.ExcelState = 1;
}

void ExcelWatch::TakeAsActedOn() {
  if (session_.LinkReady != 1 || session_.SourceMode >= 1 || session_.FileMode == 1 || fileChosen_) return;
  try {
    const SheetSnapshot cell = Look();
    ExcelSheetName_ = cell.sheetName;
    ExcelWindowCaption_ = cell.windowCaption;
    WatchFormula_ = Mapped(cell.formula);
    WatchArmed_ = 0;
    wanted_ = false;
    state_ = LinkState::Following;
    host_.LinkChanged();
  } catch (const RuntimeFailure&) {
    // The first pass that succeeds takes the cell for a new one.
  }
}

bool ExcelWatch::Answers() {
  try {
    Look();
    return true;
  } catch (const RuntimeFailure&) {
    return false;
  }
}

bool ExcelWatch::IsThere() {
  const auto failureOf = [](const std::function<void()>& operation) {
    try {
      operation();
      return 0;
    } catch (const RuntimeFailure& failure) {
      return NumberOf(failure);
    }
  };
  int failure = failureOf([this] { Look(); });
  if (IsOneOf(failure, kBusy)) failure = failureOf([this] { sheet_.Attach(); });
  return failure == 0 || IsOneOf(failure, kBusy);
}

std::string ExcelWatch::StateText() const {
  if (session_.ExcelState == 1) return "The sample plot is shown; UpdateExcel goes back to the spreadsheet";
  if (session_.ExcelState >= 2) {
    return "No spreadsheet is running: the last plot is shown; UpdateExcel looks for the spreadsheet again";
  }
  switch (state_) {
    case LinkState::Following:
      return "Following \"" + ExcelWindowCaption_ + "\\" + ExcelSheetName_ + "\"";
    case LinkState::Absent:
      return "The spreadsheet is not running: the plot stays and follows it again when it is back";
    case LinkState::Busy:
      return "The spreadsheet is busy";
    case LinkState::NoWorkbook:
      return "The spreadsheet has no workbook open";
    case LinkState::Faulty:
      return "The spreadsheet answers with an error";
    case LinkState::Idle:
      break;
  }
  return {};
}

RunSource SourceOfRun(const CommExcel::Session& session, const ChosenFile& file, bool fileWins,
                      bool spreadsheetAnswers) {
  const RunSource chosen = file.workbook ? RunSource::Workbook : RunSource::PlotFile;
  if (session.FileMode == 1) return RunSource::PlotFile;
  if (session.SourceMode == 1) return RunSource::Demo;
  if (file.present && fileWins) return chosen;
  if (session.SourceMode >= 2) return RunSource::PlotFile;
  return spreadsheetAnswers || !file.present ? RunSource::Spreadsheet : chosen;
}

bool Check1_Click(bool Check1_7, bool mnuOinteractiveChecked, UserDialogs& dialogs) {
  if (Check1_7 == mnuOinteractiveChecked) return true;
  dialogs.Tell("error Sub Check1_Click Check1(7) = 1 Then mnuOinteractive.Checked = True ", "", Icon::Critical);
  return false;
}

}  // namespace orv
