#include "shell/frm_main.h"

#include <QAction>
#include <QBoxLayout>
#include <QCloseEvent>
#include <QComboBox>
#include <QCoreApplication>
#include <QDragEnterEvent>
#include <QFocusEvent>
#include <QGridLayout>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QStatusBar>
#include <QToolBar>
#include <QToolButton>
#include <QToolTip>

#include "numerics/installation.h"
#include "numerics/paths.h"
#include "shell/class_interface_dbus.h"
#include "shell/form_parts.h"
#include "shell/frm_warning.h"
#include "shell/level_lines_panel.h"
#include "shell/status_panel.h"
#include "shell/tool_icons.h"
#include "window/main_controls.h"

namespace orv {
namespace {

constexpr int kTickMs = 20;
constexpr const char* kLayoutSection = "ToolBars";
constexpr const char* kLayoutKey = "User";
constexpr const char* kGeometryKey = "Geometry";
constexpr QSize kFirstSize{1180, 860};
constexpr QSize kRoomOfFrame{16, 48};  // the borders and the title
constexpr int kNarrowCombo1 = 120;
constexpr int kNarrowText12 = 80;

const ControlEntry& MainControl(std::string_view name) {
  for (const ControlEntry& entry : kMainControls) {
    if (entry.name == name) return entry;
  }
  Raise(FailureNumber::InvalidProcedureCall);
}

QScrollBar* MakeBar(QWidget* parent, std::string_view name) {
  const ControlEntry& entry = MainControl(name);
  QScrollBar* const bar =
      MakeScroll(parent, QString::fromStdString(ObjectName(entry)), static_cast<int>(entry.minimum),
                 static_cast<int>(entry.maximum), std::stoi(std::string(entry.initial)), std::string(entry.tip));
  bar->setFocusPolicy(Qt::StrongFocus);
  return bar;
}

QPushButton* MakeMainButton(QWidget* parent, std::string_view name) {
  const ControlEntry& entry = MainControl(name);
  QPushButton* const button =
      MakeButton(parent, QString::fromStdString(ObjectName(entry)), std::string(entry.caption), std::string(entry.tip));
  button->setAutoDefault(false);
  button->setFocusPolicy(Qt::TabFocus);  // a click leaves the keys to the view
  return button;
}

}  // namespace

QSize FirstWindowSize(const QSize& screen) {
  return kFirstSize.boundedTo(screen - kRoomOfFrame);
}

frmMain::frmMain(const WindowServices& services, QWidget* parent)
    : QMainWindow(parent),
      services_(services),
      run_(services.run),
      options_(services.settings, view_, services.run.prompt),
      selection_(services.settings, services.run.prompt),
      windowSelection_(selection_, main_, this),
      source_(services.run, windowSelection_, services.dataFolder, services.link),
      specifications_(services.settings, services.run.prompt),
      bodies_(services.run.prompt, FindInstalled(services.program, "textures")) {
  setObjectName("frmMain");
  setWindowTitle("OrvValis");
  setAcceptDrops(true);
  view_.animation = true;
  options_.Load();

  BuildCentre();
  glxGCTLinit();
  controls_ = std::make_unique<PlotControls>(*scene_, main_);
  controls_->Start();
  replot_ = std::make_unique<Replot>(run_, view_, selection_, *controls_, main_);
  movie_ = std::make_unique<Movie>(
      run_.clock, [this](const std::string& name, const std::string& folder) { return SavePicture(name, folder); });
  BuildLink();
  BuildMenus();
  BuildToolbar();
  BuildStatusBar();
  levelLines_ = new LevelLinesPanel(this);
  addDockWidget(Qt::RightDockWidgetArea, levelLines_);
  levelLines_->hide();
  levelLines_->told = [this](const std::string& text) { TellFault(text); };
  toPlot_ = new frmToPlot(selection_, main_, this);
  video_ = new frmVideo(*movie_, this);
  video_->setWindowFlag(Qt::Window);
  connect(video_, &frmVideo::Changed, this, [this] { Do([] {}); });

  connect(&services_.dialogs, &QtDialogs::ProgressChanged, this, [this](const QString& text, double share) {
    if (busy_ == 0) return;  // the sample, which a paint reads
    ProgressBar1_->show();
    ProgressBar1_->setValue(30 + static_cast<int>(share * 70));
    pickPanel_->setText(text);
  });
  connect(&services_.dialogs, &QtDialogs::StatusChanged, this,
          [this](const QString& text) { pickPanel_->setText(text); });
  connect(&services_.dialogs, &QtDialogs::Logged, this, [this](const QString& text) {
    Text12_->setText(QString(text).replace('\n', ' '));
    Text12_->setCursorPosition(0);
  });
  connect(&timer_, &QTimer::timeout, this, [this] {
    // A box that a tick has opened lets further ticks come.
    if (ticking_) return;
    ticking_ = true;
    Do([this] { Tick(); });
    ticking_ = false;
  });
  resize(FirstWindowSize(screen()->availableGeometry().size()));
  const std::string geometry = services_.settings.Read(kLayoutSection, kGeometryKey, "");
  if (!geometry.empty()) restoreGeometry(QByteArray::fromBase64(QByteArray::fromStdString(geometry)));
  Refresh();
}

frmMain::~frmMain() {
  timer_.stop();
  View().SetListener(nullptr);
  View().SetEvents(nullptr);
}

// Makes the view: the scene behind it, and what mouse and keys do there.
void frmMain::glxGCTLinit() {
  scene_ = std::make_unique<ClassGl>(
      View().Control(), run_.lists, view_, run_.prompt, run_.clock,
      [this](PointLists& lists) { return source_.LoadSample(lists); }, &bodies_);
  input_.reset(new ViewInput(*scene_, this));
  input_->SetEditState(kPanState);
  View().SetEvents(scene_.get());
  View().SetListener(this);
}

void frmMain::BuildCentre() {
  auto* const centre = new QWidget(this);
  auto* const columns = new QHBoxLayout(centre);
  auto* const left = new QVBoxLayout;
  columns->addLayout(left, 1);
  place_ = new GlxPlace(centre);
  View().setObjectName("glxCtl1");
  left->addWidget(place_, 1);

  auto* const bars = new QGridLayout;
  left->addLayout(bars);
  const auto row = [&](int r, QScrollBar*& bar, QLabel*& text, std::string_view barName, const char* textName,
                       const std::string& caption) {
    bar = MakeBar(centre, barName);
    text = MakeLabel(centre, textName, caption, bar);
    text->setMinimumWidth(fontMetrics().horizontalAdvance("Auto-Rotation 00.00 seconds"));
    bars->addWidget(text, r, 0);
    bars->addWidget(bar, r, 1);
  };
  row(0, HScroll4_, Text10_, "HScroll4", "Text10", main_.text10);
  row(1, HScroll2_, Text2_, "HScroll2", "Text2", main_.text2);
  row(2, HScroll1_, Text3_, "HScroll1", "Text3", main_.text3);
  bars->setColumnStretch(1, 1);
  connect(HScroll1_, &QScrollBar::valueChanged, this, [this](int value) {
    if (!refreshing_) Do([&] { controls_->ChangeHScroll1(value, true); });
  });
  connect(HScroll4_, &QScrollBar::valueChanged, this, [this](int value) {
    if (!refreshing_) Do([&] { controls_->ChangeHScroll4(value, true); });
  });
  connect(HScroll2_, &QScrollBar::valueChanged, this, [this](int value) {
    if (!refreshing_) Do([&] { controls_->ChangeHScroll2(value); });
  });

  auto* const buttons = new QHBoxLayout;
  left->addLayout(buttons);
  Combo1_ = MakeCombo(centre, "Combo1", std::string(MainControl("Combo1").tip));
  Combo1_->setEditable(true);
  Combo1_->setInsertPolicy(QComboBox::NoInsert);
  Combo1_->setMinimumWidth(kNarrowCombo1);  // it takes what the buttons leave: far more in a wide window
  Combo1_->installEventFilter(this);
  connect(Combo1_->lineEdit(), &QLineEdit::returnPressed, this, [this] { Do([this] { EnterSpecification(); }); });
  connect(Combo1_, &QComboBox::activated, this, [this](int index) { Do([&] { specifications_.Choose(index); }); });
  buttons->addWidget(Combo1_, 1);
  Command7_ = MakeMainButton(centre, "Command7");
  Command8_ = MakeMainButton(centre, "Command8");
  Command9_ = MakeMainButton(centre, "Command9");
  Command6_ = MakeMainButton(centre, "Command6");
  Command6_->setIcon(ToolIcon("demo"));
  ShowTip(*Command6_, std::string(MainControl("Command6").caption));
  for (QPushButton* button : {Command7_, Command8_, Command9_, Command6_}) buttons->addWidget(button);
  Command7_->setContextMenuPolicy(Qt::CustomContextMenu);
  connect(Command7_, &QPushButton::clicked, this,
          [this] { Do([&] { controls_->ClickCommand7(ClickKeysOf(QGuiApplication::keyboardModifiers(), false)); }); });
  connect(Command7_, &QWidget::customContextMenuRequested, this, [this](const QPoint&) {
    Do([&] { controls_->ClickCommand7(ClickKeysOf(QGuiApplication::keyboardModifiers(), true)); });
  });
  connect(Command8_, &QPushButton::clicked, this, [this] { Do([this] { controls_->ClickCommand8(); }); });
  connect(Command9_, &QPushButton::clicked, this, [this] { Do([this] { controls_->ClickCommand9(); }); });
  connect(Command6_, &QPushButton::clicked, this, [this] {
    Do([this] {
      if (BusyTold()) return;
      source_.ChooseDemo();
      ReadSource();
    });
  });

  optionsFrame_ = new OptionsFrame(options_, centre);
  optionsFrame_->hide();
  columns->addWidget(optionsFrame_);
  connect(optionsFrame_, &OptionsFrame::Changed, this, [this] {
    PlaceOptions(options_.Visible());
    TakeValueAxis();
    View().Control().Redraw();
    Do([] {});
  });
  setCentralWidget(centre);
}

void frmMain::BuildStatusBar() {
  panel_ = new StatusPanel(this);
  SetUp(*panel_, "StatusBar1", main_.panelTip, main_.panel);
  panel_->pressed = [this](const ClickKeys& keys) { Do([&] { ClickStatus(keys); }); };
  panel_->released = [this] { Do([this] { replot_->Release(); }); };
  pickPanel_ = new ElidedLabel(this);
  SetUp(*pickPanel_, "StatusBar2", "The cell that was clicked, or what is being done", "");
  Text12_ = MakeEdit(this, "Text12", std::string(MainControl("Text12").initial));
  Text12_->setReadOnly(true);
  Text12_->setMinimumWidth(kNarrowText12);
  ProgressBar1_ = new QProgressBar(this);
  SetUp(*ProgressBar1_, "ProgressBar1", "", "Progress");
  ProgressBar1_->setRange(30, 100);
  ProgressBar1_->setMaximumWidth(160);
  ProgressBar1_->hide();
  auto* const show = MakeButton(this, "warning", "Warnings", "Shows all messages, the newest first");
  connect(show, &QPushButton::clicked, &services_.warning, [this] {
    services_.warning.show();
    services_.warning.raise();
  });
  statusBar()->addWidget(panel_, 5);
  statusBar()->addWidget(pickPanel_, 6);
  statusBar()->addPermanentWidget(ProgressBar1_);
  statusBar()->addPermanentWidget(Text12_, 3);
  statusBar()->addPermanentWidget(show);

  Frame1_ = new QWidget(this, Qt::Dialog);
  Frame1_->setObjectName("Frame1");
  Frame1_->setWindowTitle(QString::fromUtf8(MainControl("Frame1").caption.data()));
  auto* const layout = new QVBoxLayout(Frame1_);
  Text1_ = MakeEdit(Frame1_, "Text1");
  Text1_->setAccessibleName("Command line");
  Text1_->setReadOnly(true);
  Text1_->setMinimumWidth(600);
  Picture1_ = MakeLabel(Frame1_, "Picture1", "");
  Picture1_->setAccessibleName("The plot as it stands in the view");
  Picture1_->setAlignment(Qt::AlignCenter);
  layout->addWidget(Picture1_);
  layout->addWidget(Text1_);
}

void frmMain::BuildMenus() {
  std::map<std::string, QMenu*> menus;
  for (const MenuEntry& entry : kMenus) {
    const std::string name(entry.name);
    const QString caption = QString::fromUtf8(entry.caption.data(), static_cast<qsizetype>(entry.caption.size()));
    QMenu* const parent = entry.parent.empty() ? nullptr : menus.at(std::string(entry.parent));
    const bool opens = entry.action == MenuAction::Menu || entry.action == MenuAction::RecentWorkbooks;
    if (opens) {
      QMenu* const menu = parent == nullptr ? menuBar()->addMenu(caption) : parent->addMenu(caption);
      menu->setObjectName(QString::fromStdString(name));
      menus[name] = menu;
      menuActions_[name] = menu->menuAction();
      if (entry.action == MenuAction::RecentWorkbooks) recent_ = menu;
      continue;
    }
    QAction* const action = parent == nullptr ? menuBar()->addAction(caption) : parent->addAction(caption);
    action->setObjectName(QString::fromStdString(name));
    action->setMenuRole(QAction::NoRole);
    menuActions_[name] = action;
    const MenuAction what = entry.action;
    connect(action, &QAction::triggered, this, [this, what, name] { Do([&] { DoMenu(what); }, name + "_Click"); });
  }
  menuActions_.at("mnuFOpen")->setShortcut(QKeySequence::Open);
  menuActions_.at("mnuFPrint")->setShortcut(QKeySequence::Print);
  menuActions_.at("mnuFExit")->setShortcut(QKeySequence::Quit);
  // Shortcuts of a menu that is hidden are dead, but the way out stays.
  addAction(menuActions_.at("mnuFExit"));
  menuActions_.at("mnuOinteractive")->setCheckable(true);
  menuActions_.at("mnuVGrids")->setCheckable(true);
  menuActions_.at("mnuVVPerspective")->setCheckable(true);
  if (recent_ != nullptr) connect(recent_, &QMenu::aboutToShow, this, [this] { FillRecent(); });
}

void frmMain::FillRecent() {
  recent_->clear();
  for (const std::string& name : RecentWorkbooks(services_.settings)) {
    recent_->addAction(QString::fromStdString(name), this, [this, name] { OpenFile(name); });
  }
  if (recent_->isEmpty()) recent_->addAction("(none)")->setEnabled(false);
}

void frmMain::BuildToolbar() {
  QToolBar* const bar = addToolBar("Toolbar1");
  bar->setObjectName("Toolbar1");
  bar->setContextMenuPolicy(Qt::PreventContextMenu);
  for (const ToolEntry& tool : kTools) {
    if (!tool.button) continue;
    auto* const button = new QToolButton(bar);
    const std::string key(tool.key);
    SetUp(*button, QString::fromStdString(key), std::string(tool.tip), std::string(tool.tip));
    button->setIcon(ToolIcon(key));
    button->setCheckable((tool.EditState != kNoState && tool.EditState <= 12) || tool.EditState == kFrozenStartState);
    button->setFocusPolicy(Qt::TabFocus);
    connect(button, &QToolButton::clicked, this, [this, key] { Do([&] { DoTool(key); }, "Toolbar1_ButtonClick"); });
    bar->addWidget(button);
    tools_[key] = button;
  }
}

void frmMain::showEvent(QShowEvent* event) {
  QMainWindow::showEvent(event);
  if (started_) return;
  started_ = true;
  QTimer::singleShot(0, this, [this] { Do([this] { Start(); }); });
}

// What happens at the first activation.
void frmMain::Start() {
  AskInteractive();
  interactive_ = options_.InteractiveMark();
  const std::string layout = services_.settings.Read(kLayoutSection, kLayoutKey, "");
  if (!layout.empty()) restoreState(QByteArray::fromBase64(QByteArray::fromStdString(layout)));
  levelLines_->hide();  // until a plot has some
  bus_->Register();
  specifications_.Combo1_InitList(kRememberedSpecifications);
  FillSpecifications();
  timer_.start(kTickMs);
  const QToolButton* const image = tools_.at("imagespot");
  QToolTip::showText(image->mapToGlobal(QPoint(0, image->height())), image->toolTip());
  Command6_->setText("");  // its picture stays
  ReadSource();
}

// Interactivity that was stored is confirmed at the start, or switched off.
void frmMain::AskInteractive() {
  if (!options_.InteractiveMark()) return;
  const Answer answer = services_.dialogs.Ask(
      "The current setting is Interactive with Excel. \nIt is recommanded to save your Excel work now. \n"
      "Else click on Cancel to disable the Interactivity.\n\n"
      "Do you want to continue with the Interactivity with Excel ? ",
      "Warning", Buttons::OkCancel, Icon::Warning);
  if (answer != Answer::Cancel) return;
  options_.ForbidInteractive();
  optionsFrame_->Refresh();
}

void frmMain::FillSpecifications() {
  Combo1_->clear();
  for (const std::string& text : specifications_.Items()) Combo1_->addItem(QString::fromStdString(text));
  Combo1_->setCurrentIndex(specifications_.Current());
}

void frmMain::Refresh() {
  refreshing_ = true;
  const auto bar = [](QScrollBar* widget, const ScrollState& state) {
    widget->setMaximum(state.maximum);
    widget->setValue(state.value);
  };
  bar(HScroll1_, main_.hscroll1);
  bar(HScroll2_, main_.hscroll2);
  bar(HScroll4_, main_.hscroll4);
  refreshing_ = false;
  movieFields_.Text3 = main_.text3;
  movieFields_.Text10 = main_.text10;
  movieFields_.Text3Tip = MainControl("HScroll1").tip;
  movieFields_.Text10Tip = MainControl("HScroll4").tip;
  if (movie_) movie_->ShowTexts(movieFields_);
  Text2_->setText(QString::fromStdString(main_.text2));
  Text3_->setText(QString::fromStdString(movieFields_.Text3));
  Text10_->setText(QString::fromStdString(movieFields_.Text10));
  Command7_->setText(QString::fromStdString(main_.command7Caption));
  ShowTip(*Text3_, movieFields_.Text3Tip);
  ShowTip(*Text10_, movieFields_.Text10Tip);
  ShowTip(*Text2_, std::string(MainControl("HScroll2").tip));
  ShowTip(*Command7_, main_.command7Tip);
  ShowTip(*Command8_, main_.command8Tip);
  Command8_->setEnabled(main_.command8Enabled);
  panel_->setText(QString::fromStdString(main_.panel));
  if (panel_->accessibleName() != panel_->text()) panel_->setAccessibleName(panel_->text());
  ShowTip(*panel_, main_.panelTip);
  if (busy_ == 0) ProgressBar1_->hide();
  for (const char* const name : {"mnuFOpen", "mnuFRecent", "mnuUpdateExcel", "mnuFPrint"}) {
    menuActions_.at(name)->setEnabled(busy_ == 0);
  }
  for (QWidget* widget :
       {static_cast<QWidget*>(Combo1_), static_cast<QWidget*>(Command6_), static_cast<QWidget*>(Command9_)}) {
    widget->setEnabled(busy_ == 0);
  }
  for (const auto& [name, action] : menuActions_) {
    if (name == "mnuOinteractive") action->setChecked(options_.InteractiveMark());
    if (name == "mnuVGrids") action->setChecked(view_.grid);
    if (name == "mnuVVPerspective") action->setChecked(View().Control().Camera().Projection() != kOrthographic);
  }
  RefreshTools();
  if (busy_ == 0 && options_.ValueAxis() != run_.lists.ValueAxis) {
    options_.ShowValueAxis(run_.lists.ValueAxis);
    optionsFrame_->Refresh();
  }
  if (video_ != nullptr) video_->Refresh();
}

// The values of the plot stand along the axis that the user has ticked.
void frmMain::TakeValueAxis() {
  if (busy_ == 0 && run_.lists.ValueCount != kNoEntry) run_.lists.ValueAxis = options_.ValueAxis();
}

void frmMain::RefreshTools() {
  // A new plot or a reset ends the frozen start.
  if (!view_.frozen && input_->EditState() == kFrozenStartState) input_->SetEditState(toolbar_.MarkedState());
  toolbar_.SetMovieFlag(movie_->Flag());
  for (const auto& [key, button] : tools_) {
    if (button->isCheckable()) button->setChecked(key == "frozenstart" ? view_.frozen : key == toolbar_.Marked());
  }
}

void frmMain::closeEvent(QCloseEvent* event) {
  if (busy_ > 0) {
    // The run unwinds first; the window closes behind it.
    closing_ = true;
    services_.dialogs.RequestEnd();
    event->ignore();
    return;
  }
  timer_.stop();
  options_.StoreTyped();
  SaveLayout();
  services_.warning.close();
  QMainWindow::closeEvent(event);
  QCoreApplication::quit();
}

void frmMain::SaveLayout() {
  // The options are closed at the next start, and their room is not needed.
  PlaceOptions(false);
  try {
    services_.settings.Write(kLayoutSection, kLayoutKey, saveState().toBase64().toStdString());
    services_.settings.Write(kLayoutSection, kGeometryKey, saveGeometry().toBase64().toStdString());
  } catch (const RuntimeFailure&) {
    // The layout is no reason to keep the window open.
  }
}

void frmMain::changeEvent(QEvent* event) {
  // A key that is let go in another window is never told here.
  if (event->type() == QEvent::ActivationChange && !isActiveWindow()) heldKey_ = 0;
  QMainWindow::changeEvent(event);
}

// The box of specifications gets the focus with its current choice, whatever was left in it half typed.
bool frmMain::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::FocusIn && watched == Combo1_) {
    const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
    const std::string choice = specifications_.Combo1_GotFocusRoutine();
    const bool comesBack = reason == Qt::PopupFocusReason || reason == Qt::ActiveWindowFocusReason;
    if (!comesBack && !choice.empty()) Combo1_->setEditText(QString::fromStdString(choice));
  }
  return QMainWindow::eventFilter(watched, event);
}

void frmMain::dragEnterEvent(QDragEnterEvent* event) {
  if (event->mimeData()->hasUrls()) event->acceptProposedAction();
}

void frmMain::dropEvent(QDropEvent* event) {
  const QList<QUrl> urls = event->mimeData()->urls();
  if (urls.isEmpty() || !urls.front().isLocalFile()) return;
  event->acceptProposedAction();
  const std::string name = urls.front().toLocalFile().toStdString();
  QTimer::singleShot(0, this, [this, name] { OpenFile(name); });
}

}  // namespace orv
