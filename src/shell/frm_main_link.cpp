#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <optional>

#include "analysis/level_line_data.h"
#include "numerics/text.h"
#include "shell/class_interface_dbus.h"
#include "shell/frm_main.h"
#include "shell/level_lines_panel.h"
#include "window/level_lines.h"

#ifndef _WIN32
#include "model/calc_door.h"
#endif

// The main window and the spreadsheet that runs, other programs that feed the view, and what a run shows besides the
// view.
namespace orv {

// Builds what follows the spreadsheet.
void frmMain::BuildLink() {
  WatchHost& host = *this;
  watch_ = std::make_unique<ExcelWatch>(services_.link, source_.Session(), run_.lists, run_.prompt, run_.clock, host,
                                        services_.excel);
  source_.SetWatch(*watch_);
  interface_ = std::make_unique<ClassInterface>(run_.lists, run_.reader, [this] { ShowInterfacePlot(); });
  bus_ = new ClassInterfaceBus(
      *interface_, [this] { return busy_ > 0; }, [this] { ProgramEnded(); }, this);
}

// One full run from the source in force.
void frmMain::ReadSource() {
  if (BusyTold() || !replot_->Begin()) return;
  FullRun();
  watch_->TakeAsActedOn();
}

void frmMain::TakeKeyword() {
  const std::string keyword = Trim(options_.MainKeyword());
  source_.Session().MainKeyword = keyword.empty() ? std::string(kMainKeyword) : keyword;
}

void frmMain::FullRun() {
  TakeKeyword();
  RunNow([this] {
    const bool shown = source_.CommExcelRun();
    if (shown && run_.record.finished) replot_->StartAnew();
    return shown;
  });
  TakeSpecification();
  if (source_.Source() != PlotSource::Workbook) return;
  // Only a workbook that could be read is one to come back to.
  if (source_.WorkbookRead() == source_.File()) {
    RememberWorkbook(services_.settings, run_.prompt, source_.File());
  } else {
    ForgetWorkbook(services_.settings, run_.prompt, source_.File());
  }
}

// A specification that was plotted from a cell is remembered like a typed one, and ends that.
void frmMain::TakeSpecification() {
  if (source_.Session().SpecEntered == 1) return;
  specifications_.Forget();
  const std::string& plotted = source_.SpecificationPlotted();
  const std::vector<std::string>& known = specifications_.Items();
  if (plotted.empty() || (!known.empty() && known.front() == plotted)) return;
  specifications_.Remember(plotted);
  FillSpecifications();
}

void frmMain::UpdateExcel() {
  Do([this] {
    if (!BusyTold()) watch_->mnuUpdateExcel();
  });
}

bool frmMain::RunCommExcel() {
  if (busy_ > 0 || !replot_->Begin()) return false;
  FullRun();
  return !source_.LinkLost();
}

void frmMain::ForgetPlot() {
  replot_->PrepareUpdate();
}

void frmMain::EnableInteractiveMenus(bool enabled) {
  for (const char* const name : {"mnuOptions", "mnuOinteractive"}) menuActions_.at(name)->setEnabled(enabled);
}

bool frmMain::InteractiveOn() const {
  return options_.InteractiveMark();
}

void frmMain::ClearInteractive() {
  interactive_ = false;
  options_.ForbidInteractive();
  optionsFrame_->Refresh();
}

void frmMain::LinkChanged() {
  const std::string state = watch_->StateText();
  if (busy_ == 0 && !state.empty()) pickPanel_->setText(QString::fromStdString(state));
}

// The box of the options and the menu mark the same option: a change of one has moved the other.
void frmMain::NoteInteractive() {
  const bool on = options_.InteractiveMark();
  if (on == interactive_) return;
  interactive_ = on;
  watch_->InteractiveChanged(on);
  Check1_Click(on, menuActions_.at("mnuOinteractive")->isChecked(), services_.dialogs);
}

void frmMain::EnterSpecification() {
  if (BusyTold()) return;
  const std::string text = Trim(Combo1_->currentText().toStdString());
  CommExcel::Session& session = source_.Session();
  if (LowerCase(text) == "demo") {
    specifications_.Forget();
    source_.ChooseDemo();
  } else {
    specifications_.Enter(text);
    session.SpecEntered = specifications_.SpecEntered();
    session.SpecText = specifications_.SpecText();
    session.SourceMode = session.ExcelState = 0;
  }
  FillSpecifications();
  ReadSource();
}

void frmMain::OpenDoor() {
#ifdef _WIN32
  services_.dialogs.Tell("The link to LibreOffice is not part of this program.", "LibreOffice");
#else
  if (OpenCalcDoor(services_.door)) {
    pickPanel_->setText("LibreOffice is asked to open its door; UpdateExcel then reads the sheet in front");
    return;
  }
  services_.dialogs.Tell("No LibreOffice is installed. Where there is one, this command opens its door:\n" +
                             CalcDoorCommand(services_.door),
                         "LibreOffice");
#endif
}

// Another program has filled the lists: what was computed before belongs to another picture.
void frmMain::ShowInterfacePlot() {
  run_.record.finished = false;
  controls_->NewPlot(false);
  View().Control().Redraw();
  Refresh();
}

// The panel of level lines after a run or a re-plot that asked for them.
void frmMain::ShowLevelLines(bool shown) {
  if (!shown) return;
  const bool drawn = DrawLevelLines(run_, [this](const LevelLineInput& input) { return levelLines_->ShowPlot(input); });
  if (!drawn) levelLines_->ClearPlot();
}

}  // namespace orv
