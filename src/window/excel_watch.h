#pragma once

#include <string>
#include <string_view>

#include "model/comm_excel.h"
#include "numerics/environment.h"
#include "numerics/error_prompt.h"
#include "view/point_lists.h"

// The view follows the running spreadsheet: when the user goes to another cell, sheet or window the plot is read again.
namespace orv {

// What no cell holds: the watch takes the next formula for a new one and runs at once.
inline constexpr std::string_view kWatchFormulaStart = "kkkkkkkkkkkkkkkkkkk";
inline constexpr std::string_view kWatchCandidateStart = "oooooooooooooooooo";

// An Excel that may hang unseen in the memory. Other spreadsheets offer nothing of the kind: they are never ended.
class ExcelApplication {
 public:
  virtual ~ExcelApplication() = default;
  virtual bool Visible() = 0;
  virtual void SetVisible(bool visible) = 0;
  virtual void Quit() = 0;
};

// The window as the watch and the menu mnuUpdateExcel need it.
class WatchHost {
 public:
  virtual ~WatchHost() = default;
  // One full reading and its run. While the session's watchRun is set nothing is asked about a spreadsheet that is
  // absent or a sheet without keyword. False when the spreadsheet went away or was busy meanwhile: the lists are as
  // before, and the change is still to be acted on.
  virtual bool RunCommExcel() = 0;

  // mnuUpdateExcel: the plot's choice, the vectors, the selection window, the sides and the mark of the status bar.
  virtual void ForgetPlot() = 0;
  virtual void EnableInteractiveMenus(bool enabled) = 0;
  virtual bool InteractiveOn() const = 0;
  // Check1(7) and the option, without storing them.
  virtual void ClearInteractive() = 0;

  // The state of the link has changed, see ExcelWatch::State.
  virtual void LinkChanged() {}
};

enum class LinkState {
  Idle,        // nothing is known of a spreadsheet
  Following,   // the last pass has read it
  Absent,      // it is not there, or went away
  Busy,        // it does not take calls just now
  NoWorkbook,  // it runs without a workbook
  Faulty       // it answers with an error
};

enum class WatchPass { Inactive, Waiting, Unchanged, Armed, Ran, Failed };

// The watch of the active cell. It is called by the timer of the view while the option Interactive is on, and by the
// menu. An absent spreadsheet is looked for at most every 0.75 s, a busy one after pauses that double up to 1 s.
class ExcelWatch {
 public:
  // `excel`: only for Excel itself. All outlive the watch.
  ExcelWatch(Spreadsheet& sheet, CommExcel::Session& session, PointLists& lists, ErrorPrompt& prompt,
             const Clock& clock, WatchHost& host, ExcelApplication* excel = nullptr)
      : sheet_(sheet), session_(session), lists_(lists), prompt_(prompt), clock_(clock), host_(host), excel_(excel) {}

  // One tick of the timer: a pass, unless the spreadsheet is given a pause.
  WatchPass Tick();
  // One pass. Failures end it by their number; only an abort answer leaves it.
  WatchPass Pass();

  // The menu: forgets choices and files, takes the plot from the running spreadsheet at once.
  void mnuUpdateExcel();
  // The box Check1(7) or the menu mnuOinteractive was changed by the user.
  void InteractiveChanged(bool on);
  // A run that the watch did not begin has ended: what the active cell holds was acted on.
  void TakeAsActedOn();
  // The next formula counts as new.
  void Rearm();
  // Whether a spreadsheet answers at once; quiet.
  bool Answers();
  // Whether there is one at all, if need be after the patience of a run: it may be busy, or not known yet.
  bool IsThere();

  // The user chose a workbook or a plot file: it is shown until mnuUpdateExcel or interactivity.
  void ChooseFile();
  // "Run Demo", or "demo" as the specification: the sample plot, likewise.
  void ChooseDemo();
  bool FileChosen() const { return fileChosen_; }
  // An update that was asked for waits for the spreadsheet: the timer calls Tick also without the option Interactive.
  bool Wanted() const { return wanted_; }

  // 1 from the beginning of a run to each of its exits.
  int RunBusy() const { return RunBusy_; }
  // 1 while the watch shows a box: the timer stops there.
  int ExcelWatchBusy() const { return ExcelWatchBusy_; }
  int WatchArmed() const { return WatchArmed_; }
  const std::string& WatchFormula() const { return WatchFormula_; }
  const std::string& WatchCandidate() const { return WatchCandidate_; }
  const std::string& ExcelSheetName() const { return ExcelSheetName_; }
  const std::string& ExcelWindowCaption() const { return ExcelWindowCaption_; }
  LinkState State() const { return state_; }
  // The state in words, for the status bar; empty when there is nothing to tell.
  std::string StateText() const;

  // Holds RunBusy while it lives.
  class Run {
   public:
    explicit Run(ExcelWatch& watch) : watch_(watch), before_(watch.RunBusy_) { watch_.RunBusy_ = 1; }
    ~Run() { watch_.RunBusy_ = before_; }
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;

   private:
    ExcelWatch& watch_;
    int before_;
  };

 private:
  SheetSnapshot Look();
  void NoteSheet(const SheetSnapshot& cell);
  WatchPass Follow(const std::string& formula);
  WatchPass RunNow(const std::string& formula);
  bool CallCommExcel(bool byWatch);
  WatchPass Fail(const RuntimeFailure& failure);
  void TellNoAnswer();
  void TellOther(const RuntimeFailure& failure);
  bool HasKeyword(std::string_view formula) const;
  std::string Mapped(const std::string& formula) const;
  void Enter(LinkState state);
  void PauseBusy();

  Spreadsheet& sheet_;
  CommExcel::Session& session_;
  PointLists& lists_;
  ErrorPrompt& prompt_;
  const Clock& clock_;
  WatchHost& host_;
  ExcelApplication* excel_;

  std::string WatchFormula_{kWatchFormulaStart};
  std::string WatchCandidate_{kWatchCandidateStart};
  int WatchArmed_ = 0;
  std::string ExcelSheetName_;
  std::string ExcelWindowCaption_;
  int RunBusy_ = 0;
  int ExcelWatchBusy_ = 0;

  LinkState state_ = LinkState::Idle;
  bool fileChosen_ = false;
  bool wanted_ = false;
  bool byMenu_ = false;   // the user asked for this pass and is told what it does not find
  bool inPass_ = false;   // a box or a run of a pass lets further ticks come
  int toldNumber_ = 0;    // failure told last; the same one is told again only after a pass that succeeded
  double notBefore_ = 0;  // seconds of the clock
  double busyPause_ = 0;
};

// Where a full run takes its plot from.
enum class RunSource { Spreadsheet, Workbook, PlotFile, Demo };

// A file that the user has chosen in this session.
struct ChosenFile {
  bool present = false;
  bool workbook = false;  // otherwise a plot file
};

// The order: sample plot or last plot when asked for, a file just chosen, the running spreadsheet, a file chosen
// before, and without any the spreadsheet once more, whose reading asks the user and goes on with the last plot.
RunSource SourceOfRun(const CommExcel::Session& session, const ChosenFile& file, bool fileWins,
                      bool spreadsheetAnswers);

// A change of Check1(7) has moved the mark of mnuOinteractive with it; when it has not, the user is told. Returns
// whether both agree.
bool Check1_Click(bool Check1_7, bool mnuOinteractiveChecked, UserDialogs& dialogs);

}  // namespace orv
