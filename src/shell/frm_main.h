#pragma once

#include <QMainWindow>
#include <QTimer>
#include <map>
#include <memory>
#include <string>

#include "shell/frm_to_plot.h"
#include "shell/frm_video.h"
#include "shell/glx_widget.h"
#include "shell/options_frame.h"
#include "shell/qt_dialogs.h"
#include "shell/settings_store.h"
#include "view/edit_state.h"
#include "view/scene_bodies.h"
#include "window/class_interface.h"
#include "window/excel_watch.h"
#include "window/main_run.h"
#include "window/main_state.h"
#include "window/menus.h"
#include "window/plot_controls.h"
#include "window/remembered.h"
#include "window/replot.h"
#include "window/toolbar.h"

class QComboBox;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QScrollBar;
class QToolButton;

namespace orv {

// What the window works with; all outlive it.
struct WindowServices {
  RunContext& run;
  FileSettings& settings;
  QtDialogs& dialogs;
  frmWarning& warning;
  std::string dataFolder;             // of the sample plot and the trace file, with a trailing separator
  std::string program;                // full name of the program's file
  Spreadsheet& link;                  // the running spreadsheet
  std::string door;                   // by which a running Calc is reached; empty for the usual one
  ExcelApplication* excel = nullptr;  // of Excel alone
};

class ClassInterfaceBus;
class LevelLinesPanel;
class frmManual;

// The first panel of the status bar: a text that can be clicked.
class StatusPanel;

// At the first start, on a screen with that room.
QSize FirstWindowSize(const QSize& screen);

// The main window: the view in the middle, the toolbar, the specification, the bars that drive the plot, the status bar
// and the options. What its controls do is told by the rooms of the folder window; this class shows it.
class frmMain : public QMainWindow, private ViewListener, private ViewWindow, private WatchHost {
  Q_OBJECT

 public:
  explicit frmMain(const WindowServices& services, QWidget* parent = nullptr);
  ~frmMain() override;

  // Opens a workbook or a plot file, by its content. asArgument: a plot file hides the menus.
  void OpenFile(const std::string& name, bool asArgument = false);
  // The menu: the plot anew from the running spreadsheet.
  void UpdateExcel();

  glxWidget& View() { return place_->View(); }
  ClassGl& Scene() { return *scene_; }
  const MainState& State() const { return main_; }
  MainRun& Source() { return source_; }
  bool Busy() const { return busy_ > 0; }

