#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QCoreApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QProgressBar>
#include <QScreen>
#include <QToolTip>
#include <algorithm>

#include "analysis/cell_address.h"
#include "numerics/text.h"
#include "shell/form_parts.h"
#include "shell/frm_main.h"
#include "shell/frm_warning.h"
#include "shell/status_panel.h"
#include "view/capture.h"
#include "view/cell_picking.h"
#include "window/help_texts.h"
#include "window/shell_failures.h"

// What the menus, the toolbar, the mouse and the keys of the main window do.
namespace orv {
namespace {

constexpr double kViewDistance = 100;
constexpr std::size_t kShortestArgument = 8;  // characters of a plot file that hides the menus

CivilTime FileTime(const std::string& file) {
  const QDateTime time = QFileInfo(QString::fromStdString(file)).lastModified();
  CivilTime result;
  if (!time.isValid()) return result;
  result.year = time.date().year();
  result.month = time.date().month();
  result.day = time.date().day();
  return result;
}

}  // namespace

// Runs an action of the user; whatever it changed is shown, and an abort answer ends the program.
void frmMain::Do(const std::function<void()>& action, const std::string& routine) {
  Attempt(action, routine);
  if (!ending_ && ViewMade() && replot_ != nullptr && panel_ != nullptr && video_ != nullptr) Refresh();
}

// The same for what changes no control, such as a drag.
void frmMain::Attempt(const std::function<void()>& action, const std::string& routine) {
  try {
    RunRoutine(run_.prompt, routine, action);
  } catch (const ProgramEnd&) {
    ProgramEnded();
  } catch (const std::bad_alloc&) {
    TellFault("The memory of this machine does not hold this.");
  } catch (const std::exception& error) {
    TellFault(error.what());
  }
}

void frmMain::TellFault(const std::string& text) {
  try {
    services_.dialogs.Tell(text, "OrvValis", Icon::Critical);
  } catch (const ProgramEnd&) {
    ProgramEnded();
  }
}

// A run that is under way unwinds at its next word to the user.
void frmMain::ProgramEnded() {
  if (ending_) return;
  ending_ = true;
  timer_.stop();
  if (busy_ > 0) services_.dialogs.RequestEnd();
  options_.StoreTyped();
  SaveLayout();
  services_.warning.close();
  hide();
  QCoreApplication::exit(closing_ ? 0 : 1);
}

// Whether a run keeps another action out; the user is told.
bool frmMain::BusyTold() {
  if (busy_ == 0 && !replot_->Busy()) return false;
  pickPanel_->setText("A run is going on.");
  return true;
}

void frmMain::RunNow(const std::function<bool()>& work) {
  // What a run leaves behind, however it ends.
  struct Guard {
    explicit Guard(frmMain& main) : window(main) {
      // The lists are in the making: the last picture stands meanwhile.
      if (++window.busy_ == 1) window.View().Hold(true);
      window.View().Control().Cursor(kBusyPointer);
      window.Refresh();
    }
    ~Guard() {
      if (--window.busy_ == 0) window.View().Hold(false);
      window.input_->SetEditState(window.input_->EditState());
      window.ProgressBar1_->hide();
      window.pickPanel_->clear();
      window.replot_->Ended(shown);
    }
    frmMain& window;
    bool shown = false;
  };
  {
    Guard guard(*this);
    guard.shown = work();
    ShowLevelLines(guard.shown);
  }
  setWindowTitle(source_.File().empty() ? QString("OrvValis")
                                        : "OrvValis - " + QFileInfo(QString::fromStdString(source_.File())).fileName());
  View().Control().Redraw();
  if (closing_) QTimer::singleShot(0, this, [this] { close(); });
}

void frmMain::OpenFile(const std::string& name, bool asArgument) {
  if (BusyTold()) return;
  const std::string fullName = QFileInfo(QString::fromStdString(name)).absoluteFilePath().toStdString();
  Do([&] {
    source_.Choose(fullName);
    if (source_.Source() == PlotSource::Workbook || !asArgument || name.size() < kShortestArgument) return;
    source_.SetFileMode();
    for (const std::string_view menu : kMenusHiddenInFileMode) menuActions_.at(std::string(menu))->setVisible(false);
  });
  if (started_) Do([this] { ReadSource(); });
}

void frmMain::DoReplot(ReplotAction action) {
  switch (action) {
    case ReplotAction::FullRun:
      FullRun();
      watch_->TakeAsActedOn();
      break;
    case ReplotAction::ShowSelection:
      replot_->OpenSelection();
      Refresh();  // why it opens may stand on the status bar
      toPlot_->exec();
      DoReplot(replot_->TakeSelection());
      break;
    case ReplotAction::Replot:
      RunNow([this] { return source_.Replot(); });
      break;
    case ReplotAction::None:
      break;
  }
}

void frmMain::ClickStatus(const ClickKeys& keys) {
  DoReplot(replot_->Click(keys));
  View().Control().Redraw();
}

void frmMain::ChooseWorkbook() {
  const std::vector<std::string> recent = RecentWorkbooks(services_.settings);
  const QString folder = recent.empty() ? QString() : QFileInfo(QString::fromStdString(recent.front())).absolutePath();
  const QString name = QFileDialog::getOpenFileName(
      this, "Open", folder, "Workbooks and plot files (*.xlsx *.xlsm *.ods *.txt *.csv *.tsv *.xls);;All files (*)");
  if (!name.isEmpty()) OpenFile(name.toStdString());
}

void frmMain::ShowOptions(bool shown) {
  if (shown) options_.Show();
  PlaceOptions(shown);
}

// The window grows by what the options need beside the plot, as far as the screen reaches, and gives the width back.
void frmMain::PlaceOptions(bool shown) {
  const int plain = width() - grown_;  // before the layouts ask for more
  const QRect space = screen()->availableGeometry();
  const int widest = space.width() - (frameGeometry().width() - width());
  optionsFrame_->Refresh();
  optionsFrame_->SetWidest(widest - WidthBesideOptions());
  optionsFrame_->setVisible(shown);
  if (isMaximized() || isFullScreen()) return;
  for (QLayout* const layer : {centralWidget()->layout(), layout()}) layer->activate();
  const int wanted = shown ? std::max(optionsFrame_->ExtensionWidth(), minimumSizeHint().width() - plain) : 0;
  const int grown = std::clamp(wanted, 0, std::max(widest - plain, 0));
  resize(plain + grown, height());
  const int beyond = frameGeometry().right() - space.right();
  if (grown > grown_ && beyond > 0) move(std::max(space.left(), x() - beyond), y());
  grown_ = shown ? std::max(0, width() - plain) : 0;
}

// What the other parts of the window need at least.
int frmMain::WidthBesideOptions() const {
  QLayout& parts = *centralWidget()->layout();
  parts.activate();
  const int docks = width() - centralWidget()->width();
  const int least = parts.totalMinimumSize().width() + docks;
  return optionsFrame_->isHidden() ? least + parts.spacing() : least - optionsFrame_->minimumSizeHint().width();
}

void frmMain::CloseOptions() {
  options_.Command2();
  PlaceOptions(options_.Visible());
  View().Control().Redraw();
}

void frmMain::CaptionOfCheck3(const std::string& caption) {
  options_.SetCheck3Caption(caption);
  optionsFrame_->Refresh();
}

void frmMain::LookFrom(const Vec3& position, const Vec3& up) {
  Camera& camera = View().Control().Camera();
  camera.SetLookAt({0, 0, 0});
  camera.SetPosition(position);
  camera.SetUp(up);
  View().Control().Trackball().Clear();
  View().Control().Redraw();
}

// The last plot once more: of a run from its data, any other from the lists, which hold it still.
void frmMain::RepeatPlot() {
  if (run_.record.finished) {
    DoReplot(replot_->Again());
  } else if (busy_ == 0) {
    controls_->ClickCommand9();
  }
}

void frmMain::DoMenu(MenuAction action) {
  Camera& camera = View().Control().Camera();
  switch (action) {
    case MenuAction::OpenWorkbook:
      ChooseWorkbook();
      break;
    case MenuAction::SaveImage:
      SavePicture(kSavedImage, ImageDirectory());
      break;
    case MenuAction::SaveImageWithTimeStamp:
      SavePicture(TimeStampImage(run_.clock.Local()), ImageDirectory());
      break;
    case MenuAction::MovieFrames:
      toolbar_.SetMovieFlag(!toolbar_.MovieFlag());
      ToggleMovie();
      break;
    case MenuAction::OpenDoor:
      OpenDoor();
      break;
    case MenuAction::RunPowerPoint:
      RunPowerPoint();
      break;
    case MenuAction::ShowOptions:
      ShowOptions(!options_.Visible() || !optionsFrame_->isVisible());
      break;
    case MenuAction::Print:
      Print();
      break;
    case MenuAction::Exit:
      close();
      break;
    case MenuAction::Interactive:
      options_.mnuOinteractive_Click();
      NoteInteractive();
      optionsFrame_->Refresh();
      break;
    case MenuAction::Grid:
      input_->SetGrids(!input_->Grids());
      break;
    case MenuAction::Camera:
      scene_->CameraSet("ISO", 0, 0);
      View().Control().Redraw();
      break;
    case MenuAction::ResetCamera:
      LookFrom({scene_->Scale().Scale80, scene_->Scale().Scale80, scene_->Scale().Scale80}, {0, 1, 0});
      camera.SetProjection(kOrthographic);
      camera.SetSceneRange(scene_->RRMAXAXES() == 0 ? scene_->Scale().Scale80 : scene_->RRMAXAXES());
      break;
    case MenuAction::Perspective:
      camera.SetProjection(camera.Projection() == kOrthographic ? kPerspective : kOrthographic);
      View().Control().Redraw();
      break;
    case MenuAction::Top:
      LookFrom({0, 0, kViewDistance}, {0, 1, 0});
      break;
    case MenuAction::Left:
      LookFrom({-kViewDistance, 0, 0}, {0, 0, 1});
      break;
    case MenuAction::Front:
      LookFrom({0, -kViewDistance, 0}, {0, 0, 1});
      break;
    case MenuAction::Contents: {
      for (const std::string& text : HelpContents()) services_.dialogs.Tell(text, "Contents");
      if (options_.Pending()) options_.OptionAffecteUser();
      optionsFrame_->Refresh();
      RepeatPlot();
      break;
    }
    case MenuAction::Manual:
      OpenManual();
      break;
    case MenuAction::About:
      services_.dialogs.Tell(AboutText(FileTime(services_.program)), "About");
      break;
    case MenuAction::OpenFolder:
      OpenResultFolder();
      break;
    case MenuAction::UpdateExcel:
      UpdateExcel();
      break;
    default:
      break;
  }
}

void frmMain::DoTool(const std::string& key) {
  ToolKeys keys;
  keys.heldKey = heldKey_;
  keys.modifier = ShiftOf(QGuiApplication::keyboardModifiers()) != 0;
  const ToolClick click = toolbar_.Toolbar1MYButtonClick(key, keys);
  if (click.EditState != kNoState && click.action != ToolAction::TrackballOn &&
      click.action != ToolAction::TrackballOff) {
    input_->SetEditState(click.EditState);
  }
  switch (click.action) {
    case ToolAction::TrackballOn:
    case ToolAction::TrackballOff:
      input_->ToggleTrackball();
      break;
    case ToolAction::FrozenStart: {
      const int state = controls_->FrozenStart(toolbar_.MarkedState());
      input_->SetEditState(state);
      View().Control().Redraw();
      return;  // the frozen state stays until the second press
    }
    case ToolAction::CameraSet:
      scene_->CameraSet(click.camera, click.axis, click.SPECaxeVertical);
      break;
    case ToolAction::SaveImage:
      SavePicture(TimeStampImage(run_.clock.Local()), ImageDirectory());
      break;
    case ToolAction::MovieFrames:
      ToggleMovie();
      break;
    default:
      break;
  }
  if (click.EditStateAfter != kNoState) input_->SetEditState(click.EditStateAfter);
  if (click.refreshDirectory) RefreshDirectory();
  if (key == "lightback") {
    options_.ShowBackground();
    optionsFrame_->Refresh();
  }
  View().Control().Redraw();
}

void frmMain::Tick() {
  TimerWork work;
  NoteInteractive();
  work.linkBusy = [this] { return watch_->ExcelWatchBusy() == 1; };
  work.watchWanted = [this] { return watch_->Wanted(); };
  work.watch = [this] {
    if (busy_ > 0) return;
    TakeKeyword();
    if (options_.InteractiveMark() || watch_->Wanted()) watch_->Tick();
  };
  work.spin = [this] { return input_->SpinStep(); };
  work.movie = [this] {
    const bool saved = movie_->MovieSaveAs();
    if (saved) Refresh();
    return saved;
  };
  if (scene_->TheUpdateTimer_ThatTime(work)) View().Control().Redraw();
}

void frmMain::ShowPick(double x, double y) {
  if (busy_ > 0) return;  // the cells are being made
  const auto picked = PickCell(*scene_, x, y);
  const CellAddress address = picked ? AddressOfEntry(run_, picked->entry) : CellAddress{};
  pickPanel_->setText(QString::fromStdString(address.StatusText()));
  if (!address.Found()) return;
  const double ratio = View().devicePixelRatioF();
  QToolTip::showText(View().mapToGlobal(QPoint(static_cast<int>(x / ratio), static_cast<int>(y / ratio))),
                     QString::fromStdString(address.TipText()), &View());
}

void frmMain::MouseDown(int Button, int Shift, double x, double y) {
  Do([&] { input_->MouseDown(Button, Shift, x, y); });
}

void frmMain::MouseMove(int Button, int Shift, double x, double y) {
  Attempt([&] { input_->MouseMove(Button, Shift, x, y); }, "glxCtl1_MouseMove");
}

void frmMain::MouseUp(int Button, int Shift, double x, double y) {
  Do([&] {
    if (input_->MouseUp(Button, Shift, x, y)) ShowPick(x, y);
  });
}

void frmMain::DblClick(int Button, int, double, double) {
  Do([&] {
    if (Button == kLeftButton) toolbar_.ToggleTrackball();
    input_->DblClick(Button);
  });
}

void frmMain::Wheel(double notches, int, double, double) {
  Attempt([&] { input_->Wheel(notches); }, "glxCtl1_MouseWheel");
}

// Only a key that names an axis is held for the tools; Shift and its like go with it.
void frmMain::HoldKey(int KeyCode) {
  if (AxisOfKey(KeyCode) != 0) heldKey_ = KeyCode;
}

void frmMain::KeyDown(int& KeyCode, int Shift) {
  Do([&] {
    HoldKey(KeyCode);
    input_->FormKeyDown(KeyCode, Shift, optionsFrame_->isVisible());
    if (KeyCode != 0) input_->KeyDown(KeyCode, Shift);
  });
}

void frmMain::KeyUp(int& KeyCode, int) {
  if (KeyCode == heldKey_) heldKey_ = 0;
}

// A rectangle of the old size means another part of the picture.
void frmMain::Resized() {
  input_->DropRectangle();
}

void frmMain::KeyPress(int& KeyAscii) {
  Do([&] { input_->KeyPress(KeyAscii); });
}

void frmMain::keyPressEvent(QKeyEvent* event) {
  // Keys belong to a field or a bar that has the focus; Enter in the options still closes them.
  QWidget* const focus = QApplication::focusWidget();
  const bool field = qobject_cast<QLineEdit*>(focus) != nullptr || qobject_cast<QComboBox*>(focus) != nullptr ||
                     qobject_cast<QAbstractSlider*>(focus) != nullptr ||
                     qobject_cast<QAbstractSpinBox*>(focus) != nullptr;
  int KeyCode = KeyCodeOf(*event);
  const bool closesOptions = KeyCode == 13 && optionsFrame_->isAncestorOf(focus);
  if (field && !closesOptions) {
    QMainWindow::keyPressEvent(event);
    return;
  }
  HoldKey(KeyCode);
  const int before = KeyCode;
  Do([&] {
    input_->FormKeyDown(KeyCode, ShiftOf(event->modifiers()), optionsFrame_->isVisible());
    if (KeyCode != 0) input_->KeyDown(KeyCode, ShiftOf(event->modifiers()));
    int KeyAscii = CharacterOf(*event);
    if (KeyCode != 0 && KeyAscii != 0) input_->KeyPress(KeyAscii);
  });
  if (before == 0 || KeyCode == before) QMainWindow::keyPressEvent(event);
}

void frmMain::keyReleaseEvent(QKeyEvent* event) {
  if (!event->isAutoRepeat() && KeyCodeOf(*event) == heldKey_) heldKey_ = 0;
  QMainWindow::keyReleaseEvent(event);
}

}  // namespace orv