 protected:
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;
  void changeEvent(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  // The parts of the window.
  void glxGCTLinit();
  bool ViewMade() const { return scene_ != nullptr; }
  void BuildMenus();
  void BuildToolbar();
  void BuildCentre();
  void BuildStatusBar();
  void FillRecent();
  void FillSpecifications();
  void AskInteractive();
  void SaveLayout();
  void Start();

  // Actions.
  void Do(const std::function<void()>& action, const std::string& routine = "frmMain");
  void Attempt(const std::function<void()>& action, const std::string& routine);
  void TellFault(const std::string& text);
  bool BusyTold();
  void DoMenu(MenuAction action);
  void DoTool(const std::string& key);
  void DoReplot(ReplotAction action);
  void ClickStatus(const ClickKeys& keys);
  void RunNow(const std::function<bool()>& work);
  void EnterSpecification();
  void BuildLink();
  void ReadSource();
  void FullRun();
  void TakeKeyword();
  void TakeSpecification();
  void NoteInteractive();
  void ShowInterfacePlot();
  void ShowLevelLines(bool shown);
  void ChooseWorkbook();
  void ShowOptions(bool shown);
  void PlaceOptions(bool shown);
  int WidthBesideOptions() const;
  void LookFrom(const Vec3& position, const Vec3& up);
  bool SavePicture(const std::string& name, const std::string& folder);
  void RepeatPlot();
  void HoldKey(int KeyCode);
  void ToggleMovie();
  void RunPowerPoint();
  void OpenDoor();
  void Print();
  void OpenResultFolder();
  void OpenManual();
  std::string ImageDirectory() const;
  void RefreshDirectory();
  void Tick();
  void ShowPick(double x, double y);

  // Copies what the logic has written to the controls.
  void Refresh();
  void RefreshTools();
  void TakeValueAxis();

  // ViewListener
  void MouseDown(int Button, int Shift, double x, double y) override;
  void MouseMove(int Button, int Shift, double x, double y) override;
  void MouseUp(int Button, int Shift, double x, double y) override;
  void DblClick(int Button, int Shift, double x, double y) override;
  void Wheel(double notches, int Shift, double x, double y) override;
  void KeyDown(int& KeyCode, int Shift) override;
  void KeyUp(int& KeyCode, int Shift) override;
  void KeyPress(int& KeyAscii) override;
  void Resized() override;
  void ProgramEnded() override;
  // WatchHost
  bool RunCommExcel() override;
  void ForgetPlot() override;
  void EnableInteractiveMenus(bool enabled) override;
  bool InteractiveOn() const override;
  void ClearInteractive() override;
  void LinkChanged() override;
  // ViewWindow
  void CloseOptions() override;
  void CaptionOfCheck3(const std::string& caption) override;
  void KeepBackground(const std::array<double, 3>& colour) override { options_.KeepBackground(colour); }
  std::array<double, 3> StoredBackground() const override { return options_.StoredBackground(); }
  void ShowRectangle(const std::optional<CaptureRegion>& rectangle) override { View().ShowRectangle(rectangle); }

  WindowServices services_;
  RunContext& run_;
  ViewState view_;
  MainState main_;
  OptionsForm options_;
  ToPlotForm selection_;
  WindowSelection windowSelection_;
  MainRun source_;
  std::unique_ptr<ExcelWatch> watch_;
  std::unique_ptr<ClassInterface> interface_;
  ClassInterfaceBus* bus_ = nullptr;
  SpecificationList specifications_;
  Toolbar toolbar_;

  GlxPlace* place_ = nullptr;
  OrbitBodies bodies_;
  std::unique_ptr<ClassGl> scene_;
  std::unique_ptr<ViewInput> input_;
  std::unique_ptr<PlotControls> controls_;
  std::unique_ptr<Replot> replot_;
  std::unique_ptr<Movie> movie_;
  MovieFields movieFields_;

  std::map<std::string, QAction*> menuActions_;
  std::map<std::string, QToolButton*> tools_;
  QMenu* recent_ = nullptr;
  QComboBox* Combo1_ = nullptr;
  QScrollBar* HScroll1_ = nullptr;
  QScrollBar* HScroll2_ = nullptr;
  QScrollBar* HScroll4_ = nullptr;
  QLabel* Text2_ = nullptr;
  QLabel* Text3_ = nullptr;
  QLabel* Text10_ = nullptr;
  QPushButton* Command6_ = nullptr;
  QPushButton* Command7_ = nullptr;
  QPushButton* Command8_ = nullptr;
  QPushButton* Command9_ = nullptr;
  QLineEdit* Text12_ = nullptr;
  QProgressBar* ProgressBar1_ = nullptr;
  StatusPanel* panel_ = nullptr;
  QLabel* pickPanel_ = nullptr;
  OptionsFrame* optionsFrame_ = nullptr;
  QWidget* Frame1_ = nullptr;
  QLineEdit* Text1_ = nullptr;
  QLabel* Picture1_ = nullptr;
  frmToPlot* toPlot_ = nullptr;
  frmVideo* video_ = nullptr;
  frmManual* manual_ = nullptr;
  LevelLinesPanel* levelLines_ = nullptr;
  QTimer timer_;
  int busy_ = 0;
  int heldKey_ = 0;
  int grown_ = 0;  // width that the window took for the options
  bool refreshing_ = false;
  bool started_ = false;
  bool closing_ = false;
  bool ending_ = false;  // an abort answer was given
  bool ticking_ = false;
  bool interactive_ = false;  // as the watch knows it
};

}  // namespace orv
